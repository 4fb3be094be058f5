// SPDX-License-Identifier: GPL-3.0-or-later
// How far a shell's surface turns over each of its elements, which the element alone cannot know.
#pragma once

#include "solver/elements/corners.h"

// Fills m.curve. Nodes where the elements meet at a fold do not count.
void measurecurve(model& m, const cornerlist& corners);
