// SPDX-License-Identifier: GPL-3.0-or-later
// Curvature of meshed shells: the normal at a node is the mean over the elements that continue one
// surface there; the angle between it and an element's own is half of what the surface turns from
// this element to the next.
#include "solver/elements/curve.h"

#include <Eigen/Geometry>
#include <algorithm>
#include <cmath>

#include "solver/base/parallel.h"
#include "solver/elements/catalogue.h"
#include "solver/elements/folds.h"

// The side that a normal points to is the user's choice and may differ between neighbours; what
// meets the element at a fold or stands on it is not of its surface.
// normals: by element, 0 where it is no shell.
static double turnedat(std::span<const corner> here, const std::vector<vec3>& normals,
                       const vec3& normal) {
    vec3 sum = vec3::Zero();
    for (const corner& one : here) {
        const vec3& other = normals[std::size_t(one.element)];
        if (continues(normal, other)) sum += normal.dot(other) < 0 ? vec3(-other) : other;
    }
    return 2 * std::atan2(normal.cross(sum).norm(), normal.dot(sum));
}

void measurecurve(model& m, const cornerlist& corners) {
    m.curve.assign(m.elements.size(), 0);
    if (m.twod) return;
    const auto eachshell = [&](auto use) {
        parallelpieces(m.nelems(), 4096, [&](int first, int last, int) {
            for (auto e = std::size_t(first) + 1; e <= std::size_t(last); ++e)
                if (isshell(m.elements[e].type)) use(e, m.elements[e]);
        });
    };
    std::vector<vec3> normals(m.elements.size(), vec3::Zero());
    eachshell([&](std::size_t e, const elementdef& def) { normals[e] = normalof(m, def); });
    eachshell([&](std::size_t e, const elementdef& def) {
        double most = 0;
        for (int k = 0; k < factsof(def.type).nodes; ++k)
            most =
                std::max(most, turnedat(corners.of(std::size_t(def.node[k])), normals, normals[e]));
        m.curve[e] = most;
    });
}
