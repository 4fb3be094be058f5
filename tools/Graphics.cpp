// SPDX-License-Identifier: GPL-3.0-or-later
// Geometry and picture of graphic elements. State: the registers of the element loaded last.
#include "tools/Graphics.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "core/model.h"
#include "core/session.h"
#include "edit/pickshape.h"
#include "edit/snap.h"
#include "tools/beamlines.h"
#include "tools/circle.h"
#include "tools/path.h"
#include "view/moddraw.h"
#include "view/pen.h"
#include "view/scaleview.h"

float curvex[4], curvey[4], curvez[4];
short curvedeg = 2;
double curvebinom[3];
double linelength;

static int loadedkind;  // of the element in the registers; a circle without centre: line
static point3 loadedp, loadedend, loadedd;  // of a line: its points, the way between them

// --- geometry -----------------------------------------------------------------------------------

// Control points in the order point 1, point 3, point 2.
static void setcurve(const graphiclist& list, int g) {
    static const int order[] = {0, 1, 3, 2};
    for (int i = 1; i <= 3; ++i) {
        const auto row = list.row(g, order[i]);
        curvex[i] = row[1];
        curvey[i] = row[2];
        curvez[i] = row[3];
    }
    curvedeg = 2;
    curvebinom[0] = 1;
    for (int i = 1; i <= curvedeg; ++i) curvebinom[i] = curvebinom[i - 1] * (curvedeg - i + 1) / i;
}

static point3 curvepoint(double t) {
    const double weight[] = {(1 - t) * (1 - t), t * (1 - t), t * t};
    point3 at = {0, 0, 0};
    for (int i = 0; i <= 2; ++i) {
        const double f = curvebinom[i] * weight[i];
        at = at + f * point3{curvex[i + 1], curvey[i + 1], curvez[i + 1]};
    }
    return at;
}

bool setgraphic(graphiclist& list, int g) {
    if (kindof(list, g) == kindfree) return false;
    const bool circle = kindof(list, g) == kindcircle && evaluatecircle(list, g);
    loadedkind = circle ? kindcircle : kindline;
    if (kindof(list, g) == kindline) loadedkind = kindline;
    if (kindof(list, g) == kindcurve) loadedkind = kindcurve;
    if (loadedkind == kindcurve) setcurve(list, g);
    loadedp = definitionpoint(list, g, 1);
    loadedend = definitionpoint(list, g, 2);
    loadedd = loadedend - loadedp;
    return true;
}

point3 graphicpoint(double t) {
    if (loadedkind == kindcurve) return curvepoint(t);
    if (loadedkind == kindcircle) return circlepoint(circleangle * t);
    return loadedp + t * loadedd;
}

point3 graphicnode(double i, double n, double f) {
    if (loadedkind != kindline) return graphicpoint(spacingat(i, n, f));
    if (!(n > 0)) n = 1;
    if (!(f > 0)) f = 1;
    // Counted from the end where the nodes crowd; with equal spaces from the end that comes first
    // in x, y, z, so that the way the line was drawn does not tell.
    const bool backwards = f < 1 || (f == 1 && loadedend < loadedp);
    const point3 &from = backwards ? loadedend : loadedp, &to = backwards ? loadedp : loadedend;
    const double t = spacingat(backwards ? n - i : i, n, f < 1 ? 1 / f : f);
    return t == 1 ? to : from + t * (to - from);
}

double lengthofline(const graphiclist& list, int g) {
    return lengthof(definitionpoint(list, g, 2) - definitionpoint(list, g, 1));
}

void dline(int k) {
    const int g = graphsel(k, 0);
    const point3 p1 = definitionpoint(graphics, g, 1), p2 = definitionpoint(graphics, g, 2);
    const double length = lengthof(p2 - p1);
    if (length == 0) return;
    const point3 way = (linelength / length) * (p2 - p1);
    if (graphsel(k, 1) == 2)
        setdefinitionpoint(graphics, g, 2, p1 + way);
    else
        setdefinitionpoint(graphics, g, 1, p2 - way);
}

// The element as a chain of points, few for a line, many for the others.
static std::vector<point3> polylineof(graphiclist& list, int g) {
    const std::optional<path> p = pathof(list, g);
    return p ? polylineof(*p) : std::vector<point3>();
}

// --- picking and snapping -----------------------------------------------------------------------

// The point of the element nearest to a point in space, between its ends.
static bool footon(int g, const double* point, double* foot) {
    const point3 p = {point[0], point[1], point[2]};
    if (!setgraphic(graphics, g)) return false;
    const auto away = [&](double t) {
        const point3 d = graphicpoint(t) - p;
        return dot(d, d);
    };
    const int samples = 64, steps = 60;
    int best = 0;
    for (int i = 1; i <= samples; ++i)
        if (away(double(i) / samples) < away(double(best) / samples)) best = i;
    double low = double(std::max(best - 1, 0)) / samples;
    double high = double(std::min(best + 1, samples)) / samples;
    for (int i = 0; i < steps; ++i) {
        const double a = low + (high - low) / 3, b = high - (high - low) / 3;
        (away(a) < away(b) ? high : low) = away(a) < away(b) ? b : a;
    }
    const point3 at = graphicpoint((low + high) / 2);
    std::ranges::copy(at, foot);
    return true;
}

// --- drawing ------------------------------------------------------------------------------------

