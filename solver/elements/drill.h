// SPDX-License-Identifier: GPL-3.0-or-later
// Membranes with a rotation at the corners, the other half of a shell: degrees of freedom u1 u2 r3
// a corner in the axes of the plane; for a triangle of a curved surface the others, too. The
// rotation is that of the material; nothing is added to hold it.
#pragma once

#include "solver/elements/curvedmembrane.h"

// Adds to k, over the six local degrees of freedom a corner.
void stiffendrilling(const element& e, const flatshape& s, elmatrix& k);
// Adds to rows 6c..6c+2: membrane stress x, y, xy at corner c.
void stressdrilling(const element& e, const flatshape& s, elmatrix& rows);
// Mean strain x, y, 2xy of a triangle.
trianglerows meanstrain(const element& e, const flatshape& s);
