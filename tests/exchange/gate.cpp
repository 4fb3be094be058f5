// SPDX-License-Identifier: GPL-3.0-or-later
// What enters the model through the gate, and what does not.
#include "exchange/gate.h"

#include <filesystem>

#include "core/journal.h"
#include "core/modelitems.h"
#include "core/newmodel.h"
#include "core/views.h"
#include "edit/move.h"
#include "exchange/orient.h"
#include "files/filop.h"
#include "files/saving.h"
#include "tests/exchange/samples.h"
#include "tests/files/filledmodel.h"
#include "view/autoscale.h"

// A file with something of everything: node numbers 30, 10, 20 of which none is 1.
static void readtriangle(const std::string&, imported& found) {
    found.addnode({2, 0, 0});
    found.addnode({0, 0, 0});
    found.addnode({1, 5, 0});
    found.nodenumbers = {30, 10, 20};
    const int g = found.groupof("Skin");
    found.group(g).fields[fieldthickness] = 0.5;
    found.group(g).colour = 0x332211;
    found.addelement(typeshell3, {1, 2, 3, 0}, g);
    found.addelement(typebeam, {1, 2, 0, 0}, found.groupof("Edge"));
    found.releases.push_back({2, 1, 5});
    found.constraints = {{2, 1, 0}, {2, 6, 3}, {2, 1, 7}};
    found.cases.push_back({"Live", caseapplied, {}, false, {{3, 2, 4}, {3, 2, 5}}, {{1, 3, -2}}});
    found.report.warn("A corner is sharp", 4);
    found.report.about(reportitems::nodes, 1);
}

static reply readit(purposes purpose, const std::string& path) {
    return readforeign(path, purpose, "Test", readtriangle);
}

TEST(Gate, AnEmptyModelTakesTheOrderOfTheFilesNumbers) {
    exchangeroom room;
    automergenodes = false;
    ASSERT_EQ(readit(purposes::open, room.file("a.ply")), reply::done);
    EXPECT_EQ(nodeat(0, 0, 0), 1);
    EXPECT_EQ(nodeat(1, 5, 0), 2);
    EXPECT_EQ(nodeat(2, 0, 0), 3);
    EXPECT_EQ(nodename(3), "30");
    EXPECT_EQ(elems(1, 1), 3);
    EXPECT_EQ(ngroups(), 2);
    EXPECT_EQ(groupname(1), "Skin");
    EXPECT_EQ(groups(1, fieldthickness), 0.5);
    EXPECT_EQ(groups(1, fieldmodulus), 210000) << "what the file does not tell is a new group's";
    EXPECT_EQ(groupcolor(1), 0x332211);
    EXPECT_EQ(endrelease(2, 1, 5), 1);
    EXPECT_EQ(ncon, 2);
    EXPECT_EQ(conval(1), 7) << "the last of two rows for one freedom";
    EXPECT_EQ(lcname(1), "Live");
    EXPECT_EQ(loadnode(1, 0), 1);
    EXPECT_EQ(loadval(1, 1), 9);
    EXPECT_EQ(elemload(1, 1, 2), -2);
    EXPECT_EQ(room.platform.dialogs, std::vector<std::string>{"importreport"});
    const reportline* const line = reported(reportkinds::warning, "A corner is sharp (line 4)");
    ASSERT_NE(line, nullptr);
    EXPECT_EQ(selectreported(std::size_t(line - lastreport().lines().data())), 1);
    EXPECT_EQ(nodesel(1), 3);
    resetmodel();
    EXPECT_EQ(checkreferences(), std::vector<std::string>{}) << "a report of a model that went";
}

// A strip of three nodes at a thousandth, beside a double of its last node.
static void readfinestrip(const std::string&, imported& found) {
    for (const double x : {0.0, 2e-4, 4e-4, 4e-4 + 1e-8}) found.addnode({x, 0, 0});
    found.nodenumbers = {1, 2, 3, 4};
    found.addelement(typebeam, {1, 2, 0, 0});
    found.addelement(typebeam, {2, 3, 0, 0});
    found.addelement(typebeam, {4, 1, 0, 0});
}

