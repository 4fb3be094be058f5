// SPDX-License-Identifier: GPL-3.0-or-later
// Picking, windows, snap, moves and modes through the events of a view.
#include <random>

#include "edit/Mouseprocedures.h"
#include "edit/commands.h"
#include "edit/find.h"
#include "edit/move.h"
#include "edit/pickshape.h"
#include "edit/selection.h"
#include "edit/undo.h"
#include "tests/support/recorder.h"
#include "view/moddraw.h"
#include "view/scaleview.h"

namespace {
// View 2 looks along z: a model point x, y lies at 10 + x, 5 - y centimetres. 4 x 3 nodes at whole
// coordinates and 6 quadrilaterals.
struct gridroom : sessionroom {
    gridroom() {
        if (modes().empty()) wiremouse();
        viewdist(2) = 1e30f;
        automergenodes = false;
        for (int n = 0; n < 12; ++n) addnode(float(n % 4), float(n / 4), 0);
        for (const int n : {1, 2, 3, 5, 6, 7}) addelement(3, {n, n + 1, n + 5, n + 4}, 1 + n / 5);
    }
    static void click(double x, double y) {
        viewmousedown(2, mousebuttons::left, 10 + x, 5 - y);
        viewmouseup(2, mousebuttons::left, 10 + x, 5 - y);
    }
    static void drag(double x1, double y1, double x2, double y2) {
        viewmousedown(2, mousebuttons::left, 10 + x1, 5 - y1);
        viewmousemove(2, mousebuttons::left, 10 + (x1 + x2) / 2, 5 - (y1 + y2) / 2);
        viewmousemove(2, mousebuttons::left, 10 + x2, 5 - y2);
        viewmouseup(2, mousebuttons::left, 10 + x2, 5 - y2);
    }
};

}  // namespace

TEST(Mouse, APressPicksTheNearestHoweverFarAndToggles) {
    gridroom room;
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
    setselectitem(selectnodes);
    viewvert(2) = viewhor(2) = 0;  // along x
    for (const float x : {8.0f, -2.0f, 5.0f}) addnode(x, 6, 1);
    room.click(6, 1);
    EXPECT_EQ(nodesel(1), 14) << "of nodes behind each other the one nearer in depth";
}

// Beside a long line a short one's middle may be nearer: what is under the pointer is meant.
TEST(Mouse, WhatLiesUnderThePointerIsPicked) {
    gridroom room;  // 6 pixels are 0.15 cm
    addnode(-4, 3, 0);
    addnode(8, 3, 0);
    addelement(1, {13, 14});          // 7: far middle
    addelement(1, {13, 1});           // 8
    addelement(3, {1, 4, 12, 9}, 3);  // 9: behind nothing, covers 1 to 6
    for (const int n : {1, 4, 9, 12}) nodes(0, n, 2) = 0;
    const struct {
        double x, y;
        int on, off;
    } cases[] = {
        {-3, 3.1, 7, 8},     // on the line, 4.9 from its middle
        {-3, 3.2, 8, 8},     // 0.2 beside it: the told rule
        {2.9, 1.97, 6, 6},   // faces at one depth: the nearer middle
        {0.02, 1.02, 4, 4},  // in its corner
        {-2, 1.45, 8, 8},    // a line
        {6, 6, 7, 7},
    };
    setselectitem(selectelements);
    for (const bool on : {true, false}) {
        pickshapes = on;
        for (const auto& c : cases) {
            unprojectat(2, 10 + c.x, 5 - c.y);
            const int found = pickelement(2).item, hovered = hoverelement(2).item;
            EXPECT_EQ(found, on ? c.on : c.off) << c.x << " " << c.y << on;
            EXPECT_EQ(hovered, found);
        }
    }
    pickshapes = true;
    for (const float height : {2.0f, -2.0f}) {
        for (int n = 1; n <= 12; ++n) nodes(0, n, 2) = n > 4 ? height : 0;
        unprojectat(2, 11.5, 3.8);
        EXPECT_EQ(pickelement(2).item, height > 0 ? 5 : 9) << "of faces the front one";
    }
    const float nowhere = std::nanf("");
    nodes(0, 1, 0) = nowhere;
    unprojectat(2, 10, 5);
    EXPECT_NE(picknode(2).item, 1) << "what is no number lies nowhere";
}

