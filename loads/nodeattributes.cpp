// SPDX-License-Identifier: GPL-3.0-or-later
// Constraints and loads of a selection: the form of the dialog and what it shows. The rows are
// rewritten in attributerows.
#include "loads/nodeattributes.h"

#include <functional>

#include "core/colours.h"
#include "core/formulas.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/pack.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/units.h"
#include "core/views.h"
#include "edit/Mouseprocedures.h"
#include "edit/selection.h"
#include "loads/attributerows.h"
#include "loads/shares.h"
#include "view/drawconditions.h"
#include "view/moddraw.h"
#include "view/pen.h"
#include "view/symbolstyle.h"

static const char* const wholeselection = "Selection";
static const char* const noselection = "None";

const std::array<attributelabel, 6> constraintlabel = {{{"Dx  =", "L"},
                                                        {"Dy  =", "L"},
                                                        {"Dz  =", "L"},
                                                        {"Rx  =", "L"},
                                                        {"Ry  =", "L"},
                                                        {"Rz  =", "L"}}};

std::array<attributelabel, 6> constraintlabels() {
    auto labels = constraintlabel;
    for (std::size_t i = 0; i < labels.size() && !unitstext.empty(); ++i)
        labels[i].unit = unitname(constraintformula(int(i) + 1));
    return labels;
}

const char linepressurehint[] =
    "Line pressure is not at work: Apply stores nothing here. A load along a line goes to its "
    "elements, by Element Pressure Loads.";

static attributemodes attributemode() {
    if (editconstraint) return attributemodes::constraints;
    if (editnodalload) return attributemodes::nodalloads;
    if (editelemload) return attributemodes::elementloads;
    return attributemodes::none;
}

// --- captions -----------------------------------------------------------------------------------

static void setlabels(attributeform& form, const char* group,
                      const std::array<attributelabel, 6>& labels) {
    form.loadgroup = group;
    form.loadlabel = labels;
    for (attributelabel& label : form.loadlabel) label.unit = captionunit(label.unit);
}

void lockload(attributeform& form) {
    setlabels(form, "Nodal Masses",
              {{{"Massx =", "M"},
                {"Massy =", "M"},
                {"Massz =", "M"},
                {"Ix =", "M.L^2"},
                {"Iy =", "M.L^2"},
                {"Iz =", "M.L^2"}}});
}

void freeload(attributeform& form) {
    setlabels(form, "Nodal Loads",
              {{{"Fx =", "F"},
                {"Fy =", "F"},
                {"Fz =", "F"},
                {"Mx =", "F.L"},
                {"My =", "F.L"},
                {"Mz =", "F.L"}}});
}

void Elemload(attributeform& form) {
    setlabels(form, "Element Loads",
              {{{"Px =", "F/L^n"},
                {"Py =", "F/L^n"},
                {"Pz =", "F/L^n"},
                {"", "", false},
                {"", "", false},
                {"", "", false}}});
}

void Elemloadlock(attributeform& form) {
    Elemload(form);
    for (std::size_t i = 0; i < 3; ++i) {
        form.loadlabel[i].unit = captionunit("F/L^2");
        form.loadlabel[i].shown = false;
    }
}

// Element loads are entered in load cases of any type, so the last step shows their fields again.
static void setcaptions(attributeform& form) {
    const bool elements = attributemode() == attributemodes::elementloads;
    if (lctype(curlc) != caseapplied) {
        lockload(form);
        if (elements) Elemloadlock(form);
    } else {
        freeload(form);
        if (elements) Elemload(form);
    }
    if (elements) Elemload(form);
}

// --- opening and closing ------------------------------------------------------------------------

void startattributes(attributemodes mode) {
    addready();
    mnuEditItem(undoitem).enabled = false;
    editconstraint = mode == attributemodes::constraints;
    editnodalload = mode == attributemodes::nodalloads;
    editelemload = mode == attributemodes::elementloads;
    if (mode == attributemodes::none) linepressure = true;
    theplatform().refresh();
    theplatform().showdialog("nodeattributes");
}

