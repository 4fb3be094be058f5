// SPDX-License-Identifier: GPL-3.0-or-later
// Bounds of values over combinations.
#include "post/governed.h"

#include <algorithm>
#include <cmath>

#include "post/source.h"

void include(governed& g, double value, int combination) {
    const float v = float(std::clamp(value, -1e37, 1e37));
    if (g.highof == 0 || v > g.high) {
        g.high = v;
        g.highof = short(combination);
    }
    if (g.lowof == 0 || v < g.low) {
        g.low = v;
        g.lowof = short(combination);
    }
}

static bool showslow(const governed& g) {
    if (shownsource.kind == envelopekinds::bysize) return std::fabs(g.low) > std::fabs(g.high);
    return shownsource.kind == envelopekinds::smallest;
}

float shownof(const governed& g) {
    return showslow(g) ? g.low : g.high;
}

int governorof(const governed& g) {
    return showslow(g) ? g.lowof : g.highof;
}
