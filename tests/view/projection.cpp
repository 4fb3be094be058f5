// SPDX-License-Identifier: GPL-3.0-or-later
// Projection, its inverse, depth slab, autoscale, layouts, and what the layers draw.
#include <cmath>
#include <random>
#include <sstream>

#include "tests/support/recorder.h"
#include "view/autoscale.h"
#include "view/drawelems.h"
#include "view/facesides.h"
#include "view/localaxes.h"
#include "view/moddraw.h"
#include "view/scaleview.h"
#include "view/setviews.h"

static void project(int nview, double x, double y, double z) {
    curx = float(viewscale(nview) * x);
    cury = float(viewscale(nview) * y);
    curz = float(viewscale(nview) * z);
    prepareview(nview);
    projectpoint(nview);
}

TEST(Projection, PresetsLookAlongTheirAxis) {
    sessionroom room;
    const struct {
        int view;
        double x, y, depth;  // centimetres right of and above the centre of the point 1, 2, 3
    } cases[] = {{2, 1, 2, 3}, {3, -1, 3, 2}, {4, 2, 3, 1}};
    for (const auto& c : cases) {
        project(c.view, 1, 2, 3);
        EXPECT_NEAR(scrx, 10 + c.x, 1e-4) << c.view;
        EXPECT_NEAR(scry, 5 - c.y, 1e-4) << c.view;
        EXPECT_NEAR(perspw, c.depth, 1e-4) << c.view;
    }
    scalex = scaley = 0.5;
    project(2, 1, 2, 3);
    EXPECT_NEAR(scrx, 10.5, 1e-4);
    EXPECT_NEAR(scry, 4, 1e-4);
    viewdist(4) = 5;
    project(4, 5, 7, 9);
    EXPECT_TRUE(scrx == 10 && scry == 5 && perspw == 0) << "a point at the eye";
}

TEST(Projection, FollowsTheFormulaWithItsRounding) {
    sessionroom room;
    viewdist(1) = 40;
    viewaw(1) = 3;
    viewscale(1) = 0.37f;
    viewptx(1) = 1.25f;
    project(1, 4, -2, 7);
    const double h = viewhor(1), v = viewvert(1);
    const float dx = 0.37f * 4.0f - 0.37f * 1.25f, dy = 0.37f * -2.0f, dz = 0.37f * 7.0f;
    // The first term takes cos h alone.
    const double w = std::cos(h) * dx + std::sin(h) * std::cos(v) * dy + std::sin(v) * dz;
    const double f = 40 / (43 - w);
    EXPECT_EQ(perspw, float(f * w));
    EXPECT_NEAR(scrx, 10 + f * (-std::sin(h) * dx + std::cos(h) * dy), 1e-12);
    EXPECT_NEAR(scry,
                5 - f * (-std::cos(h) * std::sin(v) * dx - std::sin(h) * std::sin(v) * dy +
                         std::cos(v) * dz),
                1e-12);
}

TEST(Projection, TheInverseFindsThePointOnTheImagePlane) {
    sessionroom room;
    for (const int view : {2, 3, 4}) {
        scrx = 3.3;
        scry = 7.1;
        unprojectpoint(view);
        const double depth[] = {modelz, modely, modelx};
        EXPECT_EQ(depth[view - 2], 0) << "a press stays in the plane, to the last digit";
        EXPECT_GT(std::fabs(modelx) + std::fabs(modely) + std::fabs(modelz), 5) << view;
    }
    std::mt19937 random(5);
    std::uniform_real_distribution<double> angle(-3, 3), place(0, 10);
    for (int i = 0; i < 200; ++i) {
        viewhor(1) = float(angle(random));
        viewvert(1) = float(angle(random));
        viewscale(1) = float(0.1 + place(random));
        viewptx(1) = float(place(random));
        viewpty(1) = float(place(random));
        scalex = scaley = i % 2 ? 0.5 : 1;
        const double x = 2 * place(random), y = place(random);
        scrx = x;
        scry = y;
        unprojectpoint(1);
        const float back[] = {float(modelx), float(modely), float(modelz)};
        project(1, back[0], back[1], back[2]);
        ASSERT_NEAR(scrx, x, 2e-3);
        ASSERT_NEAR(scry, y, 2e-3);
    }
}

