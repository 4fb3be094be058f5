// SPDX-License-Identifier: GPL-3.0-or-later
// Area, centroid and second moments of a section from its outline, by Green's theorem: an
// independent way to the values of the section tool.
#pragma once

#include "tools/sectionvalues.h"

struct outlinevalues {
    double area = 0, x = 0, y = 0, ixx = 0, iyy = 0;
};
outlinevalues outlineof(int type, const dimensions& d);
