// SPDX-License-Identifier: GPL-3.0-or-later
// Cutting of lines and polygons to a box, for coordinates that a painter can not take: a model seen
// at a scale of 1E+30, points beside the eye, values that are no numbers.
#pragma once

#include <vector>

#include "view/surface.h"

// Half the side of the box around the origin beyond which coordinates are cut, pixels.
const double farpixel = 20000;

inline bool isplain(double v) {
    return v > -farpixel && v < farpixel;  // false for what is no number
}
inline bool isplain(const point2& p) {
    return isplain(p.x) && isplain(p.y);
}

// Cuts the line to the box. False when nothing of it is inside or an end is no number.
bool clipline(point2& a, point2& b);
// The polygon cut to the box, empty when nothing is inside or a corner is no number.
std::vector<point2> clippolygon(const point2* p, int n);