static void listnodes(attributeform& form) {
    form.items.emplace_back(wholeselection);
    for (int i = 1; i <= nodesel(0); ++i) form.items.push_back(numbertext(nodesel(i)));
}

static void listelements(attributeform& form) {
    form.items.emplace_back(wholeselection);
    for (int i = 1; i <= int(elemsel(0)); ++i) form.items.push_back(numbertext(elemsel(i)));
}

// Nodes come first, but where both are selected (after a paste) element loads list the elements.
static void fillitems(attributeform& form) {
    const bool elements = attributemode() == attributemodes::elementloads;
    form.items.clear();
    form.listsnodes =
        elements ? nodesel(0) != 0 && elemsel(0) == 0 : nodesel(0) != 0 || elemsel(0) == 0;
    if (nodesel(0) == 0 && elemsel(0) == 0) {
        form.listsnodes = !elements;
        form.items.emplace_back(noselection);
    } else if (form.listsnodes) {
        listnodes(form);
    } else {
        listelements(form);
    }
    form.listgroup = form.listsnodes ? "Select Nodes" : "Select Elements";
    form.listcaption = form.listsnodes ? "   Apply edit to node" : "Apply edit to element";
}

void Initiate(attributeform& form) {
    editing = true;
    fillitems(form);
    if (form.items.front() == noselection)
        theplatform().message("Please, select node(s)or elements before adding boundary conditions",
                              icons::exclamation);
    form.chosen = 0;
    form.cases.clear();
    for (int lc = 1; lc <= nlc(); ++lc) form.cases.push_back(lcname(lc));
    form.chosencase = curlc - 1;
    setcaptions(form);
}

attributeform openattributes() {
    attributeform form;
    switch (attributemode()) {
        case attributemodes::constraints:
            form.title = "Edit constraints";
            form.constraintgroup = true;
            form.hint = "0 holds, an empty field sets free. Rx, Ry and Rz are angles in degrees.";
            break;
        case attributemodes::nodalloads:
            form.title = "Edit Nodal loads";
            break;
        case attributemodes::elementloads:
            form.title = "Edit Element loads";
            form.hint =
                "Px, Py and Pz act along the element's own axes 1, 2 and 3, drawn in red, green "
                "and blue: " +
                captionunit("F/L^2") + " on faces, " + captionunit("F/L") + " on lines.";
            break;
        case attributemodes::none:
            form.hint = linepressurehint;
            break;
    }
    if (curlc < 1 || curlc > nlc()) curlc = 1;
    Initiate(form);
    if (editelemload) showselection();  // with the axes
    return form;
}

void closeattributes(const attributeform& form) {
    const bool axes = editelemload;
    if (axes) hideselection();
    editconstraint = editnodalload = editelemload = false;
    editing = false;
    if (axes) showselection();
    // While the dialog was open the active view alone was kept up.
    if (form.changed && shownviews() > 1) redrawall();
}

// --- reading ------------------------------------------------------------------------------------

static bool ischosennumber(const attributeform& form) {
    const std::string& text = form.items[std::size_t(form.chosen)];
    return text != wholeselection && text != noselection;
}

static int chosennumber(const attributeform& form) {
    return int(numberof(form.items[std::size_t(form.chosen)]));
}

static void put(attributeform& form, int field, float value, int last) {
    if (field >= 1 && field <= last) form.text[std::size_t(field) - 1] = numbertext(value);
}

void getconstrains(attributeform& form) {
    const int n = chosennumber(form);
    for (int i = 1; i <= ncon; ++i)
        if (connode(i) == n) put(form, condof(i), conval(i), 6);
}

