// SPDX-License-Identifier: GPL-3.0-or-later
// Exact stresses of plates and line elements.
#include "post/exactstress.h"

#include <algorithm>
#include <cmath>

#include "core/catalogue.h"
#include "core/model.h"
#include "post/combinedstress.h"
#include "post/members.h"
#include "post/sectionfibres.h"
#include "view/localaxes.h"

bool isexact(int component) {
    return component >= misesupper && component < exactend;
}

bool isofline(int component) {
    return component >= linenormal;
}

// --- plates -------------------------------------------------------------------------------------

namespace {
struct planestress {
    double x, y, xy, z;  // z: across, of plane strain
};
}  // namespace

// A record's values 1..12, local axes.
static planestress bendingof(const float* s) {
    return {s[8], s[7], double(s[10]) - s[11], 0};
}

static planestress stressat(const float* s, int side) {
    const planestress b = bendingof(s);
    return {s[1] + side * b.x, s[2] + side * b.y, s[4] + side * b.xy, s[3]};
}

static void recordat(int e, int c, float* s) {
    for (int k = 1; k <= 12; ++k) s[k] = float(elemstress(k, e, c));
}

static planestress stressat(int e, int c, int side) {
    float s[13];
    recordat(e, c, s);
    return stressat(s, side);
}

static double misesof(const planestress& s) {
    return std::sqrt(std::max(0.0, s.x * s.x + s.y * s.y + s.z * s.z - s.x * s.y - s.x * s.z -
                                       s.y * s.z + 3 * s.xy * s.xy));
}

// Mohr's circle.
static principalstress principalof(const planestress& s) {
    const double middle = (s.x + s.y) / 2, radius = std::hypot((s.x - s.y) / 2, s.xy);
    return {middle + radius, middle - radius, std::atan2(2 * s.xy, s.x - s.y) / 2};
}

principalstress principalof(int e, int corner, int side) {
    return principalof(stressat(e, corner, side));
}

principalstress meanprincipalof(int e, int side) {
    const int elnn = nodesoftype(elems(e, 0));
    planestress mean{};
    for (int c = 1; c <= elnn; ++c) {
        const planestress s = stressat(e, c, side);
        mean.x += s.x / elnn;
        mean.y += s.y / elnn;
        mean.xy += s.xy / elnn;
    }
    return principalof(mean);
}

// Moment a length of a linear stress that is s at the face: s t^2 / 6.
static double momentof(int e, double s) {
    const double t = groups(egroup(e), fieldthickness);
    return s * t * t / 6;
}

// Shear forces by equilibrium of the element's own moments, Timoshenko and Woinowsky-Krieger,
// Theory of Plates and Shells, 2nd ed., article 21: Vx = Mx,x + Mxy,y. The moments are bilinear
// over a quadrilateral.
static double shearof(int e, int corner, bool alongx, const float (*records)[13]) {
    const int elnn = nodesoftype(elems(e, 0));
    localaxes(e);
    turnedplateaxes(e);
    double x[4], y[4], first[4], second[4];
    for (int c = 0; c < elnn; ++c) {
        double at[3];
        for (int k = 0; k < 3; ++k) at[k] = nodes(0, int(elems(e, c + 1)), k) - axisorigin[k];
        x[c] = at[0] * localx[0] + at[1] * localx[1] + at[2] * localx[2];
        y[c] = at[0] * localy[0] + at[1] * localy[1] + at[2] * localy[2];
        const planestress b = bendingof(records[c]);
        first[c] = momentof(e, alongx ? b.x : b.xy);   // derived by x
        second[c] = momentof(e, alongx ? b.xy : b.y);  // derived by y
    }
    double dr[4], ds[4];  // of the shape functions at the corner
    if (elnn == 3) {
        const double r[] = {-1, 1, 0}, s[] = {-1, 0, 1};
        std::copy(r, r + 3, dr);
        std::copy(s, s + 3, ds);
    } else {
        const int rof[] = {-1, 1, 1, -1}, sof[] = {-1, -1, 1, 1};
        for (int c = 0; c < 4; ++c) {
            dr[c] = rof[c] * (1 + sof[c] * sof[corner - 1]) / 4.0;
            ds[c] = sof[c] * (1 + rof[c] * rof[corner - 1]) / 4.0;
        }
    }
    double xr = 0, xs = 0, yr = 0, ys = 0, fr = 0, fs = 0, gr = 0, gs = 0;
    for (int c = 0; c < elnn; ++c) {
        xr += dr[c] * x[c];
        xs += ds[c] * x[c];
        yr += dr[c] * y[c];
        ys += ds[c] * y[c];
        fr += dr[c] * first[c];
        fs += ds[c] * first[c];
        gr += dr[c] * second[c];
        gs += ds[c] * second[c];
    }
    const double area = xr * ys - xs * yr;
    if (area == 0) return 0;
    return (fr * ys - fs * yr - gr * xs + gs * xr) / area;
}

