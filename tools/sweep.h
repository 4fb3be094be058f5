// SPDX-License-Identifier: GPL-3.0-or-later
// Copies in rows and about an axis, sweeps of drawn lines and nodes into elements, and projection
// of nodes: what is selected, done at once.
//
// What is made is selected and merges with what it meets when it is released, as after a paste.
// Routines throw, with the model as it was, where something does not fit; they return what the user
// should know, or nothing.
#pragma once

#include <string>

#include "tools/graphiclist.h"

// A rigid motion: a turn by an angle (radians) about an axis through a point, or a way.
struct motion {
    point3 way{};
    point3 through{}, axis{};  // the axis has unit length; 0 for a motion by a way alone
    double angle = 0;

    point3 place(const point3& p) const;
    point3 direction(const point3& d) const;
    motion times(int count) const;
};
motion shiftby(const point3& way);
// Throws where the axis has no length. The right-hand rule holds.
motion turnabout(const point3& through, const point3& axis, double angle);

// `copies` copies of the selected nodes, elements and graphic elements, each one motion on from the
// one before, with supports, loads, releases and groups. Forces, masses and supports turn too;
// a support that no turned direction of the model can hold is left out and told.
std::string copyselected(const motion& by, int copies);

// The selected graphic elements (with their spaces) and line elements become shells, selected nodes
// beams, in `layers` steps of one motion each; of the current group. A full turn closes; what lies
// on the axis becomes triangles.
std::string sweepselected(const motion& by, int layers);

// Nodes and graphic points of the selection to their nearest places on a plane through a point, or
// on a cylinder about an axis. A point on the axis of the cylinder has none and is told.
std::string projectonplane(const point3& through, const point3& normal);
std::string projectoncylinder(const point3& through, const point3& axis, double radius);