void getloads(attributeform& form) {
    const int n = chosennumber(form);
    for (int i = 1; i <= loadnode(curlc, 0); ++i)
        if (loadnode(curlc, i) == n) put(form, loaddof(curlc, i), loadval(curlc, i), 6);
}

void getElemloads(attributeform& form) {
    const int e = chosennumber(form);
    for (int i = 1; i <= int(elemload(curlc, 0, 0)); ++i)
        if (int(elemload(curlc, i, 0)) == e)
            put(form, int(elemload(curlc, i, 1)), elemload(curlc, i, 2), 3);
}

// Do the listed numbers name what the mode edits?
static bool islistedkind(const attributeform& form) {
    return form.listsnodes == (attributemode() != attributemodes::elementloads);
}

static void getrows(attributeform& form) {
    for (std::string& text : form.text) text.clear();
    if (!ischosennumber(form) || !islistedkind(form)) return;
    switch (attributemode()) {
        case attributemodes::constraints:
            return getconstrains(form);
        case attributemodes::nodalloads:
            return getloads(form);
        case attributemodes::elementloads:
            return getElemloads(form);
        case attributemodes::none:
            return;
    }
}

void chooseitem(attributeform& form, int entry) {
    if (entry < 0 || entry >= int(form.items.size())) return;
    form.chosen = entry;
    getrows(form);
}

void fillsupport(attributeform& form, bool clamped) {
    for (int dof = 1; dof <= 6; ++dof) {
        const bool inplane = dof <= 2 || dof == 6, turns = dof > 3;
        form.text[std::size_t(dof - 1)] = (dim2d && !inplane) || (turns && !clamped) ? "" : "0";
    }
}

// --- symbols ------------------------------------------------------------------------------------

using drawroutine = void (*)(int nview);

static void drawviews(drawroutine draw, int first, int last, colour c) {
    drawcolor = c;
    for (int v = first; v <= last; ++v) draw(v);
}

// Erases the symbols of some views, changes the model, draws what then stands, also when the change
// failed.
static void erasechangedraw(drawroutine draw, int first, int last,
                            const std::function<void()>& change) {
    const keptpen pen;
    drawviews(draw, first, last, backcolor);
    runtimeerror fault;
    const bool good = guarded(change, [&](const runtimeerror& e) { fault = e; });
    drawviews(draw, first, last, loadcolor);
    showviews();
    if (!good) throw fault;
}

static int viewinuse() {
    return singleview ? 1 : int(activeview);
}

static void drawconstraintsonshow(int nview) {
    if (mnudrawlist(constraintsdrawn).checked) drawconstraints(nview);
}

void chooseattributecase(attributeform& form, int entry) {
    if (entry < 0 || entry >= nlc()) return;
    form.chosencase = entry;
    const auto change = [&] { curlc = entry + 1; };
    if (viewloads(activecase).checked)
        erasechangedraw(drawloads, 1, shownviews(), change);
    else
        change();
    setcaptions(form);
    getrows(form);
}

// --- applying -----------------------------------------------------------------------------------

static void tellnoneofkind(bool nodal, const attributeform& form) {
    const std::string kind = nodal ? "nodes" : "elements";
    const std::string what = attributemode() == attributemodes::constraints ? "Constraints"
                             : nodal                                        ? "Nodal loads"
                                                                            : "Element loads";
    theplatform().message(
        what + " are applied to " + kind + ", " +
            (ischosennumber(form) ? "the list holds " + std::string(nodal ? "elements" : "nodes")
                                  : "but none is selected") +
            ". Close the dialog and select " + kind + " first.",
        icons::exclamation);
}

// What the fields go to: the chosen number, or the whole selection of the mode's kind. False after
// a message where that is nothing, and without one for "None".
static bool gatheritems(const attributeform& form, bool nodal, std::vector<int>& items) {
    items.clear();
    if (form.items[std::size_t(form.chosen)] == noselection) return false;
    if (!ischosennumber(form)) {
        const int count = nodal ? nodesel(0) : int(elemsel(0));
        for (int i = 1; i <= count; ++i) items.push_back(nodal ? nodesel(i) : int(elemsel(i)));
    } else if (islistedkind(form)) {
        items.push_back(chosennumber(form));
    }
    if (items.empty()) tellnoneofkind(nodal, form);
    return !items.empty();
}

