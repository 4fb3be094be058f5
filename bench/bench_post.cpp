// SPDX-License-Identifier: GPL-3.0-or-later
// A stress file of a million records against one plain loop over its numbers with from_chars, and
// the redraw of a million quadrilaterals with filled contours against the same view with hidden
// lines.
#include <QGuiApplication>
#include <charconv>
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
#include "post/contour.h"
#include "post/postproces.h"
#include "post/probe.h"
#include "post/shapes.h"
#include "post/stressfile.h"
#include "view/autoscale.h"
#include "view/moddraw.h"
#include "view/scaleview.h"
#include "view/setviews.h"

namespace fs = std::filesystem;

// A smooth field with a few waves over the model.
static double fieldat(int n, int k) {
    return 100 * std::sin(nodes(0, n, 0) * 0.05 + k) * std::cos(nodes(0, n, 1) * 0.04);
}

// Records of the first quarter million elements, four corners each.
static void writestresses(const std::string& path, int elements) {
    textout out(path);
    for (int e = 1; e <= elements; ++e)
        for (int c = 1; c <= 4; ++c) {
            const int n = int(elems(e, c));
            out.put(e);
            for (int k = 0; k < 3; ++k) out.comma().put(nodes(0, n, k));
            for (int k = 1; k <= 13; ++k) out.comma().put(fieldat(n, k));
            out.endline();
        }
    out.raw("END").endline();
    out.commit();
}

static void benchread(const std::string& base) {
    const int records = 1000000;
    writestresses(base + ".NSL", records / 4);
    double sum = 0;
    printratio(
        "read 1,000,000 stress records", 5, 3,
        [] {
            stressloaded = false;
            readstress();
        },
        [&] { sum += plainread(base + ".NSL"); });
    if (sum == 0) std::puts("nothing was read");
    fs::remove(base + ".NSL");
}

static void benchdraw(const char* name, bool mesh) {
    mnudrawlist(elementsdrawn).checked = mesh;
    const auto hidden = [] {
        menupostItem(contourplot).checked = false;
        mnudrawlist(elementsdrawn).checked = true;  // the faces of the hidden picture
        redrawall();
    };
    const auto filled = [mesh] {
        menupostItem(contourplot).checked = true;
        mnudrawlist(elementsdrawn).checked = mesh;
        redrawall();
    };
    printratio(name, 5, 3, filled, hidden);
}

static void setfield(double length) {
    for (int n = 1; n <= nnodes(); ++n)
        nodes(1, n, 0) =
            float(std::sin(nodes(0, n, 0) / length) * std::cos(nodes(0, n, 1) / length));
}

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    imageplatform platform;
    setplatform(&platform);
    const std::string base = std::string(startsession()) + "/large";
    wirepost();
    makelargemodel(1000);
    modelname = base;
    benchread(base);
    setoneview();
    autoscale(1);
    mnudrawlist(nodesdrawn).checked = false;
    mnudrawlist(hiddenline).checked = true;
    contourdata = displacementdata;
    dispcontour = 1;
    setfield(20);
    benchdraw("filled contours, smooth field", false);
    benchdraw("filled contours, smooth field, with mesh", true);
    setfield(0.3);  // the bands change within nearly every element
    benchdraw("filled contours, wild field", false);
    contourfilled = 0;
    setfield(20);
    benchdraw("contour lines, smooth field, with mesh", true);
    valueatpointer = true;
    menupostItem(contourplot).checked = true;
    prepareplot();
    printratio(
        "value under the pointer", 5, 3, [] { valueunder(1, 20, 10); },
        [] {
            double sum = 0;
            prepareview(1);
            for (int e = 1; e <= nelems(); ++e)
                for (int c = 1; c <= 4; ++c) sum += cornerplace(e, c, 1).x;
            if (sum == 0) std::puts("nothing was projected");
        });
    setplatform(nullptr);
}
