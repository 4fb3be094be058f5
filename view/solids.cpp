// SPDX-License-Identifier: GPL-3.0-or-later
// Sides of solids. Coordinates are scaled, as the projection takes them; the sections found in one
// picture are kept until a group's properties change.
#include "view/solids.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/session.h"
#include "view/localaxes.h"
#include "view/pen.h"
#include "view/scaleview.h"
#include "view/symbolstyle.h"

std::function<std::vector<std::vector<point2>>(int group)> sectionofgroup;

static const double thinnest = 0.06;  // centimetres on the surface

namespace {
using outline = std::vector<std::vector<point2>>;
struct section {
    std::array<double, groupfields + 1> made{};  // the properties that it was found for
    outline parts;
    double size = 0;  // the largest distance from the axis
};
struct point3 {
    double x, y, z;
};
struct side {
    std::vector<point3> at;
    double normal[3] = {};
    double depth = 0;
};
}  // namespace

static const section& sectionof(int g) {
    static std::vector<section> kept;
    if (int(kept.size()) <= g) kept.resize(std::size_t(g) + 1);
    section& s = kept[std::size_t(g)];
    std::array<double, groupfields + 1> now{};
    now[0] = 1;  // a section that was looked for
    for (int k = 1; k <= groupfields; ++k) now[std::size_t(k)] = groups(g, k);
    if (s.made == now) return s;
    s = {now, sectionofgroup ? sectionofgroup(g) : outline(), 0};
    for (const auto& part : s.parts)
        for (const point2& p : part) s.size = std::max(s.size, std::hypot(p.x, p.y));
    return s;
}

bool issolid(int e, int nview) {
    if (!symbolsdrawn.solid || e == 0) return false;
    const int elnn = nodesoftype(elems(e, 0)), g = egroup(e);
    if (elnn < 2 || g < 1 || g > ngroups()) return false;
    const double thick = elnn == 2 ? 2 * sectionof(g).size : groups(g, fieldthickness);
    return thick * viewscale(nview) >= thinnest;
}

// --- sides --------------------------------------------------------------------------------------

static point3 placed(int n, int nview) {
    const scaledpoint p = drawnplace(n, nview);
    return {p.x, p.y, p.z};
}

static point3 shifted(const point3& p, const double* a, double x, const double* b, double y) {
    return {p.x + x * a[0] + y * b[0], p.y + x * a[1] + y * b[1], p.z + x * a[2] + y * b[2]};
}

static double areaof(const std::vector<point2>& part) {
    double area = 0;
    for (std::size_t i = 0; i < part.size(); ++i) {
        const point2 a = part[i], b = part[(i + 1) % part.size()];
        area += (a.x * b.y - b.x * a.y) / 2;
    }
    return area;
}

// Round outlines have many corners; a thin member needs few of them.
static std::vector<point2> thinned(const std::vector<point2>& part, double size) {
    const std::size_t few = size < 0.3 ? 12 : 24;
    const std::size_t step = std::max<std::size_t>(part.size() / few, 1);
    std::vector<point2> list;
    for (std::size_t i = 0; i < part.size(); i += step) list.push_back(part[i]);
    return list;
}

// Newell's normal, of unit length.
static void findnormal(side& s) {
    double n[3] = {};
    for (std::size_t i = 0; i < s.at.size(); ++i) {
        const point3 &a = s.at[i], &b = s.at[(i + 1) % s.at.size()];
        n[0] += (a.y - b.y) * (a.z + b.z);
        n[1] += (a.z - b.z) * (a.x + b.x);
        n[2] += (a.x - b.x) * (a.y + b.y);
    }
    const double length = std::hypot(n[0], n[1], n[2]);
    for (int k = 0; k < 3; ++k) s.normal[k] = length > 0 ? n[k] / length : 0;
}

// A prism between two ends that have the same corners, anticlockwise as seen from the far end.
static void addprism(std::vector<side>& sides, const std::vector<point3>& near,
                     const std::vector<point3>& far) {
    const std::size_t n = near.size();
    for (std::size_t i = 0; i < n; ++i)
        sides.push_back({{near[i], near[(i + 1) % n], far[(i + 1) % n], far[i]}});
    sides.push_back({{near.rbegin(), near.rend()}});
    sides.push_back({far});
}

