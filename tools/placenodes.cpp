// SPDX-License-Identifier: GPL-3.0-or-later
// The form of "Edit graphic Elements". State: the graphic element in edit.
#include "tools/placenodes.h"

#include <algorithm>
#include <cmath>

#include "core/colours.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/units.h"
#include "edit/selection.h"
#include "loads/nodeattributes.h"
#include "tools/Graphics.h"
#include "tools/circle.h"
#include "tools/severalitems.h"
#include "view/moddraw.h"
#include "view/scaleview.h"

int curgraph;

static const char wholeselection[] = "Selection";
static const double mostspaces = 1e9;  // what a Single still holds to the unit, rounded

// --- what is shown ------------------------------------------------------------------------------

static std::string roundedtext(double v) {
    return numbertext(std::floor(v * 1000 + 0.5) / 1000);
}

static double spacesof(int g) {
    return graphics(g, 0, 1) < 1 ? 1 : graphics(g, 0, 1);
}

static bool isselection(const placenodesform& form) {
    return form.numbers.size() > 1 && form.chosen == 0;
}

// Length of a line, radius of a circle section; nothing for a curve.
static std::string valueof(int g) {
    if (kindof(graphics, g) == kindcircle && evaluatecircle(graphics, g) &&
        kindof(graphics, g) == kindcircle)
        return roundedtext(circleradius);
    return kindof(graphics, g) == kindline ? roundedtext(lengthofline(graphics, g)) : "";
}

void putprop(placenodesform& form) {
    const int g = curgraph;
    form.value = valueof(g);  // may make a line of a circle that is nearly straight
    const int kind = kindof(graphics, g);
    form.type = nameofkind(kind);
    form.number = numbertext(g);
    form.nodes = numbertext(spacesof(g) + 1);
    form.spaces = numbertext(spacesof(g));
    form.factor = numbertext(graphics(g, 0, 2));
    form.valueshown = kind != kindcurve;
    form.valueenabled = true;
    form.valuelabel = kind == kindcircle ? "Radius =" : "Length =";
}

void putpropsel(placenodesform& form) {
    form.number = wholeselection;
    for (int i = 2; i <= graphsel(0, 0); ++i) {
        const int g = graphsel(i, 0);
        keepcommon(form.nodes, numbertext(spacesof(g) + 1));
        keepcommon(form.spaces, numbertext(spacesof(g)));
        keepcommon(form.factor, numbertext(graphics(g, 0, 2)));
        keepcommon(form.value, valueof(g));
        keepcommon(form.type, nameofkind(kindof(graphics, g)));
    }
    if (form.type != differingtext) return;
    form.valueshown = true;
    form.valueenabled = false;
    form.value = differingtext;
}

static void show(placenodesform& form) {
    putprop(form);
    if (isselection(form)) putpropsel(form);
}

placenodesform openplacenodes() {
    placenodesform form;
    editing = true;
    curgraph = graphsel(1, 0);
    if (graphsel(0, 0) > 1) form.numbers.emplace_back(wholeselection);
    for (int i = 1; i <= graphsel(0, 0); ++i) form.numbers.push_back(numbertext(graphsel(i, 0)));
    if (graphsel(0, 0) > 0) show(form);
    return form;
}

void closeplacenodes(const placenodesform&) {
    editing = false;
    redrawall();
}

void choosegraphic(placenodesform& form, int entry) {
    if (entry < 0 || entry >= int(form.numbers.size())) return;
    form.stood.clear();
    form.chosen = entry;
    const int first = form.numbers.size() > 1 ? 1 : 0;
    curgraph = graphsel(std::max(1, entry - first + 1), 0);
    show(form);
}

void editnumber(placenodesform& form, const std::string& text) {
    double value = 0;
    if (!readnumber(text, value) || value < 1 || value > ngraphics() || value != std::floor(value))
        return;
    const int g = int(value);
    if (kindof(graphics, g) == kindfree) return;
    for (std::size_t i = 0; i < form.numbers.size(); ++i)
        if (form.numbers[i] == numbertext(g)) return choosegraphic(form, int(i));
    form.stood.clear();
    hideselection();
    graphsel2(0, 0) = 0;
    for (int j = 1; j <= 2; ++j) togglegraphic(g, j);
    form.numbers = {numbertext(g)};
    form.chosen = 0;
    curgraph = g;
    showselection();
    show(form);
}

// --- edits --------------------------------------------------------------------------------------

static void drawingraphiccolour(int g, colour c, bool marksalone) {
    if (!mnudrawlist(graphicsdrawn).checked) return;
    drawinviews([&](int v) {
        drawcolor = c;
        drawgraphicnodes(graphics, g, v);
        if (!marksalone || c != backcolor) drawgraphic(graphics, g, v);
    });
}

