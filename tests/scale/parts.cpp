// SPDX-License-Identifier: GPL-3.0-or-later
// What each of several processes holds, how their numbers meet, and that the first writes the files
// of one.
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "solver/dofs/deal.h"
#include "solver/equations/solve.h"
#include "solver/mpi/mpiranks.h"
#include "solver/program.h"
#include "solver/results/sharedrows.h"
#include "tests/scale/ofall.h"
#include "tests/solver/everything.h"

namespace {
struct trialjob : mpiranks {
    // Of this job, the same in all processes.
    const std::string room = textoffirst(std::filesystem::temp_directory_path().string() +
                                         "/feiflu-parts-" + std::to_string(getpid()) + "/");
};
}  // namespace

static trialjob& job() {
    static trialjob all;
    return all;
}

// Process r holds r..r+3 and an item of its own far off.
TEST(Parts, NumbersMeetAtTheirItems) {
    const int me = job().me(), count = job().count();
    setranks(job());
    std::vector<int> items = {me, me + 1, me + 2, me + 3, 1000 + me};
    const sharing shared(items, {1, 0, 0, 0, 1});
    std::vector<double> sums, least;
    for (const int item : items) {
        sums.insert(sums.end(), {1.0, double(item)});
        least.push_back(item == me ? -1 : me);
    }
    shared.sum(sums.data(), 2);
    shared.least(least.data());
    workalone();
    for (std::size_t i = 0; i < items.size(); ++i) {
        const int item = items[i], low = std::max(0, item - 3), high = std::min(item, count - 1);
        const double holders = i == 4 ? 1 : high - low + 1;
        EXPECT_EQ(sums[2 * i], holders);
        EXPECT_EQ(sums[2 * i + 1], holders * item);
        EXPECT_EQ(least[i], i == 4 ? me : item < count ? -1 : low);
        EXPECT_EQ(shared.placeof(item), int(i));
    }
    EXPECT_EQ(shared.placeof(999), -1);
}

TEST(Parts, ModelAndVectorsAreSharedOut) {
    build b;
    const int edge = 40;
    const build::grid at = b.mesh(typeshell4, b.plate(2.1e5, 0.3, 5), edge, edge,
                                  [](double r, double s) { return vec3(r, s, 0); });
    b.fix(at.left(), clamped);
    b.node(5, 5, 5);  // nobody has an element there
    model part = b.m;
    runlog log;
    log.quiet();
    setranks(job());
    keepstretch(part);
    dealmodel(part);
    const equations q = makeequations(part, b.s, 3, log);
    double counted[2] = {};  // nodes, unknowns
    for (int n = 0; n < part.nnodes(); ++n) counted[0] += q.dofs.nodes->counts(std::size_t(n));
    for (int u = 0; u < q.dofs.unknowns; ++u) counted[1] += q.dofs.freedoms->counts(std::size_t(u));
    job().sum(counted, 2);
    const double share = 1.5 * edge * edge / job().count() + 4 * edge;
    EXPECT_LT(part.nnodes(), share);
    EXPECT_LT(part.nelems(), share);
    EXPECT_LT(q.stiffness.size(), 6 * share);
    EXPECT_EQ(part.allnodes(), b.m.nnodes());
    EXPECT_EQ(counted[0], b.m.nnodes());
    EXPECT_EQ(counted[1], 6 * edge * (edge + 1));
    for (int n = 1; n <= part.nnodes(); ++n)
        EXPECT_EQ(part.nodes[std::size_t(n)], b.m.nodes[std::size_t(part.nameofnode(n))]);
    workalone();
}

// Items dealt out in pieces of 1 to 97, over more numbers than are merged at a time, with gaps.
TEST(Parts, RowsOfAllComeInTheirOrder) {
    const std::string path = job().room + "rows";
    if (job().first()) std::filesystem::create_directories(job().room);
    const int all = 3 * 4096 + 5, me = job().me();
    std::vector<int> own, every;
    for (int number = 1, piece = 0; number <= all; ++piece)
        for (const int end = number + 1 + piece * 31 % 97; number < end && number <= all; ++number)
            if (number % 1000 != 0) {
                every.push_back(number);
                if (piece % job().count() == me) own.push_back(number);
            }
    const auto writeto = [&](const std::string& name, const std::vector<int>& items) {
        resultfile rows(name + "1"), lengths(name + "2");
        writeshared(
            std::array<textout*, 2>{rows.get(), lengths.get()}, int(items.size()), all, 64,
            [&](int i) { return items[std::size_t(i)]; },
            [&](int i, std::array<rowtext, 2>& text) {
                const int number = items[std::size_t(i)];
                text[0].put(number);
                text[0].endline();
                text[1].put(std::string(std::size_t(number % 300), 'x'));
                text[1].endline();
            });
        rows.commit(), lengths.commit();
    };
    setranks(job());
    writeto(path + "all", own);
    workalone();
    if (!job().first()) return;
    writeto(path + "one", every);
    for (const char* file : {"1", "2"}) {
        EXPECT_EQ(readwhole(path + "all" + file), readwhole(path + "one" + file));
        for (const char* name : {"all", "one"}) std::filesystem::remove(path + name + file);
    }
}

