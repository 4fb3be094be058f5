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

// The choices come back when it goes: for meshes that are made beside the dialog's own.
class keptmeshchoice {
  public:
    keptmeshchoice();
    ~keptmeshchoice();
    keptmeshchoice(const keptmeshchoice&) = delete;
    keptmeshchoice& operator=(const keptmeshchoice&) = delete;

  private:
    std::string type;
    int elementtype, group;
};

int edgesof(const std::string& type);  // 4, 3, 3, 1
// 1 + the spaces of the graphic elements on an edge.
double nodesonedge(const graphiclist& list, int edge);

// Node counts that have to agree, and edges that are too long for the declared size.
void checkedges(const graphiclist& list);
// Room for the nodes and elements that the mesh needs at most, beside model and buffers.
void checkmeshsize(const graphiclist& list);

// All steps but the checks of size. False with the buffers as they were when meshok went false.
bool buildmesh(graphiclist& list);
