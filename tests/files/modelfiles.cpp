// SPDX-License-Identifier: GPL-3.0-or-later
// The file set both ways: round trips, old layouts, dropped rows, damage of every kind.
#include <algorithm>
#include <filesystem>
#include <limits>
#include <random>

#include "core/colours.h"
#include "core/kaltext.h"
#include "core/newmodel.h"
#include "files/analyse.h"
#include "files/filemenu.h"
#include "files/filop.h"
#include "files/kalfile.h"
#include "files/saveset.h"
#include "files/saving.h"
#include "tests/files/filledmodel.h"
#include "view/moddraw.h"

namespace fs = std::filesystem;

// The text of a .tek without the five lines of its views.
static std::string withoutviews(const std::string& tek) {
    std::size_t end = tek.size();
    for (int line = 0; line < 5; ++line) end = tek.rfind("\r\n", end - 1);
    return tek.substr(0, end + 2);
}

TEST(Modelfiles, SaveOpenSaveGivesTheSameBytes) {
    filledroom room("a");
    ASSERT_TRUE(openmodel(room.file("a")));
    EXPECT_EQ(groupname(2), "Box, \"welded\"");
    EXPECT_EQ(commenttext, "Lines, with \"quotes\"\nand 1,5 umlauts \xC3\xA4\n");
    EXPECT_EQ(contentof(room.file("a.txt")),
              "Lines, with \"quotes\"\r\nand 1,5 umlauts \xC3\xA4\r\n");
    EXPECT_TRUE(commentvisible);
    saveas(room.file("b"));
    for (const std::string& extension : setextensions) {
        EXPECT_NE(contentof(room.file("a") + extension), "") << extension;
        EXPECT_EQ(contentof(room.file("a") + extension), contentof(room.file("b") + extension))
            << extension;
    }
    EXPECT_TRUE(room.platform.messages.empty());
}

TEST(Modelfiles, EverySingleOfAPrescribedValueComesBack) {
    sessionroom room;
    addnode(0, 0, 0);
    std::mt19937 random(3);
    std::uniform_real_distribution<float> value(-400, 400);
    std::vector<float> before{0};
    ncon = 2000;
    for (int i = 1; i <= ncon; ++i) {
        connode(i) = 1;
        condof(i) = 1 + i % 6;
        conval(i) = before.emplace_back(value(random));
    }
    saveas(room.file("a"));
    ASSERT_TRUE(openmodel(room.file("a")));
    for (int i = 1; i <= ncon; ++i) ASSERT_EQ(conval(i), before[std::size_t(i)]) << i;
}

TEST(Modelfiles, TheTextIsTheOneOfTheFormat) {
    filledroom room("a");
    const std::string tek = contentof(room.file("a.tek"));
    EXPECT_EQ(tek.substr(0, 6), "12,4\r\n");
    EXPECT_NE(tek.find("\r\n6\r\n1,2,2\r\n9\r\n1,2,3,4,1\r\n4\r\n7,1\r\n"), tek.npos);
    EXPECT_EQ(contentof(room.file("a.gra")), "1,4,0.5,0,0,0,0,6,0,0,0,0,0\r\n");
    EXPECT_EQ(contentof(room.file("a.vpl")).substr(0, 40),
              "4\r\n1,1,90\r\n2,2,90\r\n3,3,1.570796326794895")
        << "a DZ is scaled as a rotation is, a DX and a DY are not";
    EXPECT_EQ(contentof(room.file("a.knk")), "1\r\n12,2,-0.3\r\n0\r\n");
    EXPECT_EQ(contentof(room.file("a.lco")),
              "2\r\n2\r\n\"Lcomb1\"\r\n1\r\n0\r\n\"Both\"\r\n1.35\r\n-1\r\n");
    EXPECT_EQ(contentof(room.file("a.pat")), "1\r\n1,6,2\r\n2,1,7\r\n");
}

TEST(Modelfiles, FreeSlotsDoNotReachTheFiles) {
    filledroom room;
    elems(2, 0) = 0;
    elemsel(0) = endrelease(4, 1, 5) = 1;
    elemsel(1) = 4;
    saveas(room.file("a"));
    EXPECT_EQ(elemsel(1), 3) << "selection and releases follow their element";
    EXPECT_EQ(endrelease(3, 1, 5), 1);
    EXPECT_EQ(contentof(room.file("a.tek")).substr(0, 6), "12,3\r\n");
    ASSERT_TRUE(openmodel(room.file("a")));
    EXPECT_EQ(nelems(), 3);
    EXPECT_EQ(elems(2, 0), 4);
    EXPECT_EQ(elemload(1, 0, 0), 0) << "a load on a deleted element disappears at the save";
}

