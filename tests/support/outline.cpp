// SPDX-License-Identifier: GPL-3.0-or-later
// Integrals over outlines.
#include "tests/support/outline.h"

// Adds sign times the integrals over one polygon about the origin.
static void addpolygon(const std::vector<point2>& p, double sign, outlinevalues& v) {
    outlinevalues part;
    for (std::size_t i = 0; i < p.size(); ++i) {
        const point2 a = p[i], b = p[(i + 1) % p.size()];
        const double cross = a.x * b.y - b.x * a.y;
        part.area += cross / 2;
        part.x += (a.x + b.x) * cross / 6;
        part.y += (a.y + b.y) * cross / 6;
        part.ixx += (a.y * a.y + a.y * b.y + b.y * b.y) * cross / 12;
        part.iyy += (a.x * a.x + a.x * b.x + b.x * b.x) * cross / 12;
    }
    if (part.area < 0) sign = -sign;
    using value = outlinevalues;
    for (const auto m : {&value::area, &value::x, &value::y, &value::ixx, &value::iyy})
        v.*m += sign * part.*m;
}

outlinevalues outlineof(int type, const dimensions& d) {
    outlinevalues v;
    double sign = 1;
    for (const auto& polygon : sectionoutline(type, d)) {
        addpolygon(polygon, sign, v);
        if (type != dlprofile) sign = -1;  // what follows is a hole
    }
    v.x /= v.area;
    v.y /= v.area;
    v.ixx -= v.area * v.y * v.y;
    v.iyy -= v.area * v.x * v.x;
    return v;
}
