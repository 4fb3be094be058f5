// SPDX-License-Identifier: GPL-3.0-or-later
// Points along arcs, ellipses and splines.
#include "exchange/curves.h"

#include <algorithm>
#include <cmath>

#include "core/session.h"

static const double mostpieces = 100000;  // of one curve

static double distance(const triple& a, const triple& b) {
    return std::sqrt((a[0] - b[0]) * (a[0] - b[0]) + (a[1] - b[1]) * (a[1] - b[1]) +
                     (a[2] - b[2]) * (a[2] - b[2]));
}

static triple middle(const triple& a, const triple& b) {
    return {(a[0] + b[0]) / 2, (a[1] + b[1]) / 2, (a[2] + b[2]) / 2};
}

static int piecesof(double length, double turn, const fineness& how) {
    const double slack = 1 - 1e-9;  // a turn of exactly so many pieces is no piece more
    const double wanted = std::max(std::ceil(length * how.scale / how.longest * slack),
                                   std::ceil(turn / how.turn * slack));
    return int(std::clamp(wanted, 1.0, mostpieces));
}

chain arcpoints(const triple& centre, double radius, double from, double sweep, fineness& how) {
    const int pieces = piecesof(radius * std::fabs(sweep), std::fabs(sweep), how);
    chain points;
    for (int i = 0; i <= pieces; ++i) {
        const double angle = from + sweep * i / pieces;
        points.push_back({centre[0] + radius * std::cos(angle),
                          centre[1] + radius * std::sin(angle), centre[2]});
    }
    const double rise = radius * (1 - std::cos(sweep / pieces / 2));
    how.deviation = std::max(how.deviation, rise * how.scale);
    return points;
}

void addbulge(chain& points, const triple& b, double bulge, fineness& how) {
    const triple a = points.back();
    const double width = distance(a, b), least = 1e-9;
    if (std::fabs(bulge) < least || !(width > 0)) {
        points.push_back(b);
        return;
    }
    // The centre lies on the middle perpendicular, left of the chord for bulges up to 1.
    const double radius = width * (1 + bulge * bulge) / (4 * std::fabs(bulge));
    const double off = (1 - bulge * bulge) / (4 * bulge);
    const triple centre = {(a[0] + b[0]) / 2 - (b[1] - a[1]) * off,
                           (a[1] + b[1]) / 2 + (b[0] - a[0]) * off, a[2]};
    const double from = std::atan2(a[1] - centre[1], a[0] - centre[0]);
    chain arc = arcpoints(centre, radius, from, 4 * std::atan(bulge), how);
    arc.back() = b;
    points.insert(points.end(), arc.begin() + 1, arc.end());
}

// Halves a stretch of a curve until it is short and straight enough; adds its points without the
// first. How far the curve lies from a chord is looked at in the middle.
template <typename Curve>
static void subdivide(const Curve& at, double t0, const triple& p0, double t1, const triple& p1,
                      int depth, chain& points, fineness& how) {
    const double tm = (t0 + t1) / 2;
    const triple pm = at(tm);
    const double width = distance(p0, p1), rise = distance(pm, middle(p0, p1));
    // An arc of a given turn rises by the chord times the tangent of a quarter of the turn, halved.
    const bool isstraight = rise <= width / 2 * std::tan(how.turn / 4);
    const bool isshort = width * how.scale <= how.longest;
    const int deepest = 14;
    if ((isstraight && isshort) || depth >= deepest || double(points.size()) > mostpieces) {
        how.deviation = std::max(how.deviation, rise * how.scale);
        points.push_back(p1);
        return;
    }
    subdivide(at, t0, p0, tm, pm, depth + 1, points, how);
    subdivide(at, tm, pm, t1, p1, depth + 1, points, how);
}

// Between knots a curve may turn back on itself: each stretch begins with several pieces.
template <typename Curve>
static void addstretch(const Curve& at, double t0, double t1, chain& points, fineness& how) {
    const int begin = 4;
    triple p0 = at(t0);
    if (points.empty()) points.push_back(p0);
    for (int i = 1; i <= begin; ++i) {
        const double a = t0 + (t1 - t0) * (i - 1) / begin;
        const double b = t0 + (t1 - t0) * i / begin;
        const triple p1 = at(b);
        subdivide(at, a, p0, b, p1, 0, points, how);
        p0 = p1;
    }
}

chain ellipsepoints(const triple& centre, const triple& major, double ratio, const triple& normal,
                    double from, double to, fineness& how) {
    triple minor = {normal[1] * major[2] - normal[2] * major[1],
                    normal[2] * major[0] - normal[0] * major[2],
                    normal[0] * major[1] - normal[1] * major[0]};
    const double size =
        std::sqrt(normal[0] * normal[0] + normal[1] * normal[1] + normal[2] * normal[2]);
    for (double& v : minor) v *= size > 0 ? ratio / size : 0;
    while (to <= from) to += 2 * pi;
    const auto at = [&](double t) {
        triple p;
        for (std::size_t k = 0; k < 3; ++k)
            p[k] = centre[k] + major[k] * std::cos(t) + minor[k] * std::sin(t);
        return p;
    };
    chain points;
    addstretch(at, from, to, points, how);
    return points;
}

