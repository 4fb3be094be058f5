// SPDX-License-Identifier: GPL-3.0-or-later
// Arrays, start of a session, declared sizes, compaction.
#include <filesystem>

#include "core/catalogue.h"
#include "core/colours.h"
#include "core/labels.h"
#include "core/modelsize.h"
#include "core/pack.h"
#include "core/start.h"
#include "files/setmem.h"
#include "tests/support/recorder.h"

template <typename Step>
static int errorof(Step step) {
    int number = 0;
    guarded(step, [&](const runtimeerror& e) { number = e.number; });
    return number;
}

TEST(Arrays, BoundsAreIncludedAndChecked) {
    array3<float> a;
    a.alloc(1, 4, 3);
    a(1, 4, 3) = 2.5f;
    EXPECT_EQ(a(1, 4, 3), 2.5f);
    EXPECT_EQ(a(0, 0, 0), 0);
    const long outside[][3] = {{2, 0, 0}, {0, 5, 0}, {0, 0, 4}, {-1, 0, 0}, {0, -1, 0}, {0, 0, -1}};
    for (const auto& at : outside)
        EXPECT_EQ(errorof([&] { a(at[0], at[1], at[2]) = 1; }), errsubscript);
    EXPECT_EQ(errorof([&] { a.alloc(1L << 40, 1L << 40, 3); }), errmemory);
    array1<int> none;
    EXPECT_EQ(errorof([&] { none(0) = 1; }), errsubscript) << "nothing is allocated";
}

TEST(Arrays, AnIntegerNeverWraps) {
    Integer i(32767);
    EXPECT_EQ(i, 32767);
    EXPECT_EQ(errorof([&] { i = 32768; }), erroverflow);
    EXPECT_EQ(errorof([&] { i = -40000.0; }), erroverflow);
    EXPECT_EQ(i, 32767);
    EXPECT_EQ(Flag(true).value, -1);
}

TEST(Start, GivesANewModelAndItsCatalogue) {
    sessionroom room;
    EXPECT_EQ(room.platform.title, "Kalvane © 4.1: None");
    EXPECT_TRUE(room.platform.messages.empty());
    EXPECT_EQ(nnodes() + nelems() + ngraphics() + ncon, 0);
    EXPECT_EQ(lcname(nlc()) + lcombname(ncomb()) + groupname(ngroups()), "LC 1Lcomb1GR 1");
    EXPECT_EQ(lcpar(1, 4), 1);
    EXPECT_EQ(lcomb(1, 1), 1);
    EXPECT_EQ(eltypname(9), "SHELL4");
    EXPECT_EQ(eltypnodes(9), 4);
    EXPECT_EQ(statusline(), "Select Nodes; for editing");
    for (int g = 11; g <= 50; ++g) EXPECT_EQ(groupcolor(g), groupcolor(g - 10)) << g;
}

TEST(Start, ADarkGroundKeepsTheColoursOfTheUser) {
    sessionroom room;
    loadcolor = rgb(1, 2, 3);
    nodecolor = rgb(9, 9, 9);
    const auto brightness = [](colour c) { return redof(c) + greenof(c) + blueof(c); };
    setdarkviews(true);
    setdarkviews(true);
    EXPECT_LT(brightness(backcolor), 120);
    for (const colour c : {meshcolor, nodelabelcolor, elemlabelcolor, defcolor})
        EXPECT_GT(brightness(c), 400);
    EXPECT_EQ(nodecolor, rgb(9, 9, 9));
    setdarkviews(false);
    EXPECT_EQ(backcolor, rgb(255, 255, 255));
    EXPECT_EQ(meshcolor, rgb(0, 0, 0));
    EXPECT_EQ(loadcolor, rgb(1, 2, 3));
}

TEST(Start, WithoutSizesTheFailurePathDeclaresThem) {
    sessionroom room;
    std::filesystem::remove(room.file("decmem.DAT"));
    EXPECT_TRUE(start(room.folder));
    EXPECT_TRUE(room.platform.told(
        "Error reading Model size. Set your default model size!!  Use [File,Model "
        "size..] from the main menu"));
    EXPECT_EQ(contentof(room.file("decmem.DAT")),
              "5000\r\n5000\r\n5000\r\n5000\r\n2000\r\n200\r\n2\r\n");
    for (const char* damage :
         {"", "5000\r\n\r\n", "5000\r\n5000\r\nabc", "1\r\n1\r\n1\r\n1\r\n1\r\n0\r\n4",
          "5000\r\n-3\r\n5000\r\n5000\r\n2000\r\n200\r\n4\r\n"}) {
        writefile(room.file("decmem.DAT"), damage);
        readmodelsize();
        EXPECT_EQ(modelsize(sizeloadcases), 2) << damage;
        EXPECT_EQ(modelsize(sizeelements), 5000) << damage;
    }
}

