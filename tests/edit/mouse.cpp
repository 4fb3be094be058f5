// SPDX-License-Identifier: GPL-3.0-or-later
// Picking, windows, snap, moves and modes through the events of a view.
#include <gtest/gtest.h>

#include <random>

#include "core/model.h"
#include "core/session.h"
#include "core/views.h"
#include "edit/Mouseprocedures.h"
#include "edit/commands.h"
#include "edit/find.h"
#include "edit/move.h"
#include "edit/selection.h"
#include "tests/support/recorder.h"
#include "view/moddraw.h"
#include "view/scaleview.h"

namespace {
// View 2 looks along z: a model point x, y lies at 10 + x, 5 - y centimetres.
struct mouseroom : sessionroom {
    mouseroom() {
        if (modes().empty()) wiremouse();
        viewdist(2) = 1e30f;
    }
    static void click(double x, double y, mousebuttons b = mousebuttons::left) {
        viewmousedown(2, b, 10 + x, 5 - y);
        viewmouseup(2, b, 10 + x, 5 - y);
    }
    static void drag(double x1, double y1, double x2, double y2) {
        viewmousedown(2, mousebuttons::left, 10 + x1, 5 - y1);
        for (int i = 1; i <= 3; ++i)
            viewmousemove(2, mousebuttons::left, 10 + x1 + (x2 - x1) * i / 3,
                          5 - y1 - (y2 - y1) * i / 3);
        viewmouseup(2, mousebuttons::left, 10 + x2, 5 - y2);
    }
};

void makegrid() {  // 4 x 3 nodes at whole coordinates, 6 quadrilaterals
    for (int j = 0; j < 3; ++j)
        for (int i = 0; i < 4; ++i) addnode(float(i), float(j), 0);
    for (int j = 0; j < 2; ++j)
        for (int i = 0; i < 3; ++i) {
            const int n = 4 * j + i + 1;
            addelement(3, {n, n + 1, n + 5, n + 4}, 1 + j);
        }
}
}  // namespace

TEST(Mouse, APressPicksTheNearestHoweverFarAndToggles) {
    mouseroom room;
    makegrid();
    room.click(2.3, 0.9);
    ASSERT_EQ(nodesel(0), 1);
    EXPECT_EQ(nodesel(1), 7);
    EXPECT_EQ(promptaction, "Select or move");
    room.click(-9, -4);
    EXPECT_EQ(nodesel(2), 1) << "empty space picks the nearest node";
    room.click(2, 1);
    ASSERT_EQ(nodesel(0), 1) << "picked again it leaves the list";
    EXPECT_EQ(nodesel(1), 1);
    setselectitem(selectelements);
    EXPECT_EQ(nodesel(0), 0) << "a change of the item type empties the lists";
    room.click(1.4, 1.6);
    ASSERT_EQ(elemsel(0), 1);
    EXPECT_EQ(elemsel(1), 5);
}

TEST(Mouse, OfNodesBehindEachOtherTheOneNearerInDepthIsPicked) {
    mouseroom room;
    addnode(1, 1, 8);
    addnode(1, 1, -2);
    addnode(1, 1, 5);
    room.click(1, 1);
    EXPECT_EQ(nodesel(1), 2);
}

TEST(Mouse, EveryPickEqualsThePlainSearch) {
    mouseroom room;
    std::mt19937 random(31);
    std::uniform_real_distribution<float> place(-4, 4);
    for (int n = 0; n < 300; ++n) addnode(place(random), place(random), place(random));
    viewhor(2) = 0.3f;
    viewvert(2) = 0.8f;
    viewdist(2) = 25;
    for (int i = 0; i < 50; ++i) {
        const double x = 10 + place(random), y = 5 + place(random);
        persu = (x - vieww / 2) / scalex;
        persv = (viewh / 2 - y) / scaley;
        scrx = x;
        scry = y;
        unprojectpoint(2);
        const int found = picknode(2).item;
        prepareview(2);
        int best = 0;
        double least = 1e30;
        for (int n = 1; n <= nnodes(); ++n) {
            setnode(n, 2);
            projectpoint(2);
            const double d = std::hypot(scrx - x, scry - y);
            if (d < least) least = d, best = n;
        }
        ASSERT_EQ(found, best);
        persu = (x - vieww / 2) / scalex;
        persv = (viewh / 2 - y) / scaley;
        ASSERT_EQ(hovernode(2).item, best) << "so does the pointer that moves";
    }
}

