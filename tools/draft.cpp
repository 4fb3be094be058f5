// SPDX-License-Identifier: GPL-3.0-or-later
// Shapes, fillet, split and trim.
#include "tools/draft.h"

#include <algorithm>
#include <cmath>

#include "core/model.h"
#include "core/numtext.h"
#include "core/runtime.h"
#include "core/session.h"
#include "core/views.h"
#include "tools/appended.h"
#include "tools/closestpoints.h"
#include "view/camera.h"

[[noreturn]] static void refuse(const std::string& text) {
    throw runtimeerror{errargument, text};
}

point3 sightline() {
    const camera c = cameraof(activeview);
    return {c.coshcosv, c.sinhcosv, c.sinv};
}

// --- shapes -------------------------------------------------------------------------------------

static std::vector<path> closed(const std::vector<point3>& corners) {
    std::vector<path> sides;
    for (std::size_t i = 0; i < corners.size(); ++i)
        sides.push_back(lineof(corners[i], corners[(i + 1) % corners.size()]));
    return sides;
}

std::vector<path> rectangle(const point3& a, const point3& c) {
    const point3 way = c - a;
    const double least = nodetol;
    std::vector<std::size_t> axes;
    for (std::size_t k = 0; k < 3; ++k)
        if (std::fabs(way[k]) > least) axes.push_back(k);
    if (axes.size() < 2)
        refuse("The two corners of a rectangle cannot lie on a line along an axis.");
    point3 b = a;
    b[axes[0]] = c[axes[0]];
    if (axes.size() == 3) b[axes[1]] = c[axes[1]];  // upright: z alone makes the other side
    return closed({a, b, c, a + (c - b)});
}

// Unit normal of the plane of a circle with this radius vector.
static point3 facing(const point3& radius, const point3& sight) {
    const double square = 1e-6, length = lengthof(radius);
    point3 normal{};
    double most = square;
    for (std::size_t k = 0; k < 3; ++k) {
        if (std::fabs(radius[k]) > square * length || std::fabs(sight[k]) <= most) continue;
        most = std::fabs(sight[k]);
        normal = {0, 0, 0};
        normal[k] = std::copysign(1.0, sight[k]);
    }
    if (lengthof(normal) > 0) return normal;
    normal = sight - dot(sight, radius) / (length * length) * radius;
    if (lengthof(normal) < square) normal = cross(radius, point3{sight[1], sight[2], sight[0]});
    return 1 / lengthof(normal) * normal;
}

std::vector<path> circleabout(const point3& centre, const point3& on, const point3& sight) {
    if (lengthof(on - centre) <= nodetol) refuse("The circle needs a point away from its centre.");
    const point3 normal = facing(on - centre, sight);
    const path whole = arcof(centre, on, normal, 2 * pi);
    std::vector<path> quarters;
    for (int i = 0; i < 4; ++i) quarters.push_back(whole.piece(i / 4.0, (i + 1) / 4.0));
    quarters.back().end = on;
    return quarters;
}

std::vector<path> arcabout(const point3& centre, const point3& start, const point3& towards,
                           const point3& sight) {
    const point3 from = start - centre, to = towards - centre;
    const double a = lengthof(from), b = lengthof(to), straight = 1e-6;
    if (a <= nodetol || b <= nodetol) refuse("The arc needs two points away from its centre.");
    point3 normal = cross(from, to);
    if (lengthof(normal) <= straight * a * b) normal = facing(from, sight);
    normal = (dot(normal, sight) < 0 ? -1.0 : 1.0) / lengthof(normal) * normal;
    double angle = std::atan2(dot(cross(from, to), normal), dot(from, to));
    if (angle <= straight) angle += 2 * pi;
    const path arc = arcof(centre, start, normal, angle);
    if (angle <= pi + straight) return {arc};
    return {arc.piece(0, 0.5), arc.piece(0.5, 1)};
}

void appendpaths(const std::vector<path>& paths) {
    needroomfor(0, 0, long(paths.size()));
    for (const path& p : paths) {
        const int g = ngraphics() + 1;
        storepath(graphics, g, p);
        graphics(0, 0, 0) = float(g);
    }
}

// --- fillet -------------------------------------------------------------------------------------

namespace {
struct leg {
    int g, moving;  // the end that goes to the arc
    point3 way;     // from the corner to the end that stays, unit
    double length;
};
}  // namespace

// The corner of the two lines, prolonged.
static point3 cornerof(const path& a, const path& b) {
    for (std::size_t k = 0; k < 3; ++k) {
        gmat1[1][k + 1] = a.start[k];
        gmat2[1][k + 1] = (a.end - a.start)[k];
        gmat1[2][k + 1] = b.start[k];
        gmat2[2][k + 1] = (b.end - b.start)[k];
    }
    intersectlines();
    if (!linehit) refuse("The two lines are parallel: there is no corner to round.");
    const point3 at = alongrow(1, lineparam[1]), other = alongrow(2, lineparam[2]);
    const double apart = 1e-5 * (lengthof(a) + lengthof(b));
    if (lengthof(at - other) > std::max(double(nodetol), apart))
        refuse("The two lines do not lie in one plane: they pass each other at a distance of " +
               numbertext(lengthof(at - other)) + ".");
    return 0.5 * (at + other);
}

