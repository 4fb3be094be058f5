// SPDX-License-Identifier: GPL-3.0-or-later
// The circle through the three points of a circle section, its points and the change of its radius.
#pragma once

#include "tools/graphiclist.h"

// Registers of the last evaluation. Vectors and lengths in model units, angle in radians.
extern float circlecentre[4];  // 1..3
extern double circleradius;
extern double circleangle;                // swept from point 1 to point 2 by way of point 3
extern point3 circleu, circlev, circlen;  // unit vectors: to point 1, across in plane, normal

// A circle whose radius exceeds this many chords is a line.
const double straightfrom = 15;

// Evaluates the circle of element g. False where the points have none; the registers keep what they
// held. A section that is nearly straight becomes a line between points 1 and 2 for good.
bool evaluatecircle(graphiclist& list, int g);
point3 circlepoint(double angle);
// Moves point 3 so that the section has this radius: at least half the chord; beyond 15 chords the
// element becomes a line. The new arc bulges to the same side, and one of more than half a circle
// stays so.
void setradius(graphiclist& list, int g, double radius);
