// SPDX-License-Identifier: GPL-3.0-or-later
// Contour lines and filled bands of one element.
#include "post/painters.h"

#include <algorithm>
#include <cmath>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/views.h"
#include "post/contour.h"
#include "post/linelabels.h"
#include "view/scaleview.h"
#include "view/surface.h"

float ex[6], ey[6], ez[6], ev[6];
int en[6];

namespace {
struct spot {
    double x, y, z;  // model units
    bool operator==(const spot&) const = default;
};
struct valuerange {
    float low, high;
};
}  // namespace

static const int middle = 5;
static const int linewidth = 2;  // pixels; the mesh has 1

static spot spotof(int i) {
    return {ex[i], ey[i], ez[i]};
}

// The point at t of the way from corner i to corner j.
static spot between(int i, int j, double t) {
    if (t == 0) return spotof(i);
    if (t == 1) return spotof(j);
    const spot a = spotof(i), b = spotof(j);
    return {a.x + t * (b.x - a.x), a.y + t * (b.y - a.y), a.z + t * (b.z - a.z)};
}

static placedpoint placed(const spot& p, int nview) {
    const double scale = viewscale(nview);
    return project(viewcamera, {float(scale * p.x), float(scale * p.y), float(scale * p.z)});
}

static point2 project(const spot& p, int nview) {
    return placed(p, nview).at;
}

void prepareelement(int e, int nview) {
    const float factor = shapefactor(nview);
    const int corners = nodesoftype(elems(e, 0));
    for (int c = 1; c <= corners; ++c) {
        en[c] = int(elems(e, c));
        const auto at = nodes.row(0, en[c]), d = nodes.row(1, en[c]);
        ex[c] = at[0] + factor * d[0];
        ey[c] = at[1] + factor * d[1];
        ez[c] = at[2] + factor * d[2];
        ev[c] = plotready() ? plotvalue(e, c) : 0;
    }
}

static void setmiddle(int corners) {
    for (float* const list : {ex, ey, ez, ev}) {
        double sum = 0;
        for (int i = 1; i <= corners; ++i) sum += list[i];
        list[middle] = float(sum / corners);
    }
}

// Smallest and largest value of the corners, never above or below the bounds it starts from.
static valuerange rangeof(int corners, float start) {
    valuerange r{start, -start};
    for (int i = 1; i <= corners; ++i) {
        r.low = std::min(r.low, ev[i]);
        r.high = std::max(r.high, ev[i]);
    }
    return r;
}

// Runs work(a, b, c) for the corners of each triangle.
template <typename Work>
static void eachtriangle(int corners, Work work) {
    if (corners == 3) return work(1, 2, 3);
    for (int i = 1; i <= 4; ++i) work(i, i % 4 + 1, middle);
}

// --- lines --------------------------------------------------------------------------------------

static void drawlevel(surface& s, int nview, double level, colour c, const int* corner) {
    spot found[3];
    int count = 0;
    for (int side = 0; side < 3; ++side) {
        const int i = corner[side], j = corner[(side + 1) % 3];
        if (ev[i] == ev[j]) continue;
        const double t = (level - ev[i]) / (double(ev[j]) - ev[i]);
        if (t < 0 || t > 1) continue;
        const spot p = between(i, j, t);
        // A level through a corner meets both sides there.
        if (std::find(found, found + count, p) == found + count) found[count++] = p;
    }
    if (count < 2) return;
    const placedpoint a = placed(found[0], nview), b = placed(found[1], nview);
    s.line(a.at.x, a.at.y, b.at.x, b.at.y, c);
    notelinepiece(level, {(a.at.x + b.at.x) / 2, (a.at.y + b.at.y) / 2},
                  (a.turned.w + b.turned.w) / 2);
}

void paintlines(int nview, int corners) {
    surface* const s = target(nview);
    if (s == nullptr || (corners != 3 && corners != 4)) return;
    setmiddle(corners);
    s->drawwidth = linewidth;
    const valuerange range = rangeof(corners, 1e30f);
    const int levels = indexmax == indexmin ? 1 : indexcolors;  // without a width all are one
    for (int k = 0; k < levels; ++k) {
        const double level = levelof(k);
        if (level < range.low || level > range.high) continue;
        eachtriangle(corners, [&](int a, int b, int c) {
            const int corner[] = {a, b, c};
            drawlevel(*s, nview, level, colour(indexcolor(k)), corner);
        });
    }
    s->drawwidth = 1;
}

// --- bands --------------------------------------------------------------------------------------

namespace {
// The polygon in work: at most two points a side of the triangle.
struct bandpolygon {
    spot point[6];
    int count = 0;
    void add(const spot& p) {
        if (count > 0 && (p == point[count - 1] || p == point[0])) return;
        point[count++] = p;
    }
};
}  // namespace

// The part of the side from corner i to corner j that lies in the band, in that direction. The
// crossings are reckoned from the smaller value, so that both neighbours of a side find the same.
static void addside(bandpolygon& p, int i, int j, double low, double high) {
    const bool ascends = ev[i] <= ev[j];
    const int from = ascends ? i : j, to = ascends ? j : i;
    const double va = ev[from], vb = ev[to];
    if (vb < low || va > high) return;
    double tlow = 0, thigh = 1;
    if (va != vb) {
        tlow = std::clamp((low - va) / (vb - va), 0.0, 1.0);
        thigh = std::clamp((high - va) / (vb - va), 0.0, 1.0);
    }
    p.add(between(from, to, ascends ? tlow : thigh));
    p.add(between(from, to, ascends ? thigh : tlow));
}

