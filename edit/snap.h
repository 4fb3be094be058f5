// SPDX-License-Identifier: GPL-3.0-or-later
// The snap of the point in work to nodes and graphic elements.
#pragma once

#include <functional>

// With Snap on: moves the point in work (scaled and model coordinates) to the nearest node or
// graphic point within twice the unit vector; a node wins over the end of a graphic element, which
// wins over the foot on one.
void snapto(int nview);
// Finds the foot of a point on graphic element g, model coordinates; the graphics tool hangs its
// geometry here.
extern std::function<bool(int g, const double* point, double* foot)> footongraphic;
