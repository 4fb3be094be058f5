// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog "Edit graphic Elements": mesh spaces, distribution factor, and length or radius of one
// selected graphic element or of the whole selection. An edit takes effect as it is typed.
//
// And the dialog "Graphic Element Options" with its one check box.
#pragma once

#include <array>
#include <string>
#include <vector>

extern int curgraph;  // graphic element in edit

// A graphic element as it stood before a length or radius was typed.
struct placedgraphic {
    int g = 0;
    float kind = 0;
    std::array<std::array<float, 4>, 4> points{};  // 1..3, 1..3
};

struct placenodesform {
    std::vector<std::string> numbers;  // "Selection" when there are several, then the numbers
    int chosen = 0;                    // entry of numbers; -1 for a number typed by the user
    std::string number;                // text of the number field
    std::string type;                  // "Line", "Arc", "Circle" or "Various"
    std::string nodes, spaces, factor;
    std::string valuelabel, value;  // "Length =" or "Radius ="
    bool valueshown = false, valueenabled = true;
    bool geometry = false;             // an edit has moved points
    std::vector<placedgraphic> stood;  // while a length or radius is typed: each key starts from it
};

placenodesform openplacenodes();
void closeplacenodes(const placenodesform& form);  // OK: takes the edits over and redraws

// Fills the fields from curgraph; then writes "Various" where another of the selection differs.
void putprop(placenodesform& form);
void putpropsel(placenodesform& form);

void choosegraphic(placenodesform& form, int entry);                   // entry of numbers
void editnumber(placenodesform& form, const std::string& text);        // the number field
void editnodes(placenodesform& form, const std::string& text);         // Nodes
void editspaces(placenodesform& form, const std::string& text);        // Spaces
void editfactor(placenodesform& form, const std::string& text);        // Distribution factor
void editlengthradius(placenodesform& form, const std::string& text);  // Length or Radius

// A field is left: what is stored stands in all of them.
void leavefield(placenodesform& form);

// Modify Selection of the Edit menu: opens the dialog that fits what is selected, or tells why none
// does.
void modifyselection();

struct graphoptionsform {
    bool snap = false;
};
graphoptionsform opengraphoptions();
void storegraphoptions(const graphoptionsform& form);
