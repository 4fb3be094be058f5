// SPDX-License-Identifier: GPL-3.0-or-later
// Displacements against the size of the model and what its loads could give.
#include "post/noise.h"

#include <algorithm>
#include <cmath>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/session.h"

// Diagonal of the box around the nodes [first, last] that at(i) gives.
template <typename Node>
static double extentof(int count, Node node) {
    double low[3] = {1e30, 1e30, 1e30}, high[3] = {-1e30, -1e30, -1e30};
    for (int i = 1; i <= count; ++i)
        for (int k = 0; k < 3; ++k) {
            const double at = nodes(0, node(i), k);
            low[k] = std::min(low[k], at);
            high[k] = std::max(high[k], at);
        }
    return count == 0 ? 0 : std::hypot(high[0] - low[0], high[1] - low[1], high[2] - low[2]);
}

static double sizeofelement(int e) {
    return extentof(nodesoftype(elems(e, 0)), [e](int k) { return int(elems(e, k)); });
}

// Force that lengthens an element by a unit: E A / L of a line, about E t of a face.
static double stiffnessof(int e) {
    const double modulus = groups(egroup(e), fieldmodulus),
                 dimension = groups(egroup(e), fieldthickness);
    const double length = sizeofelement(e);
    if (nodesoftype(elems(e, 0)) > 2) return modulus * dimension;
    return length > 0 ? modulus * dimension / length : 0;
}

static double largestforce(int lc, double size) {
    double most = 0;
    for (int i = 1; i <= loadnode(lc, 0); ++i) {
        const double arm = loaddof(lc, i) > 3 && size > 0 ? size : 1;  // of a moment
        most = std::max(most, std::fabs(double(loadval(lc, i))) / arm);
    }
    for (int i = 1; i <= int(elemload(lc, 0, 0)); ++i) {
        const int e = int(elemload(lc, i, 0));
        if (e < 1 || e > nelems()) continue;
        const double length = sizeofelement(e);
        const double spread = nodesoftype(elems(e, 0)) > 2 ? length * length : length;
        most = std::max(most, std::fabs(double(elemload(lc, i, 2))) * spread);
    }
    return most;
}

// What the loads would do to the stiffest element; 0 where that can not be told: accelerations and
// the like, or no load at all.
static double leastanswer(double size) {
    double force = 0, stiffness = 0;
    for (int lc = 1; lc <= nlc() && curlcomb >= 1 && curlcomb <= ncomb(); ++lc) {
        const double factor = std::fabs(double(lcomb(curlcomb, lc)));
        if (factor == 0) continue;
        if (lctype(lc) != caseapplied) return 0;
        force = std::max(force, factor * largestforce(lc, size));
    }
    for (int e = 1; e <= nelems() && force > 0; ++e)
        if (elems(e, 0) != 0) stiffness = std::max(stiffness, stiffnessof(e));
    return stiffness > 0 ? force / stiffness : 0;
}

static double largestprescribed() {
    double most = 0;
    for (int i = 1; i <= ncon; ++i)
        if (condof(i) <= 3) most = std::max(most, std::fabs(double(conval(i))));
    return most;
}

bool isnoise() {
    const double share = 1e-9;
    double least = extentof(nnodes(), [](int n) { return n; });
    if (!(maxdisp > 0) || !(maxdisp < share * least)) return false;
    for (const double answer : {leastanswer(least), largestprescribed()})
        if (answer > 0) least = std::min(least, answer);
    return maxdisp < share * least;
}
