// SPDX-License-Identifier: GPL-3.0-or-later
#include "solver/elements/corners.h"

#include "solver/elements/catalogue.h"

cornerlist listcorners(const model& m) {
    cornerlist list;
    list.start.assign(m.nodes.size() + 1, 0);
    const auto eachcorner = [&](auto use) {
        for (int e = 1; e <= m.nelems(); ++e) {
            const elementdef& def = m.elements[std::size_t(e)];
            if (factsof(def.type).fam != family::plate) continue;
            for (int k = 0; k < factsof(def.type).nodes; ++k)
                use(std::size_t(def.node[k]), corner{e, k});
        }
    };
    eachcorner([&](std::size_t n, const corner&) { ++list.start[n + 1]; });
    for (std::size_t n = 1; n < list.start.size(); ++n) list.start[n] += list.start[n - 1];
    list.corners.resize(list.start.back());
    std::vector<std::size_t> next(list.start.begin(), list.start.end() - 1);
    eachcorner([&](std::size_t n, const corner& one) { list.corners[next[n]++] = one; });
    return list;
}
