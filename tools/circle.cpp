// SPDX-License-Identifier: GPL-3.0-or-later
// Circle sections. State: the registers of the last evaluation.
#include "tools/circle.h"

#include <cmath>

#include "core/session.h"
#include "tools/closestpoints.h"

float circlecentre[4];
double circleradius, circleangle;
point3 circleu, circlev, circlen;
static point3 centre;  // circlecentre before it is rounded

static void setrow(int row, const point3& point, const point3& direction) {
    for (std::size_t k = 0; k < 3; ++k) {
        gmat1[row][k + 1] = point[k];
        gmat2[row][k + 1] = direction[k];
    }
}

// The centre lies on the bisectors of the chords from point 3.
static bool findcentre(const point3& p1, const point3& p2, const point3& p3, point3& c, point3& n) {
    const point3 a = p1 - p3, b = p2 - p3;
    n = cross(b, a);
    const point3 bisectb = cross(n, b), bisecta = cross(a, n);
    const point3 middleb = 0.5 * (p2 + p3);
    setrow(1, middleb, bisectb);
    setrow(2, 0.5 * (p1 + p3), bisecta);
    intersectlines();
    if (!linehit) return false;
    c = middleb + lineparam[1] * bisectb;
    return true;
}

// Arc cosine of -c by way of the arc tangent.
static double anglefrom(double c) {
    const double rest = 1 - c * c;
    return rest <= 0 ? pi : std::atan(c / std::sqrt(rest)) + 2 * std::atan(1.0);
}

bool evaluatecircle(graphiclist& list, int g) {
    const point3 p1 = definitionpoint(list, g, 1), p2 = definitionpoint(list, g, 2);
    point3 c, n;
    if (!findcentre(p1, p2, definitionpoint(list, g, 3), c, n)) return false;
    const point3 u = p1 - c, v = cross(n, u), w = p2 - c;
    double radius = lengthof(u);
    const double across = lengthof(v), far = lengthof(w);
    if (!(radius > 0) || !(across > 0) || !(far > 0)) return false;
    if (!std::isfinite(radius) || !std::isfinite(across) || !std::isfinite(far)) return false;
    centre = c;
    for (std::size_t k = 0; k < 3; ++k) circlecentre[k + 1] = float(c[k]);
    circleu = (1 / radius) * u;
    circlev = (1 / across) * v;
    circlen = cross(circleu, circlev);
    circleangle = anglefrom(-dot(circleu, (1 / far) * w));
    if (dot(circlev, w) < 0) circleangle = 2 * pi - circleangle;
    const double chord = lengthof(p2 - p1);
    if (radius < chord / 2) radius = chord / 2;
    circleradius = radius;
    if (radius > straightfrom * chord) list(g, 0, 0) = kindline;
    return true;
}

point3 circlepoint(double angle) {
    return centre + (circleradius * std::cos(angle)) * circleu +
           (circleradius * std::sin(angle)) * circlev;
}

void setradius(graphiclist& list, int g, double radius) {
    const point3 p1 = definitionpoint(list, g, 1), p2 = definitionpoint(list, g, 2),
                 p3 = definitionpoint(list, g, 3);
    const point3 chord = p1 - p2;
    const double half = lengthof(chord) / 2;
    const point3 outward = cross(cross(p2 - p3, p1 - p3), chord);
    const double size = lengthof(outward);
    if (radius < half) radius = half;
    if (radius > straightfrom * 2 * half) {
        list(g, 0, 0) = kindline;
        return;
    }
    if (!(size > 0)) return;
    // A section of more than half a circle has its centre on the side of its third point.
    const double rounding = 1e-4;  // radians by which a half circle may miss pi in Singles
    const bool major = evaluatecircle(list, g) && circleangle > pi + rounding;
    const double s = (major ? 1 : -1) * std::sqrt(radius * radius - half * half);
    setdefinitionpoint(list, g, 3, 0.5 * (p1 + p2) + ((s + radius) / size) * outward);
}
