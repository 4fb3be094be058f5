// SPDX-License-Identifier: GPL-3.0-or-later
// Local axes of elements as values, the two turns of an element's node order, and distributed loads
// that keep their direction in space while the axes they are told in turn.
#pragma once

#include <array>
#include <functional>
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

// Node order of an element: one place on, the first node goes to the end; and the other side up,
// the order reversed and turned two places, with the rotation angle's sign changed. End releases
// stay with their nodes.
void rotatenodes(int e);
void mirrornodes(int e);

// Calls turn(e) for each of these elements and tells the loads on them in their new axes, so that
// each keeps its direction in space. Returns how many rows changed for that; -1, with nothing
// changed, when the loads would need more rows than are declared.
int turnwithloads(const std::vector<int>& meant, const std::function<void(int)>& turn);
