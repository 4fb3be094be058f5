// SPDX-License-Identifier: GPL-3.0-or-later
// The switches of the post-process menu, the options, the set of elements, and what is told of
// results that do not fit.
#include "post/shapes.h"

#include <gtest/gtest.h>

#include "edit/Mouseprocedures.h"
#include "edit/selection.h"
#include "post/legend.h"
#include "post/postproces.h"
#include "post/soptions.h"
#include "tests/post/plotroom.h"

TEST(Switches, AMissingStressFileIsToldOnceAndLeavesThePlotEmpty) {
    plotroom room;
    stressaverage = 1;
    showcontour();
    EXPECT_TRUE(room.door.told("Stress output file: " + room.file("job") + ".NLA Not found"));
    redrawall();
    EXPECT_EQ(room.door.messages.size(), 1u) << "a redraw does not ask again";
    EXPECT_FALSE(legendshown());
    EXPECT_GT(room.door.views[0].count("line"), 8) << "the mesh is there";
    room.write(".NLA", {{1, 1}});
    chooseaverage(0);
    chooseaverage(1);
    showresults();
    EXPECT_TRUE(legendshown());
}

TEST(Switches, OptionsReadAnew) {
    plotroom room;
    showcontour();
    chooseaxes(1);
    EXPECT_FALSE(stressloaded) << "another file";
    room.write(".NSR", {{1, 70}});
    soptionsclosed();
    EXPECT_FLOAT_EQ(float(indexmax), 70);
    soptionsform form;
    startpostselection();
    EXPECT_EQ(statusline(),
              "Select Element(s); for Post-process; <Mouse Left Button> to select, <ESC> to stop");
    endpostselection(form);
    EXPECT_EQ(form.message, "The set holds no element");
    showresults();
    EXPECT_EQ(indexmin, -1) << "an empty set has the scale of a field of zeros";
}

TEST(Switches, DisplacementsThatCannotBeReadLeaveThePlotEmpty) {
    plotroom room;
    contourdata = 1;
    writefile(room.file("job.rvp"), "7,1\r\n0,0\r\n");
    showcontour();
    EXPECT_TRUE(room.door.told("Error occurred while trying to read Displacements."));
    EXPECT_TRUE(room.tells("7 nodes, the model in hand has 6")) << room.door.status;
    EXPECT_FALSE(legendshown());
    EXPECT_EQ(room.door.views[0].count("polygon"), 0);
    EXPECT_GT(room.door.views[0].count("line"), 8) << "the mesh is there";
    choosedata(0);
    soptionsclosed();
    EXPECT_TRUE(legendshown()) << "stresses need no displacements";
    choosedata(1);
    room.writedisplacements();
    soptionsclosed();
    EXPECT_EQ(indexmax, 5);
}

// The number of a mode shape may be that of no combination, and beyond the declared load cases.
TEST(Switches, StressesBesideAModeShapeAreToldApart) {
    plotroom room;
    room.writemodes(std::vector<double>(12, 400 * 9.8696044));  // the square of 2 pi 10 Hz
    showmode();
    EXPECT_EQ(modelist().back(), "12: 10 Hz");
    showcontour();
    EXPECT_TRUE(room.tells("Hz; the stresses are of load combination Wind")) << room.door.status;
    choosemode(12);
    EXPECT_TRUE(room.door.messages.empty()) << room.door.messages.front().text;
    EXPECT_TRUE(room.tells("no load combination 12, its stresses are 0")) << room.door.status;
    showcontour();
    showdeformed();
    EXPECT_EQ(maxdisp, 0) << "displacements take the place of the mode's shape";
    EXPECT_EQ(modetext(), "");
    EXPECT_TRUE(room.tells("no load combination 12, its displacements are 0"));
    showmode();
    choosecombination(1);
    EXPECT_EQ(maxdisp, 5);
    EXPECT_FALSE(room.tells("no load")) << room.door.status;
}

TEST(Switches, WhatTheFilledPainterLeavesOutIsTold) {
    plotroom room;
    room.write(".NSL", {{1, 2e6}, {1, 2e6}, {1, 2e6}, {1, 3e6}, {2, 0}, {2, 9e6}, {2, 1}, {2, 1}});
    showcontour();
    EXPECT_TRUE(room.tells("1 element with values from 1E+06 up not filled")) << room.door.status;
    contourfilled = 0;
    showresults();
    EXPECT_FALSE(room.tells("filled")) << room.door.status;
}

// A file of an older analysis reads well and still does not fit: the status line says so.
TEST(Switches, ResultsOfOtherLoadCasesAreTold) {
    plotroom room;
    showdeformed();
    EXPECT_FALSE(room.tells("load case")) << room.door.status;
    loadnode(0, 0) = 2;
    choosecombination(1);
    EXPECT_TRUE(room.tells("job.rvp holds 1 load case, the model has 2")) << room.door.status;
    showcontour();
    EXPECT_TRUE(room.tells("job.NSL holds 1 load case, the model has 2")) << room.door.status;
    loadnode(0, 0) = 1;
    room.write(".NSL", {{1, 10}, {1, 20}, {1, 30}, {1, 40}});
    choosecombination(1);
    EXPECT_TRUE(room.tells("1 element has no stress in the file")) << room.door.status;
    writefile(room.file("job.EIG"), "1,3\r\n4\r\n0,0\r\n0,0\r\n0,0\r\n0,0\r\n0,0\r\n0,1\r\n");
    showmode();
    EXPECT_TRUE(room.tells("job.EIG announces 3 modes and holds 1")) << room.door.status;
}
