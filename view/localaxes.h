// SPDX-License-Identifier: GPL-3.0-or-later
// Local axes of an element from its undeformed nodes, their picture, and end releases.
#pragma once

#include "core/array.h"
#include "core/colours.h"

// Result of the last call of localaxes, model units.
extern double axisorigin[3];
extern double localx[3], localy[3], localz[3];  // e1, e2, e3; 0 where the element is degenerate

// Sets origin and unit vectors of element e: plates e1 along the middle line from edge 4-1 to edge
// 2-3 (a triangle: from node 1 to node 2) and e3 normal; lines e1 from node 1 to node 2, e2 level,
// both turned about e1 by the section rotation of the group.
void localaxes(int e);

// Turns the evaluated e2 and e3 about e1 by the section rotation of the element's group.
void rotatequad(int e);

// Turns e1 and e2 of a plate by its own angle: the axes in which its stresses are told.
void turnedplateaxes(int e);

// The axes as stresses are told in them, red, green, blue: those of a plate are turned about its
// normal by the element's own angle. They stand in localx, localy, localz afterwards.
void drawlocalaxes(int e, int nview);
extern Flag axesonly;                            // while it is up they are computed and not drawn
void drawendrelease(int e, int end, int nview);  // end 1 or 2
// A stroke of this length (cm) from a scaled point along a unit vector, in the prepared view.
void drawstroke(const float* from, const double* direction, double length, int nview, colour c);
