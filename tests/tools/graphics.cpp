// SPDX-License-Identifier: GPL-3.0-or-later
// Geometry of graphic elements, their cutting, and their picture.
#include "tools/Graphics.h"

#include <cmath>
#include <random>

#include "edit/find.h"
#include "edit/snap.h"
#include "tests/support/recorder.h"
#include "tests/tools/drawn.h"
#include "tools/circle.h"
#include "tools/intersect.h"
#include "view/moddraw.h"
#include "view/scaleview.h"
#include "view/setviews.h"

static void expectpoint(const point3& found, const point3& wanted, double tolerance) {
    for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR(found[k], wanted[k], tolerance);
}

TEST(Graphics, SpacingCrowdsTowardsAnEnd) {
    const struct {
        double i, n, f, t;
    } cases[] = {
        {1, 4, 1, 0.25}, {1, 2, 2, 0.25}, {1, 4, 3, 1.0 / 64}, {1, 2, 0, 0.5},
        {1, 2, -3, 0.5}, {0, 0, 1, 0},    {1, -5, 1, 1},       {1e9, 1e9, 1e-6, 1},
    };
    for (const auto& c : cases)
        EXPECT_NEAR(spacingat(c.i, c.n, c.f), c.t, 1e-15) << c.i << " " << c.n << " " << c.f;
    for (const double f : {0.2, 1.0, 5.0})
        for (int i = 0; i <= 7; ++i)
            EXPECT_NEAR(spacingat(i, 7, f), 1 - spacingat(7 - i, 7, 1 / f), 1e-14) << f;
}

TEST(Graphics, ACurveDoesNotPassThroughItsThirdPoint) {
    sessionroom room;
    const int g = addgraphic(kindcurve, {0, 0, 0}, {2, 0, 0}, {1, 2, 0});
    ASSERT_TRUE(setgraphic(graphics, g));
    expectpoint(graphicpoint(0.5), {1, 1, 0}, 1e-12);
    expectpoint(graphicpoint(1), {2, 0, 0}, 0);
}

TEST(Graphics, ACircleGoesThroughItsThreePoints) {
    sessionroom room;
    std::mt19937 random(20240811);
    std::uniform_real_distribution<double> turn(0.05, 2 * pi - 0.5), place(-50, 50);
    for (int i = 0; i < 300; ++i) {
        // A circle in a plane at random, three points on it in order of angle.
        const point3 centre = {place(random), place(random), place(random)};
        point3 u = {place(random), place(random), place(random)};
        u = (1 / lengthof(u)) * u;
        point3 n = cross(u, {place(random), place(random), place(random)});
        n = (1 / lengthof(n)) * n;
        const point3 v = cross(n, u);
        const double radius = 1 + std::fabs(place(random)), swept = turn(random);
        const auto at = [&](double a) {
            return centre + (radius * std::cos(a)) * u + (radius * std::sin(a)) * v;
        };
        const int g = addgraphic(kindcircle, at(0), at(swept), at(swept * 0.4));
        ASSERT_TRUE(evaluatecircle(graphics, g));
        if (kindof(graphics, g) == kindline) {
            EXPECT_GT(radius, 14.9 * lengthof(at(swept) - at(0)));
            continue;
        }
        const double tolerance = 2e-3 * radius;  // the points are Singles, short arcs amplify
        EXPECT_NEAR(circleradius, radius, tolerance) << i;
        EXPECT_NEAR(circleangle, swept, 2e-3) << i;
        ASSERT_TRUE(setgraphic(graphics, g));
        expectpoint(graphicpoint(0), at(0), 1e-4);
        expectpoint(graphicpoint(1), at(swept), 1e-4);
    }
}

TEST(Graphics, ANearlyStraightArcBecomesALine) {
    sessionroom room;
    // Sagitta s over chord 2: R = (1 + s^2) / (2 s); 15 chords are 30.
    for (const double r : {29.9, 30.1}) {
        const point3 top = {0, r - std::sqrt(r * r - 1), 0};
        const int g = addgraphic(kindcircle, {1, 0, 0}, {-1, 0, 0}, top);
        EXPECT_TRUE(evaluatecircle(graphics, g));
        EXPECT_EQ(kindof(graphics, g), r < 30 ? kindcircle : kindline);
    }
}

