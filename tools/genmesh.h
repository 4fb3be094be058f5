// SPDX-License-Identifier: GPL-3.0-or-later
// The 2-D mesh generator: from chains of graphic elements along the edges of a region to a
// structured grid of nodes and elements in the buffers tmpnodes and tmpelems.
//
// graphmesh(e,0) counts the graphic elements of edge e, graphmesh(e,1..) are their numbers. Steps
// append to the buffers. The routines work on the list graphics, or on graphics2 when a mesh is
// made anew from its patch.
#pragma once

#include <string>

#include "core/array.h"
#include "tools/Graphics.h"

extern std::string meshtype;  // "Quad", "Triang", "Transit" or "Line"
extern int mesheltype;        // element type, an index in the catalogue
extern Flag meshok;           // result of the last check
extern Flag meshfaded;  // the rows of the last triangular mesh follow edge 3, see placeinterior
// What stopped the last check or sort, for the dialog's message field; empty when nothing did.
extern std::string meshmessage;

int edgesof(const std::string& type);  // 4, 3, 3, 1
// 1 + the spaces of the graphic elements on an edge.
double nodesonedge(const graphiclist& list, int edge);

// Node counts that have to agree, and edges that are too long for the declared size.
void checkedges(const graphiclist& list);
// Room for the nodes and elements that the mesh needs at most, beside model and buffers.
void checkmeshsize(const graphiclist& list);

// Puts the elements of each edge in the order of the chain and turns them to run along it; a turned
// element has its points exchanged and its factor inverted, for good. meshok tells the outcome.
void sortchains(graphiclist& list);
// Nodes of all edges into the buffer and edgedata. A corner has one for each edge that reaches it.
void placeedgenodes(graphiclist& list);
// The grid edgegrid and the nodes within: linear from edge 1 to edge 2 along each row, plus the
// deviations of the two side edges from their chords, blended over the rows: edges 3 and 4 of
// quadrilaterals, 2 and 3 of triangles. Where that would invert elements of a triangular region,
// buildmesh lets the rows follow edge 3 instead, each less than the one before.
void placeinterior();
// Elements of 4, 3 or 2 nodes. With 2 nodes the chain is walked again: pieces do not share the node
// where they meet, a circle section gives its end node in the last place alone, and a curve gives
// nodes but no elements.
void createelements(graphiclist& list);

// All steps but the checks of size. False with the buffers as they were when meshok went false.
bool buildmesh(graphiclist& list);
