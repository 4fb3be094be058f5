// SPDX-License-Identifier: GPL-3.0-or-later
// Drawing with graphic elements: shapes from points, and fillet, offset, split and trim of what is
// drawn. Works in any plane. New elements stand behind the last one of the list; nothing is changed
// where a message is thrown.
#pragma once

#include <vector>

#include "tools/path.h"

// Towards the eye of the active view, unit length: "counter-clockwise" and "the plane of the view"
// refer to it where points alone do not tell.
point3 sightline();

// Corners a and c, sides parallel to the axes: in the coordinate plane that both lie in, else
// upright. A side of no length is told.
std::vector<path> rectangle(const point3& a, const point3& c);
// Four quarter sections from the point on the circle, in the coordinate plane through both points
// that faces the eye most, else in the plane of the view's sight.
std::vector<path> circleabout(const point3& centre, const point3& on, const point3& sight);
// From the start, counter-clockwise as seen, to the direction of the third point; two sections
// where it is more than half a circle.
std::vector<path> arcabout(const point3& centre, const point3& start, const point3& towards,
                           const point3& sight);

void appendpaths(const std::vector<path>& paths);  // into the model

// Rounds the corner of the two selected lines: both end at the arc, the picked ends stay where the
// lines cross, else the far ones. Radius 0 joins them.
void fillet(double radius);
// Parallels of the selected lines and circle sections at this distance on the side of the point;
// chains keep their corners.
void offsetselected(double distance, const point3& side);
// Cuts the element nearest to the point there; both parts stay in patches and selections as one.
void splitat(int g, const point3& at);
// Takes the piece at the point away, between the nearest two places where others cross it.
void trimat(int g, const point3& at);
