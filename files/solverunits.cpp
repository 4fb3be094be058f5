// SPDX-License-Identifier: GPL-3.0-or-later
// The keys of feiflu.ini that tell units.
#include "files/solverunits.h"

#include <sstream>

#include "core/numtext.h"
#include "core/runtime.h"
#include "core/session.h"
#include "core/textfile.h"
#include "core/units.h"

// What is no number is the solver's to refuse, with its line.
void readsolverunits() {
    double length = 1e-3, force = 1, mass = 1;
    std::string text;
    guarded([&] { text = readwhole(findnocase(appdir + "/feiflu.ini")); },
            [](const runtimeerror&) {});
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        const std::size_t equals = line.find('='), comment = line.find_first_of("#;");
        if (equals >= comment) continue;
        std::string key;
        std::istringstream(line.substr(0, equals)) >> key;
        double value = 0;
        const bool read = readnumber(line.substr(equals + 1, comment - equals - 1), value);
        if (!read || value <= 0) continue;
        if (key == "length") length = value;
        if (key == "force") force = value;
        if (key == "mass") mass = value;
    }
    solverunits = namedunits(length, force, mass);
}