TEST(Projection, ZoomAtThePointerKeepsTheModelPointThere) {
    sessionroom room;
    viewscale(1) = 0.3f;
    viewptx(1) = 4;
    const auto pointunder = [](double x, double y) {
        scrx = x;
        scry = y;
        unprojectpoint(1);
        return std::array{modelx, modely, modelz};
    };
    const auto before = pointunder(3, 2);
    zoomview(1, 3, 2, 1.7);
    const auto after = pointunder(3, 2);
    panview(1, 2, 1);
    const auto moved = pointunder(5, 3);
    for (std::size_t k = 0; k < 3; ++k) {
        EXPECT_NEAR(after[k], before[k], 1e-4);
        EXPECT_NEAR(moved[k], before[k], 1e-4);
    }
    EXPECT_FLOAT_EQ(viewscale(1), 0.51f);
}

TEST(Autoscale, FitsTheLargestExtentLessTheMargin) {
    sessionroom room;
    autoscale(1);
    EXPECT_EQ(viewptx(1), 0) << "no point";
    EXPECT_TRUE(viewscale(1) < 0 && viewscale(1) > -1e-28f);
    addnode(1, 1, 1);
    addelement(4, {1});
    autoscale(1);
    EXPECT_EQ(viewscale(1), 1) << "one point";
    EXPECT_EQ(viewptz(1), 1);
    addnode(5, 3, 2);
    addelement(1, {1, 2});
    autoscale(1);
    addelement(1, {2, 100000});
    addelement(1, {2, -7});
    addelement(3, {1, 2, 1, 100000});
    autoscale(1);  // passes over what is no node
    EXPECT_EQ(facenormals()[std::size_t(nelems())][2], 0);
    EXPECT_EQ(viewptx(1), 3);
    EXPECT_EQ(viewptz(1), 1.5f);
    EXPECT_FLOAT_EQ(viewscale(1), float((10 / 2.0 - 0.5) * 2 / 4)) << "the smaller side is 10 cm";
    scalex = scaley = 0.5;
    autoscale(2);
    EXPECT_FLOAT_EQ(viewscale(2), float((20 / 2.0 - 0.5) * 2 / 4));
    viewgroup(3) = 2;
    addnode(9, 9, 9);
    addelement(1, {1, 3}, 2);
    autoscale(3);
    EXPECT_EQ(viewptx(3), 5) << "only the group that the view shows counts";
    tmpnodes(0, 0) = 1;
    tmpnodes(1, 1) = -11;
    autoscale(3);
    EXPECT_EQ(viewptx(3), 5) << "a copy that waits to be pasted is not on show";
    previewbuffers = true;
    autoscale(3);
    EXPECT_EQ(viewptx(3), -1) << "a preview is";
    previewbuffers = false;
}

