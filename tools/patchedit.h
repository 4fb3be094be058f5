// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog of the selected patches: it shows kind of mesh, element type, group and chains, and
// makes their meshes anew.
#pragma once

#include <array>
#include <string>
#include <vector>

struct patcheditform {
    std::vector<std::string> items;  // "Selection" and the selected numbers, or "None"
    int chosen = 0;
    std::string mesh, element, group;  // "Various" where the selected ones differ
    std::vector<std::string> edges;    // "Edge 1: 3, 4", of one patch
    bool single = false;               // one patch is on show
    int pairs = 0;  // numbers of spaces that one patch has: 2 for a quadrilateral, else 1
    std::array<std::string, 2> spaces;  // along edges 1 and 2, and 3 and 4; as typed
    std::string message;
};

patcheditform openpatchedit();  // tells when no patch is selected
void choosepatch(patcheditform& form, int entry);
// The spaces as typed, along opposite edges and on through the patches beside; those join the
// selection, and all of them are meshed again.
void setpatchspaces(patcheditform& form);
void meshpatchesagain(patcheditform& form);  // the one on show, or all that are selected
