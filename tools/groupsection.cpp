// SPDX-License-Identifier: GPL-3.0-or-later
// Outlines of sections from the values of a group.
#include "tools/groupsection.h"

#include <cmath>
#include <utility>

#include "core/journal.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/runtime.h"
#include "core/session.h"
#include "core/textfile.h"
#include "files/kalfile.h"
#include "tools/sectionfile.h"
#include "tools/unitsform.h"
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

namespace {
struct shape {
    int type = -1;
    double area = 0, second[3] = {};  // I xx, I yy, I zz
    dimensions d{};
};
}  // namespace

// Whatever the model's unit: the areas tell how many of the shape's lengths it measures.
static outline outlineof(const shape& s, const sectionvalues& v) {
    if (s.type < 0 || !(s.area > 0)) return {};
    const double scale = std::sqrt(v.area / s.area), values[] = {v.ixx, v.iyy, v.izz};
    for (int k = 0; k < 3; ++k)
        if (!isnear(values[k], s.second[k] * std::pow(scale, 4), 1e-4)) return {};
    dimensions d = s.d;
    for (double& length : d) length *= scale;
    return centred(s.type, d);
}

static outline profileofgroup(const sectionvalues& v) {
    if (!hasdatabase()) return {};
    for (long s = 1; s <= sectcount; ++s) {
        shape record{findsectiontype(sectnames(s, 2)), sectdata(s, 1), {}, {}};
        for (int k = 0; k < 3; ++k) record.second[k] = sectdata(s, k + 2);
        for (std::size_t k = 0; k < ndims; ++k) record.d[k] = sectdata(s, long(k) + 5);
        if (outline found = outlineof(record, v); !found.empty()) return found;
    }
    return {};
}

// --- sections of typed dimensions ---------------------------------------------------------------

static const char* const shapesection = "shapes";

static std::vector<shape> readshapes(textin& in) {
    std::vector<shape> shapes;
    while (!in.atend()) {
        const std::string name = in.text();
        shape s{findsectiontype(name), 0, {}, {}};
        if (s.type < 0) in.fail(errtype, "there is no type of section \"" + name + "\"");
        for (double& length : s.d) length = in.number();
        s.area = in.number();
        for (double& second : s.second) second = in.number();
        shapes.push_back(s);
    }
    return shapes;
}

static std::vector<shape> keptshapes() {
    std::vector<shape> shapes;
    textin in = kalreader(shapesection);
    guarded([&] { shapes = readshapes(in); }, [](const runtimeerror&) {});
    return shapes;
}

void keepshape(int type, const dimensions& d, const sectionvalues& v) {
    std::string row = std::string("\"") + sectiontypes[type].name + "\"";
    for (const double length : d) row += "," + numbertext(length);
    for (const double value : {v.area, v.ixx, v.iyy, v.izz}) row += "," + numbertext(value);
    const std::string rows = kalsection(shapesection);
    if (rows.find(row + "\n") != rows.npos) return;
    const step change("Section", reaches::texts);
    putkalsection(shapesection, rows + row + "\n");
}

static void scaleshapes(double factor) {
    std::string rows;
    for (const shape& s : keptshapes()) {
        rows += std::string("\"") + sectiontypes[s.type].name + "\"";
        for (const double length : s.d) rows += "," + numbertext(roundedto(length * factor, 12));
        rows += "," + numbertext(roundedto(s.area * std::pow(factor, 2), 12));
        for (const double second : s.second)
            rows += "," + numbertext(roundedto(second * std::pow(factor, 4), 12));
        rows += "\n";
    }
    putkalsection(shapesection, rows);
}

// --- of a group ---------------------------------------------------------------------------------

static sectionvalues valuesof(int g) {
    return {groups(g, fieldthickness), groups(g, fieldixx), groups(g, fieldwxx),
            groups(g, fieldiyy),       groups(g, fieldwyy), groups(g, fieldizz),
            groups(g, fieldwzz)};
}

outline knownsection(int g) {
    const sectionvalues v = valuesof(g);
    if (!(v.area > 0) || !(v.ixx > 0)) return {};
    for (const shape& s : keptshapes())
        if (outline found = outlineof(s, v); !found.empty()) return found;
    return profileofgroup(v);
}

static outline sectionfor(int g) {
    outline found = knownsection(g);
    return found.empty() ? equivalentsection(valuesof(g)) : found;
}

void wiregroupsections() {
    sectionofgroup = sectionfor;
    checkkalsection(shapesection, [](textin& in) { readshapes(in); });
    static bool wired;
    if (!std::exchange(wired, true))
        unitconverters().push_back(
            [](const unitset& from, const unitset& to) { scaleshapes(unitfactor("L", from, to)); });
}