// --- files --------------------------------------------------------------------------------------

// Words equal, numbers near each other by the largest of their column; returns the first
// difference.
static std::string differenceof(const std::string& one, const std::string& other) {
    std::ifstream a(one), b(other);
    std::string left, right;
    std::vector<double> largest;
    for (const double tolerance : {0.0, 1e-8}) {  // the columns first
        a.clear(), b.clear(), a.seekg(0), b.seekg(0);
        for (int row = 1; std::getline(a, left); ++row) {
            if (!std::getline(b, right)) return "the rows end at " + std::to_string(row);
            std::istringstream l(left), r(right);
            std::string x, y;
            for (std::size_t k = 0; std::getline(l, x, ','); ++k) {
                if (!std::getline(r, y, ',')) return "row " + std::to_string(row) + " is short";
                char *endx = nullptr, *endy = nullptr;
                const double u = std::strtod(x.c_str(), &endx), v = std::strtod(y.c_str(), &endy);
                const bool numbers = endx != x.c_str() && endy != y.c_str();
                if (!numbers && x != y) return "row " + std::to_string(row) + ": " + x + ", " + y;
                if (largest.size() <= k) largest.resize(k + 1, 0);
                if (tolerance > 0 && numbers && std::fabs(u - v) > tolerance * largest[k])
                    return "row " + std::to_string(row) + ": " + left + " is not " + right;
                largest[k] = std::max(largest[k], numbers ? std::fabs(u) : 0);
            }
        }
        if (std::getline(b, right)) return "more rows";
    }
    return "";
}

// From the files of a model in room/NAME to the results there, by the first process alone or all.
static int run(const build& b, const std::string& name, const char* engine, bool alone) {
    if (job().first()) {
        std::filesystem::create_directories(job().room + name);
        std::ofstream(job().room + name + "/feiflu.ini")
            << "engine = " << engine << "\ncheckpoint = 1\nlength = 1\n";
        b.write(job().room + name + "/model");
    }
    job().anyfault("");  // until the files are there
    if (!alone) setranks(job());
    const int code =
        alone && !job().first()
            ? 0
            : runprogram({"--model", job().room + name + "/model", "--appdir", job().room + name});
    workalone();
    return code;
}

// Lines, plates, springs, a mass, rigid arms across the parts, two cases in blocks of one.
TEST(Parts, FilesAreThoseOfOneProcess) {
    build b = everything(1, 4, false);
    b.addcase();
    b.load(2, 20, 3, 5);
    EXPECT_EQ(run(b, "one", "cholmod", true), 0);
    EXPECT_EQ(run(b, "all", "mumps", false), 0);
    if (!job().first()) return;
    for (const char* extension :
         {".rvp", ".KRT", ".LES", ".MEM", ".NSR", ".NSL", ".NSA", ".NLA", ".EMS", ".DAT"}) {
        SCOPED_TRACE(extension);
        EXPECT_EQ(differenceof(job().room + "one/model" + extension,
                               job().room + "all/model" + extension),
                  "");
    }
    EXPECT_FALSE(std::filesystem::exists(job().room + "all/model.ckp"));
    std::filesystem::remove_all(job().room);
}

// Warnings and outcome of a run.
static std::string toldof(const std::string& name) {
    std::ifstream log(job().room + name + "/model.log");
    std::string words, last;
    for (std::string line; std::getline(log, line); last = line)
        if (line.starts_with("Warning")) words += line + "\n";
    words += last;
    for (std::size_t at = 0; (at = words.find(job().room + name)) != words.npos;)
        words.erase(at, (job().room + name).size());
    return words;
}