TEST(Start, AMissingCatalogueEndsTheProgram) {
    for (const std::string name : {"ELTYP.DAT", "ELDES.DAT"}) {
        sessionroom room;
        std::filesystem::remove(room.file(name));
        EXPECT_FALSE(start(room.folder));
        EXPECT_TRUE(room.platform.told(
            " " + name + " not found; Place this file in the same directory as kalvane.exe"));
    }
}

TEST(Start, ADamagedCatalogueIsToldAndTheProgramGoesOn) {
    const std::string many = [] {
        std::string text = "42\r\n";
        for (int i = 0; i < 42; ++i) text += "\"T\"\r\n2\r\n";
        return text;
    }();
    for (const std::string& damage : {std::string("3\r\n\"NONE\"\r\n0\r\n\"A\"\r\n7\r\n"), many}) {
        sessionroom room;
        writefile(room.file("ELTYP.DAT"), damage);
        EXPECT_TRUE(start(room.folder));
        EXPECT_TRUE(room.platform.toldpart("Unexplained error in procedure start; "));
    }
}

TEST(Modelsize, MemoryEstimateFollowsTheBoxes) {
    const auto cost = calcmem({5000, 5000, 5000, 5000, 2000, 200, 4});
    const double expected[] = {680, 3360, 120 + 4 * 15004 * 8 / 1000.0,
                               520, 544,  (200 * 88 + 320000) / 1000.0};
    double total = 0;
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_DOUBLE_EQ(cost[i], expected[i]) << i;
        total += expected[i];
    }
    EXPECT_DOUBLE_EQ(cost[6], total / 1000);
}

TEST(Modelsize, ChangingTheSizesKeepsTheModel) {
    sessionroom room;
    for (int n = 1; n <= 5; ++n) addnode(float(n), 0, 0);
    addelement(1, {1, 5});
    modelname = "None";
    sizeform form = showsizes();
    form.text[0] = "7000";
    EXPECT_TRUE(applysizes(form));
    EXPECT_EQ(nodes.upper2, 7000);
    EXPECT_EQ(nnodes(), 5);
    EXPECT_EQ(nodes(0, 5, 0), 5);
    EXPECT_EQ(modelname, "None");
    EXPECT_EQ(contentof(room.file("decmem.DAT")).substr(0, 6), "7000\r\n");

    form.text[0] = "5";  // exactly the model's size
    EXPECT_TRUE(applysizes(form));
    EXPECT_EQ(nnodes(), 5);
    form.text[0] = "4";
    EXPECT_FALSE(applysizes(form));
    EXPECT_TRUE(
        room.platform.told("Error: Model to large, Increase number of nodes to 5 on Model Size "
                           "declairation form."));
    EXPECT_EQ(form.text[0], "5") << "the boxes show the old sizes";
    EXPECT_EQ(nnodes(), 5);
    EXPECT_EQ(elems(1, 2), 5);
    EXPECT_EQ(modelname, "None");
    form = showsizes();
    ncon = 3;
    form.text[2] = "2";
    EXPECT_FALSE(applysizes(form)) << "the constraints would not fit";
    EXPECT_EQ(ncon, 3);
    form = showsizes();
    loadnode(0, 0) = 2;
    loadnode(2, 0) = 1;
    loadnode(2, 1) = 4;
    form.text[6] = "1";
    EXPECT_FALSE(applysizes(form)) << "the load cases would not fit";
    EXPECT_EQ(loadnode(2, 1), 4);
    form = showsizes();
    form.text[5] = "2000000000";
    EXPECT_FALSE(applysizes(form));
    EXPECT_TRUE(room.platform.told("Out of Memory, Reduce size of declaired model"));
    EXPECT_EQ(nnodes(), 5);
    EXPECT_EQ(modelsize(sizeedgenodes), 200);
    nodename(2) = "kept";
    form = showsizes();
    form.text[1] = "17";
    EXPECT_TRUE(applysizes(form));
    EXPECT_EQ(nodename(2), "kept");
    EXPECT_EQ(loadnode(2, 1), 4);
    form.text[3] = "many";
    editsize(form, 3);
    EXPECT_EQ(form.text[3], "0");
    EXPECT_FALSE(applysizes(form)) << "no size can be 0";
}

TEST(Pack, PatchMembersTakeNewGraphicNumbers) {
    sessionroom room;
    for (int g = 1; g <= 4; ++g) {
        graphics(g, 0, 0) = g == 2 ? 0.0f : 1.0f;
        graphics(g, 1, 1) = float(10 * g);
    }
    graphics(0, 0, 0) = 4;
    patches(0, 0, 0) = 1;
    patches(1, 0, 0) = 1;
    patches(1, 1, 0) = 2;
    patches(1, 1, 1) = 4;
    patches(1, 1, 2) = 1;
    packgraphics();
    EXPECT_EQ(ngraphics(), 3);
    EXPECT_EQ(graphics(3, 1, 1), 40);
    EXPECT_EQ(patches(1, 1, 1), 3);
    EXPECT_EQ(patches(1, 1, 2), 1);
}
