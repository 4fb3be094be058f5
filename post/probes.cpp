// SPDX-License-Identifier: GPL-3.0-or-later
// The probes live in the model's further data, section "probes", a row x,y,z each. State: in which
// element each was found last.
#include "post/probes.h"

#include <algorithm>
#include <cmath>

#include "core/catalogue.h"
#include "core/colours.h"
#include "core/journal.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "edit/Mouseprocedures.h"
#include "files/kalfile.h"
#include "post/contour.h"
#include "post/legend.h"
#include "post/plotunits.h"
#include "post/secondplot.h"
#include "view/drawelems.h"
#include "view/moddraw.h"
#include "view/pen.h"
#include "view/scaleview.h"

static const char* const probesection = "probes";

Flag probing;

static std::vector<probepoint> readrows(textin& in) {
    std::vector<probepoint> list;
    while (!in.atend()) {
        probepoint p{};
        for (double& x : p.at) x = in.number();
        list.push_back(p);
    }
    return list;
}

static std::vector<plotplace> found;  // beside the probes, by number

const std::vector<probepoint>& probes() {
    static std::string text;
    static std::vector<probepoint> list;
    if (const std::string now = kalsection(probesection); now != text) {
        textin in = kalreader(probesection);
        list = readrows(in);
        found.clear();
        text = now;
    }
    return list;
}

static void store(const std::vector<probepoint>& list) {
    std::string text;
    for (const probepoint& p : list)
        text += numbertext(p.at[0]) + "," + numbertext(p.at[1]) + "," + numbertext(p.at[2]) + "\n";
    const step s("Probe", reaches::texts);
    putkalsection(probesection, text);
}

void scaleprobes(double factor) {
    std::vector<probepoint> list = probes();
    for (probepoint& p : list)
        for (double& x : p.at) x *= factor;
    if (!list.empty()) store(list);
}

// --- where they are -----------------------------------------------------------------------------

namespace {
using vector = std::array<double, 3>;
}

static vector placeofnode(int e, int corner) {
    const auto row = nodes.row(0, int(elems(e, corner)));
    return {row[0], row[1], row[2]};
}

