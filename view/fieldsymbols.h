// SPDX-License-Identifier: GPL-3.0-or-later
// Shapes of the symbols that engineers draw: heads of arrows, supports. All in centimetres on the
// surface, in one colour.
#pragma once

#include "view/surface.h"

// Heads at the end of a stroke, one for a force and two for a moment. A stroke that points to the
// eye, or nearly so, has a dot in a ring.
void drawheads(surface& s, point2 from, point2 tip, int heads, colour c);

enum class supports { pin, roller, clamp };
// At a place, on its side towards the ground; a direction of no length is that of the eye.
void drawsupport(surface& s, supports kind, point2 at, point2 ground, colour c);
