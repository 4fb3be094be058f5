// SPDX-License-Identifier: GPL-3.0-or-later
// Graphic elements for the tests of the tools.
#pragma once

#include "core/model.h"
#include "tools/Graphics.h"

// Appends an element; returns its number.
inline int addgraphic(int kind, point3 p1, point3 p2, point3 p3 = {0, 0, 0}, float spaces = 1,
                      float factor = 1) {
    const int g = ngraphics() + 1;
    openrecord(graphics, g, kind);
    graphics(g, 0, 1) = spaces;
    graphics(g, 0, 2) = factor;
    setdefinitionpoint(graphics, g, 1, p1);
    setdefinitionpoint(graphics, g, 2, p2);
    if (kind != kindline) setdefinitionpoint(graphics, g, 3, p3);
    graphics(0, 0, 0) = float(g);
    return g;
}

inline int addline(point3 p1, point3 p2, float spaces = 1, float factor = 1) {
    return addgraphic(kindline, p1, p2, {0, 0, 0}, spaces, factor);
}

inline void selectgraphicelement(int g, int point = 1) {
    const int count = graphsel(0, 0) + 1, entry = graphsel2(0, 0) + 1;
    graphsel(count, 0) = graphsel2(entry, 0) = g;
    graphsel(count, 1) = graphsel2(entry, 1) = point;
    graphsel(0, 0) = count;
    graphsel2(0, 0) = entry;
}
