// SPDX-License-Identifier: GPL-3.0-or-later
// Soundness of the mesh that stands in the buffers: inverted elements, folds, sides without length,
// and a contour that crosses itself. Elements are looked at from number first on, for what stands
// before was made from other edges; the contour is that of edgedata.
#pragma once

#include <array>

// Elements that are inverted. In a flat region, those that turn the other way than the contour
// does, wholly or in one corner. In space, those without area, those that a corner of their own
// turns back, and those that lie back on a neighbour.
int invertedelements(int first);
// Sides where the mesh turns by more than a right angle or an element has no area.
int foldedplaces(int first);
// Sides whose ends are one place within nodetol.
int shortsides(int first);
// Two edges of a flat region that cross, or one edge twice; 0 0 for none.
std::array<int, 2> crossingedges();
