// SPDX-License-Identifier: GPL-3.0-or-later
// Local axes of elements as values, and distributed loads that keep their direction in space while
// the axes they are told in turn.
#pragma once

#include <array>
#include <vector>

#include "tools/graphiclist.h"

using elementaxes = std::array<point3, 3>;  // e1, e2, e3; 0 where the element is degenerate
elementaxes axesofelement(int e);

struct elementloadrow {
    int element, direction;  // local direction 1..3
    double value;
};
// The rows that give a load, told in the axes before, in the axes now: the same direction with
// either sign, or parts along two or three.
std::vector<elementloadrow> turnedload(const elementloadrow& row, const elementaxes& before,
                                       const elementaxes& now);
