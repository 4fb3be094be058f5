// SPDX-License-Identifier: GPL-3.0-or-later
// What a picture of results says beside its colours: the edited legend, probes, numbers on lines,
// cuts, motion.
#include <algorithm>
#include <cmath>
#include <random>

#include "edit/Mouseprocedures.h"
#include "post/compare.h"
#include "post/cut.h"
#include "post/drawcontour.h"
#include "post/legend.h"
#include "post/legendedit.h"
#include "post/legendlook.h"
#include "post/linelabels.h"
#include "post/motion.h"
#include "post/plainnumber.h"
#include "post/postproces.h"
#include "post/probes.h"
#include "post/secondplot.h"
#include "tests/post/plotroom.h"
#include "view/setviews.h"

namespace {

bool edit(const char* what, const char* value = "") {
    std::string fault;
    const bool good = editlegend(what, value, fault);
    EXPECT_EQ(good, fault.empty()) << what << " " << value;
    return good;
}

long textsof(const plotroom& room, const std::string& part) {
    return std::ranges::count_if(room.platform.views[0].operations, [&](const std::string& o) {
        return o.starts_with("text ") && o.find(part) != o.npos;
    });
}

}  // namespace

TEST(Plainnumber, IsReadWithoutCounting) {
    const struct {
        double value;
        const char* text;
    } cases[] = {{9999.4, "9999"},       {9999.6, "10000"},         {-40000, "-40000"},
                 {123456.7, "123457"},   {9999999, "9999999"},      {1e7, "1e+07"},
                 {0.0123456, "0.01235"}, {-5.8734e7, "-5.873e+07"}, {0, "0"}};
    for (const auto& c : cases) EXPECT_EQ(shorttext(c.value), c.text);
    EXPECT_EQ(plainnumber(1e-6, 4e4), "0");
    EXPECT_EQ(plainnumber(1e-4, 4e4), "0.0001");
}

TEST(LegendEdit, HoldsForItsQuantityAndGoesBackByAStep) {
    plotroom room;
    showcontour();
    EXPECT_TRUE(edit("max", "100"));
    EXPECT_TRUE(edit("min", "-20"));
    EXPECT_EQ(indexmax, 100);
    EXPECT_EQ(indexmin, -20);
    for (const auto& [what, value] : {std::pair{"max", "-20"},
                                      {"min", "1e60"},
                                      {"max", "ten"},
                                      {"bands", "1"},
                                      {"bands", "2.5"},
                                      {"decimals", "7"},
                                      {"palette", "none"},
                                      {"colour", "red"}})
        EXPECT_FALSE(edit(what, value)) << what << value;
    EXPECT_EQ(indexmax, 100) << "what makes no sense changes nothing";
    stresscomp = 2;
    showresults();
    EXPECT_EQ(indexmax, 1) << "the other component has no limits: all of it is 0";
    stresscomp = 1;
    showresults();
    EXPECT_EQ(indexmax, 100);
    EXPECT_TRUE(edit("bands", "4"));
    EXPECT_EQ(makelegend().labels.size(), 5u);
    EXPECT_EQ(bandof(100), 3);
    EXPECT_TRUE(edit("decimals", "0"));
    EXPECT_EQ(makelegend().labels.back(), "1") << "10^2 times";
    EXPECT_TRUE(isunsaved());
    ASSERT_TRUE(stepback());
    EXPECT_EQ(lookoflegend().bands, 10);
    EXPECT_TRUE(edit("auto"));
    EXPECT_EQ(indexmax, 40);
}

TEST(LegendEdit, ColoursMeanWhatTheirPaletteSays) {
    plotroom room;
    showcontour();
    for (int k = 0; k < 10; ++k)
        EXPECT_EQ(colour(indexcolor(k)), groupshow(k)) << "the settings' own, band for band";
    ASSERT_TRUE(edit("palette", "diverging"));
    const auto red = [](double value) {  // more red than blue, of a scale from -5 to 40
        const colour c = legendcolour(0, 10, value, 40);
        return redof(c) - blueof(c);
    };
    EXPECT_LT(std::abs(red(0)), 8) << "0 has no colour";
    EXPECT_LT(red(-5), -8);
    EXPECT_GT(red(5), 8);
    EXPECT_GT(red(40), 80);
}

