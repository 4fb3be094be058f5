// SPDX-License-Identifier: GPL-3.0-or-later
// Degrees of freedom that no element stiffens - the normal of a flat membrane, the drilling of a
// plate, a node without elements - are held at 0, so that they are no mechanism.
#pragma once

#include "solver/dofs/dofs.h"

// Finds them, marks them in d (heldplain, or a space with fewer unknowns) and counts them in the
// log. What moved masses tie to what is stiff is left free: its inertia counts, and it has modes of
// no frequency.
void holdunstiffened(const model& m, const settings& s, masses moved, dofmap& d, runlog& log);

// What the loads along held directions sum up to, moments about the origin: no reaction answers
// them.
vec6 heldload(const model& m, const dofmap& d, const double* f);

// Refuses a load in a held direction: nothing would carry it. What is only noise of a plane's
// flatness falls away in silence, a little more with a warning. f: all degrees of freedom of a
// case.
void checkheldloads(const model& m, const dofmap& d, const std::vector<float>& angle,
                    const double* f, int lc, runlog& log);
