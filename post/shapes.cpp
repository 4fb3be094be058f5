// SPDX-License-Identifier: GPL-3.0-or-later
// Switches of the result views.
#include "post/shapes.h"

#include <cmath>
#include <functional>
#include <limits>

#include "core/journal.h"
#include "core/largest.h"
#include "core/model.h"
#include "core/modeltable.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/textfile.h"
#include "files/analyse.h"
#include "files/filemenu.h"
#include "files/kalfile.h"
#include "loads/combinationrules.h"
#include "post/contour.h"
#include "post/cut.h"
#include "post/diagrams.h"
#include "post/drawcontour.h"
#include "post/drawcrosses.h"
#include "post/legend.h"
#include "post/legendlook.h"
#include "post/outcome.h"
#include "post/plainnumber.h"
#include "post/plotunits.h"
#include "post/postproces.h"
#include "post/probe.h"
#include "post/probes.h"
#include "post/secondplot.h"
#include "post/source.h"
#include "post/stressfile.h"
#include "view/drawelems.h"
#include "view/moddraw.h"

static bool ischecked(postitems item) {
    return menupostItem(item).checked;
}

// Displacements are needed by a shape and by a contour plot of them.
static bool needsdisplacements() {
    return ischecked(deformedshape) || (ischecked(contourplot) && contourdata == displacementdata);
}

static bool showsfield() {
    return ischecked(modeshape) || needsdisplacements();
}

void readfield() {
    if (ischecked(modeshape))
        readmode();
    else if (needsdisplacements())
        readshape();
    else
        dispres.clear();  // no reactions beside a model without results
}

static std::string noteofset() {
    if (!plotready() || highest.e != 0) return {};
    return ischecked(contourplot)
               ? "The set holds no element with a face; Element Stress shows lines"
               : "The set holds no line element; Contour plot shows faces";
}

static std::string noteoffill() {
    if (!ischecked(contourplot) || !contourfilled || !plotready() || unfilled == 0) return {};
    return numbertext(unfilled) + (unfilled == 1 ? " element" : " elements") +
           " with values from 1E+06 up not filled; contour lines show them";
}

// The number of a mode shape stays as that of the combination.
static std::string noteofcombination() {
    const bool stress = plotready() && plotsstress();
    const bool displacement = needsdisplacements() && !fieldismode;
    if (!stress && !displacement) return {};
    if (curlcomb > ncomb())
        return "there is no load combination " + numbertext(curlcomb) + ", its " +
               (stress ? "stresses" : "displacements") + " are 0; choose one in the list";
    if (stress && ischecked(modeshape) && fieldismode)
        return "the stresses are of load combination " + shownname(lcombname(curlcomb));
    return {};
}

// What is on show and what the user should know of it, for the status line.
static std::string resultnote() {
    std::string note = fieldread ? modetext() : "";
    const auto add = [&](const std::string& text) {
        if (!note.empty() && !text.empty()) note += "; ";
        note += text;
    };
    if (showsfield()) add(fieldnote);
    if (plotready() && plotsstress()) add(stressnote);
    add(diagramnote());
    add(noteofcombination());
    add(noteofset());
    add(noteoffill());
    return note;
}

static void tellnote() {
    static bool told;
    const std::string note = resultnote();
    if (told || !note.empty()) theplatform().showstatus(note.empty() ? statusline() : note);
    told = !note.empty();
}

std::function<void()> resultschanged;

void showresults() {
    if (readsecond) readsecond();
    prepareplot();
    preparediagrams();
    theplatform().refresh();
    redrawall();
    tellnote();
    if (resultschanged) resultschanged();
}

static bool toggle(postitems item) {
    retryresults();
    menupostItem(item).checked = !menupostItem(item).checked;
    return menupostItem(item).checked;
}

// A set that another model has left empty gives way to all elements.
static void refreshset() {
    noteselection();
    if (postcount == 0) postset = setofall;
}

void showdeformed() {
    const hourglass wait;
    if (toggle(deformedshape))
        readshape();
    else
        readfield();
    showresults();
}

void showcontour() {
    const hourglass wait;
    if (toggle(contourplot)) {
        refreshset();
        menupostItem(elementstress).checked = false;
        if (contourdata == displacementdata) readfield();
    } else {
        readfield();
    }
    showresults();
}

void showelementstress() {
    const hourglass wait;
    if (toggle(elementstress)) {
        refreshset();
        menupostItem(contourplot).checked = false;
    }
    showresults();
}

void showmode() {
    const hourglass wait;
    if (toggle(modeshape)) {
        curlcomb = 1;
        readmode();
    } else {
        readfield();  // the combination's field takes the place of the mode's
    }
    showresults();
}

void toggleswitch(bool& on) {
    on = !on;
    showresults();
}

void choosecombination(int c) {
    if (c < 1 || c > ncomb()) return;
    const hourglass wait;
    curlcomb = c;
    retryresults();
    if (shownsource.of != sources::envelope) shownsource.of = sources::combination;
    forgetmembers();
    readfield();
    showresults();
}

