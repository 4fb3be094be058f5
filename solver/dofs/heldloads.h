// SPDX-License-Identifier: GPL-3.0-or-later
// Loads along directions that are held because nothing stiffens them.
#pragma once

#include "solver/dofs/dofs.h"

// What the loads along held directions sum up to, moments about the origin: no reaction answers
// them.
vec6 heldload(const model& m, const dofmap& d, const double* f);

// Refuses a load in a held direction: nothing would carry it. What is only noise of a plane's
// flatness falls away in silence, a little more with a warning. f: all degrees of freedom of a
// case.
void checkheldloads(const model& m, const dofmap& d, const std::vector<float>& angle,
                    const double* f, int lc, runlog& log);