// The told fit goes by the extents, whatever the angles: from a corner the diagonals of a cube
// stick out. Pressed again, the button frames what is seen.
TEST(Autoscale, TheSecondPressOfFitFramesTheProjectedModel) {
    sessionroom room;
    fitview(2);
    scrx = 15;
    scry = 5;
    unprojectpoint(2);
    EXPECT_NEAR(modelx, 5 * 10 / 9.0, 1e-4) << "an empty view is fitted to a square of 10 units";
    for (int i = 0; i < 8; ++i)
        addnode(float(100 + 9 * (i & 1)), float(4 * (i & 2)), float(2 * (i & 4)));
    for (int n = 1; n < 8; ++n) addelement(1, {n, n + 1});
    for (const float distance : {1e6f, 40.0f}) {
        viewdist(1) = distance;
        viewscale(1) = 3;
        fitview(1);
        const float told = viewscale(1);
        EXPECT_FLOAT_EQ(told, 1);
        for (int press = 2; press <= 3; ++press) {
            fitview(1);
            double most[2] = {0, 0};
            prepareview(1);
            for (int n = 1; n <= 8; ++n) {
                setnode(n, 1);
                projectpoint(1);
                most[0] = std::max(most[0], std::fabs(scrx - vieww / 2));
                most[1] = std::max(most[1], std::fabs(scry - viewh / 2));
            }
            const double free = std::min(vieww / 2 - most[0], viewh / 2 - most[1]);
            EXPECT_NEAR(free, unitveclen, 0.05) << press << " " << distance;
        }
        viewscale(1) = 3;
        fitview(1);
        EXPECT_EQ(viewscale(1), told) << "after a zoom it is the first press again";
    }
}

TEST(Autoscale, TheFrameLeavesRoomForSymbols) {
    for (const int dof : {1, 2, 3, 4, 5, 6})
        for (const float force : {0.0f, 3.0f, -3.0f}) {
            sessionroom room;
            for (int i = 0; i < 8; ++i)
                addnode(float(9 * (i & 1)), float(4 * (i & 2)), float(2 * (i & 4)));
            for (int n = 1; n < 8; ++n) addelement(1, {n, n + 1});
            ncon = 8;
            for (int n = 1; n <= ncon; ++n) {
                connode(n) = n;
                condof(n) = dof;
            }
            loadnode(1, 0) = force != 0;
            loadnode(1, 1) = 8;
            loaddof(1, 1) = dof;
            loadval(1, 1) = force;
            for (int press = 1; press <= 3; ++press) fitview(1);
            drawview(1);
            for (const std::string& o : room.platform.views[0].operations) {
                std::istringstream text(o);
                std::string kind;
                double x[2], y[2];
                if (!(text >> kind >> x[0] >> y[0] >> x[1] >> y[1]) || kind != "line") continue;
                EXPECT_GE(std::min({x[0], x[1], y[0], y[1]}), 0) << o << dof;
                EXPECT_TRUE(std::max(x[0], x[1]) <= 20 && std::max(y[0], y[1]) <= 10) << o << dof;
            }
        }
}

TEST(Layout, FourViewsShareTheAreaBesideTheLeftBar) {
    const twipbox work{0, 600, 17080, 8000};
    const twipbox one = viewplace(1, work, true), four = viewplace(4, work, false);
    EXPECT_EQ(one.left + one.width, 17000);
    EXPECT_EQ(one.top + one.height, 8598);
    EXPECT_EQ(four.left, 9500);
    EXPECT_EQ(four.top, 4600);
    EXPECT_NEAR(four.width, 7462.5, 1e-9);
    const scrollrange bars = scrollbarsof(20, 10, 15540);
    EXPECT_EQ(bars.horizontal, 98);  // 19.55 / 2 * 20 / 2
    EXPECT_EQ(bars.vertical, 24);
}

// --- layers -------------------------------------------------------------------------------------

static void makesquare() {
    for (const auto& at : {std::pair(-4, -2), std::pair(4, -2), std::pair(4, 2), std::pair(-4, 2)})
        addnode(float(at.first), float(at.second), 0);
}

