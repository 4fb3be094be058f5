// SPDX-License-Identifier: GPL-3.0-or-later
// Sums over the selection.
#include "edit/selectionsums.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/session.h"
#include "core/units.h"
#include "view/moddraw.h"

namespace {

using point3 = std::array<double, 3>;

struct bounds {
    point3 low{HUGE_VAL, HUGE_VAL, HUGE_VAL}, high{-HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
    void take(const point3& p) {
        for (std::size_t k = 0; k < 3; ++k) {
            low[k] = std::min(low[k], p[k]);
            high[k] = std::max(high[k], p[k]);
        }
    }
};

point3 placeof(long n) {
    const auto at = nodes.row(0, n);
    return {at[0], at[1], at[2]};
}

point3 between(const point3& a, const point3& b) {
    return {b[0] - a[0], b[1] - a[1], b[2] - a[2]};
}

double halfcross(const point3& a, const point3& b) {
    return 0.5 * std::hypot(a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2],
                            a[0] * b[1] - a[1] * b[0]);
}

bool isnode(float n) {
    return n >= 1 && n <= float(nnodes());
}

bool islink(int type) {
    return type == typespring2 || type == typerigid;
}

// A quadrilateral's area is that of its two triangles.
void takeelement(int e, selectionsums& sums, bounds& box) {
    const auto row = elems.row(e);
    const int type = int(row[0]), elnn = nodesoftype(row[0]);
    point3 corner[4];
    for (int k = 0; k < elnn; ++k) {
        if (!isnode(row[std::size_t(k + 1)])) return;
        corner[k] = placeof(long(row[std::size_t(k + 1)]));
        box.take(corner[k]);
    }
    const int g = egroup(e);
    const double density = g >= 1 && g <= ngroups() ? groups(g, fielddensity) : 0;
    double measure = 0;
    if (elnn == 2 && !islink(type)) {
        const point3 way = between(corner[0], corner[1]);
        sums.length += measure = std::hypot(way[0], way[1], way[2]);
    } else if (elnn >= 3) {
        measure = halfcross(between(corner[0], corner[1]), between(corner[0], corner[2]));
        if (elnn == 4)
            measure += halfcross(between(corner[0], corner[2]), between(corner[0], corner[3]));
        sums.area += measure;
    }
    if (type == typemass)
        sums.mass += density;
    else if (measure > 0 && density > 0)
        sums.mass += density * groups(g, fieldthickness) * measure;
    else if (measure > 0)
        sums.wholemass = false;
}

std::uint64_t mixed(std::uint64_t stamp, std::uint64_t word) {
    return (stamp ^ word) * 0x9E3779B97F4A7C15u ^ (stamp >> 29);
}

template <typename T>
std::uint64_t mixedlist(std::uint64_t stamp, const array1<T>& list) {
    const auto row = list.row();
    for (std::size_t i = 0; i <= std::size_t(row[0]) && i < row.size(); ++i)
        stamp = mixed(stamp, std::uint64_t(row[i]));
    return stamp;
}

std::string figure(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.4g", value);
    return text;
}

}  // namespace

static int countgraphics() {
    return graphsel(0, 0);
}

selectionsums sumselection() {
    selectionsums sums;
    bounds box;
    sums.nodes = int(nodesel(0));
    sums.elements = int(elemsel(0));
    sums.graphics = countgraphics();
    sums.patches = int(patchsel(0));
    for (int i = 1; i <= sums.nodes; ++i)
        if (isnode(float(nodesel(i)))) box.take(placeof(long(nodesel(i))));
    for (int i = 1; i <= sums.elements; ++i)
        if (const int e = int(elemsel(i)); e >= 1 && e <= nelems()) takeelement(e, sums, box);
    for (int i = 1; i <= sums.graphics; ++i) {  // whole, whichever of their points were picked
        const int g = graphsel(i, 0), kind = int(graphics(g, 0, 0));
        const int points = kind == kindcircle || kind == kindcurve ? 3 : 2;
        for (int j = 1; j <= points; ++j) {
            const auto at = graphics.row(g, j);
            box.take({at[1], at[2], at[3]});
        }
    }
    for (std::size_t k = 0; k < 3; ++k)
        sums.extent[k] = box.high[k] >= box.low[k] ? box.high[k] - box.low[k] : 0;
    return sums;
}

std::string selectioncounts() {
    const struct {
        int count;
        const char *one, *many;
    } parts[] = {{int(nodesel(0)), " node", " nodes"},
                 {int(elemsel(0)), " element", " elements"},
                 {countgraphics(), " graphic element", " graphic elements"},
                 {int(patchsel(0)), " patch", " patches"}};
    std::string text;
    for (const auto& p : parts)
        if (p.count > 0)
            text +=
                (text.empty() ? "" : ", ") + numbertext(p.count) + (p.count == 1 ? p.one : p.many);
    return text.empty() ? text : text + " selected";
}

std::string sumstext(const selectionsums& sums) {
    std::string text;
    const auto add = [&](const std::string& part) { text += (text.empty() ? "" : "; ") + part; };
    const auto unit = [](const char* formula) {
        const std::string name = unitstext.empty() ? "" : unitname(formula);
        return name.empty() || name == formula ? "" : " " + name;
    };
    if (sums.length > 0) add("length " + figure(sums.length) + unit("L"));
    if (sums.area > 0) add("area " + figure(sums.area) + unit("L^2"));
    if (sums.mass > 0)
        add((sums.wholemass ? "mass " : "mass (where known) ") + figure(sums.mass) + unit("M"));
    const auto& e = sums.extent;
    if (e[0] > 0 || e[1] > 0 || e[2] > 0)
        add(figure(e[0]) + " x " + figure(e[1]) + " x " + figure(e[2]) + unit("L"));
    return text;
}

std::size_t selectionstamp() {
    std::uint64_t stamp = mixed(std::uint64_t(picturesdrawn), std::uint64_t(graphsel2(0, 0)));
    stamp = mixedlist(mixedlist(mixedlist(stamp, nodesel), elemsel), patchsel);
    for (int i = 1; i <= graphsel2(0, 0); ++i)
        stamp = mixed(stamp, std::uint64_t(graphsel2(i, 0) * 4 + graphsel2(i, 1)));
    return std::size_t(stamp);
}
