// SPDX-License-Identifier: GPL-3.0-or-later
// Picking: the search for what lies nearest to the mouse point in a view.
//
// The clicked point is where unprojectpoint left it: curx, cury, curz and modelx, modely, modelz,
// with persu, persv its place on the view's plane. A search has no reach: it finds the nearest
// item however far; of items behind each other the one nearest in space wins. Before that a shape
// under the pointer decides, see edit/pickshape.h; nodes are their own shapes.
#pragma once

struct nearest {
    int item = 0;           // 0: there is none
    int part = 0;           // defining point of a graphic element
    double plane = 100000;  // distance on the view's plane, scaled units
    double space = 0;       // distance in space, scaled units
};

nearest picknode(int nview);
nearest pickelement(int nview);
nearest pickgraphic(int nview);  // the defining points of each
// The graphic element to snap to: of those that meet in the nearest defining point the one whose
// shape is nearest.
nearest picksnapgraphic(int nview);
nearest pickpatch(int nview);       // by the middle of its edges
nearest pickloadednode(int nview);  // a node with a load in the current load case

// What picknode, pickloadednode and pickelement find, without a pass over the model: the places of
// the items are kept until the view or the picture of the model changes. For the moving pointer.
nearest hovernode(int nview);
nearest hoverloadednode(int nview);
nearest hoverelement(int nview);
