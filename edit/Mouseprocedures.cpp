// SPDX-License-Identifier: GPL-3.0-or-later
// The mouse driver and the table of modes. State: the corner of a window under way and the steps
// of View Window.
#include "edit/Mouseprocedures.h"

#include <cmath>
#include <optional>
#include <string>
#include <utility>

#include "core/colours.h"
#include "core/journal.h"
#include "core/model.h"
#include "core/modelitems.h"
#include "core/modelsize.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/views.h"
#include "edit/commands.h"
#include "edit/find.h"
#include "edit/hover.h"
#include "edit/lasso.h"
#include "edit/merge.h"
#include "edit/move.h"
#include "edit/outcome.h"
#include "edit/pickplaces.h"
#include "edit/selection.h"
#include "edit/snap.h"
#include "view/drawelems.h"
#include "view/moddraw.h"
#include "view/pen.h"
#include "view/rubberband.h"
#include "view/scaleview.h"
#include "view/setviews.h"

static int bandview;  // view in which the box under way began
static enum class windowsteps { corner, box, target } windowstep;  // of View Window
static picks lassomode;      // by the keys held at its last corner
static double boxcorner[4];  // x1 y1 x2 y2 of the box that View Window holds

void startmode(Flag& flag) {
    endmode();
    releaseselection();
    addready();
    flag = true;
}

// The mode runs on until its own row or ESC ends it; what a press of the right button or Enter
// means is told by the row.
static void endbyescape() {
    endmode();
    addready();
}

static void drawaddednode(int n, int nview) {
    surface* const s = target(nview);
    const keptpen pen(s);
    drawcolor = nodecolor;
    setnode(n, nview);
    projectpoint(nview);
    s->fillsolid = true;
    drawnode(nview);
}

int addnodeat(int) {
    if (!growby(1, 0)) return 0;
    const int n = appenditems(items::node);
    const double at[] = {modelx, modely, modelz};
    for (int k = 0; k < 3; ++k) nodes(0, n, k) = float(at[k]);
    nodecurrent = n;
    if (mnudrawlist(nodesdrawn).checked) drawinviews([n](int v) { drawaddednode(n, v); });
    return n;
}

// The nodes that were added are merged with those they meet.
static void endaddnode() {
    if (automergenodes && nodesel(0) != 0) mergenodes();
    nodesel(0) = 0;
    redrawall();
}

static void addnodepress(int nview) {
    const int n = addnodeat(nview);
    if (n == 0) return;
    nodesel(0) = nodesel(0) + 1;
    nodesel(nodesel(0)) = n;
}

void wiremouse() {
    moderow row;
    row.flag = &addnodemode;
    row.name = "Free Node";
    row.snaps = true;
    acceptpoints(row, addnodepress);
    row.end = endaddnode;
    row.enter = endbyescape;
    modes().push_back(row);
    // States that dialogs and the move keep.
    const auto state = [](Flag& flag, const char* name, bool endsatrest) {
        moderow kept;
        kept.flag = &flag;
        kept.name = name;
        kept.endsatrest = endsatrest;
        modes().push_back(kept);
    };
    state(movepending, "Move", true);
    state(meshmode, "Mesh", false);  // ends with its dialog
    for (Flag* flag : {&editconstraint, &editnodalload, &editelemload, &singleel})
        state(*flag, "", true);
}

// --- boxes --------------------------------------------------------------------------------------

static void startbox(int nview) {
    startband(scrx, scry);
    bandview = nview;
    windowdrag = true;
}

// The second corner of a box, which stays on show. A press in another view begins anew there.
static bool fixbox(int nview) {
    if (nview != bandview) {
        startbox(nview);
        return false;
    }
    windowdrag = false;
    return true;
}

static bool closebox(int nview) {
    if (!fixbox(nview)) return false;
    endband();
    return true;
}

void startviewwindow() {
    addready();
    viewwindow = true;
    windowstep = windowsteps::corner;
    prompt("View Window", "", "", "<Mouse Left Button> to define lower left corner, <ESC> to stop");
}

// A zoom goes on inside whatever mode runs, which takes the presses after it.
void startzoomwindow() {
    if (viewwindow) addready();
    endboxes();
    zoomwinmode = true;
    theplatform().crosspointer(true);
}

static void viewwindowpress(int nview) {
    switch (windowstep) {
        case windowsteps::corner:
            startbox(nview);
            windowstep = windowsteps::box;
            prompt("View Window", "", "",
                   "<Mouse Left Button> to define upper right corner, <ESC> to stop");
            return;
        case windowsteps::box:
            if (!fixbox(nview)) return;
            boxcorner[0] = bandx;
            boxcorner[1] = bandy;
            boxcorner[2] = scrx;
            boxcorner[3] = scry;
            windowstep = windowsteps::target;
            prompt("View Window", "", "", "<Mouse Left Button> to select view, <ESC> to stop");
            return;
        default:
            viewwindow = false;
            windowstep = windowsteps::corner;
            copyview(bandview, nview, boxcorner[0], boxcorner[1], boxcorner[2], boxcorner[3]);
            drawview(nview);
            addready();
    }
}