static fieldtexts constraintfields(const attributeform& form) {
    fieldtexts fields;
    for (std::size_t i = 0; i < 6; ++i)
        fields.push_back({constraintlabel[i].caption, form.text[i], constraintformula(int(i) + 1)});
    return fields;
}

static fieldtexts nodalfields(const attributeform& form) {
    fieldtexts fields;
    for (std::size_t i = 0; i < 6; ++i)
        fields.push_back(
            {form.loadlabel[i].caption, form.text[i], nodalformula(curlc, int(i) + 1)});
    return fields;
}

// A unit fits faces or lines, not both at once.
static fieldtexts elementfields(const attributeform& form, const std::vector<int>& items) {
    std::string formula = items.empty() ? "F/L^n" : elementformula(items.front());
    for (const int e : items)
        if (formula != elementformula(e)) formula = "";
    fieldtexts fields;
    for (std::size_t i = 0; i < 3; ++i)
        fields.push_back({form.loadlabel[i].caption, form.text[i], formula});
    return fields;
}

// False after a unit that cannot be taken was told.
static bool takesunits(const fieldtexts& fields) {
    const std::string fault = faultofunits(fields);
    if (!fault.empty()) theplatform().message(fault, icons::exclamation);
    return fault.empty();
}

void applysingcon(const attributeform& form, int n) {
    rewriteconstraints({n}, constraintfields(form));
}

void applysingload(const attributeform& form, int n) {
    rewritenodalloads(curlc, {n}, nodalfields(form));
}

void applysingelemload(const attributeform& form, int e) {
    rewriteelementloads(curlc, {e}, elementfields(form, {e}));
}

void applyconstrains(const attributeform& form) {
    std::vector<int> items;
    const fieldtexts fields = constraintfields(form);
    if (gatheritems(form, true, items) && takesunits(fields)) rewriteconstraints(items, fields);
}

void applyloads(const attributeform& form) {
    std::vector<int> items;
    const fieldtexts fields = nodalfields(form);
    if (!gatheritems(form, true, items) || !takesunits(fields)) return;
    rewritenodalloads(curlc, items, fields);
    if (!form.shared) return;
    const std::vector<double> share = sharesof(items);
    const int rows = loadnode(curlc, 0);
    for (int i = 1; i <= rows; ++i)
        if (const int n = loadnode(curlc, i); n >= 1 && n <= nnodes() && share[std::size_t(n)] > 0)
            loadval(curlc, i) = float(loadval(curlc, i) * share[std::size_t(n)]);
}

void applyelemloads(const attributeform& form) {
    std::vector<int> items;
    if (!gatheritems(form, false, items)) return;
    const fieldtexts fields = elementfields(form, items);
    if (takesunits(fields)) rewriteelementloads(curlc, items, fields);
}

void applyattributes(attributeform& form) {
    const int active = viewinuse();
    switch (attributemode()) {
        case attributemodes::constraints:
            erasechangedraw(drawconstraintsonshow, active, active, [&] { applyconstrains(form); });
            break;
        case attributemodes::nodalloads:
            erasechangedraw(drawloads, 1, shownviews(), [&] { applyloads(form); });
            break;
        case attributemodes::elementloads:
            // The length of all strokes follows the largest load, so the nodal ones go along.
            erasechangedraw(drawloads, active, active, [&] { applyelemloads(form); });
            break;
        case attributemodes::none:
            return;
    }
    compactbc();
    form.changed = true;
    // Of these, what one node shows depends on what others show.
    if (symbolsdrawn.field || symbolsdrawn.values) redrawall();
}
