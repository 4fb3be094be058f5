// SPDX-License-Identifier: GPL-3.0-or-later
// Drawing of diagrams and curved members.
#include "post/diagrams.h"

#include <algorithm>
#include <cmath>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/session.h"
#include "core/views.h"
#include "post/plainnumber.h"
#include "post/plotunits.h"
#include "post/postproces.h"
#include "post/secondplot.h"
#include "post/source.h"
#include "view/drawelems.h"
#include "view/localaxes.h"
#include "view/pen.h"
#include "view/scaleview.h"
#include "view/thinning.h"

diagramchoice diagram;

// Blue above, red below: told apart in print and by the colour-blind.
static const colour positivecolor = rgb(33, 102, 172), negativecolor = rgb(178, 24, 43);
static const colour positivefill = rgb(190, 215, 235), negativefill = rgb(245, 205, 195);

diagramside sideof(memberquantity q) {
    switch (q) {
        case memMz:
            return {2, -1};
        case memVz:
        case memMy:
        case memw:
            return {3, 1};
        default:
            return {2, 1};
    }
}

int neededstations(const float* from, double tolerance, int* indices) {
    bool needed[memberstations] = {};
    needed[0] = needed[memberstations - 1] = true;
    struct piece {
        int first, last;
    } open[memberstations] = {{0, memberstations - 1}};
    for (int count = 1; count > 0;) {
        const piece p = open[--count];
        const double slope = (double(from[p.last]) - from[p.first]) / (p.last - p.first);
        int farthest = 0;
        double most = tolerance;
        for (int i = p.first + 1; i < p.last; ++i) {
            const double off = std::fabs(from[i] - (from[p.first] + slope * (i - p.first)));
            if (off > most) {
                most = off;
                farthest = i;
            }
        }
        if (farthest == 0) continue;
        needed[farthest] = true;
        open[count++] = {p.first, farthest};
        open[count++] = {farthest, p.last};
    }
    int n = 0;
    for (int i = 0; i < memberstations; ++i)
        if (needed[i]) indices[n++] = i;
    return n;
}

// --- what is on show ----------------------------------------------------------------------------

static bool isdiagrammed(int e) {
    return nodesoftype(elems(e, 0)) == 2;
}

static std::vector<int> shownmembers() {
    if (!diagram.selected) return allmembers();
    std::vector<int> members;
    for (int i = 1; i <= int(elemsel(0)); ++i)
        if (const int e = int(elemsel(i)); isdiagrammed(e)) members.push_back(e);
    return members;
}

static std::vector<int> members;
static memberrange ranges[2];  // of view 1 and of the result beside it

// Two modes side by side have no forces.
static bool hassecond() {
    return sidebyside && second.valid && !menupostItem(modeshape).checked;
}

static const memberrange& rangein(int nview) {
    return ranges[hassecond() && nview == 2];
}

const memberrange& diagramrange() {
    return ranges[0];
}

void preparediagrams() {
    if (!diagramshown) return;
    members = shownmembers();
    ranges[0] = rangeof(diagram.quantity, members);
    if (!hassecond()) return;
    const ofview other(2);
    ranges[1] = rangeof(diagram.quantity, members);
}

void startdiagram() {
    const memberquantity before = diagram.quantity;
    diagramshown = true;
    for (const memberquantity q : {before, memMz, memMy, memN, before}) {
        diagram.quantity = q;
        preparediagrams();
        if (ranges[0].size() > 0 && !ranges[0].isnoise()) return;
    }
}

// The value that is drawn longest in a view.
static double sizein(int nview) {
    const bool both = hassecond() && second.commonscale && nview <= 2;
    return both ? std::max(ranges[0].size(), ranges[1].size()) : rangein(nview).size();
}

std::string diagramnote() {
    if (!diagramshown) return {};
    if (!membernote.empty()) return membernote;
    if (!members.empty()) return {};
    return diagram.selected ? "No line element is selected" : "The model has no line elements";
}

static std::string at(const memberextreme& x, double size) {
    return plainnumber(x.value, size) + behind(quantityrows[diagram.quantity].unit) +
           " in element " + std::to_string(x.e);
}

std::string diagramtext(int nview) {
    const memberrange& range = rangein(nview);
    const quantityrow& row = quantityrows[diagram.quantity];
    if (range.high.e == 0) return row.caption;
    if (range.isnoise())
        return std::string(row.label) + ", " + row.caption + ": nothing but rounding";
    return std::string(row.label) + ", " + row.caption + ": " + at(range.high, range.size()) +
           " to " + at(range.low, range.size());
}

// --- drawing ------------------------------------------------------------------------------------