TEST(Probe, StaysAtItsPlaceWhateverIsPlotted) {
    plotroom room;
    if (modes().empty()) wiremouse();
    wireprobes();
    startprobing();
    EXPECT_FALSE(room.platform.messages.empty()) << "there is no plot";
    showcontour();
    startprobing();
    ASSERT_TRUE(probing);
    runningmode()->commandpoint(0, 0.5, 0.5);
    EXPECT_EQ(textsof(room, "SX 25"), 1);
    choosecombination(2);
    EXPECT_EQ(textsof(room, "SX -50"), 1);
    choosecombination(1);
    // The element has another number; the place is the same.
    elems(4, 0) = 0;
    for (int k = 0; k <= 4; ++k) std::swap(elems(1, k), elems(2, k));
    room.write(".NSL", {{2, 1}, {2, 2}, {2, 3}, {2, 4}, {1, 0}, {1, 0}, {1, 0}, {1, 0}});
    rereadshown();
    redrawall();
    EXPECT_EQ(textsof(room, "SX 2.5"), 1);
    runningmode()->commandpoint(0, 9, 9);
    EXPECT_TRUE(room.tells("No plotted element"));
    runningmode()->commandpoint(0, 0.55, 0.5);
    EXPECT_TRUE(probes().empty()) << "a press on it takes it away";
    addready();
}

TEST(Probe, IsFoundInWarpedAndSteepElementsByTheirShares) {
    plotroom room;
    nodes(0, 5, 0) = 0.4f;  // both squares are warped
    showcontour();
    std::mt19937 random(5);
    std::uniform_real_distribution<double> any(0, 1);
    for (int trial = 0; trial < 200; ++trial) {
        // On the triangle of corners 1, 2 and the middle of an element.
        const int e = 1 + trial % 2;
        double s = any(random), t = any(random), at[3] = {};
        if (s + t > 1) s = 1 - s, t = 1 - t;
        double share[5] = {0, 1 - s - t + t / 4, s + t / 4, t / 4, t / 4}, value = 0;
        for (int c = 1; c <= 4; ++c) {
            for (int k = 0; k < 3; ++k) at[k] += share[c] * nodes(0, long(elems(e, c)), k);
            value += share[c] * plotvalue(e, c);
        }
        const plotplace found = placeat(at);
        ASSERT_EQ(found.e, e) << trial;
        EXPECT_NEAR(valueat(found), value, 1e-5) << trial;
    }
}

TEST(LineLabels, StandOnLinesOfTheirValue) {
    plotroom room;
    contourfilled = 0;
    valueatpointer = true;
    mnudrawlist(nodesdrawn).checked = false;
    showcontour();
    const std::vector<std::string> without = room.platform.views[0].operations;
    toggleswitch(linelabelson);
    int labels = 0;
    for (const std::string& o : room.platform.views[0].operations) {
        double x = 0, y = 0, level = 0, found = 0;
        const bool isnew = std::ranges::find(without, o) == without.end();
        if (!isnew || std::sscanf(o.c_str(), "text %lf %lf %lf", &x, &y, &level) != 3) continue;
        const double half = 0.1 * double(o.size() - o.rfind(' ') - 1);  // of a letter 0.2 wide
        const std::string value = valueunder(1, x + half, y + 0.2);
        ASSERT_EQ(std::sscanf(value.c_str(), "SX %lf", &found), 1) << o;
        EXPECT_NEAR(found, level, 0.3) << o;
        ++labels;
    }
    EXPECT_GE(labels, 2);
    linelabelson = valueatpointer = false;
}

TEST(Ghost, IsThePaleMeshBesideAShape) {
    plotroom room;
    ghoston = true;
    const auto pale = [&] {
        return std::ranges::count_if(room.platform.views[0].operations, [](const std::string& o) {
            return o.starts_with("line") && o.find("#a6a6a6") != o.npos;
        });
    };
    redrawall();
    EXPECT_EQ(pale(), 0) << "no shape, no ghost";
    showdeformed();
    EXPECT_EQ(pale(), 9);
    showcontour();
    EXPECT_EQ(pale(), 9) << "two squares and a bar under the plot too";
    ghoston = false;
}