TEST(Gate, TheMergeToleranceClosesNoEdgeOfAMesh) {
    exchangeroom room;
    ASSERT_TRUE(automergenodes);
    ASSERT_EQ(readforeign(room.file("a.inp"), purposes::open, "Test", readfinestrip), reply::done);
    EXPECT_EQ(nnodes(), 3);
    EXPECT_EQ(nelems(), 3);
    EXPECT_EQ(mergetol, 1e-3);
    EXPECT_NE(reported(reportkinds::warning, "The shortest edge, 0.0002"), nullptr)
        << lastreport().text();
}

// Far from the origin coordinates step wider than the tolerance; that is told of near nodes alone.
TEST(Gate, AToleranceBelowTheStepIsToldWhereNodesAreNear) {
    for (const double gap : {0.01, 5.0}) {
        exchangeroom room;
        const auto read = [&](const std::string&, imported& found) {
            for (const double x : {0.0, 5.0, 5 + gap, 20.0}) found.addnode({60000 + x, 0, 0});
            found.addelement(typebeam, {1, 2, 0, 0});
            found.addelement(typebeam, {3, 4, 0, 0});
        };
        ASSERT_EQ(readforeign(room.file("a.ply"), purposes::open, "Test", read), reply::done);
        const reportline* const line = reported(reportkinds::warning, "the step of coordinates");
        ASSERT_EQ(line != nullptr, gap < 1) << lastreport().text();
        if (line != nullptr) {
            EXPECT_EQ(line->numbers, std::vector<int>{3});
        }
    }
}

TEST(Gate, AnImportStandsBehindTheModelAndOneStepTakesItAway) {
    filledroom room("m");
    {
        const step s("Import");
        ASSERT_EQ(readit(purposes::import, room.file("a.ply")), reply::done);
        ASSERT_EQ(readit(purposes::import, room.file("a.ply")), reply::done);
    }
    EXPECT_EQ(nnodes(), 18);
    EXPECT_EQ(nodes(0, 13, 0), 2) << "in a model with nodes the file's order stays";
    EXPECT_EQ(ngroups(), 4) << "the second time the groups are found by name";
    EXPECT_EQ(egroup(nelems()), egroup(nelems() - 2));
    EXPECT_EQ(ncon, 8);
    EXPECT_EQ(connode(5), 14);
    const int lc = nlc();
    EXPECT_EQ(lcname(lc), "Live");
    EXPECT_EQ(loadnode(lc, 0), 2);
    ASSERT_TRUE(stepback());
    saveas(room.file("b"));
    for (const char* extension : {".tek", ".mlt", ".vpl", ".knk", ".lcd", ".lco", ".ell"})
        EXPECT_EQ(contentof(room.file("b") + extension), contentof(room.file("m") + extension))
            << extension;
}

TEST(Gate, WhatDoesNotFitLeavesTheModelAsItWas) {
    const struct {
        const char* what;
        void (*damage)(imported& found);
        const char* told;
    } cases[] = {
        {"nodes", [](imported& f) { f.nodes.resize(80); }, "Increase number of nodes to "},
        {"rows",
         [](imported& f) {
             f.constraints.resize(6000, {1, 1, 0});
         },
         "Boundary Condition"},
        {"a coordinate", [](imported& f) { f.nodes[0][1] = 1e39; }, "a coordinate of 1E+39"},
        {"nothing", [](imported& f) { f.nodes.clear(), f.elements.clear(); }, "holds nothing"},
    };
    for (const auto& c : cases)
        for (const purposes purpose : {purposes::open, purposes::import}) {
            filledroom room("m");
            modelsize(sizenodes) = 60;
            openmodel(room.file("m"));
            const auto read = [&](const std::string& path, imported& found) {
                readtriangle(path, found);
                c.damage(found);
            };
            room.platform.answerqueue = {answers::no};
            EXPECT_EQ(readforeign("a.ply", purpose, "Test", read), reply::failed) << c.what;
            EXPECT_TRUE(room.platform.toldpart(c.told)) << c.what;
            EXPECT_EQ(modelname, room.file("m"));
            EXPECT_EQ(modelsize(sizenodes), 60);
            saveas(room.file("b"));
            EXPECT_EQ(contentof(room.file("b.tek")), contentof(room.file("m.tek"))) << c.what;
            EXPECT_EQ(contentof(room.file("b.mlt")), contentof(room.file("m.mlt"))) << c.what;
        }
    filledroom room("m");
    room.platform.answerqueue = {answers::yes};
    modelsize(sizenodes) = 14;
    openmodel(room.file("m"));
    EXPECT_EQ(readit(purposes::import, "a.ply"), reply::done) << "the sizes grow when asked";
    EXPECT_EQ(nnodes(), 15);
}

