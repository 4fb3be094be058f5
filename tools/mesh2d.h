// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog "2-D Mesh Generator": kind of mesh, element type and group, the edges with their
// graphic elements, and the mesh that stands in the buffers until it is accepted or thrown away.
//
// State: meshmode while the dialog is open, edgepending while graphic elements are picked for an
// edge, edgeno the index from 0 of that edge.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "core/array.h"

extern int edgeno;
extern Flag edgepending;

struct mesh2dform {
    int type = 0;                    // entry of meshtypes
    std::vector<std::string> types;  // element types that fit
    int chosentype = 0;
    std::string typenodes;            // nodes of the chosen element type
    std::vector<std::string> groups;  // names, the last group first
    int chosengroup = 0;
    int edges = 4;                             // buttons on show
    std::array<std::string, 4> count;          // nodes on each edge
    std::string frame = "Quadrilateral Mesh";  // caption of the example drawing
    bool cangenerate = true;
    int inverted = 0;  // elements of the meshes that stand in the buffers
    std::string message;
};
enum meshkinds { quadmesh, triangmesh, transitmesh, linemesh };
extern const char* const meshtypes[linemesh + 1];  // "Quad", "Triang", "Transit", "Line"

mesh2dform openmesh2d();
void closemesh2d(mesh2dform& form);  // Ready, or the window's own close

void choosemeshtype(mesh2dform& form, int type);
void LoadElem(mesh2dform& form);  // the element types with as many nodes as the kind of mesh wants
void chooseelementtype(mesh2dform& form, int entry);
void choosemeshgroup(mesh2dform& form, int entry);

// An edge button: the main window picks graphic elements until storeedge gets them.
void startedge(mesh2dform& form, int index);
void storeedge(mesh2dform& form);

// Edges that should have as many nodes as each other get those of the finest.
void equalspaces(mesh2dform& form);

void generatemesh(mesh2dform& form);  // on top of what stands in the buffers
void acceptmesh(mesh2dform& form);    // into the model: patch, paste, merges
void resetmesh(mesh2dform& form);