static std::vector<side> sidesofmember(int e, int nview) {
    const section& shape = sectionof(egroup(e));
    const double scale = viewscale(nview);
    const point3 ends[] = {placed(int(elems(e, 1)), nview), placed(int(elems(e, 2)), nview)};
    localaxes(e);
    std::vector<side> sides;
    double outside = 0;
    for (const auto& part : shape.parts) {
        std::vector<point2> corners = thinned(part, 2 * shape.size * scale);
        const double area = areaof(corners);
        if (area < 0) std::ranges::reverse(corners);
        // Holes lie inside and are not drawn.
        const bool hole =
            outside != 0 && std::fabs(area) < 0.999 * std::fabs(outside) && shape.parts.size() == 2;
        if (outside == 0) outside = area;
        if (hole) continue;
        std::vector<point3> at[2];
        for (int end = 0; end < 2; ++end)
            for (const point2& p : corners)
                at[end].push_back(shifted(ends[end], localy, scale * p.x, localz, scale * p.y));
        addprism(sides, at[0], at[1]);
    }
    return sides;
}

static std::vector<side> sidesofplate(int e, int elnn, int nview) {
    localaxes(e);
    const double half = viewscale(nview) * groups(egroup(e), fieldthickness) / 2;
    std::vector<point3> at[2];
    for (int face = 0; face < 2; ++face)
        for (int k = 1; k <= elnn; ++k)
            at[face].push_back(shifted(placed(int(elems(e, k)), nview), localz,
                                       face == 0 ? -half : half, localz, 0));
    std::vector<side> sides;
    addprism(sides, at[0], at[1]);
    return sides;
}

// --- pictures -----------------------------------------------------------------------------------

static placedpoint projected(const point3& p) {
    return project(viewcamera, {float(p.x), float(p.y), float(p.z)});
}

// Many sides: the member is round, and has no edges along it but a few that show its place.
static bool isround(const std::vector<side>& sides) {
    const std::size_t angular = 14;  // sides of a beam with its ends
    return sides.size() > angular;
}

static void drawedges(surface& s, const std::vector<side>& sides) {
    const std::size_t step = isround(sides) ? sides.size() / 4 : 1;
    for (std::size_t i = 0; i < sides.size(); ++i) {
        const side& one = sides[i];
        if (one.at.size() == 4 && i % step != 0) continue;
        point2 before = projected(one.at.back()).at;
        for (const point3& p : one.at) {
            const point2 here = projected(p).at;
            s.line(before.x, before.y, here.x, here.y, drawcolor);
            before = here;
        }
    }
}

// A grey of shading laid over a colour.
static colour shaded(colour c, colour grey) {
    const auto part = [](int of, int by) { return of * by / 255; };
    return rgb(part(redof(c), redof(grey)), part(greenof(c), greenof(grey)),
               part(blueof(c), blueof(grey)));
}

static void drawsides(surface& s, std::vector<side>& sides, int e,
                      colour (*shade)(const double* normal)) {
    const double eye[] = {viewcamera.coshcosv, viewcamera.sinhcosv, viewcamera.sinv};
    for (side& one : sides) {
        findnormal(one);
        for (const point3& p : one.at) one.depth += projected(p).turned.w / double(one.at.size());
    }
    std::ranges::sort(sides, {}, &side::depth);
    const bool own = elemlabeltype(elementcolours).checked;
    std::vector<point2> corners;
    for (const side& one : sides) {
        const double edgeon = 1e-5;  // cosine to the line of sight
        if (eye[0] * one.normal[0] + eye[1] * one.normal[1] + eye[2] * one.normal[2] < edgeon)
            continue;
        corners.clear();
        for (const point3& p : one.at) corners.push_back(projected(p).at);
        const colour light = shade(one.normal);
        s.fillcolor = own ? shaded(groupcolor(egroup(e)), light) : light;
        const bool round = isround(sides) && one.at.size() == 4;
        s.polygon(corners.data(), int(corners.size()), round ? s.fillcolor : drawcolor);
    }
}

bool drawsolid(int e, int nview, colour (*shade)(const double* normal)) {
    surface* const s = target(nview);
    if (s == nullptr || !issolid(e, nview)) return false;
    const int elnn = nodesoftype(elems(e, 0));
    std::vector<side> sides = elnn == 2 ? sidesofmember(e, nview) : sidesofplate(e, elnn, nview);
    const keptpen pen(s);
    s->drawwidth = 1;
    s->fillsolid = shade != nullptr;
    if (shade != nullptr)
        drawsides(*s, sides, e, shade);
    else
        drawedges(*s, sides);
    return true;
}
