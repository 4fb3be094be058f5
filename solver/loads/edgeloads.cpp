// SPDX-License-Identifier: GPL-3.0-or-later
// Moments of forces along the edges of shells.
#include "solver/loads/edgeloads.h"

#include <Eigen/Geometry>
#include <algorithm>

#include "solver/elements/catalogue.h"
#include "solver/elements/drill.h"
#include "solver/elements/folds.h"
#include "solver/processes/ranks.h"

namespace {
// An edge that one shell alone has.
struct rim {
    int node[2];
    int element, edge;
    vec3 across;  // in the plane of the element, out of it; its size is the edge's length
};
}  // namespace

using nodemarks = std::vector<char>;

template <typename Use>
static void eachshellat(const model& m, const nodemarks& nodes, Use use) {
    for (int e = 1; e <= m.nelems(); ++e) {
        const elementdef& def = m.elements[std::size_t(e)];
        if (!isshell(def.type)) continue;
        const int count = factsof(def.type).nodes;
        if (std::any_of(def.node, def.node + count,
                        [&](int n) { return nodes[std::size_t(n)] != 0; }))
            use(e, def, count);
    }
}

// The rims at the marked nodes.
static std::vector<rim> rimsat(const model& m, const nodemarks& nodes) {
    std::vector<rim> sides;
    eachshellat(m, nodes, [&](int e, const elementdef& def, int count) {
        for (int k = 0; k < count; ++k) {
            const int i = def.node[k], j = def.node[(k + 1) % count];
            if (nodes[std::size_t(i)] != 0 || nodes[std::size_t(j)] != 0)
                sides.push_back({{i, j}, e, k, vec3::Zero()});
        }
    });
    const auto place = [](const rim& r) {
        return std::pair(std::min(r.node[0], r.node[1]), std::max(r.node[0], r.node[1]));
    };
    std::stable_sort(sides.begin(), sides.end(),
                     [&](const rim& a, const rim& b) { return place(a) < place(b); });
    std::vector<rim> rims;
    for (std::size_t i = 0, next; i < sides.size(); i = next) {
        for (next = i + 1; next < sides.size() && place(sides[next]) == place(sides[i]);) ++next;
        if (next > i + 1) continue;
        rim& one = sides[i];
        const vec3 along = m.nodes[std::size_t(one.node[1])] - m.nodes[std::size_t(one.node[0])];
        one.across = along.cross(normalof(m, m.elements[std::size_t(one.element)]).normalized());
        rims.push_back(one);
    }
    return rims;
}

void eachedgemoment(const model& m, const settings& s, const std::vector<vec3>& forces,
                    const std::function<void(int, const vec3&)>& add) {
    nodemarks loaded(m.nodes.size(), 0);
    for (std::size_t n = 1; n < forces.size(); ++n) loaded[n] = !forces[n].isZero(0);
    nodemarks near(m.nodes.size(), 0);
    eachshellat(m, loaded, [&](int, const elementdef& def, int count) {
        for (int k = 0; k < count; ++k) near[std::size_t(def.node[k])] = 1;
    });
    const std::vector<rim> rims = rimsat(m, near);
    std::vector<std::vector<std::size_t>> at(m.nodes.size());
    for (std::size_t r = 0; r < rims.size(); ++r)
        for (const int n : rims[r].node) at[std::size_t(n)].push_back(r);
    for (std::size_t r = 0; r < rims.size(); ++r) {
        const rim& one = rims[r];
        if (!isown(m, one.element)) continue;
        // The load a length at an end is its force over half of what goes on straight there. A
        // corner has no say: its force may pull along the edge that meets this one.
        const double length = one.across.norm();
        const vec3 across = one.across / length;
        double pull = 0, goeson = 0;
        for (const int n : one.node) {
            double others = 0;
            for (const std::size_t other : at[std::size_t(n)])
                if (other != r) others += std::max(rims[other].across.dot(across), 0.0);
            pull += others * forces[std::size_t(n)].dot(across) * 2 / (length + others);
            goeson += others;
        }
        if (pull == 0) continue;
        const element e = elementat(m, s, one.element);
        const vec3 moment = edgebow(e, one.edge) * pull / goeson * length * length / 12 *
                            meanaxes(e).row(2).transpose();
        add(one.node[0], -moment);
        add(one.node[1], moment);
    }
}
