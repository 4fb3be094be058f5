// SPDX-License-Identifier: GPL-3.0-or-later
// Formulas: Young and Budynas, Roark's Formulas for Stress and Strain, 7th ed., tables A.1
// and 10.1.
#include "exchange/shapes.h"

#include <algorithm>
#include <cmath>

#include "core/session.h"

shapevalues rectangle(double a, double b) {
    const double longer = std::max(a, b), shorter = std::min(a, b), r = shorter / longer;
    const double part = 1.0 / 3 - 0.21 * r * (1 - r * r * r * r / 12);
    return {a * b,
            a * b * b * b / 12,
            b * a * a * a / 12,
            longer * shorter * shorter * shorter * part,
            a,
            b};
}

shapevalues ellipticbar(double d1, double d2) {
    const double a = d1 / 2, b = d2 / 2;
    return {pi * a * b,
            pi * a * b * b * b / 4,
            pi * b * a * a * a / 4,
            pi * a * a * a * b * b * b / (a * a + b * b),
            d1,
            d2};
}

shapevalues tube(double radius, double wall) {
    const double inner = std::max(radius - wall, 0.0);
    const double i = pi / 4 * (std::pow(radius, 4) - std::pow(inner, 4));
    return {pi * (radius * radius - inner * inner), i, i, 2 * i, 2 * radius, 2 * radius};
}

// The hole may lie out of the middle; torsion by the closed thin wall.
shapevalues hollowbox(double a, double b, const std::array<double, 4>& t) {
    const double ha = a - t[0] - t[2], hb = b - t[1] - t[3];
    const double area = a * b - ha * hb;
    const double x = (t[2] - t[0]) / 2, y = (t[3] - t[1]) / 2;  // middle of the hole
    const double cx = -ha * hb * x / area, cy = -ha * hb * y / area;
    shapevalues s{area, 0, 0, 0, a, b};
    s.i1 = a * b * (b * b / 12 + cy * cy) - ha * hb * (hb * hb / 12 + (y - cy) * (y - cy));
    s.i2 = a * b * (a * a / 12 + cx * cx) - ha * hb * (ha * ha / 12 + (x - cx) * (x - cx));
    const double wa = a - (t[0] + t[2]) / 2, wb = b - (t[1] + t[3]) / 2;
    s.torsion = 4 * wa * wa * wb * wb / (wb / t[0] + wb / t[2] + wa / t[1] + wa / t[3]);
    return s;
}

// Torsion of open walls: the sum of length times wall cubed over three.
shapevalues flanged(const flangedshape& f) {
    struct wall {
        double a, b, x, y;  // sides along the axes, middle
    };
    const double height = f.depth - f.walls[0] - f.walls[1];
    const double x = f.webat * (std::max(f.widths[0], f.widths[1]) - f.web) / 2;
    const wall parts[] = {{f.widths[0], f.walls[0], 0, f.walls[0] / 2},
                          {f.web, height, x, f.walls[0] + height / 2},
                          {f.widths[1], f.walls[1], 0, f.depth - f.walls[1] / 2}};
    shapevalues s;
    double mx = 0, my = 0;
    for (const wall& w : parts) {
        s.area += w.a * w.b;
        mx += w.a * w.b * w.x;
        my += w.a * w.b * w.y;
        const double thin = std::min(w.a, w.b), wide = std::max(w.a, w.b);
        s.torsion += wide * thin * thin * thin / 3;
    }
    for (const wall& w : parts) {
        const double dx = w.x - mx / s.area, dy = w.y - my / s.area;
        s.i1 += w.a * w.b * (w.b * w.b / 12 + dy * dy);
        s.i2 += w.a * w.b * (w.a * w.a / 12 + dx * dx);
    }
    s.depth1 = std::max({f.widths[0], f.widths[1], f.web});
    s.depth2 = f.depth;
    return s;
}

void putshape(const shapevalues& s, std::array<double, groupfields + 1>& fields) {
    fields[fieldthickness] = s.area;
    fields[fieldixx] = s.i1;
    fields[fieldiyy] = s.i2;
    fields[fieldizz] = s.torsion;
    if (s.depth2 > 0) fields[fieldwxx] = s.i1 / (s.depth2 / 2);
    if (s.depth1 > 0) fields[fieldwyy] = s.i2 / (s.depth1 / 2);
    if (s.depth1 > 0 && s.depth2 > 0)
        fields[fieldwzz] = s.torsion / (std::min(s.depth1, s.depth2) / 2);
}
