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

// A place on a plotted element, by the shares of its corners.
struct plotplace {
    int e = 0;                          // 0: there is none
    double share[5] = {0, 0, 0, 0, 0};  // of corner 1..4
};
plotplace placeunder(int nview, double x, double y);  // the foremost; the view has been prepared
double valueat(const plotplace& at);
point2 pictureof(const plotplace& at, int nview, double& depth);  // centimetres

// Contours lie in view 1, the stress of line elements in all.
bool isplottedin(int nview);
// Does a painted face lie in front of a place?
bool iscovered(const point2& at, double depth, int nview);
// A text on a plate in the background's colour, its left edge in the middle at x, y; its right
// edge.
double drawplate(surface& s, double x, double y, const std::string& text);

// Tells it in the status line, and takes it away again.
void tellvalue(int nview, double x, double y);

// Rings and values at the places highest and lowest of the plot, while the switch is on.
void drawextremes(int nview);