static void zoompress(int nview) {
    if (!windowdrag) {
        startbox(nview);
        return;
    }
    const double x = scrx, y = scry;
    if (!closebox(nview)) return;
    zoomwinmode = false;
    theplatform().crosspointer(false);
    copyview(nview, nview, bandx, bandy, x, y);
    drawview(nview);
}

// --- selecting ----------------------------------------------------------------------------------

static nearest pickitem(int nview, selectitems item) {
    switch (item) {
        case selectnodes:
            return picknode(nview);
        case selectelements:
            return pickelement(nview);
        case selectpatches:
            return pickpatch(nview);
        case selectforces:
            return pickloadednode(nview);
        case selectgraphics:
            return pickgraphic(nview);
    }
    return {};
}

static void toggleitem(const nearest& found, selectitems item) {
    switch (item) {
        case selectnodes:
        case selectforces:
            return togglenode(found.item);
        case selectelements:
            return toggleelement(found.item);
        case selectpatches:
            return togglepatch(found.item);
        case selectgraphics:
            return togglegraphic(found.item, found.part);
    }
}

void promptselected() {
    const selectitems item = selectitem();
    const bool canmove = item == selectnodes || item == selectelements || item == selectgraphics;
    promptaction = isselection() && canmove ? "Select or move" : "Select";
    promptgoal = " for editing";
    prompttail.clear();
    labelselect();
}

// What the lasso holds is selected.
static void closelasso() {
    const lassoline line = lasso;
    endboxes();
    hideselection();
    if (line.corners.size() > 2)
        selectwith(lassomode, [&] { selectpolygon(line.view, line.corners); });
    showselection();
    if (!isselectionpending()) promptselected();
}

// A corner of the lasso, or its end where the first one was.
static void lassopress(int nview) {
    lassomode = pickmode;
    if (windowdrag && nview == lasso.view) {
        if (closeslasso(scrx, scry)) return closelasso();
        if (extendlasso(scrx, scry)) notecorner();
        return;
    }
    startlasso(nview, scrx, scry);
    notecorner();
    bandview = nview;
    bandx = scrx;
    bandy = scry;
    windowdrag = true;
    prompt("Select", "", "", "Drag about the items, or click corners; <Right Button> closes");
}

// All elements of the group of the element nearest to the point, whatever the item in force; the
// select menu goes to Elements with them.
static void grouppress(int nview) {
    const nearest found = pickelement(nview);
    if (found.item == 0) {
        theplatform().message("Error find.notegroup", icons::exclamation);
        return;
    }
    const int group = egroup(found.item);
    setselectitem(selectelements);
    selectwith(pickmode, [&] { selectgroup(group); });
}

static void singlepress(int nview, selectitems item) {
    const nearest found = pickitem(nview, item);
    if (found.item != 0) selectwith(pickmode, [&] { toggleitem(found, item); });
}

// For a dialog the prompts stay as they were set.
static void selectpress(int nview) {
    const selectitems item = selectitem();
    if (!isselection()) pasteflag = false;
    hideselection();
    switch (selecttype) {
        case selecttypes::single:
            singlepress(nview, item);
            break;
        case selecttypes::window:
            if (!windowdrag) {
                startbox(nview);
            } else {
                const double x = scrx, y = scry;
                if (closebox(nview))
                    selectwith(pickmode, [&] { selectwindow(nview, bandx, bandy, x, y); });
            }
            break;
        case selecttypes::group:
            grouppress(nview);
            break;
        case selecttypes::all:
            selectwith(pickmode, selectall);
            break;
        case selecttypes::lasso:
            lassopress(nview);
            break;
    }
    showselection();
    if (!isselectionpending() && lasso.view == 0) promptselected();
}

// --- the driver ---------------------------------------------------------------------------------

// Is the point in work a place that the model can hold? In a view of a scale next to nothing a
// press may point far beyond.
static bool checkpoint() {
    const double at[] = {modelx, modely, modelz};
    return checkplace(at);
}

static void leftpress(int nview) {
    moderow* const row = runningmode();
    if (row && row->picks) return row->press(nview);
    if (viewwindow || zoomwinmode || isselectionpending()) nothingchanged();
    if (viewwindow) return viewwindowpress(nview);
    if (zoomwinmode) return zoompress(nview);
    if (isselectionpending()) return selectpress(nview);
    if (row) {
        if (row->snaps) snapto(nview);
        if (checkpoint()) row->press(nview);
        return;
    }
    if (movepending && isselection()) {
        if (checkpoint()) movepress(nview);
        return;
    }
    nothingchanged();
    selectpress(nview);
}

