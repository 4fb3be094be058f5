// SPDX-License-Identifier: GPL-3.0-or-later
// The move of the selection. State: the reference point of the move under way, and the places that
// undo puts back.
#include "edit/move.h"

#include <array>
#include <cmath>
#include <vector>

#include "core/colours.h"
#include "core/model.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/views.h"
#include "edit/find.h"
#include "edit/merge.h"
#include "edit/selection.h"
#include "view/moddraw.h"

static double reference[3];
static bool dragging, moved;

namespace {
struct storedplace {
    int node = 0;  // or
    int graphic = 0, point = 0;
    std::array<float, 3> at{};
};
}  // namespace
static std::vector<storedplace> undostore;

// --- undo ---------------------------------------------------------------------------------------

void storeundo() {
    undostore.clear();
    for (int i = 1; i <= nodesel(0); ++i) {
        const int n = nodesel(i);
        undostore.push_back({n, 0, 0, {nodes(0, n, 0), nodes(0, n, 1), nodes(0, n, 2)}});
    }
    for (int i = 1; i <= graphsel2(0, 0); ++i) {
        const int g = graphsel2(i, 0), j = graphsel2(i, 1);
        undostore.push_back({0, g, j, {graphics(g, j, 1), graphics(g, j, 2), graphics(g, j, 3)}});
    }
    undomark = 1;
    mnuEditItem(0).enabled = true;
}

void editundo() {
    if (undomark == 0) return;
    for (const storedplace& place : undostore)
        for (int k = 0; k < 3; ++k) {
            const float value = place.at[std::size_t(k)];
            if (place.node >= 1 && place.node <= nnodes()) nodes(0, place.node, k) = value;
            if (place.graphic >= 1 && place.graphic <= ngraphics())
                graphics(place.graphic, place.point, k + 1) = value;
        }
    undostore.clear();
    dropundo();
    redrawall();
    door().refresh();
}

// --- moving -------------------------------------------------------------------------------------

void shiftselection(double dx, double dy, double dz) {
    const double way[] = {dx, dy, dz};
    for (int i = 1; i <= nodesel(0); ++i)
        for (int k = 0; k < 3; ++k)
            nodes(0, nodesel(i), k) = float(nodes(0, nodesel(i), k) + way[k]);
    for (int i = 1; i <= graphsel2(0, 0); ++i)
        for (int k = 0; k < 3; ++k) {
            float& value = graphics(graphsel2(i, 0), graphsel2(i, 1), k + 1);
            value = float(value + way[k]);
        }
}

bool ismoving() {
    return movepending;
}

void startmove() {
    if (selectitem() == selectelements && elemsel(0) != 0) gatherelementnodes();
    if (nodesel(0) == 0 && graphsel2(0, 0) == 0) return;
    movepending = true;
    editing = false;
    moved = false;
    showselection();
    prompt(nodesel(0) != 0 ? "Drag or Select Reference point of selected"
                           : "Select Reference point of selected",
           promptitem, "for moving", "<ESC>");
}

static void takereference() {
    reference[0] = modelx;
    reference[1] = modely;
    reference[2] = modelz;
}

// Takes the picture of the selection away, shifts it, draws it again.
static void shiftshown(double dx, double dy, double dz) {
    hideselection();
    shiftselection(dx, dy, dz);
    showselection();
    moved = true;
    resultflag = 1;
}

static void shifttopoint() {
    shiftshown(modelx - reference[0], modely - reference[1], modelz - reference[2]);
    takereference();
}

void movepress(int nview) {
    snapto(nview);
    if (!editing) {
        takereference();
        editing = true;
        dragging = true;
        storeundo();
        prompt("Enter or point location to move selected", promptitem, "",
               " <ESC>, [Edit,Undo] to undo");
        return;
    }
    storeundo();
    shifttopoint();
    if (redrawmove) redrawall();
}

void movedrag(int) {
    if (editing && dragging) shifttopoint();
}

void moverelease(int) {
    const bool shifted = dragging && moved;
    dragging = false;
    if (shifted && redrawmove) redrawall();
}

void movetyped(const double* way) {
    if (!movepending) return;
    if (!editing) {
        editing = true;
        prompt("Enter or point location to move selected", promptitem, "",
               " <ESC>, [Edit,Undo] to undo");
    }
    storeundo();
    shiftshown(way[0], way[1], way[2]);
    if (redrawmove) redrawall();
}

void refreshselection() {
    const bool wasmoving = movepending || editing;
    movepending = editing = dragging = false;
    if (!wasmoving) return;
    promptaction = "Select";
    promptgoal = "for moving";
    prompttail.clear();
    if (moved && automergenodes && nodesel(0) != 0) {
        promptaction = "Merging";
        textcaption();
        hideselection();
        if (mergenodes() > 0) dropundo();
        promptaction = "Select";
    } else {
        hideselection();
    }
    showselection();
    textcaption();
}
