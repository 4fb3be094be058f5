// SPDX-License-Identifier: GPL-3.0-or-later
// The form of the model check.
#include "tools/checkform.h"

#include <algorithm>
#include <cmath>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/session.h"
#include "core/views.h"
#include "edit/selection.h"
#include "tools/checkmodel.h"
#include "tools/elementshape.h"
#include "view/autoscale.h"
#include "view/drawelems.h"
#include "view/moddraw.h"
#include "view/viewcontrol.h"

static const char* const allgroups = "All Groups";
enum referenceentries { asfirst, globalaxes, selectedelement };

void listgroups(checkmodelform& form) {
    form.groups = {allgroups};
    for (int g = 1; g <= ngroups(); ++g) form.groups.push_back(groupname(g));
    form.group = std::min(form.group, ngroups());
}

checkmodelform opencheckmodel() {
    checkmodelform form;
    listgroups(form);
    form.references = {"First element", "Global axes", "Selected element"};
    for (int v = 1; v <= nviews; ++v) {
        auto& kept = form.views[std::size_t(v) - 1];
        kept.type = viewtype(v);
        kept.group = viewgroup(v);
        for (int e = 1; kept.type == 2 && e <= nelems(); ++e)
            if (elemvis(v, e)) kept.elements.push_back(e);
    }
    return form;
}

// --- the views ----------------------------------------------------------------------------------

static void showgroup(int nview, int option, const std::string& group) {
    viewform choice;
    choice.current = nview;
    choice.group0 = viewgroup(nview);
    chooseoption(choice, option, group);
}

void getvgroup(checkmodelform& form, int entry) {
    listgroups(form);
    form.group = std::clamp(entry, 0, int(form.groups.size()) - 1);
    form.viewschanged = true;
    for (int v = 1; v <= nviews; ++v)
        showgroup(v, form.group == 0 ? 0 : 1, form.groups[std::size_t(form.group)]);
}

// A selection that a view showed; elements may have gone since.
static void showagain(int nview, const std::vector<int>& list) {
    viewtype(nview) = 2;
    viewgroup(nview) = 0;
    int count = 0;
    for (int e = 1; e <= nelems(); ++e) elemvis(nview, e) = false;
    for (const int e : list)
        if (e <= nelems()) {
            elemvis(nview, e) = true;
            ++count;
        }
    viewselnum(nview) = count;
}

void closecheckmodel(checkmodelform& form) {
    const bool redraw = form.viewschanged || qualityonshow;
    qualityonshow = false;
    if (form.viewschanged)
        for (int v = 1; v <= nviews; ++v) {
            const auto& kept = form.views[std::size_t(v) - 1];
            const bool there = kept.type == 1 && kept.group >= 1 && kept.group <= ngroups();
            if (kept.type == 2)
                showagain(v, kept.elements);
            else
                showgroup(v, there ? 1 : 0, there ? groupname(kept.group) : "");
        }
    form.viewschanged = false;
    if (redraw) redrawall();
}

// --- what is selected ---------------------------------------------------------------------------

static void selectitems(const std::vector<int>& nodelist, const std::vector<int>& elementlist) {
    hideselection();
    emptyselection();
    const auto fill = [](auto& list, const std::vector<int>& numbers, int count) {
        const std::vector<bool> marks = marksof(numbers, count);
        int filled = 0;
        for (int i = 1; i <= count; ++i)
            if (marks[std::size_t(i)]) list(++filled) = float(i);
        list(0) = float(filled);
    };
    fill(nodesel, nodelist, nnodes());
    fill(elemsel, elementlist, nelems());
    checkselectitem(elementlist.empty() ? selectnodes : selectelements);
    labelselect();
    showselection();
}

static std::vector<int> existing(const std::vector<int>& numbers, int count) {
    std::vector<int> list;
    std::ranges::copy_if(numbers, std::back_inserter(list),
                         [count](int n) { return n >= 1 && n <= count; });
    return list;
}

// --- axes ---------------------------------------------------------------------------------------

static int groupof(const checkmodelform& form) {
    return std::min(form.group, ngroups());
}

static void showelement(checkmodelform& form, int e) {
    form.element = e == 0 ? "" : numbertext(e);
    form.angle = e == 0 ? "" : shortfigure(std::round(todegrees(rotpo(e)) * 1000) / 1000) + " deg";
}

static void showquality(checkmodelform& form) {
    const axisquality q = localcheckbck();
    form.quality = q.nodes == 0 ? "" : shortfigure(q.lowest) + " to " + shortfigure(q.highest);
}

// False with the message set where an element is wanted and none of the group is selected.
static bool takereference(checkmodelform& form, axisreference& reference) {
    if (form.reference == globalaxes) reference.start = axisstarts::global;
    if (form.reference != selectedelement) return true;
    const std::vector<int> selected = selectedelements();
    const int g = groupof(form);
    if (selected.size() != 1 || !isplate(selected[0]) || (g != 0 && egroup(selected[0]) != g)) {
        form.message = "Select one plate of the group, whose axes the others are to take";
        return false;
    }
    reference = {axisstarts::element, selected[0]};
    return true;
}

void stepfirst(checkmodelform& form) {
    axisreference reference;
    if (!takereference(form, reference)) return;
    hideselection();
    const int e = firstelement(groupof(form), reference);
    if (e != 0) selectitems({}, {e});
    showelement(form, e);
    form.message = e == 0 ? "There is no plate of the group in the active view"
                          : "The walk starts here; <Next> checks its neighbours";
}

