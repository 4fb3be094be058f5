// SPDX-License-Identifier: GPL-3.0-or-later
// Curvature of meshed shells: the normal at a node is the mean of its elements'; the angle between
// it and an element's own is half of what the surface turns from this element to the next.
#include "solver/curve.h"

#include <Eigen/Geometry>
#include <algorithm>
#include <cmath>

#include "solver/kinds.h"

static const double fold = 0.45;  // radians between an element and the mean: 50 degrees at an edge

static bool isshell(int type) {
    return type == typeshell3 || type == typeshell4;
}

static vec3 normalof(const model& m, const elementdef& e) {
    const auto at = [&](int k) { return m.nodes[std::size_t(e.node[k])]; };
    const vec3 across = e.type == typeshell4 ? vec3((at(2) - at(0)).cross(at(3) - at(1)))
                                             : vec3((at(1) - at(0)).cross(at(2) - at(0)));
    return across.stableNormalized();
}

void measurecurve(model& m) {
    m.curve.assign(m.elements.size(), 0);
    if (m.twod) return;
    std::vector<vec3> mean(m.nodes.size(), vec3::Zero());
    const auto eachshell = [&](auto use) {
        for (int e = 1; e <= m.nelems(); ++e) {
            const elementdef& def = m.elements[std::size_t(e)];
            if (!isshell(def.type)) continue;
            const vec3 normal = normalof(m, def);
            for (int k = 0; k < kindof(def.type).nodes; ++k)
                use(e, normal, mean[std::size_t(def.node[k])]);
        }
    };
    // The side that a normal points to is the user's choice and may differ between neighbours.
    eachshell([](int, const vec3& normal, vec3& at) {
        at += at.dot(normal) < 0 ? vec3(-normal) : normal;
    });
    eachshell([&](int e, const vec3& normal, vec3& at) {
        const double sine = normal.cross(at).norm(), cosine = std::fabs(normal.dot(at));
        const double angle = std::atan2(sine, cosine);
        float& curve = m.curve[std::size_t(e)];
        if (angle < fold) curve = std::max(curve, float(2 * angle));
    });
}
