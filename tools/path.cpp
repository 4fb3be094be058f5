// SPDX-License-Identifier: GPL-3.0-or-later
// Graphic elements as values.
#include "tools/path.h"

#include <algorithm>
#include <cmath>

#include "core/session.h"
#include "tools/circle.h"

// --- points -------------------------------------------------------------------------------------

// The polar form of a quadratic Bezier curve: its values give points and control points of pieces.
static point3 polar(const path& p, double s, double t) {
    return (1 - s) * (1 - t) * p.start + ((1 - s) * t + s * (1 - t)) * p.third + s * t * p.end;
}

point3 path::at(double t) const {
    if (kind == kindline) return t == 1 ? end : start + t * (end - start);
    if (kind == kindcurve) return polar(*this, t, t);
    const double a = angle * t;
    return centre + radius * std::cos(a) * u + radius * std::sin(a) * v;
}

point3 path::along(double t) const {
    if (kind == kindline) return end - start;
    if (kind == kindcurve) return 2 * (1 - t) * (third - start) + 2 * t * (end - third);
    const double a = angle * t;
    return angle * radius * (std::cos(a) * v - std::sin(a) * u);
}

path lineof(const point3& from, const point3& to) {
    path p;
    p.start = from;
    p.end = to;
    return p;
}

path arcof(const point3& centre, const point3& start, const point3& normal, double angle) {
    path p;
    p.kind = kindcircle;
    p.centre = centre;
    p.radius = lengthof(start - centre);
    p.angle = angle;
    if (p.radius > 0) p.u = (1 / p.radius) * (start - centre);
    p.v = cross(normal, p.u);
    p.start = start;
    p.end = p.at(1);
    p.third = p.at(0.5);
    return p;
}

path path::piece(double from, double to) const {
    path p = *this;
    p.spaces = std::max(1.0, std::floor(spaces * (to - from) + 0.5));
    p.factor = 1;
    if (kind == kindcircle) {
        const double a = angle * from;
        p = arcof(centre, at(from), cross(u, v), angle * (to - from));
        p.u = std::cos(a) * u + std::sin(a) * v;
        p.v = std::cos(a) * v - std::sin(a) * u;
        p.spaces = std::max(1.0, std::floor(spaces * (to - from) + 0.5));
    }
    p.start = at(from);
    p.end = at(to);
    if (kind == kindcurve) p.third = polar(*this, from, to);
    return p;
}

path path::reversed() const {
    path p = kind == kindcircle ? arcof(centre, end, cross(v, u), angle) : *this;
    p.start = end;
    p.end = start;
    p.third = third;
    p.spaces = spaces;
    p.factor = factor > 0 ? 1 / factor : 1;
    return p;
}

// --- records ------------------------------------------------------------------------------------

std::optional<path> pathof(graphiclist& list, int g) {
    if (kindof(list, g) == kindfree) return {};
    const bool circle =
        kindof(list, g) == kindcircle && evaluatecircle(list, g) && kindof(list, g) == kindcircle;
    path p;
    if (circle) {
        const point3 out = circleradius * circleu;
        p = arcof(circlepoint(0) - out, circlepoint(0), circlen, circleangle);
    }
    p.kind = circle ? kindcircle : kindof(list, g) == kindcurve ? kindcurve : kindline;
    p.start = definitionpoint(list, g, 1);
    p.end = definitionpoint(list, g, 2);
    p.third = definitionpoint(list, g, 3);
    p.spaces = std::max(1.0, double(list(g, 0, 1)));
    p.factor = list(g, 0, 2) > 0 ? double(list(g, 0, 2)) : 1;
    return p;
}

void storepath(graphiclist& list, int g, const path& p) {
    openrecord(list, g, p.kind);
    setdefinitionpoint(list, g, 1, p.start);
    setdefinitionpoint(list, g, 2, p.end);
    setdefinitionpoint(list, g, 3, p.kind == kindline ? point3{} : p.third);
    list(g, 0, 1) = float(p.spaces);
    list(g, 0, 2) = float(p.factor);
}

// --- measures -----------------------------------------------------------------------------------

static int piecesof(const path& p) {
    const double perpiece = 3 * pi / 180;
    if (p.kind == kindcurve) return 40;
    return p.kind == kindcircle ? std::max(1, int(std::ceil(p.angle / perpiece))) : 1;
}

std::vector<point3> polylineof(const path& p) {
    const int pieces = piecesof(p);
    std::vector<point3> points;
    for (int i = 0; i <= pieces; ++i) points.push_back(p.at(double(i) / pieces));
    return points;
}

double lengthof(const path& p) {
    if (p.kind == kindcircle) return p.radius * p.angle;
    double length = 0;
    const std::vector<point3> points = polylineof(p);
    for (std::size_t i = 1; i < points.size(); ++i) length += lengthof(points[i] - points[i - 1]);
    return length;
}

