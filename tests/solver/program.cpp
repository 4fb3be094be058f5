// SPDX-License-Identifier: GPL-3.0-or-later
// The program from files to files: control file, result grammar, ways out.
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <map>

#include "core/checksum.h"
#include "core/textfile.h"
#include "solver/processes/ranks.h"
#include "solver/program.h"
#include "solver/readmodel.h"
#include "solver/results/sumfile.h"
#include "tests/solver/verify.h"

namespace fs = std::filesystem;

static void writetext(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

// Bar and beam, two cases.
static build twobars() {
    build b;
    const int beam = b.bar(1000, 1, {2, 2, 2}, 0.5), bar = b.bar(1000, 1, {0, 0, 0}, 0.5);
    b.node(0, 0), b.node(10, 0), b.node(20, 0);
    b.element(typebeam, beam, {1, 2});
    b.element(typetruss, bar, {2, 3});
    b.fix(1, clamped), b.fix(3, {1, 2, 3});
    b.load(1, 2, 2, 3);
    b.addcase();
    b.m.cases[2].name = "pull \"along\", x";
    b.load(2, 2, 1, 5);
    return b;
}

namespace {
// A folder with a model, run by its control file.
struct room : tempfolder {
    const std::string base = path + "/two bars";
    std::string said;

    explicit room(const build& b) { b.write(base); }
    int run(const char* kinds) {
        writetext(path + "/EEM.CTR", "\"" + base + "\"\r\n" + kinds + "\r\n");
        return runfeiflu("--appdir " + path, said);
    }
    std::vector<std::string> tokens(const char* extension) const {
        return tokensof(base + extension);
    }
    bool has(const std::string& name) const { return fs::exists(path + "/" + name); }
};
}  // namespace

static const char* const results3d = "0,1,3,1,1,1,1,1";

TEST(Program, ProcessesOfTwoVersionsLeaveNoControlFile) {
    struct two : ranks {
        void checkversions(const std::string&) override { refuse("two versions"); }
    } static others;
    room in(twobars());
    writetext(in.path + "/EEM.CTR", "\"" + in.base + "\"\r\n0,1,3,1,1,1,1,1\r\n");
    const auto started = [&] {
        setranks(others);
        std::exit(runprogram({"--appdir", in.path}));
    };
    EXPECT_EXIT(started(), testing::ExitedWithCode(1), "two versions");
    EXPECT_FALSE(in.has("EEM.CTR"));
}

TEST(Program, WritesEveryFileInItsGrammarAndRemovesTheControlFile) {
    room in(twobars());
    ASSERT_EQ(in.run(results3d), 0) << in.said;
    EXPECT_FALSE(in.has("EEM.CTR"));
    EXPECT_TRUE(in.has("feiflu.ini"));
    expectwords(in.said, {"assemble 100\n"});

    const auto rvp = in.tokens(".rvp");
    ASSERT_EQ(rvp.size(), 2u + 2 * (3 * 6 + 1));
    EXPECT_EQ(rvp[0] + rvp[1] + rvp[20], "33\"LC1\"");
    EXPECT_EQ(rvp[39], "\"pullalongx\"");  // blanks, quotes and commas go
    EXPECT_NEAR(std::stod(rvp[2 + 6 + 1]), 3 * 1000.0 / (3 * 1000 * 2), 1e-12);

    const auto krt = in.tokens(".KRT");
    ASSERT_GE(krt.size(), 2u + 4 * 7 + 1);
    for (int n = 0; n < 4; ++n)
        EXPECT_EQ(krt[std::size_t(2 + 7 * n)], n < 3 ? std::to_string(n + 1) : "0");
    EXPECT_NEAR(std::stod(krt[2 + 3 * 7 + 2]), -3, 1e-9) << "the last row sums the reactions";

    const auto les = in.tokens(".LES");
    ASSERT_EQ(les.size(), 2u * (2 * 30 + 1));
    EXPECT_EQ(les[60] + les[121], "ENDEND");
    EXPECT_EQ(les[0] + les[1] + les[30], "152");
    EXPECT_NEAR(std::stod(les[61 + 4]), 2.5, 1e-12);  // case 2: both carry half
    EXPECT_NEAR(std::stod(les[61 + 34]), -2.5, 1e-12);
    for (const char* extension : {".NSA", ".NLA", ".NSR", ".NSL"})
        EXPECT_EQ(in.tokens(extension), (std::vector<std::string>{"END", "END"}));
    EXPECT_EQ(in.tokens(".DAT"), (std::vector<std::string>{"3", "6", "2"}));
    expectwords(readwhole(in.base + ".log"),
                {"Nodes 3", "Results are complete", "difference", "residual"});
}

// Modes alone: what the Analysis Options leave on when eigenmodes are asked for.
TEST(Program, WritesModesAndMassesInTheirGrammar) {
    room in(twobars());
    writetext(in / "feiflu.ini", "modes = 4\r\n");
    ASSERT_EQ(in.run("1,1,3,1,1,0,0,0"), 0) << in.said;
    const auto eig = in.tokens(".EIG");
    ASSERT_EQ(eig.size(), 2u + 4 * (1 + 3 * 6));
    EXPECT_EQ(eig[0] + eig[1], "34");
    EXPECT_LE(std::stod(eig[2]), std::stod(eig[2 + 19]));
    double largest = 0;
    for (std::size_t n = 0; n < 3; ++n) {
        vec3 shape;
        for (std::size_t k = 0; k < 3; ++k) shape[Eigen::Index(k)] = std::stod(eig[3 + 6 * n + k]);
        largest = std::max(largest, shape.norm());
    }
    EXPECT_NEAR(largest, 1, 1e-12);
    const auto ems = in.tokens(".EMS");
    ASSERT_EQ(ems.size(), 16u);
    EXPECT_EQ(ems[0] + ems[8], "12");
    EXPECT_NEAR(std::stod(ems[1]), 5, 1e-12) << "mass";
    EXPECT_NEAR(std::stod(ems[2]), 5, 1e-12) << "centre";
    EXPECT_EQ(in.tokens(".DAT")[2], "2");
    expectwords(readwhole(in.base + ".log"), {"frequency, Hz", "Sturm count", "effective mass",
                                              "Mass of the elements 10", "centre"});
}

// Static results and modes stand side by side; a run, a refused one too, removes those of its kind,
// and the sums tell of which model each kind is.
TEST(Program, EachKindOfRunRemovesItsOwnResults) {
    const char* const modes = "1,1,3,1,1,0,0,0";
    const char* const statics[] = {".rvp", ".KRT", ".LES", ".MEM", ".NSA", ".NLA", ".NSR", ".NSL"};
    room in(twobars());
    writetext(in / "feiflu.ini", "modes = 2\r\n");
    ASSERT_EQ(in.run(results3d), 0) << in.said;
    const std::string first = modelchecksum(in.base);
    build other = twobars();
    other.load(1, 2, 3, 7);
    other.write(in.base);
    const std::string second = modelchecksum(in.base);
    EXPECT_NE(first, second);
    ASSERT_EQ(in.run(modes), 0) << in.said;
    const auto sum = in.tokens(".sum");
    EXPECT_EQ(sum[1] + sum[4], "\"" + first + "\"\"" + second + "\"");
    EXPECT_EQ(sum[2] + sum[5], "22");
    EXPECT_EQ(std::ranges::count(sum, "\"case\""), 2);
    EXPECT_EQ(std::ranges::count(sum, "\"mode\""), 2);
    EXPECT_TRUE(in.has("two bars.EIG") && in.has("two bars.EMS"));
    const std::string text = readwhole(in.base + ".sum");
    ASSERT_EQ(in.run(modes), 0) << in.said;
    EXPECT_EQ(readwhole(in.base + ".sum"), text) << "the same run, the same file";

    writetext(in.base + ".tek", "no model");
    EXPECT_EQ(in.run(modes), 1);
    EXPECT_FALSE(in.has("two bars.EIG"));
    for (const char* extension : statics) EXPECT_TRUE(fs::exists(in.base + extension)) << extension;
    EXPECT_EQ(in.tokens(".sum")[4], "\"\"");
    EXPECT_EQ(in.run(results3d), 1);
    for (const char* extension : statics)
        EXPECT_FALSE(fs::exists(in.base + extension)) << extension;
    EXPECT_FALSE(in.has("two bars.sum") || in.has("two bars.EMS"));
}

// Loads by kind, reactions and warnings of a case.
TEST(Program, TheSumsOfACaseAreThoseOfItsLoads) {
    build b;
    b.inmetres();
    const int shell = b.plate(1000, 0.3, 0.1, 2);
    b.mesh(typeshell4, shell, 2, 1, [](double r, double s) { return vec3(4 * r, 0, 3 + 2 * s); });
    b.fix({1, 4}, clamped);
    b.load(1, 3, 1, 5);  // at 4, 0, 3
    b.press(1, 2, 3, 0.5);
    b.addcase(caseaccz, {-10, 0, 0, 0, 1});
    b.press(2, 1, 3, 1);
    b.node(9, 9, 9);
    tempfolder in;
    b.write(in / "m");
    writetext(in / "feiflu.ini", "length = 1\r\n");
    std::string said;
    ASSERT_EQ(runfeiflu("--appdir " + in.path + " --model " + in.path + "/m", said), 0) << said;
    textin sum(in / "m.sum");
    const auto row = [&](const char* word, int values) {
        EXPECT_EQ(sum.quoted(), word);
        std::vector<double> list;
        for (int i = 0; i < values; ++i) list.push_back(sum.number());
        return list;
    };
    const auto expectload = [&](const char* kind, const vec6& wanted) {
        EXPECT_EQ(sum.quoted(), "load");
        const std::vector<double> found = row(kind, 6);
        for (int k = 0; k < 6; ++k)
            EXPECT_NEAR(found[std::size_t(k)], wanted[k], 1e-9) << kind << " " << k;
    };
    const double mass = 8 * 0.1 * 2;
    EXPECT_EQ(sum.quoted(), "static");
    sum.quoted(), sum.number(), sum.quoted(), sum.quoted(), sum.number();
    for (int lc = 1; lc <= 2; ++lc) {
        EXPECT_EQ(row("case", 1)[0], lc);
        sum.quoted();
        if (lc == 1) {
            expectload("nodal", vec6{{5, 0, 0, 0, 15, 0}});
            expectload("element", vec6{{0, -2, 0, 8, 0, -6}});
        } else {
            expectload("element", vec6{{0, -4, 0, 16, 0, -4}});
            expectload("acceleration", vec6{{0, 0, -10 * mass, 0, 20 * mass, 0}});
        }
        const auto applied = row("applied", 6), back = row("reactions", 6);
        const auto left = row("difference", 6);
        for (std::size_t k = 0; k < 6; ++k) {
            EXPECT_NEAR(applied[k], -back[k], 1e-8);
            EXPECT_NEAR(left[k], 0, 1e-8);
        }
        EXPECT_LT(row("residual", 1)[0], 1e-12);
        EXPECT_GT(row("translation", 2)[0], 0);
        EXPECT_GT(row("rotation", 2)[1], 0);
        EXPECT_EQ(row("held", 1)[0], 6) << "the node without elements";
        EXPECT_EQ(row("warnings", 1)[0], 0);
    }
    EXPECT_TRUE(sum.atend());
}

// Far from the origin moments are large, which takes nothing from the forces.
TEST(Program, SmallForcesAreInTheSumsHoweverLargeTheMoments) {
    build b;
    b.chain(typebeam, b.bar(2e5, 100, {1e4, 1e4, 2e4}), {1e7, 0, 0}, {1e7 + 1000, 0, 0}, 1);
    b.fix(1, clamped);
    b.load(1, 2, 2, 0.01), b.press(1, 1, 3, 1);
    const std::string sums = staticsums(b.m, b.s, b.solve(), b.log);
    EXPECT_NE(sums.find("\"load\",\"nodal\",0,0.01,0,"), std::string::npos) << sums;
}

TEST(Program, ANodeRowHasTheValuesOfItsAnalysisKind) {
    const struct {
        int type;
        const char* flags;
        const char* kind;
        std::size_t values;
    } rows[] = {{typetruss, "", "0", 3},
                {typetruss, " --2d", "1", 2},
                {typebeam, " --2d", "2", 3},
                {typebeam, "", "3", 6}};
    for (const auto& row : rows) {
        build b;
        b.single(row.type, b.bar(1000, 1, {2, 2, 2}), {{0, 0, 0}, {3, 0, 0}});
        b.fix(1, clamped);
        b.load(1, 2, 1, 1);
        tempfolder in;
        b.write(in / "m");
        std::string said;
        ASSERT_EQ(runfeiflu("--appdir " + in.path + " --model " + in.path + "/m" + row.flags, said),
                  0);
        const auto rvp = tokensof(in / "m.rvp");
        EXPECT_EQ(rvp[1], row.kind);
        EXPECT_EQ(rvp.size(), 2 + 2 * row.values + 1);
    }
}

TEST(Program, EveryWayOutRemovesTheControlFileAndOldResults) {
    const struct {
        const char *file, *text;  // of the damaged file; null: it is missing
        const char* words;
    } rows[] = {
        {"two bars.tek", nullptr, "There is no model"},
        {"two bars.mlt", nullptr, "groups"},
        {"two bars.tek", "2,1\r\n0,0,zero\r\n", "two bars.tek, line 2"},
        {"two bars.tek", "2,1\r\n0,0,0\r\n1,0", "ends"},
        {"two bars.tek", "1,1\r\n0,0,0\r\n77\r\n", "element type 77"},
        {"two bars.tek", "1,1\r\n0,0,0\r\n1\r\n1,9,1\r\n", "node 9"},
        {"two bars.tek", "2,1\r\n0,0,0\r\n1,0,0\r\n1\r\n1,2,9\r\n", "Element 1 is in group 9"},
        {"two bars.tek", "900000000,1\r\n0,0,0\r\n", "too short"},
        {"feiflu.ini", "# units\ncd = many\n", "feiflu.ini, line 2"},
        {"two bars.mlt", "1\r\n\"g\"\r\n1e-320\r\n", "two bars.mlt, line 3: the number"},
        {"two bars.mlt", "1\r\n\"g\"\r\n1\r\n0\r\n0\r\n1\r\n0\r\n1e29\r\n",
         "two bars.mlt, line 8: the angle"},
        {"two bars.rot", "700\r\n0\r\n", "two bars.rot, line 1: the angle"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.words);
        room in(twobars());
        if (row.text)
            writetext(in / row.file, row.text);
        else
            fs::remove(in / row.file);
        writetext(in.base + ".rvp", "old");
        EXPECT_EQ(in.run(results3d), 1);
        expectwords(in.said, {row.words});
        EXPECT_FALSE(in.has("EEM.CTR"));
        EXPECT_FALSE(in.has("two bars.rvp"));
        expectwords(readwhole(in.base + ".log"), {"Refused: "});
    }
}

// Names that the system can not look up, a disk that gives no more room, a reader of the progress
// who has gone.
TEST(Program, WhatTheMachineRefusesIsToldOrPassedOver) {
    const std::string program = fs::read_symlink("/proc/self/exe").parent_path() / "feiflu";
    const std::string longname(300, 'x');
    const auto after = [&](const std::string& set, const std::string& arguments,
                           const std::string& then) {
        return "sh -c '" + set + program + " " + arguments + " 2>&1" + then + "'";
    };
    const auto said = [](const std::string& command) {
        std::string text;
        std::FILE* const pipe = popen(command.c_str(), "r");
        for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) text += char(c);
        pclose(pipe);
        return text;
    };
    {
        const tempfolder in;
        for (const std::string& arguments :
             {"--model " + in.path + "/" + longname, "--appdir " + in.path + "/" + longname})
            expectwords(said(after("", arguments, "")),
                        {"can not be looked up (File name too long"});
    }
    for (const bool narrow : {true, false}) {
        room in(twobars());
        writetext(in.path + "/EEM.CTR", "\"" + in.base + "\"\r\n" + results3d + "\r\n");
        const std::string told = said(narrow ? after("ulimit -f 1; ", "--appdir " + in.path, "")
                                             : after("", "--appdir " + in.path, " | true"));
        if (narrow) expectwords(told, {"was not written"});
        // The shell does not wait for who writes into its pipe.
        for (int i = 0; i < 1000 && in.has("EEM.CTR"); ++i) usleep(10000);
        EXPECT_FALSE(in.has("EEM.CTR")) << narrow;
        EXPECT_EQ(in.has("two bars.rvp"), !narrow);
        for (const auto& file : fs::directory_iterator(in.path))
            EXPECT_FALSE(file.path().string().ends_with(".new~")) << file.path();
    }
}