static vector minus(const vector& a, const vector& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

static double dot(const vector& a, const vector& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

// Shares of the corners of a triangle at the place in its plane below p, and the squared distance
// between the two; false outside.
static bool sharesin(const vector& a, const vector& b, const vector& c, const vector& p,
                     double* share, double& away) {
    const vector u = minus(b, a), v = minus(c, a), w = minus(p, a);
    const double uu = dot(u, u), uv = dot(u, v), vv = dot(v, v), wu = dot(w, u), wv = dot(w, v);
    const double determinant = uu * vv - uv * uv, edge = -1e-6;
    if (!(determinant > 0)) return false;
    share[1] = (vv * wu - uv * wv) / determinant;
    share[2] = (uu * wv - uv * wu) / determinant;
    share[0] = 1 - share[1] - share[2];
    if (share[0] < edge || share[1] < edge || share[2] < edge) return false;
    vector off = w;
    for (std::size_t k = 0; k < 3; ++k) off[k] -= share[1] * u[k] + share[2] * v[k];
    away = dot(off, off);
    return true;
}

// The nearest place of element e to p; away is the squared distance.
static bool nearestin(int e, int elnn, const vector& p, plotplace& at, double& away) {
    vector corner[5], middle{};
    for (int c = 1; c <= elnn; ++c) {
        corner[c] = placeofnode(e, c);
        for (std::size_t k = 0; k < 3; ++k) middle[k] += corner[c][k] / elnn;
    }
    double share[3];
    const auto take = [&](int a, int b, double ofmiddle) {
        at = {};
        at.e = e;
        at.share[a] += share[0];
        at.share[b] += share[1];
        if (elnn == 3) at.share[3] = share[2];
        for (int c = 1; c <= elnn && elnn == 4; ++c) at.share[c] += ofmiddle / 4;
        return true;
    };
    if (elnn == 2) {
        const vector u = minus(corner[2], corner[1]), w = minus(p, corner[1]);
        const double uu = dot(u, u), t = uu > 0 ? std::clamp(dot(w, u) / uu, 0.0, 1.0) : 0;
        vector off = w;
        for (std::size_t k = 0; k < 3; ++k) off[k] -= t * u[k];
        away = dot(off, off);
        share[0] = 1 - t;
        share[1] = t;
        return take(1, 2, 0);
    }
    if (elnn == 3)
        return sharesin(corner[1], corner[2], corner[3], p, share, away) && take(1, 2, 0);
    for (int c = 1; c <= 4; ++c)
        if (sharesin(corner[c], corner[c % 4 + 1], middle, p, share, away))
            return take(c, c % 4 + 1, share[2]);
    return false;
}

// Squared size of an element, and whether p can lie so near to it.
static double sizeif(int e, int elnn, const vector& p) {
    vector low = placeofnode(e, 1), high = low;
    for (int c = 2; c <= elnn; ++c) {
        const vector at = placeofnode(e, c);
        for (std::size_t k = 0; k < 3; ++k) {
            low[k] = std::min(low[k], at[k]);
            high[k] = std::max(high[k], at[k]);
        }
    }
    const vector size = minus(high, low);
    const double square = dot(size, size), rim = 0.01 * std::sqrt(square);
    for (std::size_t k = 0; k < 3; ++k)
        if (p[k] < low[k] - rim || p[k] > high[k] + rim) return 0;
    return square;
}

static bool tryelement(int e, const vector& p, plotplace& best, double& least) {
    const double most = 1e-4;  // squared, of the element's size
    if (!isplotted(e)) return false;
    const int elnn = nodesoftype(elems(e, 0));
    const double size = elnn < 2 || elnn > 4 ? 0 : sizeif(e, elnn, p);
    plotplace at;
    double away = 0;
    if (size == 0 || !nearestin(e, elnn, p, at, away)) return false;
    if (away > most * size || (best.e != 0 && away >= least)) return false;
    best = at;
    least = away;
    return true;
}

plotplace placeat(const double* at) {
    const vector p = {at[0], at[1], at[2]};
    plotplace best;
    double least = 0;
    for (int e = 1; e <= nelems(); ++e) tryelement(e, p, best, least);
    return best;
}

plotplace placein(int e, const double* at) {
    plotplace place;
    double least = 0;
    if (e >= 1 && e <= nelems()) tryelement(e, {at[0], at[1], at[2]}, place, least);
    return place;
}

// Where it was found last it is still, as a rule.
static const plotplace& placeof(std::size_t i) {
    found.resize(probes().size());
    found[i] = placein(found[i].e, probes()[i].at);
    if (found[i].e == 0) found[i] = placeat(probes()[i].at);
    return found[i];
}

// --- setting and clearing -----------------------------------------------------------------------

void startprobing() {
    if (!legendshown()) {
        theplatform().message("There is no plot to probe: choose Contour plot or Element Stress.");
        return;
    }
    startmode(probing);
    prompt("Probe", "", "", "<Left Button> to set or to take away, <ESC> to stop");
}

void clearprobes() {
    if (probes().empty()) return;
    store({});
    redrawall();
}

static void press(int nview) {
    const double near = 0.3;  // centimetres from a probe
    if (!isplottedin(nview)) return;
    const ofview own(nview);
    const keptpoint kept;
    const keptpen pen;
    prepareview(nview);
    projectplace(nview, modelx, modely, modelz);
    const point2 at{scrx, scry};
    undeformed = isdeformed() ? 0 : 1;
    std::vector<probepoint> list = probes();
    for (std::size_t i = 0; i < list.size(); ++i) {
        const plotplace& place = placeof(i);
        double depth = 0;
        if (place.e == 0) continue;
        const point2 there = pictureof(place, nview, depth);
        if (std::hypot(there.x - at.x, there.y - at.y) > near) continue;
        list.erase(list.begin() + long(i));
        store(list);
        redrawall();
        return;
    }
    const plotplace place = placeunder(nview, at.x, at.y);
    if (place.e == 0) {
        theplatform().showstatus("No plotted element lies there");
        return;
    }
    probepoint p{};
    for (int c = 1; c <= nodesoftype(elems(place.e, 0)); ++c)
        for (int k = 0; k < 3; ++k)
            p.at[k] += place.share[c] * nodes(0, long(elems(place.e, c)), k);
    list.push_back(p);
    store(list);
    redrawall();
}

// --- the picture --------------------------------------------------------------------------------

void drawprobes(int nview) {
    const double dot = 0.06, gap = 0.35;  // centimetres
    surface* const s = target(nview);
    if (s == nullptr || probes().empty() || !isplottedin(nview)) return;
    const keptpoint kept;
    const keptpen pen(s);
    prepareview(nview);
    undeformed = isdeformed() ? 0 : 1;
    for (std::size_t i = 0; i < probes().size(); ++i) {
        const plotplace& place = placeof(i);
        double depth = 0;
        if (place.e == 0 || !isshown(place.e, nview)) continue;
        const point2 at = pictureof(place, nview, depth);
        s->drawwidth = 1;
        s->fillsolid = true;
        s->fillcolor = elemlabelcolor;
        s->circle(at.x, at.y, dot, elemlabelcolor);
        s->line(at.x, at.y, at.x + gap, at.y - gap, elemlabelcolor);
        drawplate(*s, at.x + gap, at.y - gap,
                  plotlabel() + " " + plotnumber(valueat(place)) + behind(plotformula()) +
                      (iscovered(at, depth, nview) ? " (behind)" : ""));
    }
}

void wireprobes() {
    checkkalsection(probesection, [](textin& in) { readrows(in); });
    for (const moderow& row : modes())
        if (row.flag == &probing) return;
    moderow row;
    row.flag = &probing;
    row.name = "Probe";
    acceptpoints(row, press);
    modes().push_back(std::move(row));
}
