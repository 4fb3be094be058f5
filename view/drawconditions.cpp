// SPDX-License-Identifier: GPL-3.0-or-later
// Strokes for constraints, loads and reactions.
#include "view/drawconditions.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "core/catalogue.h"
#include "core/formulas.h"
#include "core/model.h"
#include "core/session.h"
#include "view/drawelems.h"
#include "view/drawsupports.h"
#include "view/elementarrows.h"
#include "view/fieldsymbols.h"
#include "view/labels.h"
#include "view/localaxes.h"
#include "view/pen.h"
#include "view/scaleview.h"
#include "view/surface.h"
#include "view/symbolstyle.h"
#include "view/thinning.h"

namespace {
struct stroke {
    point2 from, tip;
};
}  // namespace

// A stroke from node n along global axis 0..2, length in scaled units.
static stroke nodestroke(surface& s, int n, int axis, double length, int nview, colour c) {
    setnode(n, nview);
    projectpoint(nview);
    const double x = scrx, y = scry;
    float* const along[] = {&curx, &cury, &curz};
    *along[axis] = float(*along[axis] + length);
    projectpoint(nview);
    s.line(x, y, scrx, scry, c);
    return {{x, y}, {scrx, scry}};
}

static bool isnode(int n) {
    return n >= 1 && n <= nnodes();
}

void drawconstraints(int nview) {
    if (symbolsdrawn.field) return drawsupports(nview);
    surface* const s = target(nview);
    if (ncon == 0 || s == nullptr) return;
    const keptpen pen(s);
    const onplane plane(*s, planes::constraints);
    prepareview(nview);
    const bool small = isovercontour(nview);
    const double unit = small ? symbollength() / 2 : symbollength();
    s->drawwidth = small ? 1 : 2;
    // Of each direction by itself: a support that holds three is seen as such.
    std::vector<thinning> strokes(7, thinning(vieww, viewh, leastspacing(nview)));
    for (const bool rotations : {true, false})
        for (int i = 1; i <= ncon; ++i) {
            const int dof = condof(i);
            if ((dof > 3) != rotations || dof < 1 || dof > 6 || !isnode(connode(i))) continue;
            setnode(connode(i), nview);
            projectpoint(nview);
            if (!strokes[std::size_t(dof)].accepts(scrx, scry)) continue;
            nodestroke(*s, connode(i), (dof - 1) % 3, rotations ? 2 * unit : unit, nview,
                       shown(rotations ? rotcolor : concolor));
        }
}

// Value of row i of the element loads of a case: in a buoyancy case the pressure at the height of
// the element's centre, 0 above the water plane and below the depth.
static double elementvalue(int lc, int i) {
    if (lctype(lc) != casebuoyancy) return elemload(lc, i, 2);
    const double level = lcpar(lc, buoyancylevel), depth = lcpar(lc, buoyancydepth),
                 density = lcpar(lc, buoyancydensity);
    localaxes(int(elemload(lc, i, 0)));
    const double z = axisorigin[2];
    return z > level || z < level - depth ? 0 : density * (level - z);
}

static bool iselementrow(int lc, int i) {
    const float e = elemload(lc, i, 0);
    return e >= 1 && e <= elems(0, 0) && elemload(lc, i, 1) >= 1 && elemload(lc, i, 1) <= 3;
}

namespace {
// The largest of each kind, which measures a unit; the strokes have one measure for all of them.
struct largestloads {
    double force = 0, moment = 0, online = 0, onface = 0;
    double& ofnodal(int dof) { return dof > 3 ? moment : force; }
    double& ofelement(int e) { return nodesoftype(elems(e, 0)) == 2 ? online : onface; }
    void take(int lc, double factor);
    void settle() {
        if (!symbolsdrawn.field)
            force = moment = online = onface = std::max({force, moment, online, onface});
    }
};
}  // namespace

void largestloads::take(int lc, double factor) {
    const auto meet = [factor](double& most, double value) {
        most = std::max(most, std::fabs(factor * value));
    };
    for (int i = 1; i <= loadnode(lc, 0); ++i) meet(ofnodal(loaddof(lc, i)), loadval(lc, i));
    for (int i = 1; i <= int(elemload(lc, 0, 0)); ++i)
        if (iselementrow(lc, i)) meet(ofelement(int(elemload(lc, i, 0))), elementvalue(lc, i));
}

