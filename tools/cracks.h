// SPDX-License-Identifier: GPL-3.0-or-later
// Edges of the plates: those that belong to one plate alone, the places where such edges lie on
// each other without being joined, and neighbours whose normals point to opposite sides.
#pragma once

#include <utility>
#include <vector>

struct plateedge {
    int a, b, element;  // in the direction in which the element runs along it
};
struct edgepair {
    plateedge first, second;
};

struct plateedges {
    std::vector<plateedge> lonely;   // of one plate
    std::vector<edgepair> opposite;  // two plates of one group run along it in the same direction
};
plateedges findedges();
// Pairs of lonely edges that run along each other for a part of their length. Nearness is the merge
// tolerance, but not less than a thousandth and not more than a twentieth of the edge.
std::vector<edgepair> findcracks(const std::vector<plateedge>& lonely);

// Pairs of nodes that a spring or a rigid link joins, sorted, the lower first: what lies on one
// place there does so on purpose.
std::vector<std::pair<int, int>> joinednodes();