TEST(Modelfiles, DofTypeFollowsElementsAndDimension) {
    const struct {
        int type;
        bool twod;
        int expected;
    } cases[] = {{1, true, 1}, {1, false, 2}, {8, true, 2}, {8, false, 3}, {12, false, 2}};
    for (const auto& c : cases) {
        sessionroom room;
        for (int n = 1; n <= 3; ++n) addnode(float(n), float(n * n), 0);
        addelement(c.type, c.type == 8 ? std::vector<int>{1, 2, 3} : std::vector<int>{1, 2});
        dim2d = c.twod;
        saveas(room.file("a"));
        EXPECT_EQ(doftype, c.expected) << c.type << c.twod;
    }
}

TEST(Modelfiles, DamagedViewsAreToldAndTheModelOpens) {
    filledroom room("a");
    const std::string tek = withoutviews(contentof(room.file("a.tek")));
    for (const char* line : {"1,2,3,0.5,0.5,0,9,NaN", "1,2,3,0.5,0.5,0,9,1E+39", "1,2,3", "x"}) {
        writefile(room.file("a.tek"), tek + line + "\r\n");
        room.platform.messages.clear();
        ASSERT_TRUE(openmodel(room.file("a"))) << line;
        EXPECT_TRUE(nelems() == 4 && viewptx(1) == 0 && viewscale(1) == 1) << line;
        EXPECT_EQ(room.platform.messages.size(), 1u) << line;
        EXPECT_TRUE(room.platform.toldpart("the views stay as in a new model")) << line;
    }
}

TEST(Modelfiles, OldLayoutsOpenWithoutAMessage) {
    filledroom room("a");
    writefile(room.file("a.mlt"),
              "2\r\n\"Old 1\"\r\n1\r\n2\r\n3\r\n4\r\n5\r\n6\r\n7\r\n8\r\n9\r\n10\r\n"
              "\"Old 2\"\r\n11\r\n12\r\n13\r\n14\r\n15\r\n16\r\n17\r\n18\r\n19\r\n20\r\n");
    writefile(room.file("a.lcd"),
              "2\r\n\"One\"\r\n0\r\n1\r\n0\r\n0\r\n0\r\n"
              "\"Two\"\r\n3\r\n-9.81\r\n1\r\n2\r\n3\r\n");
    const std::string tek = withoutviews(contentof(room.file("a.tek")));
    for (const char* extension : {".rot", ".pat", ".txt", ".gra", ".ell", ".kal"})
        fs::remove(room.file("a") + extension);
    writefile(room.file("a.tek"), tek + "1,2,3,0.5,0.5,0,0,0\r\n");
    ASSERT_TRUE(openmodel(room.file("a")));
    EXPECT_TRUE(room.platform.messages.empty());
    EXPECT_EQ(viewdist(1), 100000);
    EXPECT_EQ(viewscale(1), 1);
    EXPECT_EQ(groupname(2), "Old 2");
    EXPECT_TRUE(groups(2, 10) == 20 && groups(2, 11) == 0 && groupmat(2, 3, 4) == 0);
    EXPECT_TRUE(lcpar(2, 0) == -9.81 && lcpar(2, 4) == 1);
    EXPECT_EQ(rotpo(2), 0);
    EXPECT_TRUE(commenttext.empty());
    EXPECT_TRUE(kaltext.empty());
}

