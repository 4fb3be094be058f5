// SPDX-License-Identifier: GPL-3.0-or-later
// Reduced pictures. State: the lines of the model last drawn so, and how many a frame takes.
#include "view/quickdraw.h"

#include <algorithm>
#include <array>
#include <bit>
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

using direction = std::array<double, 3>;

direction normalof(int e) {
    const auto row = elems.row(e);
    const auto at = [&](int k, int axis) {
        return double(nodes(0, long(row[std::size_t(k)]), axis));
    };
    const int last = nodesoftype(row[0]) == 4 ? 4 : 2;
    double a[3], b[3];
    for (int k = 0; k < 3; ++k) {
        a[k] = at(3, k) - at(1, k);
        b[k] = last == 4 ? at(4, k) - at(2, k) : at(2, k) - at(1, k);
    }
    direction n = {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
    const double length = std::hypot(n[0], n[1], n[2]);
    for (double& x : n) x = length > 0 ? x / length : 0;
    return n;
}

// Sides of faces by their lower node: each node's stretch is short.
class facesides {
  public:
    facesides() : first(std::size_t(nnodes()) + 2) {
        eachside([&](int a, int, int) { ++first[std::size_t(a) + 1]; });
        std::partial_sum(first.begin(), first.end(), first.begin());
        sides.resize(std::size_t(first.back()));
        std::vector<int> next = first;
        eachside([&](int a, int b, int e) { sides[std::size_t(next[std::size_t(a)]++)] = {b, e}; });
    }
    void addfeatures(std::vector<modelline>& lines) {
        for (int a = 1; a <= nnodes(); ++a) {
            const auto begin = sides.begin() + first[std::size_t(a)],
                       end = sides.begin() + first[std::size_t(a) + 1];
            std::sort(begin, end, [](const side& s, const side& t) { return s.other < t.other; });
            for (auto i = begin; i != end;) {
                auto j = i + 1;
                while (j != end && j->other == i->other) ++j;
                if (j - i != 2 || isfold(i->element, (i + 1)->element))
                    lines.push_back({a, i->other, i->element});
                i = j;
            }
        }
    }

  private:
    struct side {
        int other, element;
    };
    static bool isfold(int e, int f) {
        const direction a = normalof(e), b = normalof(f);
        return std::fabs(a[0] * b[0] + a[1] * b[1] + a[2] * b[2]) < foldcosine;
    }
    template <typename Work>
    static void eachside(Work work) {
        for (int e = 1; e <= nelems(); ++e) {
            const auto row = elems.row(e);
            const int elnn = nodesoftype(row[0]);
            for (int k = 1; elnn > 2 && k <= elnn; ++k) {
                const int a = int(row[std::size_t(k)]), b = int(row[std::size_t(k % elnn + 1)]);
                if (a >= 1 && b >= 1 && a <= nnodes() && b <= nnodes())
                    work(std::min(a, b), std::max(a, b), e);
            }
        }
    }
    std::vector<int> first;  // of each node in sides
    std::vector<side> sides;
};

// Of places and corners; cheap beside one picture.
std::uint64_t stampofmodel() {
    std::uint64_t stamp = std::uint64_t(nnodes()) * 31 + std::uint64_t(nelems());
    const auto mix = [&](float x) {
        stamp = stamp * 0x9E3779B97F4A7C15u + std::bit_cast<std::uint32_t>(x);
    };
    for (int n = 1; n <= nnodes(); ++n)
        for (int k = 0; k < 3; ++k) mix(nodes(0, n, k));
    for (int e = 1; e <= nelems(); ++e) {
        const auto row = elems.row(e);
        for (std::size_t k = 0; k <= 4; ++k) mix(row[k]);
    }
    return stamp;
}

}  // namespace

static void findlines() {
    if (kept.picture == picturesdrawn) return;
    kept.picture = picturesdrawn;
    const std::uint64_t stamp = stampofmodel();
    if (stamp == kept.stamp) return;
    kept.lines.clear();
    for (int e = 1; e <= nelems(); ++e) {
        const auto row = elems.row(e);
        if (nodesoftype(row[0]) == 2) kept.lines.push_back({int(row[1]), int(row[2]), e});
    }
    facesides().addfeatures(kept.lines);
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
