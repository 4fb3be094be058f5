// SPDX-License-Identifier: GPL-3.0-or-later
// Shape of the Cholesky factor: which unknowns are eliminated together, which others they reach,
// and the tree in which they depend on each other.
#pragma once

#include <vector>

#include "solver/equations/assemble.h"
#include "solver/equations/front.h"

struct supernodetree {
    std::vector<int> first;           // unknowns first[s]..first[s+1]-1
    std::vector<std::int64_t> start;  // of the rows below them
    std::vector<int> row;             // ascending
    std::vector<int> parent;          // a later supernode, -1 at a root
    std::vector<std::vector<int>> children;
    double entries = 0, operations = 0;  // of the factor, with the zeros that it stores

    int size() const { return int(parent.size()); }
    int columns(int s) const { return first[std::size_t(s) + 1] - first[std::size_t(s)]; }
    int below(int s) const { return int(start[std::size_t(s) + 1] - start[std::size_t(s)]); }
    const int* rows(int s) const { return row.data() + start[std::size_t(s)]; }
    staircase front(int s) const { return {columns(s) + below(s), columns(s)}; }
    staircase update(int s) const { return {below(s), below(s)}; }
};

// Of a matrix whose unknowns are in the order of elimination.
supernodetree findsupernodes(const sparsematrix& a);

double operationsof(const supernodetree& t, int s);
