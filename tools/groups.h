// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog "Element Group": the list of groups, the twelve properties and the spring matrix of
// the one in edit, and the mode in which an edit goes to all of them.
//
// The group in edit is meshgroup, which the tools that create elements take over when it closes.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "core/colours.h"
#include "core/formulas.h"
#include "core/model.h"

const int matrixfields = 36;    // groupmat(g,1..6,1..6)
extern const char allgroups[];  // the last entry of the list

struct groupcaption {
    const char *caption, *unit;
};
extern const groupcaption groupcaptions[groupfields + 1];  // 1..12

struct groupform {
    std::vector<std::string> names;                 // of the list: all groups, then "All Groups"
    std::string name;                               // text of the list field
    bool all = false;                               // "All Groups" is chosen
    std::array<std::string, groupfields + 1> text;  // boxes 1..12
    std::array<std::string, matrixfields> matrix;   // row i, column j at (i-1) + 6 (j-1)
    std::array<std::string, groupfields + 1> unit;  // of the boxes
    std::vector<groupuse> uses;                     // by group, since the dialog is open
    std::string plane;                              // caption of the toggle at field 5
    colour shade = 0;                               // colour of the group
    bool springs = false;                           // the matrix stands in place of the properties
    bool redraw = false;                            // what the views show has changed
    std::string message;
};

groupform opengroups();  // the list filled, group 1 shown

// Reads the boxes into group meshgroup. A box that holds no number stores 0, a matrix value beyond
// a Single keeps what was stored; both are told in the message.
void getgroup(groupform& form);
void putgroup(groupform& form);  // shows group meshgroup, or empty boxes for all groups
void setplane(
    groupform& form);  // caption of the toggle from field 5; an empty one of all: "Toggle"
void notename(groupform& form);  // fills the list with all names
// Renames the group in edit, unless another group has the name: false then, with a message.
bool changename(groupform& form, const std::string& name);

// The user's actions. An edit of one group is kept when another row is chosen, a group is added or
// the dialog closes; one of all groups only by updategroups.
void choosegroup(groupform& form, int row);  // 0.. as in names
void editfield(groupform& form, int field, const std::string& text);
void editmatrix(groupform& form, int index, const std::string& text);
void toggleplane(groupform& form);
void choosecolour(groupform& form, colour c);
void togglesprings(groupform& form);
void addgroup(groupform& form);
void deletegroup(groupform& form);
void updategroups(groupform& form);
// Stores the group in edit. False where a box held no number: the form shows what was stored and
// says so, and stays open until the next time.
bool readygroups(groupform& form);

bool isgroupused(int g);  // by an element
// Takes group g out, those above it move down; the group before it takes its place where a patch or
// a view named it. No element may be in it.
void removegroup(int g);