// What is wrong at one place or at two far apart, where no process has both.
TEST(Parts, FaultyFilesAreToldAlike) {
    const int edge = 12;
    const auto plate = [&] {
        build b;
        const build::grid at = b.mesh(typeshell4, b.plate(2.1e5, 0.3, 5, 1), edge, edge,
                                      [](double r, double s) { return vec3(r, s, 0); });
        b.fix(at.left(), clamped);
        b.load(1, at.number(edge, 3), 3, 1);
        return b;
    };
    const int nodes = (edge + 1) * (edge + 1), elements = edge * edge;
    const std::pair<const char*, std::function<void(build&)>> faults[] = {
        {"elements in no group",
         [&](build& b) { b.m.elements[9].group = b.m.elements.back().group = 7; }},
        {"a node that is not there", [&](build& b) { b.m.elements[100].node[2] = nodes + 1; }},
        {"loads on nothing",
         [&](build& b) {
             b.load(1, nodes + 5, 1, 1), b.load(1, 0, 1, 1);
             b.press(1, elements + 1, 3, 1), b.press(1, 3, 3, 1), b.press(1, elements, 3, 1);
         }},
        {"no area twice",
         [&](build& b) {
             for (const std::size_t e : {140, 20})
                 b.m.elements[e].node[1] = b.m.elements[e].node[0];
         }},
        {"two values twice",
         [&](build& b) { b.fix(nodes, {3}), b.fix(nodes, {3}, 1), b.fix(1, {2}, 1); }},
        {"a twisted body",
         [&](build& b) {
             b.element(typerigid, 1, {1, nodes}), b.element(typerigid, 1, {nodes, nodes / 2});
             b.fix(nodes, {1}, 1), b.fix(nodes / 2, {2}, -1), b.fix(nodes, {2}, 3);
             b.fix(nodes / 2, {3}, 7);
         }},
        {"a mechanism", [&](build& b) { b.m.constraints.resize(3); }},
        {"a free node loaded", [&](build& b) { b.load(1, b.node(5, 5), 1, 1); }},
    };
    for (const auto& [name, fault] : faults) {
        SCOPED_TRACE(name);
        build b = plate();
        fault(b);
        run(b, "one", "cholmod", true);
        run(b, "all", "mumps", false);
        if (!job().first()) continue;
        EXPECT_TRUE(toldof("one").find("Warning") == 0 || toldof("one").find("Refused") == 0);
        EXPECT_EQ(toldof("all"), toldof("one"));
    }
    if (job().first()) std::filesystem::remove_all(job().room);
}

// Hosts that see different files: the others get paths of their own. The last run is sound again.
TEST(Parts, WhatOneCannotReadAllRefuse) {
    const std::string model = job().room + "one/model", log = model + ".log";
    const std::string ini = "engine = mumps\nlength = 1\n";
    if (job().first()) {
        build b = everything(1, 2, false);
        for (const char* name : {"one", "bad", "other", "longer"}) {
            std::filesystem::create_directories(job().room + name);
            b.write(job().room + name + "/model");
            if (name == std::string("one")) b.load(1, 1, 1, 5);
            if (name == std::string("other")) b.node(1, 2, 3);
        }
        std::ofstream(job().room + "one/feiflu.ini") << ini;
        std::ofstream(job().room + "other/feiflu.ini") << ini << "modes = 3\n";
        std::ofstream(job().room + "bad/model.knk") << "x";
    }
    job().anyfault("");  // until the files are there
    const struct {
        std::vector<std::string> words;  // of the others
        const char* refusal;             // "": none is logged, the results stand
    } cases[] = {
        {{"--model", job().room + "bad/model", "--appdir", job().room + "one"},
         "a number was expected"},
        {{"--model", job().room + "other/model", "--appdir", job().room + "one"},
         "model is not the same on"},
        {{"--model", job().room + "longer/model", "--appdir", job().room + "one"},
         "model.tek is not the same"},
        {{"--model", model, "--appdir", job().room + "other"}, "feiflu.ini is not the same on"},
        {{"--model", model, "--appdir", job().room + "one"}, "Results are complete"},
        {{"--appdir", job().room + "one"}, ""},  // no control file
    };
    for (const auto& c : cases) {
        if (job().count() == 1) break;
        SCOPED_TRACE(c.refusal);
        const bool sound = std::string(c.refusal).starts_with("Results");
        setranks(job());
        const int code = runprogram(job().first() ? cases[4].words : c.words);
        workalone();
        EXPECT_EQ(code, sound ? 0 : 1);
        if (!job().first()) continue;
        const std::string text = std::filesystem::exists(log) ? readwhole(log) : "";
        EXPECT_NE(text.find(c.refusal), std::string::npos) << text;
        const bool stand = sound || *c.refusal == 0;
        EXPECT_EQ(std::filesystem::exists(model + ".rvp"), stand);
        EXPECT_EQ(text.find("Results are complete") != text.npos, stand);
    }
    job().anyfault("");
    if (job().first()) std::filesystem::remove_all(job().room);
}
