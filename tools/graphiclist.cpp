// SPDX-License-Identifier: GPL-3.0-or-later
// Records and points.
#include "tools/graphiclist.h"

#include <algorithm>
#include <cmath>

point3 operator+(const point3& a, const point3& b) {
    return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}

point3 operator-(const point3& a, const point3& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

point3 operator*(double f, const point3& a) {
    return {f * a[0], f * a[1], f * a[2]};
}

double dot(const point3& a, const point3& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

point3 cross(const point3& a, const point3& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double lengthof(const point3& a) {
    return std::sqrt(dot(a, a));
}

// --- records ------------------------------------------------------------------------------------

int kindof(const graphiclist& list, int g) {
    const float stored = list(g, 0, 0);
    for (const int kind : {kindline, kindcurve, kindcircle})
        if (stored == float(kind)) return kind;
    return kindfree;  // what a damaged file holds, 1.5 or none at all, counts as free
}

const char* nameofkind(int kind) {
    return kind == kindline     ? "Line"
           : kind == kindcurve  ? "Arc"
           : kind == kindcircle ? "Circle"
                                : "";
}

point3 definitionpoint(const graphiclist& list, int g, int j) {
    const auto row = list.row(g, j);
    return {row[1], row[2], row[3]};
}

void setdefinitionpoint(graphiclist& list, int g, int j, const point3& at) {
    for (std::size_t k = 0; k < 3; ++k) list(g, j, long(k) + 1) = float(at[k]);
}

void openrecord(graphiclist& list, int g, int kind) {
    list(g, 0, 0) = float(kind);
    list(g, 0, 1) = list(g, 0, 2) = 1;
    list(g, 0, 3) = 0;
    std::ranges::fill(list.row(g, 3), 0.0f);
}

// The exponent of a factor and of its reciprocal, F or 1/F, the same one for both although each is
// rounded to a Single: rounding three times gives what rounding once gave.
static double exponentof(double f) {
    const float inverse = float(1 / f), back = 1 / inverse;
    if (!(inverse > 0) || !std::isfinite(inverse) || !std::isfinite(back))
        return std::max(f, 1 / f);
    return std::max(inverse, back);
}

double spacingat(double i, double n, double f) {
    if (!(n > 0)) n = 1;
    if (!(f > 0)) f = 1;
    const double share = i / n;
    if (f == 1) return share;
    return f > 1 ? std::pow(share, exponentof(f)) : 1 - std::pow((n - i) / n, exponentof(f));
}
