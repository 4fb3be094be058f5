// SPDX-License-Identifier: GPL-3.0-or-later
// Redraw of a million quadrilaterals, in wire form and with hidden lines, against one pass of
// QPainter over the same segments or sorted polygons prepared beforehand, on an image of the same
// size; picking and window selection against one loop that projects all nodes.
#include <QGuiApplication>
#include <QPainter>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

#include "bench/imageplatform.h"
#include "bench/largemodel.h"
#include "bench/ratio.h"
#include "core/colours.h"
#include "core/model.h"
#include "core/session.h"
#include "core/views.h"
#include "edit/Mouseprocedures.h"
#include "edit/find.h"
#include "edit/move.h"
#include "edit/selectby.h"
#include "edit/selection.h"
#include "edit/selectionsums.h"
#include "view/autoscale.h"
#include "view/hidden.h"
#include "view/moddraw.h"
#include "view/quickdraw.h"
#include "view/scaleview.h"
#include "view/setviews.h"
#include "view/symbolstyle.h"

using facet = std::array<QPointF, 4>;

static facet corners(int e, int nview) {
    facet corner;
    for (int k = 0; k < 4; ++k) {
        setnode(int(elems(e, k + 1)), nview);
        projectpoint(nview);
        corner[std::size_t(k)] = QPointF(scrx, scry) * pixelspercm;
    }
    return corner;
}

static std::vector<QLineF> segments(int nview) {
    std::vector<QLineF> lines;
    prepareview(nview);
    for (int e = 1; e <= nelems(); ++e) {
        const facet corner = corners(e, nview);
        for (std::size_t k = 0; k < 4; ++k) lines.emplace_back(corner[k], corner[(k + 1) % 4]);
    }
    return lines;
}

static void plainpass(QImage& image, const std::vector<QLineF>& lines) {
    image.fill(Qt::white);
    QPainter painter(&image);
    QPen pen(Qt::black, 1);
    pen.setCosmetic(true);
    painter.setPen(pen);
    painter.drawLines(lines.data(), int(lines.size()));
}

// The polygons in their depth order, in whole pixels as the pass draws them.
static std::vector<facet> facets(int nview) {
    sortdepth(nview);
    std::vector<facet> list;
    prepareview(nview);
    for (int i = 1; i <= nelems(); ++i) {
        facet corner = corners(int(elemdepth(i, 0)), nview);
        for (QPointF& p : corner) p = QPointF(std::floor(p.x()), std::floor(p.y()));
        list.push_back(corner);
    }
    return list;
}

static void plainpolygons(QImage& image, const std::vector<facet>& list) {
    image.fill(Qt::white);
    QPainter painter(&image);
    QPen pen(Qt::black, 1);
    pen.setCosmetic(true);
    painter.setPen(pen);
    int shade = 0;
    for (const facet& f : list) {
        shade = (shade + 1) % 256;
        painter.setBrush(QColor(shade, shade, shade));
        painter.drawConvexPolygon(f.data(), 4);
    }
}

static void benchwire(imageplatform& platform) {
    for (const bool single : {true, false}) {
        single ? setoneview() : setfourviews();
        std::vector<std::vector<QLineF>> prepared;
        std::vector<QImage> images;
        for (int v = 1; v <= shownviews(); ++v) {
            autoscale(v);
            prepared.push_back(segments(v));
            images.push_back(platform.views[std::size_t(v - 1)].picture());
        }
        const auto plain = [&] {
            for (std::size_t v = 0; v < images.size(); ++v) plainpass(images[v], prepared[v]);
        };
        const char* const views = single ? "one view" : "four views";
        const int runs = single ? 2 : 1;
        printratio(std::string("wire redraw with nodes, ") + views, runs, 3, redrawall, plain);
        mnudrawlist(nodesdrawn).checked = false;
        printratio(std::string("wire redraw, ") + views, runs, 3, redrawall, plain);
        mnudrawlist(nodesdrawn).checked = true;
    }
}

static void benchhidden(imageplatform& platform) {
    setoneview();
    autoscale(1);
    const std::vector<facet> list = facets(1);
    QImage image = platform.views[0].picture();
    mnudrawlist(hiddenline).checked = true;
    const auto plain = [&] { plainpolygons(image, list); };
    mnudrawlist(nodesdrawn).checked = false;
    printratio("hidden line redraw, sort and shading", 1, 3, redrawall, plain);
    // Seen straight from above many elements have one depth.
    setpreset(1, 1);
    for (int n = 1; n <= nnodes(); ++n) nodes(0, n, 2) = 0;
    printratio("hidden line redraw, all at one depth", 1, 3, redrawall, plain);
    mnudrawlist(nodesdrawn).checked = true;
    mnudrawlist(hiddenline).checked = false;
}

