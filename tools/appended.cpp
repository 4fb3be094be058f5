// SPDX-License-Identifier: GPL-3.0-or-later
// New items of the model.
#include "tools/appended.h"

#include "core/catalogue.h"
#include "core/model.h"
#include "core/modelitems.h"
#include "core/modelsize.h"
#include "core/numtext.h"
#include "core/runtime.h"
#include "core/session.h"
#include "core/views.h"
#include "edit/pickplaces.h"
#include "edit/selection.h"
#include "view/moddraw.h"

void needroomfor(long newnodes, long newelements, long newgraphics) {
    if (growby(newnodes, newelements, newgraphics)) return;
    const auto check = [](long need, long have, const char* what, const char* size) {
        if (need <= have) return;
        throw runtimeerror{errargument, numbertext(double(need)) + " " + what + " are needed, " +
                                            numbertext(double(have)) + " are declared. Increase '" +
                                            size + "' with [File,Model size..]"};
    };
    check(nnodes() + newnodes, nodes.upper2, "nodes", "Number of nodes");
    check(nelems() + newelements, elems.upper1, "elements", "Number of elements");
    if (newgraphics > 0)
        check(ngraphics() + newgraphics, graphics.upper1, "graphic elements",
              "Number of graphic elements");
}

int appendnode(const point3& at) {
    const int n = appenditems(items::node);
    for (int k = 0; k < 3; ++k) nodes(0, n, k) = float(at[std::size_t(k)]);
    return n;
}

int appendelement(int type, const std::array<int, 4>& corners) {
    const int e = appenditems(items::element);
    elems(e, 0) = float(type);
    for (int k = 0; k < nodesoftype(float(type)); ++k)
        elems(e, k + 1) = float(corners[std::size_t(k)]);
    egroup(e) = meshgroup;
    for (int v = 1; v <= nviews; ++v) {
        elemvis(v, e) = true;
        if (viewselnum(v) != 0) ++viewselnum(v);
    }
    return e;
}

lastitems lastitemsnow() {
    return {nnodes(), nelems(), ngraphics()};
}

void selectappended(const lastitems& before) {
    for (int e = before.element + 1; e <= nelems(); ++e) elemsel(e - before.element) = float(e);
    elemsel(0) = float(nelems() - before.element);
    for (int n = before.node + 1; n <= nnodes(); ++n) nodesel(n - before.node) = n;
    nodesel(0) = nnodes() - before.node;
    int entries = 0;
    for (int g = before.graphic + 1; g <= ngraphics(); ++g)
        for (int j = 1; j <= pointsofgraphic(kindof(graphics, g)); ++j) {
            if (entries == graphsel2.upper1) break;
            graphsel2(++entries, 0) = g;
            graphsel2(entries, 1) = j;
        }
    graphsel2(0, 0) = entries;
    syncgraphsel();
    if (nelems() > before.element) checkselectitem(selectelements);
    pasteflag = true;
    redrawall();
    labelselect();
}
