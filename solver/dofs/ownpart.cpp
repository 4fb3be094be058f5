// SPDX-License-Identifier: GPL-3.0-or-later
#include "solver/dofs/ownpart.h"

#include <algorithm>
#include <numeric>

#include "solver/elements/kinds.h"

// --- which --------------------------------------------------------------------------------------

namespace {
struct selection {
    std::vector<char> node, element;  // 1: kept
    std::vector<char> counted;        // nodes, by the lowest process with an element there
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

static std::vector<char> countednodes(const model& m) {
    const int none = INT32_MAX;
    std::vector<int> lowest(m.nodes.size(), none);
    for (int e = 1; e <= m.nelems(); ++e)
        eachnode(m, e, [&](std::size_t n) {
            lowest[n] = std::min(lowest[n], int(m.rankof[std::size_t(e)]));
        });
    std::vector<char> counted(lowest.size());
    for (std::size_t n = 1; n < lowest.size(); ++n)
        counted[n] = lowest[n] == allranks().me() || (lowest[n] == none && allranks().first());
    return counted;
}

static selection choosepart(const model& m, const dofmap& d) {
    selection s;
    s.counted = countednodes(m);
    std::vector<char> own = s.counted;
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

template <typename Row>
static void pickrows(std::vector<Row>& rows, int Row::*item, const std::vector<int>& place) {
    std::erase_if(rows, [&](Row& row) {
        row.*item = place[std::size_t(row.*item)];
        return row.*item == 0;
    });
    rows.shrink_to_fit();
}

static void leavemodel(model& m, const std::vector<int>& nodes, const std::vector<int>& elements) {
    const std::vector<int> nodeplace = placesof(nodes, m.nodes.size());
    const std::vector<int> elementplace = placesof(elements, m.elements.size());
    m.nodesofall = m.nnodes();
    m.elementsofall = m.nelems();
    pick(m.nodes, nodes);
    pick(m.elements, elements);
    pick(m.curve, elements);
    pick(m.slip, elements);
    pick(m.fold, elements);
    pick(m.rankof, elements);
    for (elementdef& def : m.elements)
        for (int& n : def.node) n = nodeplace[std::size_t(n)];
    pickrows(m.constraints, &nodalrow::node, nodeplace);
    for (loadcase& c : m.cases) {
        pickrows(c.nodal, &nodalrow::node, nodeplace);
        pickrows(c.element, &elementrow::element, elementplace);
    }
    m.nodenumber = nodes;
    m.elementnumber = elements;
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

// By owner that has unknowns, in the order of the nodes: how many before it; one more at the end.
static std::vector<int> firstunknowns(const dofmap& d, std::vector<int>& owners) {
    std::vector<int> first = {0};
    for (std::size_t n = 1; n < d.owner.size(); ++n)
        if (d.owner[n] == int(n)) {
            owners.push_back(int(n));
            first.push_back(first.back() + unknownsof(d, int(n)));
        }
    return first;
}

void keeppart(model& m, dofmap& d) {
    std::vector<int> owners;
    d.firstofall = firstunknowns(d, owners);
    d.unknownsofall = d.firstofall.back();
    d.ownersofall = int(owners.size());
    selection s = choosepart(m, d);
    const std::vector<int> nodes = listkept(s.node);
    d.placeofall.clear();
    std::vector<int> first;
    for (std::size_t i = 0; i < owners.size(); ++i)
        if (s.node[std::size_t(owners[i])]) {
            d.placeofall.push_back(int(i));
            first.push_back(d.firstofall[i]);
        }
    d.firstofall = std::move(first);
    pick(s.counted, nodes);
    std::vector<int> numbers;
    for (std::size_t i = 1; i < nodes.size(); ++i) numbers.push_back(nodes[i] - 1);
    d.nodes = std::make_shared<const sharing>(
        std::move(numbers), std::vector<char>(s.counted.begin() + 1, s.counted.end()));
    leavemodel(m, nodes, listkept(s.element));
    leavedofs(d, nodes);
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