TEST(Modelfiles, SectionsOfTheFurtherFileAreKeptWordForWord) {
    filledroom room("a");
    const std::string unknown =
        "\"section\",\"later\"\r\n  what, nobody \"knows\"\r\n\r\n\"end\"\r\n";
    writefile(room.file("a.kal"), unknown + "\"section\",\"rows\"\r\n1\r\n2\r\n\"end\"\r\n");
    checkkalsection("rows", [](textin& in) {
        while (!in.atend()) in.number();
    });
    ASSERT_TRUE(openmodel(room.file("a")));
    EXPECT_EQ(kalsection("rows"), "1\n2\n");
    putkalsection("rows", "3,4");
    putkalsection("more", "5\n");
    EXPECT_THROW(putkalsection("more", "6\n\"end\"\n7\n"), runtimeerror);
    saveas(room.file("b"));
    EXPECT_EQ(
        contentof(room.file("b.kal")),
        unknown +
            "\"section\",\"rows\"\r\n3,4\r\n\"end\"\r\n\"section\",\"more\"\r\n5\r\n\"end\"\r\n");
    for (const char* const keyword : {"rows", "more", "later"}) putkalsection(keyword, "");
    saveas(room.file("b"));
    EXPECT_EQ(contentof(room.file("b.kal")), "") << "the sections of the save before";
    saveas(room.file("c"));
    EXPECT_FALSE(fs::exists(room.file("c.kal")));

    const struct {
        const char *text, *told;
    } damages[] = {
        {"1,2\r\n", "line 1: a row \"section\",\"keyword\" is expected"},
        {"\"section\",\"a\"\r\n1\r\n",
         "line 1: the section \"a\" has no end; the file is cut short"},
        {"\"section\",\"a\"\r\n\"end\"\r\n\"section\",\"rows\"\r\n1\r\nx\r\n\"end\"\r\n",
         "line 5: a number was expected, found \"x\""},
    };
    for (const auto& damage : damages) {
        room.platform.messages.clear();
        writefile(room.file("a.kal"), damage.text);
        ASSERT_TRUE(openmodel(room.file("a")));
        EXPECT_TRUE(room.platform.toldpart(room.file("a.kal") + ", " + damage.told)) << damage.told;
        EXPECT_FALSE(haskal());
    }
    checkkalsection("rows", nullptr);
}

TEST(Modelfiles, RowsOfWhatDoesNotExistAreDropped) {
    filledroom room("a");
    writefile(room.file("a.vpl"), "4\r\n0,1,5\r\n13,1,5\r\n12,2,7\r\n1,4,0\r\n");
    writefile(room.file("a.knk"), "3\r\n0,1,5\r\n2,1,8\r\n99,1,5\r\n0\r\n");
    writefile(room.file("a.ell"), "2\r\n5,1,5\r\n4,1,9\r\n0\r\n");
    ASSERT_TRUE(openmodel(room.file("a")));
    EXPECT_EQ(ncon, 2);
    EXPECT_TRUE(connode(1) == 12 && conval(1) == 7);
    EXPECT_TRUE(loadnode(1, 0) == 1 && loadval(1, 1) == 8);
    EXPECT_TRUE(elemload(1, 0, 0) == 1 && elemload(1, 1, 0) == 4);
    writefile(room.file("a.vpl"), "3\r\n0,0,0\r\n1,2,5\r\n99,7,1E60\r\n");
    writefile(room.file("a.knk"), "2\r\n0,0,0\r\n3,1,4\r\n0\r\n");
    ASSERT_TRUE(openmodel(room.file("a")));
    EXPECT_TRUE(ncon == 1 && condof(1) == 2 && loadnode(1, 0) == 1 && loadval(1, 1) == 4)
        << "whatever else the row of no node holds";
    EXPECT_TRUE(room.platform.messages.empty());
}

TEST(Modelfiles, AModelOverTheSizesIsToldAndDropped) {
    filledroom room("a");
    writefile(room.file("a.gra"), "1,4,0.5,0,0,0,0,6,0,0,0,0,0\r\n1,4,0.5,0,0,0,0,6,0,0,0,0,0\r\n");
    const struct {
        int size, value;
        const char* message;
    } cases[] = {
        {1, 11, "Error: Model to large, Increase number of nodes to 12 on "},
        {2, 3, "Error: Model to large, Increase number of elements to 4 on "},
        {4, 1, "Error: To much material groups, Increase number of groups to 2 on "},
        {5, 1, "Error: To much graphic Elements, Increase number of graphics on "},
        {3, 3, "Error: Model to large, Increase Boundary Condition per loadcase to 4 on "},
        {7, 1, "Error: Model to large, Increase number of Loadcases to 2 on "},
    };
    for (const auto& c : cases) {
        const int before = modelsize(c.size);
        modelsize(c.size) = c.value;
        EXPECT_FALSE(openmodel(room.file("a"))) << c.message;
        EXPECT_TRUE(room.platform.told(c.message + std::string("Model Size declairation form.")))
            << c.message;
        EXPECT_EQ(modelname, "");
        EXPECT_EQ(nnodes() + nelems() + ncon, 0);
        modelsize(c.size) = before;
    }
    // All of them at once, and the user agrees to larger sizes: one question, nothing is cut.
    for (const auto& c : cases) modelsize(c.size) = c.value;
    room.platform.messages.clear();
    room.platform.answerqueue = {answers::yes};
    ASSERT_TRUE(openmodel(room.file("a")));
    EXPECT_TRUE(nnodes() == 12 && ncon == 4 && nlc() == 2 && loadnode(1, 1) == 12);
    EXPECT_TRUE(ngraphics() == 2 && ngroups() == 2 && lcomb(2, 2) == -1);
    EXPECT_EQ(std::ranges::count(room.platform.messages, buttons::yesno, &messagebox::set), 1);
    EXPECT_EQ(contentof(room.file("decmem.DAT")).substr(0, 4), "15\r\n")
        << "and they stay declared";
}

