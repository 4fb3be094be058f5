// SPDX-License-Identifier: GPL-3.0-or-later
// Value under the pointer, marks of highest and lowest value. State: the elements of the picture
// last asked about, by rows.
#include "post/probe.h"

#include <algorithm>
#include <cmath>

#include "core/catalogue.h"
#include "core/colours.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/textfile.h"
#include "post/contour.h"
#include "post/legend.h"
#include "post/plotunits.h"
#include "post/secondplot.h"
#include "view/drawelems.h"
#include "view/facehit.h"
#include "view/itemrows.h"
#include "view/moddraw.h"
#include "view/pen.h"
#include "view/scaleview.h"

point2 cornerplace(int e, int corner, int nview) {
    setnode(int(elems(e, corner)), nview);
    projectpoint(nview);
    return {scrx, scry};
}

bool isplottedin(int nview) {
    return plotready() && (iselementstress() || (iscontour() && isplotview(nview)));
}

// --- under the pointer --------------------------------------------------------------------------

namespace {
struct hit : facehit {
    int e = 0;
};
}  // namespace

static drawncorner cornerof(int e, int corner, int nview, double value) {
    const point2 at = cornerplace(e, corner, nview);
    return {at, rotw, value};
}

static bool hitplotted(int e, int elnn, int nview, const point2& p, hit& found) {
    drawncorner corner[4];
    for (int c = 0; c < elnn; ++c) corner[c] = cornerof(e, c + 1, nview, plotvalue(e, c + 1));
    return hitface(corner, elnn, p, found);
}

static const double reach = 0.15;  // of the pointer to a line element, centimetres

static bool hitline(int e, int nview, const point2& p, hit& found) {
    const drawncorner a = cornerof(e, 1, nview, plotvalue(e, 1)),
                      b = cornerof(e, 2, nview, plotvalue(e, 2));
    double t;
    if (distanceto(a.at, b.at, p, t) > reach) return false;
    found.value = a.value + t * (b.value - a.value);
    found.depth = a.depth + t * (b.depth - a.depth);
    return true;
}

// Where an element reaches on the surface, from top to bottom.
static rowspan spanof(int e, int nview) {
    const int elnn = nodesoftype(elems(e, 0));
    rowspan s{1e300, -1e300};
    for (int c = 1; c <= elnn; ++c) {
        const double y = cornerplace(e, c, nview).y;
        s = {std::min(s.low, y), std::max(s.high, y)};
    }
    return elnn == 2 ? rowspan{s.low - reach, s.high + reach} : s;
}

// The plotted elements of a picture, built anew where it has changed since.
static const itemrows& plottedrows(int nview) {
    static itemrows rows;
    static long picture = -1;
    static int view, count;
    if (picture == picturesdrawn && view == nview && count == nelems()) return rows;
    picture = picturesdrawn;
    view = nview;
    count = nelems();
    rows.build(count, [nview](int e, rowspan& s) {
        if (!isplotted(e) || !isshown(e, nview)) return false;
        s = spanof(e, nview);
        return true;
    });
    return rows;
}

static hit findhit(int nview, const point2& p) {
    hit best;
    plottedrows(nview).at(p.y, [&](int e) {
        const int elnn = nodesoftype(elems(e, 0));
        hit found;
        if (elnn == 2 ? !hitline(e, nview, p, found)
                      : elnn < 3 || !hitplotted(e, elnn, nview, p, found))
            return;
        found.e = e;
        if (best.e == 0 || found.depth > best.depth) best = found;
    });
    return best;
}

static int nearestcorner(int e, int nview, const point2& p) {
    int nearest = 1;
    double least = 1e300;
    for (int c = 1; c <= nodesoftype(elems(e, 0)); ++c) {
        const point2 at = cornerplace(e, c, nview);
        if (const double off = std::hypot(at.x - p.x, at.y - p.y); off < least)
            least = off, nearest = c;
    }
    return nearest;
}

// " (Wind)": the combination that an envelope has a value from.
static std::string governortext(int e, int corner) {
    const int c = plotgovernor(e, corner);
    return c >= 1 && c <= ncomb() ? " (" + shownname(lcombname(c)) + ")" : "";
}

std::string valueunder(int nview, double x, double y) {
    if (!valueatpointer || !isplottedin(nview)) return {};
    const ofview own(nview);
    const keptpoint kept;
    const keptpen pen;
    prepareview(nview);
    undeformed = isdeformed() ? 0 : 1;
    const hit found = findhit(nview, {x, y});
    if (found.e == 0) return {};
    return plotlabel() + " " + plotnumber(found.value) + behind(plotformula()) + " in element " +
           numbertext(found.e) + governortext(found.e, nearestcorner(found.e, nview, {x, y}));
}