namespace {

// A field that is linear in place: a cut shows it exactly, whatever the mesh.
double field(const place3& p) {
    return 3 + 2 * p[1] - 5 * p[2];
}

// Quadrilaterals and triangles with shaken inner nodes over y, z from 0 to 6 and 4.
struct fieldroom : plotroom {
    fieldroom() {
        std::mt19937 random(11);
        std::uniform_real_distribution<float> off(-0.3f, 0.3f);
        nodes(0, 0, 0) = 0;
        elems(0, 0) = 0;
        for (int j = 0; j <= 4; ++j)
            for (int i = 0; i <= 6; ++i) {
                const bool inner = i > 0 && i < 6 && j > 0 && j < 4 && i != 3;
                const int n = addnode(0, float(i) + (inner ? off(random) : 0),
                                      float(j) + (inner ? off(random) : 0));
                nodes(1, n, 0) = float(field({0, nodes(0, n, 1), nodes(0, n, 2)}));
            }
        for (int j = 0; j < 4; ++j)
            for (int i = 0; i < 6; ++i) {
                const int a = 7 * j + i + 1;
                if ((i + j) % 3 != 0) {
                    addelement(3, {a, a + 1, a + 8, a + 7});
                    continue;
                }
                addelement(2, {a, a + 1, a + 8});
                addelement(2, {a, a + 8, a + 7});
            }
        contourdata = displacementdata;
        dispcontour = 1;
        menupostItem(contourplot).checked = true;
        fieldread = true;
        prepareplot();
    }
};

double lengthof(const std::vector<cutcurve>& curves) {
    double sum = 0;
    for (const cutcurve& c : curves) sum += c.back().distance;
    return sum;
}

// Where a straight line between two places has the field along its length.
void checkvalues(const std::vector<cutcurve>& curves) {
    for (const cutcurve& curve : curves)
        for (std::size_t i = 0; i < curve.size(); ++i) {
            ASSERT_NEAR(curve[i].value, field(curve[i].at), 2e-5);
            ASSERT_GE(curve[i].distance, i > 0 ? curve[i - 1].distance : 0);
        }
}

}  // namespace

TEST(Cut, ShowsALinearFieldExactly) {
    const fieldroom room;
    struct row {
        const char* what;
        cutplane plane;
        double length;
    };
    const row rows[] = {
        {"along a row of nodes", {{0, 1, 0}, 3}, 4},
        {"along the lower edge", {{0, 0, 1}, 0}, 6},
        {"along the upper edge", {{0, 0, 1}, 4}, 6},
        {"between nodes", {{0, 0, 1}, 1.7}, 6},
        {"through two corners", {{0, 4, -6}, 0}, std::sqrt(52.0)},
        {"a corner cut off", {{0, 1, 1}, 1}, std::sqrt(2.0)},
        {"beside all", {{0, 1, 0}, 7}, 0},
        {"in the plane of the faces", {{1, 0, 0}, 0}, 0},
    };
    for (const row& r : rows) {
        SCOPED_TRACE(r.what);
        const auto curves = cutby(r.plane);
        EXPECT_EQ(curves.size(), r.length > 0 ? 1u : 0u) << "in one piece";
        EXPECT_NEAR(lengthof(curves), r.length, 1e-5);
        checkvalues(curves);
    }
    // A line from a point inside to one outside ends at the edge, and begins where it was told.
    const auto line = cutbetween({0, 1.2, 0.7}, {0, 9, 3.3});
    ASSERT_EQ(line.size(), 1u);
    EXPECT_NEAR(lengthof(line), std::hypot(4.8, 1.6), 1e-5);
    EXPECT_NEAR(line[0].front().value, field({0, 1.2, 0.7}), 1e-5);
    checkvalues(line);
    EXPECT_TRUE(cutbetween({0, -1, -1}, {0, 3, 3}).empty()) << "it begins beside the faces";
}

