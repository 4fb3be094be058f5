// SPDX-License-Identifier: GPL-3.0-or-later
#include "solver/dofs/flattened.h"

#include <Eigen/Geometry>
#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

#include "solver/base/parallel.h"
#include "solver/dofs/faraway.h"
#include "solver/elements/catalogue.h"
#include "solver/elements/folds.h"
#include "solver/processes/ranks.h"

static bool ismembrane(int type) {
    return factsof(type).fam == family::plate && factsof(type).nodedofs == 3;
}

// Membranes that share nodes at which they are held flat, in parts: the lowest number of an element
// of the part and an element, part by part.
using partlist = std::vector<std::pair<int, int>>;

static partlist flatparts(const model& m, const std::vector<char>& held) {
    std::vector<int> lower(m.elements.size(), 0), at(m.nodes.size(), 0);
    const auto partof = [&](int e) {
        while (lower[std::size_t(e)] != e) e = lower[std::size_t(e)];
        return e;
    };
    for (int e = 1; e <= m.nelems(); ++e) {
        const elementdef& def = m.elements[std::size_t(e)];
        if (!ismembrane(def.type)) continue;
        lower[std::size_t(e)] = e;
        for (int k = 0; k < factsof(def.type).nodes; ++k) {
            int& other = at[std::size_t(def.node[k])];
            if (held[std::size_t(def.node[k])] == 0) continue;
            const int one = partof(e), two = other == 0 ? one : partof(other);
            other = std::min(one, two);
            lower[std::size_t(std::max(one, two))] = lower[std::size_t(e)] = other;
        }
    }
    partlist parts;
    for (int e = 1; e <= m.nelems(); ++e)
        if (lower[std::size_t(e)] != 0) parts.emplace_back(partof(e), e);
    std::ranges::sort(parts);
    return parts;
}

// Nodes that are held in a translation by themselves.
static std::vector<char> heldacross(const model& m, const dofmap& d) {
    std::vector<char> held(m.nodes.size(), 0);
    for (std::size_t i = 0; i < d.heldplain.size(); ++i)
        if (d.heldplain[i] && d.code[i % std::size_t(d.pernode)] <= 3)
            held[i / std::size_t(d.pernode) + 1] = 1;
    for (const helddirection& h : d.held)
        if (d.bodyof[std::size_t(h.owner)] < 0 && h.direction.head<3>().norm() > 0.5)
            held[std::size_t(h.owner)] = 1;
    return held;
}

// What only rounds the places of a plane, however coarsely, takes a large part of it off the plane
// by no more than what meets at a node; a curve does so the more the larger the part is.
static bool iscurved(const model& m, const cornerlist& corners, const std::vector<char>& held,
                     std::span<const std::pair<int, int>> part, double off) {
    const double more = 3;
    double most = -1;  // by what meets at nodes of which this process has all elements
    for (const auto& [first, e] : part) {
        const elementdef& def = m.elements[std::size_t(e)];
        for (int k = 0; k < factsof(def.type).nodes; ++k)
            if (held[std::size_t(def.node[k])] != 0 && iscounted(m, def.node[k]))
                most = std::max(most, offplaneat(m, corners.of(std::size_t(def.node[k]))));
    }
    return most >= 0 && off > more * most;
}

// Membranes of large parts that are no plane, though their nodes are held flat: 1 by element.
static void markflattened(const model& m, const cornerlist& corners, const std::vector<char>& held,
                          std::vector<char>& marked) {
    const partlist parts = flatparts(m, held);
    const double rounding = 3;  // half steps off a plane that are nothing else
    std::vector<vec3> places;
    std::vector<int> listedby(m.nodes.size(), 0);  // the part that has listed a node last
    for (auto from = parts.begin(); from != parts.end();) {
        const auto to = std::find_if(from, parts.end(),
                                     [&](const auto& one) { return one.first != from->first; });
        const std::span part(from, to);
        from = to;
        places.clear();
        for (const auto& [first, e] : part) {
            const elementdef& def = m.elements[std::size_t(e)];
            for (int k = 0; k < factsof(def.type).nodes; ++k) {
                const auto n = std::size_t(def.node[k]);
                if (std::exchange(listedby[n], first) != first) places.push_back(m.nodes[n]);
            }
        }
        const double off = offplane(places);
        if (part.size() < 2 || off <= rounding || !iscurved(m, corners, held, part, off)) continue;
        for (const auto& one : part) marked[std::size_t(one.second)] = 1;
    }
}

// Those at nodes that nothing but their own curvature holds, of so little that rounding changes it
// by a tenth and more: 1 by element.
static void markrounded(const model& m, const settings& s, const cornerlist& corners,
                        std::vector<char>& marked) {
    std::vector<char> alone(m.nodes.size(), 1);
    for (const nodalrow& row : m.constraints) alone[std::size_t(row.node)] = 0;
    for (const elementdef& e : m.elements)
        for (int k = 0; k < factsof(e.type).nodes && !ismembrane(e.type); ++k)
            alone[std::size_t(e.node[k])] = 0;
    const double plain = 8;  // tilts by rounding, over which a surface turns
    const auto isrounded = [&](std::span<const corner> here) {
        const auto at = [&m](const corner& one) { return m.elements[std::size_t(one.element)]; };
        const vec3 first = normalof(m, at(here.front()));
        double turned = 0, tilt = 0;
        for (const corner& one : here)
            turned = std::max(turned, normalof(m, at(one)).cross(first).norm());
        if (turned < leastangle) return false;
        for (const corner& one : here) tilt = std::max(tilt, tiltof(elementat(m, s, one.element)));
        return turned < plain * tilt && !isflatat(m, here);
    };
    std::vector<char> rounded(m.nodes.size(), 0);
    parallelpieces(m.nnodes(), 4096, [&](int from, int to, int) {
        for (auto n = std::size_t(from) + 1; n <= std::size_t(to); ++n)
            rounded[n] = alone[n] != 0 && corners.of(n).size() > 1 && isrounded(corners.of(n));
    });
    for (int n = 1; n <= m.nnodes(); ++n)
        for (const corner& one : corners.of(std::size_t(n)))
            if (rounded[std::size_t(n)] != 0) marked[std::size_t(one.element)] = 1;
}

void warnflattened(const model& m, const settings& s, const dofmap& d, runlog& log) {
    if (m.twod) return;
    std::vector<char> marked(m.elements.size(), 0);
    if (std::ranges::any_of(m.elements, [](const elementdef& e) { return ismembrane(e.type); })) {
        const cornerlist corners = listcorners(m);
        markflattened(m, corners, heldacross(m, d), marked);
        markrounded(m, s, corners, marked);
    }
    double curved = 0, first = -INFINITY;
    for (int e = m.nelems(); e > 0; --e) {
        if (marked[std::size_t(e)] == 0 || !isown(m, e)) continue;
        ++curved;
        first = -double(m.nameof(e));
    }
    allranks().sum(&curved, 1);
    if (curved == 0) return;
    const int name = int(-allranks().greatest({first})[0]);
    log.warn(std::to_string(long(curved)) + " membrane(s), the first of them element " +
             std::to_string(name) +
             ", curve by so little from one to the next that the files, with seven digits of a "
             "coordinate, hardly tell it. Some may count as flat, and what they carry by their "
             "curvature is not to be trusted. Use shells, or move the model nearer to the origin");
}
