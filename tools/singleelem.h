// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog "Add Single Element": an element type, a group, and nodes picked one after another.
//
// State: addelemmode and singleel while nodes are picked. mesheltype and meshgroup hold the choice.
#pragma once

#include <functional>
#include <string>
#include <vector>

struct addsingleform {
    std::vector<std::string> types;  // every type of the catalogue
    int chosentype = 0;
    std::string typenodes;            // nodes of the chosen type
    std::vector<std::string> groups;  // by number
    int chosengroup = 0;
};

addsingleform openaddsingle();
void choosesingletype(addsingleform& form, int entry);
void choosesinglegroup(addsingleform& form, int entry);
void closeaddsingle();  // ends the mode, back to the rest state

// Nodes are picked until ESC, Enter or the right button; ended is called then. Each time the type
// has its nodes an element is made.
void startsingle(std::function<void()> ended);
// Node n becomes the next corner of the element in work; a node that is a corner already leaves it.
void addelementnode(int n);
void wiresingleelem();
