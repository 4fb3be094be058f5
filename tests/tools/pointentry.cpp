// SPDX-License-Identifier: GPL-3.0-or-later
// Points of graphic elements by the mouse and by commands, and the dialog that edits the elements.
#include "tools/pointentry.h"

#include <algorithm>

#include "edit/Mouseprocedures.h"
#include "edit/hover.h"
#include "edit/move.h"
#include "edit/selection.h"
#include "tests/support/recorder.h"
#include "tests/tools/drawn.h"
#include "tools/circle.h"
#include "tools/placenodes.h"

namespace {
// View 2 looks along z: a model point x, y lies at 10 + x, 5 - y centimetres.
struct drawingroom : sessionroom {
    drawingroom() {
        if (modes().empty()) wiremouse();
        if (std::ranges::none_of(modes(), [](auto& row) { return row.flag == &drawline; }))
            wirepointentry();
        wiregraphics();
        viewdist(2) = 1e30f;
        activeview = 2;
    }
    static void click(double x, double y) {
        viewmousedown(2, mousebuttons::left, 10 + x, 5 - y);
        viewmouseup(2, mousebuttons::left, 10 + x, 5 - y);
    }
};
}  // namespace

static void expectplace(int g, int j, double x, double y, double z = 0) {
    const point3 wanted = {x, y, z}, found = definitionpoint(graphics, g, j);
    for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR(found[k], wanted[k], 1e-5) << g << "," << j;
}

TEST(PointEntry, CurvesAndCirclesTakeThreePoints) {
    for (const graphickinds kind : {kindcurve, kindcircle}) {
        drawingroom room;
        startdrawing(kind);
        room.click(7, 7);
        keyhandler(keyenter);  // begins anew
        room.click(1, 0);
        room.click(-1, 9);
        keyhandler(keyback);
        EXPECT_EQ(ptcount, 1);
        room.click(-1, 0);
        room.click(0, 1);
        expectplace(1, 1, 1, 0);
        expectplace(1, 3, 0, 1);
        expectplace(2, 1, -1, 0);  // the next one starts at the end point
        room.click(-3, 0);
        keyhandler(keyescape);
        EXPECT_EQ(ngraphics(), 1);  // what was under construction is dropped
        EXPECT_EQ(graphics(1, 0, 0), kind);
    }
}

TEST(PointEntry, TheNextPieceFollowsThePointer) {
    drawingroom room;
    startdrawing(kindcircle);
    room.click(1, 0);
    room.platform.views[1].operations.clear();
    viewmousemove(2, mousebuttons::none, 10 - 1, 5);
    EXPECT_EQ(room.platform.views[1].count("line 11.00 5.00 9.00 5.00"), 1);
    room.click(-1, 0);
    room.platform.views[1].operations.clear();
    viewmousemove(2, mousebuttons::none, 10, 5 - 1);
    EXPECT_EQ(room.platform.views[1].count("line"), 60) << "a half circle in chords of 3 degrees";
    EXPECT_EQ(ngraphics(), 0);
    EXPECT_NEAR(modelx, -1, 1e-6) << "relative commands still go on from the last point";
}

TEST(PointEntry, SnapPrefersANodeOverAnEnd) {
    drawingroom room;
    addline({0, 0, 0}, {4, 0, 0});
    addnode(4.3f, 0, 0);
    startdrawing(kindline);
    storegraphoptions({true});
    room.click(4.1, 0.2);
    expectplace(2, 1, 4.3, 0);
    room.click(0.1, 0.3);
    expectplace(2, 2, 0, 0);
    room.click(0, 3);  // out of reach
    expectplace(3, 2, 0, 3);
    storegraphoptions({false});
}

TEST(PointEntry, AFullListIsToldAndNothingIsLost) {
    drawingroom room;
    while (ngraphics() < graphics.upper1 - 1) addline({0, 0, 0}, {1, 0, 0});
    startdrawing(kindline);
    room.click(0, 0);
    room.click(1, 1);
    EXPECT_EQ(ngraphics(), graphics.upper1);
    EXPECT_TRUE(room.platform.toldpart("Increase 'Number of graphic elements'"));
    EXPECT_FALSE(drawline);
    room.platform.answerqueue = {answers::yes};
    startdrawing(kindline);
    const int drawn = ngraphics();
    room.click(2, 2);
    room.click(3, 2);
    room.click(4, 2);
    ASSERT_EQ(ngraphics(), drawn + 2) << "the user agreed to larger sizes";
    EXPECT_TRUE(drawline);
    expectplace(drawn + 2, 1, 3, 2);
    expectplace(drawn + 2, 2, 4, 2);
}

TEST(PointEntry, TheSpaceKeyStepsThePickedPoint) {
    drawingroom room;
    addgraphic(kindcurve, {0, 0, 0}, {2, 0, 0}, {1, 2, 0});
    setselectitem(selectgraphics);
    room.click(0, 0);
    ASSERT_EQ(graphsel2(0, 0), 1);
    for (const int point : {2, 3, 1, 2}) {
        keyhandler(keyspace);
        EXPECT_EQ(graphsel2(1, 1), point);
    }
    EXPECT_EQ(graphsel(1, 1), 2);
}