TEST(Layers, AreDrawnInTheirOrder) {
    sessionroom room;
    makesquare();
    addelement(3, {1, 2, 3, 4});
    addelement(1, {1, 3});
    ncon = loadnode(1, 0) = loadnode(1, 1) = loaddof(1, 1) = 2;
    connode(1) = connode(2) = condof(1) = 1;
    condof(2) = 5;
    loadval(1, 1) = -10;
    loadnode(1, 2) = 3;
    loaddof(1, 2) = 1;
    loadval(1, 2) = 5;
    nodesel(0) = 1;
    nodesel(1) = 4;
    drawview(2);
    const std::vector<std::string> expected = {
        "clear #ffffff",
        "circle 6.00 7.00 0.075 #0000ff",
        "circle 14.00 7.00 0.075 #0000ff",
        "circle 14.00 3.00 0.075 #0000ff",
        "circle 6.00 3.00 0.075 #0000ff",
        "line 6.00 7.00 14.00 7.00 #000000",
        "line 14.00 7.00 14.00 3.00 #000000",
        "line 14.00 3.00 6.00 3.00 #000000",
        "line 6.00 3.00 6.00 7.00 #000000",
        "line 6.00 7.00 14.00 3.00 #0096ff w2",
        "line 2.00 9.00 3.12 9.00 #ff0000",
        "text 3.12 9.00 X",
        "line 2.00 9.00 2.00 7.88 #00ff00",
        "text 2.00 7.88 Y",
        "line 2.00 9.00 2.00 9.00 #0000ff",
        "text 2.00 9.00 Z",
        "line 14.00 7.00 14.00 7.50 #ff6400 w2",
        "line 14.00 3.00 14.25 3.00 #ff6400 w2",
        "line 6.00 7.00 6.00 6.00 #00ffff w2",
        "line 6.00 7.00 6.50 7.00 #ff00ff w2",
        "circle 6.00 3.00 0.075 #ff0000",
    };
    EXPECT_EQ(room.platform.views[1].operations, expected);
}

// Dots side by side would be all that is seen of a contour plot; supports likewise.
TEST(Layers, DotsAndSupportsThinOutWhereTheyStandClose) {
    sessionroom room;
    for (int n = 0; n < 41 * 41; ++n) addnode(float(n % 41) / 4, float(n / 41) / 4, 0);
    for (int n = 1; n <= 41; ++n) {
        connode(n) = n;
        condof(n) = 2;
    }
    ncon = 41;
    viewptx(1) = viewptx(2) = viewpty(1) = viewpty(2) = 5;
    const auto drawn = [&](int v, const char* what) {
        drawview(v);
        return room.platform.views[std::size_t(v - 1)].count(what);
    };
    setpreset(1, 1);
    EXPECT_EQ(drawn(2, "circle"), 41 * 41) << "2.5 mm apart there is room";
    EXPECT_EQ(drawn(2, "line"), 41 + 3);
    viewscale(2) = 0.25;
    EXPECT_LT(drawn(2, "circle"), 41 * 41 / 9);
    EXPECT_GT(drawn(2, "circle"), 41 * 41 / 40);
    EXPECT_LT(drawn(2, "line"), 41 / 2);
    menupostItem(contourplot).checked = true;
    EXPECT_LT(drawn(1, "circle"), 900) << "further apart over a contour";
    EXPECT_EQ(room.platform.views[0].count("circle 10.00 5.00 0.03"), 1) << "and smaller";
    viewscale(2) = 1;
    EXPECT_EQ(drawn(2, "circle 10.00 5.00 0.075"), 1) << "which the other views do not show";
}

TEST(Layers, ABeamKeepsItsColourUnderAGraphicLine) {
    sessionroom room;
    makesquare();
    addelement(1, {1, 2});
    graphics(0, 0, 0) = 1;
    layer(layers::graphicslines).draw = [](int v) { target(v)->line(0, 0, 1, 1, graphcolor); };
    mnudrawlist(graphicsdrawn).checked = true;
    drawview(2);
    const auto& drawn = room.platform.views[1].operations;
    EXPECT_EQ(room.platform.views[1].count("line 6.00 7.00 14.00 7.00 #0096ff w2"), 2);
    std::size_t line = 0;
    while (line + 1 < drawn.size() && drawn[line].substr(0, 9) != "line 0.00") ++line;
    ASSERT_LT(line + 1, drawn.size());
    EXPECT_EQ(drawn[line + 1], "line 6.00 7.00 14.00 7.00 #0096ff w2");
    layer(layers::graphicslines).draw = nullptr;
}

