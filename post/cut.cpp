// SPDX-License-Identifier: GPL-3.0-or-later
// Cuts through the faces of a plot. State: the form and the curves on show.
#include "post/cut.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "core/besidefile.h"
#include "core/catalogue.h"
#include "core/colours.h"
#include "core/csvout.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/runtime.h"
#include "core/session.h"
#include "core/textfile.h"
#include "core/units.h"
#include "files/filop.h"
#include "files/saving.h"
#include "post/contour.h"
#include "post/legend.h"
#include "post/plotunits.h"
#include "post/probes.h"
#include "view/moddraw.h"
#include "view/pen.h"
#include "view/scaleview.h"
#include "view/surface.h"

static place3 minus(const place3& a, const place3& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

static double dot(const place3& a, const place3& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

static place3 cross(const place3& a, const place3& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

static double lengthof(const place3& a) {
    return std::sqrt(dot(a, a));
}

// --- pieces -------------------------------------------------------------------------------------

namespace {
// A corner or the middle of a face: its number is the node's, or below 0 the element's.
struct vertex {
    int number;
    place3 at;
    double value, side;  // side: signed distance from the plane
};
// On which side of the plane a corner counts that lies in it.
enum class onplaneis { above, below };
struct crossing {
    std::uint64_t side;  // of the mesh: the numbers of both ends
    place3 at;
    double value;
};
struct piece {
    crossing end[2];
    int e;
};
}  // namespace

// From the lower number to the higher, so that both faces at a side find the same point.
static crossing crossingof(const vertex& a, const vertex& b) {
    const vertex &low = a.number < b.number ? a : b, &high = a.number < b.number ? b : a;
    const double t = low.side / (low.side - high.side);
    crossing c;
    c.side = std::uint64_t(std::uint32_t(low.number)) << 32 | std::uint32_t(high.number);
    for (std::size_t k = 0; k < 3; ++k) c.at[k] = low.at[k] + t * (high.at[k] - low.at[k]);
    c.value = low.value + t * (high.value - low.value);
    return c;
}

static bool isabove(const vertex& v, onplaneis rule) {
    return rule == onplaneis::above ? v.side >= 0 : v.side > 0;
}

static void cuttriangle(const vertex& a, const vertex& b, const vertex& c, int e, onplaneis rule,
                        std::vector<piece>& pieces) {
    const vertex* const corner[] = {&a, &b, &c};
    piece p{{}, e};
    int count = 0;
    for (int i = 0; i < 3; ++i) {
        const vertex &from = *corner[i], &to = *corner[(i + 1) % 3];
        if (isabove(from, rule) != isabove(to, rule)) p.end[count++] = crossingof(from, to);
    }
    if (count == 2) pieces.push_back(p);
}

static void cutface(int e, int elnn, const cutplane& plane, onplaneis rule,
                    std::vector<piece>& pieces) {
    vertex v[5], middle{-e, {}, 0, 0};
    int above = 0;
    for (int c = 1; c <= elnn; ++c) {
        const auto at = nodes.row(0, int(elems(e, c)));
        v[c] = {int(elems(e, c)), {at[0], at[1], at[2]}, 0, 0};
        v[c].side = dot(plane.normal, v[c].at) - plane.offset;
        above += isabove(v[c], rule);
    }
    if (above == 0 || above == elnn) return;
    for (int c = 1; c <= elnn; ++c) {
        v[c].value = plotvalue(e, c);
        middle.value += v[c].value / elnn;
        middle.side += v[c].side / elnn;
        for (std::size_t k = 0; k < 3; ++k) middle.at[k] += v[c].at[k] / elnn;
    }
    if (elnn == 3) return cuttriangle(v[1], v[2], v[3], e, rule, pieces);
    for (int c = 1; c <= 4; ++c) cuttriangle(v[c], v[c % 4 + 1], middle, e, rule, pieces);
}

// --- curves -------------------------------------------------------------------------------------

namespace {
struct pieceend {
    std::uint64_t side;
    int piece, end;
    bool operator<(const pieceend& o) const {
        return std::pair(side, piece) < std::pair(o.side, o.piece);
    }
};
using pieceends = std::vector<pieceend>;
}  // namespace

static auto endsat(const pieceends& ends, std::uint64_t side) {
    return std::equal_range(ends.begin(), ends.end(), pieceend{side, 0, 0},
                            [](const pieceend& a, const pieceend& b) { return a.side < b.side; });
}

static void append(cutcurve& curve, const crossing& c, int e) {
    const double same = 1e-9;  // of the value
    if (curve.empty()) return curve.push_back({c.at, 0, c.value, e});
    const cutpoint last = curve.back();
    const double way = lengthof(minus(c.at, last.at));
    if (way == 0 && std::fabs(c.value - last.value) <= same * std::fabs(c.value)) {
        curve.back().e = e;
        return;
    }
    curve.push_back({c.at, last.distance + way, c.value, e});
}

// From one end of a piece as far as exactly one other goes on.
static cutcurve follow(const std::vector<piece>& pieces, const pieceends& ends,
                       std::vector<char>& used, int p, int end) {
    cutcurve curve;
    for (;;) {
        used[std::size_t(p)] = 1;
        const piece& now = pieces[std::size_t(p)];
        // A piece without length joins two others and has nothing to say.
        if (lengthof(minus(now.end[0].at, now.end[1].at)) > 0) {
            append(curve, now.end[end], now.e);
            append(curve, now.end[1 - end], now.e);
        }
        const auto [first, last] = endsat(ends, now.end[1 - end].side);
        if (last - first != 2) return curve;
        const pieceend& next = first->piece == p ? *(first + 1) : *first;
        if (used[std::size_t(next.piece)]) return curve;
        p = next.piece;
        end = next.end;
    }
}

static cutcurve reversed(cutcurve curve) {
    std::ranges::reverse(curve);
    const double whole = curve.front().distance;
    for (cutpoint& p : curve) p.distance = whole - p.distance;
    return curve;
}

static void keep(std::vector<cutcurve>& curves, cutcurve curve) {
    if (curve.size() < 2) return;
    const bool back = curve.back().at < curve.front().at;
    curves.push_back(back ? reversed(std::move(curve)) : std::move(curve));
}

static std::vector<piece> piecesof(const cutplane& plane, onplaneis rule) {
    std::vector<piece> pieces;
    for (int e = 1; e <= nelems(); ++e) {
        const int elnn = nodesoftype(elems(e, 0));
        if ((elnn == 3 || elnn == 4) && isplotted(e)) cutface(e, elnn, plane, rule, pieces);
    }
    return pieces;
}

std::vector<cutcurve> cutby(const cutplane& plane) {
    std::vector<piece> pieces = piecesof(plane, onplaneis::above);
    if (pieces.empty()) pieces = piecesof(plane, onplaneis::below);  // along an edge of the model
    pieceends ends;
    for (int p = 0; p < int(pieces.size()); ++p)
        for (int end : {0, 1}) ends.push_back({pieces[std::size_t(p)].end[end].side, p, end});
    std::sort(ends.begin(), ends.end());
    std::vector<char> used(pieces.size());
    std::vector<cutcurve> curves;
    // Open curves begin where no other piece, or more than one, goes on; what is left is closed.
    for (const bool open : {true, false})
        for (int p = 0; p < int(pieces.size()); ++p)
            for (int end : {0, 1}) {
                if (used[std::size_t(p)]) break;
                const auto [first, last] = endsat(ends, pieces[std::size_t(p)].end[end].side);
                if (!open || last - first != 2) keep(curves, follow(pieces, ends, used, p, end));
            }
    return curves;
}

// --- between two points -------------------------------------------------------------------------

static place3 normalat(const place3& at) {
    const plotplace place = placeat(at.data());
    const int elnn = place.e == 0 ? 0 : nodesoftype(elems(place.e, 0));
    if (elnn < 3) return {};
    place3 corner[4];
    for (int c = 0; c < elnn; ++c) {
        const auto row = nodes.row(0, int(elems(place.e, c + 1)));
        corner[c] = {row[0], row[1], row[2]};
    }
    return cross(minus(corner[2], corner[0]), minus(corner[elnn - 1], corner[1]));
}

// The part of a curve between the planes at both ends of the line.
static void clip(const cutcurve& curve, const place3& from, const place3& way,
                 std::vector<cutcurve>& kept) {
    const double whole = dot(way, way), rounding = 1e-9;
    const auto share = [&](const cutpoint& p) { return dot(minus(p.at, from), way) / whole; };
    cutcurve now;
    const auto between = [&](const cutpoint& a, const cutpoint& b, double t) {
        crossing c{0, {}, a.value + t * (b.value - a.value)};
        for (std::size_t k = 0; k < 3; ++k) c.at[k] = a.at[k] + t * (b.at[k] - a.at[k]);
        append(now, c, b.e);
    };
    for (std::size_t i = 1; i < curve.size(); ++i) {
        const double a = share(curve[i - 1]), b = share(curve[i]);
        double first = 0, last = 1;
        if (a != b) {
            const double at0 = (0 - a) / (b - a), at1 = (1 - a) / (b - a);
            first = std::max(first, std::min(at0, at1));
            last = std::min(last, std::max(at0, at1));
        } else if (a < -rounding || a > 1 + rounding) {
            last = -1;
        }
        if (first > last) {
            keep(kept, std::exchange(now, {}));
            continue;
        }
        between(curve[i - 1], curve[i], first);
        between(curve[i - 1], curve[i], last);
    }
    keep(kept, std::move(now));
}

// How far a curve is from a point, and how far it strays from the line.
static double distanceof(const cutcurve& curve, const place3& at) {
    double least = HUGE_VAL;
    for (const cutpoint& p : curve) least = std::min(least, lengthof(minus(p.at, at)));
    return least;
}

static bool lieson(const cutcurve& curve, const place3& from, const place3& way) {
    const double most = 1e-3;  // of the line's length
    return std::ranges::all_of(curve, [&](const cutpoint& p) {
        return lengthof(cross(minus(p.at, from), way)) <= most * dot(way, way);
    });
}

static cutcurve frombegin(cutcurve curve, const place3& from, const place3& to) {
    const bool back = lengthof(minus(curve.back().at, from)) < lengthof(minus(curve.back().at, to));
    return back ? reversed(std::move(curve)) : curve;
}

std::vector<cutcurve> cutbetween(const place3& from, const place3& to) {
    const place3 way = minus(to, from), normal = cross(way, normalat(from));
    if (lengthof(normal) == 0) return {};
    std::vector<cutcurve> all, kept;
    for (const cutcurve& curve : cutby({normal, dot(normal, from)})) clip(curve, from, way, all);
    for (const cutcurve& curve : all)
        if (lieson(curve, from, way)) kept.push_back(frombegin(curve, from, to));
    if (!kept.empty() || all.empty()) return kept;
    const auto nearest = std::ranges::min_element(
        all, {}, [&](const cutcurve& curve) { return distanceof(curve, from); });
    return {frombegin(*nearest, from, to)};
}

// --- the form -----------------------------------------------------------------------------------

cutform thecut;
std::vector<cutcurve> cutshown;

static place3 placeofnode(int n) {
    return {nodes(0, n, 0), nodes(0, n, 1), nodes(0, n, 2)};
}

static std::string texted(double x) {
    return numbertext(float(x));
}

void showcut() {
    if (!thecut.position.empty()) return;
    place3 low{HUGE_VAL, HUGE_VAL, HUGE_VAL}, high{-HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
    for (int n = 1; n <= nnodes(); ++n)
        for (std::size_t k = 0; k < 3; ++k) {
            low[k] = std::min(low[k], double(nodes(0, n, long(k))));
            high[k] = std::max(high[k], double(nodes(0, n, long(k))));
        }
    if (nnodes() == 0) low = high = {};
    const std::size_t k = std::size_t(std::min(thecut.kind, 2));
    thecut.position = texted((low[k] + high[k]) / 2);
    for (std::size_t i = 0; i < 3; ++i) {
        thecut.from[i] = texted(low[i]);
        thecut.to[i] = texted(high[i]);
    }
}

void cutfromselection() {
    const int count = int(nodesel(0));
    if (count < 1 || (thecut.kind == 3 && count < 2)) {
        thecut.message = thecut.kind == 3 ? "Select two nodes, the ends of the line"
                                          : "Select a node that lies in the plane";
        return;
    }
    const place3 first = placeofnode(nodesel(1)), last = placeofnode(nodesel(count));
    if (thecut.kind < 3) {
        thecut.position = texted(first[std::size_t(thecut.kind)]);
    } else {
        for (std::size_t k = 0; k < 3; ++k) {
            thecut.from[k] = texted(first[k]);
            thecut.to[k] = texted(last[k]);
        }
    }
    computecut();
}

void scalecut(double factor) {
    cutshown.clear();
    const auto scale = [&](std::string& text) {
        double value = 0;
        if (readnumber(text, value)) text = texted(value * factor);
    };
    scale(thecut.position);
    for (std::size_t k = 0; k < 3; ++k) {
        scale(thecut.from[k]);
        scale(thecut.to[k]);
    }
}

static bool readplace(const std::string* text, place3& at) {
    bool good = true;
    for (std::size_t k = 0; k < 3; ++k) good = readvalue(text[k], "L", at[k]) && good;
    return good;
}

static std::string cutfault() {
    if (!plotready() || iselementstress()) return "There is no plot of faces: choose Contour plot";
    if (thecut.kind < 3) {
        double position = 0;
        if (!readvalue(thecut.position, "L", position)) return "The position must be a number";
        cutplane plane{{0, 0, 0}, position};
        plane.normal[std::size_t(thecut.kind)] = 1;
        cutshown = cutby(plane);
        return cutshown.empty() ? "The plane meets no plotted face" : "";
    }
    place3 from{}, to{};
    if (!readplace(thecut.from, from) || !readplace(thecut.to, to))
        return "The coordinates of both ends must be numbers";
    if (from == to) return "Both ends of the line are one point";
    if (lengthof(normalat(from)) == 0) return "No plotted face lies at the beginning of the line";
    cutshown = cutbetween(from, to);
    return cutshown.empty() ? "The line meets no plotted face" : "";
}

void computecut() {
    const bool drawn = !cutshown.empty();
    cutshown.clear();
    thecut.message = cutfault();
    if (drawn || !cutshown.empty()) redrawall();
}

void endcut() {
    if (std::exchange(cutshown, {}).empty()) return;
    redrawall();
}

std::string cutquantity() {
    const bool combination = curlcomb >= 1 && curlcomb <= ncomb();
    return headed(plotlabel(), plotformula()) +
           (combination ? ", " + shownname(lcombname(curlcomb)) : "");
}

// --- the table ----------------------------------------------------------------------------------

std::string cuttable(char separator) {
    std::string text;
    const auto row = [&](const std::vector<std::string>& fields) {
        for (std::size_t i = 0; i < fields.size(); ++i) {
            if (i != 0) text += separator;
            appendcell(text, fields[i], separator);
        }
        text += "\r\n";
    };
    row({"curve", headed("distance", "L"), headed("x", "L"), headed("y", "L"), headed("z", "L"),
         "element", headed(plotlabel(), plotformula())});
    for (std::size_t i = 0; i < cutshown.size(); ++i)
        for (const cutpoint& p : cutshown[i])
            row({numbertext(int(i + 1)), texted(p.distance), texted(p.at[0]), texted(p.at[1]),
                 texted(p.at[2]), numbertext(p.e), texted(p.value)});
    return text;
}

void savecut() {
    filebox box;
    box.title = "Save Values along the Cut";
    box.filter = "CSV files (*.csv)|*.csv|All Files (*.*)|*.*";
    box.saving = true;
    if (isnamed()) box.path = modelname + "-cut.csv";
    const std::string target = asktarget(box, ".csv");
    if (target.empty()) return;
    guarded(
        [&] {
            const std::string text = cuttable(',');
            besidefile file(target);
            file.write(text.data(), text.size());
            file.finish();
            file.replacetarget();
            thecut.message = "Written: " + target;
        },
        [](const runtimeerror& e) { theplatform().message(e.what, icons::exclamation); });
}

// --- the picture --------------------------------------------------------------------------------

// On the elements as they are drawn: displaced with the face that it cuts.
static point2 drawnat(const cutpoint& p, int nview) {
    double depth = 0;
    if (const plotplace place = placein(p.e, p.at.data()); place.e != 0)
        return pictureof(place, nview, depth);
    projectplace(nview, p.at[0], p.at[1], p.at[2]);
    return {scrx, scry};
}

void drawcut(int nview) {
    const int strokewidth = 3;
    surface* const s = target(nview);
    if (s == nullptr || cutshown.empty() || !isplottedin(nview)) return;
    const keptpoint kept;
    const keptpen pen(s);
    prepareview(nview);
    undeformed = isdeformed() ? 0 : 1;
    s->drawwidth = strokewidth;
    for (const cutcurve& curve : cutshown) {
        point2 last = drawnat(curve.front(), nview);
        for (const cutpoint& p : curve) {
            const point2 now = drawnat(p, nview);
            s->line(last.x, last.y, now.x, now.y, selcolor);
            last = now;
        }
    }
}
