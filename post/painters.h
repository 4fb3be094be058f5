// SPDX-License-Identifier: GPL-3.0-or-later
// The two painters of contour plots. Both work on one element at a time, by exact linear
// interpolation in triangles: a triangle is one, a quadrilateral four around its middle.
//
// Work arrays of the element, index 1..4 its corners, 5 its middle, which the painters set. The
// view has been prepared.
#pragma once

extern float ex[6], ey[6], ez[6];  // drawn places, model units
extern float ev[6];                // value
extern int en[6];                  // node number

// Places of the corners of element e as drawn, deformed while undeformed is 0, and their values.
void prepareelement(int e, int nview);
// The whole face in one colour.
void paintface(int nview, int corners, int colour);
// Lines at the ten levels of the index, those at indexmin and indexmax included. corners other
// than 3 and 4 draw nothing.
void paintlines(int nview, int corners);
// The ten bands of the index as filled polygons. An element whose values all lie at fillstart or
// above is left unfilled and false is returned. One of less than two pixels has the colour of its
// middle.
bool paintfill(int nview, int corners);