// The nearest chord gives the start; then the way between point and path is made square to it.
double nearestshare(const path& p, const point3& to) {
    const auto away = [&](double t) { return lengthof(p.at(t) - to); };
    const int samples = p.kind == kindline ? 1 : 2 * piecesof(p);
    double best = 0;
    for (int i = 0; i < samples; ++i) {
        const double a = double(i) / samples, b = double(i + 1) / samples;
        const point3 chord = p.at(b) - p.at(a);
        const double square = dot(chord, chord);
        double t = a;
        if (square > 0) t += (b - a) * std::clamp(dot(to - p.at(a), chord) / square, 0.0, 1.0);
        if (away(t) < away(best)) best = t;
    }
    if (away(1) < away(best)) best = 1;
    const int steps = 20;
    for (int i = 0; i < steps && p.kind != kindline; ++i) {
        const point3 d = p.along(best);
        const double square = dot(d, d);
        if (!(square > 0)) break;
        const double next = std::clamp(best + dot(to - p.at(best), d) / square, 0.0, 1.0);
        if (away(next) >= away(best)) break;
        best = next;
    }
    return best;
}

// --- crossings ----------------------------------------------------------------------------------

namespace {
struct box {
    point3 low, high;
};
}  // namespace

static box boxof(const std::vector<point3>& points, double margin) {
    box b = {points.front(), points.front()};
    for (const point3& p : points)
        for (std::size_t k = 0; k < 3; ++k) {
            b.low[k] = std::min(b.low[k], p[k] - margin);
            b.high[k] = std::max(b.high[k], p[k] + margin);
        }
    return b;
}

static bool areapart(const box& a, const box& b) {
    for (std::size_t k = 0; k < 3; ++k)
        if (a.high[k] < b.low[k] || b.high[k] < a.low[k]) return true;
    return false;
}

// Makes the way between a(s) and b(t) shortest, Gauss-Newton; parallel ways end it.
static void approach(const path& a, const path& b, double& s, double& t) {
    const int steps = 30;
    for (int i = 0; i < steps; ++i) {
        const point3 da = a.along(s), db = b.along(t), gap = b.at(t) - a.at(s);
        const double aa = dot(da, da), bb = dot(db, db), ab = dot(da, db);
        const double det = aa * bb - ab * ab, least = 1e-12 * aa * bb;
        if (!(det > least)) return;
        const double ga = dot(gap, da), gb = dot(gap, db);
        s += (ga * bb - gb * ab) / det;
        t += (ga * ab - gb * aa) / det;
    }
}

std::vector<std::pair<double, double>> crossings(const path& a, const path& b, double reach) {
    std::vector<std::pair<double, double>> found;
    const std::vector<point3> pa = polylineof(a), pb = polylineof(b);
    // An arc stands off its chord by radius * (1 - cos 1.5 degrees) at most, a curve by less.
    const double sag = 4e-4 * std::max(lengthof(a), lengthof(b));
    const double scale = std::max(lengthof(a), lengthof(b));
    if (areapart(boxof(pa, reach + sag), boxof(pb, reach + sag)) || !(scale > 0)) return {};
    const double lasta = reach / std::max(lengthof(a), reach),
                 lastb = reach / std::max(lengthof(b), reach);
    const auto enter = [&](double s, double t) {
        if (s < -lasta || s > 1 + lasta || t < -lastb || t > 1 + lastb) return;
        s = std::clamp(s, 0.0, 1.0);
        t = std::clamp(t, 0.0, 1.0);
        if (lengthof(a.at(s) - b.at(t)) > reach) return;
        for (const auto& [known, other] : found)
            if (lengthof(a.at(known) - a.at(s)) <= reach) return;
        found.emplace_back(s, t);
    };
    for (const double t : {0.0, 1.0}) enter(nearestshare(a, b.at(t)), t);
    for (const double s : {0.0, 1.0}) enter(s, nearestshare(b, a.at(s)));
    const auto na = double(pa.size() - 1), nb = double(pb.size() - 1);
    for (std::size_t i = 0; i + 1 < pa.size(); ++i) {
        const box chord = boxof({pa[i], pa[i + 1]}, reach + sag);
        for (std::size_t j = 0; j + 1 < pb.size(); ++j) {
            if (areapart(chord, boxof({pb[j], pb[j + 1]}, 0))) continue;
            double s = (double(i) + 0.5) / na, t = (double(j) + 0.5) / nb;
            approach(a, b, s, t);
            enter(s, t);
        }
    }
    std::ranges::sort(found);
    return found;
}

// --- cutting ------------------------------------------------------------------------------------

// The factor with which a graded rest begins (or ends) with the space that it had. `share` is the
// first space over the length of the rest.
static double factorof(double share, double spaces) {
    if (spaces < 2 || !(share > 0) || !(share < 1)) return 1;
    return std::max(1.0, std::log(share) / std::log(1 / spaces));
}

std::pair<path, path> cutat(const path& p, double t) {
    std::pair<path, path> parts = {p.piece(0, t), p.piece(t, 1)};
    const double n = std::floor(p.spaces + 0.5), f = p.factor;
    if (n < 2) return parts;
    // Spaces between the start and the node nearest to the cut.
    double before = 1;
    while (before + 1 < n &&
           std::fabs(spacingat(before + 1, n, f) - t) < std::fabs(spacingat(before, n, f) - t))
        ++before;
    parts.first.spaces = before;
    parts.second.spaces = n - before;
    if (f > 1) {
        parts.first.factor = f;
        const double next = spacingat(before + 1, n, f);
        parts.second.factor = factorof((next - t) / (1 - t), n - before);
    } else if (f < 1) {
        parts.second.factor = f;
        const double last = spacingat(before - 1, n, f);
        parts.first.factor = 1 / factorof((t - last) / t, before);
    }
    return parts;
}
