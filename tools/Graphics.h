// SPDX-License-Identifier: GPL-3.0-or-later
// The room tools: what makes geometry and properties: graphic elements, mesh generator, patches,
// groups, sections, single elements.
//
// Graphic elements: drawn contour pieces that carry mesh spaces and a distribution factor. Their
// geometry, the spacing of the nodes along them, and their picture.
//
// An element is loaded into the registers once, then gives its points.
#pragma once

#include <vector>

#include "tools/graphiclist.h"

// Control points of the curve loaded last, a quadratic Bezier curve over points 1, 3, 2: it passes
// through the ends alone. Index 1..3 and 0..2.
extern float curvex[4], curvey[4], curvez[4];
extern short curvedeg;        // always 2
extern double curvebinom[3];  // binomial coefficients

// Loads element g; a circle section may become a line by that (tools/circle.h). False for a free
// slot.
bool setgraphic(graphiclist& list, int g);
// The point at t in 0..1 of the element loaded last. A circle section that has no circle through
// its points is drawn as its chord.
point3 graphicpoint(double t);

// The place of node i of N spaces with factor F on the element loaded last. A line turned round,
// with 1/F, has its nodes in the very same places.
point3 graphicnode(double i, double n, double f);

extern double linelength;  // length of the line in edit
double lengthofline(const graphiclist& list, int g);
// Applies linelength to the line graphsel(k,0): the picked end moves, the other one stays.
void dline(int k);

// Drawing in drawcolor; the single ones need prepareview before.
void drawgraphic(graphiclist& list, int g, int nview);
void drawgraphicnodes(graphiclist& list, int g, int nview);  // spacing marks
void drawpatch(int p, int nview);                            // its edges

// Layers, picking and snapping into the tables of the floors below.
void wiregraphics();
