// SPDX-License-Identifier: GPL-3.0-or-later
// Which degrees of freedom an analysis has, which are prescribed, tied by rigid links or held
// because no element stiffens them.
#pragma once

#include "solver/dofs/dofmap.h"

// Whether any element has rotations.
bool turnsnodes(const model& m);

// anadof 0..3 from doftype (1..3) and the types that the model holds.
int analysiskind(const model& m, int doftype);

// Everything but the order of elimination: bodies, constraints, held directions, owners.
dofmap makedofs(const model& m, const settings& s, int anadof, masses moved, runlog& log);
