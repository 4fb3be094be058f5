// SPDX-License-Identifier: GPL-3.0-or-later
// Where the items stand that can be picked.
#pragma once

#include <vector>

// Points that a graphic element has: 2 for a line, 3 for the others.
int pointsofgraphic(int kind);
// Mean of the end points of all pieces of patch p, model coordinates; false where it has none.
bool findpatchcentre(int p, double* centre);
// What the places of the items in a view depend on.
std::vector<double> pickstate(int nview);
