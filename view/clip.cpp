// SPDX-License-Identifier: GPL-3.0-or-later
// Cutting to a box: lines after Y. Liang and B. Barsky, polygons after I. Sutherland and G.
// Hodgman.
#include "view/clip.h"

#include <algorithm>
#include <cmath>

static bool isfinite(const point2& p) {
    return std::isfinite(p.x) && std::isfinite(p.y);
}

// Cuts to the box of half side bound.
static bool clipto(point2& a, point2& b, double bound) {
    const double dx = b.x - a.x, dy = b.y - a.y;
    const double p[] = {-dx, dx, -dy, dy};
    const double q[] = {a.x + bound, bound - a.x, a.y + bound, bound - a.y};
    double from = 0, to = 1;
    for (int i = 0; i < 4; ++i) {
        if (p[i] == 0) {
            if (q[i] < 0) return false;
            continue;
        }
        const double t = q[i] / p[i];
        if (p[i] < 0)
            from = std::max(from, t);
        else
            to = std::min(to, t);
    }
    if (from > to) return false;
    const auto held = [&](double v) { return std::clamp(v, -bound, bound); };
    const point2 start = a;
    a = {held(start.x + from * dx), held(start.y + from * dy)};
    b = {held(start.x + to * dx), held(start.y + to * dy)};
    return true;
}

bool clipline(point2& a, point2& b) {
    const double most = 1e300;
    if (!isfinite(a) || !isfinite(b)) return false;
    for (const point2& p : {a, b})
        if (std::fabs(p.x) > most || std::fabs(p.y) > most) return false;
    // In steps: a box far smaller than the line is lost in the rounding of its ends.
    const double step = 1e6;
    const double reach = std::max({std::fabs(a.x), std::fabs(a.y), std::fabs(b.x), std::fabs(b.y)});
    std::vector<double> bounds = {farpixel};
    while (bounds.back() * step < reach) bounds.push_back(bounds.back() * step);
    for (; !bounds.empty(); bounds.pop_back())
        if (!clipto(a, b, bounds.back())) return false;
    return true;
}

// The part of a polygon on the inner side of one border; side tells how far inside a point lies.
template <typename Side>
static std::vector<point2> cut(const std::vector<point2>& p, Side side) {
    std::vector<point2> kept;
    for (std::size_t i = 0; i < p.size(); ++i) {
        const point2 &a = p[i], &b = p[(i + 1) % p.size()];
        const double ina = side(a), inb = side(b);
        if (ina >= 0) kept.push_back(a);
        if ((ina >= 0) == (inb >= 0)) continue;
        const double t = ina / (ina - inb);
        kept.push_back({a.x + t * (b.x - a.x), a.y + t * (b.y - a.y)});
    }
    return kept;
}

std::vector<point2> clippolygon(const point2* p, int n) {
    std::vector<point2> list(p, p + n);
    if (!std::ranges::all_of(list, isfinite)) return {};
    list = cut(list, [](const point2& v) { return v.x + farpixel; });
    list = cut(list, [](const point2& v) { return farpixel - v.x; });
    list = cut(list, [](const point2& v) { return v.y + farpixel; });
    return cut(list, [](const point2& v) { return farpixel - v.y; });
}
