// SPDX-License-Identifier: GPL-3.0-or-later
// Crosses in the directions of the principal stresses over a contour plot of one of them, an
// element at its middle: blue strokes pull, red ones press.
#pragma once

void drawcrosses(int nview);
