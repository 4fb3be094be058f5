// SPDX-License-Identifier: GPL-3.0-or-later
// The records of graphic elements, and points in space.
//
// A record g of the lists graphics and graphics2 holds (g,0,0) kind, (g,0,1) spaces N, (g,0,2)
// factor F, (g,j,1..3) x y z of point j, model units. Geometry is computed in Double from the
// Singles of the record.
#pragma once

#include <array>

#include "core/array.h"
#include "core/codes.h"

using graphiclist = array3<float>;
using point3 = std::array<double, 3>;

point3 operator+(const point3& a, const point3& b);
point3 operator-(const point3& a, const point3& b);
point3 operator*(double f, const point3& a);
double dot(const point3& a, const point3& b);
point3 cross(const point3& a, const point3& b);
double lengthof(const point3& a);

int kindof(const graphiclist& list, int g);
const char* nameofkind(int kind);  // "Line", "Arc", "Circle"
point3 definitionpoint(const graphiclist& list, int g, int j);
void setdefinitionpoint(graphiclist& list, int g, int j, const point3& at);
// Writes kind, N = 1, F = 1 and zeroes for the rest of the header and point 3.
void openrecord(graphiclist& list, int g, int kind);

// Parameter of node i of N spaces with factor F: (i/N)^F for F >= 1, else 1 - (1 - i/N)^(1/F); N
// and F at or below 0 count as 1. F and 1/F mirror each other.
double spacingat(double i, double n, double f);