static const double markradius = 0.05;  // centimetres
static const int maxmarks = 1000;       // of one element; more would not be told apart

static void project(const point3& at, int nview) {
    projectplace(nview, at[0], at[1], at[2]);
}

void drawgraphic(graphiclist& list, int g, int nview) {
    surface* const s = target(nview);
    if (s == nullptr) return;
    const std::vector<point3> points = polylineof(list, g);
    double x = 0, y = 0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        project(points[i], nview);
        if (i > 0) s->line(x, y, scrx, scry, drawcolor);
        x = scrx;
        y = scry;
    }
}

void drawgraphicnodes(graphiclist& list, int g, int nview) {
    surface* const s = target(nview);
    if (s == nullptr || !setgraphic(list, g)) return;
    const double n = list(g, 0, 1) > 0 ? std::min(double(list(g, 0, 1)), 1e30) : 1,
                 f = list(g, 0, 2);
    const double step = std::max(1.0, std::ceil(n / maxmarks));
    const keptpen pen(s);
    s->fillsolid = true;
    s->fillcolor = drawcolor;
    for (double i = 0; i <= n; i += step) {
        project(graphicnode(i, n, f), nview);
        s->circle(scrx, scry, markradius, drawcolor);
    }
}

// The places of an element between which beams along it run: the ends of a line, the nodes of a
// curve.
static std::vector<point3> chainof(graphiclist& list, int g) {
    const double most = 10000;  // spaces of a curve that carries beams
    const double n = list(g, 0, 1), f = list(g, 0, 2);
    if (kindof(list, g) == kindline)
        return {definitionpoint(list, g, 1), definitionpoint(list, g, 2)};
    std::vector<point3> chain;
    if (!setgraphic(list, g) || !(n >= 1) || n > most) return chain;
    for (double i = 0; i <= n; ++i) chain.push_back(graphicnode(i, n, f));
    return chain;
}

static void drawallgraphics(int nview) {
    prepareview(nview);
    // Elsewhere the beams are drawn once more over the lines.
    const bool hides =
        mnudrawlist(hiddenline).checked && mnudrawlist(elementsdrawn).checked && ngraphics() > 0;
    const std::optional<beamlines> beams = hides ? std::optional<beamlines>(nview) : std::nullopt;
    for (int g = 1; g <= ngraphics(); ++g)
        if (!beams || !beams->lieon(chainof(graphics, g))) drawgraphic(graphics, g, nview);
}

static void drawallgraphicnodes(int nview) {
    prepareview(nview);
    for (int g = 1; g <= ngraphics(); ++g) drawgraphicnodes(graphics, g, nview);
}

static void drawpickedpoints(surface& s, int nview) {
    const double ring = 0.12;  // centimetres
    s.fillsolid = false;
    for (int i = 1; i <= graphsel2(0, 0); ++i) {
        const int g = graphsel2(i, 0);
        if (g < 1 || g > ngraphics() || kindof(graphics, g) == kindfree) continue;
        project(definitionpoint(graphics, g, graphsel2(i, 1)), nview);
        s.circle(scrx, scry, ring, drawcolor);
    }
}

// Those of graphsel with marks and picked points.
static void drawselectedgraphics(int nview) {
    surface* const s = target(nview);
    if (s == nullptr || graphsel(0, 0) == 0) return;
    const keptpen pen(s);
    prepareview(nview);
    s->drawwidth = 2;
    for (int i = 1; i <= graphsel(0, 0); ++i) {
        const int g = graphsel(i, 0);
        if (g < 1 || g > ngraphics()) continue;
        drawgraphic(graphics, g, nview);
        drawgraphicnodes(graphics, g, nview);
    }
    s->drawwidth = 1;
    drawpickedpoints(*s, nview);
}

void drawpatch(int p, int nview) {
    for (int j = 1; j <= std::min(int(patches(p, 0, 0)), maxpatchedges); ++j)
        for (int k = 1; k <= std::min(int(patches(p, j, 0)), maxedgepieces); ++k)
            if (const int g = patches(p, j, k); g >= 1 && g <= ngraphics())
                drawgraphic(graphics, g, nview);
}

static void drawallpatches(int nview) {
    prepareview(nview);
    for (int p = 1; p <= patches(0, 0, 0); ++p) drawpatch(p, nview);
}

static void drawselectedpatches(int nview) {
    surface* const s = target(nview);
    if (s == nullptr || patchsel(0) == 0) return;
    const keptpen pen(s);
    prepareview(nview);
    s->drawwidth = 2;
    for (int i = 1; i <= int(patchsel(0)); ++i) drawpatch(int(patchsel(i)), nview);
}

// In a colour of its own unless the caller erases.
static std::function<void(int)> incolour(colour& c, void (*draw)(int)) {
    return [&c, draw](int nview) {
        drawcolor = c;
        draw(nview);
    };
}

void wiregraphics() {
    layer(layers::graphicsfill).draw = incolour(graphcolor, drawallgraphicnodes);
    layer(layers::graphicslines).draw = incolour(graphcolor, drawallgraphics);
    layer(layers::patches).draw = incolour(edgecolor, drawallpatches);
    layer(layers::selectedpatches).draw = drawselectedpatches;
    layer(layers::selectedgraphics).draw = drawselectedgraphics;
    footongraphic = footon;
    shapeofgraphic = [](int g) { return polylineof(graphics, g); };
}
