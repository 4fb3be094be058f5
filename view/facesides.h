// SPDX-License-Identifier: GPL-3.0-or-later
// Which faces lie side by side. Of every model one table is kept, and made anew when corners of
// elements have changed.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

// A side is 4 e + k: that from corner k to the next of the triangle or quadrilateral e, k = 0..3.
// Those over the same two nodes form a ring, a free side one of its own.
struct facesides {
    std::vector<int> ring;  // of a side the next in its ring
    static int elementof(int side) { return side / 4; }
    int next(int side) const { return ring[std::size_t(side)]; }
    bool isfree(int side) const { return next(side) == side; }
    bool ispair(int side) const { return !isfree(side) && next(next(side)) == side; }
    // Of each ring one, so that what its sides share is met once.
    bool isfirst(int side) const;
};
const facesides& sidesofmodel();

// Changes with corners and types of elements; withplaces also with coordinates of nodes.
std::uint64_t stampofmodel(bool withplaces);

// Unit normal of a triangle or quadrilateral; all zero where an element has none.
std::array<double, 3> facenormal(int e);
// Of every element by number, in the order of memory: met on the way from face to face they take
// three times as long.
std::vector<std::array<float, 3>> facenormals();