TEST(Graphics, PointsWithoutACircleKeepTheRegisters) {
    sessionroom room;
    const int good = addgraphic(kindcircle, {1, 0, 0}, {-1, 0, 0}, {0, 1, 0});
    const int bad[] = {
        addgraphic(kindcircle, {0, 0, 0}, {2, 0, 0}, {1, 0, 0}),            // collinear
        addgraphic(kindcircle, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}),            // one point
        addgraphic(kindcircle, {3, 3, 3}, {3, 3, 3}, {1, 0, 0}),            // no chord
        addgraphic(kindcircle, {1e38, 0, 0}, {-1e38, 0, 0}, {0, 1e38, 0}),  // beyond all bounds
    };
    ASSERT_TRUE(evaluatecircle(graphics, good));
    for (const int g : bad) {
        EXPECT_FALSE(evaluatecircle(graphics, g));
        EXPECT_NEAR(circleradius, 1, 1e-12);
        ASSERT_TRUE(setgraphic(graphics, g));
        expectpoint(graphicpoint(1), definitionpoint(graphics, g, 2), 0);  // drawn as the chord
        EXPECT_EQ(kindof(graphics, g), kindcircle);
    }
    graphics(good, 0, 0) = 1e30f;  // of a damaged file
    EXPECT_FALSE(setgraphic(graphics, good));
}

TEST(Graphics, ANewRadiusKeepsTheEndsAndTheSide) {
    sessionroom room;
    const int g = addgraphic(kindcircle, {2, 0, 1}, {-2, 0, 1}, {0, -1, 1});
    for (const double radius : {2.5, 59.0, 1.0}) {
        setradius(graphics, g, radius);
        ASSERT_TRUE(evaluatecircle(graphics, g));
        const double wanted = std::max(radius, 2.0);  // half the chord is the least
        EXPECT_NEAR(circleradius, wanted, 1e-4 * wanted);
        EXPECT_LT(graphics(g, 3, 2), 0);
        EXPECT_LE(circleangle, pi + 1e-6);
    }
    setradius(graphics, g, 61);  // more than 15 chords
    EXPECT_EQ(kindof(graphics, g), kindline);
}

TEST(Graphics, ANewRadiusKeepsAMajorArc) {
    sessionroom room;
    const int g = addgraphic(kindcircle, {1, 0, 0}, {0, -1, 0}, {-0.7f, 0.7f, 0});  // 270 degrees
    for (const double radius : {2.0, 0.9}) {
        setradius(graphics, g, radius);
        ASSERT_TRUE(evaluatecircle(graphics, g));
        EXPECT_NEAR(circleradius, radius, 1e-5);
        EXPECT_GT(circleangle, pi);
        EXPECT_LT(graphics(g, 3, 1), 0) << "on its side";
    }
}

// F and 1/F are rounded to Singles, and so are the places: none may move when a line is turned.
TEST(Graphics, ALineTurnedRoundKeepsItsNodesToTheLastDigit) {
    sessionroom room;
    std::mt19937 random(5);
    std::uniform_real_distribution<float> factor(0.1f, 9), place(-60000, 60000);
    const int g = addline({0, 0, 0}, {1, 0, 0}, 20);
    for (int round = 0; round < 2000; ++round) {
        const point3 a = {place(random), place(random), 0}, b = {place(random), place(random), 7};
        float f = round % 5 == 0 ? 1 : factor(random);
        std::vector<float> before;
        for (const bool turned : {false, true}) {
            setdefinitionpoint(graphics, g, 1, turned ? b : a);
            setdefinitionpoint(graphics, g, 2, turned ? a : b);
            setgraphic(graphics, g);
            if (turned) f = 1 / f;
            std::size_t next = 0;
            for (int i = 0; i <= 20; ++i)
                for (const double x : graphicnode(turned ? 20 - i : i, 20, f)) {
                    if (turned)
                        ASSERT_EQ(float(x), before[next++]) << "factor " << f << " node " << i;
                    else
                        before.push_back(float(x));
                }
        }
    }
}