TEST(Cut, TellsWhatItNeedsAndWritesItsTable) {
    plotroom room;
    thecut = {};
    computecut();
    EXPECT_EQ(thecut.message, "There is no plot of faces: choose Contour plot");
    showcontour();
    thecut.kind = 1;
    showcut();
    EXPECT_EQ(thecut.position, "1") << "the middle of the model";
    thecut.position = "0.5";
    computecut();
    EXPECT_EQ(thecut.message, "");
    EXPECT_EQ(cuttable(';'),
              "curve;distance;x;y;z;element;SX\r\n1;0;0;0.5;0;1;15\r\n"
              "1;0.5;0;0.5;0.5;1;25\r\n1;1;0;0.5;1;1;35\r\n");
    EXPECT_GT(room.platform.views[0].count("line"), 0);
    writefile(room.file("cut.csv"), "old");
    for (const answers answer : {answers::no, answers::yes}) {
        room.platform.filequeue.push_back({true, room.file("cut"), 1});
        room.platform.answerqueue.push_back(answer);
        savecut();
        EXPECT_EQ(contentof(room.file("cut.csv")) == "old", answer == answers::no);
    }
    thecut.kind = 3;
    cutfromselection();
    EXPECT_EQ(thecut.message, "Select two nodes, the ends of the line");
    endcut();
    thecut = {};
}

TEST(Motion, ReachesBothEndsAndComesBackTheSameWay) {
    for (const bool swings : {false, true}) {
        const shapemotion m{swings, 7, 1};
        EXPECT_EQ(partof(m, 0), swings ? -1 : 0);
        EXPECT_NEAR(partof(m, 7), 1, 1e-12);
        for (int i = 0; i < 14; ++i) {
            EXPECT_EQ(pictureat(m, i), pictureat(m, 28 - i)) << i;
            EXPECT_LE(std::abs(pictureat(m, i + 1) - pictureat(m, i)), 1);
        }
    }
    // The part is what is drawn: half a shape is half as far from the model.
    plotroom room;
    showdeformed();
    setdispscale(1);
    undeformed = 0;
    const auto moved = [&](float part) {
        shapepart = part;
        return drawnplace(2, 1).y / viewscale(1) - nodes(0, 2, 1);
    };
    EXPECT_EQ(moved(0), 0);
    EXPECT_NEAR(moved(-0.5f), -moved(0.5f), 1e-6);
    shapepart = undeformed = 1;
}

TEST(Compare, ShowsTwoResultsOnOneScaleFromOnePlace) {
    plotroom room;
    wirecompare();
    showcontour();
    const std::vector<float> before(nodes.row(1, 2).begin(), nodes.row(1, 2).end());
    startcomparison(2);
    EXPECT_EQ(shownviews(), 2);
    EXPECT_EQ(indexmax, 40) << "of the first";
    EXPECT_EQ(indexmin, -80) << "of the second, -2 times as large";
    valueatpointer = true;
    // Half as large as in one view: a unit is a centimetre.
    EXPECT_EQ(valueunder(1, vieww / 2 - 0.5, viewh / 2), "SX 25 in element 1");
    EXPECT_EQ(valueunder(2, vieww / 2 - 0.5, viewh / 2), "SX -50 in element 1");
    EXPECT_EQ(std::vector<float>(nodes.row(1, 2).begin(), nodes.row(1, 2).end()), before);
    viewscale(1) *= 1.5f;
    drawview(1);
    EXPECT_EQ(viewscale(2), viewscale(1)) << "view 2 follows";
    viewhor(2) = 0.3f;
    drawview(2);
    EXPECT_EQ(viewhor(1), 0.3f) << "and leads";
    EXPECT_EQ(indexmin, -80) << "the scale is that of both, whichever is drawn last";
    choosecommonscale(false);
    EXPECT_EQ(indexmin, -5) << "of the first alone";
    EXPECT_EQ(std::ranges::count_if(room.platform.views[1].operations,
                                    [](const std::string& o) { return o.ends_with(" -8.00"); }),
              1)
        << "the legend of the second, down to -80, in its picture";
    choosecommonscale(true);
    showdeformed();
    prepareview(2);
    undeformed = 0;
    setdispscale(2);
    const double first = drawnplace(2, 2).y;
    {
        const ofview own(2);
        const float scale = viewscale(2), moved = drawnplace(2, 2).y - scale * nodes(0, 2, 1);
        EXPECT_NEAR(moved, -2 * (first - scale * nodes(0, 2, 1)), 1e-5) << "on one factor";
    }
    EXPECT_EQ(drawnplace(2, 2).y, float(first));
    undeformed = 1;
    endcomparison();
    EXPECT_EQ(indexmin, -5);
    EXPECT_EQ(shownviews(), 1);
}
