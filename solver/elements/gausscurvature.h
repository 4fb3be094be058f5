// SPDX-License-Identifier: GPL-3.0-or-later
// What an element on a curved surface costs beyond the stiffness of a flat one.
#pragma once

#include "solver/elements/meanplane.h"

// Adds to the half of bending, w r1 r2 a corner, the stretch that bending makes where it changes
// the Gauss curvature. Nothing on a flat surface.
void addgausscurvature(const element& e, const flatshape& s, halfmatrix& k);