namespace {
// A member in the prepared view: place of a station with its value, scaled coordinates.
struct memberframe {
    float first[3], along[3];
    double side[3];  // scaled units of one unit of value
    point2 place(double x, double value) const {
        scaledpoint p;
        p.x = float(first[0] + x * along[0] + value * side[0]);
        p.y = float(first[1] + x * along[1] + value * side[1]);
        p.z = float(first[2] + x * along[2] + value * side[2]);
        return project(viewcamera, p).at;
    }
};
}  // namespace

static double stationplace(int i) {
    return double(i) / (memberstations - 1);
}

static memberframe frameof(int e, const scaledpoint& a, const scaledpoint& b, double factor) {
    localaxes(e);
    const diagramside side = sideof(diagram.quantity);
    const double* const axis = side.axis == 2 ? localy : localz;
    memberframe f{{a.x, a.y, a.z}, {b.x - a.x, b.y - a.y, b.z - a.z}, {}};
    for (int k = 0; k < 3; ++k) f.side[k] = side.sign * factor * axis[k];
    return f;
}

static void fillpiece(surface& s, const memberframe& f, const point2* curve, int n, double from,
                      double to, bool positive) {
    point2 outline[memberstations + 6];
    std::copy(curve, curve + n, outline);
    outline[n] = f.place(to, 0);
    outline[n + 1] = f.place(from, 0);
    s.fillcolor = positive ? positivefill : negativefill;
    s.polygon(outline, n + 2, positive ? positivecolor : negativecolor);
}

// The curve in pieces of one sign.
static void fillcurve(surface& s, const memberframe& f, const float* value, const int* at, int n) {
    point2 piece[memberstations + 2];
    int count = 0;
    double from = 0;
    bool positive = true;
    const auto add = [&](double x, double v) { piece[count++] = f.place(x, v); };
    const auto finish = [&](double to) {
        if (count > 1) fillpiece(s, f, piece, count, from, to, positive);
        count = 0;
    };
    for (int k = 0; k < n; ++k) {
        const double x = stationplace(at[k]), v = value[at[k]];
        if (count > 0 && v != 0 && (v > 0) != positive) {
            const double before = stationplace(at[k - 1]), vb = value[at[k - 1]];
            const double zero = vb == 0 ? before : before + (x - before) * vb / (vb - v);
            add(zero, 0);
            finish(zero);
            from = zero;
            add(zero, 0);
        }
        if (count == 0) from = x;
        if (v != 0) positive = v > 0;
        add(x, v);
    }
    finish(1);
}

static void linecurve(surface& s, const memberframe& f, const float* value, const int* at, int n) {
    const auto colourof = [](double v) { return v < 0 ? negativecolor : positivecolor; };
    point2 before = f.place(0, value[0]);
    const point2 base = f.place(0, 0);
    s.line(base.x, base.y, before.x, before.y, colourof(value[0]));
    for (int k = 1; k < n; ++k) {
        const point2 here = f.place(stationplace(at[k]), value[at[k]]);
        s.line(before.x, before.y, here.x, here.y, colourof(value[at[k - 1]] + value[at[k]]));
        before = here;
    }
    const point2 end = f.place(1, 0);
    s.line(before.x, before.y, end.x, end.y, colourof(value[memberstations - 1]));
}

// Ends, and the largest and smallest between them.
static void labelcurve(surface& s, const memberframe& f, const float* value, double size,
                       thinning& labels) {
    const auto [low, high] = std::minmax_element(value, value + memberstations);
    const int wanted[] = {int(high - value), int(low - value), 0, memberstations - 1};
    const double nothing = 1e-6 * size;
    for (const int i : wanted) {
        if (std::fabs(value[i]) <= nothing) continue;
        const point2 at = f.place(stationplace(i), value[i]);
        if (at.x < 0 || at.y < 0 || at.x > s.width() || at.y > s.height()) continue;
        if (!labels.accepts(at.x, at.y)) continue;
        s.moveto(at.x, at.y);
        s.text(plainnumber(value[i], size));
    }
}

static const double tolerance = 0.012;  // centimetres: half a pixel

static void plotcurve(surface& s, const memberframe& f, double factor, const memberline& line,
                      bool filled) {
    const float* const value = line.value[diagram.quantity];
    int at[memberstations];
    const int n = neededstations(value, tolerance / factor, at);
    if (filled)
        fillcurve(s, f, value, at, n);
    else
        linecurve(s, f, value, at, n);
}

// Of a member a few pixels long one stroke: the line of its ends' values, or a filled one's
// ordinate over its middle.
static void plotshort(surface& s, const memberframe& f, const point2& base,
                      const memberline& line) {
    const float* const value = line.value[diagram.quantity];
    const int middle = memberstations / 2, last = memberstations - 1;
    const bool ordinate = diagram.filled;
    const point2 a = ordinate ? base : f.place(0, value[0]),
                 b = ordinate ? f.place(0.5, value[middle]) : f.place(1, value[last]);
    s.line(a.x, a.y, b.x, b.y, value[middle] < 0 ? negativecolor : positivecolor);
}

