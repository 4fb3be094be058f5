// SPDX-License-Identifier: GPL-3.0-or-later
// Adding of single elements. State: what is called when the picking ends, whether it made elements,
// and the nodes that commands made for it.
#include "tools/singleelem.h"

#include <algorithm>
#include <utility>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/modelitems.h"
#include "core/modelsize.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/views.h"
#include "edit/Mouseprocedures.h"
#include "edit/find.h"
#include "edit/merge.h"
#include "edit/move.h"
#include "edit/selection.h"
#include "tools/genmesh.h"
#include "tools/groups.h"
#include "view/drawelems.h"
#include "view/moddraw.h"
#include "view/scaleview.h"

static std::function<void()> whenended;
static bool addedany;
static std::vector<int> madenodes;

// --- the form -----------------------------------------------------------------------------------

addsingleform openaddsingle() {
    addsingleform form;
    for (int t = 1; t < neltypes; ++t) form.types.push_back(eltypname(t));
    for (int g = 1; g <= ngroups(); ++g) form.groups.push_back(groupname(g));
    const auto known =
        std::ranges::find(form.types, eltypname(std::clamp(mesheltype, 0, neltypes)));
    choosesingletype(form, known == form.types.end() ? 0 : int(known - form.types.begin()));
    choosesinglegroup(form, std::clamp(meshgroup, 1, ngroups()) - 1);
    prompt("Single", "", "", "");
    return form;
}

void choosesingletype(addsingleform& form, int entry) {
    if (entry < 0 || entry >= int(form.types.size())) return;
    form.chosentype = entry;
    mesheltype = findtype(form.types[std::size_t(entry)]);
    form.typenodes = numbertext(eltypnodes(mesheltype));
}

void choosesinglegroup(addsingleform& form, int entry) {
    if (entry < 0 || entry >= int(form.groups.size())) return;
    form.chosengroup = entry;
    meshgroup = entry + 1;
}

void closeaddsingle() {
    whenended = nullptr;
    addready();
}

// --- the mode -----------------------------------------------------------------------------------

static void promptnode() {
    prompt("Single",
           "Node " + numbertext(nodesel(0) + 1) + " of " + numbertext(eltypnodes(mesheltype)),
           "for " + eltypname(mesheltype), "<Left Button> or <Command> to add, <ESC> to stop");
}

static void emptynodes() {
    hideselection();
    nodesel(0) = 0;
}

static void drawmade(int e) {
    drawinviews([e](int v) {
        drawcolor = eltypnodes(int(elems(e, 0))) == 2 ? linecolor : meshcolor;
        drawelement(e, v);
    });
}

static void appendelement() {
    if (!growby(0, 1)) return emptynodes();
    const int e = appenditems(items::element);
    elems(e, 0) = float(mesheltype);
    for (int k = 1; k <= eltypnodes(mesheltype); ++k) elems(e, k) = float(nodesel(k));
    egroup(e) = meshgroup;
    elemvis(activeview, e) = true;
    if (viewselnum(activeview) != 0) ++viewselnum(activeview);  // 0: the view shows all
    addedany = true;
    emptynodes();
    drawmade(e);
}

void addelementnode(int n) {
    if (n < 1 || n > nnodes()) return;
    hideselection();
    togglenode(n);
    showselection();
    if (nodesel(0) >= eltypnodes(mesheltype)) appendelement();
    promptnode();
}

// As free nodes do, those made by commands merge with the ones they meet.
static void mergemade() {
    if (!automergenodes) return;
    for (const int n : madenodes) nodesel(nodesel(0) = nodesel(0) + 1) = n;
    mergenodes();
    nodesel(0) = 0;
}

static void endsingle() {
    singleel = false;
    emptynodes();
    if (!madenodes.empty()) mergemade();
    if (addedany || !madenodes.empty()) redrawall();
    addedany = false;
    madenodes.clear();
    if (const auto ended = std::exchange(whenended, nullptr)) ended();
}

void startsingle(std::function<void()> ended) {
    startmode(addelemmode);
    setselectitem(selectnodes);
    singleel = true;
    nodesel(0) = 0;
    madenodes.clear();
    addedany = false;
    mnuEditItem(undoitem).enabled = false;
    whenended = std::move(ended);
    checkonly(Mnuadditem, elementitem);
    promptnode();
}

void wiresingleelem() {
    moderow row;
    row.flag = &addelemmode;
    row.name = "Element";
    row.picks = true;
    row.press = [](int nview) { addelementnode(picknode(nview).item); };
    // Commands start from the first node of the element in work.
    row.lastpoint = [](double* point) {
        const int n = nodesel(0) > 0 ? nodesel(1) : 0;
        const double given[] = {modelx, modely, modelz};
        for (int k = 0; k < 3; ++k) point[k] = n > 0 ? double(nodes(0, n, k)) : given[k];
    };
    row.commandpoint = [](double x, double y, double z) {
        modelx = x;
        modely = y;
        modelz = z;
        const int n = addnodeat(activeview);
        if (n != 0) madenodes.push_back(n);
        addelementnode(n);
    };
    row.back = [] {
        if (nodesel(0) == 0) return;
        hideselection();
        nodesel(0) = nodesel(0) - 1;
        showselection();
        promptnode();
    };
    row.end = endsingle;
    modes().push_back(row);
}
