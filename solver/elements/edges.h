// SPDX-License-Identifier: GPL-3.0-or-later
// What the elements at an edge of plates and shells share: how far it gives way to shear, whether
// it bows like that of a quadrilateral, whether it is free, and whether one shell alone has it.
#pragma once

#include "solver/base/settings.h"
#include "solver/elements/corners.h"

// Fills m.slip with the mean over the elements at each edge: the edge of a bent plate moves alike
// in all of them only where they find the same, and a patch test is exact only then.
void measureedges(model& m, const settings& s, const cornerlist& corners);