// The order of these equations takes a good part of a second, by a library that would take the
// signal for its own; the results, too, and half a set of them could be taken for a whole one.
TEST(Program, ASignalToStopEndsItWithoutResults) {
    build b;
    const build::grid at = b.mesh(typeshell4, b.plate(2e5, 0.3, 1), 200, 200,
                                  [](double r, double s) { return vec3(1000 * r, 1000 * s, 0); });
    b.fix(at.left(), clamped);
    for (int lc = 1; lc <= 8; ++lc) b.load(lc > 1 ? b.addcase() : 1, at.number(200, lc), 3, 1);
    for (const bool order : {true, false}) {
        SCOPED_TRACE(order);
        room in(b);
        writetext(in / "EEM.CTR", "\"" + in.base + "\"\r\n" + results3d + "\r\n");
        const std::string program = fs::read_symlink("/proc/self/exe").parent_path() / "feiflu";
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        const pid_t child = fork();
        if (child == 0) {
            dup2(ends[1], STDOUT_FILENO), dup2(ends[1], STDERR_FILENO);
            execl(program.c_str(), "feiflu", "--appdir", in.path.c_str(), nullptr);
            _exit(127);
        }
        close(ends[1]);
        std::string said;
        char c = 0;
        const char* const stage = order ? "order 0\n" : "write 0\n";
        while (said.find(stage) == said.npos && read(ends[0], &c, 1) == 1) said += c;
        if (order) usleep(30000);
        while (!order && !in.has("two bars.rvp") && !in.has("two bars.log")) usleep(1000);
        kill(child, SIGTERM);
        while (read(ends[0], &c, 1) == 1) said += c;
        close(ends[0]);
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 1) << status;
        EXPECT_EQ(said.find("assemble") == said.npos, order) << said;
        expectwords(said, {"stopped before"});
        for (const char* name : {"EEM.CTR", "EEM.PID", "two bars.rvp", "two bars.sum"})
            EXPECT_FALSE(in.has(name)) << name;
    }
}

