// SPDX-License-Identifier: GPL-3.0-or-later
// A graphic element as a plain value: its way through space, pieces of it, and where two of them
// meet. What is drawn new, cut, trimmed, rounded or moved parallel is worked out with these and
// enters the list of graphic elements whole.
#pragma once

#include <optional>
#include <utility>
#include <vector>

#include "tools/graphiclist.h"

struct path {
    int kind = kindline;
    point3 start{}, end{};
    point3 third{};                // control point of a curve, a point on a circle section
    point3 centre{}, u{}, v{};     // of a circle section: u to its start, v across in its plane
    double radius = 0, angle = 0;  // angle swept from start to end, radians
    double spaces = 1, factor = 1;

    point3 at(double t) const;     // t in 0..1 from start to end
    point3 along(double t) const;  // derivative by t
    path piece(double from, double to) const;
    path reversed() const;
};

path lineof(const point3& from, const point3& to);
// Swept about the centre from `start`, by an angle in 0..2 pi, counter-clockwise about the unit
// normal.
path arcof(const point3& centre, const point3& start, const point3& normal, double angle);

// Graphic element g; nothing for a free slot.
std::optional<path> pathof(graphiclist& list, int g);
void storepath(graphiclist& list, int g, const path& p);  // with its spaces and factor

std::vector<point3> polylineof(const path& p);  // chords no longer than 3 degrees of an arc
double lengthof(const path& p);
double nearestshare(const path& p, const point3& to);  // t of the point of p nearest to a point

// Parameters (on a, on b) where two of them meet within the reach, in order of the first. Ends that
// touch count; of stretches that lie on each other the ends alone do.
std::vector<std::pair<double, double>> crossings(const path& a, const path& b, double reach);

// The two parts of an element cut at t, 0 < t < 1: spaces are shared by the nodes on either side,
// and a graded element keeps its nodes on the side where the grading starts.
std::pair<path, path> cutat(const path& p, double t);
