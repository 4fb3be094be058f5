// SPDX-License-Identifier: GPL-3.0-or-later
// The picture of a plot: its order, its place, the value under the pointer, the page.
#include <algorithm>
#include <cmath>
#include <random>

#include "post/printdraw.h"
#include "post/probe.h"
#include "tests/post/plotroom.h"

TEST(Picture, FillsThenOutlinesAndTheOtherWayRoundWithLines) {
    plotroom room;
    mnudrawlist(nodesdrawn).checked = mnudrawlist(constraintsdrawn).checked = false;
    showcontour();
    const auto& list = room.platform.views[0].operations;
    const auto firstof = [&](const std::string& start, const std::string& end) {
        return std::ranges::find_if(list,
                                    [&](const std::string& o) {
                                        return o.starts_with(start) && o.find(end) != o.npos;
                                    }) -
               list.begin();
    };
    EXPECT_LT(firstof("polygon", ""), firstof("line", "#000000"));
    contourfilled = 0;
    redrawall();
    EXPECT_EQ(room.platform.views[0].count("polygon"), 0) << "nothing is filled in a wire picture";
    EXPECT_GT(firstof("line", "#00c832 w2"), firstof("line", "#000000"));
    mnudrawlist(hiddenline).checked = true;
    redrawall();
    EXPECT_EQ(room.platform.views[0].count("polygon"), 2) << "faces cover what lies behind them";
    mnudrawlist(elementsdrawn).checked = false;
    redrawall();
    EXPECT_EQ(firstof("line", "#000000"), std::ssize(list)) << "no mesh, no outline";
}

// The plot follows the deformed shape: every place of the fill is displaced.
TEST(Picture, LiesOnTheDeformedShape) {
    plotroom room;
    mnudrawlist(elementsdrawn).checked = false;
    stresscomp = 2;  // all 0: each element in one piece
    showcontour();
    const std::vector<std::string> flat = room.platform.views[0].operations;
    showdeformed();
    EXPECT_EQ(room.platform.views[0].operations.size(), flat.size() + 1) << "and its scale";
    EXPECT_NE(room.platform.views[0].operations, flat);
    // Node 2 moves by 4 along y of 5 in all, and 5 measures the unit vector's length.
    setdispscale(1);
    EXPECT_NEAR(4 * dispscale(1) * viewscale(1), 0.8 * unitveclen, 1e-6);
}

TEST(Picture, ShowsValuesAtThePointerAndTheExtremes) {
    plotroom room;
    showcontour();
    EXPECT_EQ(valueunder(1, vieww / 2 - 1, viewh / 2), "") << "off by default";
    valueatpointer = true;
    // y from 0 to 2 and z from 0 to 1 lie about the middle of the view, 2 cm a unit.
    EXPECT_EQ(valueunder(1, vieww / 2 - 1, viewh / 2), "SX 25 in element 1") << "the mean";
    EXPECT_EQ(valueunder(1, vieww / 2 - 1.998, viewh / 2 + 0.998), "SX 10.03 in element 1");
    EXPECT_EQ(valueunder(1, vieww / 2 + 5, viewh / 2), "");
    EXPECT_EQ(valueunder(2, vieww / 2 - 1, viewh / 2), "") << "the plot is in view 1";
    toggleswitch(markextremes);
    const auto& list = room.platform.views[0].operations;
    const auto has = [&](const char* text) {
        return std::ranges::any_of(
            list, [&](const std::string& o) { return o.find(text) != std::string::npos; });
    };
    EXPECT_TRUE(has("Max 40"));
    EXPECT_TRUE(has("Min -5"));
    printview();
    std::string lastcircle;
    for (const std::string& o : room.platform.page.operations)
        if (o.starts_with("circle")) lastcircle = o;
    EXPECT_NE(lastcircle.find(" 0.120 "), std::string::npos)
        << "no node covers the rings on paper: " << lastcircle;
    showelementstress();
    EXPECT_EQ(valueunder(1, vieww / 2, viewh / 2), "SX 8 in element 3");
}

// Triangles in chance places, one behind the other: the value of the nearest, by a plain look at
// all.
TEST(Picture, AMarkBehindAFaceSaysSo) {
    plotroom room;
    for (const auto& p : {point2{-1, -1}, {3, -1}, {3, 2}, {-1, 2}})
        addnode(1, float(p.x), float(p.y));
    addelement(3, {7, 8, 9, 10});
    room.write(".NSL",
               {{1, 10}, {1, 20}, {1, 30}, {1, 40}, {2, 5}, {4, 7}, {4, 1}, {4, 7}, {4, 7}});
    markextremes = true;
    const auto marks = [&] {
        std::string all;
        for (const std::string& o : room.platform.views[0].operations)
            if (o.substr(0, 4) == "text" && o.find(" M") != o.npos) all += o.substr(o.find(" M"));
        return all;
    };
    showcontour();
    EXPECT_EQ(marks(), " Max 40 (behind) Min 0 (behind)");
    nodes(0, 7, 0) = nodes(0, 8, 0) = nodes(0, 9, 0) = nodes(0, 10, 0) = -1;
    showresults();
    EXPECT_EQ(marks(), " Max 40 Min 0");
    markextremes = false;
}

