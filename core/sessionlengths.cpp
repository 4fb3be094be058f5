// SPDX-License-Identifier: GPL-3.0-or-later
// The lengths of the session follow those of the model.
#include "core/sessionlengths.h"

#include "core/kaltext.h"
#include "core/model.h"
#include "core/session.h"
#include "core/units.h"
#include "core/views.h"

static double followed = 1;

std::vector<std::function<void(double factor)>>& lengthfollowers() {
    static std::vector<std::function<void(double factor)>> list;
    return list;
}

static void scaleviews(double factor) {
    for (int v = 1; v <= nviews; ++v) {
        for (array1<float>* const point : {&viewptx, &viewpty, &viewptz})
            (*point)(v) = float((*point)(v)*factor);
        if (viewdepth(v) < fullviewdepth) viewdepth(v) = float(viewdepth(v) * factor);
        viewscale(v) = float(viewscale(v) / factor);
    }
}

static void scalebuffers(double factor) {
    for (int i = 1; i <= int(tmpnodes(0, 0)); ++i)
        for (int k = 1; k <= 3; ++k) tmpnodes(i, k) = float(tmpnodes(i, k) * factor);
    for (int g = 1; g <= int(graphics2(0, 0, 0)); ++g)
        for (int j = 1; j <= 3; ++j)
            for (int k = 1; k <= 3; ++k) graphics2(g, j, k) = float(graphics2(g, j, k) * factor);
}

static double scaled() {
    return lengthscale == 0 ? 1 : lengthscale;
}

void scalelengths(double factor) {
    lengthscale = scaled() * factor;
    followlengths();
}

void followlengths() {
    const double factor = scaled() / followed;
    followed = scaled();
    if (factor == 1) return;
    nodetol = roundedto(nodetol * factor, 12);
    scaleviews(factor);
    scalebuffers(factor);
    for (const auto& follow : lengthfollowers()) follow(factor);
}

void startlengths() {
    followed = scaled();
}