TEST(Gate, AnOpenedFileIsSavedOnlyUnderANameThatIsGiven) {
    exchangeroom room;
    writefile(room.file("part.ply"), contentof(samplepath("tri_quad.ply")));
    ASSERT_EQ(room.open(room.file("part.ply")), reply::done);
    EXPECT_EQ(modelname, room.file("part"));
    const double scale = viewscale(1);
    fit(1);
    EXPECT_NEAR(viewscale(1), scale, 1e-3 * scale)
        << "it fills the view: a press of fit adds nothing";
    EXPECT_EQ(room.platform.status.find("Merging"), std::string::npos) << room.platform.status;
    EXPECT_FALSE(isunsaved());
    EXPECT_FALSE(savemodel()) << "the dialog is left by Cancel";
    EXPECT_FALSE(std::filesystem::exists(room.file("part.tek")));
    EXPECT_EQ(room.platform.fileboxes.back().path, room.file("part.tek"));
    EXPECT_EQ(askandopen(pathofrecent(recentfiles().size() - 1)), reply::done);
    room.platform.filequeue.push_back({true, room.file("part.tek"), 2});
    EXPECT_TRUE(savemodel());
    EXPECT_TRUE(std::filesystem::exists(room.file("part.tek")));
    EXPECT_TRUE(savemodel()) << "now it has its name";
    const std::string filter = room.platform.fileboxes.back().filter;
    EXPECT_TRUE(filter.starts_with("All Files (*.*)|*.*|Kalvane model (*.tek)|*.tek")) << filter;
}

// Directions of sections: the groups are divided by angle, the first keeps the name.
TEST(Gate, SectionsTurnedDifferentlyGetGroupsOfTheirOwn) {
    exchangeroom room;
    automergeelems = false;  // the elements lie on each other
    const auto read = [](const std::string&, imported& found) {
        found.addnode({0, 0, 0});
        found.addnode({4, 0, 0});
        found.addnode({0, 0, 4});
        const int g = found.groupof("B");
        for (int i = 0; i < 3; ++i) found.addelement(typebeam, {1, 2, 0, 0}, g);
        found.addelement(typebeam, {1, 3, 0, 0}, g);
        found.orientations = {{1, 2, {9, 1, 0}},    // y is where level axis 2 is
                              {2, 2, {0, 0, 1}},    // a quarter turn
                              {3, 3, {0, 0, 1}},    // the same as the first
                              {4, 2, {-1, 0, 0}}};  // upright: level axis 2 is y, 3 is -x
    };
    ASSERT_EQ(readforeign("a.ply", purposes::open, "Test", read), reply::done);
    ASSERT_EQ(ngroups(), 2);
    EXPECT_EQ(groups(1, fieldrotation), 0);
    EXPECT_EQ(groups(2, fieldrotation), 90);
    EXPECT_EQ(egroup(1), egroup(3));
    EXPECT_EQ(egroup(2), 2);
    EXPECT_EQ(egroup(4), 2);
    EXPECT_EQ(groupname(2), "B 90 deg");
}

TEST(Importreport, StaysBoundedAndCountsEveryLine) {
    importreport report;
    report.file = "drawing.dxf";
    report.format = "Drawing";
    for (int i = 0; i < 10000; ++i) report.error("fault " + std::to_string(i), i + 1);
    for (int i = 0; i < 10000; ++i) report.skipped("TEXT", 7 + i);
    EXPECT_LT(report.lines().size(), 600u);
    EXPECT_EQ(report.count(reportkinds::error), 10000);
    EXPECT_NE(report.text().find("TEXT: 10000 (first in line 7)"), std::string::npos);
    exchangeroom room;
    report.file = room.file("drawing.dxf");
    EXPECT_EQ(writereport(report), room.file("drawing.import.txt"));
    EXPECT_NE(contentof(room.file("drawing.import.txt")).find("\r\n  fault 0 (line 1)\r\n"),
              std::string::npos);
}