// The places that the pointer works with follow the view and the model, and of nodes behind each
// other the same is shown that a press would pick.
TEST(Mouse, TheItemUnderThePointerIsTheOneThatAPressPicks) {
    mouseroom room;
    makegrid();
    for (int n = 1; n <= 12; ++n) addnode(nodes(0, n, 0), nodes(0, n, 1), n % 2 ? 3 : -0.5f);
    loadnode(1, 0) = 2;
    loadnode(1, 1) = 3;
    loadnode(1, 2) = 24;
    const auto compare = [](const char* when) {
        SCOPED_TRACE(when);
        redrawall();
        for (const double x : {-80.0, -0.4, 0.2, 1.5, 2.9, 40.0})
            for (const double y : {-30.0, 0.4, 1.1, 3.0, 50.0}) {
                takepoint(2, 10 + x, 5 - y);
                EXPECT_EQ(hovernode(2).item, picknode(2).item);
                EXPECT_EQ(hoverelement(2).item, pickelement(2).item);
                EXPECT_EQ(hoverloadednode(2).item, pickloadednode(2).item);
            }
    };
    compare("at first");
    nodes(0, 12, 0) = -50;
    compare("a node has moved away");
    viewhor(2) = 0.7f;
    viewdist(2) = 30;
    compare("the view has turned");
    elems(2, 0) = 0;
    nodes(0, 0, 0) = 1;
    elems(0, 0) = loadnode(1, 0) = 0;
    compare("one node is left");
    nodes(0, 0, 0) = 0;
    compare("nothing is left");
}

TEST(Mouse, WindowsAddUpWhicheverWayTheyAreDrawn) {
    mouseroom room;
    makegrid();
    selecttype = selecttypes::window;
    room.click(-0.5, -0.5);
    EXPECT_TRUE(windowdrag);
    room.click(1.5, 0.5);
    EXPECT_FALSE(windowdrag);
    EXPECT_EQ(nodesel(0), 2);
    room.drag(3.5, 1.5, 0.5, -0.5);  // from upper right to lower left, by dragging
    EXPECT_EQ(nodesel(0), 7);
    EXPECT_EQ(nodesel(1), 1) << "what was selected is kept and not listed twice";
    setselectitem(selectelements);
    selecttype = selecttypes::group;
    room.click(0.1, 1.9);
    ASSERT_EQ(elemsel(0), 3);
    EXPECT_EQ(elemsel(1), 4);
    selecttype = selecttypes::all;
    room.click(0, 0);
    EXPECT_EQ(elemsel(0), 6);
    selecttype = selecttypes::single;
}

TEST(Mouse, EscapeEndsABoxThenEmptiesTheSelection) {
    mouseroom room;
    makegrid();
    room.click(0, 0);
    selecttype = selecttypes::window;
    room.click(2, 2);
    keyhandler(keyescape);
    EXPECT_FALSE(windowdrag);
    EXPECT_EQ(nodesel(0), 1) << "the box goes, the selection stays";
    keyhandler(keyescape);
    EXPECT_EQ(nodesel(0), 0);
    selecttype = selecttypes::single;
    elems(0, 0) = nodes(0, 0, 0) = 0;
    setselectitem(selectelements);
    selecttype = selecttypes::group;
    room.click(0, 0);
    EXPECT_TRUE(room.door.told("Error find.notegroup"));
    selecttype = selecttypes::single;
}

TEST(Mouse, AddedNodesSnapWithinTwiceTheUnitVector) {
    mouseroom room;
    addnode(2, 2, 3);
    MnuSelectItem(5).checked = true;
    startmode(addnodemode);
    room.click(2, 2.5);  // the node is 3 behind the view plane: out of reach
    ASSERT_EQ(nnodes(), 2);
    EXPECT_NEAR(nodes(0, 2, 1), 2.5, 1e-6);
    EXPECT_NEAR(nodes(0, 2, 2), 0, 1e-6);
    room.click(2.6, 2.7);
    EXPECT_NEAR(nodes(0, 3, 0), 2, 1e-6) << "it takes the place of the node before";
    EXPECT_NEAR(nodes(0, 3, 1), 2.5, 1e-6);
    keyhandler(keyescape);
    EXPECT_EQ(nnodes(), 2) << "nodes at one place are merged at the end";
    EXPECT_FALSE(addnodemode);
    MnuSelectItem(5).checked = false;
}

