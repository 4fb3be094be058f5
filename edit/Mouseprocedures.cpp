// SPDX-License-Identifier: GPL-3.0-or-later
// The mouse driver and the table of modes.
#include "edit/Mouseprocedures.h"

#include "core/model.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/views.h"
#include "view/moddraw.h"
#include "view/scaleview.h"

std::vector<moderow>& modes() {
    static std::vector<moderow> rows;
    return rows;
}

moderow* runningmode() {
    for (moderow& row : modes())
        if (row.flag != nullptr && *row.flag) return &row;
    return nullptr;
}

static void endmode() {
    moderow* const row = runningmode();
    if (row == nullptr) return;
    if (row->end) row->end();
    *row->flag = false;
}

void addready() {
    endmode();
    for (Flag* flag :
         {&addnodemode, &addelemmode, &drawline, &drawcircle, &drawcurve, &editconstraint,
          &editnodalload, &editelemload, &zoomwinmode, &viewwindow, &windowdrag, &movepending})
        *flag = false;
    for (menustate& item : Mnuadditem.row()) item = menustate();
    Mnuadditem(0).checked = true;
    ptcount = 0;
    editing = false;
    promptaction = "Select";
    promptgoal = "for editing";
    prompttail.clear();
    labelselect();
}

static void takepoint(int nview, double x, double y) {
    persu = (x - vieww / 2) / scalex;
    persv = (viewh / 2 - y) / scaley;
    scrx = x;
    scry = y;
    unprojectpoint(nview);
}

void viewmousedown(int nview, mousebuttons button, double x, double y) {
    activeview = nview;
    takepoint(nview, x, y);
    mousedriver(nview, button);
    door().refresh();
}

void viewmousemove(int nview, mousebuttons button, double x, double y) {
    if (button == mousebuttons::none && !windowdrag) return;
    takepoint(nview, x, y);
}

void viewmouseup(int nview, mousebuttons, double x, double y) {
    takepoint(nview, x, y);
}

void mousedriver(int nview, mousebuttons button) {
    moderow* const row = runningmode();
    if (row == nullptr) return;
    if (button == mousebuttons::left && row->press) row->press(nview);
    if (button == mousebuttons::right) addready();
}

void keyhandler(int code) {
    moderow* const row = runningmode();
    switch (code) {
        case keyescape:
            addready();
            break;
        case keyenter:
            if (row && row->enter) row->enter();
            break;
        case keyspace:
            if (row && row->space) row->space();
            break;
        default:
            break;
    }
}