static void drawband(surface& s, int nview, const bandpolygon& p) {
    if (p.count < 3) return;
    point2 corner[6];
    for (int i = 0; i < p.count; ++i) corner[i] = project(p.point[i], nview);
    s.polygon(corner, p.count, s.fillcolor);
}

// Twice the signed area of a triangle on the surface.
static double turn(const point2& a, const point2& b, const point2& c) {
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

// Do the corners bound the element's triangles? Not those of a concave or folded picture.
static bool isconvex(const point2* p, int corners) {
    int left = 0, right = 0;
    for (int i = 0; i < corners; ++i) {
        const double side = turn(p[i], p[(i + 1) % corners], p[(i + 2) % corners]);
        left += side > 0;
        right += side < 0;
    }
    return left == 0 || right == 0;
}

// The whole element in one polygon; false where that is not its picture.
static bool drawwhole(surface& s, int nview, int corners) {
    point2 p[4];
    for (int i = 0; i < corners; ++i) p[i] = project(spotof(i + 1), nview);
    if (!isconvex(p, corners)) return false;
    s.polygon(p, corners, s.fillcolor);
    return true;
}

// The pen reaches half a pixel beyond a polygon; drawn in by as much, a face covers itself and
// leaves its neighbours alone.
static void shrink(point2* p, int n, double by) {
    point2 mid{0, 0};
    for (int i = 0; i < n; ++i) mid = {mid.x + p[i].x / n, mid.y + p[i].y / n};
    for (int i = 0; i < n; ++i) {
        const double x = p[i].x - mid.x, y = p[i].y - mid.y, length = std::hypot(x, y);
        const double part = length > by ? 1 - by / length : 0;
        p[i] = {mid.x + part * x, mid.y + part * y};
    }
}

void paintface(int nview, int corners, int colour) {
    surface* const s = target(nview);
    if (s == nullptr || (corners != 3 && corners != 4)) return;
    s->fillsolid = true;
    s->fillcolor = colour;
    const double halfpixel = 0.5 / s->pixpercm();
    point2 p[4];
    for (int i = 0; i < corners; ++i) p[i] = project(spotof(i + 1), nview);
    if (isconvex(p, corners)) {
        shrink(p, corners, halfpixel);
        s->polygon(p, corners, colour);
    } else {
        setmiddle(corners);
        eachtriangle(corners, [&](int a, int b, int c) {
            const point2 part[] = {project(spotof(a), nview), project(spotof(b), nview),
                                   project(spotof(c), nview)};
            s->polygon(part, 3, colour);
        });
    }
    s->fillsolid = false;
}

static bool touches(int k, const valuerange& range) {
    return bandbound(k) <= range.high && bandbound(k + 1) >= range.low;
}

static bool lieswithin(int k, const valuerange& range) {
    return bandbound(k) <= range.low && bandbound(k + 1) >= range.high;
}

// What each triangle has in the band.
static void drawpieces(surface& s, int nview, int corners, int k) {
    const double low = bandbound(k), high = bandbound(k + 1);
    eachtriangle(corners, [&](int a, int b, int c) {
        bandpolygon p;
        addside(p, a, b, low, high);
        addside(p, b, c, low, high);
        addside(p, c, a, low, high);
        drawband(s, nview, p);
    });
}

// An element of two pixels has no room for bands: the pen would cover all but the last.
static bool istiny(const surface& s, int nview, int corners) {
    const double most = 2 / s.pixpercm();
    point2 low = project(spotof(1), nview), high = low;
    for (int i = 2; i <= corners; ++i) {
        const point2 p = project(spotof(i), nview);
        low = {std::min(low.x, p.x), std::min(low.y, p.y)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    }
    return high.x - low.x < most && high.y - low.y < most;
}

static bool drawtiny(surface& s, int nview, int corners) {
    const int k = bandof(ev[middle]);
    if (k < 0 || !istiny(s, nview, corners)) return false;
    s.fillcolor = colour(indexcolor(k));
    return drawwhole(s, nview, corners);
}

static void drawbands(surface& s, int nview, int corners, const valuerange& range) {
    const int bands = indexmax == indexmin ? 1 : indexcolors;  // without a width all are one
    for (int k = 0; k < bands; ++k) {
        if (!touches(k, range)) continue;
        s.fillcolor = colour(indexcolor(k));
        if (!lieswithin(k, range) || !drawwhole(s, nview, corners))
            drawpieces(s, nview, corners, k);
    }
}

bool paintfill(int nview, int corners) {
    surface* const s = target(nview);
    if (s == nullptr || (corners != 3 && corners != 4)) return true;
    setmiddle(corners);
    const valuerange range = rangeof(corners, fillstart);
    if (range.low >= fillstart) return false;
    s->fillsolid = true;
    if (!drawtiny(*s, nview, corners)) drawbands(*s, nview, corners, range);
    s->fillsolid = false;
    return true;
}
