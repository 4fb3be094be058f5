// SPDX-License-Identifier: GPL-3.0-or-later
// The highlight of the item under the pointer. State: what is highlighted.
#include "edit/hover.h"

#include "core/colours.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/views.h"
#include "edit/find.h"
#include "edit/modes.h"
#include "edit/pickshape.h"
#include "edit/selection.h"
#include "view/drawelems.h"
#include "view/moddraw.h"
#include "view/pen.h"
#include "view/scaleview.h"

static int hoverview;  // 0: nothing is highlighted
static nearest hovered;
static long hoverpicture;  // picturesdrawn when it was drawn

static const char* nameofitem(selectitems item) {
    static const char* const names[] = {"Node", "Element", "Patch", "Node", "Graphic element"};
    return names[item];
}

// Lines meet in their ends; the whole shape tells which one a press would take.
static void drawhoveredshape(surface& s, int nview, colour c) {
    if (!shapeofgraphic) return;
    double x = 0, y = 0;
    bool first = true;
    for (const auto& at : shapeofgraphic(hovered.item)) {
        projectplace(nview, at[0], at[1], at[2]);
        if (!first) s.line(x, y, scrx, scry, c);
        x = scrx;
        y = scry;
        first = false;
    }
}

static void drawhovered(int nview, selectitems item) {
    surface* const s = target(nview);
    const colour highlight = rgb(255, 165, 0);
    const double ring = 0.16;  // centimetres
    if (s == nullptr) return;
    const keptpen pen(s);
    const onplane top(*s, planes::pointer);
    prepareview(nview);
    drawcolor = highlight;
    s->fillsolid = false;
    s->drawwidth = 2;
    if (item == selectelements) {
        drawelementoutline(hovered.item, nview);
    } else if (item != selectpatches) {
        if (item == selectgraphics) {
            drawhoveredshape(*s, nview, highlight);
            const auto at = graphics.row(hovered.item, hovered.part);
            projectplace(nview, at[1], at[2], at[3]);
        } else {
            setnode(hovered.item, nview);
            projectpoint(nview);
        }
        s->circle(scrx, scry, ring, highlight);
    }
    s->show();
}

void endhover() {
    if (hoverview == 0) return;
    if (surface* const s = target(hoverview)) {
        s->clearplane(planes::pointer);
        s->show();
    }
    hoverview = 0;
    hovered = nearest();
    theplatform().showstatus(statusline());
}

static bool hovers() {
    const moderow* const row = runningmode();
    if (windowdrag || zoomwinmode || viewwindow || movepending) return false;
    if (row != nullptr) return row->picks || (row->snaps && MnuSelectItem(selectsnap).checked);
    return selecttype == selecttypes::single || selecttype == selecttypes::group;
}

static nearest itemunder(int nview, selectitems item) {
    switch (item) {
        case selectnodes:
            return hovernode(nview);
        case selectelements:
            return hoverelement(nview);
        case selectforces:
            return hoverloadednode(nview);
        case selectpatches:
            return pickpatch(nview);
        case selectgraphics:
            return pickgraphic(nview);
    }
    return {};
}

void hover(int nview, double x, double y) {
    if (!hovers()) return endhover();
    const keptpoint kept;
    unprojectat(nview, x, y);
    const selectitems item = runningmode() ? selectnodes : selectitem();
    const nearest found = itemunder(nview, item);
    if (found.item == 0) return endhover();
    if (found.item == hovered.item && found.part == hovered.part && nview == hoverview &&
        hoverpicture == picturesdrawn)
        return;
    endhover();
    hovered = found;
    hoverview = nview;
    hoverpicture = picturesdrawn;
    drawhovered(nview, item);
    theplatform().showstatus(statusline() + "   " + nameofitem(item) + " " +
                             numbertext(found.item));
}
