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
// Flanges across axis 2, the first at its negative end, and the web between them along axis 2;
// where a flange has no width it is a tee, with its webs at an end of the flanges (-1, 1) a
// channel.
struct flangedshape {
    double depth = 0, web = 0;
    std::array<double, 2> widths{}, walls{};
    int webat = 0;
};
shapevalues flanged(const flangedshape& f);

void putshape(const shapevalues& s, std::array<double, groupfields + 1>& fields);
