// SPDX-License-Identifier: GPL-3.0-or-later
// Order and numbers of the unknowns, and vectors by them.
#include "solver/dofs/dofs.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "solver/base/parallel.h"
#include "solver/base/refuse.h"
#include "solver/dofs/rigid.h"
#include "solver/elements/kinds.h"
#include "solver/processes/ranks.h"

// Free degrees of freedom of a node that is its own owner and has no space.
static int freecount(const dofmap& d, int n) {
    int count = 0;
    for (int k = 0; k < d.pernode; ++k) {
        const std::size_t i = d.index(n, k);
        count += !d.prescribed[i] && !d.heldplain[i];
    }
    return count;
}

int unknownsof(const dofmap& d, int owner) {
    const int space = d.spaceof[std::size_t(owner)];
    return space >= 0 ? d.spaces[std::size_t(space)].count : freecount(d, owner);
}

combination rowof(const model& m, const dofmap& d, int n, int k) {
    combination c;
    const std::size_t i = d.index(n, k);
    const int body = d.bodyof[std::size_t(n)];
    const int owner = body >= 0 ? d.bodies[std::size_t(body)].leader : n;
    const int space = d.spaceof[std::size_t(owner)];
    if (space < 0) {
        c.constant = d.prescribed[i] ? d.constant[i] : 0;
        c.count = freecount(d, n);
        int local = 0;
        for (int j = 0; j < k; ++j) {
            const std::size_t other = d.index(n, j);
            local += !d.prescribed[other] && !d.heldplain[other];
        }
        if (!d.prescribed[i] && !d.heldplain[i]) c.factor[local] = 1;
        return c;
    }
    const ownerspace& s = d.spaces[std::size_t(space)];
    vec6 arm = vec6::Zero();
    if (body >= 0)
        arm = bodyarm(m, d, d.bodies[std::size_t(body)], n).row(k);
    else
        arm[k] = 1;
    const vec6 factors = s.z.transpose() * arm;
    c.count = s.count;
    std::copy_n(factors.data(), s.count, c.factor);
    c.constant = arm.dot(s.start);
    return c;
}

ownerspace plainspace(const model& m, const dofmap& d, int n) {
    ownerspace space;
    space.owner = n;
    space.base = d.pernode;
    space.count = unknownsof(d, n);
    for (int k = 0; k < d.pernode; ++k) {
        const combination c = rowof(m, d, n, k);
        space.start[k] = c.constant;
        for (int j = 0; j < c.count; ++j) space.z(k, j) = c.factor[j];
    }
    return space;
}

// --- order and numbers --------------------------------------------------------------------------

// Elements of each owner, in compressed rows; an element is listed once an owner.
static void listelements(const model& m, const dofmap& d, whose taken,
                         std::vector<std::int64_t>& start, std::vector<int>& elements) {
    const auto eachowner = [&](auto use) {
        for (int e = 1; e <= m.nelems(); ++e) {
            const elementdef& def = m.elements[std::size_t(e)];
            const elementkind& kind = kindof(def.type);
            if (taken == whose::own && !isown(m, e)) continue;
            if (kind.stiffness == nullptr && kind.mass == nullptr) continue;
            const int count = kind.nodes;
            for (int i = 0; i < count; ++i) {
                const int owner = d.owner[std::size_t(def.node[i])];
                bool seen = owner == 0;
                for (int j = 0; j < i; ++j) seen |= d.owner[std::size_t(def.node[j])] == owner;
                if (!seen) use(owner, e);
            }
        }
    };
    start.assign(d.owner.size() + 1, 0);
    eachowner([&](int owner, int) { ++start[std::size_t(owner) + 1]; });
    for (std::size_t n = 1; n < start.size(); ++n) start[n] += start[n - 1];
    elements.resize(std::size_t(start.back()));
    std::vector<std::int64_t> next(start.begin(), start.end() - 1);
    eachowner([&](int owner, int e) { elements[std::size_t(next[std::size_t(owner)]++)] = e; });
}

nodegraph ownergraph(const model& m, const dofmap& d, std::vector<int>& list, whose taken) {
    std::vector<std::int64_t> start;
    std::vector<int> elements;
    listelements(m, d, taken, start, elements);
    list.clear();
    std::vector<int> place(d.owner.size(), -1), seen(d.owner.size(), -1);
    for (std::size_t n = 1; n < d.owner.size(); ++n)
        if (d.owner[n] == int(n)) {
            place[n] = int(list.size());
            list.push_back(int(n));
        }
    nodegraph graph;
    graph.start.push_back(0);
    for (const int owner : list) {
        graph.at.push_back(m.nodes[std::size_t(owner)]);
        const std::size_t begin = graph.neighbour.size();
        seen[std::size_t(owner)] = owner;
        for (auto i = start[std::size_t(owner)]; i < start[std::size_t(owner) + 1]; ++i) {
            const elementdef& def = m.elements[std::size_t(elements[std::size_t(i)])];
            for (int k = 0; k < kindof(def.type).nodes; ++k) {
                const int other = d.owner[std::size_t(def.node[k])];
                if (other == 0 || seen[std::size_t(other)] == owner) continue;
                seen[std::size_t(other)] = owner;
                graph.neighbour.push_back(place[std::size_t(other)]);
            }
        }
        std::sort(graph.neighbour.begin() + std::ptrdiff_t(begin), graph.neighbour.end());
        graph.start.push_back(std::int64_t(graph.neighbour.size()));
    }
    return graph;
}

