// SPDX-License-Identifier: GPL-3.0-or-later
// Window layouts of the views, scroll bars, presets, zoom, pan and the copy of a view.
#pragma once

#include <vector>

#include "core/platform.h"

void setoneview();    // view 1 over the whole work area
void setfourviews();  // two by two
void settwoviews();   // view 1 and 2 side by side, until one of the others is chosen
void arrangeviews();  // the layout in use, again: after a resize
// Rectangle of a view in the layout in use, twips of the main window; left bar beside them.
twipbox viewplace(int nview, const twipbox& work, bool single);

void setscrollbars();
// Range of the bars for a surface of this size (cm) in a client area of this width (twips).
scrollrange scrollbarsof(double width, double height, double clientwidth);
// The bars of a view stand at horizontal, vertical: moves the view point and draws.
void scrollview(int nview, int horizontal, int vertical);

// Presets, in the order of their buttons: ISO, X-Y, X-Z, Y-Z.
struct viewpreset {
    const char* caption;
    double vertical, horizontal;  // degrees
};
extern const viewpreset viewpresets[4];
void setpreset(int nview, int preset);
void lookfrom(int nview, double vertical, double horizontal);    // degrees
void turnview(int nview, double horizontal, double vertical);    // by degrees
void turnangles(int nview, double horizontal, double vertical);  // without the redraw

void scaleview(int nview, double factor);
void halveview(int nview);   // the button zoomin1: makes the picture smaller
void doubleview(int nview);  // the button zoomout1
void fitview(int nview);

// Zoom about a point of the surface, which keeps its place (cm); factor above 1 enlarges.
void zoomview(int nview, double x, double y, double factor);
// Moves the picture by centimetres on the surface.
void panview(int nview, double dx, double dy);

// The drawn places of these nodes come into the middle of a view and fill half of it; a single
// place keeps the scale. Redraws it.
void zoomtonodes(int nview, const std::vector<int>& list);

// The elements that a view of a group or a selection shows, to another view.
void copyvisibility(int from, int to);
// Copies every parameter of a view to another and zooms that one on the rectangle with corners
// (x1,y1), (x2,y2) in centimetres.
void copyview(int sourceview, int targetview, double x1, double y1, double x2, double y2);

// The size that a main window of this size (twips) takes on: too narrow 8000, too low 8000.
void leastwindow(double& width, double& height);
