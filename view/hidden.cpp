// SPDX-License-Identifier: GPL-3.0-or-later
// Depth sort, shading and the painter's pass.
#include "view/hidden.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/platform.h"
#include "core/session.h"
#include "view/drawelems.h"
#include "view/localaxes.h"
#include "view/pen.h"
#include "view/scaleview.h"
#include "view/solids.h"
#include "view/surface.h"

Flag shadingon(true);
int shadecolor = shadegray;
float lightangxy = -30, lightangz = 50;
Integer lightintensity(255);

static const double farthest = -1e30;  // depth of a free slot

void inithidden() {
    shadingon = true;
    shadecolor = shadegray;
    lightangxy = -30;
    lightangz = 50;
    lightintensity = 255;
}

// --- depth sort ---------------------------------------------------------------------------------

namespace {
struct depthrow {
    double depth;
    int element;
};
}  // namespace

static std::vector<depthrow> finddepths(int nview) {
    std::vector<depthrow> rows(static_cast<std::size_t>(nelems()));
    for (int e = 1; e <= nelems(); ++e) {
        depthrow& row = rows[std::size_t(e - 1)];
        row = {farthest, e};
        if (nodesoftype(elems(e, 0)) == 0) continue;
        setcentre(e, nview);
        projectpoint(nview);
        if (rotw > farthest) row.depth = rotw;  // also false for what is no number
    }
    return rows;
}

// The selection sort "the greatest of 1..i, first met wins, changes places with i, for i from the
// top down". Its steps take one depth after the other; within a depth the foremost place is always
// taken, and a row of the same depth that comes to it is the foremost again. rows are in the order
// of the elements, sorted the same rows by ascending depth.
static std::vector<depthrow> selectionorder(std::vector<depthrow> rows,
                                            const std::vector<depthrow>& sorted) {
    std::vector<int> placeof(rows.size() + 1), places;  // of an element; of one depth
    for (std::size_t i = 0; i < rows.size(); ++i) placeof[std::size_t(rows[i].element)] = int(i);
    int top = int(rows.size()) - 1;
    while (top >= 0) {
        const double depth = sorted[std::size_t(top)].depth;
        places.clear();
        for (int i = top; i >= 0 && sorted[std::size_t(i)].depth == depth; --i)
            places.push_back(placeof[std::size_t(sorted[std::size_t(i)].element)]);
        std::ranges::sort(places);
        std::size_t first = 0;
        for (std::size_t step = 0; step < places.size(); ++step, --top) {
            depthrow &best = rows[std::size_t(places[first])], &last = rows[std::size_t(top)];
            std::swap(best, last);
            placeof[std::size_t(best.element)] = places[first];
            placeof[std::size_t(last.element)] = top;
            if (best.depth != depth) ++first;
        }
    }
    return rows;
}

void sortdepth(int nview) {
    prepareview(nview);
    std::vector<depthrow> rows = finddepths(nview), sorted = rows;
    std::ranges::sort(sorted, {}, &depthrow::depth);
    const auto same = [](const depthrow& a, const depthrow& b) { return a.depth == b.depth; };
    if (std::ranges::adjacent_find(sorted, same) != sorted.end())
        sorted = selectionorder(std::move(rows), sorted);
    for (std::size_t i = 0; i < sorted.size(); ++i) {
        elemdepth(long(i) + 1, 0) = sorted[i].element;
        elemdepth(long(i) + 1, 1) = sorted[i].depth;
    }
}

// --- shading ------------------------------------------------------------------------------------

colour shadeof(double cosine) {
    const int s = int(std::floor(lightintensity * (1 - (1 - cosine) / 2))) + 255 - lightintensity;
    return rgb(shadecolor == shadered ? 255 : s, shadecolor == shadegreen ? 255 : s,
               shadecolor == shadeblue ? 255 : s);
}

namespace {
struct direction {
    double x, y, z;
    double dot(const double* v) const { return x * v[0] + y * v[1] + z * v[2]; }
};
}  // namespace

