// SPDX-License-Identifier: GPL-3.0-or-later
// The tools of the left bar beside the three kinds of graphic elements, as one table: what each
// asks for, the points it takes and what it does. Bar, value window, direct commands and the mode
// that takes the points go over its rows; a new tool is one row.
//
// Direct command: the name, then its values in the order of the fields, "arr=3;1000;0;0"; values
// left out are those used last.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/path.h"

struct draftfield {
    const char* caption;
    const char* unit = "";                  // formula, see core/units
    double value = 0;                       // as delivered, then the last one used
    std::vector<const char*> choices = {};  // a list: the value is the entry
    // Entries of the tool's list with which the field counts, a bit each.
    unsigned countswith = ~0u;
};

struct drafttool {
    const char* name;     // three letters, of the command and the button
    const char* caption;  // of the button and the window
    const char* icon;
    const char* tip;
    std::vector<draftfield> fields;
    std::vector<const char*> points;  // prompts, one a point
    // Does the work; returns what the user should know. Throws runtimeerror where it cannot.
    std::function<std::string(const drafttool& tool, const std::vector<point3>& points)> run;
    // Elements that the points give, for the picture under the pointer; none for other tools.
    std::function<std::vector<path>(const std::vector<point3>& points)> shape = {};
    bool snaps = true;         // do its points snap?
    bool ofselection = false;  // it takes points for what is selected

    double value(std::size_t field) const { return fields[field].value; }
};
std::vector<drafttool>& drafttools();

extern drafttool* valuedtool;  // the one whose values the window "drafttool" asks for
// The button of a tool: asks for its values where it has any, then runs.
void choosedraft(drafttool& tool);
// Runs a tool with the values that its fields hold: at once, or as a mode that takes its points,
// again and again until ESC.
void startdraft(drafttool& tool);
bool isdrafting(const drafttool& tool);  // it takes points
// Values as texts into the fields; false, with none taken, after a text that is no number was told.
bool setdraftvalues(drafttool& tool, const std::vector<std::string>& texts);

// Mode and commands into their tables.
void wiredrafttools();