// Killed after its first block, it goes on from there and comes to the same bytes; from what is cut
// short, damaged or of another model it takes nothing.
TEST(Program, AKilledRunGoesOnFromItsCheckpoint) {
    build b;
    const build::grid at = b.mesh(typeshell4, b.plate(2e5, 0.3, 1), 8, 8,
                                  [](double r, double s) { return vec3(r, s, 0.1 * r * r); });
    b.fix(at.left(), clamped);
    b.fix(at.number(8, 0), {3}, 0.01);
    const int cases = 12;
    for (int lc = 1; lc <= cases; ++lc) {
        if (lc > 1) b.addcase();
        b.load(lc, at.number(8, lc % 8), 3, 1 + lc);
    }
    tempfolder in;
    const std::string base = in / "m", kept = base + ".ckp";
    b.write(base);
    writetext(in / "feiflu.ini", "checkpoint = 2\n");
    const std::string program = fs::read_symlink("/proc/self/exe").parent_path() / "feiflu";
    const std::string arguments = "--appdir " + in.path + " --model " + base;
    const auto run = [&] {
        std::string said, bytes;
        EXPECT_EQ(runfeiflu(arguments, said), 0) << said;
        for (const char* extension : {".rvp", ".KRT", ".NSA", ".NSL", ".sum"})
            bytes += readwhole(base + extension);
        EXPECT_FALSE(fs::exists(kept));
        const std::string log = readwhole(base + ".log"), words = "Cases 1 to ";
        const std::size_t place = log.find(words);
        const int taken = place == log.npos ? 0 : std::stoi(log.substr(place + words.size()));
        return std::pair(bytes, taken);
    };
    const auto [whole, none] = run();
    EXPECT_EQ(none, 0);
    const auto size = [&] { return fs::exists(kept) ? fs::file_size(kept) : 0; };
    // A busy machine may wake us when all is done.
    for (int tries = 0; tries < 10 && !fs::exists(kept); ++tries) {
        const pid_t child = fork();
        if (child == 0) {
            if (std::freopen("/dev/null", "w", stdout) == nullptr) _exit(127);
            execl(program.c_str(), "feiflu", "--appdir", in.path.c_str(), "--model", base.c_str(),
                  nullptr);
            _exit(127);
        }
        std::uintmax_t first = 0;  // with one block; it is whole where more follows
        while (waitpid(child, nullptr, WNOHANG) == 0 && (first == 0 || size() < first + 100)) {
            if (first == 0 && size() > 1000) first = size();
            usleep(100);
        }
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
    }
    ASSERT_TRUE(fs::exists(kept));
    ASSERT_FALSE(fs::exists(base + ".rvp"));
    const std::string good = readwhole(kept);
    const auto restart = [&](const std::string& content) {
        writetext(kept, content);
        const auto [bytes, taken] = run();
        EXPECT_TRUE(bytes == whole);
        return taken;
    };
    const int taken = restart(good);
    EXPECT_GE(taken, 2);
    EXPECT_LE(taken, cases);  // a loaded machine may kill it late
    std::string damaged = good;
    damaged[good.size() - 100] ^= 1;
    EXPECT_EQ(restart(damaged), restart(good.substr(0, good.size() - 1)));
    EXPECT_EQ(restart(good.substr(0, 200)), 0);
    std::string other = good;
    ++other[20];  // in the name of the analysis
    EXPECT_EQ(restart(other), 0);
    writetext(kept, "no checkpoint");
    std::string said;
    EXPECT_EQ(runfeiflu(arguments, said), 0);
    EXPECT_EQ(readwhole(kept), "no checkpoint");
    expectwords(readwhole(base + ".log"), {"Warning: No checkpoint is kept in "});
}