static void benchpicks() {
    setpreset(1, 0);
    double sum = 0;
    const auto plain = [&] {
        prepareview(1);
        for (int n = 1; n <= nnodes(); ++n) {
            setnode(n, 1);
            projectpoint(1);
            sum += scrx;
        }
    };
    scrx = 10;
    scry = 8;
    unprojectpoint(1);
    printratio(
        "pick of a node", 9, 3, [&] { sum += picknode(1).item; }, plain);
    double place = 5;
    printratio(
        "item under a moving pointer", 9, 3,
        [&] {
            unprojectat(1, place += 0.1, 8);
            sum += hovernode(1).item;
        },
        plain);
    printratio(
        "window selection", 9, 3,
        [] {
            emptyselection();
            selectwindow(1, 5, 5, 12, 12);
        },
        plain);
    if (sum == 0) std::puts("nothing was projected");
}

static void printpart(const char* what, double part, const char* of, double whole) {
    std::printf("%-46s ours %8.4f s  %-12s %8.4f s  ratio %6.3f\n", what, part, of, whole,
                part / whole);
}

// All nodes taken by one press and let go with ESC.
static void benchletgo() {
    std::vector<double> taken, letgo;
    setoneview();
    redrawall();
    checkselectitem(selectnodes);
    selecttype = selecttypes::all;
    for (int i = 0; i < 3; ++i) {
        taken.push_back(secondsof([] { viewmousedown(1, mousebuttons::left, 5, 5); }));
        letgo.push_back(secondsof([] { keyhandler(keyescape); }));
    }
    selecttype = selecttypes::single;
    printpart("ESC with 1,000,000 selected nodes", median(letgo), "selecting", median(taken));
}

// One element in a hundred on show, each with its number.
static void benchlabels() {
    const double zoom = 10;
    setoneview();
    autoscale(1);
    viewscale(1) = float(zoom * viewscale(1));
    mnudrawlist(nodesdrawn).checked = false;
    const auto redraw = [] {
        redrawall();
        return median({secondsof(redrawall), secondsof(redrawall), secondsof(redrawall)});
    };
    const double plain = redraw();
    checkonly(elemlabeltype, elementnumbers);
    const double labelled = redraw();
    checkonly(elemlabeltype, noelementlabels);
    mnudrawlist(nodesdrawn).checked = true;
    viewscale(1) = float(viewscale(1) / zoom);
    printpart("zoomed redraw with element labels", labelled, "without", plain);
}

// As many rows as the model may have, on its first elements and nodes, with numbers and all labels.
static void benchsymbols() {
    const int rows = modelsize(sizeconditions);
    elemload(1, 0, 0) = float(rows);
    for (int i = 1; i <= rows; ++i) {
        elemload(1, i, 0) = connode(i) = float(i);
        elemload(1, i, 1) = 3;
        elemload(1, i, 2) = float(i % 7);
        condof(i) = 3;
    }
    ncon = rows;
    checkonly(viewloads, activecase);
    setoneview();
    autoscale(1);
    const auto redraw = [] {
        redrawall();
        return secondsof(redrawall);
    };
    const double plain = redraw();
    symbolsdrawn.field = symbolsdrawn.values = true;
    printpart("redraw with engineering symbols and values", redraw(), "strokes", plain);
    symbolsdrawn.solid = true;
    printpart("and plates with their thickness", redraw(), "strokes", plain);
    checkonly(Nodelabeltype, nodenumbers);
    symbolsdrawn.apart = true;
    printpart("and node labels that keep apart", redraw(), "strokes", plain);
    checkonly(Nodelabeltype, nonodelabels);
    symbolsdrawn = {};
    elemload(1, 0, 0) = 0;
    ncon = 0;
}

// A thousand nodes among a million: what is drawn anew is what moved.
static void benchmove() {
    redrawmove = false;
    emptyselection();
    for (int n = 1; n <= 1000; ++n) togglenode(n * 900);
    setoneview();
    const auto move = [] {
        const double way[] = {0.001, 0, 0};
        startmove();
        movetyped(way);
    };
    const double whole = secondsof(redrawall);
    const double one = secondsof(move);
    printpart("move of 1,000 selected nodes", one, "whole redraw", whole);
}

