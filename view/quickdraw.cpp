// SPDX-License-Identifier: GPL-3.0-or-later
// Reduced pictures. State: the lines of the model last drawn so, and how many a frame takes.
#include "view/quickdraw.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <vector>

#include "core/catalogue.h"
#include "core/colours.h"
#include "core/model.h"
#include "core/session.h"
#include "view/drawelems.h"
#include "view/facesides.h"
#include "view/moddraw.h"
#include "view/pen.h"
#include "view/scaleview.h"

static const double framebudget = 0.024;  // seconds of the 1/30 that drawing may take
static const double foldcosine = 0.9;     // normals of two faces that make a fold: over 25 degrees
static const std::size_t fewest = 2000, most = 2000000;  // lines of a picture

bool isquickwanted() {
    const int large = 20000;  // nodes or elements
    return nelems() > large || nnodes() > large;
}

// --- borders and folds --------------------------------------------------------------------------

namespace {

struct modelline {
    int a, b;     // nodes
    int element;  // that has it
};

struct quicklines {
    std::uint64_t stamp = 0;
    long picture = -1;  // picturesdrawn when the stamp was taken: changes are drawn
    std::vector<modelline> lines;
    std::size_t perframe = 60000;  // follows the time that the last picture took
};
quicklines kept;

// Each line once: of its ring by the side with the lowest number.
void addfeatures(std::vector<modelline>& lines) {
    const facesides& sides = sidesofmodel();
    const auto normals = facenormals();
    const auto isfold = [&](int e, int f) {
        const auto &a = normals[std::size_t(e)], &b = normals[std::size_t(f)];
        return std::fabs(std::inner_product(a.begin(), a.end(), b.begin(), 0.0F)) < foldcosine;
    };
    for (int e = 1; e <= nelems(); ++e) {
        const auto row = elems.row(e);
        const int elnn = nodesoftype(row[0]);
        for (int k = 0; elnn > 2 && k < elnn; ++k) {
            const int side = 4 * e + k;
            if (!sides.isfirst(side)) continue;
            if (!sides.ispair(side) || isfold(e, facesides::elementof(sides.next(side))))
                lines.push_back(
                    {int(row[std::size_t(k + 1)]), int(row[std::size_t((k + 1) % elnn + 1)]), e});
        }
    }
}

}  // namespace

static void findlines() {
    if (kept.picture == picturesdrawn) return;
    kept.picture = picturesdrawn;
    const std::uint64_t stamp = stampofmodel(true);
    if (stamp == kept.stamp) return;
    kept.lines.clear();
    for (int e = 1; e <= nelems(); ++e) {
        const auto row = elems.row(e);
        if (nodesoftype(row[0]) == 2) kept.lines.push_back({int(row[1]), int(row[2]), e});
    }
    addfeatures(kept.lines);
    kept.stamp = stamp;
}

// --- the picture --------------------------------------------------------------------------------

// Visits `count` of 0..all-1, spread evenly over them.
template <typename Work>
static void spread(std::size_t all, std::size_t count, Work work) {
    if (count >= all) {
        for (std::size_t i = 0; i < all; ++i) work(i);
        return;
    }
    for (std::size_t i = 0; i < count; ++i) work(i * all / count);
}

static void drawlines(surface& s, int nview) {
    const auto at = [&](int n) { return project(viewcamera, drawnplace(n, nview)).at; };
    s.drawwidth = 1;
    spread(kept.lines.size(), kept.perframe, [&](std::size_t i) {
        const modelline& l = kept.lines[i];
        if (!isshown(l.element, nview)) return;
        const point2 a = at(l.a), b = at(l.b);
        s.line(a.x, a.y, b.x, b.y, colourofelement(l.element));
    });
}

static void drawsome(int nview) {
    const std::size_t perface = 4;  // lines
    const std::size_t left = kept.perframe - std::min(kept.perframe, kept.lines.size());
    spread(std::size_t(nelems()), left / perface, [&](std::size_t i) {
        const int e = int(i) + 1;
        if (nodesoftype(elems(e, 0)) < 3 || !isshown(e, nview)) return;
        drawcolor = colourofelement(e);
        drawelementoutline(e, nview);
    });
}

void drawquick(int nview) {
    surface* const s = target(nview);
    if (s == nullptr) return;
    const keptpoint point;
    findlines();
    const auto begin = std::chrono::steady_clock::now();
    const keptpen pen(s);
    const bool shape = menupostItem(deformedshape).checked || menupostItem(modeshape).checked;
    setdispscale(nview);
    undeformed = shape ? 0 : 1;
    prepareview(nview);
    s->smooth = false;
    s->clear(backcolor);
    drawlines(*s, nview);
    drawsome(nview);
    undeformed = 1;
    s->show();
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    const double share = std::clamp(framebudget / std::max(taken.count(), 1e-4), 0.25, 1.5);
    kept.perframe = std::clamp(std::size_t(double(kept.perframe) * share), fewest, most);
}
