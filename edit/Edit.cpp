// SPDX-License-Identifier: GPL-3.0-or-later
// Operations of the Edit menu.
#include "edit/Edit.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "core/catalogue.h"
#include "core/elempatch.h"
#include "core/model.h"
#include "core/modelitems.h"
#include "core/modelsize.h"
#include "core/pack.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/views.h"
#include "edit/hover.h"
#include "edit/move.h"
#include "edit/selection.h"
#include "view/moddraw.h"

patchcopier copierofpatches;

// --- copy ---------------------------------------------------------------------------------------

static void copynodes() {
    for (int i = 1; i <= nodesel(0); ++i) {
        tmpnodes(i, 0) = float(nodesel(i));
        for (int k = 0; k < 3; ++k) tmpnodes(i, k + 1) = nodes(0, nodesel(i), k);
    }
    tmpnodes(0, 0) = float(nodesel(0));
}

// Corners become rows of the node buffer.
static void copyelements() {
    std::vector<int> row(std::size_t(nnodes()) + 1, 0);
    for (int i = 1; i <= nodesel(0); ++i) row[std::size_t(nodesel(i))] = i;
    const int count = int(elemsel(0));
    for (int i = 1; i <= count; ++i) {
        const int e = int(elemsel(i));
        std::ranges::fill(tmpelems.row(i), 0.0f);
        tmpelems(i, 0) = elems(e, 0);
        for (int k = 1; k <= nodesoftype(elems(e, 0)); ++k)
            tmpelems(i, k) = float(row[std::size_t(elems(e, k))]);
        tmpelems(i, 5) = float(egroup(e));
        tmprotpo(i) = rotpo(e);
    }
    tmpelems(0, 0) = float(count);
}

static void copygraphics() {
    for (int i = 1; i <= graphsel(0, 0); ++i)
        for (int j = 0; j <= 3; ++j)
            std::ranges::copy(graphics.row(graphsel(i, 0), j), graphics2.row(i, j).begin());
    graphics2(0, 0, 0) = float(graphsel(0, 0));
}

void editcopy() {
    tmpnodes(0, 0) = tmpelems(0, 0) = graphics2(0, 0, 0) = 0;
    const selectitems item = selectitem();
    const bool ofelements = item == selectelements && elemsel(0) != 0;
    if (ofelements) gatherelementnodes();
    if (item == selectnodes || item == selectelements) copynodes();
    if (ofelements) copyelements();
    if (item == selectgraphics) copygraphics();
    if (item == selectpatches && copierofpatches.copy) copierofpatches.copy();
    hideselection();
}

void editcut() {
    editcopy();
    editdelete();
}

// --- paste --------------------------------------------------------------------------------------

static void pastenodes() {
    const int count = int(tmpnodes(0, 0)), first = appenditems(items::node, count);
    for (int i = 1; i <= count; ++i) {
        const int n = first + i - 1;
        for (int k = 0; k < 3; ++k) nodes(0, n, k) = tmpnodes(i, k + 1);
        nodesel(i) = n;
    }
    nodesel(0) = count;
}

static void pasteelements(int nodesbefore) {
    const int count = int(tmpelems(0, 0)), first = appenditems(items::element, count);
    for (int i = 1; i <= count; ++i) {
        const int e = first + i - 1;
        elems(e, 0) = tmpelems(i, 0);
        const int elnn = nodesoftype(tmpelems(i, 0));
        for (int k = 1; k <= elnn; ++k) elems(e, k) = float(nodesbefore) + tmpelems(i, k);
        egroup(e) = int(tmpelems(i, 5));
        rotpo(e) = tmprotpo(i);
        elemsel(i) = float(e);
        elemvis(activeview, e) = true;
    }
    elemsel(0) = float(count);
    viewselnum(activeview) += count;
}

static void pastegraphics() {
    const int count = int(graphics2(0, 0, 0)), first = appenditems(items::graphic, count);
    int entries = 0;
    const auto select = [&](int g, int part) {
        if (entries == graphsel2.upper1) return;
        ++entries;
        graphsel2(entries, 0) = g;
        graphsel2(entries, 1) = part;
    };
    for (int i = 1; i <= count; ++i) {
        const int g = first + i - 1;
        for (int j = 0; j <= 3; ++j)
            std::ranges::copy(graphics2.row(i, j), graphics.row(g, j).begin());
        select(g, 1);
        select(g, 2);
        if (int(graphics(g, 0, 0)) > kindline) select(g, 3);
    }
    graphsel2(0, 0) = entries;
}

