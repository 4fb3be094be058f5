// SPDX-License-Identifier: GPL-3.0-or-later
// Where two lines in space come closest.
#pragma once

#include "core/array.h"
#include "tools/graphiclist.h"

// Rows 1 and 2 hold a point and a direction of the two lines; index 1..3 is x y z.
extern double gmat1[3][4], gmat2[3][4];
extern double lineparam[3];  // 1, 2: parameters found
extern Flag linehit;

// The points of closest approach of the two lines in space, one parameter on each. Parallel lines
// are no hit.
void intersectlines();
point3 rowof(const double (&matrix)[3][4], int row);
// Point t of the line of a row.
point3 alongrow(int row, double t);
void nohit();  // linehit goes off, the parameters are 0
