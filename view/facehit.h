// SPDX-License-Identifier: GPL-3.0-or-later
// Does a drawn element lie under a point of the surface, and what is its depth and value there?
#pragma once

#include "view/surface.h"

struct drawncorner {
    point2 at;  // centimetres
    double depth, value;
};
struct facehit {
    double depth = 0, value = 0;
};
// A face of 3 or 4 corners: a quadrilateral is the four triangles about its middle. Linear in each
// triangle.
bool hitface(const drawncorner* corner, int corners, const point2& p, facehit& found);
// Distance of a point from the line between two others, and how far along it the nearest place is,
// 0..1.
double distanceto(const point2& a, const point2& b, const point2& p, double& along);
