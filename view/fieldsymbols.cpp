// SPDX-License-Identifier: GPL-3.0-or-later
// Heads and supports.
#include "view/fieldsymbols.h"

#include <algorithm>
#include <cmath>

#include "view/pen.h"
#include "view/symbolstyle.h"

// Centimetres, of symbols at 100 percent.
static const double headlength = 0.2, headwidth = 0.07;  // the width to each side
static const double tall = 0.3, wide = 0.18, wheel = 0.05, hatch = 0.1;
static const double least = 0.03;  // of a stroke that has a direction on the surface

static double sized(double length) {
    return length * symbolsdrawn.size / 100;
}

namespace {
// A place and two directions on the surface, the first towards the ground.
struct frame {
    point2 at, down, across;
    point2 place(double along, double aside) const {
        return {at.x + along * down.x + aside * across.x, at.y + along * down.y + aside * across.y};
    }
};
}  // namespace

static void filled(surface& s, std::initializer_list<point2> corners, colour c) {
    const keptpen pen(&s);
    s.fillsolid = true;
    s.fillcolor = c;
    s.polygon(corners.begin(), int(corners.size()), c);
}

static void ring(surface& s, point2 at, double radius, bool full, colour c) {
    const keptpen pen(&s);
    s.fillsolid = full;
    s.fillcolor = c;
    s.circle(at.x, at.y, radius, c);
}

static void towardseye(surface& s, point2 at, colour c) {
    ring(s, at, sized(headwidth), false, c);
    ring(s, at, sized(headwidth) / 3, true, c);
}

void drawheads(surface& s, point2 from, point2 tip, int heads, colour c) {
    const double dx = tip.x - from.x, dy = tip.y - from.y, length = std::hypot(dx, dy);
    if (!(length >= least)) return towardseye(s, from, c);
    const double share = 0.6;  // of the stroke, for all its heads
    const double head = std::min(sized(headlength), share * length / heads);
    const double half = head / headlength * headwidth;
    const frame f{tip, {-dx / length, -dy / length}, {dy / length, -dx / length}};
    for (int k = 0; k < heads; ++k)
        filled(
            s,
            {f.place(k * head, 0), f.place((k + 1) * head, half), f.place((k + 1) * head, -half)},
            c);
}

// The line of the ground with its strokes.
static void drawground(surface& s, const frame& f, double depth, colour c) {
    const auto stroke = [&](point2 a, point2 b) { s.line(a.x, a.y, b.x, b.y, c); };
    const double half = sized(wide) * 1.3;
    const int strokes = 4;
    stroke(f.place(depth, -half), f.place(depth, half));
    for (int k = 0; k < strokes; ++k) {
        const double aside = half * (2.0 * (k + 1) / strokes - 1);
        stroke(f.place(depth, aside), f.place(depth + sized(hatch), aside - 2 * half / strokes));
    }
}

static void drawtriangle(surface& s, const frame& f, double height, colour c) {
    const point2 corner[] = {f.at, f.place(height, sized(wide)), f.place(height, -sized(wide))};
    const keptpen pen(&s);
    s.fillsolid = false;
    s.polygon(corner, 3, c);
}

void drawsupport(surface& s, supports kind, point2 at, point2 ground, colour c) {
    const double length = std::hypot(ground.x, ground.y);
    const keptpen pen(&s);
    s.drawwidth = 1;
    if (!(length >= least)) {
        if (kind == supports::roller) return ring(s, at, sized(wide) / 2, false, c);
        ground = {0, 1};
    } else {
        ground = {ground.x / length, ground.y / length};
    }
    const frame f{at, ground, {-ground.y, ground.x}};
    const double height = sized(tall);
    if (kind == supports::clamp) {
        const double half = sized(wide), thick = sized(wheel);
        filled(s,
               {f.place(0, -half), f.place(0, half), f.place(thick, half), f.place(thick, -half)},
               c);
        return drawground(s, f, thick, c);
    }
    drawtriangle(s, f, height, c);
    if (kind == supports::pin) return drawground(s, f, height, c);
    for (const double aside : {-sized(wide) / 2, sized(wide) / 2})
        ring(s, f.place(height + sized(wheel), aside), sized(wheel), false, c);
    drawground(s, f, height + 2 * sized(wheel), c);
}