// Takes the marks (or the whole picture) of the edited elements away, changes them, draws anew.
template <typename Change>
static void applyedit(const placenodesform& form, bool marksalone, Change change) {
    hideselection();
    const int count = graphsel(0, 0);
    for (int k = 1; k <= count; ++k) {
        const int g = graphsel(k, 0);
        if (!isselection(form) && g != curgraph) continue;
        drawingraphiccolour(g, backcolor, marksalone);
        change(k, g);
        drawingraphiccolour(g, graphcolor, marksalone);
    }
    showselection();
}

static void storespaces(placenodesform& form, double spaces) {
    applyedit(form, true, [&](int, int g) { graphics(g, 0, 1) = float(spaces); });
}

void editnodes(placenodesform& form, const std::string& text) {
    double value = 0;
    form.nodes = text;
    if (!readnumber(text, value)) {
        form.nodes = "2";
        value = 2;
    }
    value = std::floor(value);
    if (value - 1 > mostspaces) return show(form);
    if (value < 2) value = 2;
    storespaces(form, value - 1);
    form.spaces = numbertext(value - 1);
}

void editspaces(placenodesform& form, const std::string& text) {
    double value = 0;
    form.spaces = text;
    if (!readnumber(text, value) || value < 1) {
        form.spaces = "1";
        value = 1;
    }
    value = std::floor(value);
    if (value > mostspaces) return show(form);
    storespaces(form, value);
    form.nodes = numbertext(value + 1);
}

void editfactor(placenodesform& form, const std::string& text) {
    double value = 0;
    form.factor = text;
    if (!readnumber(text, value) || value == 0 || !std::isfinite(float(value))) return;
    applyedit(form, true, [&](int, int g) { graphics(g, 0, 2) = float(value); });
}

// Takes down the elements that the edit is for.
static std::vector<placedgraphic> placesbefore(const placenodesform& form) {
    std::vector<placedgraphic> all;
    for (int k = 1; k <= graphsel(0, 0); ++k) {
        const int g = graphsel(k, 0);
        if (!isselection(form) && g != curgraph) continue;
        placedgraphic one{g, graphics(g, 0, 0), {}};
        for (std::size_t j = 1; j <= 3; ++j)
            std::ranges::copy(graphics.row(g, long(j)), one.points[j].begin());
        all.push_back(one);
    }
    return all;
}

static void restoreplaces(const placedgraphic& one) {
    graphics(one.g, 0, 0) = one.kind;
    for (std::size_t j = 1; j <= 3; ++j)
        std::ranges::copy(one.points[j], graphics.row(one.g, long(j)).begin());
}

void editlengthradius(placenodesform& form, const std::string& text) {
    const double largest = 1e30;  // model units, within the range of a Single
    double value = 0;
    form.value = text;
    if (!readvalue(text, "L", value) && mayhaveunit(text)) return;  // "3 f" of "3 ft"
    if (!readvalue(text, "L", value) || std::fabs(value) > largest) return show(form);
    if (value == 0) return;
    linelength = value;
    // The keys before this one were a part of the number: what they did is taken back.
    if (form.stood.empty()) form.stood = placesbefore(form);
    for (const placedgraphic& one : form.stood) drawingraphiccolour(one.g, backcolor, false);
    std::ranges::for_each(form.stood, restoreplaces);
    applyedit(form, false, [&](int k, int g) {
        if (kindof(graphics, g) == kindline) dline(k);
        if (kindof(graphics, g) == kindcircle) setradius(graphics, g, value);
    });
    form.geometry = true;
    const std::string typed = form.value;
    show(form);  // a circle may have become a line
    form.value = typed;
}

void leavefield(placenodesform& form) {
    form.stood.clear();
    if (graphsel(0, 0) > 0) show(form);
}

// --- Modify Selection ---------------------------------------------------------------------------

void modifyselection() {
    const auto refuse = [](const char* text) { theplatform().message(text, icons::exclamation); };
    switch (selectitem()) {
        case selectnodes:
            return refuse("Node properties can not be modified.");
        case selectelements:
            if (elemsel(0) == 0)
                return refuse("Please, select elements before choosing this option.");
            return theplatform().showdialog("modifyelem");
        case selectpatches:
            if (patchsel(0) == 0)
                return refuse("Please, select patche(s) before choosing this option.");
            return theplatform().showdialog("patchedit");
        case selectforces:
            return startattributes(attributemodes::nodalloads);
        case selectgraphics:
            if (graphsel(0, 0) == 0)
                return refuse("Please, select graphics before choosing this option.");
            return theplatform().showdialog("placenodes");
    }
}

graphoptionsform opengraphoptions() {
    return {MnuSelectItem(selectsnap).checked};
}

void storegraphoptions(const graphoptionsform& form) {
    MnuSelectItem(selectsnap).checked = form.snap;
    labelselect();
}
