// SPDX-License-Identifier: GPL-3.0-or-later
// The move of the selection. State: the move under way - its reference point, the places of the
// selected points as it began and the way since.
#include "edit/move.h"

#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include "core/colours.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/views.h"
#include "edit/find.h"
#include "edit/merge.h"
#include "edit/modes.h"
#include "edit/outcome.h"
#include "edit/selection.h"
#include "edit/snap.h"
#include "edit/undo.h"
#include "view/moddraw.h"

using offset = std::array<double, 3>;

static offset reference;            // as pressed, before the points moved
static std::vector<offset> places;  // of the selected points where the way is 0
static std::vector<offset> ways;    // that the points have been moved by, the present one last;
                                    // a step back leads to one before it
static double pressx, pressy;       // where the reference point was pressed, centimetres
static bool pressed;                // the button is held since then: a drag may begin
static bool dragging, anymoved;

// --- moving -------------------------------------------------------------------------------------

bool checkplace(const double* point) {
    const double most = std::numeric_limits<float>::max();
    for (int k = 0; k < 3; ++k) {
        if (std::fabs(point[k]) <= most) continue;  // not so for what is no number
        theplatform().message("The coordinate " + numbertext(point[k]) +
                                  " is beyond the range of coordinates. Nothing was changed.",
                              icons::exclamation);
        return false;
    }
    return true;
}

static std::vector<float*> selectedpoints() {
    std::vector<float*> points;
    for (int i = 1; i <= nodesel(0); ++i) points.push_back(&nodes(0, nodesel(i), 0));
    for (int i = 1; i <= graphsel2(0, 0); ++i)
        points.push_back(&graphics(graphsel2(i, 0), graphsel2(i, 1), 1));
    return points;
}

static bool putpoints(const std::vector<float*>& points, const std::vector<offset>& to) {
    for (const offset& place : to)
        if (!checkplace(place.data())) return false;
    for (std::size_t i = 0; i < points.size(); ++i)
        for (std::size_t k = 0; k < 3; ++k) points[i][k] = float(to[i][k]);
    return true;
}

bool changeselected(const std::function<void(double*)>& change) {
    const std::vector<float*> points = selectedpoints();
    std::vector<offset> to;
    for (const float* p : points) {
        to.push_back({p[0], p[1], p[2]});
        change(to.back().data());
    }
    return putpoints(points, to);
}

bool ismoving() {
    return movepending;
}

void startmove() {
    addready();  // the mode that runs ends; the selection stays
    const bool ofnodes = selectitem() == selectnodes;
    if (selectitem() == selectelements && elemsel(0) != 0) gatherelementnodes();
    if (nodesel(0) == 0 && graphsel2(0, 0) == 0) return;
    movepending = true;
    editing = false;
    anymoved = false;
    ways.clear();
    showselection();
    prompt(ofnodes ? "Drag or Select Reference point of selected"
                   : "Select Reference point of selected",
           promptitem, "for moving", "<ESC>");
}

// --- the way of a move --------------------------------------------------------------------------

static offset moved(const offset& from, const offset& way) {
    return {from[0] + way[0], from[1] + way[1], from[2] + way[2]};
}

static bool standmovedby(const std::vector<float*>& points, const offset& way) {
    if (points.size() != places.size()) return false;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const offset at = moved(places[i], way);
        for (std::size_t k = 0; k < 3; ++k)
            if (points[i][k] != float(at[k])) return false;
    }
    return true;
}

// Where the points stand: the way of the move, or one before it when a step was taken back. When
// something else has changed them they begin anew, and the reference point lies where it lay.
static void findway(const std::vector<float*>& points) {
    for (std::size_t i = ways.size(); i-- > 0;)
        if (standmovedby(points, ways[i])) {
            if (i + 1 < ways.size()) ways.push_back(ways[i]);
            return;
        }
    if (!ways.empty()) reference = moved(reference, ways.back());
    places.clear();
    for (const float* p : points) places.push_back({p[0], p[1], p[2]});
    ways.assign(1, {0, 0, 0});
}

static void setreference() {
    ways.clear();
    findway(selectedpoints());
    reference = {modelx, modely, modelz};
}

// Takes the picture of the selection away, moves it, draws it again. The way is counted from where
// the points stood as the move began, so that a hundred small ones round no more than one.
static void showmoved(const std::vector<float*>& points, const offset& way) {
    hideselection();
    if (!redrawmove) eraseselected();
    std::vector<offset> to;
    for (const offset& place : places) to.push_back(moved(place, way));
    const bool shifted = putpoints(points, to);
    if (!redrawmove) drawselectedplain();
    showselection();
    if (!shifted) return;
    ways.push_back(way);
    anymoved = true;
    pasteflag = true;
}

static void shifttopoint() {
    const std::vector<float*> points = selectedpoints();
    findway(points);
    showmoved(points, {modelx - reference[0], modely - reference[1], modelz - reference[2]});
}

void movepress(int nview) {
    snapto(nview);
    if (!editing) {
        setreference();
        editing = true;
        pressed = true;
        pressx = scrx;
        pressy = scry;
        prompt("Enter or point location to move selected", promptitem, "",
               " <ESC>, [Edit,Undo] to undo");
        return;
    }
    storeundo();
    shifttopoint();
    if (redrawmove) redrawall();
}

bool mousedrag(int) {
    if (!editing || !pressed) return false;
    if (!dragging) {
        // A hand that trembles while it presses does not move anything.
        if (!isplacegiven() && std::hypot(scrx - pressx, scry - pressy) < dragreach) return false;
        dragging = true;
        storeundo();
    }
    shifttopoint();
    return true;
}

void moverelease(int) {
    const bool shifted = dragging;
    pressed = dragging = false;
    if (shifted && redrawmove) redrawall();
}

void movetyped(const double* way) {
    if (!movepending || !checkplace(way)) return;
    storeundo();
    const std::vector<float*> points = selectedpoints();
    findway(points);
    showmoved(points, moved(ways.back(), {way[0], way[1], way[2]}));
    if (redrawmove) redrawall();
}

// --- the end of a move and of the selection -----------------------------------------------------

static bool endmove() {
    const bool wasmoving = movepending || editing;
    movepending = editing = pressed = dragging = false;
    return wasmoving;
}

// What was pasted or moved merges with what it meets. True when numbers of the model have changed.
static bool mergeplaced() {
    if (!pasteflag) return false;
    pasteflag = false;
    const std::string action = promptaction;
    promptaction = "Merging";
    textcaption();
    int gone = 0;
    if (automergenodes && nodesel(0) != 0) gone += mergenodes();
    if (automergeelems) gone += mergeelements();
    promptaction = action;
    textcaption();
    return gone > 0;
}

void refreshselection() {
    if (!endmove()) return;
    hideselection();
    const bool merged = anymoved && mergeplaced();
    promptaction = "Select";
    promptgoal = "for moving";
    prompttail.clear();
    merged ? redrawall() : showselection();
    textcaption();
}

void settleselection() {
    endmove();
    hideselection();
    mergeplaced() ? redrawall() : showselection();
    textcaption();
}

void releaseselection() {
    const bool wasmoving = endmove(), placed = pasteflag;
    hideselection();
    const bool merged = mergeplaced();
    emptyselection();
    if (wasmoving || promptaction == "Select or move") readyprompt();
    if (merged || (redrawmove && (wasmoving || placed))) redrawall();
}

void setselectitem(int item) {
    if (MnuSelectItem(item).checked) return;
    releaseselection();
    checkselectitem(item);
    labelselect();
}
