// SPDX-License-Identifier: GPL-3.0-or-later
// Drawing tools in the plane of x and y and in an oblique one, copies and sweeps.
#include "tools/draft.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "core/catalogue.h"
#include "core/journal.h"
#include "core/modelitems.h"
#include "core/session.h"
#include "core/views.h"
#include "edit/Mouseprocedures.h"
#include "edit/commands.h"
#include "edit/selection.h"
#include "tests/support/recorder.h"
#include "tests/tools/drawn.h"
#include "tools/drafttools.h"
#include "tools/sweep.h"

namespace {
// Points of a drawing plane: u across, v up.
struct plane {
    point3 origin, u, v;
    point3 at(double x, double y) const { return origin + x * u + y * v; }
    point3 normal() const { return cross(u, v); }
};
}  // namespace

static std::vector<plane> planes2d() {
    const motion turn = turnabout({0, 0, 0}, {1, 2, 3}, 1.1);
    return {{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}},
            {{300, -20, 70}, turn.direction({1, 0, 0}), turn.direction({0, 1, 0})}};
}

static void expectnear(const point3& a, const point3& b, double tolerance = 1e-4) {
    EXPECT_LE(lengthof(a - b), tolerance)
        << a[0] << ' ' << a[1] << ' ' << a[2] << " against " << b[0] << ' ' << b[1] << ' ' << b[2];
}

static double drawnlength(int first) {
    double length = 0;
    for (int g = first; g <= ngraphics(); ++g) length += lengthof(*pathof(graphics, g));
    return length;
}

static std::string refusalof(const std::function<void()>& work) {
    std::string text;
    guarded(work, [&](const runtimeerror& e) { text = e.what; });
    return text;
}

TEST(Draft, RectanglesCirclesAndArcsCloseAndHaveTheirLength) {
    sessionroom room;
    const double pi2 = 2 * std::numbers::pi;
    for (const plane& p : planes2d()) {
        const auto circle = circleabout(p.at(1, 2), p.at(4, 6), p.normal());
        double length = 0;
        for (std::size_t i = 0; i < 4; ++i) {
            length += lengthof(circle[i]);
            expectnear(circle[i].end, circle[(i + 1) % 4].start);
            EXPECT_NEAR(lengthof(circle[i].third - p.at(1, 2)), 5, 1e-9);
            EXPECT_NEAR(dot(circle[i].third - p.origin, p.normal()), 0, 1e-9);
        }
        EXPECT_NEAR(length, 5 * pi2, 1e-9);
        // Counter-clockwise from the right: up is a quarter, down three of them, left a half.
        for (const auto& [x, y, share] :
             {std::array{0.0, 9.0, 0.25}, {0.0, -9.0, 0.75}, {-9.0, 0.0, 0.5}}) {
            const auto arc = arcabout(p.at(0, 0), p.at(2, 0), p.at(x, y), p.normal());
            length = 0;
            for (const path& a : arc) length += lengthof(a);
            EXPECT_NEAR(length, share * 2 * pi2, 1e-6) << x << ' ' << y;
            expectnear(arc.back().end, p.at(2 * x / 9, 2 * y / 9));
        }
    }
    const auto upright = rectangle({0, 0, 0}, {3, 4, 5});
    for (std::size_t i = 0; i < 4; ++i) {
        expectnear(upright[i].end, upright[(i + 1) % 4].start);
        EXPECT_NEAR(lengthof(upright[i]), 5, 1e-9);  // 3-4-5 level, 5 upright
        EXPECT_NEAR(dot(upright[i].along(0), upright[(i + 1) % 4].along(0)), 0, 1e-9);
    }
    EXPECT_NE(refusalof([] { rectangle({0, 0, 0}, {0, 3, 0}); }), "");
}

TEST(Draft, AFilletTouchesBothLinesAndKeepsThePickedEnds) {
    for (const plane& p : planes2d()) {
        for (const bool crossing : {false, true}) {
            sessionroom room;
            addline(p.at(crossing ? -3 : 1, 0), p.at(10, 0));
            addline(p.at(0, 8), p.at(0, crossing ? -4 : 2));
            selectgraphicelement(1, 2);
            selectgraphicelement(2, 1);
            EXPECT_NE(refusalof([] { fillet(8.5); }).find("below 8"), std::string::npos);
            EXPECT_EQ(ngraphics(), 2);
            fillet(2);
            ASSERT_EQ(ngraphics(), 3);
            expectnear(definitionpoint(graphics, 1, 1), p.at(2, 0));
            expectnear(definitionpoint(graphics, 1, 2), p.at(10, 0));
            expectnear(definitionpoint(graphics, 2, 2), p.at(0, 2));
            EXPECT_NEAR(drawnlength(3), std::numbers::pi, 1e-4);
            const double h = 2 - std::numbers::sqrt2;
            expectnear(definitionpoint(graphics, 3, 3), p.at(h, h));
        }
    }
    sessionroom room;
    addline({0, 0, 0}, {9, 0, 0});
    addline({0, 1, 5}, {0, 9, 5});
    selectgraphicelement(1);
    selectgraphicelement(2);
    EXPECT_NE(refusalof([] { fillet(1); }).find("one plane"), std::string::npos);
}