// --- cutting ------------------------------------------------------------------------------------

TEST(Intersect, LinesThatDoNotCross) {
    const struct {
        const char* name;
        point3 a1, a2, b1, b2;
        int intersected, extended;  // elements afterwards
    } cases[] = {
        {"meet at an end", {0, 0, 0}, {2, 0, 0}, {2, 0, 0}, {2, 5, 0}, 2, 2},
        {"parallel", {0, 0, 0}, {2, 0, 0}, {0, 1, 0}, {2, 1, 0}, 2, 2},
        {"on one line", {0, 0, 0}, {2, 0, 0}, {3, 0, 0}, {5, 0, 0}, 2, 2},
        {"no length", {1, 0, 0}, {1, 0, 0}, {0, 0, 0}, {2, 0, 0}, 2, 2},
        {"short of each other", {0, 0, 0}, {2, 0, 0}, {4, 1, 0}, {4, 3, 0}, 2, 4},
        {"one falls short", {0, 0, 0}, {2, 0, 0}, {2.5, -1, 0}, {2.5, 3, 0}, 3, 4},
        {"at the tolerance", {0, 0, 0}, {2, 0, 0}, {1.9995, -1, 0}, {1.9995, 1, 0}, 3, 3},
    };
    for (const auto& c : cases)
        for (const bool extend : {false, true}) {
            sessionroom room;
            selectgraphicelement(addline(c.a1, c.a2));
            selectgraphicelement(addline(c.b1, c.b2));
            connectgraphics(extend ? connectmodes::extend : connectmodes::intersection);
            EXPECT_EQ(ngraphics(), extend ? c.extended : c.intersected) << c.name << extend;
        }
}

TEST(Intersect, AGridOfLinesIsCutEverywhere) {
    sessionroom room;
    const int n = 4;
    for (int i = 1; i <= n; ++i) {
        selectgraphicelement(addline({double(i), 0, 0}, {double(i), n + 1.0, 0}, 7, 2));
        selectgraphicelement(addline({0, double(i), 0}, {n + 1.0, double(i), 0}));
    }
    connectgraphics(connectmodes::intersection);
    EXPECT_EQ(ngraphics(), 2 * n * (n + 1));
    for (int g = 1; g <= ngraphics(); ++g) {
        EXPECT_NEAR(lengthofline(graphics, g), 1, 1e-5) << g;
        const bool old = g <= 2 * n && g % 2 == 1;  // keeps its spaces and factor
        EXPECT_EQ(graphics(g, 0, 1), old ? 7 : 1) << g;
        EXPECT_EQ(graphics(g, 0, 2), old ? 2 : 1) << g;
    }
}

TEST(Intersect, ACircleCutsALineTwiceInPlan) {
    sessionroom room;
    selectgraphicelement(addgraphic(kindcircle, {2, 0, 7}, {-2, 0, 7}, {0, 2, 7}));
    selectgraphicelement(addline({-5, 1, 0}, {5, 1, 0}, 3));
    connectgraphics(connectmodes::intersection);
    ASSERT_EQ(ngraphics(), 4);
    const double x = std::sqrt(3.0);
    expectpoint(definitionpoint(graphics, 2, 2), {-x, 1, 0}, 1e-6);
    expectpoint(definitionpoint(graphics, 4, 2), {x, 1, 0}, 1e-6);
    EXPECT_TRUE(room.platform.messages.empty());
    // A line that misses the circle takes no part, a curve neither.
    graphsel(0, 0) = graphsel2(0, 0) = 0;
    selectgraphicelement(addgraphic(kindcurve, {-9, -9, 0}, {9, 9, 0}, {0, 3, 0}));
    selectgraphicelement(addline({-5, 9, 0}, {5, 9, 0}));
    selectgraphicelement(1);
    connectgraphics(connectmodes::intersection);
    EXPECT_EQ(ngraphics(), 6);
    EXPECT_TRUE(room.platform.told("Intersection with Arc not Supported"));
}

