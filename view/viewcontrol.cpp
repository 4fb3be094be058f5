// SPDX-License-Identifier: GPL-3.0-or-later
// The form of the dialog "View".
#include "view/viewcontrol.h"

#include <cmath>

#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/units.h"
#include "core/views.h"
#include "view/autoscale.h"
#include "view/moddraw.h"
#include "view/scaleview.h"
#include "view/setviews.h"

const char* const viewboxcaptions[viewboxcount] = {
    "X coordinate", "Y coordinate", "Z coordinate", "Vertical",   "Horizontal",
    "Scale",        "Distance ",    "AW",           "View Depth", "Unit Vector Length"};

static const double greatestunit = 2;  // centimetres

static array1<float>& listof(int box) {
    static array1<float>* const lists[] = {&viewptx,   &viewpty,  &viewptz, &viewvert, &viewhor,
                                           &viewscale, &viewdist, &viewaw,  &viewdepth};
    return *lists[box];
}

static bool islength(int box) {
    return box <= boxz || box == boxdepth;
}

static bool isangle(int box) {
    return box == boxvertical || box == boxhorizontal;
}

// Kept are radians as Singles: further digits of their degrees are rounding.
static std::string degreestext(double degrees) {
    const double unit = 1e-4;
    return numbertext(float(std::round(degrees / unit) * unit + 0.0));
}

static std::string storedtext(int box, int nview) {
    if (box == boxunit) return numbertext(unitveclen);
    const float value = listof(box)(nview);
    return isangle(box) ? degreestext(todegrees(value)) : numbertext(value);
}

void showvalues(viewform& form, int nview) {
    for (int box = 0; box < viewboxcount; ++box) form.box[box] = storedtext(box, nview);
    form.pasted = 0;
    form.option = viewtype(nview);
    form.group0 = viewgroup(nview);
    form.group = form.group0 >= 1 && form.group0 <= ngroups() ? groupname(form.group0) : "";
    form.selected = numbertext(viewselnum(nview));
    form.heading = "View settings for view " + std::to_string(form.current);
}

void getvgroup(viewform& form) {
    for (int g = 1; g <= ngroups(); ++g)
        if (groupname(g) == form.group) form.group0 = g;
}

void noteselview(viewform& form, int nview) {
    viewtype(nview) = form.option;
    for (int e = 1; e <= nelems(); ++e) elemvis(nview, e) = false;
    int count = 0;
    if (form.option == 2) {
        for (int i = 1; i <= int(elemsel(0)); ++i) elemvis(nview, long(elemsel(i))) = true;
        count = int(elemsel(0));
    } else if (form.option == 1) {
        for (int e = 1; e <= nelems(); ++e) {
            const bool shown = elems(e, 0) != 0 && egroup(e) == viewgroup(nview);
            elemvis(nview, e) = shown;
            count += shown;
        }
    }
    viewselnum(nview) = count;
    form.selected = numbertext(count);
}

// The choice of elements into the current view; the number of a group counts for a group alone.
static void storechoice(viewform& form) {
    getvgroup(form);
    viewtype(form.current) = form.option;
    viewgroup(form.current) = form.option == 1 ? form.group0 : 0;
}

// An eye distance of 0 would show every point at the centre of the view.
static bool isallowed(int box, double value) {
    switch (box) {
        case boxscale:
            return float(value) > 0;
        case boxdistance:
            return float(value) != 0;
        case boxunit:
            return value > 0 && value <= greatestunit;
        default:
            return true;
    }
}

// A number that a Single holds; all but the unit vector are stored as Singles.
static bool readsingle(int box, const std::string& text, double& value) {
    const char* const formula = isangle(box) ? "Deg" : islength(box) ? "L" : "";
    return readvalue(text, formula, value) && std::isfinite(float(value));
}

void getvalues(viewform& form) {
    const int v = form.current;
    for (int box = 0; box < viewboxcount; ++box) {
        double value = 0;
        if (!readsingle(box, form.box[box], value)) return;
        if (form.box[box] == storedtext(box, v)) continue;  // shown rounded, and not changed
        if (box == boxunit) {
            if (isallowed(box, value)) unitveclen = value;
        } else if (isallowed(box, value)) {
            listof(box)(v) = float(isangle(box) ? toradians(value) : value);
        }
    }
    const int type = viewtype(v), group = viewgroup(v);
    storechoice(form);
    if (form.pasted != 0)
        copyvisibility(form.pasted, v);
    else if (viewtype(v) != type || viewgroup(v) != group)
        noteselview(form, v);
    form.pasted = 0;
}

// Radians to degrees with the short constant: the way back of this one box.
static std::string shortdegrees(float radians) {
    const double shortpi = 3.1415;
    return degreestext(double(radians) * 180 / shortpi);
}

void leavebox(viewform& form, int box) {
    if (box == boxaw || box == boxdepth) return;
    double value = 0;
    if (readsingle(box, form.box[box], value) && isallowed(box, value)) return;
    form.box[box] =
        box == boxhorizontal ? shortdegrees(viewhor(form.current)) : storedtext(box, form.current);
}

void chooseview(viewform& form, int nview) {
    getvalues(form);
    form.current = nview;
    showvalues(form, nview);
}

void presetboxes(viewform& form, int preset) {
    form.box[boxvertical] = numbertext(viewpresets[preset].vertical);
    form.box[boxhorizontal] = numbertext(viewpresets[preset].horizontal);
}

void pasteview(viewform& form) {
    if (form.copied == 0) return;
    showvalues(form, form.copied);
    form.pasted = form.copied;
}

void autoscaleview(viewform& form) {
    getvalues(form);
    fit(form.current);
    showvalues(form, form.current);
}

void allviews(viewform& form) {
    getvalues(form);
    fitall();
    showvalues(form, form.current);
    setfourviews();
}

void chooseoption(viewform& form, int option, const std::string& group) {
    form.option = option;
    form.group = group;
    form.pasted = 0;
    const int v = form.current;
    storechoice(form);
    if (option != 0) noteselview(form, v);
    drawview(v);
}

void startviewselection() {
    for (int i = selectnodes; i <= selectgraphics; ++i)
        MnuSelectItem(i).checked = i == selectelements;
    viewselpending = true;
    prompt("Select", "Element(s)", "to view", "<Mouse Left Button> to select, <ESC> to stop");
}

void endviewselection(viewform& form) {
    viewselpending = false;
    const int v = form.current;
    form.option = 2;
    viewselnum(v) = int(elemsel(0));
    noteselview(form, v);
    readyprompt();
    drawview(v);
}
