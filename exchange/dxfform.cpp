// SPDX-License-Identifier: GPL-3.0-or-later
// Choices of the dialog, and the question about units. State: the choices of the session and the
// drawing that the dialog is open for.
#include "exchange/dxfform.h"

#include "core/catalogue.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/units.h"
#include "exchange/gate.h"
#include "exchange/layersections.h"
#include "files/solverunits.h"

const std::array<const char*, 4> dxfcaptions = {
    "Import 3DFACE and Mesh with following Elements :",
    "Import LINES and Mesh with following Elements",
    "Import CIRCLE and Mesh with following Elements",
    "Import ARC and Mesh with following Elements",
};

static dxfoptions importoptions;
static std::string drawing;
static purposes drawingpurpose = purposes::import;

reply startdxf(const std::string& path, purposes purpose) {
    drawing = path;
    drawingpurpose = purpose;
    theplatform().showdialog("DXFInterface");
    return reply::cancelled;
}

static std::array<int*, 4> typesof(dxfoptions& o) {
    return {&o.faces, &o.lines, &o.circles, &o.arcs};
}

dxfform opendxf() {
    dxfform form;
    form.types.push_back("None");
    for (int t = 1; t < neltypes; ++t) form.types.push_back(eltypname(t));
    for (std::size_t kind = 0; kind < 4; ++kind) {
        form.chosen[kind] = *typesof(importoptions)[kind];
        form.taken[kind] = form.chosen[kind] > 0;
    }
    form.longest = numbertext(importoptions.longest);
    if (importoptions.joinwithin >= 0) form.joinwithin = numbertext(importoptions.joinwithin);
    form.split = importoptions.split;
    form.asgraphics = importoptions.asgraphics;
    form.without = importoptions.without;
    form.file = drawing;
    return form;
}

// A tick without a type takes the one that was delivered.
void tickdxf(dxfform& form, int kind, bool on) {
    const auto k = std::size_t(kind);
    form.taken[k] = on;
    dxfoptions delivered;
    if (on && form.chosen[k] == 0) form.chosen[k] = *typesof(delivered)[k];
}

void choosedxf(dxfform& form, int kind, int entry) {
    const auto k = std::size_t(kind);
    form.chosen[k] = entry;
    form.taken[k] = entry > 0;
}

static bool readfields(dxfform& form, dxfoptions& options) {
    if (!readnumber(form.longest, options.longest)) {
        form.message = "Numerical input required";
        return false;
    }
    if (!(options.longest > 0)) {
        form.message = "Give a Value larger than 0";
        return false;
    }
    options.joinwithin = -1;
    if (form.joinwithin.empty()) return true;
    if (readnumber(form.joinwithin, options.joinwithin) && options.joinwithin >= 0) return true;
    form.message = "Join ends within: a number from 0 up is needed, or nothing for the default";
    return false;
}

// Faces need surface elements, all else lines.
static bool readtypes(dxfform& form, dxfoptions& options) {
    for (std::size_t kind = 0; kind < 4; ++kind) {
        const int type = form.taken[kind] ? form.chosen[kind] : typenone;
        const int corners = nodesoftype(float(type));
        const bool fits = kind == dxffaces ? corners >= 3 : corners == 2;
        if (type != typenone && !fits) {
            form.message = eltypname(type) + (kind == dxffaces
                                                  ? " has not three or four corners, as faces have"
                                                  : " has not two ends, as lines have");
            return false;
        }
        *typesof(options)[kind] = type;
    }
    return true;
}

// --- units --------------------------------------------------------------------------------------

// One of the model that the drawing goes to, in metres; 0 where nobody knows it.
static double unitofmodel() {
    const std::string& text = drawingpurpose == purposes::open ? newunits : unitstext;
    if (text.empty()) readsolverunits();
    unitset set = solverunits;
    findunits(text, set);
    return set.metres;
}

// The units with this length that a user can choose, "" for none.
static std::string unitswith(double metres) {
    unitset set;
    for (const std::string& text : unitchoices)
        if (findunits(text, set) && nameofunit(metres) == std::string(nameofunit(set.metres)))
            return text;
    return "";
}

static bool ismodelnew() {
    return drawingpurpose == purposes::open ||
           (unitstext.empty() && nnodes() == 0 && nelems() == 0 && ngraphics() == 0);
}

static bool differ(double theirs, double ours) {
    const double near = 1e-9;
    return theirs != 0 && ours != 0 && std::abs(theirs - ours) > near * ours;
}

// The factor for the coordinates; 0 when the user gives up.
static double askfactor(double theirs, double ours) {
    if (!differ(theirs, ours)) return 1;
    const std::string own = nameofunit(ours);
    messagebox box;
    box.text = std::string("The drawing is in ") + nameofunit(theirs) + ", the model in " +
               (own.empty() ? "lengths of " + numbertext(ours) + " m" : own) +
               ".\n\nMultiply its coordinates by " + numbertext(float(theirs / ours)) + "?";
    box.set = buttons::yesnocancel;
    box.icon = icons::question;
    const answers answer = theplatform().show(box);
    return answer == answers::cancel ? 0 : answer == answers::yes ? theirs / ours : 1;
}

bool acceptdxf(dxfform& form) {
    dxfoptions options = importoptions;
    form.message.clear();
    if (!readfields(form, options) || !readtypes(form, options)) return false;
    options.split = form.split;
    options.asgraphics = form.asgraphics;
    options.without = form.without;
    importoptions = options;
    const double theirs = unitofdrawing(drawing), ours = unitofmodel();
    const double factor = askfactor(theirs, ours);
    if (factor == 0) return true;
    // A new model that keeps the numbers of the drawing has its units.
    const bool keeps = differ(theirs, ours) && factor == 1 && ismodelnew();
    const std::string units = keeps ? unitswith(theirs) : "";
    unitset set;
    const bool istold = !units.empty() && findunits(units, set);
    readforeign(
        drawing, drawingpurpose, "Drawing (DXF)", [&](const std::string& path, imported& found) {
            readdxf(path, importoptions, factor, found);
            if (factor != 1)
                found.report.changed("Coordinates multiplied by " + numbertext(float(factor)));
            found.units = units;
            putprofiles(found, istold ? set.metres : ours);
        });
    return true;
}
