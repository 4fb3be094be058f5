// SPDX-License-Identifier: GPL-3.0-or-later
// Parallels of chains of lines and circle sections, in their own plane.
#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "core/model.h"
#include "core/numtext.h"
#include "core/runtime.h"
#include "core/session.h"
#include "tools/draft.h"

using chain = std::vector<path>;  // end of one, start of the next

[[noreturn]] static void refuse(const std::string& text) {
    throw runtimeerror{errargument, text};
}

// --- chains of the selection --------------------------------------------------------------------

static bool meet(const point3& a, const point3& b) {
    return lengthof(a - b) <= nodetol;
}

// Takes the path that goes on from a place out of those left, turned so that it starts there.
static bool takenext(std::vector<path>& left, const point3& place, path& next) {
    for (auto at = left.begin(); at != left.end(); ++at) {
        if (!meet(at->start, place) && !meet(at->end, place)) continue;
        next = meet(at->start, place) ? *at : at->reversed();
        left.erase(at);
        return true;
    }
    return false;
}

static std::vector<chain> selectedchains() {
    std::vector<path> left;
    for (int i = 1; i <= graphsel(0, 0); ++i) {
        const auto p = pathof(graphics, graphsel(i, 0));
        if (!p) continue;
        if (p->kind == kindcurve)
            refuse(
                "The parallel of a curve is no curve of this kind: select lines and circle "
                "sections.");
        left.push_back(*p);
    }
    if (left.empty()) refuse("Select the lines and circle sections that get a parallel.");
    std::vector<chain> chains;
    while (!left.empty()) {
        chain c = {left.front()};
        left.erase(left.begin());
        path next;
        while (takenext(left, c.back().end, next)) c.push_back(next);
        while (takenext(left, c.front().start, next)) c.insert(c.begin(), next.reversed());
        chains.push_back(std::move(c));
    }
    return chains;
}

static bool isclosed(const chain& c) {
    return c.size() > 1 && meet(c.back().end, c.front().start);
}

// --- the plane ----------------------------------------------------------------------------------

// Unit normal of the plane through a chain and the point that tells the side.
static point3 normalof(const chain& c, const point3& side) {
    std::vector<point3> points = {side};
    for (const path& p : c)
        for (const double t : {0.0, 0.3, 0.6, 1.0}) points.push_back(p.at(t));
    const point3 origin = c.front().start;
    point3 normal{};
    for (const path& p : c)
        if (p.kind == kindcircle && lengthof(normal) == 0) normal = cross(p.u, p.v);
    for (std::size_t i = 0; i < points.size() && lengthof(normal) == 0; ++i)
        for (std::size_t j = points.size() - 1; j > i; --j) {
            const point3 a = points[i] - origin, b = points[j] - origin, n = cross(a, b);
            const double sine = 1e-4;
            if (i > 0 && lengthof(n) > sine * lengthof(a) * lengthof(b)) {
                normal = n;
                break;
            }
        }
    // A straight chain: the plane goes through the point.
    if (lengthof(normal) == 0) normal = cross(c.front().along(0), side - origin);
    if (!(lengthof(normal) > 0)) refuse("The point lies on the line: it tells no side.");
    normal = 1 / lengthof(normal) * normal;
    double size = 0;
    for (const path& p : c) size = std::max({size, lengthof(p), lengthof(p.at(1) - origin)});
    for (std::size_t i = 1; i < points.size(); ++i)
        if (std::fabs(dot(points[i] - origin, normal)) > std::max(double(nodetol), 1e-5 * size))
            refuse("The selected elements do not lie in one plane.");
    return normal;
}

// +1 where the point lies to the left of the chain as seen against the normal, else -1.
static double sideof(const chain& c, const point3& point, const point3& normal) {
    double nearest = -1, side = 1;
    for (const path& p : c) {
        const double t = nearestshare(p, point);
        const point3 away = point - p.at(t);
        // At a corner the element that the point stands beside tells, not the one it lies ahead of.
        const point3 left = cross(normal, p.along(t));
        const double across = dot(away, left) / std::max(lengthof(left), 1e-300);
        const double distance = lengthof(away) - 1e-6 * std::fabs(across);
        if (nearest >= 0 && distance >= nearest) continue;
        nearest = distance;
        side = across < 0 ? -1 : 1;
    }
    return side;
}

// --- parallels ----------------------------------------------------------------------------------