void mousedriver(int nview, mousebuttons button) {
    if (button == mousebuttons::left) return leftpress(nview);
    if (button != mousebuttons::right) return;
    if (zoomwinmode) return endboxes();
    if (lasso.view != 0) return closelasso();
    if (endpendingselection()) return;
    moderow* const row = runningmode();
    if (row && row->enter)
        row->enter();
    else if (row)
        endbyescape();
    endboxes();
}

// The right button opens a menu where nothing is under way that it would end.
static bool menuallowed() {
    return runningmode() == nullptr && !windowdrag && !zoomwinmode && !viewwindow && !movepending &&
           !isselectionpending();
}

bool showviewmenu(int nview) {
    if (!menuallowed()) return false;
    activeview = nview;
    theplatform().showpopup(isselection() ? 2 : 1);
    return true;
}

// What a press or its end does, as the list of the steps names it.
static std::string pressname() {
    return *stepname() ? stepname() : "Mouse";
}

void viewmousedown(int nview, mousebuttons button, double x, double y) {
    const step s(pressname());
    endhover();
    if (button == mousebuttons::right && showviewmenu(nview)) return nothingchanged();
    const hourglass wait;
    activeview = nview;
    std::optional<keptpoint> given;  // the point given last, which the corner of a box is not
    if (zoomwinmode || viewwindow || windowdrag) given.emplace();
    takeplace(nview, x, y);
    newpress();
    // A model that is full, above all: the press is told off and nothing else happens.
    guarded([&] { mousedriver(nview, button); },
            [](const runtimeerror& e) { theplatform().message(e.what, icons::exclamation); });
    theplatform().refresh();
}

void pressat(double x, double y, double z) {
    endhover();
    prepareview(activeview);
    projectplace(activeview, x, y, z);
    viewmousedown(activeview, mousebuttons::left, scrx, scry);
}

// What the running mode would make of a press here.
static void followpointer(int nview, double x, double y) {
    moderow* const row = runningmode();
    if (row == nullptr || !row->follow) return;
    const keptpoint kept;
    unprojectat(nview, x, y);
    row->follow(nview);
}

static void movelasso(int nview, mousebuttons button, double x, double y) {
    const keptpoint given;
    takeplace(nview, x, y);
    if (button != mousebuttons::left) return followlasso(x, y);
    if (extendlasso(x, y)) notecorner();
}

void viewmousemove(int nview, mousebuttons button, double x, double y) {
    if (button == mousebuttons::none && !windowdrag) return followpointer(nview, x, y);
    const bool moves = button == mousebuttons::left && movepending && editing && !windowdrag;
    const bool boxes = windowdrag && nview == bandview;
    if (boxes && lasso.view != 0) return movelasso(nview, button, x, y);
    if (!moves && !boxes) return;
    const keptpoint given;
    takeplace(nview, x, y);
    if (moves && mousedrag(nview)) notedrag();
    if (boxes) {
        const keptpen pen;
        drawcolor = selcolor;
        rubberband(nview);
    }
    theplatform().refresh();
}

void viewmouseup(int nview, mousebuttons button, double x, double y) {
    if (button != mousebuttons::left) return;
    const step s(pressname());
    const keptpoint given;
    takeplace(nview, x, y);
    if (movepending)
        moverelease(nview);
    else
        nothingchanged();
    // A box that was dragged open is closed by letting go.
    const bool dragged =
        isplacegiven() || std::fabs(x - bandx) > dragreach || std::fabs(y - bandy) > dragreach;
    if (!windowdrag || nview != bandview || !dragged) return;
    if (lasso.view != 0) {
        // A corner that was clicked is let go where it was pressed.
        if (lasso.corners.size() > 2 && lastpress().path.size() > 2) closelasso();
        return theplatform().refresh();
    }
    notedrag();
    mousedriver(nview, mousebuttons::left);
    theplatform().refresh();
}

// --- keys ---------------------------------------------------------------------------------------

static void escape() {
    endhover();
    endfind();
    const bool zoomed = zoomwinmode, boxed = windowdrag || viewwindow;
    endboxes();
    if (zoomed) return;
    if (endpendingselection()) return;
    if (runningmode()) return endbyescape();
    if (boxed) return addready();
    releaseselection();
    addready();
}

// The graphic point picked last moves on to the next defining point of its element.
static void nextgraphicpoint() {
    const int last = graphsel2(0, 0);
    if (selectitem() != selectgraphics || last == 0) return;
    hideselection();
    const int points = pointsofgraphic(int(graphics(graphsel2(last, 0), 0, 0)));
    if (points > 0) graphsel2(last, 1) = graphsel2(last, 1) % points + 1;
    syncgraphsel();
    showselection();
}

void keyhandler(int code) {
    const step s(code == keyescape ? "Release" : pressname());
    moderow* const row = runningmode();
    if (code == keyescape) escape();
    if (code == keyenter) mousedriver(activeview, mousebuttons::right);
    if (code == keyspace && row && row->space) row->space();
    if (code == keyspace && !row) nextgraphicpoint();
    if (code == keyback && row && row->back) row->back();
    theplatform().refresh();
}
