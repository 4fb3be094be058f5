// SPDX-License-Identifier: GPL-3.0-or-later
// Curvature of meshed shells: the normal at a node is the mean of its elements'; the angle between
// it and an element's own is half of what the surface turns from this element to the next.
#include "solver/elements/curve.h"

#include <Eigen/Geometry>
#include <algorithm>
#include <climits>
#include <cmath>

#include "solver/base/parallel.h"
#include "solver/elements/folds.h"
#include "solver/elements/kinds.h"
#include "solver/processes/ranks.h"

static const double fold = 0.45;  // radians between an element and the mean: 50 degrees at an edge

static bool isshell(int type) {
    return type == typeshell3 || type == typeshell4;
}

void measurecurve(model& m) {
    m.curve.assign(m.elements.size(), 0);
    if (m.twod) return;
    std::vector<vec3> mean(m.nodes.size(), vec3::Zero());
    const auto eachshell = [&](int first, int last, auto use) {
        for (int e = first; e <= last; ++e) {
            const elementdef& def = m.elements[std::size_t(e)];
            if (!isshell(def.type)) continue;
            const vec3 normal = normalof(m, def);
            for (int k = 0; k < kindof(def.type).nodes; ++k)
                use(e, normal, mean[std::size_t(def.node[k])]);
        }
    };
    // The side that a normal points to is the user's choice and may differ between neighbours.
    eachshell(1, m.nelems(), [](int, const vec3& normal, vec3& at) {
        at += at.dot(normal) < 0 ? vec3(-normal) : normal;
    });
    const auto measure = [&](int e, const vec3& normal, const vec3& at) {
        const double sine = normal.cross(at).norm(), cosine = std::fabs(normal.dot(at));
        const double angle = std::atan2(sine, cosine);
        float& curve = m.curve[std::size_t(e)];
        if (angle < fold) curve = std::max(curve, float(2 * angle));
    };
    parallelpieces(m.nelems(), 4096,
                   [&](int first, int last, int) { eachshell(first + 1, last, measure); });
}

// Bending that a pressure wrongly makes in an element, over the membrane stress, as cylinders and
// spheres under pressure show it: little in triangles where the surface is curved one way, more
// where it is curved both ways; none where the middle lines of a quadrilateral cross at right
// angles, whose nodes the load reaches as the membrane takes it, and the more the more the angle
// leaves that.
static double wrongbending(const model& m, int number) {
    const elementdef& e = m.elements[std::size_t(number)];
    const double thickness = m.groups[std::size_t(e.group)].field[fieldthickness];
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
        share = 0.25 * std::fabs(r.stableNormalized().dot(s.stableNormalized()));
    }
    return share * longest * double(m.curve[std::size_t(number)]) / thickness;
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
