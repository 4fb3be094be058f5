// SPDX-License-Identifier: GPL-3.0-or-later
// The commands Intersection, Extend line and Connect 3-D on the selected graphic elements.
#pragma once

#include "core/array.h"

enum class connectmodes { intersection, extend, connect3d };

extern double linetol[3];  // 1, 2: nodetol as a share of the line
extern Flag extendmode;    // Extend runs

// Treats the pair graphsel(i), graphsel(j); returns how many lines it made.
int connectpair(int i, int j);
// Runs over all pairs of the selection, then once more over the lengthened selection. New lines
// have one space and factor 1; those that are cut keep theirs.
void connectgraphics(connectmodes mode);
