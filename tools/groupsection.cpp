// SPDX-License-Identifier: GPL-3.0-or-later
// Outlines of sections from the values of a group.
#include "tools/groupsection.h"

#include <cmath>

#include "core/model.h"
#include "core/runtime.h"
#include "core/session.h"
#include "tools/sectionfile.h"
#include "view/solids.h"

using outline = std::vector<std::vector<point2>>;

static outline centred(int type, const dimensions& d) {
    outline parts = sectionoutline(type, d);
    if (parts.empty()) return parts;
    const point2 middle = sectioncentroid(type, parts);
    for (auto& part : parts)
        for (point2& p : part) p = {p.x - middle.x, p.y - middle.y};
    return parts;
}

static bool isnear(double a, double b, double share) {
    return std::fabs(a - b) <= share * std::fabs(b);
}

// Round: I xx and I yy are alike, and I zz is their sum, as it is of no other section.
// With R and r: A = pi (R^2 - r^2) and 4 I / A = R^2 + r^2.
static outline roundsection(const sectionvalues& v) {
    if (!isnear(v.ixx, v.iyy, 0.01) || !isnear(v.izz, v.ixx + v.iyy, 0.02)) return {};
    const double sum = 4 * v.ixx / v.area, difference = v.area / pi;
    const double outer = std::sqrt((sum + difference) / 2);
    const double inner = std::sqrt(std::max(sum - difference, 0.0) / 2);
    return centred(tubular, {2 * outer, outer - inner, 0, 0});
}

// Depth and width by the section moduli; flanges by I yy, in which the web has next to no part, and
// what is left of the area is the web.
static outline beamsection(const sectionvalues& v) {
    if (!(v.wxx > 0) || !(v.wyy > 0)) return {};
    const double h = 2 * v.ixx / v.wxx, b = 2 * v.iyy / v.wyy;
    if (isnear(b * h, v.area, 0.02)) return centred(prismaticbar, {b, h, 0, 0});
    const double tf = 6 * v.iyy / (b * b * b), tw = (v.area - 2 * b * tf) / (h - 2 * tf);
    if (!(tf < h / 2 && tw > 0 && tw < b / 2)) return {};
    return centred(beammetric, {b, h, tw, tf});
}

// A bar whose radii of gyration are the same; a round one where bending is not told.
static outline barsection(const sectionvalues& v) {
    const double b = std::sqrt(12 * v.iyy / v.area), h = std::sqrt(12 * v.ixx / v.area);
    if (b > 0 && h > 0) return centred(prismaticbar, {b, h, 0, 0});
    const double diameter = std::sqrt(4 * v.area / pi);
    return centred(tubular, {diameter, diameter / 2, 0, 0});
}

outline equivalentsection(const sectionvalues& v) {
    if (!(v.area > 0) || !std::isfinite(v.area) || !(v.ixx >= 0) || !(v.iyy >= 0)) return {};
    for (const auto find : {roundsection, beamsection, barsection})
        if (outline found = v.ixx > 0 || find == barsection ? find(v) : outline(); !found.empty())
            return found;
    return {};
}

// The database is read once, when the first solid is drawn; without one the values decide.
static bool hasdatabase() {
    static bool tried = false;
    if (sectcount == 0 && !tried) {
        tried = true;
        guarded([] { readsections(false); }, [](const runtimeerror&) {});
    }
    return sectcount > 0;
}

static outline profileofgroup(const sectionvalues& v) {
    if (!hasdatabase()) return {};
    for (long s = 1; s <= sectcount; ++s) {
        const int type = findsectiontype(sectnames(s, 2));
        const double area = sectdata(s, 1);
        if (type < 0 || !(area > 0)) continue;
        // Whatever the model's unit: the areas tell how many of the record's lengths it measures.
        const double scale = std::sqrt(v.area / area);
        const double values[] = {v.ixx, v.iyy, v.izz};
        bool same = true;
        for (int k = 0; k < 3 && same; ++k)
            same = isnear(values[k], sectdata(s, k + 2) * std::pow(scale, 4), 1e-4);
        if (!same) continue;
        dimensions d{};
        for (std::size_t k = 0; k < ndims; ++k) d[k] = sectdata(s, long(k) + 5) * scale;
        return centred(type, d);
    }
    return {};
}

static outline sectionfor(int g) {
    const sectionvalues v{groups(g, fieldthickness), groups(g, fieldixx), groups(g, fieldwxx),
                          groups(g, fieldiyy),       groups(g, fieldwyy), groups(g, fieldizz),
                          groups(g, fieldwzz)};
    outline found = v.area > 0 && v.ixx > 0 ? profileofgroup(v) : outline();
    return found.empty() ? equivalentsection(v) : found;
}

void wiregroupsections() {
    sectionofgroup = sectionfor;
}