// The reduced picture while a view turns, and the whole one that follows.
static void benchturn() {
    const int pictures = 60;
    setoneview();
    setpreset(1, 0);
    autoscale(1);
    redrawall();
    std::printf("%-46s ours %8.4f s\n", "first picture of a turn", secondsof([] { drawquick(1); }));
    std::vector<double> times;
    for (int i = 0; i < pictures; ++i) {
        turnangles(1, 2, 1);
        times.push_back(secondsof([] { drawquick(1); }));
    }
    std::printf("%-46s ours %8.4f s  %.0f pictures a second\n", "picture while a view turns",
                median(times), 1 / median(times));
    std::printf("%-46s ours %8.4f s\n", "whole picture at rest", secondsof([] { drawview(1); }));
    setpreset(1, 0);
}

// What a click and the window "Select and find" wait for.
static void benchqueries() {
    emptyselection();
    elemsel(0) = elemsel(1) = 1;
    const auto query = [](const char* what, const selectquery& q) {
        std::size_t found = 0;
        const double time = secondsof([&] { found = findby(q).items.size(); });
        std::printf("%-46s ours %8.4f s  %zu items\n", what, time, found);
    };
    query("select by numbers", {.numbers = "1-500000/7"});
    query("select by coordinate", {.way = selectways::coordinate, .low = 0, .high = 1});
    query("select a connected face", {.ofnodes = false, .way = selectways::face});
    checkselectitem(selectelements);
    selectallelements();
    std::size_t stamp = 0;
    std::printf("%-46s ours %8.4f s\n", "has the selection changed",
                secondsof([&] { stamp = selectionstamp(); }));
    std::printf("%-46s ours %8.4f s  %s\n", "sums of all elements",
                secondsof([] { sumselection(); }), stamp ? sumstext(sumselection()).c_str() : "");
    emptyselection();
    checkselectitem(selectnodes);
}

// gmsh's own picture of a mesh of the same size with edges and lit faces, turned a little between
// pictures: the time of one from runs with few and with many.
static double gmshredraw() {
    const auto run = [](int pictures) {
        std::string geo =
            "Point(1)={0,0,0};Point(2)={1,0,0};Point(3)={1,1,0};Point(4)={0,1,0};\n"
            "Line(1)={1,2};Line(2)={2,3};Line(3)={3,4};Line(4)={4,1};\n"
            "Curve Loop(1)={1,2,3,4};Plane Surface(1)={1};\n"
            "Transfinite Curve{1:4}=1001;Transfinite Surface{1};Recombine Surface{1};\nMesh 2;\n"
            "Mesh.SurfaceFaces=1;Mesh.SurfaceEdges=1;Mesh.Points=0;General.Trackball=0;\n"
            "General.GraphicsWidth=1600;General.GraphicsHeight=900;General.SmallAxes=0;\nDraw;\n";
        for (int i = 0; i < pictures; ++i)
            geo += "General.RotationX=" + std::to_string(300 + i) + ";Print \"picture.png\";\n";
        std::ofstream("redraw.geo") << geo << "Exit;\n";
        return secondsof([] {
            if (std::system("xvfb-run -a gmsh redraw.geo >gmsh.log 2>&1") != 0)
                std::puts("gmsh could not be run off screen");
        });
    };
    const int few = 1, many = 3;
    return (run(many) - run(few)) / (many - few);
}

static void benchpeer() {
    if (std::system("command -v xvfb-run gmsh >/dev/null 2>&1") != 0) {
        std::puts("gmsh or xvfb-run is not installed: no comparison");
        return;
    }
    makelargemodel(1000);
    setpreset(1, 0);
    autoscale(1);
    mnudrawlist(nodesdrawn).checked = false;
    mnudrawlist(hiddenline).checked = true;
    redrawall();
    const double ours = median({secondsof(redrawall), secondsof(redrawall), secondsof(redrawall)});
    const double theirs = gmshredraw();
    std::printf("%-46s ours %8.4f s  gmsh  %8.4f s  ratio %6.2f\n",
                "hidden line redraw against gmsh", ours, theirs, ours / theirs);
}

// All parts, or those whose names are given.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    imageplatform platform;
    setplatform(&platform);
    startsession();
    makelargemodel(1000);
    const std::pair<const char*, std::function<void()>> parts[] = {
        {"wire", [&] { benchwire(platform); }},
        {"turn", benchturn},
        {"queries", benchqueries},
        {"letgo", benchletgo},
        {"labels", benchlabels},
        {"symbols", benchsymbols},
        {"hidden", [&] { benchhidden(platform); }},
        {"picks", benchpicks},
        {"move", benchmove},
        {"peer", benchpeer},
    };
    for (const auto& [name, run] : parts)
        if (argc == 1 || std::find(argv + 1, argv + argc, std::string_view(name)) != argv + argc)
            run();
    setplatform(nullptr);
}
