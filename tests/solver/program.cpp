// SPDX-License-Identifier: GPL-3.0-or-later
// The program from files to files: control file, result grammar, ways out.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>

#include "core/textfile.h"
#include "solver/readmodel.h"
#include "solver/refuse.h"
#include "tests/solver/build.h"

namespace fs = std::filesystem;

static void writetext(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

// Bar and beam, two cases, in the plane or in space.
static build twobars(bool twod) {
    build b;
    b.m.twod = twod;
    const int bar = b.group({{fieldmodulus, 1000}, {fieldthickness, 1}});
    const int beam = b.group(
        {{fieldmodulus, 1000}, {fieldthickness, 1}, {fieldixx, 2}, {fieldiyy, 2}, {fieldizz, 2}});
    b.node(0, 0), b.node(10, 0), b.node(20, 0);
    b.element(typebeam, beam, {1, 2});
    b.element(typetruss, bar, {2, 3});
    b.fix(1, {1, 2, 3, 4, 5, 6});
    b.fix(3, {1, 2, 3});
    b.load(1, 2, 2, 3);
    b.addcase();
    b.m.cases[2].name = "pull \"along\", x";
    b.load(2, 2, 1, 5);
    return b;
}

static std::string control(const std::string& base, int doftype) {
    return "\"" + base + "\"\r\n0,1," + std::to_string(doftype) + ",1,1,1,1,1\r\n";
}

TEST(Program, WritesEveryFileInItsGrammarAndRemovesTheControlFile) {
    tempfolder folder;
    const build b = twobars(false);
    const std::string base = folder / "two bars";
    b.write(base);
    writetext(folder / "EEM.CTR", control(base, 3));
    writetext(base + ".EIG", "stale");
    std::string said;
    ASSERT_EQ(runfeiflu("--appdir " + folder.path, said), 0) << said;
    EXPECT_FALSE(fs::exists(folder / "EEM.CTR"));
    EXPECT_FALSE(fs::exists(base + ".EIG"));
    EXPECT_TRUE(fs::exists(folder / "feiflu.ini"));
    EXPECT_NE(said.find("assemble 100\n"), said.npos) << said;

    const auto rvp = tokensof(base + ".rvp");
    ASSERT_EQ(rvp.size(), 2u + 2 * (3 * 6 + 1));
    EXPECT_EQ(rvp[0], "3");
    EXPECT_EQ(rvp[1], "3");
    EXPECT_EQ(rvp[20], "\"LC1\"");
    EXPECT_EQ(rvp[39], "\"pullalongx\"");  // blanks, quotes and commas go
    EXPECT_NEAR(std::stod(rvp[2 + 6 + 1]), 3 * 1000.0 / (3 * 1000 * 2), 1e-12);

    const auto krt = tokensof(base + ".KRT");
    ASSERT_GE(krt.size(), 2u + 4 * 7 + 1);
    for (int n = 0; n < 4; ++n)
        EXPECT_EQ(krt[std::size_t(2 + 7 * n)], n < 3 ? std::to_string(n + 1) : "0");
    EXPECT_NEAR(std::stod(krt[2 + 3 * 7 + 2]), -3, 1e-9) << "the last row sums the reactions";

    const auto les = tokensof(base + ".LES");
    ASSERT_EQ(les.size(), 2u * (2 * 30 + 1));
    EXPECT_EQ(les[60], "END");
    EXPECT_EQ(les[121], "END");
    EXPECT_EQ(les[0], "1");
    EXPECT_EQ(les[1], "5");
    EXPECT_EQ(les[30], "2");
    EXPECT_NEAR(std::stod(les[61 + 4]), 2.5, 1e-12);  // case 2: both carry half
    EXPECT_NEAR(std::stod(les[61 + 34]), -2.5, 1e-12);
    for (const char* extension : {".NSA", ".NLA", ".NSR", ".NSL"})
        EXPECT_EQ(tokensof(base + extension), (std::vector<std::string>{"END", "END"}));
    EXPECT_EQ(tokensof(base + ".DAT"), (std::vector<std::string>{"3", "6", "2"}));
    const std::string log = readwhole(base + ".log");
    for (const char* words : {"Nodes 3", "Results are complete", "difference", "residual"})
        EXPECT_NE(log.find(words), log.npos) << log;
}

// Modes alone: what the Analysis Options leave on when eigenmodes are asked for.
TEST(Program, WritesModesAndMassesInTheirGrammar) {
    tempfolder folder;
    build b = twobars(false);
    for (int g = 1; g <= 2; ++g) b.m.groups[std::size_t(g)].field[fielddensity] = 0.5;
    const std::string base = folder / "m";
    b.write(base);
    writetext(base + ".rvp", "stale");
    writetext(folder / "EEM.CTR", "\"" + base + "\"\r\n1,1,3,1,1,0,0,0\r\n");
    writetext(folder / "feiflu.ini", "modes = 4\r\n");
    std::string said;
    ASSERT_EQ(runfeiflu("--appdir " + folder.path, said), 0) << said;
    for (const char* extension : {".rvp", ".KRT", ".LES", ".NSA", ".NLA", ".NSR", ".NSL"})
        EXPECT_FALSE(fs::exists(base + extension)) << extension;
    const auto eig = tokensof(base + ".EIG");
    ASSERT_EQ(eig.size(), 2u + 4 * (1 + 3 * 6));
    EXPECT_EQ(eig[0], "3");
    EXPECT_EQ(eig[1], "4");
    EXPECT_LE(std::stod(eig[2]), std::stod(eig[2 + 19]));
    double largest = 0;
    for (std::size_t n = 0; n < 3; ++n) {
        double square = 0;
        for (std::size_t k = 0; k < 3; ++k) square += std::pow(std::stod(eig[3 + 6 * n + k]), 2);
        largest = std::max(largest, std::sqrt(square));
    }
    EXPECT_NEAR(largest, 1, 1e-12);
    const auto ems = tokensof(base + ".EMS");
    ASSERT_EQ(ems.size(), 16u);
    EXPECT_EQ(ems[0], "1");
    EXPECT_EQ(ems[8], "2");
    EXPECT_NEAR(std::stod(ems[9]), 5, 1e-12);
    EXPECT_NEAR(std::stod(ems[10]), 5, 1e-12);
    EXPECT_EQ(tokensof(base + ".DAT")[2], "2");
    const std::string log = readwhole(base + ".log");
    for (const char* words :
         {"frequency, Hz", "Sturm count", "effective mass", "Mass of the elements 10", "centre"})
        EXPECT_NE(log.find(words), log.npos) << log;
}

TEST(Program, ANodeRowHasTheValuesOfItsAnalysisKind) {
    const struct {
        int type;
        bool twod;
        const char* kind;
        std::size_t values;
    } rows[] = {{typetruss, false, "0", 3},
                {typetruss, true, "1", 2},
                {typebeam, true, "2", 3},
                {typebeam, false, "3", 6}};
    for (const auto& row : rows) {
        tempfolder folder;
        build b;
        const int g = b.group({{fieldmodulus, 1000},
                               {fieldthickness, 1},
                               {fieldixx, 2},
                               {fieldiyy, 2},
                               {fieldizz, 2}});
        b.node(0, 0), b.node(3, 0);
        b.element(row.type, g, {1, 2});
        b.fix(1, {1, 2, 3, 4, 5, 6});
        b.load(1, 2, 1, 1);
        b.write(folder / "m");
        std::string said;
        const std::string flags = row.twod ? " --2d" : "";
        ASSERT_EQ(
            runfeiflu("--appdir " + folder.path + " --model " + folder.path + "/m" + flags, said),
            0);
        const auto rvp = tokensof(folder / "m.rvp");
        EXPECT_EQ(rvp[1], row.kind);
        EXPECT_EQ(rvp.size(), 2 + 2 * row.values + 1);
    }
}

TEST(Program, EveryWayOutRemovesTheControlFileAndOldResults) {
    const struct {
        const char* name;
        std::function<void(const std::string&)> damage;  // of the base path
        const char* words;
    } rows[] = {
        {"no model", [](const std::string& base) { fs::remove(base + ".tek"); },
         "There is no model"},
        {"no groups", [](const std::string& base) { fs::remove(base + ".mlt"); }, "groups"},
        {"word for a number",
         [](const std::string& base) { writetext(base + ".tek", "2,1\r\n0,0,zero\r\n"); },
         "m.tek, line 2"},
        {"cut off",
         [](const std::string& base) { writetext(base + ".tek", "2,1\r\n0,0,0\r\n1,0"); }, "ends"},
        {"unknown type",
         [](const std::string& base) { writetext(base + ".tek", "1,1\r\n0,0,0\r\n77\r\n"); },
         "element type 77"},
        {"missing node",
         [](const std::string& base) {
             writetext(base + ".tek", "1,1\r\n0,0,0\r\n1\r\n1,9,1\r\n");
         },
         "node 9"},
        {"missing group",
         [](const std::string& base) {
             writetext(base + ".tek", "2,1\r\n0,0,0\r\n1,0,0\r\n1\r\n1,2,9\r\n");
         },
         "Element 1 is in group 9"},
        {"count beyond the file",
         [](const std::string& base) { writetext(base + ".tek", "900000000,1\r\n0,0,0\r\n"); },
         "too short"},
        {"bad setting",
         [](const std::string& base) {
             writetext(fs::path(base).parent_path() / "feiflu.ini", "# units\ncd = many\n");
         },
         "feiflu.ini, line 2"},
    };
    for (const auto& row : rows) {
        tempfolder folder;
        const std::string base = folder / "m";
        twobars(false).write(base);
        row.damage(base);
        writetext(folder / "EEM.CTR", control(base, 3));
        writetext(base + ".rvp", "old");
        std::string said;
        EXPECT_EQ(runfeiflu("--appdir " + folder.path, said), 1) << row.name;
        EXPECT_NE(said.find(row.words), said.npos) << row.name << ": " << said;
        EXPECT_FALSE(fs::exists(folder / "EEM.CTR")) << row.name;
        EXPECT_FALSE(fs::exists(base + ".rvp")) << row.name;
        const std::string log = readwhole(base + ".log");
        EXPECT_NE(log.find("Refused: "), log.npos) << row.name;
    }
}

TEST(Program, DamagedControlFileIsRefusedAndRemoved) {
    for (const char* text : {"", "model\r\n", "\"m\"\r\n0,1", "\"m\"\r\n0,1,9,1,1,1,1,1\r\n",
                             "\"\"\r\n0,1,3,1,1,1,1,1\r\n", "\"m\"\r\n0,x,3,1,1,1,1,1\r\n"}) {
        tempfolder folder;
        writetext(folder / "EEM.CTR", text);
        std::string said;
        EXPECT_EQ(runfeiflu("--appdir " + folder.path, said), 1) << text;
        EXPECT_FALSE(fs::exists(folder / "EEM.CTR")) << text;
        EXPECT_FALSE(said.empty());
    }
    tempfolder folder;
    std::string said;
    EXPECT_EQ(runfeiflu("--appdir " + folder.path, said), 1);
    EXPECT_NE(said.find("no control file"), said.npos);
}

TEST(Program, CommandLineTellsItself) {
    std::string said;
    EXPECT_EQ(runfeiflu("--help", said), 0);
    EXPECT_NE(said.find("--model BASE"), said.npos);
    EXPECT_EQ(runfeiflu("--version", said), 0);
    EXPECT_EQ(said.rfind("feiflu ", 0), 0u);
    EXPECT_EQ(runfeiflu("--modle x", said), 1);
    EXPECT_NE(said.find("--modle"), said.npos);
    EXPECT_EQ(runfeiflu("--model", said), 1);
}

// --- readers ------------------------------------------------------------------------------------

TEST(Readers, TheSetComesBackAsItWasWritten) {
    tempfolder folder;
    build b = twobars(false);
    b.m.elements[2].turn = 0.25;
    b.fix(2, {3}, 10);  // a prescribed DZ, which the file holds scaled
    b.fix(2, {5}, 0.5);
    b.press(2, 1, 2, -4);
    b.m.groups[1].spring(2, 4) = 7;
    b.write(folder / "m");
    runlog log;
    log.quiet();
    const model m = readmodel(folder / "m", log);
    ASSERT_EQ(m.nnodes(), 3);
    EXPECT_EQ(m.nodes[3], b.m.nodes[3]);
    EXPECT_EQ(m.elements[2].turn, 0.25);
    EXPECT_EQ(m.elements[2].node[1], 3);
    EXPECT_EQ(m.groups[1].spring(2, 4), 7);
    EXPECT_EQ(m.groups[2].field[fieldizz], 2);
    ASSERT_EQ(m.constraints.size(), 11u);
    EXPECT_NEAR(m.constraints[9].value, 10, 1e-12);
    EXPECT_EQ(m.constraints[10].value, 0.5);
    EXPECT_EQ(m.cases[2].nodal.at(0).value, 5);
    EXPECT_EQ(m.cases[2].element.at(0).direction, 2);
    EXPECT_TRUE(log.warnings().empty());
}

TEST(Readers, OldLayoutsMissingFilesAndRowsOfNothing) {
    tempfolder folder;
    const std::string base = folder / "m";
    twobars(false).write(base);
    std::string old = "1\r\n\"steel\"\r\n";
    for (int k = 1; k <= 10; ++k) old += std::to_string(k) + "\r\n";
    writetext(base + ".mlt", old);
    writetext(base + ".tek", "2,1\r\n0,0,0 1,0,0\r\n1\r\n1,2,1");
    writetext(base + ".lcd",
              "2\r\n\"a\"\r\n0\r\n1\r\n2\r\n3\r\n4\r\n\"b\"\r\n7\r\n1\r\n2\r\n3\r\n4\r\n");
    writetext(base + ".knk", "3\r\n0,1,5\r\n2,1,5\r\n3,1,5\r\n");
    writetext(base + ".ell", "2\r\n1,2,3\r\n2,2,3\r\n");
    writetext(base + ".vpl", "2\r\n1,1,0\r\n9,1,0\r\n");
    fs::remove(base + ".rot");
    runlog log;
    log.quiet();
    const model m = readmodel(base, log);
    EXPECT_EQ(m.groups[1].field[fieldwyy], 10);
    EXPECT_EQ(m.groups[1].field[fieldizz], 0);
    ASSERT_EQ(m.ncases(), 2);
    EXPECT_EQ(m.cases[2].type, casewave);
    EXPECT_EQ(m.cases[2].par[3], 4);
    EXPECT_EQ(m.cases[2].par[4], 1);
    ASSERT_EQ(m.cases[1].nodal.size(), 1u);
    EXPECT_EQ(m.cases[1].nodal[0].node, 2);
    EXPECT_EQ(m.cases[1].element.size(), 1u);
    EXPECT_EQ(m.constraints.size(), 1u);
    EXPECT_EQ(log.warnings().size(), 3u);
}
