// SPDX-License-Identifier: GPL-3.0-or-later
// Hidden line pictures: elements as filled polygons from the farthest to the nearest, each shaded
// by its angle to a light.
#pragma once

#include "core/array.h"
#include "core/colours.h"

enum shades { shadegray, shadered, shadegreen, shadeblue };

extern Flag shadingon;
extern int shadecolor;          // of shades
extern float lightangxy;        // angle of the light to the x axis, degrees
extern float lightangz;         // and to the x-y plane
extern Integer lightintensity;  // 0..255

void inithidden();  // default settings

// Fills elemdepth(1..nelems, 0..1) with element and depth, the farthest first. Elements of equal
// depth stand in the order in which a selection sort from the top leaves them.
void sortdepth(int nview);
void drawhidden(int nview);
// One element as a polygon in the surface's fill colour with its outline in drawcolor.
void drawfacet(int e, int nview);

// Colour of a facet whose normal has this cosine to the light, -1..1.
colour shadeof(double cosine);
