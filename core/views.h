// SPDX-License-Identifier: GPL-3.0-or-later
// Parameters of the four views, their layout, and the registers of the projection.
//
// A view surface is measured in centimetres from its top left corner, x right, y down. Arrays run
// 0..4, views 1..4 are in use.
#pragma once

#include "core/array.h"

const int nviews = 4;
const float fullviewdepth = 1e30f;  // a slab that holds everything

extern array1<float> viewptx, viewpty, viewptz;  // model point on the view's axis
extern array1<float> viewvert, viewhor;          // angles, radians
extern array1<float> viewscale;                  // centimetres per model unit, in the single layout
extern array1<float> viewdist;                   // eye distance, scaled units
extern array1<float> viewaw;                     // depth of the image plane, scaled units
extern array1<float> viewdepth;                  // thickness of the visible slab, model units
extern array1<int> viewgroup;                    // group shown, 0 all
extern array1<int> viewtype;                     // 0 all elements, 1 group, 2 selection
extern array1<int> viewselnum;   // elements that the view's selection holds; 0 shows all
extern array1<float> dispscale;  // factor of drawn displacements

extern Flag singleview;              // one view, else four
extern double vieww, viewh;          // size of view 1's surface, centimetres; all views share it
extern double scalex, scaley;        // 1 in the single layout, 0.5 in four views
extern Integer activeview;           // view of the last mouse press
extern double unitveclen;            // centimetres of the unit vector of symbols
extern double sidebarw, sidebargap;  // left bar and gap, twips

// Point in work, in scaled coordinates (model coordinate times viewscale).
extern float curx, cury, curz;
// Where it lies on the surface (centimetres) and its depth with perspective (scaled units).
extern double scrx, scry;
extern float perspw;
// Model point found by unprojectpoint.
extern double modelx, modely, modelz;

// Allocates the tables above; called once at start.
void allocviews();
// Directions and scales of a fresh session.
void resetviews();
double todegrees(double radians);
double toradians(double degrees);