void stepnext(checkmodelform& form) {
    if (!iswalking()) return stepfirst(form);
    walkresult result;
    hideselection();
    const int e = nextelement(result);
    if (e != 0) selectitems({}, {e});
    showelement(form, e);
    form.message = result.rows < 0 ? toomanyrows
                   : e == 0        ? "All elements are checked"
                                   : walktext(result);
    if (result.mirrored > 0 || mnuSettingsItem(localaxison).checked) redrawall();
}

void homogenizeaxis(checkmodelform& form) {
    axisreference reference;
    if (!takereference(form, reference)) return;
    const hourglass wait;
    const int g = groupof(form);
    const walkresult result = g == 0 ? browse(reference) : homogenize(g, reference);
    form.message = walktext(result);
    showelement(form, reference.element);
    showquality(form);
    redrawall();
}

static void tellchange(checkmodelform& form, const walkresult& result, const char* done) {
    if (result.rows < 0)
        form.message = toomanyrows;
    else
        form.message = numbertext(result.elements) + " element(s) " + done +
                       (result.rows > 0 ? "; " + numbertext(result.rows) +
                                              " load row(s) turned, which keep their direction"
                                        : "");
    showquality(form);
    redrawall();
}

void flipgroup(checkmodelform& form) {
    const hourglass wait;
    walkresult all;
    const int g = groupof(form);
    for (int i = g == 0 ? 1 : g; i <= (g == 0 ? ngroups() : g) && all.rows >= 0; ++i) {
        const walkresult one = flip(i);
        all.elements += one.elements;
        all.rows = one.rows < 0 ? -1 : all.rows + one.rows;
    }
    tellchange(form, all, "flipped");
}

static void changeselected(checkmodelform& form, const std::function<void(int)>& change,
                           const char* done) {
    const std::vector<int> selected = selectedelements();
    if (std::ranges::none_of(selected, isplate)) {
        form.message = "Please, select elements before choosing this option.";
        return;
    }
    tellchange(form, changeplates(selected, change), done);
    showelement(form, selected.front());
}

void rotateselected(checkmodelform& form) {
    changeselected(
        form, [&form](int e) { rotateaxis(e, form.three); }, "rotated");
}

void mirrorselected(checkmodelform& form) {
    changeselected(form, mirroraxis, "mirrored");
}

static bool readlimit(checkmodelform& form, double& limit) {
    if (readnumber(form.limit, limit) && std::isfinite(limit)) return true;
    form.message = "The quality limit is no number: \"" + form.limit + "\"";
    return false;
}

void showwrong(checkmodelform& form) {
    double limit = 0;
    if (!readlimit(form, limit)) return;
    const std::vector<int> wrong = findwrongelem(limit);
    selectitems({}, wrong);
    showquality(form);
    form.message = numbertext(long(wrong.size())) + " element(s) are below the quality limit";
}

void modifywrong(checkmodelform& form) {
    double limit = 0;
    if (!readlimit(form, limit)) return;
    tellchange(form, modifyaxis(limit, form.rotate, form.three), "changed");
    const std::vector<int> left = findwrongelem(limit);
    selectitems({}, left);
    if (!left.empty())
        form.message += "; " + numbertext(long(left.size())) + " are still below the limit";
}

// --- findings -----------------------------------------------------------------------------------

void findall(checkmodelform& form) {
    const hourglass wait;
    bool whole = true;
    form.findings = findfaults(whole);
    form.checked = whole;
    const long kinds = std::ranges::count_if(form.findings, &finding::heading);
    form.message =
        !whole       ? "Cancelled; the list is not whole"
        : kinds == 0 ? "Nothing is wrong"
                     : numbertext(kinds) + " kind(s) of faults; click a line to see where they are";
}

void showfinding(checkmodelform& form, std::size_t line) {
    if (line >= form.findings.size()) return;
    const finding& f = form.findings[line];
    std::vector<int> places = existing(f.nodes, nnodes());
    const std::vector<int> elements = existing(f.elements, nelems());
    for (const int e : elements)
        for (int k = 1; k <= nodesoftype(elems(e, 0)); ++k) {
            const float n = elems(e, k);
            if (n >= 1 && n <= float(nnodes())) places.push_back(int(n));
        }
    if (std::ranges::any_of(elements, [](int e) { return !isshown(e, activeview); })) {
        form.viewschanged = true;
        showgroup(activeview, 0, "");
    }
    selectitems(existing(f.nodes, nnodes()), elements);
    if (places.empty()) return;
    fitnodes(activeview, places);
    drawview(activeview);
}

// --- quality of the elements --------------------------------------------------------------------

void countgroup(checkmodelform& form) {
    form.counts = countqualities(groupof(form));
}

void showqualities(checkmodelform& form, bool on) {
    qualityonshow = on;
    countgroup(form);
    redrawall();
}

void selectband(checkmodelform& form, int band) {
    if (band < 0 || band >= qualitybands) return;
    const std::vector<int> list = elementsofband(band, groupof(form));
    selectitems({}, list);
    form.message = numbertext(long(list.size())) + " element(s) of quality " +
                   shortfigure(double(band) / qualitybands) + " to " +
                   shortfigure(double(band + 1) / qualitybands);
}