TEST(Intersect, AnArcCutsWhereItIsDrawn) {
    const double s = std::sqrt(2.0);
    const struct {
        const char* plane;
        point3 first, last, within, from, to, cut;  // the one place of two that the arc reaches
    } cases[] = {
        {"plan", {2, 0, 0}, {-2, 0, 0}, {0, 2, 0}, {0, -5, 0}, {0, 5, 0}, {0, 2, 0}},
        {"upright", {2, 0, 0}, {0, 0, 2}, {s, 0, s}, {-5, 0, 0}, {5, 0, 0}, {2, 0, 0}},
        {"along y", {0, 2, 0}, {0, 0, 2}, {0, s, s}, {0, -5, 0}, {0, 5, 0}, {0, 2, 0}},
        {"at 45 degrees", {2, 0, 0}, {-2, 0, 0}, {0, s, s}, {0, -5, 0}, {0, 5, 0}, {0, 2, 0}},
    };
    for (const auto& c : cases) {
        sessionroom room;
        selectgraphicelement(addgraphic(kindcircle, c.first, c.last, c.within));
        selectgraphicelement(addline(c.from, c.to));
        connectgraphics(connectmodes::intersection);
        ASSERT_EQ(ngraphics(), 3) << c.plane;
        expectpoint(definitionpoint(graphics, 2, 2), c.cut, 1e-6);
    }
}

TEST(Intersect, ExtendMakesNoLineTwice) {
    sessionroom room;
    for (const double y : {1.0, 2.0, 3.0}) selectgraphicelement(addline({0, y, 0}, {1, y, 0}));
    selectgraphicelement(addline({3, 0, 0}, {3, 4, 0}));
    selectgraphicelement(addline({3, 4, 0}, {3, 0, 0}));  // the same, drawn twice
    connectgraphics(connectmodes::extend);
    for (int g = 1; g <= ngraphics(); ++g)
        for (int h = g + 1; h <= ngraphics(); ++h) {
            const auto end = [](int line, int k) { return definitionpoint(graphics, line, k); };
            const auto near = [](const point3& a, const point3& b) {
                return lengthof(a - b) < 1e-4;
            };
            const bool same = near(end(g, 1), end(h, 1)) && near(end(g, 2), end(h, 2)),
                       turned = near(end(g, 1), end(h, 2)) && near(end(g, 2), end(h, 1));
            EXPECT_FALSE(h > 5 && (same || turned)) << g << " and " << h;
        }
}

TEST(Intersect, SkewLinesAreJoinedInSpace) {
    sessionroom room;
    selectgraphicelement(addline({-1, 0, 0}, {3, 0, 0}));
    selectgraphicelement(addline({1, -2, 5}, {1, 2, 5}));
    connectgraphics(connectmodes::connect3d);
    ASSERT_EQ(ngraphics(), 5);
    expectpoint(definitionpoint(graphics, 5, 1), {1, 0, 0}, 1e-6);
    expectpoint(definitionpoint(graphics, 5, 2), {1, 0, 5}, 1e-6);
}

TEST(Intersect, AFullModelIsTold) {
    sessionroom room;
    while (ngraphics() < graphics.upper1 - 6) addline({0, 9, 0}, {1, 9, 0});
    for (int i = 0; i < 3; ++i) {
        selectgraphicelement(addline({double(i), -1, 0}, {double(i), 1, 0}));
        selectgraphicelement(addline({-1, 0.1 * i, 0}, {4, 0.1 * i, 0}));
    }
    connectgraphics(connectmodes::intersection);
    EXPECT_TRUE(room.platform.toldpart("Increase 'Number of graphic elements'"));
    EXPECT_LE(ngraphics(), graphics.upper1);
}

