// SPDX-License-Identifier: GPL-3.0-or-later
#include "solver/dofs/ownpart.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "solver/dofs/deal.h"
#include "solver/elements/kinds.h"
#include "solver/processes/stretch.h"

// --- which --------------------------------------------------------------------------------------

namespace {
struct selection {
    std::vector<char> node, element;  // 1: kept
};
}  // namespace

template <typename Use>
static void eachnode(const model& m, int e, Use use) {
    const elementdef& def = m.elements[std::size_t(e)];
    for (int k = 0; k < kindof(def.type).nodes; ++k) use(std::size_t(def.node[k]));
}

// A rigid body is kept whole.
static void addbodies(const dofmap& d, std::vector<char>& node) {
    for (const rigidbody& body : d.bodies)
        if (std::ranges::any_of(body.nodes, [&](int n) { return node[std::size_t(n)] != 0; }))
            for (const int n : body.nodes) node[std::size_t(n)] = 1;
}

static selection choosepart(const model& m, const dofmap& d) {
    selection s;
    std::vector<char> own = m.counted;
    for (int e = 1; e <= m.nelems(); ++e)
        if (isown(m, e)) eachnode(m, e, [&](std::size_t n) { own[n] = 1; });
    addbodies(d, own);
    s.node = own;
    s.element.assign(m.elements.size(), 0);
    for (int e = 1; e <= m.nelems(); ++e) {
        char& keeps = s.element[std::size_t(e)];
        eachnode(m, e, [&](std::size_t n) { keeps |= own[n]; });
        if (keeps) eachnode(m, e, [&](std::size_t n) { s.node[n] = 1; });
    }
    addbodies(d, s.node);
    return s;
}

// --- leaving the rest ---------------------------------------------------------------------------

// The kept ones of items 1..; slot 0 stays.
static std::vector<int> listkept(const std::vector<char>& keeps) {
    std::vector<int> list = {0};
    for (std::size_t i = 1; i < keeps.size(); ++i)
        if (keeps[i]) list.push_back(int(i));
    return list;
}

static std::vector<int> placesof(const std::vector<int>& list, std::size_t size) {
    std::vector<int> place(size, 0);
    for (std::size_t i = 1; i < list.size(); ++i) place[std::size_t(list[i])] = int(i);
    return place;
}

// width numbers an item; those of item i begin at (i - base) * width. What is empty stays so.
template <typename Value>
static void pick(std::vector<Value>& values, const std::vector<int>& list, int base = 0,
                 int width = 1) {
    if (values.empty()) return;
    const auto w = std::size_t(width);
    std::vector<Value> rest;
    rest.reserve((list.size() - std::size_t(base)) * w);
    for (std::size_t i = std::size_t(base); i < list.size(); ++i) {
        const auto from = values.begin() + std::ptrdiff_t(std::size_t(list[i] - base) * w);
        rest.insert(rest.end(), from, from + width);
    }
    values = std::move(rest);
}

static void leavemodel(model& m, const std::vector<int>& nodes, const std::vector<int>& elements) {
    const std::vector<int> nodeplace = placesof(nodes, m.nodes.size());
    const std::vector<int> elementplace = placesof(elements, m.elements.size());
    pick(m.nodes, nodes);
    pick(m.elements, elements);
    pick(m.curve, elements);
    pick(m.slip, elements);
    pick(m.fold, elements);
    pick(m.rankof, elements);
    m.clamped.clear();  // the degrees of freedom have them
    for (elementdef& def : m.elements)
        for (int& n : def.node) n = nodeplace[std::size_t(n)];
    keeprows(
        m, [&](int n) { return nodeplace[std::size_t(n)]; },
        [&](int e) { return elementplace[std::size_t(e)]; });
    pick(m.nodenumber, nodes);
    pick(m.elementnumber, elements);
    pick(m.counted, nodes);
}

// Bodies and spaces that lost no node, under their new places.
static void leavebodies(dofmap& d, const std::vector<int>& place) {
    std::vector<int> bodyplace, spaceplace;
    std::vector<rigidbody> bodies;
    for (rigidbody& body : d.bodies) {
        const bool keeps = place[std::size_t(body.leader)] > 0;
        bodyplace.push_back(keeps ? int(bodies.size()) : -1);
        if (!keeps) continue;
        body.leader = place[std::size_t(body.leader)];
        for (int& n : body.nodes) n = place[std::size_t(n)];
        bodies.push_back(std::move(body));
    }
    d.bodies = std::move(bodies);
    std::vector<ownerspace> spaces;
    for (ownerspace& space : d.spaces) {
        const bool keeps = place[std::size_t(space.owner)] > 0;
        spaceplace.push_back(keeps ? int(spaces.size()) : -1);
        if (!keeps) continue;
        space.owner = place[std::size_t(space.owner)];
        if (space.body >= 0) space.body = bodyplace[std::size_t(space.body)];
        spaces.push_back(space);
    }
    d.spaces = std::move(spaces);
    for (int& b : d.bodyof)
        if (b >= 0) b = bodyplace[std::size_t(b)];
    for (int& s : d.spaceof)
        if (s >= 0) s = spaceplace[std::size_t(s)];
    std::erase_if(d.held, [&](helddirection& h) {
        h.owner = place[std::size_t(h.owner)];
        return h.owner == 0;
    });
}