// Against the plain search; the places that the pointer works with follow the view and the model,
// and of nodes behind each other the same is shown that a press would pick.
TEST(Mouse, EveryPickEqualsThePlainSearch) {
    gridroom room;
    std::mt19937 random(31);
    std::uniform_real_distribution<float> place(-4, 4);
    for (int n = 1; n <= 12; ++n) addnode(nodes(0, n, 0), nodes(0, n, 1), n % 2 ? 3 : -0.5f);
    for (int n = 0; n < 300; ++n) addnode(place(random), place(random), place(random));
    loadnode(1, 0) = 2;
    loadnode(1, 1) = 3;
    loadnode(1, 2) = 24;
    const auto distance = [](int n, double x, double y) {
        prepareview(2);
        setnode(n, 2);
        projectpoint(2);
        return std::hypot(scrx - x, scry - y);
    };
    const std::pair<nearest (*)(int), nearest (*)(int)> searches[] = {
        {hovernode, picknode},
        {hoverelement, pickelement},
        {hoverloadednode, pickloadednode},
        {hovernode, picknode}};  // what is kept at the end are nodes, as at the next start
    const auto compare = [&](const char* when) {
        SCOPED_TRACE(when);
        redrawall();
        for (const auto& [hovers, picks] : searches)
            for (int i = 0; i < 20; ++i) {
                const double wide = i % 4 ? 1 : 20, x = 10 + wide * double(place(random)),
                             y = 5 + wide * double(place(random));
                unprojectat(2, x, y);
                const int found = picks(2).item;
                ASSERT_EQ(hovers(2).item, found);
                if (picks != picknode) continue;
                ASSERT_EQ(found > 0, nnodes() > 0);
                for (int n = 1; n <= nnodes(); ++n)
                    ASSERT_GE(distance(n, x, y) + 1e-5, distance(found, x, y)) << n;
            }
    };
    compare("at first");
    for (int n = 1; n <= nnodes(); ++n) nodes(0, n, 0) *= -1;
    compare("the nodes have moved");
    viewhor(2) = 0.7f;
    viewvert(2) = 0.8f;
    viewdist(2) = 30;
    compare("the view has turned");
    elems(0, 0) = nodes(0, 0, 0) = 0;
    loadnode(1, 0) = 0;
    compare("nothing is left");
}

TEST(Mouse, WindowsAddUpWhicheverWayTheyAreDrawn) {
    gridroom room;
    selecttype = selecttypes::window;
    room.click(-0.5, -0.5);
    EXPECT_TRUE(windowdrag);
    room.click(1.5, 0.5);
    EXPECT_EQ(nodesel(0), 2);
    room.drag(3.5, 1.5, 0.5, -0.5);  // from upper right to lower left, by dragging
    EXPECT_EQ(nodesel(0), 7);
    EXPECT_EQ(nodesel(1), 1) << "what was selected is kept and not listed twice";
    room.click(2, 2);
    keyhandler(keyescape);
    EXPECT_FALSE(windowdrag);
    EXPECT_EQ(nodesel(0), 7) << "the box goes, the selection stays";
    keyhandler(keyescape);
    EXPECT_EQ(nodesel(0), 0);
    setselectitem(selectelements);
    selecttype = selecttypes::group;
    room.click(0.1, 1.9);
    ASSERT_EQ(elemsel(0), 3);
    EXPECT_EQ(elemsel(1), 4);
    selecttype = selecttypes::all;
    room.click(0, 0);
    EXPECT_EQ(elemsel(0), 6);
    elems(0, 0) = nodes(0, 0, 0) = 0;
    selecttype = selecttypes::group;
    room.click(0, 0);
    EXPECT_TRUE(room.platform.told("Error find.notegroup"));
    selecttype = selecttypes::single;
}

