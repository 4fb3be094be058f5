// SPDX-License-Identifier: GPL-3.0-or-later
// What the elements at an edge of plates and shells share: how far it gives way to shear, whether
// it bows like that of a quadrilateral, and whether it is free.
#pragma once

#include "solver/elements/element.h"

// Fills m.slip with the mean over the elements at each edge: the edge of a bent plate moves alike
// in all of them only where they find the same, and a patch test is exact only then.
void measureedges(model& m, const settings& s);
