// SPDX-License-Identifier: GPL-3.0-or-later
// Properties and outlines of section types.
#include "tools/sectionvalues.h"

#include <algorithm>
#include <cmath>

#include "core/runtime.h"
#include "core/session.h"

static constexpr std::array<const char*, ndims> four = {"B =", "H =", "tw =", "tf ="};

const sectiontyperow sectiontypes[ntypes] = {
    {"Tubular", {"OD =", "WT =", "", ""}},
    {"H-Beam Metric", four},
    {"H-Beam US", four},
    {"T Profile US", four},
    {"L Profile US", four},
    {"DL Profile US", four},
    {"C Profile US", four},
    {"Box section US", four},
    {"Prismatic Bar", {"B =", "H =", "", ""}},
};

int findsectiontype(const std::string& name) {
    for (int t = 0; t < ntypes; ++t)
        if (name == sectiontypes[t].name) return t;
    return -1;
}

// a / b; a zero b ends the calculation.
static double over(double a, double b) {
    if (b == 0) throw runtimeerror{errdivision, "division by zero"};
    return a / b;
}

static double square(double a) {
    return a * a;
}
static double cube(double a) {
    return a * a * a;
}

// --- bending of built-up shapes -----------------------------------------------------------------

namespace {
// Sums over the strips of a shape: area, and for each axis the first moment from one outer face,
// the sum of area times distance squared, and the strips' own second moments.
struct stripsums {
    double a, qx, ibx, iox, qy, iby, ioy;
};
}  // namespace

static stripsums teestrips(double b, double h, double tw, double tf) {
    const double web = (h - tf) * tw, flange = b * tf;
    return {web + flange,
            web * (tf + (h - tf) / 2) + tf / 2 * flange,
            web * square(tf + (h - tf) / 2) + square(tf / 2) * flange,
            cube(h - tf) * tw / 12 + b * cube(tf) / 12,
            web * (tw / 2) + b / 2 * flange,
            web * square(tw / 2) + square(b / 2) * flange,
            (h - tf) * cube(tw) / 12 + cube(b) * tf / 12};
}

static stripsums anglestrips(double b, double h, double tw, double tf) {
    stripsums s = teestrips(b, h, tw, tw);
    s.a = (h - tw) * tw + (b - tf) * tw;
    return s;
}

static stripsums channelstrips(double b, double h, double tw, double tf) {
    const double web = (h - 2 * tf) * tw, flange = b * tf;
    return {web + 2 * flange,
            web * (h / 2) + (tf / 2 + h - tf / 2) * flange,
            web * square(h / 2) + (square(tf / 2) + square(h - tf / 2)) * flange,
            cube(h - 2 * tf) * tw / 12 + 2 * b * cube(tf) / 12,
            web * (tw / 2) + 2 * (b / 2) * flange,
            web * square(tw / 2) + 2 * square(b / 2) * flange,
            (h - 2 * tf) * cube(tw) / 12 + 2 * cube(b) * tf / 12};
}

static stripsums boxstrips(double b, double h, double tw, double tf) {
    const double web = (h - 2 * tf) * tw, flange = b * tf;
    return {2 * web + 2 * flange,
            2 * web * (h / 2) + (tf / 2 + h - tf / 2) * flange,
            2 * web * square(h / 2) + (square(tf / 2) + square(h - tf / 2)) * flange,
            2 * cube(h - 2 * tf) * tw / 12 + 2 * b * cube(tf) / 12,
            web * (tw / 2 + b - tw / 2) + 2 * (b / 2) * flange,
            web * (square(tw / 2) + square(b - tw / 2)) + 2 * square(b / 2) * flange,
            2 * (h - 2 * tf) * cube(tw) / 12 + 2 * cube(b) * tf / 12};
}

static stripsums barstrips(double b, double h, double, double) {
    return {h * b,         h * b * h / 2,         h * b * square(h / 2), b / 12 * cube(h),
            h * b * b / 2, h * b * square(b / 2), h / 12 * cube(b)};
}

