// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog that shows the selected patches: kind of mesh, element type, group and chains. It
// edits nothing.
#pragma once

#include <string>
#include <vector>

struct patcheditform {
    std::vector<std::string> items;  // "Selection" and the selected numbers, or "None"
    int chosen = 0;
    std::string mesh, element, group;  // "Various" where the selected ones differ
    std::vector<std::string> edges;    // "Edge 1: 3, 4", of one patch
};

patcheditform openpatchedit();  // tells when no patch is selected
void choosepatch(patcheditform& form, int entry);
