// SPDX-License-Identifier: GPL-3.0-or-later
// Combs and rasters.
#include "view/elementarrows.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/catalogue.h"
#include "core/model.h"
#include "view/fieldsymbols.h"
#include "view/labels.h"
#include "view/scaleview.h"

namespace {
struct arrow {
    point2 from, tip;
};
using corners = std::array<scaledpoint, 4>;
}  // namespace

static const int most = 12;  // arrows along a side

static arrow arrowat(const scaledpoint& p, const arrowload& load) {
    const auto moved = [&](float at, int k) { return float(at + load.length * load.axis[k]); };
    return {project(viewcamera, p).at,
            project(viewcamera, {moved(p.x, 0), moved(p.y, 1), moved(p.z, 2)}).at};
}

static void drawarrow(surface& s, const arrow& a, colour c) {
    s.line(a.from.x, a.from.y, a.tip.x, a.tip.y, c);
    drawheads(s, a.from, a.tip, 1, c);
}

static scaledpoint between(const scaledpoint& a, const scaledpoint& b, double part) {
    const float f = float(part);
    return {a.x + f * (b.x - a.x), a.y + f * (b.y - a.y), a.z + f * (b.z - a.z)};
}

// So many arrows stand at a distance from each other along a line.
static int countalong(const scaledpoint& a, const scaledpoint& b) {
    const point2 p = project(viewcamera, a).at, q = project(viewcamera, b).at;
    const double length = std::hypot(q.x - p.x, q.y - p.y) / arrowroom::arrowspacing;
    return length < most ? std::max(int(length), 1) : most;  // most for what is no number, too
}

static void drawcomb(surface& s, const corners& at, const arrowload& load, arrowroom& taken) {
    const int n = countalong(at[0], at[1]);
    const arrow first = arrowat(at[0], load), last = arrowat(at[1], load);
    s.line(first.tip.x, first.tip.y, last.tip.x, last.tip.y, load.c);
    const arrow middle = arrowat(between(at[0], at[1], 0.5), load);
    // Neighbours in a chain of short elements share their arrows.
    for (int i = 0; i <= n; ++i)
        if (const arrow a = arrowat(between(at[0], at[1], double(i) / n), load);
            taken.arrows.accepts(a.from.x, a.from.y))
            drawarrow(s, a, load.c);
    if (taken.numbers.accepts(middle.tip.x, middle.tip.y))
        drawvalue(s, middle.tip, load.value, load.formula, load.c);
}

static void drawraster(surface& s, const corners& at, int elnn, const arrowload& load,
                       arrowroom& taken) {
    const int nu = countalong(at[0], at[1]), nv = countalong(at[0], at[elnn == 4 ? 3 : 2]);
    for (int j = 0; j < nv; ++j)
        for (int i = 0; i < nu; ++i) {
            // A triangle is a quadrilateral whose far side has shrunk to its third corner.
            const double u = (i + 0.5) / nu, v = elnn == 4 || nv > 1 ? (j + 0.5) / nv : 1.0 / 3;
            const scaledpoint p =
                between(between(at[0], at[1], u), between(at[elnn == 4 ? 3 : 2], at[2], u), v);
            const arrow a = arrowat(p, load);
            if (!taken.arrows.accepts(a.from.x, a.from.y)) continue;
            drawarrow(s, a, load.c);
            if (taken.numbers.accepts(a.tip.x, a.tip.y))
                drawvalue(s, a.tip, load.value, load.formula, load.c);
        }
}

void drawelementarrows(int e, const arrowload& load, arrowroom& taken, int nview) {
    surface* const s = target(nview);
    const auto row = elems.row(e);
    const int elnn = nodesoftype(row[0]);
    if (s == nullptr || elnn == 0 || load.length == 0) return;
    corners at{};
    for (int k = 0; k < elnn; ++k)
        at[std::size_t(k)] = drawnplace(int(row[std::size_t(k + 1)]), nview);
    if (elnn == 1)
        drawarrow(*s, arrowat(at[0], load), load.c);
    else if (elnn == 2)
        drawcomb(*s, at, load, taken);
    else
        drawraster(*s, at, elnn, load, taken);
}
