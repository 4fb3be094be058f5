// SPDX-License-Identifier: GPL-3.0-or-later
// The outline of a group's section, for pictures of solid members: that of the standard profile
// whose values the group holds, else of a tube, an I beam or a bar that has the same ones.
#pragma once

#include <vector>

#include "tools/sectionvalues.h"

// From the values alone, about the centroid; empty for none.
std::vector<std::vector<point2>> equivalentsection(const sectionvalues& values);
// Has members of a group drawn with that outline.
void wiregroupsections();