// Where the corner lies within the line the picked end stays, else the one farther from it.
static leg legof(int g, int picked, const path& line, const point3& corner) {
    const double t = dot(corner - line.start, line.end - line.start) /
                     dot(line.end - line.start, line.end - line.start);
    const double within = nodetol / lengthof(line);
    int stays = t > 0.5 ? 1 : 2;
    if (t > within && t < 1 - within) stays = picked == 2 ? 2 : 1;
    const point3 way = (stays == 1 ? line.start : line.end) - corner;
    return {g, 3 - stays, 1 / lengthof(way) * way, lengthof(way)};
}

void fillet(double radius) {
    if (!(radius >= 0) || !std::isfinite(radius)) refuse("The radius cannot be below 0.");
    std::vector<leg> legs;
    point3 corner{};
    if (graphsel(0, 0) != 2) refuse("Select the two lines whose corner is to be rounded.");
    const int ga = graphsel(1, 0), gb = graphsel(2, 0);
    const auto a = pathof(graphics, ga), b = pathof(graphics, gb);
    if (!a || !b || a->kind != kindline || b->kind != kindline)
        refuse("Select the two lines whose corner is to be rounded.");
    corner = cornerof(*a, *b);
    for (const auto& [line, i] : {std::pair(*a, 1), std::pair(*b, 2)})
        legs.push_back(legof(graphsel(i, 0), graphsel(i, 1), line, corner));
    const double angle = std::acos(std::clamp(dot(legs[0].way, legs[1].way), -1.0, 1.0));
    const double cut = radius / std::tan(angle / 2),
                 room = std::min(legs[0].length, legs[1].length);
    if (!(cut < room * (1 - 1e-6)))
        refuse("The radius is too large for these lines: it must be below " +
               numbertext(std::floor(room * std::tan(angle / 2) * 1e4 + 0.5) / 1e4) + ".");
    std::vector<path> arc;
    if (radius > 0) {
        const point3 half = legs[0].way + legs[1].way;
        const point3 centre = corner + radius / std::sin(angle / 2) / lengthof(half) * half;
        const point3 normal = cross(legs[1].way, legs[0].way);
        arc = {
            arcof(centre, corner + cut * legs[0].way, 1 / lengthof(normal) * normal, pi - angle)};
        arc[0].end = corner + cut * legs[1].way;
    }
    appendpaths(arc);
    for (const leg& l : legs) setdefinitionpoint(graphics, l.g, l.moving, corner + cut * l.way);
}

// --- split and trim -----------------------------------------------------------------------------

static path pathnear(int g) {
    const auto p = g >= 1 && g <= ngraphics() ? pathof(graphics, g) : std::nullopt;
    if (!p) refuse("There is no graphic element here.");
    return *p;
}

// Patches that have g on an edge get the other part there too, in the order of the walk.
static void followsplit(int g, int rest) {
    for (int p = 1; p <= patches(0, 0, 0); ++p)
        for (int j = 1; j <= std::min(int(patches(p, 0, 0)), maxpatchedges); ++j) {
            const int count = patches(p, j, 0);
            for (int k = 1; k <= count && count < maxedgepieces; ++k) {
                if (patches(p, j, k) != g) continue;
                for (int i = count; i > k; --i) patches(p, j, i + 1) = patches(p, j, i);
                patches(p, j, k + 1) = rest;
                patches(p, j, 0) = count + 1;
                break;
            }
        }
}

void splitat(int g, const point3& at) {
    const path p = pathnear(g);
    const double t = nearestshare(p, at), reach = nodetol / std::max(lengthof(p), double(nodetol));
    if (t <= reach || t >= 1 - reach)
        refuse("The point lies at the end of the element: there is nothing to split.");
    auto [first, second] = cutat(p, t);
    appendpaths({second});
    storepath(graphics, g, first);
    followsplit(g, ngraphics());
}

void trimat(int g, const point3& at) {
    const path p = pathnear(g);
    const double here = nearestshare(p, at),
                 reach = nodetol / std::max(lengthof(p), double(nodetol));
    double low = 0, high = 1;
    for (int other = 1; other <= ngraphics(); ++other) {
        if (other == g) continue;
        const auto q = pathof(graphics, other);
        if (!q) continue;
        for (const auto& [s, t] : crossings(p, *q, nodetol)) {
            if (s <= here && s > low + reach) low = s;
            if (s > here && s < high - reach) high = s;
        }
    }
    const bool keepsstart = low > reach, keepsend = high < 1 - reach;
    if (!keepsstart && !keepsend)
        refuse("No other graphic element crosses this one: there is nothing to trim to.");
    if (keepsstart && keepsend) appendpaths({cutat(p, high).second});
    storepath(graphics, g, keepsstart ? cutat(p, low).first : cutat(p, high).second);
}