TEST(Program, DamagedControlFileIsRefusedAndRemoved) {
    tempfolder in;
    std::string said;
    for (const char* text : {"", "model\r\n", "\"m\"\r\n0,1", "\"m\"\r\n0,1,9,1,1,1,1,1\r\n",
                             "\"\"\r\n0,1,3,1,1,1,1,1\r\n", "\"m\"\r\n0,x,3,1,1,1,1,1\r\n"}) {
        writetext(in / "EEM.CTR", text);
        EXPECT_EQ(runfeiflu("--appdir " + in.path, said), 1) << text;
        EXPECT_FALSE(fs::exists(in / "EEM.CTR")) << text;
        EXPECT_FALSE(said.empty());
    }
    EXPECT_EQ(runfeiflu("--appdir " + in.path, said), 1);
    expectwords(said, {"no control file"});
}

TEST(Program, CommandLineTellsItself) {
    const struct {
        const char* arguments;
        int code;
        const char* words;
    } rows[] = {{"--help", 0, "--model BASE"},
                {"--version", 0, "feiflu "},
                {"--modle x", 2, "--modle"},
                {"--model", 2, "--model"}};
    for (const auto& row : rows) {
        std::string said;
        EXPECT_EQ(runfeiflu(row.arguments, said), row.code) << row.arguments;
        expectwords(said, {row.words});
    }
}

