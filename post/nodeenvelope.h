// SPDX-License-Identifier: GPL-3.0-or-later
// Displacements of nodes that set 1 of the nodes does not hold: their envelopes over combinations,
// and rotations. State: those of the quantity and the source on show.
#pragma once

#include <string>
#include <vector>

#include "post/enveloperows.h"

// Does the contour of displacements in a direction show such values?
bool needsnodeenvelope(int direction);
// Forms them once; false after it has told what is wrong.
bool readnodeenvelope(int direction);
void dropnodeenvelope();
const governed& governedatnode(int n);

// Largest and smallest of each quantity over the nodes.
struct nodeextremes {
    std::vector<std::string> names;
    std::vector<envelopebounds> bounds;
};
const nodeextremes& extremesofnodes();