TEST(Mouse, AMoveHasAReferenceATargetAndOneStepBack) {
    mouseroom room;
    makegrid();
    automergenodes = false;
    room.click(3, 2);
    room.click(3, 1);
    startmove();
    EXPECT_EQ(promptaction, "Drag or Select Reference point of selected");
    EXPECT_EQ(prompttail, "<ESC>");
    room.click(3, 2);
    EXPECT_TRUE(editing);
    EXPECT_EQ(promptaction, "Enter or point location to move selected");
    EXPECT_EQ(prompttail, " <ESC>, [Edit,Undo] to undo");
    room.click(5, 1.5);
    EXPECT_NEAR(nodes(0, 12, 0), 5, 1e-6);
    EXPECT_NEAR(nodes(0, 8, 1), 0.5, 1e-6);
    const double way[] = {0.5, 0, 1};
    movetyped(way);
    EXPECT_NEAR(nodes(0, 12, 0), 5.5, 1e-6);
    const float before = 5;
    editundo();
    EXPECT_EQ(nodes(0, 12, 0), before) << "the last move alone is taken back, exactly";
    EXPECT_FALSE(mnuEditItem(0).enabled);
    keyhandler(keyescape);
    EXPECT_FALSE(movepending || editing);
    EXPECT_EQ(nodesel(0), 0);
    room.click(5, 1.5);
    startmove();
    room.drag(5, 1.5, 7, 1.5);
    EXPECT_NEAR(nodes(0, 12, 0), 7, 1e-6) << "moved by dragging";
    editundo();
    EXPECT_NEAR(nodes(0, 12, 0), 5, 1e-6);
}

TEST(Mouse, AMovedNodeMergesWithTheOneItMeets) {
    mouseroom room;
    makegrid();
    automergenodes = true;
    room.click(3, 2);
    startmove();
    room.click(3, 2);
    const double way[] = {-1, 0, 0};
    movetyped(way);
    keyhandler(keyescape);
    EXPECT_EQ(nnodes(), 11);
    EXPECT_EQ(elems(6, 3), 11) << "node 12 came to the place of node 11";
}

TEST(Mouse, ZoomWindowAndViewWindow) {
    mouseroom room;
    startzoomwindow();
    room.click(1, 1);
    room.click(3, 2);
    EXPECT_FALSE(zoomwinmode);
    EXPECT_NEAR(viewptx(2), 2, 1e-5);
    EXPECT_FLOAT_EQ(viewscale(2), 5);
    viewscale(2) = 1;
    viewptx(2) = viewpty(2) = 0;
    startviewwindow();
    EXPECT_EQ(prompttail, "<Mouse Left Button> to define lower left corner, <ESC> to stop");
    room.click(1, 1);
    room.click(3, 2);
    EXPECT_EQ(prompttail, "<Mouse Left Button> to select view, <ESC> to stop");
    viewmousedown(4, mousebuttons::left, 3, 3);
    EXPECT_FALSE(viewwindow);
    EXPECT_EQ(viewhor(4), viewhor(2));
    EXPECT_FLOAT_EQ(viewscale(4), 5);
    EXPECT_FLOAT_EQ(viewscale(2), 1);
}

TEST(Mouse, AStartedModeEndsTheOneThatRuns) {
    mouseroom room;
    makegrid();
    room.click(0, 0);
    startviewwindow();
    startmode(addnodemode);
    EXPECT_FALSE(viewwindow);
    EXPECT_EQ(nodesel(0), 0);
    startzoomwindow();
    EXPECT_TRUE(addnodemode) << "a zoom goes on inside a mode";
    room.click(1, 1);
    room.click(3, 2);
    EXPECT_FALSE(zoomwinmode);
    startzoomwindow();
    keyhandler(keyescape);
    EXPECT_FALSE(zoomwinmode);
    EXPECT_TRUE(addnodemode) << "ESC ends the zoom first";
    EXPECT_EQ(nnodes(), 12) << "the corners of the box are no nodes";
    addready();
    EXPECT_FALSE(addnodemode);
    EXPECT_FALSE(zoomwinmode);
    EXPECT_EQ(statusline(), "Select Nodes; for editing");
}

