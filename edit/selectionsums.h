// SPDX-License-Identifier: GPL-3.0-or-later
// What the selection comes to: counts, length of line elements, area of plates, mass, extents.
#pragma once

#include <array>
#include <string>

struct selectionsums {
    int nodes = 0, elements = 0, graphics = 0, patches = 0;
    double length = 0, area = 0;
    double mass = 0;  // of the elements whose group has a specific mass
    bool wholemass = true;
    std::array<double, 3> extent{};  // of all nodes and points selected, along x y z
};

// One pass over what is selected.
selectionsums sumselection();
// "12 nodes, 4 elements selected", from the counts alone; empty with nothing selected.
std::string selectioncounts();
// What stands behind the counts: "area 400; mass 0.1; 20 x 20 x 0".
std::string sumstext(const selectionsums& sums);
// Changes when the selection or the picture of the model does.
std::size_t selectionstamp();
