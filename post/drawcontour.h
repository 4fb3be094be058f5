// SPDX-License-Identifier: GPL-3.0-or-later
// The passes of the contour plots over the elements of a view.
#pragma once

// The passes of one view. The first is the contour plot: elements from the farthest to the nearest,
// each with its outline where "&Elements" is checked; then the legend. The second colours the line
// elements.
void postdispatch(int nview);
void drawcontour(int nview);  // its elements
void drawelementstress(int nview);

// The undeformed model in pale outlines beside a shape, while the switch is on.
extern bool ghoston;
void drawghost(int nview);
