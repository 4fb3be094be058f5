// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog that changes the selected elements: their type, their group, and the order of their
// nodes.
#pragma once

#include <string>
#include <vector>

struct modifyelemform {
    std::vector<std::string> fromtypes;   // "All", then the types that the selection holds
    std::vector<std::string> totypes;     // "No Change", then the catalogue
    std::vector<std::string> fromgroups;  // "All", then all groups
    std::vector<std::string> togroups;    // "No Change", then all groups
    int fromtype = 0, totype = 0, fromgroup = 0, togroup = 0;  // entries
    bool rotate = false, mirror = false;
    std::string message;
};

modifyelemform openmodifyelem();
// The OK command. Elements whose type has another number of nodes than the target type are not
// changed, nor any other with them: the message tells. Loads of elements whose corners turn keep
// their direction in space, and the message says how many rows changed for that.
void modselelem(modifyelemform& form);
