// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog "Edit loads and constraints": constraints, nodal loads or masses, and element loads of
// the selected nodes or elements.
//
// The filled fields replace all rows of a node or element; with all fields empty its rows go. Zero
// is a value. The mode stands in the flags editconstraint, editnodalload and editelemload.
#pragma once

#include <array>
#include <string>
#include <vector>

enum class attributemodes { none, constraints, nodalloads, elementloads };

struct attributelabel {
    std::string caption, unit;
    bool shown = true;
};

struct attributeform {
    std::string title = "Edit loads and constraints";
    bool constraintgroup = false;             // shown in the place of the load group
    std::string loadgroup;                    // caption of the load group
    std::array<attributelabel, 6> loadlabel;  // of its fields
    std::array<std::string, 6> text;          // the fields of the group on show
    std::string listgroup, listcaption;
    std::vector<std::string> items;  // "Selection" and the selected numbers, or "None"
    bool listsnodes = true;          // what the numbers are
    int chosen = 0;                  // entry of items
    std::vector<std::string> cases;  // load cases
    int chosencase = 0;
    std::string hint;      // what the fields mean, or that they mean nothing
    bool changed = false;  // something was applied
    bool shared = false;   // nodal values are totals of the selected nodes, see loads/shares
};
// Of the command "Line Pressure Loads".
extern const char linepressurehint[];
// Captions and unit of the six constraint fields.
extern const std::array<attributelabel, 6> constraintlabel;
std::array<attributelabel, 6> constraintlabels();  // with the units of a model that says them

// The commands of the Add menu: ends the running mode, sets the flag of this one and opens the
// dialog. Without a mode (line pressure) the dialog opens and applies nothing.
void startattributes(attributemodes mode);
attributeform openattributes();
void closeattributes(const attributeform& form);  // clears the flags

// Fills the lists; tells when nothing is selected.
void Initiate(attributeform& form);
// Captions: masses, loads, element loads, element loads hidden.
void lockload(attributeform& form);
void freeload(attributeform& form);
void Elemload(attributeform& form);
void Elemloadlock(attributeform& form);

// The rows of the chosen item into the fields.
void getconstrains(attributeform& form);
void getloads(attributeform& form);
void getElemloads(attributeform& form);

void chooseitem(attributeform& form, int entry);
void chooseattributecase(attributeform& form, int entry);

// Zeros into the fields of constraints that a clamp holds, or a pin; of a 2-D analysis those of its
// plane.
void fillsupport(attributeform& form, bool clamped);

// The button Apply: erases the symbols, changes the rows, draws the symbols, compacts the lists. A
// field that holds no number throws errtype, rows beyond the declared size throw errsubscript;
// both leave the lists as they were.
void applyattributes(attributeform& form);
// To the chosen item, or to all selected nodes or elements in one pass over the rows.
void applyconstrains(const attributeform& form);
void applyloads(const attributeform& form);
void applyelemloads(const attributeform& form);
// To one node or element.
void applysingcon(const attributeform& form, int n);
void applysingload(const attributeform& form, int n);
// A field that holds no number ends the operation without a word; the fields before it are stored.
void applysingelemload(const attributeform& form, int e);
