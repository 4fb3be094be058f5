// SPDX-License-Identifier: GPL-3.0-or-later
// Members drawn with their section and plates with their thickness.
#pragma once

#include <functional>
#include <vector>

#include "core/colours.h"
#include "view/camera.h"

// Outline of a group's section, closed polygons about its centroid in model units, x along e2 and
// y along e3: the first is the outside, others are holes or further parts. Empty for none. Filled
// in by the room of sections.
extern std::function<std::vector<std::vector<point2>>(int group)> sectionofgroup;

// Are solids asked for, and is this element thick enough on the surface to be seen as one?
bool issolid(int e, int nview);
// The element as a solid: with a shade, which gives the colour of a side by its outward normal, its
// visible sides filled and outlined in drawcolor, else its edges in drawcolor. False, and nothing
// is drawn, where it is none.
bool drawsolid(int e, int nview, colour (*shade)(const double* normal));
