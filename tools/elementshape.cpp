// SPDX-License-Identifier: GPL-3.0-or-later
// Figures of an element's shape.
#include "tools/elementshape.h"

#include <algorithm>
#include <cmath>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/session.h"

point3 placeofnode(int n) {
    const auto row = nodes.row(0, n);
    return {row[0], row[1], row[2]};
}

bool hascorners(int e) {
    const auto row = elems.row(e);
    const int count = nodesoftype(row[0]);
    const auto stands = [](float n) {
        if (!(n >= 1 && n <= float(nnodes()))) return false;
        const auto at = nodes.row(0, long(n));
        return std::isfinite(at[0]) && std::isfinite(at[1]) && std::isfinite(at[2]);
    };
    return count > 0 && std::all_of(row.begin() + 1, row.begin() + 1 + count, stands);
}

double lengthofline(int e) {
    return lengthof(placeofnode(int(elems(e, 2))) - placeofnode(int(elems(e, 1))));
}

namespace {
struct ring {
    std::array<point3, 4> at;
    std::size_t count;
    const point3& operator[](std::size_t k) const { return at[k % count]; }
    point3 edge(std::size_t k) const { return (*this)[k + 1] - (*this)[k]; }
    // Twice the area, along the normal.
    point3 area() const {
        return count == 3 ? cross(edge(0), at[2] - at[0]) : cross(at[2] - at[0], at[3] - at[1]);
    }
};
}  // namespace

static ring ringof(int e) {
    ring r{};
    r.count = std::size_t(nodesoftype(elems(e, 0)));
    for (std::size_t k = 0; k < r.count; ++k) r.at[k] = placeofnode(int(elems(e, long(k) + 1)));
    return r;
}

// At each corner of a quadrilateral 2 a x b . n / (a a + b b) over its edges a and b, and of a
// triangle 2 sqrt(3) |a x b| over the sum of the squares of its edges: Knupp, Algebraic mesh
// quality metrics, SIAM Journal on Scientific Computing 23, 2001. The least corner counts.
static double qualityof(const ring& r) {
    const point3 area = r.area();
    const double size = lengthof(area);
    if (!(size > 0)) return 0;
    if (r.count == 3) {
        double squares = 0;
        for (std::size_t k = 0; k < 3; ++k) squares += dot(r.edge(k), r.edge(k));
        return 2 * std::sqrt(3.0) * size / squares;
    }
    double least = 1;
    for (std::size_t k = 0; k < 4; ++k) {
        const point3 a = r.edge(k), b = -1.0 * r.edge(k + 3);
        const double squares = dot(a, a) + dot(b, b);
        if (!(squares > 0)) return 0;
        least = std::min(least, 2 * dot(cross(a, b), area) / (size * squares));
    }
    return least;
}

double qualityof(int e) {
    if (nodesoftype(elems(e, 0)) < 3 || !hascorners(e)) return -1;
    return std::max(qualityof(ringof(e)), 0.0);
}

static double anglebetween(const point3& a, const point3& b) {
    return std::atan2(lengthof(cross(a, b)), dot(a, b)) * 180 / pi;
}

elementshape shapeof(int e) {
    elementshape s;
    const ring r = ringof(e);
    double longest = 0;
    for (std::size_t k = 0; k < r.count; ++k) longest = std::max(longest, lengthof(r.edge(k)));
    // The limits are those from which the solver refuses an element.
    const double nolength = 1e-9, noarea = 1e-6, notturned = 1e-6;
    for (std::size_t k = 0; k < r.count; ++k)
        for (std::size_t l = k + 1; l < r.count; ++l)
            s.collapsed = s.collapsed || !(lengthof(r[l] - r[k]) > nolength * longest);
    const point3 area = r.area();
    const double size = lengthof(area) / 2;
    if (s.collapsed || !(size > noarea * longest * longest)) {
        const double half = r.count == 4 ? lengthof(cross(r.edge(0), r[2] - r[0])) : 0;
        s.inverted = !s.collapsed && half > noarea * longest * longest;  // a bow tie
        s.collapsed = !s.inverted;
        return s;
    }
    const point3 up = (0.5 / size) * area;
    s.angle = 180;
    double least = longest;
    for (std::size_t k = 0; k < r.count; ++k) {
        const point3 next = r.edge(k), before = -1.0 * r.edge(k + r.count - 1);
        s.inverted =
            s.inverted || (r.count == 4 && !(dot(cross(next, before), up) > notturned * size));
        s.angle = std::min(s.angle, anglebetween(next, before));
        for (std::size_t l = 0; l < r.count; ++l) {
            const point3 to = r[l] - r[k];
            const double height = lengthof(cross(to, r.edge(k))) / lengthof(r.edge(k));
            if (l != k && l != (k + 1) % r.count) least = std::min(least, height);
        }
    }
    const double regular = r.count == 3 ? std::sqrt(3.0) / 2 : 1;
    s.aspect = regular * longest / least;
    if (r.count == 4) s.warp = std::fabs(dot(r.edge(0), up)) / 2 / std::sqrt(size);
    s.quality = std::max(qualityof(r), 0.0);
    return s;
}
