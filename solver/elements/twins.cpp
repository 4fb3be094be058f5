// SPDX-License-Identifier: GPL-3.0-or-later
#include "solver/elements/twins.h"

#include <algorithm>
#include <bit>
#include <climits>

#include "core/numtext.h"
#include "solver/elements/catalogue.h"
#include "solver/processes/ranks.h"

namespace {
// What two twins have in common; nodes: in rising order, from 0s where it has fewer.
struct footprint {
    int type = 0, group = 0;
    int node[mostnodes] = {};
    bool operator==(const footprint&) const = default;
};
}  // namespace

static footprint footprintof(const elementdef& def) {
    footprint at{def.type, def.group, {}};
    std::copy_n(def.node, factsof(def.type).nodes, at.node);
    std::ranges::sort(at.node);
    return at;
}

static std::size_t hashof(const footprint& at) {
    std::size_t hash = std::size_t(at.type) << 32 | unsigned(at.group);
    for (const int n : at.node) hash = (hash ^ unsigned(n)) * 0x9E3779B97F4A7C15u;
    return hash ^ hash >> 32;
}

void telltwins(const model& m, runlog& log) {
    std::vector<int> table(std::bit_ceil(2 * m.elements.size()), 0);  // elements, 0: a free place
    double count = 0;
    int later = INT_MAX, former = 0;  // the first pair, as the files number them
    for (int e = 1; e <= m.nelems(); ++e) {
        const elementdef& def = m.elements[std::size_t(e)];
        const family fam = factsof(def.type).fam;
        if (fam != family::line && fam != family::plate) continue;
        const footprint mine = footprintof(def);
        std::size_t at = hashof(mine) % table.size();
        while (table[at] != 0 && footprintof(m.elements[std::size_t(table[at])]) != mine)
            at = (at + 1) % table.size();
        if (table[at] == 0)
            table[at] = e;
        else if (isown(m, e) && count++ == 0)
            later = m.nameof(e), former = m.nameof(table[at]);
    }
    allranks().sum(&count, 1);
    if (count == 0) return;
    const std::vector<double> first = allranks().greatest({-double(later), -double(former)});
    log.warn(std::to_string(long(count)) +
             " element(s) stand on the nodes of another one of their type and group, element " +
             numbertext(-first[0]) + " on those of element " + numbertext(-first[1]) +
             ". Both carry. Delete one, or give it a group of its own if it is meant");
}
