// SPDX-License-Identifier: GPL-3.0-or-later
// Point entry of graphic elements: the modes Draw Line, Draw Curve and Draw Circle. A line takes
// two points, the others three; elements chain until the user stops.
#pragma once

#include "tools/Graphics.h"

enum class pointsteps { place = 1, back = 2 };

// Starts the mode of this kind; ends what runs.
void startdrawing(graphickinds kind);
// Places the point modelx, modely, modelz, snapped where Snap is on, as the next one of the element
// under construction, or takes its last one back.
void addgraphicpoint(pointsteps step);
void wirepointentry();