// A box lets the toolkit ask for a picture, also of a model that is half read.
class drawingplatform : public recorder {
  public:
    answers show(const messagebox& box) override {
        redrawall();
        return recorder::show(box);
    }
};

TEST(Modelfiles, AModelThatIsHalfReadIsNotDrawn) {
    filledroom room("a");
    for (const int i : {1, 2}) modelsize(i) = 3;
    ASSERT_TRUE(resetmodel());
    {
        drawingplatform platform;
        platform.answerqueue = {answers::yes};
        ASSERT_TRUE(openmodel(room.file("a")));
        EXPECT_EQ(platform.messages.size(), 3u);
        EXPECT_GT(platform.views[0].count("line"), 0) << "the picture that was asked for comes";
    }
    setplatform(&room.platform);
}

// Whatever stands in the files: a message or a model, never a crash, and the model in hand
// survives a .tek that can not be read.
TEST(Modelfiles, DamageIsToldAndTheModelInHandSurvives) {
    filledroom room("good");
    saveas(room.file("bad"));
    for (int i = 1; i <= 6; ++i) modelsize(i) = 64;
    std::mt19937 random(11);
    for (const std::string& extension : setextensions) {
        const std::string path = room.file("bad") + extension;
        const std::string good = contentof(path);
        std::vector<std::string> damages = {"",
                                            std::string("\0\x01\xff\xfe garbage \x80", 14),
                                            "-5\r\n-5\r\n",
                                            "999999999999,999999999999\r\n",
                                            "1E400\r\n",
                                            "1E39,1\r\n",
                                            "nan,nan\r\n",
                                            "\"unclosed"};
        // Every byte of the short files, every few of the long one.
        const std::size_t step = 1 + good.size() / 80;
        for (std::size_t cut = 0; cut < good.size(); cut += step)
            damages.push_back(good.substr(0, cut));
        for (int i = 0; i < 60 && !good.empty(); ++i) {
            std::string text = good;
            text[random() % text.size()] = char(random() % 256);
            damages.push_back(text);
        }
        for (const std::string& damage : damages) {
            writefile(path, damage);
            openmodel(room.file("good"));
            const bool opened = openmodel(room.file("bad"));
            if (!opened && modelname != "") {
                ASSERT_EQ(modelname, room.file("good")) << extension << " " << damage;
                ASSERT_EQ(nnodes(), 12);
                ASSERT_EQ(groupname(2), "Box, \"welded\"");
            }
            ASSERT_GE(ngroups(), 1);
            ASSERT_GE(nlc(), 1);
            ASSERT_GE(ncomb(), 1);
            for (int e = 1; e <= nelems(); ++e)
                ASSERT_TRUE(egroup(e) >= 1 && egroup(e) <= ngroups());
        }
        writefile(path, good);
    }
    room.platform.messages.clear();
    writefile(room.file("bad.vpl"), "1\r\n1,1,abc\r\n");
    ASSERT_TRUE(openmodel(room.file("bad")));
    EXPECT_TRUE(room.platform.toldpart(room.file("bad.vpl") +
                                       ", line 2: a number was expected, found \"abc\""));
    EXPECT_EQ(ncon, 0);
    EXPECT_EQ(nnodes(), 12);
}

