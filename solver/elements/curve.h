// SPDX-License-Identifier: GPL-3.0-or-later
// How far a shell's surface turns over each of its elements, which the element alone cannot know.
#pragma once

#include "solver/base/model.h"
#include "solver/base/report.h"

// Fills m.curve. Nodes where the elements meet at a fold do not count.
void measurecurve(model& m);

// Warns of triangles and of quadrilaterals that lean where they carry a
// pressure over a surface which turns much for its thickness. Wants m.curve and m.fold.
void warncurved(const model& m, int lc, runlog& log);
