// SPDX-License-Identifier: GPL-3.0-or-later
// Elements and nodes are asked of the processes in whose stretch they lie, their homes.
#include "solver/dofs/deal.h"

#include <algorithm>
#include <map>
#include <numeric>

#include "solver/elements/catalogue.h"
#include "solver/processes/ranks.h"
#include "solver/processes/stretch.h"

namespace {
struct dealtelement {
    int number, rank;
    elementdef def;
};
struct dealtnode {
    double at[3];
};
// An element at a node, by their numbers.
struct meeting {
    int node, element;
};
using numberlist = std::vector<int>;  // ascending, each once
}  // namespace

static void sortnumbers(numberlist& list) {
    std::ranges::sort(list);
    list.erase(std::unique(list.begin(), list.end()), list.end());
}

static numberlist joined(const numberlist& a, const numberlist& b) {
    numberlist both;
    both.reserve(a.size() + b.size());
    std::ranges::set_union(a, b, std::back_inserter(both));
    return both;
}

template <typename Use>
static void eachnode(const elementdef& def, Use use) {
    for (int k = 0; k < factsof(def.type).nodes; ++k) use(def.node[k]);
}

// Asks items of their homes; tell(item, answers) puts what a home knows of one behind the answers.
template <typename Answer, typename Tell>
static std::vector<Answer> ask(const numberlist& items, const stretches& homes, Tell tell) {
    auto asked = everyrank<int>();
    for (const int item : items) asked[homes.homeof(item)].push_back(item);
    asked = exchange(std::move(asked));
    auto told = everyrank<Answer>();
    for (std::size_t r = 0; r < told.size(); ++r)
        for (const int item : asked[r]) tell(item, told[r]);
    told = exchange(std::move(told));
    return flattened(told);
}

// --- what meets at a node -----------------------------------------------------------------------

namespace {
// Of the nodes of this stretch, in compressed rows.
class meetings {
  public:
    meetings(const model& m, const stretches& homes) : first(homes.first()) {
        auto told = everyrank<meeting>();
        for (int e = 1; e <= m.nelems(); ++e)
            eachnode(m.elements[std::size_t(e)], [&](int n) {
                std::vector<meeting>& to = told[homes.homeof(n)];
                if (to.empty() || to.back().node != n || to.back().element != m.nameof(e))
                    to.push_back({n, m.nameof(e)});
            });
        told = exchange(std::move(told));
        start.assign(std::size_t(homes.count()) + 1, 0);
        for (const auto& some : told)
            for (const meeting& one : some) ++start[std::size_t(one.node - first) + 1];
        std::partial_sum(start.begin(), start.end(), start.begin());
        elements.resize(start.back());
        std::vector<std::size_t> next(start.begin(), start.end() - 1);
        for (const auto& some : told)
            for (const meeting& one : some)
                elements[next[std::size_t(one.node - first)]++] = one.element;
    }
    void tell(int node, std::vector<int>& to) const {
        const auto i = std::size_t(node - first);
        to.insert(to.end(), elements.begin() + std::ptrdiff_t(start[i]),
                  elements.begin() + std::ptrdiff_t(start[i + 1]));
    }
    numberlist without() const {
        numberlist list;
        for (std::size_t i = 0; i + 1 < start.size(); ++i)
            if (start[i] == start[i + 1]) list.push_back(first + int(i));
        return list;
    }

  private:
    int first;
    std::vector<std::size_t> start;
    std::vector<int> elements;
};
}  // namespace

// --- rigid bodies -------------------------------------------------------------------------------

namespace {
// All links of the model, which each process holds for this while.
class bodies {
  public:
    explicit bodies(const model& m) {
        std::vector<double> links;
        for (const elementdef& def : m.elements)
            if (def.type == typerigid)
                links.insert(links.end(), {double(def.node[0]), double(def.node[1])});
        links = allranks().gather(links);
        double count = double(links.size());
        allranks().takefirst(&count, 1);
        links.resize(std::size_t(count));
        allranks().takefirst(links.data(), std::int64_t(links.size()));
        for (const double n : links) nodes.push_back(int(n));
        sortnumbers(nodes);
        parent.resize(nodes.size());
        std::iota(parent.begin(), parent.end(), 0);
        for (std::size_t i = 0; i + 1 < links.size(); i += 2) {
            const int a = rootof(placeof(int(links[i]))), b = rootof(placeof(int(links[i + 1])));
            parent[std::size_t(std::max(a, b))] = std::min(a, b);
        }
    }
    // Adds to nodes those of the bodies that they touch.
    void complete(numberlist& some) {
        std::vector<char> touched(nodes.size(), 0);
        for (const int n : some)
            if (const int place = placeof(n); place >= 0) touched[std::size_t(rootof(place))] = 1;
        numberlist more;
        for (std::size_t i = 0; i < nodes.size(); ++i)
            if (touched[std::size_t(rootof(int(i)))]) more.push_back(nodes[i]);
        some = joined(some, more);
    }

  private:
    int placeof(int node) const {
        const auto at = std::ranges::lower_bound(nodes, node);
        return at != nodes.end() && *at == node ? int(at - nodes.begin()) : -1;
    }
    int rootof(int place) {
        int& up = parent[std::size_t(place)];
        return up == place ? place : up = rootof(up);
    }
    numberlist nodes;
    std::vector<int> parent;
};
}  // namespace

// --- the parts ----------------------------------------------------------------------------------

namespace {
class dealer {
  public:
    explicit dealer(model& stretch)
        : m(stretch),
          nodehomes(m.nodesofall),
          elementhomes(m.elementsofall),
          rank(allranks().partition(m)),
          at(m, nodehomes),
          links(m) {}

