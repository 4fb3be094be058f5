// SPDX-License-Identifier: GPL-3.0-or-later
// Checks on the buffer's elements and on the contour that they fill.
#include "tools/meshcheck.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "core/model.h"
#include "core/session.h"
#include "tools/Graphics.h"

static point3 buffernode(int n) {
    const auto row = tmpnodes.row(n);
    return {row[1], row[2], row[3]};
}

static std::size_t cornersof(int e) {
    const auto row = tmpelems.row(e);
    return row[3] == 0 ? 2 : row[4] == 0 ? 3 : 4;
}

static point3 cornerof(int e, std::size_t k) {
    return buffernode(int(tmpelems.row(e)[k]));
}

// Twice the area of an element of 3 or 4 corners, along its normal.
static point3 areavector(int e) {
    const auto corner = [e](std::size_t k) { return cornerof(e, k); };
    if (cornersof(e) == 3) return cross(corner(2) - corner(1), corner(3) - corner(1));
    return cross(corner(3) - corner(1), corner(4) - corner(2));
}

// --- the contour --------------------------------------------------------------------------------

namespace {
struct contournode {
    point3 at;
    int edge;  // of the piece that begins here
};
struct flatness {
    bool flat = false;
    point3 normal{};
};
}  // namespace

// The edges one after the other round the region. With four, edges 2 and 3 run against it.
static std::vector<contournode> contour() {
    std::vector<contournode> ring;
    const auto add = [&](int e, bool backwards) {
        const int count = edgedata(e, 0);
        for (int k = 1; k <= count; ++k) {
            const point3 at = buffernode(edgedata(e, backwards ? count - k + 1 : k));
            if (!ring.empty() && lengthof(at - ring.back().at) < nodetol)
                ring.back().edge = e;  // a corner stands on both edges
            else
                ring.push_back({at, e});
        }
    };
    const bool four = edgedata(0, 0) == 4;
    add(1, false);
    add(four ? 4 : 2, false);
    if (four) add(2, true);
    add(3, four);
    if (ring.size() > 1 && lengthof(ring.back().at - ring.front().at) < nodetol) ring.pop_back();
    return ring;
}

// The plane through the first node, the one farthest from it, and the one farthest from their line.
static flatness planeof(const std::vector<contournode>& ring) {
    flatness plane;
    if (ring.size() < 3) return plane;
    const point3 origin = ring.front().at;
    point3 along{}, across{};
    double largest = 0;
    for (const contournode& c : ring) {
        if (lengthof(c.at - origin) > lengthof(along)) along = c.at - origin;
        for (const double x : c.at) largest = std::max(largest, std::fabs(x));
    }
    for (const contournode& c : ring) {
        const point3 n = cross(along, c.at - origin);
        if (lengthof(n) > lengthof(across)) across = n;
    }
    const double extent = lengthof(along), size = lengthof(across);
    if (!(size > 0)) return plane;
    plane.normal = (1 / size) * across;
    // Places are Singles, and what was drawn is not flat to the last digit.
    const double apart = 1e-5 * extent + 8 * largest * std::numeric_limits<float>::epsilon();
    plane.flat = std::ranges::all_of(ring, [&](const contournode& c) {
        return std::fabs(dot(c.at - origin, plane.normal)) <= apart;
    });
    return plane;
}

// Twice the area that the contour turns round, along its normal.
static point3 contourarea(const std::vector<contournode>& ring) {
    point3 sum{};
    const point3 origin = ring.front().at;
    for (std::size_t i = 1; i < ring.size(); ++i)
        sum = sum + cross(ring[i - 1].at - origin, ring[i].at - origin);
    return sum;
}

