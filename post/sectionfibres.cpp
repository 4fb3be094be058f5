// SPDX-License-Identifier: GPL-3.0-or-later
// Fibres of angles, channels and tees.
#include "post/sectionfibres.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "core/codes.h"
#include "core/model.h"
#include "tools/groupsection.h"

using outline = std::vector<std::vector<point2>>;

namespace {
struct secondmoments {
    double xx = 0, yy = 0, xy = 0;  // of y^2, x^2 and x y
};
struct extent {
    double low = 0, high = 0;
    double far() const { return std::max(high, -low); }
    bool iseven() const { return std::fabs(high + low) < 1e-6 * (high - low); }
};
}  // namespace

// Of a polygon about the origin; twice the area of each triangle with it is the cross product.
static secondmoments momentsof(const std::vector<point2>& polygon) {
    secondmoments m;
    double area = 0;
    for (std::size_t k = 0; k < polygon.size(); ++k) {
        const point2 a = polygon[k], b = polygon[(k + 1) % polygon.size()];
        const double cross = a.x * b.y - b.x * a.y;
        area += cross / 2;
        m.xx += cross * (a.y * a.y + a.y * b.y + b.y * b.y) / 12;
        m.yy += cross * (a.x * a.x + a.x * b.x + b.x * b.x) / 12;
        m.xy += cross * (2 * a.x * a.y + a.x * b.y + b.x * a.y + 2 * b.x * b.y) / 24;
    }
    const double turn = area < 0 ? -1 : 1;
    return {turn * m.xx, turn * m.yy, turn * m.xy};
}

template <typename Of>
static extent extentof(const std::vector<point2>& corners, Of of) {
    extent e;
    for (const point2& p : corners) e = {std::min(e.low, of(p)), std::max(e.high, of(p))};
    return e;
}

// Coordinates whose farthest lies I / W away, as the group says: the whole moves where one side is
// farther than the other, as flanges that taper move the centroid, and grows where both are alike.
static void fitto(std::vector<point2>& corners, double point2::*of, double far) {
    const extent e = extentof(corners, [of](const point2& p) { return p.*of; });
    if (!std::isfinite(far) || std::fabs(far - e.far()) > 0.1 * e.far()) return;
    const double move = e.iseven() ? 0 : (e.high > -e.low ? 1 : -1) * (far - e.far());
    const double grow = e.iseven() ? far / e.far() : 1;
    for (point2& p : corners) p.*of = p.*of * grow + move;
}

// Holes are even about both axes, as what is around them; two angles back to back count both.
static sectionfibres findfibres(int g) {
    const outline parts = knownsection(g);
    if (parts.empty()) return {};
    sectionfibres f;
    secondmoments m;
    for (const std::vector<point2>& part : parts) {
        f.corners.insert(f.corners.end(), part.begin(), part.end());
        const secondmoments own = momentsof(part);
        m = {m.xx + own.xx, m.yy + own.yy, m.xy + own.xy};
    }
    const double ixx = groups(g, fieldixx), iyy = groups(g, fieldiyy);
    const double coupling = m.xy / std::sqrt(m.xx * m.yy);
    const bool even = extentof(f.corners, [](const point2& p) { return p.x; }).iseven() &&
                      extentof(f.corners, [](const point2& p) { return p.y; }).iseven();
    if (!(ixx > 0 && iyy > 0) || (even && std::fabs(coupling) < 1e-6)) return {};
    f.ixy = std::fabs(coupling) < 1e-6 ? 0 : coupling * std::sqrt(ixx * iyy);
    fitto(f.corners, &point2::x, iyy / groups(g, fieldwyy));
    fitto(f.corners, &point2::y, ixx / groups(g, fieldwxx));
    return f;
}

// Bending about axes that are no principal ones, sigma = a x + b y with My = integral of sigma y
// and Mz = -integral of sigma x: Boresi and Schmidt, Advanced Mechanics of Materials, chapter 7.
double sectionfibres::ofmy(const point2& p, double ixx, double iyy) const {
    return (iyy * p.y - ixy * p.x) / (ixx * iyy - ixy * ixy);
}

double sectionfibres::ofmz(const point2& p, double ixx, double iyy) const {
    return (ixy * p.y - ixx * p.x) / (ixx * iyy - ixy * ixy);
}

static std::map<int, sectionfibres> kept;

void dropfibres() {
    kept.clear();
}

const sectionfibres& fibresof(int g) {
    const auto found = kept.find(g);
    return found != kept.end() ? found->second : kept.emplace(g, findfibres(g)).first->second;
}
