// SPDX-License-Identifier: GPL-3.0-or-later
// Section values of shapes that other programs tell by their dimensions.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "core/codes.h"

// Fields of a group from a shape: 1 is the axis about which I xx bends, widths lie along it.
struct shapevalues {
    double area = 0, i1 = 0, i2 = 0, torsion = 0;
    double depth1 = 0, depth2 = 0;  // along axes 1 and 2
};
shapevalues rectangle(double along1, double along2);
shapevalues ellipticbar(double diameter1, double diameter2);
shapevalues tube(double radius, double wall);
// Walls: the one at positive 1, at positive 2, at negative 1, at negative 2.
shapevalues hollowbox(double along1, double along2, const std::array<double, 4>& walls);

void putshape(const shapevalues& s, std::array<double, groupfields + 1>& fields);
