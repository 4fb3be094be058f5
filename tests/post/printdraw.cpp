// SPDX-License-Identifier: GPL-3.0-or-later
// The printed page: the layers of the screen at the paper's scale, views and colours left alone.
#include "post/printdraw.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "core/colours.h"
#include "core/model.h"
#include "core/session.h"
#include "core/views.h"
#include "post/contour.h"
#include "post/shapes.h"
#include "tests/support/recorder.h"
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
        menusettingsoff();
    }
    static void menusettingsoff() {
        mnuSettingsItem(3).checked = false;  // the triad keeps to its view's size
    }
    // Paper for views of this size.
    void paper(double width, double height) {
        door.page.framewidth = width;
        door.page.frameheight = height + foot;
        door.page.operations.clear();
    }
    ~printroom() {
        singleview = true;
        scalex = scaley = 1;
    }
};

// Operations of the first frame.
static std::vector<std::string> firstframe(const recordsurface& s) {
    std::vector<std::string> list;
    for (const std::string& o : s.operations) {
        if (o.rfind("frame", 0) == 0) {
            if (!list.empty()) break;
            continue;
        }
        list.push_back(o);
    }
    return list;
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

TEST(Printing, APageOfTheViewsSizeHoldsTheViewsPicture) {
    printroom room;
    checkonly(Nodelabeltype, 1);
    ncon = 1;
    connode(1) = 1;
    condof(1) = 1;
    drawview(1);
    std::vector<std::string> screen = room.door.views[0].operations;
    screen.erase(screen.begin());  // clear
    printview();
    EXPECT_EQ(firstframe(room.door.page), screen);
    EXPECT_GT(screen.size(), 6u);
}

TEST(Printing, TheModelFillsThePaperAndSymbolsKeepTheirSize) {
    const struct { double width, height; } papers[] = {{40, 20}, {20, 28}, {8, 6}};
    for (const auto& p : papers) {
        printroom room;
        ncon = 1;
        connode(1) = 1;
        condof(1) = 2;
        room.paper(p.width, p.height);
        printview();
        const auto operations = firstframe(room.door.page);
        const auto lines = linesin(operations);
        ASSERT_EQ(lines.size(), 3u);
        // On the screen of 20 x 10 the longer side of the model measures 10 less a unit vector at
        // each side; what bounds it on the paper is the side that grew less.
        const double across = (p.width / 2 - unitveclen) / (20.0 / 2 - unitveclen);
        const double down = (p.height / 2 - unitveclen) / (10.0 / 2 - unitveclen);
        const double length = 9 * std::min(across, down);
        EXPECT_NEAR(lines[0].x2 - lines[0].x1, length, 0.011) << p.width;
        EXPECT_NEAR((lines[0].x1 + lines[0].x2) / 2, p.width / 2, 0.011) << "in the middle";
        EXPECT_NEAR(std::fabs(lines[2].y2 - lines[2].y1), unitveclen, 0.011) << "the constraint";
        for (const std::string& o : operations) {
            if (o.rfind("circle", 0) == 0) {
                EXPECT_NE(o.find(" 0.075 "), o.npos) << o;
            }
        }
    }
}

TEST(Printing, PerspectiveIsThatOfTheScreen) {
    printroom room;
    viewhor(1) = float(toradians(-60));
    viewvert(1) = float(toradians(40));
    viewdist(1) = 12;
    viewaw(1) = 1.5f;
    drawview(1);
    const auto screen = linesin(room.door.views[0].operations);
    room.paper(40 - 2 * unitveclen, 20 - 2 * unitveclen);  // exactly twice what a view leaves free
    printview();
    const auto page = linesin(firstframe(room.door.page));
    ASSERT_EQ(screen.size(), page.size());
    for (std::size_t i = 0; i < page.size(); ++i) {
        EXPECT_NEAR(page[i].x1 - 19.5, 2 * (screen[i].x1 - 10), 0.021);
        EXPECT_NEAR(page[i].y2 - 9.5, 2 * (screen[i].y2 - 5), 0.021);
    }
}

TEST(Printing, FourViewsStandInTwoRows) {
    printroom room;
    singleview = false;
    scalex = scaley = 0.5;
    for (int v = 1; v <= 4; ++v) autoscale(v);
    room.paper(20.2, 10.2);
    printview();
    std::vector<std::string> frames;
    for (const std::string& o : room.door.page.operations)
        if (o.rfind("frame", 0) == 0) frames.push_back(o);
    const std::vector<std::string> wanted = {
        "frame 0.00 0.00 10.00 5.00", "frame 10.20 0.00 10.00 5.00", "frame 0.00 5.20 10.00 5.00",
        "frame 10.20 5.20 10.00 5.00", "frame 0.00 10.20 20.20 0.70"};
    EXPECT_EQ(frames, wanted);
    EXPECT_EQ(room.door.page.count("box 0.00 0.00 10.00 5.00"), 4);
}

TEST(Printing, LeavesViewsAndColoursAsTheyWere) {
    printroom room;
    backcolor = hidcolor = rgb(10, 20, 30);
    mnudrawlist(10).checked = true;
    shadingon = false;
    addelement(2, {1, 2, 3});
    maxdisp = 0.5;
    drawview(1);
    const auto before = room.door.views[0].operations;
    const float scale = viewscale(1), distance = viewdist(1), shape = dispscale(1);
    room.paper(13, 17);
    printview();
    EXPECT_EQ(room.door.views[0].operations, before) << "nothing went to the screen";
    EXPECT_EQ(viewscale(1), scale);
    EXPECT_EQ(viewdist(1), distance);
    EXPECT_EQ(dispscale(1), shape);
    EXPECT_EQ(vieww, 20);
    EXPECT_EQ(viewh, 10);
    EXPECT_EQ(backcolor, rgb(10, 20, 30));
    EXPECT_EQ(hidcolor, rgb(10, 20, 30));
    EXPECT_EQ(toprinter, 0);
    EXPECT_FALSE(printing);
    int faces = 0;
    for (const std::string& o : room.door.page.operations)
        if (o.rfind("polygon", 0) == 0) {
            ++faces;
            EXPECT_NE(o.find("#ffffff"), o.npos) << "a hidden face has the paper's colour: " << o;
        }
    EXPECT_EQ(faces, 1);
    maxdisp = 0;
}

TEST(Printing, TheFootTellsModelAndCombination) {
    printroom room;
    EXPECT_EQ(footleft(), "Model without a name");
    modelname = room.file("jacket");
    EXPECT_EQ(footleft(), "jacket");
    menupostItem(1).checked = true;
    lcombname(1) = "Storm";
    EXPECT_EQ(footleft(), "jacket - Storm");
    menupostItem(3).checked = true;
    curlcomb = 7;
    EXPECT_EQ(footleft(), "jacket - mode shape 7");
    curlcomb = 1;
    printview();
    EXPECT_EQ(room.door.page.count("text 0.00 0.20 jacket"), 1);
}

TEST(Printing, WhatStopsTheJobIsTold) {
    const char* const problem = "There was a problem printing to your printer.";
    const struct {
        const char* name;
        printstart start;
        bool printed, throws;
        const char* message;
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
        printroom room;
        room.door.printing = c.start;
        room.door.printed = c.printed;
        if (c.throws)
            layer(layers::selectedgraphics).draw = [](int) {
                if (toprinter) throw runtimeerror{errsubscript, "broken"};
            };
        menuprint();
        EXPECT_EQ(room.door.pages, c.pages) << c.name;
        EXPECT_EQ(room.door.messages.size(), *c.message ? 1u : 0u) << c.name;
        if (*c.message) {
            EXPECT_TRUE(room.door.told(c.message)) << c.name;
        }
        EXPECT_EQ(toprinter, 0) << c.name;
        EXPECT_EQ(vieww, 20) << c.name;
    }
}

TEST(Printing, TheLegendHasAColumnBesideTheViews) {
    printroom room;
    menupostItem(2).checked = true;
    contourdata = 1;
    addelement(2, {1, 2, 3});
    nodes(1, 3, 0) = 9;
    lcombname(1) = "Storm";
    wirepost();
    drawview(1);
    printview();
    const std::vector<std::string>& page = room.door.page.operations;
    EXPECT_EQ(page.front(), "frame 0.00 0.00 16.00 10.00");
    const auto column = std::ranges::find(page, "frame 16.00 0.00 4.00 10.00");
    ASSERT_NE(column, page.end());
    const auto foot = std::ranges::find(page, "frame 0.00 10.00 20.00 0.70");
    const auto holds = [&](const std::string& text) {
        return std::any_of(column, foot,
                           [&](const std::string& o) { return o.find(text) != o.npos; });
    };
    EXPECT_TRUE(holds("XYZ Displacements"));
    EXPECT_TRUE(holds("Storm"));
    menupostItem(2).checked = false;
    contourdata = 0;
}
