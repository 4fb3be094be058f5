// SPDX-License-Identifier: GPL-3.0-or-later
// The water plane and the bed of a buoyancy load case.
#include "core/colours.h"
#include "tests/support/recorder.h"
#include "view/drawconditions.h"

TEST(Waterplane, IsDrawnAroundTheModelForBuoyancyCasesOnShow) {
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
        int dotted = 0;
        for (const std::string& o : room.platform.views[0].operations)
            dotted += o.ends_with("dotted");
        EXPECT_EQ(dotted, c.lines) << c.name;
    }
    sessionroom room;
    addnode(0, 0, 0);
    addnode(4, 2, 5);
    lctype(1) = 9;
    lcpar(1, 0) = 3;
    lcpar(1, 1) = 1000;
    checkonly(viewloads, activecase);
    viewvert(1) = viewhor(1) = 0;  // y to the right, z upwards
    drawcolor = backcolor;
    drawloads(1);
    // A margin of a tenth of the height: y from -0.5 to 2.5, the middle of the surface at 10, 5.
    const recordsurface& drawn = room.platform.views[0];
    EXPECT_EQ(drawn.count("line 9.50 2.00 12.50 2.00 #ffffff"), 1);
    EXPECT_EQ(drawn.count("line 12.50 2.00 9.50 2.00 #ffffff"), 1);
    EXPECT_EQ(drawn.drawstyle, pens::solid);
}
