// SPDX-License-Identifier: GPL-3.0-or-later
// What a triangle or quadrilateral knows of its edges by the elements there.
#pragma once

#include "solver/elements/element.h"

inline bool hasbit(const element& e, std::uint8_t edgeslip::*bits, int edge) {
    return e.slip && (e.slip->*bits >> edge & 1) != 0;
}

// Whether an edge of a triangular shell is that of a quadrilateral one too.
inline bool meetsquadrilateral(const element& e, int edge) {
    return hasbit(e, &edgeslip::meeting, edge);
}
// Whether the element alone has the edge and nothing holds or stiffens the rotations there.
inline bool isfreeedge(const element& e, int edge) {
    return hasbit(e, &edgeslip::free, edge);
}
// Whether the edge is straight to even stress: held so by supports, or that of a quadrilateral
// which alone has both its ends, as at the tip of a strip.
inline bool isstraightedge(const element& e, int edge) {
    return hasbit(e, &edgeslip::straight, edge);
}