std::array<int, 2> crossingedges() {
    if (edgedata(0, 0) < 3) return {0, 0};
    const std::vector<contournode> ring = contour();
    const flatness plane = planeof(ring);
    if (!plane.flat) return {0, 0};
    const std::size_t count = ring.size();
    // Seen along the axis that the plane faces most.
    std::size_t drop = 0;
    for (std::size_t k = 1; k < 3; ++k)
        if (std::fabs(plane.normal[k]) > std::fabs(plane.normal[drop])) drop = k;
    const auto x = [&](std::size_t i) { return ring[i % count].at[(drop + 1) % 3]; };
    const auto y = [&](std::size_t i) { return ring[i % count].at[(drop + 2) % 3]; };
    // Which side of piece a its point c lies on.
    const auto sideof = [&](std::size_t a, std::size_t c) {
        return (x(a + 1) - x(a)) * (y(c) - y(a)) - (y(a + 1) - y(a)) * (x(c) - x(a));
    };
    const auto cross = [&](std::size_t a, std::size_t b) {
        return sideof(a, b) * sideof(a, b + 1) < 0 && sideof(b, a) * sideof(b, a + 1) < 0;
    };
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < count; ++i) order.push_back(i);
    const auto left = [&](std::size_t i) { return std::min(x(i), x(i + 1)); };
    std::ranges::sort(order, {}, left);
    for (std::size_t i = 0; i < count; ++i)
        for (std::size_t j = i + 1; j < count; ++j) {
            const std::size_t a = order[i], b = order[j];
            if (left(b) > std::max(x(a), x(a + 1))) break;
            if (cross(a, b))
                return {std::min(ring[a].edge, ring[b].edge), std::max(ring[a].edge, ring[b].edge)};
        }
    return {0, 0};
}

// --- elements -----------------------------------------------------------------------------------

// normal: what the element should turn about, or 0 for its own.
static bool isinverted(int e, const point3& normal, bool own) {
    const point3 area = areavector(e);
    const double size = lengthof(area);
    if (!(size > 0)) return true;
    const point3 up = own ? (1 / size) * area : normal;
    if (!(dot(area, up) > 0)) return true;
    const std::size_t corners = cornersof(e);
    const double straight = 1e-6 * size;  // a corner of 180 degrees, rounded
    for (std::size_t k = 1; k <= corners; ++k) {
        const point3 here = cornerof(e, k), next = cornerof(e, k % corners + 1),
                     before = cornerof(e, (k + corners - 2) % corners + 1);
        if (dot(cross(next - here, before - here), up) < -straight) return true;
    }
    return false;
}

namespace {
struct elementside {
    int from, to, element;
};
}  // namespace

static std::vector<elementside> sidesfrom(int first) {
    std::vector<elementside> sides;
    for (int e = first; e <= int(tmpelems(0, 0)); ++e) {
        const auto row = tmpelems.row(e);
        const std::size_t corners = cornersof(e);
        const std::size_t count = corners == 2 ? 1 : corners;  // a line has one side
        for (std::size_t k = 1; k <= count; ++k) {
            const auto [from, to] = std::minmax({int(row[k]), int(row[k % corners + 1])});
            sides.push_back({from, to, e});
        }
    }
    return sides;
}

// Calls met(e, cosine) for the two elements at each side between two: cosine of the angle between
// their normals, -1 where one has no area.
template <typename Met>
static void eachmeeting(int first, Met met) {
    std::vector<elementside> sides = sidesfrom(first);
    std::ranges::sort(sides, {}, [](const elementside& s) { return std::pair(s.from, s.to); });
    for (std::size_t i = 1; i < sides.size(); ++i) {
        const elementside &a = sides[i - 1], &b = sides[i];
        if (a.from != b.from || a.to != b.to) continue;
        const point3 n = areavector(a.element), m = areavector(b.element);
        const double size = lengthof(n) * lengthof(m);
        met(b.element, size > 0 ? dot(n, m) / size : -1);
    }
}

int foldedplaces(int first) {
    int count = 0;
    eachmeeting(first, [&](int, double cosine) { count += !(cosine > 0); });
    return count;
}

int invertedelements(int first) {
    const int count = int(tmpelems(0, 0));
    if (edgedata(0, 0) < 3 || first > count) return 0;
    const std::vector<contournode> ring = contour();
    const flatness plane = planeof(ring);
    point3 normal = plane.normal;  // contour and elements run along edge 1 first
    if (plane.flat && dot(contourarea(ring), normal) < 0) normal = -1.0 * normal;
    std::vector<bool> inverted(std::size_t(count) + 1, false);
    for (int e = first; e <= count; ++e)
        inverted[std::size_t(e)] = isinverted(e, normal, !plane.flat);
    const double liesback = -0.9;  // of the cosine; a gutter may well be as sharp as that
    if (!plane.flat)
        eachmeeting(first, [&](int e, double cosine) {
            if (cosine < liesback) inverted[std::size_t(e)] = true;
        });
    return int(std::ranges::count(inverted, true));
}

int shortsides(int first) {
    return int(std::ranges::count_if(sidesfrom(first), [](const elementside& s) {
        return lengthof(buffernode(s.from) - buffernode(s.to)) < nodetol;
    }));
}
