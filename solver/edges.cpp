// SPDX-License-Identifier: GPL-3.0-or-later
// Edges that plates and shells share.
#include "solver/edges.h"

#include <algorithm>
#include <atomic>

#include "solver/bending.h"
#include "solver/catalogue.h"
#include "solver/parallel.h"

static bool bends(int type) {
    return type >= typeshell3 && type <= typeplate4;
}

namespace {
struct side {
    int far, element, edge;  // far: the node with the higher number
};

// Sides of the bent elements by the node with the lower number.
struct sidelist {
    std::vector<std::size_t> start;
    std::vector<side> sides;
};
}  // namespace

static sidelist listsides(const model& m) {
    sidelist list;
    list.start.assign(m.nodes.size() + 1, 0);
    const auto eachside = [&](auto use) {
        for (int e = 1; e <= m.nelems(); ++e) {
            const elementdef& def = m.elements[std::size_t(e)];
            if (!bends(def.type)) continue;
            const int corners = factsof(def.type).nodes;
            for (int k = 0; k < corners; ++k) {
                const int p = def.node[k], q = def.node[(k + 1) % corners];
                use(std::size_t(std::min(p, q)), side{std::max(p, q), e, k});
            }
        }
    };
    eachside([&](std::size_t low, const side&) { ++list.start[low + 1]; });
    for (std::size_t n = 1; n < list.start.size(); ++n) list.start[n] += list.start[n - 1];
    list.sides.resize(list.start.back());
    std::vector<std::size_t> next(list.start.begin(), list.start.end() - 1);
    eachside([&](std::size_t low, const side& one) { list.sides[next[low]++] = one; });
    return list;
}

static const int meeting = 3;  // place of the bits in the slip of a triangle

bool meetsquadrilateral(const element& e, int edge) {
    return e.slip && int((*e.slip)[meeting]) >> edge & 1;
}

void measureedges(model& m, const settings& s) {
    m.slip.clear();
    if (std::none_of(m.elements.begin(), m.elements.end(),
                     [](const elementdef& e) { return bends(e.type); }))
        return;
    std::vector<edgeslip> own(m.elements.size(), edgeslip{});
    parallelpieces(m.nelems(), 4096, [&](int first, int last, int) {
        for (int e = first + 1; e <= last; ++e)
            if (bends(m.elements[std::size_t(e)].type))
                own[std::size_t(e)] = slipofedges(elementat(m, s, e));
    });
    const sidelist list = listsides(m);
    m.slip = own;
    const auto typeat = [&m](const side& one) { return m.elements[std::size_t(one.element)].type; };
    parallelpieces(m.nnodes(), 4096, [&](int first, int last, int) {
        for (auto n = std::size_t(first) + 1; n <= std::size_t(last); ++n)
            for (std::size_t i = list.start[n]; i < list.start[n + 1]; ++i) {
                const side& one = list.sides[i];
                double sum = 0;
                int count = 0;
                bool quadrilateral = false;
                for (std::size_t j = list.start[n]; j < list.start[n + 1]; ++j) {
                    const side& other = list.sides[j];
                    if (other.far != one.far) continue;
                    sum += double(own[std::size_t(other.element)][std::size_t(other.edge)]);
                    ++count;
                    quadrilateral |= typeat(other) == typeshell4;
                }
                edgeslip& slip = m.slip[std::size_t(one.element)];
                slip[std::size_t(one.edge)] = float(sum / count);
                if (quadrilateral && typeat(one) == typeshell3)
                    std::atomic_ref(slip[meeting]).fetch_add(float(1 << one.edge));
            }
    });
}
