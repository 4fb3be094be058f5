// SPDX-License-Identifier: GPL-3.0-or-later
// The scale, the legend and the palette of the plots.
#include "post/contour.h"

#include <algorithm>
#include <cmath>
#include <random>

#include "core/colours.h"
#include "post/legend.h"
#include "post/soptions.h"
#include "tests/post/plotroom.h"

TEST(Scale, FollowsTheValuesOfTheSetOnTheActiveEntry) {
    plotroom room;
    showcontour();
    EXPECT_FLOAT_EQ(float(indexmax), 40);
    EXPECT_FLOAT_EQ(float(indexmin), -5) << "the bar's 7 and 9 are not of a contour plot";
    soptionsform form;
    form.group = 0;
    chooseset(form, 1);
    EXPECT_EQ(postcount, 2) << "a square and the bar";
    showresults();
    EXPECT_FLOAT_EQ(float(indexmin), 10);
    showelementstress();
    EXPECT_FLOAT_EQ(float(indexmax), 9);
    EXPECT_FLOAT_EQ(float(indexmin), 0) << "a bar's third and fourth record are 0";
    EXPECT_EQ(lowest.value, 7) << "marks are of corners that exist";
    choosecombination(2);
    EXPECT_FLOAT_EQ(float(indexmin), -18);
    choosecombination(1);
    contourdata = displacementdata;
    showcontour();
    EXPECT_EQ(indexmax, 5) << "the length of 3, 4, 0";
    EXPECT_EQ(makelegend().heading[2], "XYZ Displacements");
    curlcomb = 9;
    EXPECT_EQ(makelegend().heading[1], "Load Case 1") << "there is no such combination";
    curlcomb = 1;
    dispcontour = 1;
    showresults();
    EXPECT_EQ(indexmin, 0) << "no face of the set has node 6 and its -1";
}

TEST(Scale, OfAUniformFieldWidensByItself) {
    struct row {
        double value, low, high;
    };
    for (const row& r :
         {row{4, 3.5, 4.5}, {-4, -4.5, -3.5}, {0, -1, 1}, {100, 99.98, 100.02}, {0.5, -3.5, 4.5}}) {
        plotroom room;
        const auto v = r.value;
        room.write(".NSL", {{1, v}, {1, v}, {1, v}, {1, v}, {2, v}, {2, v}, {2, v}, {2, v}});
        showcontour();
        EXPECT_NEAR(indexmin, r.low, 1e-9) << v;
        EXPECT_NEAR(indexmax, r.high, 1e-9) << v;
        for (const std::string& label : makelegend().labels)
            EXPECT_EQ(label.find_first_not_of("-0123456789."), label.npos) << label;
    }
}

TEST(Scale, WhatHasNoValueDoesNotCount) {
    plotroom room;
    room.write(".NSL", {{1, 10}, {1, 20}, {1, 30}, {1, 40}, {2, 15}, {2, 15}, {2, 15}, {2, 15}});
    addelement(4, {3});      // a mass
    addelement(16, {6});     // a spring on the ground
    addelement(12, {1, 2});  // between nodes
    addelement(13, {2, 3});  // a rigid bar
    showcontour();
    EXPECT_EQ(indexmin, 10);
    EXPECT_TRUE(legendshown());
    showelementstress();
    EXPECT_EQ(lowest.value, 7);
    elems(1, 0) = elems(2, 0) = 0;
    showcontour();
    EXPECT_FALSE(legendshown()) << "no face, no scale";
    EXPECT_TRUE(room.tells("The set holds no element with a face"));
}

TEST(Scale, ByHandIsCheckedAtReady) {
    plotroom room;
    showcontour();
    soptionsform form;
    choosescale(form, false);
    EXPECT_EQ(form.maximum, "40") << "the first starts from the values";
    for (const char* text : {"abc", "1e999", "1e300", "nan", ""}) {
        form.maximum = text;
        EXPECT_FALSE(storesoptions(form)) << text;
        EXPECT_EQ(form.message, "Maximum and Minimum must be numbers");
    }
    choosescale(form, true);
    EXPECT_TRUE(storesoptions(form)) << "what is typed plays no part in an automatic scale";
    choosescale(form, false);
    form.maximum = "-6";
    EXPECT_FALSE(storesoptions(form));
    EXPECT_EQ(form.message, "Maximum is below Minimum");
    form.maximum = "12.5";
    ASSERT_TRUE(storesoptions(form));
    scalemin = 20;  // as another part of the program may set it
    showresults();
    EXPECT_EQ(indexmax, 20);
    EXPECT_EQ(indexmin, 12.5);
}