TEST(Mouse, AMoveEndsWhatRunsAndKeepsTheSelection) {
    mouseroom room;
    makegrid();
    automergenodes = false;
    room.click(3, 2);
    startviewwindow();
    startmove();
    EXPECT_FALSE(viewwindow);
    EXPECT_EQ(promptaction, "Drag or Select Reference point of selected");
    room.click(3, 2);
    room.click(4, 2);
    EXPECT_NEAR(nodes(0, 12, 0), 4, 1e-6) << "both presses went to the move";
    startmode(addnodemode);
    room.click(1, -1);
    startmove();
    EXPECT_FALSE(addnodemode);
    EXPECT_FALSE(movepending) << "the mode's own list went with it";
    room.click(1, -2);
    EXPECT_EQ(nnodes(), 13);
}

TEST(Mouse, TheLastPointGivenStaysWhereItWasSnapped) {
    mouseroom room;
    addnode(1, 1, 0);
    MnuSelectItem(5).checked = true;
    startmode(addnodemode);
    room.drag(1.3, 1.1, 1.4, 1.2);  // a press that trembles
    EXPECT_NEAR(nodes(0, 2, 0), 1, 1e-6);
    startzoomwindow();
    room.drag(-3, -3, 3, 3);
    runcommand("dx=1");
    EXPECT_NEAR(nodes(0, 3, 0), 2, 1e-6);
    EXPECT_NEAR(nodes(0, 3, 1), 1, 1e-6);
    MnuSelectItem(5).checked = false;
}

TEST(Mouse, AFullModelTakesNoNodeAndNoHarm) {
    mouseroom room;
    while (nnodes() < modelsize(1)) addnode(0, 0, 0);
    automergenodes = false;
    startmode(addnodemode);
    room.click(1, 1);
    EXPECT_TRUE(room.door.toldpart("Increase number of nodes"));
    EXPECT_EQ(nnodes(), modelsize(1));
    EXPECT_EQ(nodesel(0), 0);
}

TEST(Mouse, APressBeyondAllCoordinatesAddsAndMovesNothing) {
    mouseroom room;
    makegrid();
    const int before = nnodes();
    room.click(3, 2);
    const float x = nodes(0, nodesel(1), 0);
    const int n = nodesel(1);
    viewscale(1) = viewscale(2) = 1e-40f;  // a centimetre is 1E+40 units of the model
    startmove();
    room.click(3, 2);
    EXPECT_FALSE(bool(editing));
    EXPECT_TRUE(room.door.toldpart("beyond the range of coordinates"));
    EXPECT_EQ(nodes(0, n, 0), x);
    room.door.messages.clear();
    startmode(addnodemode);
    room.click(4, 3);
    EXPECT_TRUE(room.door.toldpart("beyond the range of coordinates"));
    EXPECT_EQ(nnodes(), before);
}

TEST(Mouse, AHandThatTremblesOnTheReferencePointMovesNothing) {
    mouseroom room;
    makegrid();
    automergenodes = false;
    room.click(3, 2);
    startmove();
    room.drag(3, 2, 3.05, 2.05);
    EXPECT_EQ(nodes(0, 12, 0), 3);
    room.click(5, 2);
    EXPECT_NEAR(nodes(0, 12, 0), 5, 1e-6);
    editundo();
    EXPECT_EQ(nodes(0, 12, 0), 3);
}

TEST(Mouse, ATypedWayNeedsNoReferencePoint) {
    mouseroom room;
    makegrid();
    automergenodes = false;
    setselectitem(selectelements);
    room.click(2.5, 1.5);
    EXPECT_EQ(promptaction, "Select or move");
    startmove();
    EXPECT_EQ(promptaction, "Select Reference point of selected");
    const double way[] = {0, 1, 0};
    movetyped(way);
    EXPECT_NEAR(nodes(0, 12, 1), 3, 1e-6);
    room.click(3, 3);
    EXPECT_NEAR(nodes(0, 12, 1), 3, 1e-6) << "this press is the reference point";
    room.click(4, 3);
    EXPECT_NEAR(nodes(0, 12, 0), 4, 1e-6);
}

TEST(Mouse, AnotherItemTypeEndsTheMove) {
    mouseroom room;
    makegrid();
    room.click(3, 2);
    startmove();
    setselectitem(selectelements);
    EXPECT_FALSE(movepending);
    EXPECT_EQ(promptaction, "Select");
    setselectitem(selectnodes);
    room.click(3, 2);
    room.click(9, 9);
    EXPECT_EQ(nodes(0, 12, 0), 3);
}
