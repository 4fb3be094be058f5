// SPDX-License-Identifier: GPL-3.0-or-later
// Numbers on contour lines: gathered while the lines are drawn and written over them.
#pragma once

#include "view/surface.h"

extern bool linelabelson;

void beginlinelabels();
// A piece of the line of a level was drawn here, its middle as deep.
void notelinepiece(double level, const point2& middle, double depth);
// Writes them, as far from each other as they can be read.
void drawlinelabels(int nview);
