// SPDX-License-Identifier: GPL-3.0-or-later
// The mesh generator, the merge of nodes and the renumbering at a million nodes: the first two
// beside gmsh's own times for the same work, the last beside a plain sort of as many keys.
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numeric>
#include <random>
#include <sstream>

#include "bench/largemodel.h"
#include "bench/ratio.h"
#include "core/catalogue.h"
#include "core/model.h"
#include "core/newmodel.h"
#include "core/session.h"
#include "edit/Edit.h"
#include "edit/merge.h"
#include "edit/renumber.h"
#include "tools/genmesh.h"
#include "tools/groups.h"

namespace fs = std::filesystem;

static const int side = 1000;  // quadrilaterals along an edge

// --- gmsh ---------------------------------------------------------------------------------------

// Seconds and peak bytes that gmsh reports or takes for a script.
struct peerrun {
    double seconds = 0, bytes = 0;
    bool good = false;
};

// The text behind a word in gmsh's log, as a number; the last one counts.
static double numberafter(const std::string& log, const std::string& word) {
    double value = -1;
    for (std::size_t at = log.find(word); at != std::string::npos; at = log.find(word, at + 1))
        std::sscanf(log.c_str() + at + word.size(), "%lf", &value);
    return value;
}

static std::string playgmsh(const std::string& script, const std::string& options) {
    const std::string base = std::string(startsession()) + "/peer";
    std::ofstream(base + ".geo") << script;
    const std::string command =
        "gmsh -v 5 -nt 1 " + options + " " + base + ".geo > " + base + ".log 2>&1";
    if (std::system(command.c_str()) != 0) return {};
    std::stringstream log;
    log << std::ifstream(base + ".log").rdbuf();
    return log.str();
}

// A transfinite square at x, with `side` quadrilaterals along each edge. Tags count up from t.
static std::string square(int t, double x) {
    std::ostringstream geo;
    const double corner[4][2] = {{x, 0}, {x + 1, 0}, {x + 1, 1}, {x, 1}};
    for (int k = 0; k < 4; ++k)
        geo << "Point(" << t + k << ") = {" << corner[k][0] << "," << corner[k][1] << ",0};\n";
    for (int k = 0; k < 4; ++k)
        geo << "Line(" << t + k << ") = {" << t + k << "," << t + (k + 1) % 4 << "};\n";
    geo << "Curve Loop(" << t << ") = {" << t << "," << t + 1 << "," << t + 2 << "," << t + 3
        << "};\nPlane Surface(" << t << ") = {" << t << "};\n";
    for (int k = 0; k < 4; ++k)
        geo << "Transfinite Curve {" << t + k << "} = " << side + 1 << ";\n";
    geo << "Transfinite Surface {" << t << "};\nRecombine Surface {" << t << "};\n";
    return geo.str();
}

// gmsh tells the seconds of each step: "Done meshing 2D (Wall 1.2s, CPU 1.1s)".
static peerrun peermesh() {
    peerrun run;
    rusage before{}, after{};
    getrusage(RUSAGE_CHILDREN, &before);
    const std::string log = playgmsh(square(1, 0), "-2 -o /dev/null -format msh");
    getrusage(RUSAGE_CHILDREN, &after);
    run.seconds = numberafter(log, "Done meshing 2D (Wall ");
    run.bytes = after.ru_maxrss * 1024.0;
    run.good = run.seconds > 0;
    return run;
}

// The time of "Coherence Mesh" is that of a script with it less that of the same without it.
static peerrun peermerge(const std::string& geometry) {
    peerrun run;
    const std::string plain = geometry + "Mesh 2;\n";
    std::vector<double> with, without;
    for (int i = 0; i < 3; ++i) {
        without.push_back(secondsof([&] { run.good = !playgmsh(plain, "-0").empty(); }));
        with.push_back(secondsof([&] { playgmsh(plain + "Coherence Mesh;\n", "-0"); }));
    }
    run.seconds = median(with) - median(without);
    return run;
}

static void printpeer(const char* name, double ours, double peer, double limit,
                      const char* unit = "s") {
    const double ratio = ours / peer;
    std::printf("%-46s ours %8.4f %s  gmsh %8.4f %s  ratio %6.2f  (wanted: at most %.2f)%s\n", name,
                ours, unit, peer, unit, ratio, limit, ratio > limit ? "  ABOVE" : "");
    std::fflush(stdout);
}

// --- the same work here -------------------------------------------------------------------------

static int addline(double x1, double y1, double x2, double y2) {
    const int g = ngraphics() + 1;
    openrecord(graphics, g, kindline);
    graphics(g, 0, 1) = side;
    setdefinitionpoint(graphics, g, 1, {x1, y1, 0});
    setdefinitionpoint(graphics, g, 2, {x2, y2, 0});
    graphics(0, 0, 0) = float(g);
    return g;
}

static void drawsquare(double x) {
    const int edges[] = {addline(x, 0, x + 1, 0), addline(x, 1, x + 1, 1), addline(x, 0, x, 1),
                         addline(x + 1, 0, x + 1, 1)};
    for (int e = 1; e <= 4; ++e) {
        graphmesh(e, 0) = 1;
        graphmesh(e, 1) = edges[e - 1];
    }
}