// I about the axis through the centroid, W at the farther face.
static void bend(double a, double q, double ib, double io, double outer, double& i, double& w) {
    const double c1 = over(q, a), c2 = outer - c1;
    i = io + ib - c1 * c1 * a;
    w = over(i, std::max(c1, c2));
}

static sectionvalues composite(const stripsums& s, double b, double h) {
    sectionvalues v;
    v.area = s.a;
    bend(s.a, s.qx, s.ibx, s.iox, h, v.ixx, v.wxx);
    bend(s.a, s.qy, s.iby, s.ioy, b, v.iyy, v.wyy);
    return v;
}

// Two angles back to back: in x twice the one, in y about the plane in which the backs touch.
static sectionvalues backtoback(const stripsums& s, double b, double h) {
    sectionvalues v = composite(s, b, h);
    v.area *= 2;
    v.ixx *= 2;
    v.wxx *= 2;
    v.iyy = 2 * (s.ioy + s.iby);
    v.wyy = over(v.iyy, b);
    return v;
}

static sectionvalues beam(double b, double h, double tw, double tf) {
    sectionvalues v;
    v.area = (h - 2 * tf) * tw + 2 * b * tf;
    v.ixx = cube(h - 2 * tf) * tw / 12 + 2 * b * tf * square((h - tf) / 2) + 2 * b * cube(tf) / 12;
    v.iyy = (h - 2 * tf) * cube(tw) / 12 + 2 * cube(b) * tf / 12;
    v.wxx = over(v.ixx, h / 2);
    v.wyy = over(v.iyy, b / 2);
    return v;
}

static sectionvalues tube(double od, double wt) {
    const double d = od - 2 * wt;
    sectionvalues v;
    v.area = pi / 4 * (square(od) - square(d));
    v.ixx = v.iyy = pi / 64 * (square(square(od)) - square(square(d)));
    v.izz = pi / 32 * (square(square(od)) - square(square(d)));
    v.wxx = v.wyy = over(v.ixx, od) * 2;
    v.wzz = over(v.izz, od) * 2;
    return v;
}

// --- torsion ------------------------------------------------------------------------------------

// Thin-walled open sections: I zz = sum of b t^3 / 3 over the walls, W zz = I zz / largest t
// (Timoshenko, Strength of Materials, part II). Walls are as long as their middle lines, which run
// to the middle line of the wall they meet.
static void opentorsion(int type, double b, double h, double tw, double tf, sectionvalues& v) {
    const bool anglelike = type == lprofile || type == dlprofile;
    double sum = 0;
    if (anglelike)
        sum = (b - tw / 2 + h - tw / 2) * cube(tw) * (type == dlprofile ? 2 : 1);
    else if (type == tprofile)
        sum = b * cube(tf) + (h - tf / 2) * cube(tw);
    else if (type == cprofile)
        sum = 2 * (b - tw / 2) * cube(tf) + (h - tf) * cube(tw);
    else
        sum = 2 * b * cube(tf) + (h - tf) * cube(tw);
    v.izz = sum / 3;
    v.wzz = over(v.izz, anglelike ? tw : std::max(tw, tf));
}

// Bredt: I zz = 4 Am^2 / sum of s / t, W zz = 2 Am t at the thinnest wall; Am is enclosed by the
// middle line.
static void boxtorsion(double b, double h, double tw, double tf, sectionvalues& v) {
    const double am = (b - tw) * (h - tf);
    v.izz = over(4 * am * am, 2 * (over(b - tw, tf) + over(h - tf, tw)));
    v.wzz = 2 * am * std::min(tw, tf);
}

