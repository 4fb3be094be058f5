// SPDX-License-Identifier: GPL-3.0-or-later
// The room loads: load cases, their combinations, constraints and loads, all as forms without their
// windows.
//
// The dialog "Define Loadcases": creates, names, types and deletes load cases.
//
// Nothing that is typed reaches the model before updateloadcase. The load case shown is curlc,
// which outlives the dialog.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "core/array.h"

// Index in the list "Loadcase type".
enum loadkinds { kindapplied, kindacceleration, kindwave, kindwind, kindbuoyancy };

struct loadcaseform {
    std::vector<std::string> numbers, names;                      // Combo1, Combo2
    int chosen = 0;                                               // entry of both lists
    std::string name;                                             // text of Combo2
    int kind = kindapplied;                                       // entry of Combo3
    Integer lcdirection = 0;                                      // of Option2: x y z rx ry rz
    int elementmass = 1;                                          // Option1: 1 on, 0 off
    std::string unit;                                             // of the acceleration
    std::array<std::string, 4> acceleration{"1", "0", "0", "0"};  // Text1: value, centre x y z
    std::array<std::string, 5> wave{"0", "0", "0", "0", "0"};     // Text2: H, T, Dir, Shift, WD
    std::array<std::string, 3> wind{"0", "0", "0"};               // Text3: Vel, Dir, hidden field
    std::array<std::string, 3> buoyancy{"0", "100000", "1"};      // Text4: WL, WD, Density
    // Groups on show.
    bool centreshown = false, accelerationshown = false, directionshown = false;
    bool waveshown = false, windshown = false, buoyancyshown = false;
    bool changed = false;  // the views show what no longer stands
    std::string message;   // Label7
};

loadcaseform openloadkees();
void loadloadcase(loadcaseform& form);  // fills both lists
void putloadcase(loadcaseform& form);   // shows load case curlc
void setacclabel(loadcaseform& form);   // shows the groups of the kind and hides the others

// Answers to the user's hand.
void chooseloadcase(loadcaseform& form, int entry);  // in Combo1 or Combo2
void choosekind(loadcaseform& form, int kind);
void choosedirection(loadcaseform& form, int direction);
void editloadcase(loadcaseform& form);              // after a change: tells to press Update
void leaveacceleration(loadcaseform& form, int i);  // no number becomes "0"
void editshift(loadcaseform& form);                 // holds the shift within 0..1

void addloadcase(loadcaseform& form);
void updateloadcase(loadcaseform& form);
void delloadcase(loadcaseform& form);  // asks; results on show go, they pair cases by number

// Takes load case lc out, those above it move down by name, type and nodal rows. The count of rows
// of a slot bounds what is moved into it and stays, as do parameters, element loads and the
// multipliers of the combinations: they belong to the number.
void removeloadcase(int lc);