// --- readers ------------------------------------------------------------------------------------

TEST(Readers, TheSetComesBackAsItWasWritten) {
    build b = twobars();
    b.m.elements[2].turn = 0.25;
    b.fix(2, {3}, 10);  // a prescribed DZ, which the file holds scaled
    b.fix(2, {5}, 0.5);
    b.press(2, 1, 2, -4);
    b.m.groups[1].spring(2, 4) = 7;
    room first(b);
    b.m = readmodel(first.base, b.log);
    EXPECT_NEAR(b.m.constraints[9].value, 10, 1e-12);
    EXPECT_TRUE(b.log.warnings().empty());
    const room second(b);
    for (const char* extension : {".tek", ".rot", ".vpl", ".mlt", ".lcd", ".knk", ".ell"})
        EXPECT_EQ(readwhole(second.base + extension), readwhole(first.base + extension));
}

TEST(Readers, OldLayoutsMissingFilesAndRowsOfNothing) {
    const room in(twobars());
    const std::string& base = in.base;
    std::string old = "1\r\n\"steel\"\r\n";
    for (int k = 1; k <= 10; ++k) old += std::to_string(k) + "\r\n";
    writetext(base + ".mlt", old);
    writetext(base + ".tek", "2,1\r\n0,0,0 1,0,0\r\n1\r\n1,2,1");
    writetext(base + ".lcd",
              "2\r\n\"a\"\r\n0\r\n1\r\n2\r\n3\r\n4\r\n\"b\"\r\n7\r\n1\r\n2\r\n3\r\n4\r\n");
    writetext(base + ".knk", "3\r\n0,1,5\r\n2,1,5\r\n3,1,5\r\n0\r\n");
    writetext(base + ".ell", "2\r\n1,2,3\r\n2,2,3\r\n0\r\n");
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
    ASSERT_EQ(log.warnings().size(), 4u);
    expectwords(log.warnings()[0], {"There is no", ".rot"});
}

