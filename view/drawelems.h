// SPDX-License-Identifier: GPL-3.0-or-later
// Nodes, elements and their labels in a view, and the selected ones.
#pragma once

#include "view/surface.h"

// Primitives of a view. Positions in centimetres.
extern double segx1, segy1, segx2, segy2;  // the segment of drawsegment
void drawsegment(int nview);               // in drawcolor
void plotpoint(int nview, double x, double y, colour c);
void plotto(int nview, double x, double y, colour c);
void printat(int nview, double x, double y, const std::string& text);

extern int nodecurrent, nodenext;  // work nodes of element drawing
extern double nodesize;            // 0.1 but after a search for a node; radius is 3/4 of it
// Circle at scrx, scry in drawcolor; in view 1 the label of nodecurrent beside it.
void drawnode(int nview);
void drawallnodes(int nview);

// Is element e drawn in this view? By its visibility mark, unless the view shows all.
bool isshown(int e, int nview);
// One element in drawcolor with its label and, when called for, its nodes. prepareview has run.
void drawelement(int e, int nview);
// Its lines alone, in drawcolor and the surface's width.
void drawelementoutline(int e, int nview);
// Draws a deformed line element as it bends; false where nothing tells how. Hung in from above.
extern bool (*curvedmember)(int e, int nview);
void drawallelements(int nview);
// The outlines of the two-node elements alone, each in its colour; what was drawn over them before
// does not change theirs.
void drawlineelements(int nview);

// Dots, supports and outlines thin out where they stand closer than this, centimetres: further
// apart over a contour plot, which lies under them.
double leastspacing(int nview);
bool isovercontour(int nview);
extern bool sidebyside;      // two results in view 1 and 2, each with a plot
bool isplotview(int nview);  // contour plots lie in view 1
// Has the element a side shorter than that on the surface?
bool iscrowded(int e, int nview);

// The selected ones of one view, in drawcolor.
void drawselectedelements(int nview);
void drawselectednodes(int nview);

// Colour in which element e stands in a wire picture.
colour colourofelement(int e);
// Mean of the node positions as drawn, scaled, into curx, cury, curz.
void setcentre(int e, int nview);
void drawelementlabel(int e, int nview);
// Those inside the depth slab, in nodecolor.
void drawelementnodes(int e, int nview);

// The second lists tmpnodes and tmpelems, a mesh or a model not yet in the model, in drawcolor:
// elements as open chains. previewbuffers has them drawn as a layer of their own.
extern bool previewbuffers;
void drawbuffers(int nview);
