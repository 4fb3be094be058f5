// SPDX-License-Identifier: GPL-3.0-or-later
// Patches: the remembered recipes of meshes, their storing and the meshes made anew from them.
#pragma once

#include "tools/Graphics.h"

// Writes meshtype, mesheltype, meshgroup and the chains graphmesh as patch number p; patches(0,0,0)
// is the caller's. Throws where a chain has more than 20 elements or a number does not fit, with
// the table as it was.
void storepatch(int p);

// "Quad", "Triang" or "Line" by the number of edges.
const char* typeofpatch(int edges);

// Takes kind, element type, group and chains of patch p into the tool; offset is added to the
// numbers of the graphic elements. False where the patch names an element that the list lacks.
bool loadpatch(const graphiclist& list, int p, int offset = 0);
// The mesh of patch p from the second graphic list, appended to the buffers. Tells nothing; false
// with the buffers as they were when the recipe does not close.
bool rebuildpatch(int p, int offset = 0);
