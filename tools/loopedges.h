// SPDX-License-Identifier: GPL-3.0-or-later
// A closed loop of graphic elements as the edges of a mesh region.
#pragma once

#include <array>
#include <string>
#include <vector>

struct regionedges {
    int count = 0;  // 4, 3, or 0: the elements are no loop that can be divided
    std::array<std::vector<int>, 4> chain;  // graphic elements of edge 1.. in the order of the mesh
};

// The corners are where the loop turns most sharply; where it turns alike, so that opposite edges
// have as many spaces. Three sharp corners give a triangle. At most 80 elements, in any order.
regionedges divideloop(const std::vector<int>& elements);
// "Edge 1: 2 pieces, 9 nodes; Edge 2: ..."
std::string tellregion(const regionedges& region);
