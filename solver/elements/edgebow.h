// SPDX-License-Identifier: GPL-3.0-or-later
// How the edges of a shell's membrane follow the rotations of its corners.
#pragma once

#include "solver/elements/meanplane.h"

// The part of the single rotations that a membrane follows.
double followedpart(const element& e, const flatshape& s);
// By how much an edge bows to even stress with the rotations at its ends, over that of a beam: the
// same for the elements on both its sides, or these would turn its ends.
double edgebow(const element& e, int edge);
// That of edges which triangles have among themselves: see drill.
const double trianglebow = 1.5;
