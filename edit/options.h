// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog "General Options": redraws, hidden line shading, automatic merging, saving,
// picking.
#pragma once

#include <string>

struct optionsform {
    bool redrawmove = false, redrawdelete = false, redrawedit = false;
    bool mergenodes = false, mergeelements = false;
    std::string tolerance;
    bool renumber = false;
    bool pickshapes = false;
    bool shading = false;
    int shadecolor = 0;           // 3 BlueLight, 2 GreenLight, 1 Red Light, 0 Shades of Gray
    std::string anglexy, anglez;  // degrees
    int intensity = 0;            // 0..255
};
optionsform showgeneraloptions();
// Leaving a box: a text that is no number goes back to the stored value.
void leavetolerance(optionsform& form);
void leaveangles(optionsform& form);
void storetolerance(optionsform& form);             // what the reports of doubles work with
void storegeneraloptions(const optionsform& form);  // and redraws