void choosesource(const resultsource& source) {
    const hourglass wait;
    shownsource = source;
    retryresults();
    forgetmembers();
    readfield();
    showresults();
}

void choosemode(int number) {
    if (number < 1) return;
    const hourglass wait;
    curlcomb = number;
    retryresults();
    readmode();
    showresults();
}

void typemode(const std::string& text) {
    double number = 0;
    if (!readnumber(text, number) || !(number >= 1 && number <= std::numeric_limits<int>::max()))
        return;
    if (const int whole = int(number); whole != curlcomb) choosemode(whole);
}

void rereadshown() {
    dropmembers();
    readshown();
}

void readshown() {
    retryresults();
    readfield();
    second.valid = false;
    if (readsecond) readsecond();
    prepareplot();
    preparediagrams();
    tellnote();
}

std::string modetext() {
    if (!ischecked(modeshape) || !fieldismode || modecount == 0) return {};
    if (curlcomb > modecount)
        return "The results hold " + numbertext(modecount) + " mode shapes, number " +
               numbertext(curlcomb) + " is not among them";
    return "Mode shape " + numbertext(curlcomb) + " of " + numbertext(modecount) + ": " +
           frequencytext(modevalue);
}

bool isstaleshown() {
    return isresultstale() && (ischecked(deformedshape) || ischecked(contourplot) ||
                               ischecked(modeshape) || ischecked(elementstress) || diagramshown);
}

static std::string textoflargest() {
    largestof most;
    for (int n = 1; n <= nnodes(); ++n) {
        const auto d = nodes.row(1, n);
        most.meet(n, std::sqrt(double(d[0]) * d[0] + double(d[1]) * d[1] + double(d[2]) * d[2]));
    }
    return shorttext(most.size) + behind("L") + " at node " + numbertext(most.item);
}

std::vector<std::string> picturenotes(int nview) {
    std::vector<std::string> notes;
    if (sidebyside) notes.push_back(nameofview(nview));
    const bool stress = plotready() && plotsstress(), field = showsfield() && fieldread;
    if (!stress && !field && !diagramshown) return notes;
    if (isresultstale()) notes.emplace_back(staletext);
    if (field && !fieldnote.empty()) notes.push_back(fieldnote);
    if (stress && !stressnote.empty()) notes.push_back(stressnote);
    if (field && isdeformed() && !fieldismode && maxdisp > 0)
        notes.push_back("Displacements drawn " + shorttext(dispscale(nview)) +
                        " times their size, the largest " + textoflargest());
    if (field && isenvelope() && isdeformed() && !fieldismode && !(sidebyside && nview == 2))
        notes.push_back("An envelope has no shape; drawn is that of " + combinationname());
    if (diagramshown) notes.push_back(diagramtext(nview));
    return notes;
}

static void drawnotes(int nview) {
    const double margin = 0.15;  // centimetres
    surface* const s = target(nview);
    if (s == nullptr) return;
    s->font = elemlabelfont;
    s->textcolor = elemlabelcolor;
    double y = margin;
    for (const std::string& note : picturenotes(nview)) {
        s->moveto(margin, y);
        s->text(note);
        y += s->textheight();
    }
    if (!issecond() || second.commonscale || !plotready()) return;
    const double width = 4, height = 8;  // of the legend of its own scale, centimetres
    drawlegendon(*s, margin, y + margin, width, std::min(height, s->height() - y));
}

std::vector<std::string> modelist() {
    std::vector<std::string> list;
    for (const double value : modevalues)
        list.push_back(numbertext(int(list.size()) + 1) + ": " + frequencytext(value));
    return list;
}

void wirepost() {
    wirelegend();
    rereadresults = rereadshown;
    resultsummary = outcometext;
    layer(layers::contour).draw = postdispatch;
    layer(layers::elementstress).draw = drawelementstress;
    layer(layers::diagrams).draw = [](int nview) {
        drawdiagrams(nview);
        if (nview == 1) drawlegend();
    };
    curvedmember = drawcurvedmember;
    modelopened = [] {
        dropmembers();
        diagramshown = false;
        restoresource();
    };
    checkkalsection(envelopesection, checksource);
    checkkalsection(rulessection, checkrules);
    layer(layers::extremes).draw = [](int nview) {
        drawcrosses(nview);
        drawextremes(nview);
        drawcut(nview);
        drawprobes(nview);
        drawnotes(nview);
    };
    // The mesh as it was would stand in the way of its own ghost.
    layerrow& mesh = layer(layers::elements);
    mesh.draw = [wires = mesh.draw](int nview) {
        if (ghoston && isdeformed())
            drawghost(nview);
        else
            wires(nview);
    };
    layer(layers::deformed).wanted = [](int nview) {
        return isdeformed() && !(isplotview(nview) && iscontour());
    };
    holdreference("Group of the plots", items::group, losses::instead,
                  [] { return std::span(&postgroup, 1); });
}
