// SPDX-License-Identifier: GPL-3.0-or-later
// Curvature of meshed shells: the normal at a node is the mean over the elements that continue one
// surface there; the angle between it and an element's own is half of what the surface turns from
// this element to the next.
#include "solver/elements/curve.h"

#include <Eigen/Geometry>
#include <algorithm>
#include <climits>
#include <cmath>

#include "solver/base/parallel.h"
#include "solver/elements/folds.h"
#include "solver/elements/kinds.h"
#include "solver/processes/ranks.h"

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

// Bending that a pressure wrongly makes in an element, over the membrane stress, as spheres and
// tori under pressure show it: little where the surface is curved one way, which leaves the
// membrane no choice of its stress; more where it is curved both ways. None where the middle lines
// of a quadrilateral cross at right angles, whose nodes the load reaches as any stress takes it,
// and the more the more the angle leaves that.
static double wrongbending(const model& m, int number) {
    const elementdef& e = m.elements[std::size_t(number)];
    const double thickness = m.groups[std::size_t(e.group)].field[fieldthickness];
    const double curve = m.curve[std::size_t(number)];
    if (curve == 0) return 0;
    const auto at = [&](int k) -> const vec3& { return m.nodes[std::size_t(e.node[k])]; };
    const bool triangle = e.type == typeshell3;
    const int corners = triangle ? 3 : 4;
    double longest = 0, share = 0;
    for (int k = 0; k < corners; ++k)
        longest = std::max(longest, (at((k + 1) % corners) - at(k)).norm());
    if (triangle) {
        share = 0.01 + 0.07 * roundness(m, number);
    } else {
        const vec3 r = at(1) + at(2) - at(0) - at(3), s = at(2) + at(3) - at(0) - at(1);
        share =
            0.25 * roundness(m, number) * std::fabs(r.stableNormalized().dot(s.stableNormalized()));
    }
    return share * longest * curve / thickness;
}

static void warncurved(const model& m, int lc, int type, runlog& log) {
    const loadcase& c = m.cases[std::size_t(lc)];
    const int across = 3;
    const double little = 0.1;
    double count = 0, worst = 0;
    int at = INT_MAX;  // the first of equals
    for (const elementrow& row : c.element) {
        if (row.direction != across || row.value == 0) continue;
        if (m.elements[std::size_t(row.element)].type != type || !isown(m, row.element)) continue;
        const double wrong = wrongbending(m, row.element);
        if (!(wrong > little)) continue;
        ++count;
        if (wrong < worst) continue;
        at = wrong > worst ? m.nameof(row.element) : std::min(at, m.nameof(row.element));
        worst = wrong;
    }
    allranks().sum(&count, 1);
    if (count == 0) return;
    const std::vector<double> all = allranks().greatest({worst, -double(at)});
    worst = all[0];
    at = int(-all[1]);
    const std::string times = shortnumber(std::round(10 * worst) / 10);
    log.warn(
        "Case " + std::to_string(lc) + " \"" + c.name + "\": " + std::to_string(long(count)) + " " +
            kindof(type).name +
            " element(s) carry a pressure where the surface is curved, the worst of them "
            "element " +
            std::to_string(at) + ". Flat " +
            (type == typeshell3 ? "triangles" : "quadrilaterals that lean") +
            " answer it with bending that is not there, up to about " + times +
            " times the membrane stress. Use " +
            (type == typeshell3 ? "SHELL4, or triangles"
                                : "lines of the mesh that cross at right angles, or elements") +
            " of half the size for a quarter of it",
        lc);
}

void warncurved(const model& m, int lc, runlog& log) {
    for (const int type : {typeshell3, typeshell4}) warncurved(m, lc, type, log);
}