static void plotmember(surface& s, int e, int nview, const memberframe& f, double factor,
                       const memberresult& m) {
    plotcurve(s, f, factor, m.high, diagram.filled && !m.least);
    if (m.least) plotcurve(s, f, factor, *m.least, false);
    if (!diagram.filled) return;
    drawcolor = colourofelement(e);
    s.drawwidth = 2;
    drawelementoutline(e, nview);
    s.drawwidth = 1;
}

// Centimetres of the largest value.
static double diagramlength() {
    return 2 * unitveclen * diagram.scale;
}

void drawdiagrams(int nview) {
    surface* const s = target(nview);
    const memberrange& range = rangein(nview);
    if (!diagramshown || s == nullptr || range.size() == 0 || range.isnoise()) return;
    const double apart = 0.7;     // centimetres between two labels
    const double shortest = 0.2;  // centimetres of a member whose curve can be seen
    const keptpen pen(s);
    prepareview(nview);
    undeformed = 1;
    s->drawwidth = 1;
    s->font = elemlabelfont;
    s->textcolor = elemlabelcolor;
    s->fillsolid = diagram.filled;
    const double size = sizein(nview), factor = diagramlength() / size;
    struct labelled {
        memberframe frame;
        const memberresult* result;
    };
    std::vector<labelled> texts;  // they stand on what all members have drawn
    for (const int e : members) {
        if (e > nelems() || !isshown(e, nview)) continue;
        const memberresult* const m = memberof(e);
        if (!m) continue;
        const scaledpoint a = drawnplace(int(elems(e, 1)), nview),
                          b = drawnplace(int(elems(e, 2)), nview);
        const point2 pa = project(viewcamera, a).at, pb = project(viewcamera, b).at;
        const double length = std::hypot(pa.x - pb.x, pa.y - pb.y);
        const memberframe f = frameof(e, a, b, factor);
        if (length >= shortest) {
            plotmember(*s, e, nview, f, factor, *m);
        } else {
            const point2 base{(pa.x + pb.x) / 2, (pa.y + pb.y) / 2};
            plotshort(*s, f, base, m->high);
            if (m->least) plotshort(*s, f, base, *m->least);
        }
        const bool extreme = e == range.high.e || e == range.low.e;
        if (diagram.values && (length >= apart || extreme)) texts.push_back({f, m});
    }
    thinning labels(s->width(), s->height(), apart);
    for (const auto& [f, m] : texts) {
        labelcurve(*s, f, m->high.value[diagram.quantity], size, labels);
        if (m->least) labelcurve(*s, f, m->least->value[diagram.quantity], size, labels);
    }
}

// --- curved members -----------------------------------------------------------------------------

// The ends move as the nodes do; between them v and w bend it, and along it nothing but the ends'
// motion counts.
bool drawcurvedmember(int e, int nview) {
    surface* const s = target(nview);
    const double least = 0.3;  // centimetres: a shorter one shows no bend
    if (s == nullptr || undeformed == 1 || fieldismode || (isenvelope() && !issecond()))
        return false;
    const scaledpoint a = drawnplace(int(elems(e, 1)), nview),
                      b = drawnplace(int(elems(e, 2)), nview);
    const point2 pa = project(viewcamera, a).at, pb = project(viewcamera, b).at;
    if (std::hypot(pa.x - pb.x, pa.y - pb.y) < least) return false;
    const memberresult* const m = memberof(e);
    if (!m) return false;
    localaxes(e);
    const float *const v = m->high.value[memv], *const w = m->high.value[memw];
    const int last = memberstations - 1;
    const double factor = double(dispscale(nview)) * viewscale(nview);
    // What bends away from the straight line between the moved ends.
    float bend[2][memberstations];
    for (int i = 0; i <= last; ++i) {
        const double x = stationplace(i);
        bend[0][i] = float((v[i] - (1 - x) * v[0] - x * v[last]) * factor);
        bend[1][i] = float((w[i] - (1 - x) * w[0] - x * w[last]) * factor);
    }
    bool needed[memberstations] = {};
    int at[memberstations];
    for (const auto& curve : bend)
        for (int k = neededstations(curve, tolerance, at); k > 0; --k) needed[at[k - 1]] = true;
    point2 before = pa;
    for (int i = 1; i <= last; ++i) {
        if (!needed[i]) continue;
        const float x = float(stationplace(i));
        const auto place = [&](float from, float to, int k) {
            return float(from + x * (to - from) + bend[0][i] * localy[k] + bend[1][i] * localz[k]);
        };
        const point2 here =
            project(viewcamera, {place(a.x, b.x, 0), place(a.y, b.y, 1), place(a.z, b.z, 2)}).at;
        s->line(before.x, before.y, here.x, here.y, drawcolor);
        before = here;
    }
    return true;
}