// What no reader would take is not written over what can be read.
TEST(Modelfiles, NumbersBeyondAllBoundsNeverReachTheFiles) {
    filledroom room("m");
    const std::string good = contentof(room.file("m.tek"));
    nodes(0, 3, 1) = std::numeric_limits<float>::infinity();
    lcomb(1, 1) = std::numeric_limits<float>::quiet_NaN();
    EXPECT_FALSE(savemodel());
    EXPECT_EQ(room.platform.messages.size(), 1u);
    EXPECT_EQ(contentof(room.file("m.tek")), good);
    ASSERT_TRUE(openmodel(room.file("m")));
    room.platform.messages.clear();
    for (const char* row : {"1,4,1E37", "1,3,1E308", "1,1,1E39"}) {
        writefile(room.file("m.vpl"), std::string("1\r\n") + row + "\r\n");
        ASSERT_TRUE(openmodel(room.file("m")));
        EXPECT_EQ(ncon, 0) << row;
        EXPECT_TRUE(room.platform.toldpart("m.vpl, line 2: the prescribed value")) << row;
        room.platform.messages.clear();
    }
}

TEST(Modelfiles, AMissingOrDamagedCaseFileLeavesTheLoads) {
    filledroom room;
    loadnode(2, 0) = loaddof(2, 1) = 1;
    loadnode(2, 1) = 3;
    saveas(room.file("m"));
    for (const bool damaged : {false, true}) {
        fs::remove(room.file("m.lcd"));
        if (damaged) writefile(room.file("m.lcd"), "\"first\"\r\n");
        ASSERT_TRUE(openmodel(room.file("m")));
        EXPECT_EQ(nlc(), 2);
        EXPECT_TRUE(loadnode(1, 0) == 1 && loadnode(2, 1) == 3);
        EXPECT_EQ(lcname(2), "LC 2");
        EXPECT_TRUE(lctype(2) == 0 && lcpar(2, 4) == 1);
    }
}

TEST(Modelfiles, MissingAndOldViewsTakeTheDefaults) {
    filledroom room("m");
    const std::string text = contentof(room.file("m.tek"));
    std::string old = withoutviews(text);
    writefile(room.file("m.tek"), old);
    viewvert(1) = viewgroup(1) = 2;
    viewdepth(4) = 1;
    ASSERT_TRUE(openmodel(room.file("m")));
    EXPECT_EQ(viewvert(1), float(toradians(45)));
    EXPECT_EQ(viewscale(3), 1);
    EXPECT_EQ(viewgroup(1), 0);
    EXPECT_EQ(viewdepth(4), fullviewdepth);

    for (const char* number : {"1", "2", "3", "4"})  // from before eye distance and scale
        old.append(number).append(",0,0\r\n0.5,0.25,0\r\n");
    writefile(room.file("m.tek"), old);
    ASSERT_TRUE(openmodel(room.file("m")));
    EXPECT_EQ(viewptx(4), 4);
    EXPECT_EQ(viewhor(4), 0.25f);
    EXPECT_EQ(viewdist(4), 100000);
    EXPECT_EQ(viewscale(4), 1);

    // Three whole views are as many numbers as four of the old layout.
    writefile(room.file("m.tek"), text.substr(0, text.rfind("\r\n", text.size() - 3) + 2));
    ASSERT_TRUE(openmodel(room.file("m")));
    EXPECT_EQ(viewscale(3), 0.037f);
    EXPECT_EQ(viewdist(3), 1000000);
    EXPECT_EQ(viewhor(4), 0);
}

TEST(Modelfiles, AFailedOpenBringsBackColoursViewsAndComment) {
    filledroom room;
    selcolor = 99;
    commentvisible = true;
    viewvert(2) = 0.25f;
    menupostItem(deformedshape).checked = true;
    writefile(room.file("bad.tek"), "3,0\r\n1,2,x\r\n");
    EXPECT_EQ(openfile(room.file("bad.tek")), reply::failed);
    EXPECT_EQ(nnodes(), 12);
    EXPECT_EQ(selcolor, 99);
    EXPECT_EQ(viewvert(2), 0.25f);
    EXPECT_TRUE(commentvisible);
    EXPECT_TRUE(menupostItem(deformedshape).checked) << "results of the model before stay on show";
}

