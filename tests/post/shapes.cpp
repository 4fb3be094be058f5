// SPDX-License-Identifier: GPL-3.0-or-later
// The switches of the post-process menu, the options, the set of elements, and what is told of
// results that do not fit.
#include "post/shapes.h"

#include <filesystem>

#include "core/journal.h"
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
    EXPECT_TRUE(room.platform.told("Stress output file: " + room.file("job") + ".NLA Not found"));
    redrawall();
    EXPECT_EQ(room.platform.messages.size(), 1u) << "a redraw does not ask again";
    EXPECT_FALSE(legendshown());
    EXPECT_GT(room.platform.views[0].count("line"), 8) << "the mesh is there";
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
    contourdata = displacementdata;
    writefile(room.file("job.rvp"), "7,1\r\n0,0\r\n");
    showcontour();
    EXPECT_TRUE(room.platform.told("Error occurred while trying to read Displacements."));
    EXPECT_TRUE(room.tells("7 nodes, the model in hand has 6")) << room.platform.status;
    EXPECT_FALSE(legendshown());
    EXPECT_EQ(room.platform.views[0].count("polygon"), 0);
    EXPECT_GT(room.platform.views[0].count("line"), 8) << "the mesh is there";
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
    EXPECT_TRUE(room.tells("Hz; the stresses are of load combination Wind"))
        << room.platform.status;
    choosemode(12);
    EXPECT_TRUE(room.platform.messages.empty()) << room.platform.messages.front().text;
    EXPECT_TRUE(room.tells("no load combination 12, its stresses are 0")) << room.platform.status;
    showcontour();
    showdeformed();
    EXPECT_EQ(maxdisp, 0) << "displacements take the place of the mode's shape";
    EXPECT_EQ(modetext(), "");
    EXPECT_TRUE(room.tells("no load combination 12, its displacements are 0"));
    showmode();
    choosecombination(1);
    EXPECT_EQ(maxdisp, 5);
    EXPECT_FALSE(room.tells("no load")) << room.platform.status;
}

TEST(Switches, WhatTheFilledPainterLeavesOutIsTold) {
    plotroom room;
    room.write(".NSL", {{1, 2e6}, {1, 2e6}, {1, 2e6}, {1, 3e6}, {2, 0}, {2, 9e6}, {2, 1}, {2, 1}});
    showcontour();
    EXPECT_TRUE(room.tells("1 element with values from 1E+06 up not filled"))
        << room.platform.status;
    contourfilled = 0;
    showresults();
    EXPECT_FALSE(room.tells("filled")) << room.platform.status;
}

// A file of an older analysis reads well and still does not fit: the status line says so.
TEST(Switches, ResultsOfOtherLoadCasesAreTold) {
    plotroom room;
    addelement(4, {1}), addelement(16, {2});  // a mass and a spring have no stress to lack
    showdeformed();
    EXPECT_FALSE(room.tells("load case")) << room.platform.status;
    loadnode(0, 0) = 2;
    choosecombination(1);
    EXPECT_TRUE(room.tells("job.rvp holds 1 load case, the model has 2")) << room.platform.status;
    showcontour();
    EXPECT_TRUE(room.tells("job.NSL holds 1 load case, the model has 2")) << room.platform.status;
    loadnode(0, 0) = 1;
    room.write(".NSL", {{1, 10}, {1, 20}, {1, 30}, {1, 40}});
    choosecombination(1);
    EXPECT_TRUE(room.tells("1 element has no stress in the file")) << room.platform.status;
    writefile(room.file("job.EIG"), "1,3\r\n4\r\n0,0\r\n0,0\r\n0,0\r\n0,0\r\n0,0\r\n0,1\r\n");
    showmode();
    EXPECT_TRUE(room.tells("job.EIG announces 3 modes and holds 1")) << room.platform.status;
}