// A case with four good parameters and a spoilt fifth one is not of the old layout.
TEST(Readers, SpoiltCasesAreNoOldOnes) {
    for (const char* fifth : {"nan", "abc", "1e308", "5\r\n6"}) {
        const room in(twobars());
        writetext(in.base + ".lcd",
                  "1\r\n\"a\"\r\n7\r\n1\r\n2\r\n3\r\n4\r\n" + std::string(fifth) + "\r\n");
        runlog log;
        log.quiet();
        if (fifth[0] == '5') {
            readmodel(in.base, log);
            ASSERT_FALSE(log.warnings().empty());
            expectwords(log.warnings()[0], {".lcd", "goes on behind its last row"});
            continue;
        }
        std::string said;
        guarded([&] { readmodel(in.base, log); },
                [&](const runtimeerror& fault) { said = fault.what; });
        expectwords(said, {".lcd"});
    }
}

// Without a file of the set the model is another one, be it that the rest can be analysed.
TEST(Readers, FilesThatAreMissingAreToldAndAnEmptyListOfCasesIsNot) {
    for (const char* extension : {".rot", ".vpl", ".lcd", ".knk", ".ell"}) {
        const room in(twobars());
        fs::remove(in.base + extension);
        runlog log;
        const model m = readmodel(in.base, log);
        EXPECT_EQ(m.ncases(), 2) << extension;
        ASSERT_EQ(log.warnings().size(), 1u) << extension;
        expectwords(log.warnings()[0], {"There is no", extension});
    }
    const room in(twobars());
    for (const char* extension : {".knk", ".ell"}) writetext(in.base + extension, "");
    writetext(in.base + ".lcd", "0\r\n");
    runlog log;
    EXPECT_EQ(readmodel(in.base, log).ncases(), 1);
    EXPECT_TRUE(log.warnings().empty());
}