// A value of 1 at one corner and 0 at the others is at a place the share of that corner.
plotplace placeunder(int nview, double x, double y) {
    plotplace found;
    const hit under = findhit(nview, {x, y});
    const int elnn = under.e == 0 ? 0 : nodesoftype(elems(under.e, 0));
    drawncorner corner[4];
    for (int c = 0; c < elnn; ++c) corner[c] = cornerof(under.e, c + 1, nview, 0);
    double t = 0;
    if (elnn == 2) distanceto(corner[0].at, corner[1].at, {x, y}, t);
    for (int c = 0; c < elnn; ++c) {
        facehit share{0, c == 0 ? 1 - t : t};
        corner[c].value = 1;
        if (elnn > 2 && !hitface(corner, elnn, {x, y}, share)) return {};
        corner[c].value = 0;
        found.share[c + 1] = share.value;
    }
    found.e = under.e;
    return found;
}

double valueat(const plotplace& at) {
    double value = 0;
    for (int c = 1; c <= nodesoftype(elems(at.e, 0)); ++c)
        value += at.share[c] * plotvalue(at.e, c);
    return value;
}

point2 pictureof(const plotplace& at, int nview, double& depth) {
    point2 sum{0, 0};
    depth = 0;
    for (int c = 1; c <= nodesoftype(elems(at.e, 0)); ++c) {
        const point2 p = cornerplace(at.e, c, nview);
        sum = {sum.x + at.share[c] * p.x, sum.y + at.share[c] * p.y};
        depth += at.share[c] * rotw;
    }
    return sum;
}

void tellvalue(int nview, double x, double y) {
    static bool told;
    const std::string text = valueunder(nview, x, y);
    if (!text.empty())
        theplatform().showstatus(text);
    else if (told)
        theplatform().showstatus(statusline());
    told = !text.empty();
}

// --- highest and lowest -------------------------------------------------------------------------

// Then the colour about the mark is not its own.
bool iscovered(const point2& at, double depth, int nview) {
    const double nothing = 1e-3;  // of the view's width: faces that meet in the corner
    if (iselementstress() || (!contourfilled && !mnudrawlist(hiddenline).checked)) return false;
    const hit front = findhit(nview, at);
    return front.e != 0 && front.depth > depth + nothing * vieww;
}

double drawplate(surface& s, double x, double y, const std::string& text) {
    const double rim = 0.05;  // centimetres
    s.font = elemlabelfont;
    s.textcolor = elemlabelcolor;
    s.fillsolid = true;
    s.fillcolor = backcolor;
    s.drawwidth = 1;
    const double top = y - s.textheight() / 2, bottom = top + s.textheight();
    const double right = x + s.textwidth(text) + 2 * rim;
    const point2 plate[] = {{x, top}, {right, top}, {right, bottom}, {x, bottom}};
    s.polygon(plate, 4, elemlabelcolor);
    s.moveto(x + rim, top);
    s.text(text);
    return right;
}

static void markplace(surface& s, int nview, const cornervalue& p, const char* word) {
    const double ring = 0.12, gap = 0.2;  // centimetres
    if (p.e == 0 || !isshown(p.e, nview)) return;
    const point2 at = cornerplace(p.e, p.corner, nview);
    const bool hidden = iscovered(at, rotw, nview);
    const keptpen pen(&s);
    s.fillsolid = !hidden;
    s.fillcolor = backcolor;  // the ring stands out from any band
    s.drawwidth = 2;
    if (hidden) s.drawstyle = pens::dotted;
    s.circle(at.x, at.y, ring, elemlabelcolor);
    s.drawstyle = pens::solid;
    drawplate(s, at.x + gap, at.y,
              std::string(word) + " " + plotnumber(p.value) + behind(plotformula()) +
                  governortext(p.e, p.corner) + (hidden ? " (behind)" : ""));
}

void drawextremes(int nview) {
    surface* const s = target(nview);
    if (s == nullptr || !markextremes || !isplottedin(nview)) return;
    const keptpen pen;
    prepareview(nview);
    undeformed = isdeformed() ? 0 : 1;
    markplace(*s, nview, highest, "Max");
    if (lowest.value != highest.value) markplace(*s, nview, lowest, "Min");
}
