// SPDX-License-Identifier: GPL-3.0-or-later
// Operations of "Post Process Options".
#include "post/soptions.h"

#include <cmath>
#include <limits>

#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "edit/selection.h"
#include "post/contour.h"
#include "post/legendlook.h"
#include "post/shapes.h"
#include "post/stressfile.h"

static void markgroup() {
    for (int e = 1; e <= nelems(); ++e) elemflag(e) = egroup(e) == postgroup;
}

void showsoptions(soptionsform& form) {
    form.maximum = numbertext(scalemax);
    form.minimum = numbertext(scalemin);
    form.message = legendlimits(legendquantity())
                       ? "The limits set on the legend hold until Auto or Manual is chosen"
                       : "";
    if (postgroup < 1 || postgroup > ngroups()) postgroup = 1;
    if (postset == setofgroup) markgroup();
    form.group = postgroup - 1;
    noteselection();
}

// --- choices ------------------------------------------------------------------------------------

// Another file or another sum: what is in memory is not the plot's any more.
static void choose(int& choice, int value) {
    if (choice != value) retryresults();
    choice = value;
}

void choosefilled(int filled) {
    contourfilled = filled;
}

void choosedata(int data) {
    choose(contourdata, data);
}

void choosedirection(int which) {
    dispcontour = which;
}

void choosecomponent(int component) {
    stresscomp = component;
}

void chooseaverage(int average) {
    choose(stressaverage, average);
}

void chooseaxes(int global) {
    choose(stressglobal, global);
}

void choosescale(soptionsform& form, bool automatic) {
    indexautoscale = automatic;
    setlegendlimits(legendquantity(), {});
    form.message.clear();
    if (automatic || scalemax != scalemin) return;
    if (!plotready()) {
        form.message = "Fill in Maximum and Minimum";
        return;
    }
    form.maximum = numbertext(indexmax);
    form.minimum = numbertext(indexmin);
}

// --- the elements -------------------------------------------------------------------------------

void getgr(soptionsform& form) {
    postgroup = form.group + 1;
    if (postset == setofgroup) markgroup();
    noteselection();
}

static void markselection() {
    for (int e = 1; e <= nelems(); ++e) elemflag(e) = false;
    for (int i = 1; i <= int(elemsel(0)); ++i) elemflag(long(elemsel(i))) = true;
}

void chooseset(soptionsform& form, int set) {
    postset = set;
    if (set == 1) getgr(form);
    if (set == 2) markselection();
    noteselection();
    form.message = postcount == 0 ? "The set holds no element" : "";
}

void startpostselection() {
    for (int i = selectnodes; i <= selectgraphics; ++i)
        MnuSelectItem(i).checked = i == selectelements;
    postselpending = true;
    prompt("Select", "Element(s)", "for Post-process",
           "<Mouse Left Button> to select, <ESC> to stop");
}

// The flag stays up until the dialog closes: Ready redraws then.
void endpostselection(soptionsform& form) {
    chooseset(form, 2);
    prompt("Select", "", "for editing", "");
    labelselect();
}

// --- the end ------------------------------------------------------------------------------------

// No value on show is larger than a Single.
static bool readbound(const std::string& text, double& value) {
    return readnumber(text, value) && std::fabs(value) <= std::numeric_limits<float>::max();
}

bool storesoptions(soptionsform& form) {
    double most = 0, least = 0;
    form.message.clear();
    if (!readbound(form.maximum, most) || !readbound(form.minimum, least))
        form.message = "Maximum and Minimum must be numbers";
    else if (most < least)
        form.message = "Maximum is below Minimum";
    if (!form.message.empty()) return indexautoscale;  // its boxes are locked: no way to mend them
    if (!indexautoscale && (most != scalemax || least != scalemin))
        setlegendlimits(legendquantity(), {});
    scalemax = most;
    scalemin = least;
    return true;
}

void soptionsclosed() {
    const bool selected = postselpending, plotted = iscontour() || iselementstress();
    postselpending = false;
    if (plotted) rereadshown();
    if (plotted || selected) showresults();
}