double platevalue(int component, int e, const float* s) {
    const double t = groups(egroup(e), fieldthickness);
    const auto principal = [&](int side) { return principalof(stressat(s, side)); };
    switch (component) {
        case misesupper:
        case misesmiddle:
        case miseslower:
            return misesof(stressat(s, misesmiddle - component));
        case miseslargest:
            return std::max(
                {misesof(stressat(s, 1)), misesof(stressat(s, 0)), misesof(stressat(s, -1))});
        case principal1upper:
            return principal(1).s1;
        case principal2upper:
            return principal(1).s2;
        case principal1middle:
            return principal(0).s1;
        case principal2middle:
            return principal(0).s2;
        case principal1lower:
            return principal(-1).s1;
        case principal2lower:
            return principal(-1).s2;
        case forcex:
            return t * s[1];
        case forcey:
            return t * s[2];
        case forcexy:
            return t * s[4];
        case momentx:
            return momentof(e, bendingof(s).x);
        case momenty:
            return momentof(e, bendingof(s).y);
        case momentxy:
            return momentof(e, bendingof(s).xy);
        default:
            return 0;
    }
}

double recordvalue(int component, int e, int corner, const float (*records)[13]) {
    const float* const s = records[corner - 1];
    const int combined = misesupper - 1;  // the last of the told
    if (component < combined) return s[component];
    if (component == combined) return combinedstressof(s);
    if (component == shearx || component == sheary)
        return shearof(e, corner, component == shearx, records);
    return platevalue(component, e, s);
}

// --- line elements ------------------------------------------------------------------------------

static double over(double force, double modulus) {
    return modulus > 0 ? force / modulus : 0;
}

namespace {
// Stresses of a section from N and both moments.
struct linestresses {
    double normal = 0, corner[4] = {}, largest = 0, smallest = 0, torsion = 0;
};
}  // namespace

// Which way corner 1..4 lies: along e2, along e3.
static const int cornersides[4][2] = {{1, 1}, {-1, 1}, {-1, -1}, {1, -1}};

// The corners of the rectangle about the section, I/W away from its axes.
static void boundcorners(linestresses& s, int e, double about2, double about3) {
    const bool tube = int(elems(e, 0)) == typepipe;
    const double most = tube ? std::hypot(about2, about3) : std::fabs(about2) + std::fabs(about3);
    for (int c = 0; c < 4; ++c)
        s.corner[c] = s.normal + cornersides[c][1] * about2 - cornersides[c][0] * about3;
    s.largest = s.normal + most;
    s.smallest = s.normal - most;
}

// Its own corners: the four that lie farthest each way, the largest and the smallest of all.
static void owncorners(linestresses& s, const sectionfibres& f, int g, double my, double mz) {
    const double ixx = groups(g, fieldixx), iyy = groups(g, fieldiyy);
    double farthest[4] = {-1e300, -1e300, -1e300, -1e300}, x = 0, y = 0;
    for (const point2& p : f.corners) {
        x = std::max(x, std::fabs(p.x));
        y = std::max(y, std::fabs(p.y));
    }
    s.largest = -1e300;
    s.smallest = 1e300;
    for (const point2& p : f.corners) {
        const double stress = s.normal + my * f.ofmy(p, ixx, iyy) + mz * f.ofmz(p, ixx, iyy);
        s.largest = std::max(s.largest, stress);
        s.smallest = std::min(s.smallest, stress);
        for (int c = 0; c < 4; ++c) {
            const double off = cornersides[c][0] * p.x / x + cornersides[c][1] * p.y / y;
            if (off <= farthest[c]) continue;
            farthest[c] = off;
            s.corner[c] = stress;
        }
    }
}

// My stretches the side of +e3, Mz that of -e2.
static linestresses stressesof(int e, const memberline& line, int end) {
    const int i = end == 1 ? 0 : memberstations - 1, g = egroup(e);
    const auto force = [&](memberquantity q) { return double(line.value[q][i]); };
    linestresses s;
    s.normal = over(force(memN), groups(g, fieldthickness));
    s.torsion = over(force(memT), groups(g, fieldwzz));
    const sectionfibres& f = fibresof(g);
    if (f.corners.empty())
        boundcorners(s, e, over(force(memMy), groups(g, fieldwxx)),
                     over(force(memMz), groups(g, fieldwyy)));
    else
        owncorners(s, f, g, force(memMy), force(memMz));
    return s;
}

double linevalue(int component, int e, const memberline& line, int end) {
    const linestresses s = stressesof(e, line, end);
    switch (component) {
        case linenormal:
            return s.normal;
        case linebending:
            return std::max(s.largest - s.normal, s.normal - s.smallest);
        case linelargest:
            return s.largest;
        case linesmallest:
            return s.smallest;
        case linecorner1:
        case linecorner2:
        case linecorner3:
        case linecorner4:
            return s.corner[component - linecorner1];
        default: {
            const double direct = std::max(std::fabs(s.largest), std::fabs(s.smallest));
            return std::sqrt(direct * direct + 3 * s.torsion * s.torsion);
        }
    }
}

double exactvalue(int component, int e, int corner) {
    const int elnn = nodesoftype(elems(e, 0));
    if (corner > elnn || isofline(component) != (elnn == 2)) return 0;
    if (isofline(component)) {
        const memberresult* const m = memberof(e);
        return m ? linevalue(component, e, m->high, corner) : 0;
    }
    float records[4][13] = {};
    const bool shear = component == shearx || component == sheary;  // of all corners
    for (int c = shear ? 1 : corner; c <= (shear ? elnn : corner); ++c)
        recordat(e, c, records[c - 1]);
    return recordvalue(component, e, corner, records);
}
