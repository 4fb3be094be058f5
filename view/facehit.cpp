// SPDX-License-Identifier: GPL-3.0-or-later
// Triangles and lines under a point.
#include "view/facehit.h"

#include <algorithm>
#include <cmath>

static double turn(const point2& a, const point2& b, const point2& c) {
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

// By the shares of the three corners, when the point lies in the triangle.
static bool interpolate(const drawncorner& a, const drawncorner& b, const drawncorner& c,
                        const point2& p, facehit& found) {
    const double area = turn(a.at, b.at, c.at);
    if (area == 0) return false;
    const double sa = turn(p, b.at, c.at) / area, sb = turn(a.at, p, c.at) / area;
    const double sc = 1 - sa - sb;
    if (sa < 0 || sb < 0 || sc < 0) return false;
    found.value = sa * a.value + sb * b.value + sc * c.value;
    found.depth = sa * a.depth + sb * b.depth + sc * c.depth;
    return true;
}

bool hitface(const drawncorner* corner, int corners, const point2& p, facehit& found) {
    if (corners == 3) return interpolate(corner[0], corner[1], corner[2], p, found);
    drawncorner middle{{0, 0}, 0, 0};
    for (int c = 0; c < 4; ++c) {
        middle.at.x += corner[c].at.x / 4;
        middle.at.y += corner[c].at.y / 4;
        middle.depth += corner[c].depth / 4;
        middle.value += corner[c].value / 4;
    }
    for (int c = 0; c < 4; ++c)
        if (interpolate(corner[c], corner[(c + 1) % 4], middle, p, found)) return true;
    return false;
}

double distanceto(const point2& a, const point2& b, const point2& p, double& along) {
    const double x = b.x - a.x, y = b.y - a.y, square = x * x + y * y;
    along = square == 0 ? 0 : std::clamp(((p.x - a.x) * x + (p.y - a.y) * y) / square, 0.0, 1.0);
    return std::hypot(a.x + along * x - p.x, a.y + along * y - p.y);
}
