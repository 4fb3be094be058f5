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

namespace {
// Shells by their nodes: those at node n are shells[start[n]] up to start[n + 1].
struct shellsofnodes {
    std::vector<int> start, shells;
    std::vector<vec3> normal;  // by element
};
}  // namespace

static shellsofnodes listshells(const model& m) {
    shellsofnodes list;
    list.start.assign(m.nodes.size() + 1, 0);
    list.normal.assign(m.elements.size(), vec3::Zero());
    const auto eachcorner = [&](auto use) {
        for (int e = 1; e <= m.nelems(); ++e) {
            const elementdef& def = m.elements[std::size_t(e)];
            if (!isshell(def.type)) continue;
            for (int k = 0; k < factsof(def.type).nodes; ++k) use(e, std::size_t(def.node[k]));
        }
    };
    eachcorner([&](int, std::size_t n) { ++list.start[n + 1]; });
    for (std::size_t n = 1; n < list.start.size(); ++n) list.start[n] += list.start[n - 1];
    list.shells.resize(std::size_t(list.start.back()));
    std::vector<int> next(list.start.begin(), list.start.end() - 1);
    eachcorner([&](int e, std::size_t n) { list.shells[std::size_t(next[n]++)] = e; });
    parallelpieces(m.nelems(), 4096, [&](int first, int last, int) {
        for (auto e = std::size_t(first) + 1; e <= std::size_t(last); ++e)
            if (isshell(m.elements[e].type)) list.normal[e] = normalof(m, m.elements[e]);
    });
    return list;
}

// The side that a normal points to is the user's choice and may differ between neighbours; what
// meets the element at a fold or stands on it is not of its surface.
static double turnedat(const shellsofnodes& list, std::size_t n, const vec3& normal) {
    vec3 sum = vec3::Zero();
    for (int i = list.start[n]; i < list.start[n + 1]; ++i) {
        const vec3& other = list.normal[std::size_t(list.shells[std::size_t(i)])];
        if (continues(normal, other)) sum += normal.dot(other) < 0 ? vec3(-other) : other;
    }
    return 2 * std::atan2(normal.cross(sum).norm(), normal.dot(sum));
}

void measurecurve(model& m) {
    m.curve.assign(m.elements.size(), 0);
    if (m.twod) return;
    const shellsofnodes list = listshells(m);
    parallelpieces(m.nelems(), 4096, [&](int first, int last, int) {
        for (auto e = std::size_t(first) + 1; e <= std::size_t(last); ++e) {
            const elementdef& def = m.elements[e];
            if (!isshell(def.type)) continue;
            double most = 0;
            for (int k = 0; k < factsof(def.type).nodes; ++k)
                most = std::max(most, turnedat(list, std::size_t(def.node[k]), list.normal[e]));
            m.curve[e] = most;
        }
    });
}