TEST(Mouse, AddedNodesSnapWithinTwiceTheUnitVector) {
    gridroom room;
    automergenodes = true;
    addnode(2, 6, 3);
    MnuSelectItem(selectsnap).checked = true;
    startmode(addnodemode);
    room.click(2, 6.5);  // the node is 3 behind the view plane: out of reach
    ASSERT_EQ(nnodes(), 14);
    drawview(2);
    for (const std::string& o : room.platform.views[1].operations)
        EXPECT_FALSE(o.starts_with("circle") && o.ends_with("#ff0000")) << "no selection: " << o;
    EXPECT_NEAR(nodes(0, 14, 2), 0, 1e-6);
    room.drag(2.6, 6.7, 2.65, 6.72);  // a press that trembles
    EXPECT_NEAR(nodes(0, 15, 0), 2, 1e-6) << "it takes the place of the node before";
    EXPECT_NEAR(nodes(0, 15, 1), 6.5, 1e-6);
    startzoomwindow();
    room.drag(-3, -3, 3, 3);
    runcommand("dx=1");
    EXPECT_NEAR(nodes(0, 16, 0), 3, 1e-6) << "the last point stays where it was snapped";
    redrawall();
    for (const std::string& o : room.platform.views[1].operations)
        EXPECT_TRUE(o.substr(0, 6) != "circle" || o.find("#ff0000") == o.npos)
            << "what is added is not selected: " << o;
    EXPECT_NEAR(nodes(0, 16, 1), 6.5, 1e-6);
    keyhandler(keyescape);
    EXPECT_EQ(nnodes(), 15) << "nodes at one place are merged at the end";
    MnuSelectItem(selectsnap).checked = false;
}

