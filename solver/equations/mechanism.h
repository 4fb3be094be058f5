// SPDX-License-Identifier: GPL-3.0-or-later
// A structure that can move without strain, found by its softest motion: what the equations of a
// mechanism make of a factor does not depend on the structure alone.
#pragma once

#include <string>
#include "solver/equations/assemble.h"

// The smallest pivot of a factor.
struct pivotfound {
    bool definite = false;     // all pivots are above 0
    double size = 0;           // over the matrix' own diagonal
    std::int64_t unknown = 0;  // of all
};

// Refuses a mechanism, named by node and direction and the extent of what moves with it, negative
// stiffness, and equations without a useful digit. Returns where the structure is only soft.
void refusemechanism(const model& m, const settings& s, const dofmap& d,
                     const sparsematrix& stiffness, const pivotfound& p, runlog& log);

// Refuses a motion of the unknowns: node, direction and extent of what moves with it.
[[noreturn]] void refusemotion(const model& m, const settings& s, const dofmap& d,
                               const std::vector<double>& v);

// Why equations whose solution is these displacements cannot be solved to a useful accuracy, and
// what to do: elements of too different stiffness, or what moves most.
std::string whyillconditioned(const model& m, const settings& s, const dofmap& d,
                              const std::vector<double>& u);
