// SPDX-License-Identifier: GPL-3.0-or-later
// Degrees of freedom that no element stiffens - the normal of a flat membrane, the drilling of a
// plate, a node without elements - are held at 0, so that they are no mechanism.
#pragma once

#include "solver/dofs/dofs.h"

// Finds them, marks them in d (heldplain, or a space with fewer unknowns) and counts them in the
// log. What moved masses tie to what is stiff is left free: its inertia counts, and it has modes of
// no frequency.
void holdunstiffened(const model& m, const settings& s, masses moved, dofmap& d, runlog& log);
