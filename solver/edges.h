// SPDX-License-Identifier: GPL-3.0-or-later
// How far the edges of plates and shells give way to shear, which the elements at an edge share.
#pragma once

#include "solver/model.h"
#include "solver/settings.h"

// Fills m.slip with the mean over the elements at each edge: the edge of a bent plate moves alike
// in all of them only where they find the same, and a patch test is exact only then.
void measureedges(model& m, const settings& s);