// Saint-Venant's series for the rectangle a x t, t the shorter side (Timoshenko and Goodier, Theory
// of Elasticity, article 109). The largest stress is at the middle of the longer side.
static void bartorsion(double b, double h, sectionvalues& v) {
    const double a = std::max(b, h), t = std::min(b, h);
    const double q = over(a, t);
    const int lastterm = 31;  // the terms fall as 1/n^5 and faster
    double stiffness = 0, stress = 0;
    for (int n = 1; n <= lastterm; n += 2) {
        stiffness += std::tanh(n * pi * q / 2) / std::pow(n, 5);
        stress += 1 / (square(n) * std::cosh(n * pi * q / 2));
    }
    v.izz = a * cube(t) * (1.0 / 3 - 64 / std::pow(pi, 5) / q * stiffness);
    v.wzz = over(v.izz, t * (1 - 8 / square(pi) * stress));
}

// --- by type ------------------------------------------------------------------------------------

sectionvalues calcsection(int type, const dimensions& d) {
    const auto [b, h, tw, tf] = d;
    sectionvalues v;
    switch (type) {
        case tubular:
            return tube(b, h);
        case beammetric:
        case beamus:
            v = beam(b, h, tw, tf);
            break;
        case tprofile:
            v = composite(teestrips(b, h, tw, tf), b, h);
            break;
        case lprofile:
            v = composite(anglestrips(b, h, tw, tf), b, h);
            break;
        case dlprofile:
            v = backtoback(anglestrips(b, h, tw, tf), b, h);
            break;
        case cprofile:
            v = composite(channelstrips(b, h, tw, tf), b, h);
            break;
        case boxsection:
            v = composite(boxstrips(b, h, tw, tf), b, h);
            boxtorsion(b, h, tw, tf, v);
            return v;
        default:
            v = composite(barstrips(b, h, tw, tf), b, h);
            bartorsion(b, h, v);
            return v;
    }
    opentorsion(type, b, h, tw, tf, v);
    return v;
}

std::array<double, 3> extremefibres(int type, const dimensions& d) {
    dimensions one = d;
    if (type == lprofile || type == dlprofile) one[dimtf] = 0;
    const sectionvalues v = calcsection(type, one);
    const double cy = type == tprofile ? d[dimb] / 2 : over(v.iyy, v.wyy);
    return {over(v.ixx, v.wxx), cy, over(v.izz, v.wzz)};
}

// The flanges beyond the web have area f and width w. Tapered, their centroid lies k w nearer to
// the web than their middle, and their own second moment is f w^2 (1/12 - k^2), as of a trapezium.
// k is the one that gives the known I yy by the theorem of parallel axes.
double channeltips(const dimensions& d, double area, double iyy) {
    const double h = d[dimh], tw = d[dimtw], w = d[dimb] - tw, f = area - h * tw;
    double centroid = 0;
    const auto secondmoment = [&](double k) {
        const double flange = tw + w * (0.5 - k);
        centroid = over(h * tw * tw / 2 + f * flange, area);
        return h * cube(tw) / 12 + h * tw * square(centroid - tw / 2) +
               f * w * w * (1.0 / 12 - k * k) + f * square(flange - centroid);
    };
    double least = 0, most = 1.0 / 6;  // from parallel flanges to ones that end in an edge
    const int halvings = 50;
    for (int i = 0; i < halvings; ++i) {
        const double middle = (least + most) / 2;
        (secondmoment(middle) > iyy ? least : most) = middle;
    }
    secondmoment(least);
    return d[dimb] - centroid;
}

axisvalues centredstem(const dimensions& d) {
    const auto [b, h, tw, tf] = d;
    const double i = (h - tf) * cube(tw) / 12 + cube(b) * tf / 12;
    return {i, over(i, b / 2)};
}

static std::string faultoffit(int type, const dimensions& d) {
    const bool anglelike = type == lprofile || type == dlprofile;
    const auto [b, h, tw, tf] = d;
    if (type == tubular) return 2 * h > b ? "WT is more than half of OD" : "";
    if (type == prismaticbar) return "";
    const bool twoflanges = type != tprofile && !anglelike;
    if (anglelike && tw >= h) return "tw does not fit into H";
    if (tw * (type == boxsection ? 2 : 1) > b) return "tw does not fit into B";
    if (tf * (twoflanges ? 2 : 1) > h) return "tf does not fit into H";
    return "";
}

