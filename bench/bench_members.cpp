// SPDX-License-Identifier: GPL-3.0-or-later
// Diagrams of a hundred thousand members against one pass of their outlines, and the envelope of
// forty combinations over a million stress records against reading the file once and the
// arithmetic alone.
#include <QGuiApplication>
#include <cmath>
#include <filesystem>
#include <string>

#include "bench/imageplatform.h"
#include "bench/largemodel.h"
#include "bench/plainread.h"
#include "bench/ratio.h"
#include "core/model.h"
#include "core/session.h"
#include "core/textfile.h"
#include "post/diagrams.h"
#include "post/shapes.h"
#include "post/source.h"
#include "post/stressenvelope.h"
#include "post/stressfile.h"
#include "view/autoscale.h"
#include "view/drawelems.h"
#include "view/scaleview.h"
#include "view/setviews.h"

namespace fs = std::filesystem;

// Beams along the rows of a grid of nodes.
static void makemembers(int count, int side) {
    makelargemodel(side);
    elems(0, 0) = float(count);
    for (int e = 1; e <= count; ++e) {
        const int n = e + (e - 1) / side;
        elems(e, 0) = typebeam;
        elems(e, 1) = float(n);
        elems(e, 2) = float(n + 1);
        elems(e, 3) = elems(e, 4) = 0;
    }
}

static void writemembers(const std::string& path) {
    textout out(path);
    for (int e = 1; e <= nelems(); ++e) {
        out.put(e).comma().put(memberstations);
        for (int i = 0; i < memberstations; ++i) {
            const double x = double(i) / (memberstations - 1);
            out.comma().put(float(x));
            for (int q = 0; q < memberquantities; ++q)
                out.comma().put(float(std::sin(e * 0.01 + q) + x * (1 - x)));
        }
        out.endline();
    }
    out.raw("END").endline();
    out.commit();
}

static void benchdiagrams(const std::string& base) {
    makemembers(100000, 400);
    writemembers(base + ".MEM");
    setoneview();
    autoscale(1);
    diagramshown = true;
    dropmembers();
    std::printf("%-46s %8.2f s\n", "read 100,000 members of one load case",
                secondsof([] { preparediagrams(); }));
    const auto outlines = [] {
        target(1)->clear(backcolor);
        drawlineelements(1);
        target(1)->show();
    };
    for (const bool filled : {false, true}) {
        diagram.filled = filled;
        for (const bool values : {false, true}) {
            diagram.values = values;
            const std::string name = std::string("diagrams of 100,000 members") +
                                     (filled ? ", filled" : "") + (values ? ", values" : "");
            printratio(
                name, 5, 3,
                [] {
                    target(1)->clear(backcolor);
                    drawdiagrams(1);
                    target(1)->show();
                },
                outlines);
        }
    }
    diagramshown = false;
    fs::remove(base + ".MEM");
}

static void benchenvelope(const std::string& base) {
    const int cases = 4, combinations = 40, records = 1000000 / cases;
    modelsize(sizeloadcases) = combinations;
    makelargemodel(250);
    {
        textout out(base + ".NSL");
        for (int l = 1; l <= cases; ++l) {
            for (int r = 0; r < records; ++r) {
                out.put(1 + r / 4).comma().raw("0,0,0");
                for (int k = 1; k <= stressvalues; ++k)
                    out.comma().put(float(100 * std::sin(r * 0.001 + k + l)));
                out.endline();
            }
            out.raw("END").endline();
        }
        out.commit();
    }
    loadnode(0, 0) = cases;
    lcomb(0, 0) = combinations;
    for (int c = 1; c <= combinations; ++c)
        for (int l = 1; l <= cases; ++l) lcomb(c, l) = float(std::cos(c * l));
    shownsource.of = sources::envelope;
    double sum = 0;
    const auto arithmetic = [&] {
        for (int r = 0; r < records; ++r)
            for (int c = 1; c <= combinations; ++c) {
                float s[13];
                for (int k = 1; k <= 12; ++k) {
                    double total = 0;
                    for (int l = 1; l <= cases; ++l) total += lcomb(c, l) * float(r + k);
                    s[k] = float(total);
                }
                double most = 0;  // eight sums of squares, as the combined stress has
                for (int i = 0; i < 8; ++i)
                    most = std::max(most, double(s[1] + i) * s[2] + s[3] * s[4] + s[5] * s[6] +
                                              s[7] * s[8] + s[9] * s[10] + s[11] * s[12]);
                sum += most;
            }
    };
    for (const int component : {1, 13})
        printratio(
            component == 1 ? "envelope of 40 combinations, SX"
                           : "envelope of 40 combinations, combined stress",
            3, 1.5, [component] { readenvelope(component); },
            [&] {
                sum += plainread(base + ".NSL");
                if (component == 13) arithmetic();
            });
    if (sum == 0) std::puts("nothing was read");
    fs::remove(base + ".NSL");
}

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    imageplatform platform;
    setplatform(&platform);
    const std::string base = std::string(startsession()) + "/members";
    wirepost();
    modelname = base;
    benchdiagrams(base);
    modelname = base;
    benchenvelope(base);
    setplatform(nullptr);
}
