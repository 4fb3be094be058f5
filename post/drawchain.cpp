// SPDX-License-Identifier: GPL-3.0-or-later
// Diagrams over the length of a chain.
#include "post/drawchain.h"

#include <algorithm>
#include <cmath>

#include "core/catalogue.h"
#include "core/numtext.h"
#include "post/diagrams.h"
#include "post/plainnumber.h"
#include "post/plotunits.h"
#include "post/source.h"
#include "view/surface.h"

static const double margin = 0.3;  // centimetres

namespace {
struct strip {
    double left, right, top, bottom;
    double length, size;  // of the chain; largest absolute value
    int sign;             // of the side that positive values stand on, up is +1
    point2 place(double at, double value) const {
        const double middle = (top + bottom) / 2, half = (bottom - top) / 2;
        const double x = length > 0 ? left + (right - left) * at / length : left;
        return {x, size > 0 ? middle - sign * half * value / size : middle};
    }
};
}  // namespace

static void label(surface& s, const strip& at, const chainpoint& p, double value) {
    const std::string text = plainnumber(value, at.size);
    const point2 place = at.place(p.at, value);
    const double x = std::clamp(place.x - s.textwidth(text) / 2, 0.0,
                                std::max(0.0, s.width() - s.textwidth(text)));
    const bool above = place.y <= (at.top + at.bottom) / 2;
    s.moveto(x, above ? place.y - s.textheight() : place.y);
    s.text(text);
}

static void drawstrip(surface& s, const strip& at, const std::vector<chainpoint>& curve) {
    const colour ink = elemlabelcolor, line = rgb(33, 102, 172), fill = rgb(200, 220, 238);
    const point2 from = at.place(0, 0), to = at.place(at.length, 0);
    if (curve.empty() || at.size == 0) {
        s.line(from.x, from.y, to.x, to.y, ink);
        return;
    }
    s.fillsolid = true;
    s.fillcolor = fill;
    // Between two stations the band from the smallest to the largest, 0 among them.
    for (std::size_t i = 1; i < curve.size(); ++i) {
        const chainpoint &a = curve[i - 1], &b = curve[i];
        if (a.e != b.e) continue;
        const point2 band[] = {
            at.place(a.at, std::max(a.high, 0.0)), at.place(b.at, std::max(b.high, 0.0)),
            at.place(b.at, std::min(b.low, 0.0)), at.place(a.at, std::min(a.low, 0.0))};
        s.polygon(band, 4, fill);
    }
    s.fillsolid = false;
    for (std::size_t i = 1; i < curve.size(); ++i) {
        const chainpoint &a = curve[i - 1], &b = curve[i];
        const point2 pa = at.place(a.at, a.high), pb = at.place(b.at, b.high);
        s.line(pa.x, pa.y, pb.x, pb.y, line);
        if (a.low == a.high && b.low == b.high) continue;
        const point2 qa = at.place(a.at, a.low), qb = at.place(b.at, b.low);
        s.line(qa.x, qa.y, qb.x, qb.y, line);
    }
    s.line(from.x, from.y, to.x, to.y, ink);
    const auto high = std::ranges::max_element(curve, {}, &chainpoint::high);
    const auto low = std::ranges::min_element(curve, {}, &chainpoint::low);
    const double nothing = 1e-9 * at.size;
    if (std::fabs(high->high) > nothing) label(s, at, *high, high->high);
    if (std::fabs(low->low) > nothing && low->low != high->high) label(s, at, *low, low->low);
}

void drawchain(surface& s, const memberchain& chain, memberquantity first, memberquantity last) {
    const int count = last - first + 1;
    const double line = s.textheight();
    s.moveto(margin, margin / 2);
    s.text(chain.fault.empty() ? sourcename() : chain.fault);
    if (!chain.fault.empty()) return;
    const double widest = s.textwidth("0.000e+00 "), top = line + margin,
                 part = (s.height() - top) / count;
    for (int i = 0; i < count; ++i) {
        const auto q = memberquantity(first + i);
        const std::vector<chainpoint> curve = chaincurve(chain, q);
        double size = 0;
        for (const chainpoint& p : curve)
            size = std::max({size, std::fabs(p.high), std::fabs(p.low)});
        const strip at{margin + widest,       s.width() - margin,
                       top + i * part + line, top + (i + 1) * part - line,
                       chain.length(),        size,
                       sideof(q).sign};
        drawstrip(s, at, curve);
        s.moveto(margin, (at.top + at.bottom) / 2 - line / 2);
        s.text(headed(quantityrows[q].label, quantityrows[q].unit));
    }
}

std::string placeof(const chainpoint& p) {
    return "element " + numbertext(p.e) + " at " +
           shorttext(double(p.station) / (memberstations - 1));
}
