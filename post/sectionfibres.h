// SPDX-License-Identifier: GPL-3.0-or-later
// Where the stress of a section without two axes of symmetry is largest: its corners, each with the
// distance that it really has, and the product of inertia that couples both ways of bending. State:
// what was found for the groups; dropped with the results.
#pragma once

#include <vector>

#include "view/surface.h"

struct sectionfibres {
    std::vector<point2> corners;  // x along e2, y along e3, from the centroid; none: two axes
    double ixy = 0;               // of the group's own I xx and I yy
    // Stress at a corner of a unit of My and of Mz.
    double ofmy(const point2& p, double ixx, double iyy) const;
    double ofmz(const point2& p, double ixx, double iyy) const;
};
const sectionfibres& fibresof(int group);
void dropfibres();
