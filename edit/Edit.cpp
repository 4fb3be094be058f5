// SPDX-License-Identifier: GPL-3.0-or-later
// Operations of the Edit menu.
#include "edit/Edit.h"

#include <algorithm>

#include "core/catalogue.h"
#include "core/colours.h"
#include "core/model.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/views.h"
#include "view/moddraw.h"

static const int kindline = 1;

static void deselect() {
    drawcolor = backcolor;
    drawselectionall();
    nodesel(0) = 0;
    elemsel(0) = 0;
    graphsel2(0, 0) = 0;
    drawcolor = selcolor;
}

static void pastenodes() {
    const int count = int(tmpnodes(0, 0)), before = nnodes();
    for (int i = 1; i <= count; ++i) {
        const int n = before + i;
        for (int k = 0; k < 3; ++k) {
            nodes(0, n, k) = tmpnodes(i, k + 1);
            nodes(1, n, k) = 0;
        }
        nodename(n).clear();
        nodesel(i) = n;
    }
    nodesel(0) = count;
    nodes(0, 0, 0) = float(before + count);
}

static void pasteelements(int nodesbefore) {
    const int count = int(tmpelems(0, 0)), before = nelems();
    for (int i = 1; i <= count; ++i) {
        const int e = before + i;
        elems(e, 0) = tmpelems(i, 0);
        const int elnn = nodesoftype(tmpelems(i, 0));
        for (int k = 1; k <= 4; ++k)
            elems(e, k) = k <= elnn ? float(nodesbefore) + tmpelems(i, k) : 0.0f;
        egroup(e) = int(tmpelems(i, 5));
        rotpo(e) = 0;
        elemname(e).clear();
        elemsel(i) = float(e);
        elemvis(activeview, e) = true;
    }
    elemsel(0) = float(count);
    elems(0, 0) = float(before + count);
    viewselnum(activeview) += count;
}

static void pastegraphics() {
    const int count = int(graphics2(0, 0, 0)), before = ngraphics();
    int entries = 0;
    const auto select = [&](int g, int part) {
        if (entries == graphsel2.upper1) return;
        ++entries;
        graphsel2(entries, 0) = g;
        graphsel2(entries, 1) = part;
    };
    for (int i = 1; i <= count; ++i) {
        const int g = before + i;
        for (int j = 0; j <= 3; ++j)
            std::ranges::copy(graphics2.row(i, j), graphics.row(g, j).begin());
        select(g, 1);
        select(g, 2);
        if (graphics(g, 0, 0) > kindline) select(g, 3);
    }
    graphics(0, 0, 0) = float(before + count);
    graphsel2(0, 0) = entries;
}

static bool bufferfits() {
    return nnodes() + long(tmpnodes(0, 0)) <= nodes.upper2 &&
           nelems() + long(tmpelems(0, 0)) <= elems.upper1 &&
           ngraphics() + long(graphics2(0, 0, 0)) <= graphics.upper1;
}

bool editpaste() {
    if (tmpelems(0, 0) != 0) checkonly(MnuSelectItem, 1);
    if (tmpnodes(0, 0) == 0 && graphics2(0, 0, 0) == 0) return true;
    if (!bufferfits()) {
        door().message(
            "Increase number of nodes or elements on Model declaration form. Do: "
            "[File,modelsize..]",
            icons::exclamation);
        return false;
    }
    deselect();
    const int nodesbefore = nnodes();
    if (tmpnodes(0, 0) != 0) pastenodes();
    if (tmpelems(0, 0) != 0) pasteelements(nodesbefore);
    if (graphics2(0, 0, 0) != 0) pastegraphics();
    drawcolor = selcolor;
    drawselectionall();
    labelselect();
    return true;
}