TEST(Mouse, AMoveHasAReferenceATargetAndOneStepBack) {
    gridroom room;
    graphics(0, 0, 0) = graphics(1, 0, 0) = 1;
    togglegraphic(1, 2);
    room.click(3, 2);
    room.click(3, 1);
    startmove();
    EXPECT_EQ(promptaction, "Drag or Select Reference point of selected");
    room.drag(3, 2, 3.05, 2.05);
    EXPECT_EQ(nodes(0, 12, 0), 3) << "a hand that trembles moves nothing";
    EXPECT_TRUE(editing);
    EXPECT_EQ(prompttail, " <ESC>, [Edit,Undo] to undo");
    room.click(5, 1.5);
    EXPECT_NEAR(nodes(0, 12, 0), 5, 1e-6);
    EXPECT_NEAR(nodes(0, 8, 1), 0.5, 1e-6);
    const double way[] = {0.5, 0, 1};
    movetyped(way);
    EXPECT_NEAR(nodes(0, 12, 0), 5.5, 1e-6);
    editundo();
    EXPECT_EQ(nodes(0, 12, 0), 5) << "the last move alone is taken back, exactly";
    EXPECT_EQ(graphics(1, 2, 1), 2);
    EXPECT_FALSE(mnuEditItem(undoitem).enabled);
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

// A step back leaves the reference point on what moves, and many small moves round but once.
TEST(Mouse, AMoveCountsItsWayFromWhereItBegan) {
    gridroom room;
    const auto at = [] { return nodes(0, 12, 0); };
    room.click(3, 2);
    startmove();
    room.click(3, 2);
    room.click(5, 2);
    editundo();
    room.click(4, 2);
    EXPECT_NEAR(at(), 4, 1e-6) << "from 3, not from 5";
    editundo();
    const double way[] = {0.25, 0, 0};
    movetyped(way);
    EXPECT_NEAR(at(), 3.25, 1e-6);
    nodes(0, 12, 0) = 8;  // by another hand
    movetyped(way);
    EXPECT_NEAR(at(), 8.25, 1e-6);
    keyhandler(keyescape);
    const float far = 50000.3f;
    nodes(0, 12, 0) = far;
    togglenode(12);
    startmove();
    room.click(3, 2);
    const double small[] = {0.0013, 0, 0};
    for (int i = 0; i < 1000; ++i) movetyped(small);
    EXPECT_EQ(at(), float(double(far) + 1.3)) << "a thousand roundings would be 0.7 off";
    room.click(3, 2);
    EXPECT_EQ(at(), far) << "back at the reference point it stands where it stood";
}

TEST(Mouse, ATypedWayNeedsNoReferencePointAndMergesAtTheEnd) {
    gridroom room;
    automergenodes = true;
    room.click(3, 2);
    startmove();
    const double way[] = {-1, 0, 0};
    movetyped(way);
    room.click(2, 2);
    EXPECT_NEAR(nodes(0, 12, 0), 2, 1e-6) << "this press is the reference point";
    keyhandler(keyescape);
    EXPECT_EQ(nnodes(), 11);
    EXPECT_EQ(elems(6, 3), 11) << "node 12 came to the place of node 11";
}

TEST(Mouse, ZoomWindowAndViewWindow) {
    gridroom room;
    startviewwindow();
    room.click(1, 1);
    room.click(3, 2);
    EXPECT_EQ(prompttail, "<Mouse Left Button> to select view, <ESC> to stop");
    viewmousedown(4, mousebuttons::left, 3, 3);
    EXPECT_FALSE(viewwindow);
    EXPECT_EQ(viewhor(4), viewhor(2));
    EXPECT_FLOAT_EQ(viewscale(4), 5);
    startzoomwindow();
    room.drag(1, 1, 3, 2);
    EXPECT_FALSE(zoomwinmode);
    EXPECT_NEAR(viewptx(2), 2, 1e-5);
    EXPECT_FLOAT_EQ(viewscale(2), 5);
}

TEST(Mouse, AStartedModeEndsTheOneThatRuns) {
    gridroom room;
    room.click(0, 0);
    startviewwindow();
    startmode(addnodemode);
    EXPECT_FALSE(viewwindow);
    EXPECT_EQ(nodesel(0), 0);
    startzoomwindow();
    EXPECT_TRUE(addnodemode) << "a zoom goes on inside a mode";
    room.click(1, 1);
    keyhandler(keyescape);
    EXPECT_FALSE(zoomwinmode);
    EXPECT_TRUE(addnodemode) << "ESC ends the zoom first";
    EXPECT_EQ(nnodes(), 12) << "the corner of the box is no node";
    room.click(1, -1);
    startmove();
    EXPECT_FALSE(addnodemode);
    EXPECT_FALSE(movepending) << "the mode's own list went with it";
    room.click(3, 2);
    EXPECT_EQ(nnodes(), 13);
    startviewwindow();
    startmove();
    EXPECT_FALSE(viewwindow);
    room.click(3, 2);
    room.click(4, 2);
    EXPECT_NEAR(nodes(0, 12, 0), 4, 1e-6) << "both presses went to the move";
    setselectitem(selectelements);
    EXPECT_FALSE(movepending) << "another item type ends the move";
    EXPECT_EQ(statusline(), "Select Elements; for editing");
}

TEST(Mouse, WhatCanNotBePlacedIsToldAndChangesNothing) {
    gridroom room;
    room.click(3, 2);
    viewscale(1) = viewscale(2) = 1e-40f;  // a centimetre is 1E+40 units of the model
    startmove();
    room.click(3, 2);
    EXPECT_EQ(nodes(0, 12, 0), 3);
    EXPECT_TRUE(room.platform.toldpart("beyond the range of coordinates"));
    room.platform.messages.clear();
    startmode(addnodemode);
    room.click(4, 3);
    EXPECT_TRUE(room.platform.toldpart("beyond the range of coordinates"));
    EXPECT_EQ(nnodes(), 12);
    viewscale(2) = 1;
    while (nnodes() < modelsize(sizenodes)) addnode(0, 0, 0);
    room.click(1, 1);
    runcommand("ax=1;1;1");
    EXPECT_EQ(room.platform.messages.size(), 3u);
    EXPECT_TRUE(room.platform.toldpart("Increase number of nodes"));
    EXPECT_EQ(nnodes(), modelsize(sizenodes));
}
