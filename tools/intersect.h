// SPDX-License-Identifier: GPL-3.0-or-later
// The commands Intersection, Extend line and Connect 3-D on the selected graphic elements.
#pragma once

#include "core/array.h"

enum class connectmodes { intersection, extend, connect3d };

// Rows 1 and 2 hold a point and a direction of the two lines; index 1..3 is x y z.
extern double gmat1[3][4], gmat2[3][4];
extern double lineparam[3];  // 1, 2: parameters found
extern Flag linehit;
extern double linetol[3];  // 1, 2: nodetol as a share of the line
extern Flag extendmode;    // Extend runs

// The points of closest approach of the two lines in space, one parameter on each. Parallel lines
// are no hit.
void intersectlines();
// The line of a row with the circle evaluated last, both parameters on the line. In plan: x and y
// alone are used.
void intersectcircle(int row);

// Treats the pair graphsel(i), graphsel(j); returns how many lines it made.
int connectpair(int i, int j);
// Runs over all pairs of the selection, then once more over the lengthened selection. New lines
// have one space and factor 1; those that are cut keep theirs.
void connectgraphics(connectmodes mode);