bool isimpossible(int type, const dimensions& d) {
    return std::ranges::any_of(d, [](double size) { return size < 0; }) ||
           !faultoffit(type, d).empty();
}

std::string sectionfault(int type, const dimensions& d) {
    const auto& fields = sectiontypes[type].fields;
    const bool anglelike = type == lprofile || type == dlprofile;
    const auto name = [&](int k) {
        const std::string caption = fields[std::size_t(k)];
        return caption.substr(0, caption.find(' '));
    };
    for (int k = 0; k < ndims; ++k) {
        if (*fields[std::size_t(k)] == 0 || (k == dimtf && anglelike && d[dimtf] == 0)) continue;
        if (!(d[std::size_t(k)] > 0)) return name(k) + " must be above 0";
    }
    return faultoffit(type, d);
}

static std::vector<point2> circle(double diameter, double inset) {
    const int corners = 72;
    std::vector<point2> p;
    for (int i = 0; i < corners; ++i) {
        const double angle = 2 * pi * i / corners, r = diameter / 2 - inset;
        p.push_back({diameter / 2 + r * std::cos(angle), diameter / 2 + r * std::sin(angle)});
    }
    return p;
}

static std::vector<point2> rectangle(double x1, double y1, double x2, double y2) {
    return {{x1, y1}, {x2, y1}, {x2, y2}, {x1, y2}};
}

std::vector<std::vector<point2>> sectionoutline(int type, const dimensions& d) {
    if (!sectionfault(type, d).empty()) return {};
    const auto [b, h, tw, tf] = d;
    const double l = (b - tw) / 2, r = (b + tw) / 2;  // faces of a web in the middle
    std::vector<point2> leg = {{0, 0}, {b, 0}, {b, tw}, {tw, tw}, {tw, h}, {0, h}};
    switch (type) {
        case tubular:
            return {circle(b, 0), circle(b, h)};
        case beammetric:
        case beamus:
            return {{{0, 0},
                     {b, 0},
                     {b, tf},
                     {r, tf},
                     {r, h - tf},
                     {b, h - tf},
                     {b, h},
                     {0, h},
                     {0, h - tf},
                     {l, h - tf},
                     {l, tf},
                     {0, tf}}};
        case tprofile:
            return {{{l, 0},
                     {r, 0},
                     {r, h - tf},
                     {b, h - tf},
                     {b, h},
                     {0, h},
                     {0, h - tf},
                     {l, h - tf}}};
        case lprofile:
            return {leg};
        case dlprofile: {
            std::vector<point2> other = leg;
            for (point2& p : other) p.x = b - p.x;
            for (point2& p : leg) p.x += b;
            return {other, leg};
        }
        case cprofile:
            return {{{0, 0}, {b, 0}, {b, tf}, {tw, tf}, {tw, h - tf}, {b, h - tf}, {b, h}, {0, h}}};
        case boxsection:
            return {rectangle(0, 0, b, h), rectangle(tw, tf, b - tw, h - tf)};
        default:
            return {rectangle(0, 0, b, h)};
    }
}

point2 sectioncentroid(int type, const std::vector<std::vector<point2>>& outline) {
    double area = 0, sx = 0, sy = 0;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const auto& polygon = outline[i];
        const double sign = i > 0 && type != dlprofile ? -1 : 1;
        double a = 0, x = 0, y = 0;
        for (std::size_t k = 0; k < polygon.size(); ++k) {
            const point2 from = polygon[k], to = polygon[(k + 1) % polygon.size()];
            const double cross = from.x * to.y - to.x * from.y;
            a += cross / 2;
            x += (from.x + to.x) * cross / 6;
            y += (from.y + to.y) * cross / 6;
        }
        const double turn = a < 0 ? -sign : sign;
        area += turn * a;
        sx += turn * x;
        sy += turn * y;
    }
    return {sx / area, sy / area};
}