TEST(Layers, LabelsStandInViewOneAlone) {
    sessionroom room;
    makesquare();
    addelement(3, {1, 2, 3, 4});
    viewvert(1) = viewvert(2);
    viewhor(1) = viewhor(2);
    checkonly(elemlabeltype, elementtypes);
    checkonly(Nodelabeltype, nodenumbers);
    drawview(1);
    drawview(2);
    EXPECT_EQ(room.platform.views[0].count("text"), 3 + 4 + 1);
    EXPECT_EQ(room.platform.views[0].count("text 9.60 4.68 MEMB4"), 1);
    EXPECT_EQ(room.platform.views[1].count("text"), 3) << "the triad's letters";
}

TEST(Layers, DeformedShapeMeasuresTheUnitVector) {
    sessionroom room;
    makesquare();
    addelement(1, {1, 2});
    nodes(1, 2, 1) = 0.002f;
    maxdisp = 0.002;
    menupostItem(deformedshape).checked = true;
    viewscale(2) = 0.5;
    drawview(2);
    EXPECT_EQ(room.platform.views[1].count("line 8.00 6.00 12.00 5.50 #0000ff w2"), 1)
        << "the largest displacement is 0.5 cm on the screen whatever the scale";
    maxdisp = 0;
    setdispscale(2);
    EXPECT_EQ(dispscale(2), 1);
}

TEST(Layers, TheSlabCutsLines) {
    sessionroom room;
    addnode(0, 0, 0);
    addnode(8, 0, 0);
    addelement(1, {1, 2});
    viewdepth(2) = 5;
    mnudrawlist(nodesdrawn).checked = mnuSettingsItem(globalaxison).checked = false;
    const struct {
        float z1, z2;  // the view looks along z
        const char* line;
        int lines = 1;
    } cases[] = {{-5, 5, "line 12.00 5.00 16.00 5.00"},
                 {0, 5, "line 10.00 5.00 14.00 5.00"},
                 {0, -5, "line 10.00 5.00 14.00 5.00"},
                 {-4, -5, "line", 0}};
    for (const auto& c : cases) {
        nodes(0, 1, 2) = c.z1;
        nodes(0, 2, 2) = c.z2;
        drawview(2);
        EXPECT_EQ(room.platform.views[1].count("line"), c.lines) << c.z1;
        EXPECT_EQ(room.platform.views[1].count(c.line), c.lines) << c.z1;
    }
}

TEST(Localaxes, FollowTheNodesOfTheElement) {
    sessionroom room;
    for (const auto& at : {std::array{0, 0, 0}, {0, 0, 3}, {2, 2, 0}, {-1, 2, 0}})
        addnode(float(at[0]), float(at[1]), float(at[2]));
    addelement(6, {1, 2});
    addelement(6, {1, 3});
    addelement(9, {1, 3, 2, 4});
    addelement(6, {1, 1});
    localaxes(1);
    EXPECT_EQ(localy[1], 1) << "a beam along z has e2 = y";
    EXPECT_EQ(localz[0], -1);
    groups(1, 6) = 90;
    localaxes(2);
    EXPECT_NEAR(localx[0], std::sqrt(0.5), 1e-12);
    EXPECT_NEAR(localy[2], 1, 1e-12) << "turned by 90 degrees e2 takes the place of e3";
    EXPECT_NEAR(localz[0], std::sqrt(0.5), 1e-12);
    localaxes(3);
    EXPECT_NEAR(localx[0] * localy[0] + localx[1] * localy[1] + localx[2] * localy[2], 0, 1e-12);
    EXPECT_NEAR(axisorigin[0], 0.25, 1e-12);
    localaxes(4);
    EXPECT_EQ(localx[0], 0) << "a degenerate element has no axes";
}
