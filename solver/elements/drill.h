// SPDX-License-Identifier: GPL-3.0-or-later
// Membranes with a rotation at the corners, the other half of a shell: degrees of freedom u1 u2 r3
// a corner in the axes of the plane. The rotation is that of the material; nothing is added to hold
// it.
#pragma once

#include "solver/elements/meanplane.h"

void stiffendrilling(const element& e, const flatshape& s, halfmatrix& k);
// The part of the single rotations that a membrane follows.
double followedpart(const element& e, const flatshape& s);
// By how much an edge bows to even stress with the rotations at its ends, over that of a beam: the
// same for the elements on both its sides, or these would turn its ends.
double edgebow(const element& e, int edge);
// Rows 3c..3c+2: membrane stress x, y, xy at corner c.
void stressdrilling(const element& e, const flatshape& s, halfmatrix& rows);