TEST(Scale, BandsAndLevelsIncludeTheirBounds) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> value(-100, 100);
    for (int trial = 0; trial < 200; ++trial) {
        indexmin = value(random);
        indexmax = indexmin + std::fabs(value(random));
        EXPECT_EQ(bandbound(10), indexmax) << "no rounding leaves the largest value out";
        EXPECT_EQ(levelof(9), indexmax);
        EXPECT_EQ(bandof(indexmax), 9);
        EXPECT_EQ(bandof(indexmin), 0);
    }
    EXPECT_EQ(bandof(indexmax + 1e-3), -1);
    EXPECT_EQ(bandof(std::nan("")), -1);
}

TEST(Legend, DividesByOnePowerOfTen) {
    struct row {
        double low, high;
        int filled, exponent;
        const char *first, *last;
        std::size_t count;
    };
    const row rows[] = {
        {-5, 40, 0, 1, "-0.50", "4.00", 10},       {0, 313.61, 1, 2, "0.00", "3.14", 11},
        {-0.00123, 0, 0, -3, "-1.23", "0.00", 10}, {1000, 1000.9, 0, 3, "1.0000", "1.0009", 10},
        {-1, 1, 1, 0, "-1.00", "1.00", 11},        {2e7, 3e8, 1, 8, "0.20", "3.00", 11},
    };
    plotroom room;
    showcontour();
    for (const row& r : rows) {
        indexmin = r.low;
        indexmax = r.high;
        contourfilled = r.filled;
        const legendtext t = makelegend();
        EXPECT_EQ(t.exponent, r.exponent) << r.high;
        EXPECT_EQ(t.labels.front(), r.first);
        EXPECT_EQ(t.labels.back(), r.last);
        EXPECT_EQ(t.labels.size(), r.count);
        EXPECT_EQ(t.tail, " E" + std::to_string(r.exponent));
    }
}

TEST(Contour, TheLabelOfABeamBringsItsOwnGround) {
    plotroom room;
    const auto& drawn = room.platform.views[0].operations;
    const auto tells = [](const std::string& o) {
        return o.starts_with("text") && o.ends_with(" 3");
    };
    checkonly(elemlabeltype, elementnumbers);
    for (const bool over : {false, true}) {
        if (over) showcontour();
        drawview(1);
        const auto label = std::ranges::find_if(drawn, tells);
        ASSERT_TRUE(label != drawn.begin() && label != drawn.end());
        const std::string& before = *(label - 1);
        EXPECT_EQ(before.starts_with("polygon") && before.ends_with("#ffffff #ffffff"), over)
            << before;
    }
}

// Ten boxes one above the other, the highest value on top, labels beside their bounds.
TEST(Legend, StandsInOrder) {
    plotroom room;
    showcontour();
    recordsurface paper;
    const double height = 9;
    drawlegendon(paper, 0, 0, 4, height);
    std::vector<std::pair<double, std::string>> labels, boxes;  // height, text or fill colour
    for (const std::string& o : paper.operations) {
        double x = 0, y = 0;
        char what[40] = "";
        if (std::sscanf(o.c_str(), "text %lf %lf %39s", &x, &y, what) == 3) {
            EXPECT_GE(y, 0) << o;
            EXPECT_LE(y + paper.textheight(), height) << o;
            if (x > 0.5) labels.emplace_back(y + paper.textheight() / 2, what);
        }
        if (std::sscanf(o.c_str(), "polygon %lf %lf %*f %*f %*f %*f %*f %*f %39s", &x, &y, what) ==
            3)
            boxes.emplace_back(y, what);
    }
    ASSERT_EQ(boxes.size(), 10u);
    ASSERT_EQ(labels.size(), 12u) << "eleven bounds and the power of ten";
    EXPECT_EQ(boxes.front().second, "#0000ff") << "lowest first";
    EXPECT_EQ(boxes.back().second, "#ff0000");
    for (std::size_t k = 0; k < 10; ++k)
        EXPECT_NEAR(labels[k + 1].first, boxes[k].first, 0.02) << "the upper bound at the top edge";
    for (std::size_t k = 1; k < 10; ++k) EXPECT_LT(boxes[k].first, boxes[k - 1].first);
    EXPECT_GT(labels[0].first, boxes[0].first + 0.2) << "the lowest bound at the foot";
    EXPECT_EQ(labels[0].second, "-0.50");
    EXPECT_EQ(labels[10].second, "4.00");
    EXPECT_EQ(labels[11].second, "E1");
}

TEST(Legend, CutsAHeadingThatIsTooWide) {
    plotroom room;
    contourdata = displacementdata;
    showcontour();
    recordsurface paper;  // 0.2 cm a letter
    drawlegendon(paper, 0, 0, 2, 9);
    EXPECT_TRUE(std::ranges::any_of(paper.operations,
                                    [&](const std::string& o) { return o.ends_with("…"); }));
}
