// SPDX-License-Identifier: GPL-3.0-or-later
// Content of a new model.
#include "core/newmodel.h"

#include <string>

#include "core/allocmodel.h"
#include "core/codes.h"
#include "core/colours.h"
#include "core/kaltext.h"
#include "core/labels.h"
#include "core/model.h"
#include "core/session.h"
#include "core/units.h"
#include "core/views.h"

void defaultloadcase(int lc) {
    lctype(lc) = caseapplied;
    lcpar(lc, accvalue) = 1;
    for (int k = acccentrex; k <= acccentrez; ++k) lcpar(lc, k) = 0;
    lcpar(lc, accelementmass) = 1;
}

static void newloadcase() {
    curlc = 1;
    loadnode(0, 0) = 1;
    loadnode(1, 0) = 0;
    lcname(1) = "LC 1";
    defaultloadcase(1);
}

void newcombination() {
    lcomb(0, 0) = 1;
    lcomb(1, 1) = 1;
    lcombname(1) = "Lcomb1";
    curlcomb = 1;
}

void defaultgroup(int g) {
    // Steel, 1 mm thick.
    const unitset metric = namedunits(1e-3, 1, 1), own = unitstext.empty() ? metric : modelunits();
    const auto put = [&](int field, double value, const char* formula) {
        groups(g, field) = roundedto(value * unitfactor(formula, metric, own), 12);
    };
    groupname(g) = "GR " + std::to_string(g);
    groups(g, fieldpoisson) = 0.3;
    put(fieldmodulus, 210000, "F/L^2");
    put(fielddensity, 7.85e-06, "M/L^3");
    put(fieldthickness, 1, "L");
}

void newgroup() {
    groups(0, 0) = 1;
    defaultgroup(1);
    meshgroup = 1;
}

void newmodeldefaults() {
    kaltext.clear();
    unitstext = newunits;
    newloadcase();
    fillloadlabels();
    commentvisible = false;
    newcombination();
    newgroup();
    stresskind = 0;
    for (int v = 1; v <= nviews; ++v) viewtype(v) = viewselnum(v) = 0;
    dropundo();
}

bool resetmodel() {
    if (!allocmodel()) return false;
    initcolors();
    clearcounts();
    modeltoolarge = false;
    resetviews();
    newmodeldefaults();
    return true;
}