bool editpaste() {
    if (tmpelems(0, 0) != 0) checkselectitem(selectelements);
    if (tmpnodes(0, 0) == 0 && graphics2(0, 0, 0) == 0) return true;
    if (!growby(long(tmpnodes(0, 0)), long(tmpelems(0, 0)), long(graphics2(0, 0, 0)))) return false;
    releaseselection();
    const int nodesbefore = nnodes(), elementsbefore = nelems(), graphicsbefore = ngraphics();
    if (tmpnodes(0, 0) != 0) pastenodes();
    if (tmpelems(0, 0) != 0) pasteelements(nodesbefore);
    if (graphics2(0, 0, 0) != 0) pastegraphics();
    if (copierofpatches.pasted) copierofpatches.pasted(graphicsbefore, elementsbefore);
    syncgraphsel();
    pasteflag = true;
    redrawall();
    labelselect();
    return true;
}

// --- delete -------------------------------------------------------------------------------------

static void deletepatches() {
    for (int i = 1; i <= int(patchsel(0)); ++i) patches(long(patchsel(i)), 0, 0) = 0;
    patchsel(0) = 0;
    newnumbers number(std::size_t(countof(items::patch)) + 1, 0);
    int kept = 0;
    for (std::size_t p = 1; p < number.size(); ++p)
        if (patches(long(p), 0, 0) != 0) number[p] = ++kept;
    closeitems(items::patch, number);
    followitems(items::patch, number);
}

static void deleteelements() {
    for (int i = 1; i <= int(elemsel(0)); ++i) elems(long(elemsel(i)), 0) = 0;
    elemsel(0) = 0;
    packelems();
}

// New numbers of the nodes when the selected ones go that no element uses; 0 for those. Sets
// attached when a selected one has to stay.
static newnumbers numbersafterdelete(bool& attached) {
    std::vector<bool> used(std::size_t(nnodes()) + 1, false);
    for (int e = 1; e <= nelems(); ++e)
        for (int k = 1; k <= nodesoftype(elems(e, 0)); ++k) used[std::size_t(elems(e, k))] = true;
    const std::vector<bool> selected = marksof(selectednodes(), nnodes());
    newnumbers number(std::size_t(nnodes()) + 1, 0);
    int c = 0;
    for (std::size_t n = 1; n < number.size(); ++n) {
        if (selected[n] && used[n]) attached = true;
        if (!selected[n] || used[n]) number[n] = ++c;
    }
    return number;
}

// Those that go alone remain in the list, for their picture.
static void keeponlydeleted(const newnumbers& number) {
    int kept = 0;
    for (int i = 1; i <= nodesel(0); ++i)
        if (number[std::size_t(nodesel(i))] == 0) nodesel(++kept) = nodesel(i);
    nodesel(0) = kept;
}

static void deletenodes(bool erase) {
    bool attached = false;
    const newnumbers number = numbersafterdelete(attached);
    keeponlydeleted(number);
    if (erase) eraseselected();
    if (attached)
        theplatform().message("Node(s) attached to element are not deleted", icons::exclamation);
    followitems(items::node, number);
    closeitems(items::node, number);
    nodesel(0) = 0;
}

static void deletegraphics() {
    for (int i = 1; i <= graphsel2(0, 0); ++i) graphics(graphsel2(i, 0), 0, 0) = 0;
    graphsel(0, 0) = graphsel2(0, 0) = 0;
}

void editdelete() {
    if (!isselection()) return;
    endhover();
    hideselection();
    const bool elementschosen = elemsel(0) != 0;
    const bool shown = menupostItem(deformedshape).checked || menupostItem(contourplot).checked ||
                       menupostItem(modeshape).checked || menupostItem(elementstress).checked;
    const bool redraws = redrawdelete || shown;
    if (elementschosen) nodesel(0) = 0;
    if (!redraws && nodesel(0) == 0) eraseselected();
    if (patchsel(0) != 0) deletepatches();
    if (elementschosen) {
        gatherelementnodes();
        deleteelements();
    }
    if (nodesel(0) != 0) deletenodes(!redraws);
    if (graphsel2(0, 0) != 0) deletegraphics();
    compactbc();
    dropresults();
    dropundo();
    movepending = editing = pasteflag = false;
    promptaction = "Select";
    promptgoal.clear();
    prompttail.clear();
    textcaption();
    if (redraws) redrawall();
}
