// SPDX-License-Identifier: GPL-3.0-or-later
// From degrees of freedom to the unknowns of the equations and back: their graph and order, rows of
// a node, whole vectors.
#pragma once

#include <functional>

#include "solver/dofs/dofmap.h"

// Adds up what processes found of the forces or the like at each degree of freedom.
inline void sumshares(const dofmap& d, double* f) {
    d.nodes->sum(f, d.pernode);
}

// The case whose nodal rows are the masses of a vibration: the first one of a type other than
// applied that has any; 0 where there is none.
int masscase(const model& m);

// The place of node 1, which another process may hold.
vec3 firstnode(const model& m);
// How far from it the nodes reach.
double modelsize(const model& m);
// The box of the nodes n of all processes for which counts(n), with its sides along the axes.
struct nodebox {
    vec3 low, high;
    vec3 size() const { return high - low; }
    vec3 middle() const { return (low + high) / 2; }
};
nodebox boxof(const model& m, const std::function<bool(int)>& counts = {});

// Which owners share an element: neighbours of each place, sorted, in compressed rows.
struct nodegraph {
    std::vector<std::int64_t> start;
    std::vector<int> neighbour;
    std::vector<vec3> at;  // where each stands; empty where that is not known
    int size() const { return int(start.size()) - 1; }
};

// Graph of the owners that have unknowns, by the elements of this process or by all; list receives
// their node numbers.
enum class whose { own, all };
nodegraph ownergraph(const model& m, const dofmap& d, std::vector<int>& list,
                     whose elements = whose::own);

// Numbers the unknowns: owners in the order given.
void numberunknowns(const model& m, dofmap& d, const std::vector<int>& order);

// Unknowns of an owner before and after numbering.
int unknownsof(const dofmap& d, int owner);

// The k-th degree of freedom of node n by the unknowns of its owner; first is left at 0.
combination rowof(const model& m, const dofmap& d, int n, int k);

// The space that a node without one has by its constraints alone.
ownerspace plainspace(const model& m, const dofmap& d, int n);

// An element's degrees of freedom as the analysis knows them.
struct elementdofs {
    int count = 0;        // nodes x nodedofs of its kind
    int index[mostdofs];  // in the model's list, -1: the analysis has none (it stays 0)
};
elementdofs dofsof(const dofmap& d, const elementdef& e);

// vector of all degrees of freedom = constants + t x; and its transpose for loads.
void expand(const dofmap& d, const double* x, double* u);
void condense(const dofmap& d, const double* f, double* reduced);
// Displacements as the supports give them, at clamped nodes too, of which shells know more.
void keepgiven(const dofmap& d, double* u);
