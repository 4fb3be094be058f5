// SPDX-License-Identifier: GPL-3.0-or-later
// The water plane and the bed of a buoyancy load case.
#include <gtest/gtest.h>

#include <algorithm>

#include "core/colours.h"
#include "core/model.h"
#include "core/session.h"
#include "core/views.h"
#include "tests/support/recorder.h"
#include "view/drawbc.h"
#include "view/setviews.h"

static int dottedlines(const recordsurface& s) {
    return int(std::ranges::count_if(s.operations, [](const std::string& o) {
        return o.rfind("line", 0) == 0 && o.find("dotted") != o.npos;
    }));
}

TEST(Waterplane, IsDrawnForBuoyancyCasesOnShow) {
    const struct {
        const char* name;
        int type, shown;
        double depth;
        float factor;
        int lines;  // of four a rectangle
    } cases[] = {
        {"plane alone, the bed is far", 9, 1, 100000, 1, 4},
        {"bed at twice the height", 9, 1, 20, 1, 8},
        {"bed just below that", 9, 1, 20.01, 1, 4},
        {"all load cases", 9, 2, 5, 1, 8},
        {"in the combination", 9, 3, 5, 1, 8},
        {"not in the combination", 9, 3, 5, 0, 0},
        {"loads off", 9, 0, 5, 1, 0},
        {"a wave case", 7, 1, 5, 1, 0},
    };
    for (const auto& c : cases) {
        sessionroom room;
        addnode(0, 0, -4);
        addnode(3, 0, 6);
        lctype(1) = c.type;
        lcpar(1, 0) = 2;
        lcpar(1, 1) = c.depth;
        lcomb(1, 1) = c.factor;
        checkonly(viewloads, c.shown);
        drawcolor = meshcolor;
        drawloads(1);
        EXPECT_EQ(dottedlines(room.door.views[0]), c.lines) << c.name;
    }
}

TEST(Waterplane, LiesAtItsLevelAroundTheModel) {
    sessionroom room;
    addnode(0, 0, 0);
    addnode(4, 2, 5);
    lctype(1) = 9;
    lcpar(1, 0) = 3;
    lcpar(1, 1) = 1000;
    checkonly(viewloads, 1);
    viewvert(1) = viewhor(1) = 0;  // y to the right, z upwards
    viewscale(1) = 1;
    viewptx(1) = viewpty(1) = viewptz(1) = 0;
    drawcolor = backcolor;
    drawloads(1);
    // A margin of a tenth of the height: y from -0.5 to 2.5, the middle of the surface at 10, 5.
    EXPECT_EQ(room.door.views[0].count("line 9.50 2.00 12.50 2.00 #ffffff") +
                  room.door.views[0].count("line 12.50 2.00 9.50 2.00 #ffffff"),
              2);
    EXPECT_EQ(room.door.views[0].drawwidth, 1);
    EXPECT_EQ(room.door.views[0].drawstyle, pens::solid);
}