static direction directionoflight() {
    const double a = double(lightangxy) * pi / 180, b = double(lightangz) * pi / 180;
    return {std::cos(a) * std::cos(b), std::sin(a) * std::cos(b), std::sin(b)};
}

static direction directionofeye() {
    return {viewcamera.coshcosv, viewcamera.sinhcosv, viewcamera.sinv};
}

// The facet's normal is turned to the eye; a line element is lit by its first local axis.
static colour shadeofelement(int e, const direction& light, const direction& eye) {
    localaxes(e);
    const double* const normal = nodesoftype(elems(e, 0)) == 2 ? localx : localz;
    const double side = eye.dot(normal) < 0 ? -1 : 1;
    return shadeof(side * light.dot(normal));
}

// Of a side of a solid, whose normal points outwards.
static colour shadeofside(const double* normal) {
    return shadingon ? shadeof(directionoflight().dot(normal)) : hidcolor;
}

// --- the pass -----------------------------------------------------------------------------------

static bool isoutlined(const point2* corner, int elnn, int nview) {
    const double share = 0.5;  // of the distance that dots keep: a line covers less
    for (int k = 0; k < elnn; ++k) {
        const point2 &a = corner[k], &b = corner[(k + 1) % elnn];
        if (std::hypot(b.x - a.x, b.y - a.y) < share * leastspacing(nview)) return false;
    }
    return true;
}

void drawfacet(int e, int nview) {
    surface* const s = target(nview);
    if (e == 0 || s == nullptr || !isshown(e, nview)) return;
    const auto row = elems.row(e);
    const int elnn = nodesoftype(row[0]);
    if (elnn == 0) return;
    if (elnn <= 2 && !(elnn == 2 && issolid(e, nview))) {
        drawelement(e, nview);
        return;
    }
    const keptpen pen(s);
    if (elemlabeltype(elementcolours).checked) drawcolor = s->fillcolor = groupcolor(egroup(e));
    const colour fill = s->fillcolor;
    s->fillsolid = true;
    if (!drawsolid(e, nview, shadeofside)) {
        const double pixels = s->pixpercm();
        point2 corner[4];
        for (int k = 0; k < elnn; ++k) {
            setnode(int(row[std::size_t(k + 1)]), nview);
            projectpoint(nview);
            corner[k] = {std::floor(pixels * scrx) / pixels, std::floor(pixels * scry) / pixels};
        }
        // Outlines side by side would leave nothing of the shading.
        s->polygon(corner, elnn, isoutlined(corner, elnn, nview) ? drawcolor : fill);
    }
    if (mnudrawlist(nodesdrawn).checked) drawelementnodes(e, nview);
    drawelementlabel(e, nview);  // in the inverse of the filling
}

static void drawfacets(int nview) {
    surface* const s = target(nview);
    if (s == nullptr) return;
    prepareview(nview);
    sortdepth(nview);
    const direction light = directionoflight();
    const direction eye = directionofeye();
    const keptpen pen(s);
    const colour outline = drawcolor;
    const bool axes = mnuSettingsItem(localaxison).checked;
    s->drawwidth = 1;
    for (int i = 1; i <= nelems(); ++i) {
        const int e = int(elemdepth(i, 0));
        if (elems(e, 0) == 0) continue;
        s->fillcolor = shadingon ? shadeofelement(e, light, eye) : hidcolor;
        // A shape keeps its one colour, unless groups are told apart by theirs.
        drawcolor =
            undeformed == 1 || elemlabeltype(elementcolours).checked ? colourofelement(e) : outline;
        drawfacet(e, nview);
        if (axes && isshown(e, nview)) drawlocalaxes(e, nview);
    }
}

void drawhidden(int nview) {
    guarded([&] { drawfacets(nview); },
            [](const runtimeerror&) {
                theplatform().message("Error Hiddenline; Try agian", icons::exclamation);
            });
}