// The end of a load: its heads, where loads have them, and its number, where that is asked for.
// Of those that begin and point alike some have them; the strokes cover each other as they are.
static void drawend(surface& s, const stroke& drawn, int lc, int dof, double value,
                    thinning& heads) {
    const bool moment = dof > 3;
    const colour c = shown(moment ? momcolor : loadcolor);
    if (!heads.accepts(drawn.tip.x, drawn.tip.y)) return;
    if (symbolsdrawn.field) drawheads(s, drawn.from, drawn.tip, moment ? 2 : 1, c);
    drawvalue(s, drawn.tip, value, nodalformula(lc, dof), c);
}

static void drawnodalloads(surface& s, int lc, double factor, largestloads& most, int nview) {
    const double closest = 0.1;  // centimetres between the ends of two loads
    thinning heads(vieww, viewh, closest);
    for (int i = 1; i <= loadnode(lc, 0); ++i) {
        const int dof = loaddof(lc, i);
        if (dof < 1 || dof > 6 || !isnode(loadnode(lc, i))) continue;
        const bool moment = dof > 3;
        const double unit = moment ? 2 * symbollength() : symbollength();
        const double value = factor * loadval(lc, i), largest = most.ofnodal(dof);
        if (largest == 0) continue;
        const stroke drawn = nodestroke(s, loadnode(lc, i), (dof - 1) % 3,
                                        factor * (loadval(lc, i) * unit / largest), nview,
                                        shown(moment ? momcolor : loadcolor));
        if (value != 0 && (symbolsdrawn.field || symbolsdrawn.values))
            drawend(s, drawn, lc, dof, value, heads);
    }
}

static void drawelementrows(int lc, double factor, largestloads& most, int nview) {
    // Of each direction by itself, as two of them on one element are both to be seen.
    std::vector<arrowroom> taken(3, arrowroom(vieww, viewh));
    for (int i = 1; i <= int(elemload(lc, 0, 0)); ++i) {
        if (!iselementrow(lc, i)) continue;
        const int e = int(elemload(lc, i, 0)), k = int(elemload(lc, i, 1)) - 1;
        const double value = factor * elementvalue(lc, i), largest = most.ofelement(e);
        if (largest == 0) continue;
        localaxes(e);
        const double* const axes[] = {localx, localy, localz};
        const double* const axis = axes[k];
        const double length = symbollength() * value / largest;
        if (symbolsdrawn.field) {
            drawelementarrows(e, {axis, length, value, elementformula(e), shown(loadcolor)},
                              taken[std::size_t(k)], nview);
            continue;
        }
        setpoint(nview, axisorigin[0], axisorigin[1], axisorigin[2]);
        const float from[3] = {curx, cury, curz};
        drawstroke(from, axis, length, nview, shown(loadcolor));
        if (surface* const s = target(nview);
            value != 0 && taken[std::size_t(k)].numbers.accepts(scrx, scry))
            drawvalue(*s, {scrx, scry}, value, elementformula(e), shown(loadcolor));
    }
}

static void drawcase(surface& s, int lc, double factor, largestloads& most, int nview) {
    drawnodalloads(s, lc, factor, most, nview);
    drawelementrows(lc, factor, most, nview);
}

namespace {
struct modelbox {
    double low[3] = {1e30, 1e30, 1e30}, high[3] = {-1e30, -1e30, -1e30};
};
}  // namespace

static modelbox boxofmodel() {
    modelbox box;
    for (int n = 1; n <= nnodes(); ++n)
        for (int k = 0; k < 3; ++k) {
            const double at = nodes(0, n, k);
            box.low[k] = std::min(box.low[k], at);
            box.high[k] = std::max(box.high[k], at);
        }
    return box;
}

