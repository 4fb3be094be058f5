// SPDX-License-Identifier: GPL-3.0-or-later
// Directions of sections told by element, where the model turns them by group.
#pragma once

#include "exchange/imported.h"

// The angle in degrees by which the section of a line from a to b turns about it, so that its local
// axis 2 or 3 lies towards a vector; false where the vector lies along the line.
bool sectionangle(const triple& a, const triple& b, int axis, const triple& towards,
                  double& degrees);

// Elements whose sections are turned differently get groups of their own, by the angle behind the
// name; told in the report.
void orientgroups(imported& found);
