// SPDX-License-Identifier: GPL-3.0-or-later
// The printed page: the layers of the screen at the paper's scale, views and colours left alone.
#include "post/printdraw.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "core/colours.h"
#include "post/contour.h"
#include "post/shapes.h"
#include "tests/support/recorder.h"
#include "view/autoscale.h"
#include "view/hidden.h"
#include "view/moddraw.h"
#include "view/scaleview.h"
#include "view/setviews.h"

static const double foot = 0.7;  // height of the foot line

struct printroom : sessionroom {
    printroom() {
        addnode(0, 0, 0);
        addnode(4, 0, 0);
        addnode(4, 2, 0);
        addelement(1, {1, 2});
        addelement(1, {2, 3});
        paper(20, 10);
        viewvert(1) = float(toradians(90));  // x to the right, y upwards
        viewhor(1) = float(toradians(-90));
        autoscale(1);
        mnuSettingsItem(globalaxison).checked = false;  // the triad keeps to its view's size
    }
    // Paper for views of this size.
    void paper(double width, double height) {
        platform.page.framewidth = width;
        platform.page.frameheight = height + foot;
        platform.page.operations.clear();
    }
    ~printroom() {
        singleview = true;
        scalex = scaley = 1;
    }
};

// Operations of the first frame.
static std::vector<std::string> firstframe(const recordsurface& s) {
    const auto begin = s.operations.begin() + 1;
    return {begin, std::find_if(begin, s.operations.end(),
                                [](const std::string& o) { return o.starts_with("frame"); })};
}

struct stroke {
    double x1, y1, x2, y2;
};
static std::vector<stroke> linesin(const std::vector<std::string>& operations) {
    std::vector<stroke> list;
    for (const std::string& o : operations) {
        stroke s{};
        if (std::sscanf(o.c_str(), "line %lf %lf %lf %lf", &s.x1, &s.y1, &s.x2, &s.y2) == 4)
            list.push_back(s);
    }
    return list;
}

TEST(Printing, APageHoldsTheViewsPictureInPerspective) {
    printroom room;
    checkonly(Nodelabeltype, nodenumbers);
    ncon = 1;
    connode(1) = condof(1) = 1;
    viewhor(1) = float(toradians(-60));
    viewvert(1) = float(toradians(40));
    viewdist(1) = 12;
    viewaw(1) = 1.5f;
    drawview(1);
    std::vector<std::string> screen = room.platform.views[0].operations;
    screen.erase(screen.begin());  // clear
    EXPECT_GT(screen.size(), 6u);
    printview();
    EXPECT_EQ(firstframe(room.platform.page), screen) << "paper of the view's size";
    room.paper(40 - 2 * unitveclen, 20 - 2 * unitveclen);  // exactly twice what a view leaves free
    printview();
    const auto drawn = linesin(screen), page = linesin(firstframe(room.platform.page));
    ASSERT_EQ(drawn.size(), page.size());
    for (std::size_t i = 0; i < 2; ++i) {  // the elements
        EXPECT_NEAR(page[i].x1 - 19.5, 2 * (drawn[i].x1 - 10), 0.021);
        EXPECT_NEAR(page[i].y2 - 9.5, 2 * (drawn[i].y2 - 5), 0.021);
    }
}

TEST(Printing, TheModelFillsThePaperAndSymbolsKeepTheirSize) {
    const std::pair<double, double> papers[] = {{40, 20}, {20, 28}, {8, 6}};
    for (const auto& [width, height] : papers) {
        printroom room;
        ncon = 1;
        connode(1) = 1;
        condof(1) = 2;
        room.paper(width, height);
        printview();
        const auto operations = firstframe(room.platform.page);
        const auto lines = linesin(operations);
        ASSERT_EQ(lines.size(), 3u);
        // On the screen of 20 x 10 the longer side of the model measures 10 less a unit vector at
        // each side; what bounds it on the paper is the side that grew less.
        const double across = (width / 2 - unitveclen) / (20.0 / 2 - unitveclen);
        const double down = (height / 2 - unitveclen) / (10.0 / 2 - unitveclen);
        EXPECT_NEAR(lines[0].x2 - lines[0].x1, 9 * std::min(across, down), 0.011) << width;
        EXPECT_NEAR((lines[0].x1 + lines[0].x2) / 2, width / 2, 0.011) << "in the middle";
        EXPECT_NEAR(std::fabs(lines[2].y2 - lines[2].y1), unitveclen, 0.011) << "the constraint";
        for (const std::string& o : operations)
            EXPECT_TRUE(!o.starts_with("circle") || o.find(" 0.075 ") != o.npos) << o;
    }
}