TEST(PointEntry, AnElementIsPickedAndShownByItsShape) {
    drawingroom room;
    addline({0, 0, 0}, {4, 0, 0});
    addline({4, 0, 0}, {4, 4, 0});
    setselectitem(selectgraphics);
    pressat(4, 1, 0);  // typed in the coordinate boxes
    ASSERT_EQ(graphsel(0, 0), 1);
    EXPECT_EQ(graphsel(1, 0), 2);
    hover(2, 10 + 3, 5 - 0.1);
    EXPECT_EQ(room.platform.views[1].count("line 10.00 5.00 14.00 5.00 #ffa500"), 1);
    EXPECT_NE(room.platform.status.find("Graphic element 1"), std::string::npos);
    endhover();
}

// --- the dialog ---------------------------------------------------------------------------------

TEST(Placenodes, ShowsOneElement) {
    drawingroom room;
    selectgraphicelement(addline({0, 0, 0}, {1, 1, 0}, 4, 2));
    addgraphic(kindcircle, {1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, 4);
    addgraphic(kindcurve, {1, 0, 0}, {-1, 0, 0}, {0, 1, 0});
    addgraphic(kindcircle, {1, 0, 0}, {-1, 0, 0}, {0, 1e-3, 0});  // nearly straight
    placenodesform form = openplacenodes();
    EXPECT_EQ(form.nodes + " " + form.spaces + " " + form.factor, "5 4 2");
    for (const auto& [number, shown] :
         {std::pair("1", "Line 1.414"), {"2", "Circle 1"}, {"3", "Arc "}, {"4", "Line 2"}}) {
        editnumber(form, number);
        EXPECT_EQ(form.type + " " + form.value, shown);
    }
    for (const char* bad : {"5", "0", "-1", "1.5", "x", "", "1e30"}) editnumber(form, bad);
    EXPECT_EQ(curgraph, 4);
}

TEST(Placenodes, WhatTheFieldsTake) {
    enum fields { nodes, spaces, factor, length };
    void (*const edits[])(placenodesform&, const std::string&) = {editnodes, editspaces, editfactor,
                                                                  editlengthradius};
    std::string placenodesform::*const shown[] = {&placenodesform::nodes, &placenodesform::spaces,
                                                  &placenodesform::factor, &placenodesform::value};
    const struct {
        fields field;
        const char *typed, *shown;
        float stored;  // spaces, factor, or x of the end that moves
    } cases[] = {
        {nodes, "7", "7", 6},     {nodes, "-4", "-4", 1},    {nodes, "x", "2", 1},
        {nodes, "1e40", "4", 3},  {spaces, "0", "1", 1},     {spaces, "1e9", "1e9", 1e9f},
        {spaces, "2e9", "3", 3},  {spaces, "2.7", "2.7", 2}, {factor, "0", "0", 1.5f},
        {factor, "-2", "-2", -2}, {factor, "x", "x", 1.5f},  {factor, "1e60", "1e60", 1.5f},
        {length, "8", "8", 8},    {length, "3", "3", 3},     {length, "0", "0", 4},
        {length, "x", "4", 4},    {length, "1e35", "4", 4},
    };
    for (const auto& c : cases) {
        drawingroom room;
        const int end = c.stored > 4 ? 1 : 2;  // the picked one moves
        selectgraphicelement(
            addline({end == 1 ? 4.0 : 0, 0, 0}, {end == 2 ? 4.0 : 0, 0, 0}, 3, 1.5f), end);
        placenodesform form = openplacenodes();
        edits[c.field](form, c.typed);
        EXPECT_EQ(form.*shown[c.field], c.shown) << c.typed << " in field " << c.field;
        const float stored[] = {graphics(1, 0, 1), graphics(1, 0, 1), graphics(1, 0, 2),
                                graphics(1, end, 1)};
        EXPECT_EQ(stored[c.field], c.stored) << c.typed << " in field " << c.field;
        leavefield(form);
        EXPECT_EQ(form.spaces, std::to_string(int(graphics(1, 0, 1)))) << c.typed;
        closeplacenodes(form);
    }
}

// Each key starts from the ends as they stood: on the way to 12345 the line is 1 long, and an arc
// of radius 100 would be straight.
TEST(Placenodes, ATypedNumberDoesNotTurnOrStraightenWhatItIsFor) {
    drawingroom room;
    selectgraphicelement(addline({50000, 40000, 0}, {50123.4f, 40071.7f, 33.3f}), 2);
    const point3 before = definitionpoint(graphics, 1, 2) - definitionpoint(graphics, 1, 1);
    placenodesform form = openplacenodes();
    const auto type = [&form](const std::string& text) {
        for (std::size_t k = 1; k <= text.size(); ++k) editlengthradius(form, text.substr(0, k));
    };
    type("12345");
    const point3 after = definitionpoint(graphics, 1, 2) - definitionpoint(graphics, 1, 1);
    EXPECT_NEAR(lengthof(after), 12345, 0.01);
    EXPECT_LT(lengthof(cross(before, after)) / (lengthof(before) * lengthof(after)), 1e-6);
    leavefield(form);
    type("200");
    EXPECT_NEAR(lengthofline(graphics, 1), 200, 0.01);
    emptyselection();
    selectgraphicelement(addgraphic(kindcircle, {1, 0, 0}, {0, -1, 0}, {-0.7f, 0.7f, 0}));
    form = openplacenodes();
    type("100");
    EXPECT_EQ(kindof(graphics, 2), kindline);
    editlengthradius(form, "10");
    EXPECT_EQ(kindof(graphics, 2), kindcircle) << "its own again while the number is typed";
    EXPECT_TRUE(evaluatecircle(graphics, 2) && circleangle > pi);
}
