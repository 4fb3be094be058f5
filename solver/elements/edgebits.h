// SPDX-License-Identifier: GPL-3.0-or-later
// What a triangle or quadrilateral knows of its edges by the elements there. To spare memory these
// are bits in the fourth value of a triangle's slip, for which it has no edge, and the sign of a
// quadrilateral's.
#pragma once

#include "solver/elements/element.h"

const int edgebits = 3;                                                // their place in the slip
enum edgebit : int { meetingbit = 1, freebit = 8, straightbit = 64 };  // edge 0's; then 1's, 2's

inline bool hasbit(const element& e, edgebit first, int edge) {
    return e.nodes == 3 && e.slip && (int((*e.slip)[edgebits]) & first << edge) != 0;
}

// Whether an edge of a triangular shell is that of a quadrilateral one too.
inline bool meetsquadrilateral(const element& e, int edge) {
    return hasbit(e, meetingbit, edge);
}
// Whether the triangle alone has the edge and nothing holds or stiffens the rotations there.
inline bool isfreeedge(const element& e, int edge) {
    return hasbit(e, freebit, edge);
}
// Whether the edge is straight to even stress: held so by supports, or that of a quadrilateral
// which alone has both its ends, as at the tip of a strip.
inline bool isstraightedge(const element& e, int edge) {
    return hasbit(e, straightbit, edge) ||
           (e.nodes == 4 && e.slip && (*e.slip)[std::size_t(edge)] < 0);
}