static path parallelof(const path& p, double distance, const point3& normal) {
    if (p.kind == kindline) {
        const point3 way = p.end - p.start;
        const point3 shift = distance / lengthof(way) * cross(normal, way);
        path q = lineof(p.start + shift, p.end + shift);
        q.spaces = p.spaces;
        q.factor = p.factor;
        return q;
    }
    const point3 axis = cross(p.u, p.v);
    const double radius = p.radius - (dot(axis, normal) > 0 ? distance : -distance);
    if (!(radius > 1e-6 * p.radius))
        refuse("The distance " + numbertext(std::fabs(distance)) +
               " is larger than the radius of a circle section, " + numbertext(p.radius) + ".");
    path q = arcof(p.centre, p.centre + radius * p.u, axis, p.angle);
    q.spaces = p.spaces;
    q.factor = p.factor;
    return q;
}

// Points where two prolonged paths of one plane meet.
static std::vector<point3> meetings(const path& a, const path& b, const point3& normal) {
    std::vector<point3> found;
    if (a.kind == kindline && b.kind == kindline) {
        const point3 da = a.end - a.start, db = b.end - b.start;
        const double det = dot(cross(da, db), normal);
        if (std::fabs(det) <= 1e-9 * lengthof(da) * lengthof(db)) return {};
        return {a.start + dot(cross(b.start - a.start, db), normal) / det * da};
    }
    if (a.kind == kindcircle && b.kind == kindline) return meetings(b, a, normal);
    if (a.kind == kindline) {
        const point3 d = 1 / lengthof(a.end - a.start) * (a.end - a.start);
        const point3 foot = a.start + dot(b.centre - a.start, d) * d;
        const double away = lengthof(foot - b.centre), rest = b.radius * b.radius - away * away;
        if (rest < 0) return {};
        return {foot - std::sqrt(rest) * d, foot + std::sqrt(rest) * d};
    }
    const point3 way = b.centre - a.centre;
    const double d = lengthof(way);
    if (!(d > 0)) return {};
    const double x = (d * d + a.radius * a.radius - b.radius * b.radius) / (2 * d);
    const double rest = a.radius * a.radius - x * x;
    if (rest < 0) return {};
    const point3 unit = 1 / d * way, across = cross(normal, unit);
    return {a.centre + x * unit + std::sqrt(rest) * across,
            a.centre + x * unit - std::sqrt(rest) * across};
}

// The path with another end: a line goes there, a circle section turns on or back to it.
static path endingat(const path& p, const point3& end) {
    if (p.kind == kindline) {
        path q = p;
        q.end = end;
        return q;
    }
    const point3 out = end - p.centre;
    double angle = std::atan2(dot(out, p.v), dot(out, p.u));
    while (angle < p.angle - pi) angle += 2 * pi;
    while (angle > p.angle + pi) angle -= 2 * pi;
    if (angle <= 0) angle += 2 * pi;
    path q = arcof(p.centre, p.start, cross(p.u, p.v), angle);
    q.end = end;
    q.spaces = p.spaces;
    q.factor = p.factor;
    return q;
}

static path startingat(const path& p, const point3& start) {
    return endingat(p.reversed(), start).reversed();
}

// Joins two parallels at their corner: the meeting nearest to both ends, else by a line.
static void join(chain& made, std::size_t i, std::size_t next, const point3& normal,
                 chain& bridges) {
    const point3 a = made[i].end, b = made[next].start, middle = 0.5 * (a + b);
    if (meet(a, b)) return;
    std::vector<point3> places = meetings(made[i], made[next], normal);
    if (places.empty()) {
        bridges.push_back(lineof(a, b));
        return;
    }
    const point3 at = *std::ranges::min_element(
        places, {}, [&](const point3& p) { return lengthof(p - middle); });
    made[i] = endingat(made[i], at);
    made[next] = startingat(made[next], at);
}

// A side that the corners have turned round was too short for the distance.
static void checkturned(const chain& from, const chain& made) {
    for (std::size_t i = 0; i < from.size(); ++i)
        if (from[i].kind == kindline &&
            dot(from[i].end - from[i].start, made[i].end - made[i].start) <= 0)
            refuse("The distance is too large: a side of the parallel would turn round.");
}

void offsetselected(double distance, const point3& side) {
    if (!(std::fabs(distance) > nodetol) || !std::isfinite(distance))
        refuse("The distance must be larger than the merge tolerance.");
    chain all;
    for (const chain& c : selectedchains()) {
        const point3 normal = normalof(c, side);
        const double left = distance * sideof(c, side, normal);
        chain made, bridges;
        for (const path& p : c) made.push_back(parallelof(p, left, normal));
        for (std::size_t i = 0; i + 1 < made.size(); ++i) join(made, i, i + 1, normal, bridges);
        if (isclosed(c)) join(made, made.size() - 1, 0, normal, bridges);
        checkturned(c, made);
        all.insert(all.end(), made.begin(), made.end());
        all.insert(all.end(), bridges.begin(), bridges.end());
    }
    appendpaths(all);
}
