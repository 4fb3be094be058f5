// SPDX-License-Identifier: GPL-3.0-or-later
// A model shared out among processes: no process ever needs the whole of it.
#pragma once

#include <functional>

#include "solver/base/model.h"

// Leaves to each process its stretch of nodes and elements; rows of loads and constraints stay.
// Numbers are those of the files.
void keepstretch(model& m);
// What is held are the stretches of so many nodes and elements.
void namestretch(model& m, int nodes, int elements);

// From stretches to parts: each process gets the elements that it works on (rankof) and three rings
// of those that meet them, with the nodes of all and whole rigid bodies. What the neighbours tell
// of elements and nodes - curvature, the normals at the nodes from it, the curves along edges from
// these, held directions - thus comes out alike for all but the outer rings, which are left
// (keeppart) when the degrees of freedom are known. Rows that concern none of it go.
void dealmodel(model& m);

// Takes rows to the new places of their nodes and elements, and leaves those of what has none: 0.
using placefunction = std::function<int(int)>;
void keeprows(model& m, const placefunction& placeofnode, const placefunction& placeof);