    void deal() {
        auto mine = everyrank<dealtelement>();
        for (int e = 1; e <= m.nelems(); ++e)
            mine[rank[std::size_t(e)]].push_back(dealt(m.nameof(e)));
        const std::vector<dealtelement> own = flattened(exchange(std::move(mine)));
        numberlist nodes = withnodes(own, freenodes());
        links.complete(nodes);
        const int rings = 2;  // and those that are held beyond
        for (int i = 0; i < rings; ++i) nodes = withnodes(elementsof(meetingat(nodes)), nodes);
        links.complete(nodes);
        const std::vector<dealtelement> held = elementsof(meetingat(nodes));
        nodes = withnodes(held, nodes);
        const auto places = ask<dealtnode>(nodes, nodehomes, [&](int n, auto& to) {
            const vec3& x = m.nodes[std::size_t(n + 1 - nodehomes.first())];
            to.push_back({{x[0], x[1], x[2]}});
        });
        take(held, nodes, places);
    }

  private:
    dealtelement dealt(int number) const {
        const auto i = std::size_t(number + 1 - elementhomes.first());
        return {number, rank[i], m.elements[i]};
    }
    // Nodes without elements are the first process's.
    numberlist freenodes() const {
        auto some = everyrank<int>();
        some[0] = at.without();
        return flattened(exchange(std::move(some)));
    }
    numberlist meetingat(const numberlist& nodes) const {
        numberlist list = ask<int>(nodes, nodehomes, [&](int n, auto& to) { at.tell(n, to); });
        sortnumbers(list);
        return list;
    }
    std::vector<dealtelement> elementsof(const numberlist& numbers) const {
        return ask<dealtelement>(numbers, elementhomes,
                                 [&](int e, auto& to) { to.push_back(dealt(e)); });
    }
    static numberlist withnodes(const std::vector<dealtelement>& elements,
                                const numberlist& others) {
        numberlist list = others;
        for (const dealtelement& one : elements)
            eachnode(one.def, [&](int n) { list.push_back(n); });
        sortnumbers(list);
        return list;
    }
    void take(const std::vector<dealtelement>& elements, const numberlist& nodes,
              const std::vector<dealtnode>& places) {
        m.nodenumber = {0};
        m.nodenumber.insert(m.nodenumber.end(), nodes.begin(), nodes.end());
        m.nodes.assign(nodes.size() + 1, vec3::Zero());
        for (std::size_t i = 0; i < nodes.size(); ++i) m.nodes[i + 1] = vec3(places[i].at);
        m.elementnumber = {0};
        m.elements.assign(1, {});
        m.elements.reserve(elements.size() + 1);
        m.rankof.assign(1, 0);
        for (const dealtelement& one : elements) {
            m.elementnumber.push_back(one.number);
            m.elements.push_back(one.def);
            m.rankof.push_back(std::uint16_t(one.rank));
            elementdef& def = m.elements.back();
            for (int k = 0; k < factsof(def.type).nodes; ++k)
                def.node[k] = m.placeofnode(def.node[k]);
        }
    }

    model& m;
    stretches nodehomes, elementhomes;
    std::vector<std::uint16_t> rank;
    meetings at;
    bodies links;
};
}  // namespace

// By the lowest process with an element there.
static void countnodes(model& m) {
    const int none = INT32_MAX;
    std::vector<int> lowest(m.nodes.size(), none);
    for (int e = 1; e <= m.nelems(); ++e)
        eachnode(m.elements[std::size_t(e)], [&](int n) {
            int& low = lowest[std::size_t(n)];
            low = std::min(low, int(m.rankof[std::size_t(e)]));
        });
    m.counted.resize(lowest.size());
    for (std::size_t n = 1; n < lowest.size(); ++n)
        m.counted[n] = lowest[n] == allranks().me() || (lowest[n] == none && allranks().first());
}

template <typename Row>
static void pickrows(std::vector<Row>& rows, int Row::*item, const placefunction& placeof) {
    std::erase_if(rows, [&](Row& row) {
        row.*item = placeof(row.*item);
        return row.*item == 0;
    });
    rows.shrink_to_fit();
}

void keeprows(model& m, const placefunction& placeofnode, const placefunction& placeof) {
    pickrows(m.constraints, &nodalrow::node, placeofnode);
    for (loadcase& c : m.cases) {
        pickrows(c.nodal, &nodalrow::node, placeofnode);
        pickrows(c.element, &elementrow::element, placeof);
    }
}

void dealmodel(model& m) {
    dealer(m).deal();
    countnodes(m);
    keeprows(
        m, [&](int n) { return m.placeofnode(n); }, [&](int e) { return m.placeof(e); });
}

// --- stretches ----------------------------------------------------------------------------------

void namestretch(model& m, int nodes, int elements) {
    m.nodesofall = nodes;
    m.elementsofall = elements;
    m.nodenumber = stretches(nodes).numbers();
    m.elementnumber = stretches(elements).numbers();
}

// Slot 0 stays.
template <typename Item>
static void cut(std::vector<Item>& items, const stretches& s) {
    items.erase(items.begin() + s.first() + s.count(), items.end());
    items.erase(items.begin() + 1, items.begin() + s.first());
    items.shrink_to_fit();
}

void keepstretch(model& m) {
    namestretch(m, m.nnodes(), m.nelems());
    cut(m.nodes, stretches(m.nodesofall));
    cut(m.elements, stretches(m.elementsofall));
}