TEST(Draft, AParallelKeepsCornersAndTakesTheSideOfThePoint) {
    const double pi = std::numbers::pi;
    for (const plane& p : planes2d()) {
        // A rounded box whose pieces were drawn in either sense: 10 by 6, one corner of radius 2.
        for (const bool outside : {false, true}) {
            sessionroom room;
            addline(p.at(0, 0), p.at(10, 0));
            addline(p.at(10, 4), p.at(10, 0));
            addgraphic(kindcircle, p.at(10, 4), p.at(8, 6),
                       p.at(8 + std::numbers::sqrt2, 4 + std::numbers::sqrt2));
            addline(p.at(0, 6), p.at(8, 6));
            addline(p.at(0, 6), p.at(0, 0));
            for (int g = 1; g <= 5; ++g) selectgraphicelement(g);
            offsetselected(1, outside ? p.at(20, 3) : p.at(5, 3));
            const double d = outside ? 1 : -1;
            const double expected = 2 * (10 + 2 * d) + 2 * (6 + 2 * d) - (2 + d) * (2 - pi / 2);
            EXPECT_NEAR(drawnlength(6), expected, 1e-3) << outside;
            EXPECT_EQ(ngraphics(), 10);
            const std::string text =
                refusalof([&] { offsetselected(outside ? 0 : 5, p.at(5, 3)); });
            EXPECT_NE(text, "") << "no distance, or sides that turn round";
            EXPECT_EQ(ngraphics(), 10);
        }
    }
}

TEST(Draft, PiecesOfEveryKindLieWhereTheWholeLay) {
    for (const plane& p : planes2d()) {
        for (const int kind : {kindline, kindcurve, kindcircle}) {
            sessionroom room;
            const int g = addgraphic(kind, p.at(0, 0), p.at(8, 0), p.at(3, 4), 6, 2);
            const path whole = *pathof(graphics, g);
            std::vector<point3> before;
            for (int i = 0; i <= 6; ++i) before.push_back(whole.at(spacingat(i, 6, 2)));
            splitat(g, whole.at(spacingat(3, 6, 2)));
            ASSERT_EQ(ngraphics(), 2);
            EXPECT_EQ(graphics(1, 0, 1) + graphics(2, 0, 1), 6);
            setgraphic(graphics, 1);
            for (int i = 0; i <= 3 && kind != kindcurve; ++i)
                expectnear(graphicnode(i, 3, graphics(1, 0, 2)), before[std::size_t(i)]);
            for (const double t : {0.2, 0.7})
                for (int part = 1; part <= 2; ++part) {
                    const point3 at = pathof(graphics, part)->at(t);
                    expectnear(whole.at(nearestshare(whole, at)), at);
                }
            EXPECT_NEAR(drawnlength(1), lengthof(whole), 2e-3);
            EXPECT_NE(refusalof([&] { splitat(1, p.at(0, 0)); }), "");
        }
    }
}

TEST(Draft, TrimTakesThePieceBetweenTheNearestCrossings) {
    for (const plane& p : planes2d()) {
        sessionroom room;
        addline(p.at(0, 0), p.at(10, 0));
        addgraphic(kindcircle, p.at(1, 0), p.at(5, 0), p.at(3, 2));          // a half circle
        addgraphic(kindcurve, p.at(6, -2), p.at(6, 2), p.at(10, 0));         // crosses at x 8
        addline(p.at(2, -5) + 3 * p.normal(), p.at(2, 5) + 3 * p.normal());  // passes above
        trimat(1, p.at(3, 0));
        ASSERT_EQ(ngraphics(), 5);
        expectnear(definitionpoint(graphics, 1, 2), p.at(1, 0));
        expectnear(definitionpoint(graphics, 5, 1), p.at(5, 0));
        trimat(5, p.at(6, 0));
        expectnear(definitionpoint(graphics, 5, 1), p.at(8, 0), 1e-3);
        trimat(3, p.at(6, -2));
        EXPECT_NE(refusalof([&] { trimat(4, p.at(2, 0)); }), "");
        EXPECT_EQ(ngraphics(), 5);
    }
}

