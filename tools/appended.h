// SPDX-License-Identifier: GPL-3.0-or-later
// New items behind those that the model has, and their selection.
#pragma once

#include <array>

#include "tools/graphiclist.h"

// Throws, with what to do, where as many more do not fit the declared sizes.
void needroomfor(long newnodes, long newelements, long newgraphics = 0);

int appendnode(const point3& at);
// Of the current group, shown in all views that show chosen elements.
int appendelement(int type, const std::array<int, 4>& corners);

// The numbers of the last items, taken before any are appended.
struct lastitems {
    int node, element, graphic;
};
lastitems lastitemsnow();
// Selects what stands behind these; it merges where that is on when it is released.
void selectappended(const lastitems& before);