TEST(Modelfiles, AFailedSaveTellsItsFilesInOneBoxAndKeepsTheOldOnes) {
    filledroom room("a");
    saveas(room.file("b"));
    const std::string old = contentof(room.file("b.mlt")), vpl = contentof(room.file("b.vpl"));
    for (const char* name : {"b.tek", "b.vpl"}) fs::permissions(room.file(name), fs::perms(0444));
    groupname(2) = "later";
    const auto save = [&](answers answer) {
        room.platform.messages.clear();
        room.platform.answerqueue = {answer};
        return savemodel();
    };
    EXPECT_FALSE(save(answers::cancel));
    ASSERT_EQ(room.platform.messages.size(), 1u);
    for (const char* part :
         {"Error occurred while trying to save model. Model Not saved, please retry.",
          "Error occurred while trying to save Constrains. Constrains Not saved, please retry.",
          "b.vpl (the file is write-protected)"})
        EXPECT_TRUE(room.platform.toldpart(part)) << part;
    EXPECT_EQ(contentof(room.file("b.mlt")), old) << "as delivered, no file of this save";
    EXPECT_FALSE(save(answers::yes));
    EXPECT_NE(contentof(room.file("b.mlt")), old) << "what could be written, as the user says";
    EXPECT_EQ(contentof(room.file("b.vpl")), vpl);
    room.platform.filequeue.push_back({true, room.file("c.tek"), 2});
    EXPECT_TRUE(save(answers::no)) << "saved under another name";
    EXPECT_EQ(modelname, room.file("c"));
    EXPECT_EQ(contentof(room.file("c.vpl")), vpl);
    fs::remove(room.file("c.txt"));
    fs::create_directory(room.file("c.txt"));
    EXPECT_TRUE(save(answers::cancel));
    EXPECT_TRUE(room.platform.messages.empty()) << "the comment fails silently";
}

// A damaged or changed file is not overwritten unasked, and is kept when it is.
TEST(Modelfiles, WhatWasNotReadIsNotOverwrittenWithoutAQuestion) {
    filledroom room("m");
    const std::string damaged = contentof(room.file("m.knk")).substr(0, 5);
    writefile(room.file("m.knk"), damaged);
    ASSERT_TRUE(openmodel(room.file("m")));
    EXPECT_NE(room.platform.title.find("incomplete, not read: m.knk"), std::string::npos);
    EXPECT_FALSE(savemodel());
    EXPECT_TRUE(room.platform.toldpart("m.knk. The old file is kept with .bak"));
    runanalysis();
    EXPECT_TRUE(room.platform.toldpart("The analysis was not started"));
    EXPECT_EQ(contentof(room.file("m.knk")), damaged);
    room.platform.answerqueue = {answers::yes};
    EXPECT_TRUE(savemodel());
    EXPECT_EQ(contentof(room.file("m.knk.bak")), damaged);
    EXPECT_EQ(room.platform.title, "Kalvane © 4.1: " + room.file("m"));
    room.platform.messages.clear();
    EXPECT_TRUE(savemodel());
    EXPECT_TRUE(room.platform.messages.empty());
    writefile(room.file("m.lcd"), "written by another program");
    EXPECT_FALSE(savemodel());
    EXPECT_TRUE(
        room.platform.toldpart("another program since the model was read or saved: m.lcd."));
    EXPECT_EQ(contentof(room.file("m.lcd")), "written by another program");
}

// The nodes of an element that has no type are no elements.
TEST(Modelfiles, AnElementOfTypeZeroMayNotShiftTheNumbersBehindIt) {
    sessionroom room;
    const std::string nodelines = "2,2\r\n0,0,0\r\n1,0,0\r\n";
    writefile(room.file("free.tek"), nodelines + "0\r\n1\r\n6\r\n1,2,1\r\n");
    EXPECT_TRUE(openmodel(room.file("free")));
    EXPECT_TRUE(elems(1, 0) == 0 && elems(2, 2) == 2) << "a free slot keeps its number";
    writefile(room.file("bad.tek"), nodelines + "0\r\n1,2,1\r\n6\r\n1,2,1\r\n");
    EXPECT_FALSE(openmodel(room.file("bad")));
    EXPECT_TRUE(room.platform.toldpart("bad.tek, line 5: an element of type 0 has no nodes"));
}

TEST(Modelfiles, WithoutAGroupFileTheElementsKeepTheirNumbers) {
    filledroom room;
    egroup(3) = 5;
    saveas(room.file("m"));
    fs::remove(room.file("m.mlt"));
    room.platform.messages.clear();
    ASSERT_TRUE(openmodel(room.file("m")));
    EXPECT_TRUE(room.platform.messages.empty()) << "a missing side file is a normal case";
    EXPECT_TRUE(egroup(3) == 5 && egroup(1) == 2 && ngroups() == 5);
    EXPECT_EQ(groupname(5), "GR 5");
    EXPECT_EQ(groups(5, 1), 210000);
}