static void declare(int nodescount, int elemscount) {
    modelsize(sizenodes) = nodescount;
    modelsize(sizeelements) = elemscount;
    modelsize(sizegraphics) = 50;
    modelsize(sizeedgenodes) = side + 2;
    resetmodel();
    nodetol = 1e-6;
    meshtype = "Quad";
    mesheltype = findtype("MEMB4");
    meshgroup = 1;
}

static bool mesh() {
    checkedges(graphics);
    if (meshok) checkmeshsize(graphics);
    if (meshok) buildmesh(graphics);
    if (!meshok) std::printf("no mesh: %s\n", meshmessage.c_str());
    return meshok;
}

static void emptymodel() {
    nodes(0, 0, 0) = elems(0, 0) = 0;
    tmpnodes(0, 0) = tmpelems(0, 0) = 0;
    nodesel(0) = 0;
}

static std::vector<double> repeated(int runs, const std::function<void()>& prepare,
                                    const std::function<void()>& work) {
    std::vector<double> seconds;
    for (int i = 0; i <= runs; ++i) {
        prepare();
        const double s = secondsof(work);
        if (i > 0) seconds.push_back(s);  // the first pays for cold pages
    }
    return seconds;
}

static void benchmesh() {
    const int row = side + 1;
    declare(row * row + 4 * row, side * side);
    drawsquare(0);
    const double ours = median(repeated(
        5, [] { tmpnodes(0, 0) = tmpelems(0, 0) = 0; }, [] { mesh(); }));
    const double bytes = peakmemory();
    const peerrun peer = peermesh();
    if (!peer.good) {
        std::puts("gmsh gave no mesh to compare with");
        return;
    }
    printpeer("mesh of 1000 x 1000 quadrilaterals", ours, peer.seconds, 0.5);
    printpeer("its peak memory", bytes / 1e6, peer.bytes / 1e6, 1, "MB");
}

// Two meshes that meet along an edge: the nodes of the second are the selection.
static void pastetwo() {
    emptymodel();
    graphics(0, 0, 0) = 0;
    for (const double x : {0.0, 1.0}) {
        drawsquare(x);
        mesh();
        editpaste();
        tmpnodes(0, 0) = tmpelems(0, 0) = 0;
        if (x == 0) mergenodes();  // the corners of the first
    }
}

static void benchmergeedge() {
    const int row = side + 1;
    declare(2 * row * row + 16 * row, 2 * side * side);
    nodetol = 1e-6;
    int merged = 0;
    const double ours = median(repeated(3, pastetwo, [&] { merged = mergenodes(); }));
    std::printf("  (%d nodes merged)\n", merged);
    const peerrun peer = peermerge(square(1, 0) + square(11, 1));
    printpeer("merge of two such meshes along an edge", ours, peer.seconds, 0.5);
}

// Every node stands twice.
static void pastetwice() {
    emptymodel();
    graphics(0, 0, 0) = 0;
    for (int i = 0; i < 2; ++i) {
        drawsquare(0);
        mesh();
        editpaste();
        tmpnodes(0, 0) = tmpelems(0, 0) = 0;
        if (i == 0) mergenodes();
    }
}

static void benchmergeall() {
    const int row = side + 1;
    declare(2 * row * row + 16 * row, 2 * side * side);
    nodetol = 1e-6;
    int merged = 0;
    const double ours = median(repeated(3, pastetwice, [&] { merged = mergenodes(); }));
    std::printf("  (%d nodes merged)\n", merged);
    const peerrun peer = peermerge(square(1, 0) + square(11, 0));
    printpeer("merge of 1,000,000 nodes with as many", ours, peer.seconds, 0.5);
}

// Keys of the sort: the distance and the number, as the renumbering orders them.
static void benchrenumber() {
    makelargemodel(side - 1);  // a million nodes
    std::mt19937 random(1);
    const auto count = std::size_t(nnodes());
    std::vector<int> order(count);
    std::iota(order.begin(), order.end(), 0);
    std::shuffle(order.begin(), order.end(), random);
    const auto shuffle = [&] {
        for (std::size_t i = 0; i < order.size(); ++i) {
            const int n = int(i) + 1;
            nodes(0, n, 0) = float(order[i] % side) * 0.137f;
            nodes(0, n, 1) = float(order[i] / side) * 0.211f;
        }
    };
    std::vector<std::pair<double, int>> keys(order.size()), work;
    shuffle();
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const int n = int(i) + 1;
        keys[i] = {std::hypot(nodes(0, n, 0) - 137, nodes(0, n, 1) - 211), n};
    }
    const double sort = median(repeated(
        5, [&] { work = keys; }, [&] { std::sort(work.begin(), work.end(), std::greater<>()); }));
    const double ours = median(repeated(5, shuffle, [] { renumbermodel(); }));
    std::printf("%-46s ours %8.4f s  sort %8.4f s  ratio %6.2f  (wanted: at most 4.00)%s\n",
                "renumbering of 1,000,000 nodes", ours, sort, ours / sort,
                ours > 4 * sort ? "  ABOVE" : "");
}

int main() {
    startsession();
    benchmesh();
    benchmergeedge();
    benchmergeall();
    benchrenumber();
    fs::remove_all(startsession());
}
