// SPDX-License-Identifier: GPL-3.0-or-later
// A structure that can move without strain, found by its softest motion: what the equations of a
// mechanism make of a factor does not depend on the structure alone.
#pragma once

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
