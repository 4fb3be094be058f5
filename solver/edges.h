// SPDX-License-Identifier: GPL-3.0-or-later
// What the elements at an edge of plates and shells share: how far it gives way to shear, and
// whether it bows like that of a quadrilateral.
#pragma once

#include "solver/element.h"

// Fills m.slip with the mean over the elements at each edge: the edge of a bent plate moves alike
// in all of them only where they find the same, and a patch test is exact only then.
void measureedges(model& m, const settings& s);

// Whether an edge of a triangular shell is that of a quadrilateral one too. To spare memory these
// are bits in the fourth value of its slip, for which a triangle has no edge.
bool meetsquadrilateral(const element& e, int edge);
