// SPDX-License-Identifier: GPL-3.0-or-later
// The shape of elements in figures: what an analysis refuses or takes badly.
#pragma once

#include <array>

#include "tools/graphiclist.h"

// Of an element of three or four nodes; sizes without unit.
struct elementshape {
    bool collapsed = false;  // two corners at one place, or no area
    bool inverted = false;   // a quadrilateral with a corner of 180 degrees or more, or edges that
                             // cross
    double warp = 0;         // height of the corners over their mean plane, of the root of the area
    double aspect = 1;   // longest edge over the least height; 1 for square and regular triangle
    double angle = 0;    // smallest, degrees
    double quality = 0;  // 1 for a square and a regular triangle, 0 and less where it has no use
};
elementshape shapeof(int e);
double qualityof(int e);  // the last figure alone; less than 0 for an element that has no face

bool hascorners(int e);  // all its nodes exist and stand somewhere
point3 placeofnode(int n);
double lengthofline(int e);  // of an element of two nodes
