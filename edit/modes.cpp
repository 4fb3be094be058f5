// SPDX-License-Identifier: GPL-3.0-or-later
// The table of modes, the rest state and the pending selections.
#include "edit/modes.h"

#include "core/model.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/views.h"
#include "edit/lasso.h"
#include "view/rubberband.h"

std::vector<moderow>& modes() {
    static std::vector<moderow> rows;
    return rows;
}

std::vector<pendingselection>& pendingselections() {
    static std::vector<pendingselection> rows;
    return rows;
}

moderow* runningmode() {
    for (moderow& row : modes())
        if (*row.flag && row.press) return &row;
    return nullptr;
}

const char* stepname() {
    for (const moderow& row : modes())
        if (*row.flag && *row.name) return row.name;
    return "";
}

static pendingselection* pendingone() {
    for (pendingselection& row : pendingselections())
        if (*row.flag) return &row;
    return nullptr;
}

bool isselectionpending() {
    return pendingone() != nullptr;
}

// --- modes --------------------------------------------------------------------------------------

void endmode() {
    moderow* const row = runningmode();
    if (row == nullptr) return;
    *row->flag = false;
    if (row->end) row->end();
}

void endboxes() {
    endband();
    endlasso();
    windowdrag = false;
    zoomwinmode = false;
    viewwindow = false;
    theplatform().crosspointer(false);
}

bool endpendingselection() {
    pendingselection* const pending = pendingone();
    if (pending == nullptr) return false;
    endboxes();
    if (pending->ended) pending->ended();
    return true;
}

void addready() {
    endmode();
    endboxes();
    for (const moderow& row : modes())
        if (row.endsatrest) *row.flag = false;
    for (menustate& item : Mnuadditem.row()) item = menustate();
    Mnuadditem(readyitem).checked = true;
    ptcount = 0;
    editing = false;
    readyprompt();
}

void acceptpoints(moderow& row, void (*press)(int nview)) {
    row.press = press;
    row.lastpoint = [](double* point) {
        point[0] = modelx;
        point[1] = modely;
        point[2] = modelz;
    };
    row.commandpoint = [press](double x, double y, double z) {
        modelx = x;
        modely = y;
        modelz = z;
        press(activeview);
    };
}
