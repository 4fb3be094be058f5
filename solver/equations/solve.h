// SPDX-License-Identifier: GPL-3.0-or-later
// The equations of the static cases: matrix, factor, displacements.
#pragma once

#include <string>
#include <vector>

#include "solver/dofs/ownpart.h"
#include "solver/equations/engine.h"

// The numbered equations of a model.
struct equations {
    dofmap dofs;
    sparsematrix stiffness;
    std::int64_t halfbandwidth = 0;  // in equations, in the order of the nodes' numbers
};

// Degrees of freedom, order and pattern; the matrix is assembled. Leaves to each of several
// processes what it keeps of the model.
equations makeequations(model& m, const settings& s, int anadof, runlog& log,
                        masses moved = masses::none);

// Half bandwidth that the equations have when they are numbered as the nodes are.
std::int64_t halfbandwidth(const model& m, const dofmap& d);

// Bytes that the own factor would take of the model, and the vectors of so many right sides.
double factorneed(const model& m, const settings& s, int anadof, int columns);

// Symbolic factor; refuses what this machine's memory cannot hold. columns: right sides at once.
void analysefactor(const equations& q, engine& l, int columns, runlog& log);

// Numerical factor; a mechanism is refused, named by node and direction.
void factorise(const model& m, const settings& s, const equations& q, engine& l, runlog& log);

// error: of each column the backward error |Ku-f| / (|K||u| + |f|): by which part of itself the
// stiffness or the load would have to change to make u exact. softest: the column, from 0, whose
// energy is the least against that of the diagonal, with this stiffness and this load; -1: none.
struct solvedcolumns {
    std::vector<double> error;
    int softest = -1;
    double stiffness = 0;
    std::vector<double> load;
};

// Solves in place; values: columns of q.dofs.unknowns numbers.
solvedcolumns solvecolumns(const equations& q, engine& l, double* values, int columns);