// --- splines ------------------------------------------------------------------------------------

// de Boor's recursion in homogeneous coordinates: Piegl and Tiller, The NURBS Book, 2nd ed., 4.2.
static triple splineat(const spline& s, std::size_t span, double t) {
    const auto p = std::size_t(s.degree);
    std::array<std::array<double, 4>, 12> d{};
    for (std::size_t j = 0; j <= p; ++j) {
        const std::size_t i = span - p + j;
        const double w = s.weights.empty() ? 1 : s.weights[i];
        for (std::size_t k = 0; k < 3; ++k) d[j][k] = s.control[i][k] * w;
        d[j][3] = w;
    }
    for (std::size_t r = 1; r <= p; ++r)
        for (std::size_t j = p; j >= r; --j) {
            const double low = s.knots[span - p + j], high = s.knots[span + 1 + j - r];
            const double part = high > low ? (t - low) / (high - low) : 0;
            for (std::size_t k = 0; k < 4; ++k) d[j][k] = (1 - part) * d[j - 1][k] + part * d[j][k];
        }
    const double w = d[p][3] != 0 ? d[p][3] : 1;
    return {d[p][0] / w, d[p][1] / w, d[p][2] / w};
}

static bool issound(const spline& s) {
    const std::size_t n = s.control.size();
    const int mostdegree = 10;
    return s.degree >= 1 && s.degree <= mostdegree && n > std::size_t(s.degree) &&
           s.knots.size() == n + std::size_t(s.degree) + 1 && std::ranges::is_sorted(s.knots) &&
           (s.weights.empty() || s.weights.size() == n) &&
           std::ranges::all_of(s.weights, [](double w) { return w > 0; });
}

namespace {
// A cubic through points, twice continuous: de Boor, A Practical Guide to Splines, rev. ed., IV.
class fittedcurve {
  public:
    explicit fittedcurve(const spline& s) : closed(s.closed) {
        for (const triple& p : s.fit)
            if (knots.empty() || distance(knots.back(), p) > 0) knots.push_back(p);
        if (closed && knots.size() > 1 && distance(knots.front(), knots.back()) > 0)
            knots.push_back(knots.front());
        for (std::size_t i = 0; i < stretches(); ++i)
            chords.push_back(distance(knots[i], knots[i + 1]));
        findslopes(s);
    }
    std::size_t stretches() const { return knots.empty() ? 0 : knots.size() - 1; }
    double length(std::size_t stretch) const { return chords[stretch]; }
    triple at(std::size_t stretch, double t) const {  // t from 0 to the length
        const double h = chords[stretch], u = t / h;
        triple p;
        for (std::size_t k = 0; k < 3; ++k)
            p[k] = (1 + 2 * u) * (1 - u) * (1 - u) * knots[stretch][k] +
                   u * (1 - u) * (1 - u) * h * slopes[stretch][k] +
                   u * u * (3 - 2 * u) * knots[stretch + 1][k] +
                   u * u * (u - 1) * h * slopes[stretch + 1][k];
        return p;
    }

  private:
    // Each row is ruled by its own slope, by at least twice the others: a sweep halves the error.
    void findslopes(const spline& s) {
        const std::size_t last = stretches();
        const int sweeps = 60;
        slopes.resize(knots.size());
        for (int sweep = 0; sweep < sweeps && last > 0; ++sweep)
            for (std::size_t i = 0; i <= last; ++i)
                for (std::size_t k = 0; k < 3; ++k) slopes[i][k] = slope(s, i, k);
    }
    double slope(const spline& s, std::size_t i, std::size_t k) const {
        const std::size_t last = stretches();
        const auto rise = [&](std::size_t n) {
            return (knots[n + 1][k] - knots[n][k]) / chords[n];
        };
        if (!closed && (i == 0 || i == last)) {
            const triple& direction = i == 0 ? s.starts : s.ends;
            if (const double size = distance(direction, {}); size > 0) return direction[k] / size;
            return i == 0 ? (3 * rise(0) - slopes[1][k]) / 2
                          : (3 * rise(last - 1) - slopes[last - 1][k]) / 2;
        }
        const std::size_t before = i == 0 ? last - 1 : i - 1, behind = i == last ? 0 : i;
        const double a = chords[before], b = chords[behind];
        return (3 * (b * rise(before) + a * rise(behind)) - b * slopes[before][k] -
                a * slopes[behind + 1][k]) /
               (2 * (a + b));
    }

    bool closed;
    chain knots, slopes;
    std::vector<double> chords;
};
}  // namespace

chain splinepoints(const spline& s, fineness& how) {
    chain points;
    if (s.control.empty()) {
        const fittedcurve curve(s);
        for (std::size_t i = 0; i < curve.stretches(); ++i)
            addstretch([&](double t) { return curve.at(i, t); }, 0, curve.length(i), points, how);
        return points;
    }
    if (!issound(s)) return points;
    const auto p = std::size_t(s.degree);
    for (std::size_t span = p; span < s.control.size(); ++span) {
        if (!(s.knots[span + 1] > s.knots[span])) continue;
        const auto at = [&](double t) { return splineat(s, span, t); };
        addstretch(at, s.knots[span], s.knots[span + 1], points, how);
    }
    return points;
}
