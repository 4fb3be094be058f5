// SPDX-License-Identifier: GPL-3.0-or-later
// Each element has fitted a surface of even curvature, and finds a normal of it at each corner.
// Where the curvature changes from row to row, as along a cone, those of the elements at a node
// differ. Inside, the rows share between them what that makes of a load; the last row at a free
// edge would give its outer nodes too much or too little. So all take the mean of what they find.
#include "solver/elements/nodenormals.h"

#include <algorithm>
#include <cmath>

#include "solver/base/parallel.h"
#include "solver/elements/folds.h"
#include "solver/elements/meanplane.h"

namespace {
struct cornernormal {
    int element, at;
    mat3 axes;    // of the element's mean plane
    vec3 normal;  // in model axes
    double angle;
};
}  // namespace

static void listnormals(const model& m, const settings& s, std::span<const corner> corners,
                        std::vector<cornernormal>& found) {
    found.clear();
    for (const corner& one : corners) {
        const elementdef& def = m.elements[std::size_t(one.element)];
        if (!isshell(def.type)) continue;
        const element e = elementat(m, s, one.element);
        const flatshape shape = flatten(e, meanaxes(e));
        const edgefold& fold = m.fold[std::size_t(one.element)];
        cornernormal here;
        here.element = one.element, here.at = one.at, here.axes = shape.axes;
        const vec2 lean = curvatureof(fold) * shape.at[one.at] - vec2(fold.slope[0], fold.slope[1]);
        here.normal = shape.axes.transpose() * vec3(lean.x(), lean.y(), 1).normalized();
        const vec2 back = -shape.along[(one.at + e.nodes - 1) % e.nodes];
        here.angle = std::acos(std::clamp(shape.along[one.at].dot(back), -1.0, 1.0));
        found.push_back(here);
    }
}

// Mean of those that are of one surface with it, whichever way they point, by the angles of their
// corners; in a plane of symmetry, that of the elements beyond it, too.
static vec3 meannormal(const cornernormal& one, std::span<const cornernormal> here, int mirrors) {
    const double apart = std::cos(0.45);  // surfaces that meet at a fold
    vec3 mean = vec3::Zero();
    for (const cornernormal& other : here) {
        const double along = one.normal.dot(other.normal);
        if (std::fabs(along) >= apart) mean += std::copysign(other.angle, along) * other.normal;
    }
    for (int k = 0; k < 3; ++k)
        if ((mirrors >> k & 1) != 0 && std::fabs(one.normal[k]) < 0.5) mean[k] = 0;
    return mean;
}

void sharenormals(model& m, const settings& s, const cornerlist& corners, const supportbits& held) {
    parallelpieces(m.nnodes(), 1024, [&](int first, int last, int) {
        std::vector<cornernormal> here;
        for (int n = first + 1; n <= last; ++n) {
            listnormals(m, s, corners.of(std::size_t(n)), here);
            const int mirrors = mirrorsof(held[std::size_t(n)]);
            for (const cornernormal& one : here) {
                const vec3 mean = one.axes * meannormal(one, here, mirrors);
                double* const lean = m.fold[std::size_t(one.element)].lean[one.at];
                for (int k = 0; k < 2; ++k) lean[k] = mean[k] / mean[2];
            }
        }
    });
}