// --- picture and picking ------------------------------------------------------------------------

TEST(Graphics, LinesAndMarksStandInTheirLayers) {
    sessionroom room;
    wiregraphics();
    addline({0, 0, 0}, {4, 0, 0}, 4);
    drawview(1);
    EXPECT_EQ(room.platform.views[0].count("circle"), 5);
    mnudrawlist(graphicsdrawn).checked = false;
    drawview(1);
    EXPECT_EQ(room.platform.views[0].count("circle"), 0);
    mnudrawlist(graphicsdrawn).checked = true;
    graphics(1, 0, 1) = 1e9f;  // marks that no eye can tell apart are left out
    drawview(1);
    EXPECT_LE(room.platform.views[0].count("circle"), 1001);
}

// With hidden lines too, where nothing is drawn again over what hides it.
TEST(Graphics, ABeamKeepsItsColourUnderALine) {
    sessionroom room;
    wiregraphics();
    for (const double x : {0.0, 1.0, 4.0, 6.0}) addnode(x, 0, 0);
    addelement(6, {1, 2});
    addelement(6, {3, 2});
    graphcolor = rgb(1, 2, 3);
    mnuSettingsItem(3).checked = false;
    const struct {
        const char* name;
        point3 from, to;
        int drawn;
    } cases[] = {{"along both", {4, 0, 0}, {0, 0, 0}, 0},
                 {"along one", {0, 0, 0}, {1, 0, 0}, 0},
                 {"beyond them", {0, 0, 0}, {6, 0, 0}, 1},
                 {"beside them", {0, 0, 0}, {4, 0.5, 0}, 1}};
    for (const auto& c : cases)
        for (const bool hidden : {true, false}) {
            graphics(0, 0, 0) = 0;
            addline(c.from, c.to);
            mnudrawlist(hiddenline).checked = hidden;
            drawview(1);
            int lines = 0;
            for (const std::string& o : room.platform.views[0].operations)
                lines += o.starts_with("line") && o.ends_with("#010203");
            EXPECT_EQ(lines, hidden ? c.drawn : 1) << c.name << hidden;
        }
}

TEST(Graphics, OfLinesThatMeetTheClickedOneIsPicked) {
    sessionroom room;
    wiregraphics();
    const point3 corner[] = {{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 0}};
    for (int i = 0; i < 4; ++i) addline(corner[i], corner[(i + 1) % 4]);
    setpreset(1, 1);  // X-Y
    viewscale(1) = 1;
    viewptx(1) = viewpty(1) = 0;
    for (const auto& [x, y, line] :
         {std::tuple(1.0, 0.1, 1), {3.9, 1, 2}, {3, 3.9, 3}, {0.1, 3, 4}, {-0.1, 1, 4}}) {
        scrx = vieww / 2 + x;
        scry = viewh / 2 - y;
        persu = x;
        persv = y;
        unprojectpoint(1);
        EXPECT_EQ(pickgraphic(1).item, line) << x << " " << y;
    }
}

TEST(Graphics, TheFootOnAnElement) {
    sessionroom room;
    wiregraphics();
    const int line = addline({0, 0, 0}, {4, 0, 0});
    const int circle = addgraphic(kindcircle, {2, 0, 0}, {-2, 0, 0}, {0, 2, 0});
    const struct {
        int g;
        point3 from, foot;
    } cases[] = {
        {line, {1, 3, 0}, {1, 0, 0}},      {line, {-5, 1, 0}, {0, 0, 0}},
        {line, {9, 1, 0}, {4, 0, 0}},      {circle, {3, 3, 0}, {std::sqrt(2), std::sqrt(2), 0}},
        {circle, {-1, -3, 0}, {-2, 0, 0}},
    };
    for (const auto& c : cases) {
        point3 foot;
        ASSERT_TRUE(footongraphic(c.g, c.from.data(), foot.data()));
        expectpoint(foot, c.foot, 1e-6);
    }
}
