// SPDX-License-Identifier: GPL-3.0-or-later
// The search for what lies nearest to the mouse point in a view, and the snap to it.
//
// The clicked point is where unprojectpoint left it: curx, cury, curz and modelx, modely, modelz,
// with persu, persv its place on the view's plane. A search has no reach: it finds the nearest
// item however far; of items behind each other the one nearest in space wins. Before that a shape
// under the pointer decides, see edit/pickshape.h; nodes are their own shapes.
#pragma once

#include <functional>

struct nearest {
    int item = 0;           // 0: there is none
    int part = 0;           // defining point of a graphic element
    double plane = 100000;  // distance on the view's plane, scaled units
    double space = 0;       // distance in space, scaled units
};

nearest picknode(int nview);
nearest pickelement(int nview);
nearest pickgraphic(int nview);     // the defining points of each
nearest pickpatch(int nview);       // by the middle of its edges
nearest pickloadednode(int nview);  // a node with a load in the current load case

// What picknode, pickloadednode and pickelement find, without a pass over the model: the places of
// the items are kept until the view or the picture of the model changes. For the moving pointer.
nearest hovernode(int nview);
nearest hoverloadednode(int nview);
nearest hoverelement(int nview);

// With Snap on: moves the point in work (scaled and model coordinates) to the nearest node or
// graphic point within twice the unit vector; a node wins over the end of a graphic element, which
// wins over the foot on one.
void snapto(int nview);
// Finds the foot of a point on graphic element g, model coordinates; the graphics tool hangs its
// geometry here.
extern std::function<bool(int g, const double* point, double* foot)> footongraphic;