TEST(Printing, FourViewsStandInTwoRows) {
    printroom room;
    singleview = false;
    scalex = scaley = 0.5;
    for (int v = 1; v <= 4; ++v) autoscale(v);
    room.paper(20.2, 10.2);
    printview();
    for (const char* frame :
         {"0.00 0.00 10.00 5.00", "10.20 0.00 10.00 5.00", "0.00 5.20 10.00 5.00",
          "10.20 5.20 10.00 5.00", "0.00 10.20 20.20 0.70"})
        EXPECT_EQ(room.platform.page.count(std::string("frame ") + frame), 1) << frame;
    EXPECT_EQ(room.platform.page.count("box 0.00 0.00 10.00 5.00"), 4);
}

TEST(Printing, LeavesViewsAndColoursAsTheyWere) {
    printroom room;
    backcolor = hidcolor = rgb(10, 20, 30);
    mnudrawlist(hiddenline).checked = true;
    shadingon = false;
    addelement(2, {1, 2, 3});
    maxdisp = 0.5;
    drawview(1);
    const auto before = room.platform.views[0].operations;
    const auto state = [] {
        return std::vector<double>{
            viewscale(1), viewdist(1),       dispscale(1),     vieww,
            viewh,        double(backcolor), double(hidcolor), double(toprinter)};
    };
    const std::vector<double> stood = state();
    room.paper(13, 17);
    printview();
    EXPECT_EQ(room.platform.views[0].operations, before) << "nothing went to the screen";
    EXPECT_EQ(state(), stood);
    EXPECT_FALSE(printing);
    EXPECT_EQ(room.platform.page.count("polygon"), 1);
    for (const std::string& o : room.platform.page.operations)
        EXPECT_TRUE(!o.starts_with("polygon") || o.find("#ffffff") != o.npos)
            << "a hidden face has the paper's colour: " << o;
    maxdisp = 0;
}

TEST(Printing, TheFootTellsModelAndCombination) {
    printroom room;
    modelname = room.file("jacket");
    lcombname(1) = "Storm";
    EXPECT_EQ(footleft(), "jacket") << "no results are on show";
    menupostItem(deformedshape).checked = true;
    EXPECT_EQ(footleft(), "jacket - Storm");
    menupostItem(modeshape).checked = true;
    EXPECT_EQ(footleft(), "jacket - mode shape 1");
}

TEST(Printing, WhatStopsTheJobIsTold) {
    const std::string problem = "There was a problem printing to your printer.";
    const struct {
        const char* name;
        printstart start;
        bool printed, throws;
        std::string message;
        int pages;
    } cases[] = {
        {"well", printstart::begun, true, false, "", 1},
        {"cancelled", printstart::cancelled, true, false, "", 0},
        {"no printer", printstart::noprinter, true, false, "No printer found", 0},
        {"no start", printstart::failed, true, false, problem, 0},
        {"paper jam", printstart::begun, false, false, problem, 1},
        {"a layer fails", printstart::begun, true, true, problem, 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        printroom room;
        room.platform.printing = c.start;
        room.platform.printed = c.printed;
        if (c.throws)
            layer(layers::selectedgraphics).draw = [](int) {
                if (toprinter) throw runtimeerror{errsubscript, "broken"};
            };
        menuprint();
        EXPECT_EQ(room.platform.pages, c.pages);
        EXPECT_EQ(room.platform.messages.size(), c.message.empty() ? 0u : 1u);
        EXPECT_TRUE(c.message.empty() || room.platform.told(c.message));
        EXPECT_EQ(toprinter, 0);
        EXPECT_EQ(footleft(), "Model without a name");
    }
}
