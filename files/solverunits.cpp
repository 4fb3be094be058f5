// SPDX-License-Identifier: GPL-3.0-or-later
// The keys of feiflu.ini that tell units.
#include "files/solverunits.h"

#include "core/numtext.h"
#include "core/units.h"
#include "files/solverini.h"

// What is no number is the solver's to refuse, with its line.
void readsolverunits() {
    double length = 1e-3, force = 1, mass = 1;
    for (const auto& [key, text] : solverinientries()) {
        double value = 0;
        if (!readnumber(text, value) || value <= 0) continue;
        if (key == "length") length = value;
        if (key == "force") force = value;
        if (key == "mass") mass = value;
    }
    solverunits = namedunits(length, force, mass);
}
