// SPDX-License-Identifier: GPL-3.0-or-later
// Curved membranes of which the files do not tell the curvature: from one element to the next they
// turn by next to nothing beside the rounding of their places, and count as flat there.
#pragma once

#include "solver/dofs/dofs.h"

// Warns of them once d has what is held.
void warnflattened(const model& m, const settings& s, const dofmap& d, runlog& log);