TEST(Picture, TheValueAtThePointerIsOfTheNearestFace) {
    plotroom room;
    std::mt19937 random(99);
    std::uniform_real_distribution<double> place(-1, 1), value(1, 9);
    for (int e = 1; e <= nelems(); ++e) elems(e, 0) = 0;
    std::vector<std::pair<int, double>> rows;
    for (int i = 0; i < 200; ++i) {
        const double y = 4 * place(random), z = 2 * place(random), size = i % 20 == 0 ? 3 : 0.4;
        std::vector<int> corners;
        for (int c = 0; c < 3; ++c)
            corners.push_back(addnode(float(place(random)), float(y + size * place(random)),
                                      float(1 + z + size * place(random))));
        const int e = addelement(2, corners);
        for (int c = 0; c < 3; ++c) rows.emplace_back(e, value(random));
    }
    room.write(".NSL", rows);
    valueatpointer = true;
    showcontour();
    int hits = 0;
    for (int trial = 0; trial < 300; ++trial) {
        const double y = 4 * place(random), z = 1 + 2 * place(random);
        double nearest = -1e9, wanted = 0;
        for (std::size_t i = 0; i < rows.size(); i += 3) {
            const auto at = [&](int c, int k) {
                return double(nodes(0, long(elems(rows[i].first, c)), k));
            };
            const auto side = [&](int c, int k) { return at(c, k) - at(1, k); };
            const double py = y - at(1, 1), pz = z - at(1, 2);
            const double area = side(2, 1) * side(3, 2) - side(3, 1) * side(2, 2);
            const double s = (py * side(3, 2) - pz * side(3, 1)) / area,
                         t = (side(2, 1) * pz - side(2, 2) * py) / area;
            const double x = at(1, 0) + s * side(2, 0) + t * side(3, 0);
            if (s < 0 || t < 0 || s + t > 1 || x < nearest) continue;
            nearest = x;
            wanted = (1 - s - t) * rows[i].second + s * rows[i + 1].second + t * rows[i + 2].second;
        }
        // A unit is 2 cm.
        const std::string text =
            valueunder(1, vieww / 2 + 2 * (y - viewpty(1)), viewh / 2 - 2 * (z - viewptz(1)));
        double found = 0;
        const bool hit = std::sscanf(text.c_str(), "SX %lf", &found) == 1;
        ASSERT_EQ(hit, nearest > -1e8) << trial << text;
        EXPECT_NEAR(found, wanted, 2e-3 * wanted) << trial;
        hits += hit;
    }
    EXPECT_GT(hits, 100);
}

TEST(Picture, HalvesOfALineElementHaveTheColoursOfTheirEnds) {
    plotroom room;
    showelementstress();
    const auto thick = [&] {
        std::vector<std::string> colours;
        for (const std::string& o : room.platform.views[0].operations)
            if (o.find(" w3") != std::string::npos) colours.push_back(o.substr(o.find('#'), 7));
        return colours;
    };
    ASSERT_EQ(thick().size(), 2u);  // 7 and 9 of 0..9: bands 7 and 9
    EXPECT_EQ(thick()[0], "#960000");
    EXPECT_EQ(thick()[1], "#ff0000");
    contourfilled = 0;
    redrawall();
    EXPECT_EQ(thick(), (std::vector<std::string>{"#c80000", "#c80000"})) << "the mean";
}

// A report or a change of the sizes gives up the stresses while they are on show.
TEST(Picture, ReadsAnewWhatAnotherPartGaveUp) {
    plotroom room;
    showcontour();
    valueatpointer = true;
    for (const int corners : {0, 4}) {  // nothing, and fewer elements than the model has
        stressloaded = corners > 0;
        elemstress.alloc(13, corners / 4, corners);
        EXPECT_EQ(valueunder(1, vieww / 2 - 1, viewh / 2), "");
        redrawall();
        EXPECT_EQ(valueunder(1, vieww / 2 - 1, viewh / 2), "SX 25 in element 1");
    }
}

TEST(Picture, OnPaperHasTheLegendBesideItAndTheBoundsOfTheScreen) {
    plotroom room;
    showcontour();
    const double most = indexmax, least = indexmin;
    printview();
    EXPECT_EQ(indexmax, most);
    EXPECT_EQ(indexmin, least);
    const auto& page = room.platform.page.operations;
    EXPECT_EQ(page.front(), "frame 0.00 0.00 16.00 9.30");
    const auto column = std::ranges::find(page, "frame 16.00 0.00 4.00 9.30");
    const auto foot = std::ranges::find(page, "frame 0.00 9.30 20.00 0.70");
    for (const char* text : {"Stress Index", "Wind", " E1", "4.00", "-0.50"})
        EXPECT_TRUE(std::any_of(column, foot, [&](const std::string& o) {
            return o.starts_with("text ") && o.ends_with(text);
        })) << text;
}
