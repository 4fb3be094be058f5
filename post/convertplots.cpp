// SPDX-License-Identifier: GPL-3.0-or-later
// Limits of legends, places of probes and cuts in other units.
#include "post/convertplots.h"

#include "core/sessionlengths.h"
#include "post/components.h"
#include "post/cut.h"
#include "post/legendlook.h"
#include "post/plotunits.h"
#include "post/probes.h"
#include "tools/unitsform.h"

// Limits of a legend stand under the label of their quantity.
static double limitfactor(const std::string& quantity, const unitset& from, const unitset& to) {
    const std::string label = quantity.substr(0, quantity.find(' '));
    for (const char* const length : {"Displacement", "DX", "DY", "DZ"})
        if (label == length) return unitfactor("L", from, to);
    for (int c = 1; c <= componentcount; ++c) {
        if (label != stresscomponents[c - 1].label) continue;
        const char* const formula = componentformula(c);
        return unitfactor(formula, from, to) * shownfactor(formula, to) /
               shownfactor(formula, from);
    }
    return 1;
}

void wireconversion() {
    static bool wired;
    if (wired) return;
    wired = true;
    unitconverters().push_back([](const unitset& from, const unitset& to) {
        convertlimits([&](const std::string& quantity) { return limitfactor(quantity, from, to); });
        scaleprobes(unitfactor("L", from, to));
    });
    lengthfollowers().push_back(scalecut);
}
