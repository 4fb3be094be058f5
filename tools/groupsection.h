// SPDX-License-Identifier: GPL-3.0-or-later
// The outline of a group's section, for pictures of solid members and stresses at their corners:
// that of the section of typed dimensions or the standard profile whose values the group holds;
// for pictures else of a tube, an I beam or a bar that has the same ones.
//
// Sections of typed dimensions stay with the model's further data, section "shapes":
//
//     "L Profile US",80,120,10,0,1900,2771000,1003000,63333   B H tw tf, area, I xx, I yy, I zz
#pragma once

#include <vector>

#include "tools/sectionvalues.h"

// From the values alone, about the centroid; empty for none.
std::vector<std::vector<point2>> equivalentsection(const sectionvalues& values);
// x along e2, y along e3, about the centroid; empty where the group's values tell no section.
std::vector<std::vector<point2>> knownsection(int group);
void keepshape(int type, const dimensions& d, const sectionvalues& values);  // with the model
// Has members of a group drawn with that outline.
void wiregroupsections();