// --- copies and sweeps --------------------------------------------------------------------------

namespace {
struct copyroom : sessionroom {
    copyroom() {
        setcount(items::group, 1);
        setcount(items::loadcase, 2);
        meshgroup = 1;
        nodetol = 0.01;
    }
    static void support(int node, int dof, float value) {
        ++ncon;
        connode(ncon) = node;
        condof(ncon) = dof;
        conval(ncon) = value;
    }
    static void load(int lc, int node, int dof, float value) {
        const int i = loadnode(lc, 0) + 1;
        loadnode(lc, 0) = i;
        loadnode(lc, i) = node;
        loaddof(lc, i) = dof;
        loadval(lc, i) = value;
    }
};
}  // namespace

TEST(Copies, TakeSupportsLoadsAndReleasesAlong) {
    copyroom room;
    for (const auto& [x, y] : {std::pair(1.f, 0.f), {2.f, 0.f}, {2.f, 1.f}, {1.f, 1.f}})
        addnode(x, y, 0);
    addelement(findtype("SHELL4"), {1, 2, 3, 4});
    addelement(findtype("BEAM"), {1, 2});
    endrelease(2, 1, 5) = 1;
    rotpo(1) = 0.25;
    room.support(1, 1, 0.5);  // a translation along x
    room.support(2, 5, 0);
    room.load(1, 3, 1, 7);  // along x
    lctype(2) = 2;          // accelerations: rows are masses
    room.load(2, 4, 1, 11);
    elemload(1, 0, 0) = 2;
    for (const auto& [i, e, dir, value] : {std::tuple(1, 1, 3, 4.f), {2, 2, 2, 6.f}}) {
        elemload(1, i, 0) = float(e);
        elemload(1, i, 1) = float(dir);
        elemload(1, i, 2) = value;
    }
    elemsel(0) = 2;
    elemsel(1) = 1;
    elemsel(2) = 2;
    const motion quarter = turnabout({0, 0, 0}, {0, 0, 1}, pi / 2);
    EXPECT_EQ(copyselected(quarter, 2), "");
    EXPECT_EQ(nnodes(), 12);
    EXPECT_EQ(nelems(), 6);
    EXPECT_TRUE(checkreferences().empty());
    EXPECT_EQ(rotpo(5), 0.25);
    EXPECT_EQ(endrelease(6, 1, 5), 1);
    // After one quarter x is y, after two it is -x.
    ASSERT_EQ(ncon, 6);
    EXPECT_EQ(std::tuple(connode(3), condof(3), conval(3)), std::tuple(5, 2, 0.5f));
    EXPECT_EQ(std::tuple(connode(5), condof(5), conval(5)), std::tuple(9, 1, -0.5f));
    ASSERT_EQ(loadnode(1, 0), 3);
    EXPECT_EQ(std::tuple(loadnode(1, 2), loaddof(1, 2), loadval(1, 2)), std::tuple(7, 2, 7.f));
    EXPECT_EQ(std::tuple(loadnode(1, 3), loaddof(1, 3), loadval(1, 3)), std::tuple(11, 1, -7.f));
    EXPECT_EQ(std::tuple(loaddof(2, 2), loadval(2, 2)), std::tuple(2, 11.f))
        << "a mass has no sense";
    EXPECT_EQ(elemload(1, 0, 0), 6);
    // By an odd angle the support along x points nowhere; a clamp would stay.
    emptyselection();
    nodesel(0) = 1;
    nodesel(1) = 1;
    const std::string note = copyselected(turnabout({0, 0, 0}, {0, 0, 1}, 0.3), 1);
    EXPECT_NE(note.find("1 support(s)"), std::string::npos);
    EXPECT_EQ(ncon, 6);
}

TEST(Copies, LoadsAcrossALineKeepTheirPlaceInTheTurn) {
    copyroom room;
    addnode(0, 0, 0);
    addnode(0, 0, 3);  // upright: its level axis is y
    addelement(findtype("BEAM"), {1, 2});
    elemload(1, 0, 0) = 1;
    elemload(1, 1, 0) = 1;
    elemload(1, 1, 1) = 2;  // along y
    elemload(1, 1, 2) = 5;
    elemsel(0) = elemsel(1) = 1;
    const std::string note = copyselected(turnabout({4, 0, 0}, {0, 0, 1}, pi / 2), 1);
    EXPECT_NE(note.find("1 line element(s)"), std::string::npos) << note;
    ASSERT_EQ(elemload(1, 0, 0), 2);
    // Turned it points along -x, which is direction 3 of an upright line, up to its sense.
    EXPECT_EQ(elemload(1, 2, 1), 3);
    EXPECT_NEAR(std::fabs(elemload(1, 2, 2)), 5, 1e-5);
}