// The files are read side by side; what is told is as if they had been read one behind the other.
TEST(Readers, FilesAreToldInTheirOrder) {
    const std::string far(1 << 20, ' ');  // the fault comes late
    const room in(twobars());
    const auto refusal = [&](runlog& log) {
        std::string said;
        guarded([&] { readmodel(in.base, log); },
                [&](const runtimeerror& fault) { said = fault.what; });
        return said;
    };
    const auto spoil = [&](const char* extension, const std::string& text) {
        writetext(in.base + extension, text);
    };
    const std::string rot = readwhole(in.base + ".rot");
    spoil(".ell", "x\r\n");
    spoil(".rot", rot + "0\r\n");
    spoil(".vpl", "1\r\n9,1,0\r\n");
    runlog log;
    expectwords(refusal(log), {".ell, line 1", "found \"x\""});
    ASSERT_EQ(log.warnings().size(), 2u);
    expectwords(log.warnings()[0], {".rot goes on behind its last row"});
    expectwords(log.warnings()[1], {".vpl: 1 row(s) name a node"});
    spoil(".rot", far + "y");
    runlog shorter;
    expectwords(refusal(shorter), {".rot, line 1", "found \"y\""});
    EXPECT_TRUE(shorter.warnings().empty());
    for (const std::string& text : {far + "x", "2,1\r\n0,0,0\r\n1,0,0\r\n1\r\n1,2," + far + "x"}) {
        runlog none;
        spoil(".tek", text);
        expectwords(refusal(none), {".tek, line", "found \"x\""});
        EXPECT_TRUE(none.warnings().empty());
    }
}