static void leavedofs(dofmap& d, const std::vector<int>& nodes) {
    const std::vector<int> place = placesof(nodes, d.owner.size());
    pick(d.equation, nodes, 1, d.pernode);
    pick(d.constant, nodes, 1, d.pernode);
    pick(d.prescribed, nodes, 1, d.pernode);
    pick(d.heldplain, nodes, 1, d.pernode);
    pick(d.owner, nodes);
    pick(d.bodyof, nodes);
    pick(d.spaceof, nodes);
    for (int& owner : d.owner) owner = place[std::size_t(owner)];
    leavebodies(d, place);
}

// Tells where the owners held here, and their first unknowns, are among those of all: whoever
// counts an owner tells its unknowns to the process that counts on over a stretch of the nodes.
static void findplaces(const model& m, dofmap& d) {
    std::vector<int> told, asked, stretch = stretches(m.allnodes()).numbers();
    std::vector<double> unknowns;
    for (int n = 1; n <= m.nnodes(); ++n) {
        if (d.owner[std::size_t(n)] != n) continue;
        asked.push_back(m.nameofnode(n));
        if (!iscounted(m, n)) continue;
        told.push_back(m.nameofnode(n));
        unknowns.insert(unknowns.end(), {1, double(unknownsof(d, n))});
    }
    stretch.erase(stretch.begin());
    std::vector<double> before(2 * stretch.size()), places(2 * asked.size()), sum = {0, 0};
    allranks().findroute(told, stretch)->pass(unknowns.data(), before.data(), 2, route::join::sum);
    for (std::size_t i = 0; i < before.size(); ++i)
        sum[i % 2] += std::exchange(before[i], sum[i % 2]);
    const std::vector<double> sums = allranks().collect(sum);
    double lower[2] = {}, all[2] = {};
    for (std::size_t i = 0; i < sums.size(); ++i) {
        all[i % 2] += sums[i];
        if (i / 2 < std::size_t(allranks().me())) lower[i % 2] += sums[i];
    }
    for (std::size_t i = 0; i < before.size(); ++i) before[i] += lower[i % 2];
    allranks().findroute(stretch, asked)->pass(before.data(), places.data(), 2, route::join::sum);
    d.ownersofall = int(all[0]);
    d.unknownsofall = int(all[1]);
    d.placeofall.clear();
    d.firstofall.clear();
    for (std::size_t i = 0; i < asked.size(); ++i) {
        d.placeofall.push_back(int(places[2 * i]));
        d.firstofall.push_back(int(places[2 * i + 1]));
    }
}

void keeppart(model& m, dofmap& d) {
    const selection s = choosepart(m, d);
    const std::vector<int> nodes = listkept(s.node);
    leavemodel(m, nodes, listkept(s.element));
    leavedofs(d, nodes);
    findplaces(m, d);
    std::vector<int> numbers;
    for (int n = 1; n <= m.nnodes(); ++n) numbers.push_back(m.nameofnode(n) - 1);
    d.nodes = std::make_shared<const sharing>(
        std::move(numbers), std::vector<char>(m.counted.begin() + 1, m.counted.end()));
}

// --- the equations of all -----------------------------------------------------------------------

void shareunknowns(dofmap& d) {
    std::vector<int> numbers(std::size_t(d.unknowns));
    std::vector<char> counted(numbers.size());
    for (std::size_t n = 1; n < d.owner.size(); ++n) {
        const int place = d.position[n];
        if (place < 0) continue;
        const auto first = std::size_t(d.firstunknown[std::size_t(place)]);
        for (int k = 0; k < d.unknowncount[std::size_t(place)]; ++k) {
            numbers[first + std::size_t(k)] = d.firstofall[std::size_t(place)] + k;
            counted[first + std::size_t(k)] = d.nodes->counts(n - 1);
        }
    }
    d.freedoms = std::make_shared<const sharing>(std::move(numbers), std::move(counted));
}

// Whoever counts an owner has all elements at it, and so all its neighbours. A row for each: its
// place, unknowns, neighbours and how many these are.
nodegraph gathergraph(const model& m, const dofmap& d, std::vector<int>& blocks) {
    std::vector<int> list;
    const nodegraph here = ownergraph(m, d, list, whose::all);
    std::vector<double> rows;
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (!d.nodes->counts(std::size_t(list[i] - 1))) continue;
        const auto begin = std::size_t(here.start[i]), end = std::size_t(here.start[i + 1]);
        rows.insert(rows.end(),
                    {double(d.placeofall[i]), double(d.unknowncount[i]), double(end - begin)});
        for (std::size_t k = begin; k < end; ++k)
            rows.push_back(d.placeofall[std::size_t(here.neighbour[k])]);
    }
    const std::vector<double> all = allranks().gather(rows);
    nodegraph graph;
    if (!allranks().first()) return graph;
    const auto owners = std::size_t(d.ownersofall);
    std::vector<std::size_t> at(owners, 0);
    blocks.assign(owners + 1, 0);
    graph.start.assign(owners + 1, 0);
    for (std::size_t i = 0; i < all.size(); i += 3 + std::size_t(all[i + 2])) {
        const auto place = std::size_t(all[i]);
        at[place] = i;
        blocks[place + 1] = int(all[i + 1]);
        graph.start[place + 1] = std::int64_t(all[i + 2]);
    }
    std::partial_sum(blocks.begin(), blocks.end(), blocks.begin());
    std::partial_sum(graph.start.begin(), graph.start.end(), graph.start.begin());
    graph.neighbour.reserve(std::size_t(graph.start.back()));
    for (std::size_t place = 0; place < owners; ++place)
        for (std::size_t k = 0; k < std::size_t(all[at[place] + 2]); ++k)
            graph.neighbour.push_back(int(all[at[place] + 3 + k]));
    return graph;
}