TEST(Copies, WhatWasPastedMergesFirst) {
    copyroom room;
    if (modes().empty()) wiremouse();
    if (morecommands().empty()) wiredrafttools();
    automergenodes = pasteflag = true;
    for (const float x : {1.f, 1.f, 3.f}) addnode(x, 0, 0);
    addelement(findtype("BEAM"), {2, 3});
    nodesel(0) = 2;
    nodesel(1) = 2;
    nodesel(2) = 3;
    elemsel(0) = elemsel(1) = 1;
    runcommand("arr=1;0;0;5;0");
    EXPECT_EQ(nnodes(), 4) << "one of the two at x = 1 is gone";
    EXPECT_EQ(nelems(), 2);
    EXPECT_EQ(elems(1, 1), 1);
}

TEST(Sweeps, MakeShellsOfLinesAndBeamsOfNodes) {
    copyroom room;
    addline({0, 0, 0}, {4, 0, 0}, 4);
    addline({4, 3, 0}, {4, 0, 0}, 2);
    selectgraphicelement(1);
    selectgraphicelement(2);
    sweepselected(shiftby({0, 0, 2}), 3);
    EXPECT_EQ(nnodes(), 7 * 4);  // the corner is one
    EXPECT_EQ(nelems(), 6 * 3);
    EXPECT_TRUE(checkreferences().empty());

    copyroom ring;
    addline({1, 0, 0}, {1, 0, 5}, 5);
    selectgraphicelement(1);
    sweepselected(turnabout({0, 0, 0}, {0, 0, 1}, pi / 4), 8);
    EXPECT_EQ(nnodes(), 6 * 8) << "a full turn closes";
    EXPECT_EQ(nelems(), 5 * 8);

    copyroom dome;
    addline({0, 0, 1}, {2, 0, 0}, 2);  // begins on the axis
    selectgraphicelement(1);
    sweepselected(turnabout({0, 0, 0}, {0, 0, 1}, pi / 2), 4);
    EXPECT_EQ(nnodes(), 1 + 2 * 4);
    const int triangles = int(std::ranges::count_if(
        std::vector{1, 2, 3, 4, 5, 6, 7, 8}, [](int e) { return nodesoftype(elems(e, 0)) == 3; }));
    EXPECT_EQ(triangles, 4);

    copyroom mast;
    addnode(0, 0, 0);
    nodesel(0) = nodesel(1) = 1;
    sweepselected(shiftby({0, 0, 2}), 5);
    EXPECT_EQ(nnodes(), 6);
    EXPECT_EQ(nelems(), 5);
    EXPECT_EQ(int(elems(1, 1)), 1) << "starts at the node itself";
    EXPECT_EQ(nodes(0, 6, 2), 10);
}

TEST(Draft, CommandsGiveValuesAndPoints) {
    copyroom room;
    if (modes().empty()) wiremouse();
    if (morecommands().empty()) wiredrafttools();
    activeview = 2;
    singleel = true;  // a dialog waits for nodes
    runcommand("rec");
    EXPECT_TRUE(room.platform.toldpart("A dialog waits")) << "and keeps its mode";
    singleel = false;
    runcommand("rec");
    runcommand("ax=0;0;0");
    runcommand("ax=4;3;0");
    EXPECT_EQ(ngraphics(), 4);
    addready();
    EXPECT_EQ(graphsel(0, 0), 4) << "what was drawn is selected";
    runcommand("off=1");
    runcommand("ax=2;2;0");  // inside
    EXPECT_EQ(ngraphics(), 8);
    addready();
    emptyselection();
    runcommand("off=1");
    EXPECT_FALSE(isdrafting(drafttools()[4])) << "there is nothing to make parallels of";
    for (int g = 1; g <= 4; ++g) togglegraphic(g, 1);
    runcommand("ext=2;0;0;0;6");
    EXPECT_EQ(nelems(), 8);
    for (const char* bad :
         {"ext=0.5", "ext=2;9", "ext=abc", "ext=1e400", "rec=1;2", "pro=0;0;0;0;0;0;0"}) {
        const std::size_t before = room.platform.messages.size();
        runcommand(bad);
        EXPECT_EQ(room.platform.messages.size(), before + 1) << bad;
        EXPECT_EQ(nelems(), 8) << bad;
    }
    selectallnodes();
    runcommand("pro=1;2;1.5;0;0;0;1;10");
    for (int n = 1; n <= nnodes(); ++n)
        EXPECT_NEAR(std::hypot(nodes(0, n, 0) - 2, nodes(0, n, 1) - 1.5), 10, 1e-4);
}