// Equation of one degree of freedom once its owner's unknowns are numbered.
static void putequation(dofmap& d, std::size_t i, combination c, int first) {
    int factors = 0, last = 0;
    for (int j = 0; j < c.count; ++j)
        if (c.factor[j] != 0) {
            ++factors;
            last = j;
        }
    if (factors == 0) {
        d.equation[i] = dofmap::constantdof;
        d.constant[i] = c.constant;
    } else if (factors == 1 && c.factor[last] == 1 && c.constant == 0) {
        d.equation[i] = first + last;
    } else {
        c.first = first;
        d.equation[i] = -2 - int(d.combinations.size());
        d.combinations.push_back(c);
    }
}

void numberunknowns(const model& m, dofmap& d, const std::vector<int>& order) {
    d.position.assign(d.owner.size(), -1);
    d.firstunknown.clear();
    d.unknowncount.clear();
    d.combinations.clear();
    d.unknowns = 0;
    for (const int owner : order) {
        d.position[std::size_t(owner)] = int(d.firstunknown.size());
        d.firstunknown.push_back(d.unknowns);
        d.unknowncount.push_back(unknownsof(d, owner));
        d.unknowns += d.unknowncount.back();
    }
    if (d.nodes->alone()) d.unknownsofall = d.unknowns;
    const auto put = [&](int n) {
        const int owner = d.owner[std::size_t(n)];
        const int first =
            owner > 0 ? d.firstunknown[std::size_t(d.position[std::size_t(owner)])] : 0;
        for (int k = 0; k < d.pernode; ++k) putequation(d, d.index(n, k), rowof(m, d, n, k), first);
    };
    const auto isplain = [&](int n) {  // no combination of unknowns comes of it
        return d.bodyof[std::size_t(n)] < 0 && d.spaceof[std::size_t(n)] < 0;
    };
    parallelpieces(m.nnodes(), 4096, [&](int begin, int end, int) {
        for (int n = begin + 1; n <= end; ++n)
            if (isplain(n)) put(n);
    });
    for (int n = 1; n <= m.nnodes(); ++n)
        if (!isplain(n)) put(n);
}

int masscase(const model& m) {
    for (int lc = 1; lc <= m.ncases(); ++lc) {
        const loadcase& c = m.cases[std::size_t(lc)];
        double any = c.type != caseapplied && !c.nodal.empty();
        allranks().most(&any, 1);
        if (any != 0) return lc;
    }
    return 0;
}

vec3 firstnode(const model& m) {
    vec3 first = vec3::Constant(-INFINITY);
    if (const int n = m.placeofnode(1); n > 0 && n <= m.nnodes()) first = m.nodes[std::size_t(n)];
    allranks().most(first.data(), first.size());
    return first;
}

double modelsize(const model& m) {
    const vec3 first = firstnode(m);
    double size = 0;
    for (int n = 1; n <= m.nnodes(); ++n)
        size = std::max(size, (m.nodes[std::size_t(n)] - first).norm());
    allranks().most(&size, 1);
    return size;
}

nodebox boxof(const model& m, const std::function<bool(int)>& counts) {
    vec6 most = vec6::Constant(-INFINITY);  // of the coordinates, and of their negatives
    for (int n = 1; n <= m.nnodes(); ++n) {
        if (counts && !counts(n)) continue;
        const vec3& at = m.nodes[std::size_t(n)];
        most.head<3>() = most.head<3>().cwiseMax(at);
        most.tail<3>() = most.tail<3>().cwiseMax(-at);
    }
    allranks().most(most.data(), most.size());
    return {-most.tail<3>(), most.head<3>()};
}

elementdofs dofsof(const dofmap& d, const elementdef& e) {
    elementdofs list;
    const elementkind& kind = kindof(e.type);
    list.count = kind.nodes * kind.nodedofs;
    for (int i = 0; i < kind.nodes; ++i)
        for (int k = 0; k < kind.nodedofs; ++k) {
            const int place = d.place[k + 1];
            list.index[i * kind.nodedofs + k] = place < 0 ? -1 : int(d.index(e.node[i], place));
        }
    return list;
}

void expand(const dofmap& d, const double* x, double* u) {
    for (std::size_t i = 0; i < d.equation.size(); ++i) {
        const int q = d.equation[i];
        if (q >= 0) {
            u[i] = x[q];
        } else if (q == dofmap::constantdof) {
            u[i] = d.constant[i];
        } else {
            const combination& c = d.combinations[std::size_t(-2 - q)];
            u[i] = c.constant;
            for (int j = 0; j < c.count; ++j) u[i] += c.factor[j] * x[c.first + j];
        }
    }
}

void condense(const dofmap& d, const double* f, double* reduced) {
    std::fill_n(reduced, d.unknowns, 0.0);
    for (std::size_t i = 0; i < d.equation.size(); ++i) {
        const int q = d.equation[i];
        if (q >= 0) {
            reduced[q] += f[i];
        } else if (q < dofmap::constantdof) {
            const combination& c = d.combinations[std::size_t(-2 - q)];
            for (int j = 0; j < c.count; ++j) reduced[c.first + j] += c.factor[j] * f[i];
        }
    }
}

void keepgiven(const dofmap& d, double* u) {
    for (std::size_t i = 0; i < d.prescribed.size(); ++i)
        if (d.prescribed[i]) u[i] = d.constant[i];
}
