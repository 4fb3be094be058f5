// SPDX-License-Identifier: GPL-3.0-or-later
// The form of the dialog "General Options".
#include "edit/options.h"

#include <algorithm>
#include <cmath>

#include "core/numtext.h"
#include "core/session.h"
#include "core/units.h"
#include "edit/pickshape.h"
#include "view/hidden.h"
#include "view/moddraw.h"

optionsform showgeneraloptions() {
    optionsform form;
    form.redrawmove = redrawmove;
    form.redrawdelete = redrawdelete;
    form.redrawedit = redrawedit;
    form.mergenodes = automergenodes;
    form.mergeelements = automergeelems;
    form.tolerance = numbertext(mergetol);
    form.renumber = renumbersave;
    form.pickshapes = pickshapes;
    form.shading = shadingon;
    form.shadecolor = shadecolor;
    form.anglexy = numbertext(lightangxy);
    form.anglez = numbertext(lightangz);
    form.intensity = lightintensity;
    return form;
}

void leavetolerance(optionsform& form) {
    double value = 0;
    if (!readvalue(form.tolerance, "L", value) || value < 0) form.tolerance = numbertext(mergetol);
}

// Angles are Singles.
static bool isangle(const std::string& text) {
    double value = 0;
    return readvalue(text, "Deg", value) && std::isfinite(float(value));
}

void leaveangles(optionsform& form) {
    if (!isangle(form.anglexy)) form.anglexy = numbertext(lightangxy);
    if (!isangle(form.anglez)) form.anglez = numbertext(lightangz);
}

void storetolerance(optionsform& form) {
    leavetolerance(form);
    mergetol = valueof(form.tolerance, "L");
}

void storegeneraloptions(const optionsform& given) {
    optionsform form = given;
    storetolerance(form);
    leaveangles(form);
    redrawmove = form.redrawmove;
    redrawdelete = form.redrawdelete;
    redrawedit = form.redrawedit;
    automergenodes = form.mergenodes;
    automergeelems = form.mergeelements;
    renumbersave = form.renumber;
    pickshapes = form.pickshapes;
    shadingon = form.shading;
    shadecolor = form.shadecolor;
    lightangxy = float(valueof(form.anglexy, "Deg"));
    lightangz = float(valueof(form.anglez, "Deg"));
    lightintensity = std::clamp(form.intensity, 0, 255);
    redrawall();
}
