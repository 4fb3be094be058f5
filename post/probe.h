// SPDX-License-Identifier: GPL-3.0-or-later
// Single values of a plot: the one under the pointer, and the marks at the highest and lowest.
#pragma once

#include <string>

#include "view/surface.h"

// Where a corner of an element is drawn on the prepared view, centimetres.
point2 cornerplace(int e, int corner, int nview);

// "SX 12.5 in element 7" for the foremost plotted element at x, y centimetres of a view; "" where
// there is none or the switch is off.
std::string valueunder(int nview, double x, double y);

// Tells it in the status line, and takes it away again.
void tellvalue(int nview, double x, double y);

// Rings and values at the places highest and lowest of the plot, while the switch is on.
void drawextremes(int nview);
