// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog "Units": which units the model has, and its conversion into others.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/units.h"

struct unitsform {
    std::vector<std::string> choices;  // texts of units; "" first: what the solver's settings say
    std::vector<std::string> captions;
    int chosen = 0;
    bool convert = true;     // false: the numbers stay, the names change
    bool canconvert = true;  // both units are known
    bool fornew = false;     // new models begin with these
    std::string note;        // what OK will do
};
unitsform openunits();
std::string unitsinwords();  // "mm N kg", in brackets where the model does not say it
void chooseunits(unitsform& form, int entry);
void chooseway(unitsform& form, bool convert);
// One step of the journal. False, with the reason told, where the model cannot be converted or the
// user does not want to lose its results; nothing has changed then.
bool storeunits(const unitsform& form);

// What higher floors keep with the model in units: run within the step.
using unitconverter = std::function<void(const unitset& from, const unitset& to)>;
std::vector<unitconverter>& unitconverters();