// What a count leaves out changes the model, though every row can be read.
TEST(Program, RowsThatNoCountCoversAreTold) {
    const build b = twobars();
    const struct {
        const char *extension, *text, *words;  // null: the last line twice
    } rows[] = {{".vpl", nullptr, "goes on behind its last row"},
                {".rot", nullptr, "goes on behind its last row"},
                {".mlt", nullptr, "goes on behind its last row"},
                {".lcd", nullptr, "goes on behind its last row"},
                {".knk", "1\r\n2,1,5\r\n", "ends before the loads of case 2; the model has 2"},
                {".ell", "", "ends before the loads of case 1"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.extension);
        tempfolder in;
        b.write(in / "m");
        const std::string file = in / "m" + row.extension;
        std::string text = readwhole(file);
        const std::size_t last = text.rfind('\n', text.size() - 2) + 1;
        writetext(file, row.text ? row.text : text + text.substr(last));
        runlog log;
        readmodel(in / "m", log);
        ASSERT_EQ(log.warnings().size(), 1u);
        const std::string name = "m" + std::string(row.extension);
        expectwords(log.warnings()[0], {name.c_str(), row.words});
    }
}

// Views behind the elements are no rows left out, an element is.
TEST(Program, ElementsThatTheFirstLineDoesNotCountAreTold) {
    const std::string bars = "3,1\n0,0,0\n1,0,0\n2,0,0\n1\n1,2,1\n", more = "1\n2,3,1\n";
    for (const bool counted : {true, false}) {
        std::string text = bars + (counted ? "" : more);
        for (int view = 1; view <= 4; ++view) text += "0,0,0,0.3,-2,0.5,100,1\n";
        runlog log;
        model m;
        textin in(text, "m.tek");
        readtek(in, m, log);
        EXPECT_EQ(log.warnings().empty(), counted);
    }
}

// The frequencies of a bar tell which units were taken.
TEST(Program, UnitsOfTheModelGoBeforeThoseOfTheSettings) {
    build b = twobars();
    tempfolder in;
    b.write(in / "m");
    const auto omega = [&](const std::string& ini, const std::string& kal) {
        writetext(in / "feiflu.ini", ini);
        writetext(in / "m.kal", kal);
        std::string said;
        EXPECT_EQ(runfeiflu("--appdir " + in.path + " --eigen --model " + in.path + "/m", said), 0)
            << said;
        textin modes(in / "m.EIG");
        modes.number(), modes.number();
        return modes.number();
    };
    const std::string other = "\"section\",\"legend\"\r\n\"even\"\r\n\"end\"\r\n",
                      units =
                          other + "\"section\",\"units\"\r\n\"m kN t\",1,1000,1000\r\n\"end\"\r\n",
                      metres = "length = 1\nforce = 1000\nmass = 1000\n";
    const double said = omega("", units), set = omega(metres, other), plain = omega("", other);
    EXPECT_EQ(said, set);
    EXPECT_NEAR(plain, 1000 * said, 1e-6 * plain) << "1/mm in place of 1/m";
    const std::string sum = modelchecksum(in / "m");
    writetext(in / "m.kal", units);
    EXPECT_NE(modelchecksum(in / "m"), sum) << "the results are of another model";
    EXPECT_EQ(omega(metres, "\"section\",\"units\"\r\n\"free\"\r\n\"end\"\r\n"), set);
    EXPECT_EQ(omega("", "\xEF\xBB\xBF\n  " + units), said) << "as the workbench reads it";
    const std::string row = "\"section\",\"units\"\n\"m kN t\",1,";
    for (const auto& [kal, words] : std::map<std::string, const char*>{
             {row + "0,1000\n\"end\"\n", "a unit's size is a number from 1E-15"},
             {row + "1e-320,1000\n\"end\"\n", "a unit's size is a number from 1E-15"},
             {row + "1000,10", "has no end; the file is cut short"},
             {"units m\n", "m.kal, line 1: a row \"section\",\"keyword\" is expected"}}) {
        writetext(in / "m.kal", kal);
        std::string told;
        EXPECT_EQ(runfeiflu("--appdir " + in.path + " --model " + in.path + "/m", told), 1);
        expectwords(told, {words});
    }
}