TEST(Switches, ReactionsAreReadWithTheDisplacements) {
    plotroom room;
    writefile(room.file("job.KRT"),
              "6,1\r\n1,0,8\r\n2,0,0\r\n3,4,0\r\n4,0,0\r\n5,0,0\r\n6,0,0\r\n0,4,8\r\n\"LC\"\r\n");
    checkonly(viewloads, allcases);
    const auto arrows = [&] {
        int red = 0;
        for (const std::string& o : room.platform.views[0].operations)
            red += o.substr(0, 4) == "line" && o.find("#ff0000 w2") != o.npos;
        return red;
    };
    showdeformed();
    EXPECT_EQ(arrows(), 2);
    EXPECT_EQ(dispres(0, 1, 2), 8);
    choosecombination(2);
    EXPECT_EQ(dispres(0, 1, 2), -16) << "of the combination";
    std::filesystem::remove(room.file("job.KRT"));
    choosecombination(1);
    EXPECT_EQ(arrows(), 0);
    EXPECT_EQ(maxdisp, 5) << "the displacements stand without";
    EXPECT_TRUE(room.platform.messages.empty());
}

// Rounding alone would else be drawn as large as any shape.
TEST(Switches, NumericNoiseIsNotDrawn) {
    const struct {
        const char* what;
        double moved, load, prescribed;
        bool noise;
    } cases[] = {
        {"nothing moves", 1e-17, 0, 0, true},
        {"loads of supports alone", 1e-17, 1000, 0, true},
        {"a small load on a stiff plate", 4e-11, 1, 0, false},
        {"a small prescribed displacement", 1e-10, 0, 1e-10, false},
        {"the usual", 1e-3, 1000, 0, false},
    };
    for (const auto& c : cases) {
        plotroom room;
        SCOPED_TRACE(c.what);
        groups(1, 1) = groups(2, 1) = 2e11f;
        groups(1, 4) = groups(2, 4) = 0.1f;
        loadnode(1, 0) = loadnode(1, 1) = loaddof(1, 1) = 1;
        loadval(1, 1) = float(c.load);
        ncon = connode(1) = condof(1) = 1;
        conval(1) = float(c.prescribed);
        const std::string d = std::to_string(int(c.moved * 1e20)) + "E-20";
        writefile(room.file("job.rvp"),
                  "6,1\r\n0,0\r\n0," + d + "\r\n0,0\r\n0,0\r\n0,0\r\n0,0\r\n\"LC\"\r\n");
        contourdata = displacementdata;
        showdeformed();
        EXPECT_EQ(room.platform.views[0].count("text 0.15"), 1);
        EXPECT_EQ(room.tells("numeric noise"), c.noise) << room.platform.status;
        int shape = 0;
        for (const std::string& o : room.platform.views[0].operations)
            shape += o.substr(0, 4) == "line" && o.find("#0000ff") != o.npos;
        EXPECT_EQ(shape > 1, !c.noise) << "lines of the shape beside the triad's";
        showcontour();
        EXPECT_EQ(legendshown(), !c.noise);
    }
}

TEST(Switches, ThePictureTellsWhatItsValuesDoNot) {
    plotroom room;
    EXPECT_TRUE(picturenotes(1).empty());
    showdeformed();
    setdispscale(2);
    viewscale(1) = 4;
    setdispscale(1);
    nodes(1, 3, 0) = nodes(1, 3, 1) = 0;
    nodes(1, 3, 2) = 5.000001f;  // as large, but for rounding
    EXPECT_EQ(picturenotes(1),
              std::vector<std::string>{"Displacements drawn 0.025 times their size, "
                                       "the largest 5 at node 2"});
    EXPECT_EQ(picturenotes(2), std::vector<std::string>{"Displacements drawn 0.1 times their size, "
                                                        "the largest 5 at node 2"});
    loadnode(0, 0) = 2;
    choosecombination(1);
    {
        const step s("change");
        rotpo(1) = 1;
    }
    ASSERT_EQ(picturenotes(1).size(), 3u);
    EXPECT_EQ(picturenotes(1)[0], staletext);
    EXPECT_NE(picturenotes(1)[1].find("the sum is not whole"), std::string::npos);
    room.writemodes({-9, 400 * 9.8696044});
    ASSERT_TRUE(stepback());
    showmode();
    EXPECT_EQ(modetext(), "Mode shape 1 of 2: omega^2 = -9, no frequency");
    EXPECT_EQ(modelist().front(), "1: omega^2 = -9, no frequency");
    EXPECT_EQ(modelist().back(), "2: 10 Hz");
}

TEST(Switches, LineStressOfAFaceIsTold) {
    plotroom room;
    room.write(".LES", {{3, 7}, {1, 5}});
    showelementstress();
    EXPECT_TRUE(room.tells("1 record of line stress belong")) << room.platform.status;
}