// A horizontal rectangle at height z around the model, somewhat wider than it.
static void drawlevel(surface& s, const modelbox& box, double z, int nview) {
    const double wider = 0.1;  // of the model's largest extent, on each side
    double largest = 0;
    for (int k = 0; k < 3; ++k) largest = std::max(largest, box.high[k] - box.low[k]);
    const double margin = wider * largest;
    const double xs[] = {box.low[0] - margin, box.high[0] + margin};
    const double ys[] = {box.low[1] - margin, box.high[1] + margin};
    const float scale = viewscale(nview);
    for (int corner = 0; corner <= 4; ++corner) {
        curx = float(scale * xs[(corner % 4) == 1 || (corner % 4) == 2]);
        cury = float(scale * ys[(corner % 4) >= 2]);
        curz = float(scale * z);
        projectpoint(nview);
        if (corner == 0)
            s.moveto(scrx, scry);
        else
            s.lineto(scrx, scry, shown(loadcolor));
    }
}

// The water plane of a buoyancy case, and the bed unless it lies too deep to be of the picture.
static void drawwater(surface& s, int lc, int nview) {
    const double deepest = 2;  // of the model's height
    if (lctype(lc) != casebuoyancy || nnodes() == 0) return;
    const modelbox box = boxofmodel();
    const double level = lcpar(lc, buoyancylevel), depth = lcpar(lc, buoyancydepth);
    const keptpen pen(&s);
    s.drawstyle = pens::dotted;
    s.drawwidth = 1;
    drawlevel(s, box, level, nview);
    if (depth > 0 && depth <= deepest * (box.high[2] - box.low[2]))
        drawlevel(s, box, level - depth, nview);
}

// The combination's nodal forces, row 0 of dispres, where they have been read.
static void drawreactions(surface& s, int nview) {
    if (dispres.upper2 < nnodes()) return;
    double longest = 0;
    const auto length = [](int n) {
        return std::sqrt(dispres(0, n, 1) * dispres(0, n, 1) + dispres(0, n, 2) * dispres(0, n, 2) +
                         dispres(0, n, 3) * dispres(0, n, 3));
    };
    for (int n = 1; n <= nnodes(); ++n) longest = std::max(longest, length(n));
    if (longest == 0) return;
    const colour red = rgb(255, 0, 0);
    thinning heads(vieww, viewh, leastspacing(nview));
    for (int n = 1; n <= nnodes(); ++n) {
        if (length(n) == 0) continue;
        setnode(n, nview);
        projectpoint(nview);
        const double x = scrx, y = scry;
        curx = float(curx + dispres(0, n, 1) * symbollength() / longest);
        cury = float(cury + dispres(0, n, 2) * symbollength() / longest);
        curz = float(curz + dispres(0, n, 3) * symbollength() / longest);
        projectpoint(nview);
        s.line(x, y, scrx, scry, shown(red));
        if (!heads.accepts(scrx, scry)) continue;
        if (symbolsdrawn.field) drawheads(s, {x, y}, {scrx, scry}, 1, shown(red));
        drawvalue(s, {scrx, scry}, length(n), "F", shown(red));
    }
}

static bool iscombination(int c) {
    return c >= 1 && c <= ncomb();
}

void drawloads(int nview) {
    surface* const s = target(nview);
    if (s == nullptr || viewloads(noloads).checked) return;
    const keptpen pen(s);
    const onplane plane(*s, planes::loads);
    prepareview(nview);
    s->drawwidth = symbolsdrawn.field ? 1 : 2;
    s->font = nodelabelfont;
    largestloads most;
    if (viewloads(activecase).checked) {
        most.take(curlc, 1);
        most.settle();
        drawcase(*s, curlc, 1, most, nview);
        drawwater(*s, curlc, nview);
    } else {
        const bool combination = viewloads(activecombination).checked;
        const auto factor = [&](int lc) {
            if (!combination) return 1.0f;
            return iscombination(curlcomb) ? lcomb(curlcomb, lc) : 0.0f;  // else a mode's number
        };
        for (int lc = 1; lc <= nlc(); ++lc) most.take(lc, factor(lc));
        most.settle();
        for (int lc = 1; lc <= nlc(); ++lc) {
            drawcase(*s, lc, factor(lc), most, nview);
            if (factor(lc) != 0) drawwater(*s, lc, nview);
        }
        drawreactions(*s, nview);
    }
}
