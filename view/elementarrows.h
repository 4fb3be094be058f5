// SPDX-License-Identifier: GPL-3.0-or-later
// Loads on elements as arrows: a comb along a member, a raster over a plate.
#pragma once

#include "core/colours.h"
#include "view/thinning.h"

// Along a unit vector, length in scaled units, negative against it; value is the number beside it,
// by formula. Arrows of neighbours keep a distance, and their numbers a larger one. The view is
// prepared.
struct arrowload {
    const double* axis;
    double length, value;
    const char* formula;
    colour c;
};
struct arrowroom {
    explicit arrowroom(double width, double height)
        : arrows(width, height, arrowspacing * 0.75), numbers(width, height, numberspacing) {}
    static constexpr double arrowspacing = 0.4, numberspacing = 2.5;  // centimetres on the surface
    thinning arrows, numbers;
};
void drawelementarrows(int e, const arrowload& load, arrowroom& taken, int nview);
