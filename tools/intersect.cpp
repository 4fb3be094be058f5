// SPDX-License-Identifier: GPL-3.0-or-later
// Cutting and joining of graphic elements. State: the rows of the solver, and the lines made by the
// command that runs.
#include "tools/intersect.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "core/model.h"
#include "core/platform.h"
#include "core/session.h"
#include "tools/circle.h"
#include "view/moddraw.h"

double gmat1[3][4], gmat2[3][4], lineparam[3], linetol[3];
Flag linehit, extendmode;

static bool connecting;                      // Connect 3-D runs on its two elements
static std::set<std::array<float, 6>> made;  // end points of the lines made by this command

static point3 rowof(const double (&matrix)[3][4], int row) {
    return {matrix[row][1], matrix[row][2], matrix[row][3]};
}

static point3 alongrow(int row, double t) {
    return rowof(gmat1, row) + t * rowof(gmat2, row);
}

static void nohit() {
    lineparam[1] = lineparam[2] = 0;
    linehit = false;
}

// Least distance of p1 + t1 d1 and p2 + t2 d2: both derivatives of its square vanish.
void intersectlines() {
    const point3 d1 = rowof(gmat2, 1), d2 = rowof(gmat2, 2);
    const point3 apart = rowof(gmat1, 2) - rowof(gmat1, 1);
    const double a = dot(d1, d1), b = -dot(d2, d1), d = dot(d2, d2);
    const double r1 = dot(apart, d1), r2 = -dot(apart, d2);
    const double det = a * d - b * b;
    // Parallel but for the rounding of the products.
    if (!(std::fabs(det) > 1e-12 * a * d)) return nohit();
    lineparam[1] = (d * r1 - b * r2) / det;
    lineparam[2] = (-b * r1 + a * r2) / det;
    linehit = true;
}

void intersectcircle(int row) {
    const double qx = gmat1[row][1] - circlecentre[1], qy = gmat1[row][2] - circlecentre[2];
    const double dx = gmat2[row][1], dy = gmat2[row][2];
    const double b = 2 * qx * dx + 2 * qy * dy, a = dx * dx + dy * dy;
    const double disc = b * b - 4 * a * (qx * qx + qy * qy - circleradius * circleradius);
    if (disc < 0 || a == 0) return nohit();
    lineparam[1] = (-b - std::sqrt(disc)) / 2 / a;
    lineparam[2] = (-b + std::sqrt(disc)) / 2 / a;
    linehit = true;
}

static void setrowto(int row, int g) {
    const point3 p = definitionpoint(graphics, g, 1), d = definitionpoint(graphics, g, 2) - p;
    for (std::size_t k = 0; k < 3; ++k) {
        gmat1[row][k + 1] = p[k];
        gmat2[row][k + 1] = d[k];
    }
    const double length = lengthof(d);
    linetol[row] = length == 0 ? nodetol : nodetol / length;
}

static void needroom() {
    const int room = 5;  // lines that one pair can make
    if (ngraphics() + room <= graphics.upper1 && graphsel(0, 0) + room <= graphsel.upper1) return;
    throw runtimeerror{errsubscript,
                       "The new lines do not fit the " + std::to_string(modelsize(5)) +
                           " graphic elements declared. Increase 'Number of graphic elements' "
                           "with [File,Model size..]"};
}

// A line of no length is not made, nor one that this command made before. Returns how many.
static int addline(const point3& from, const point3& to) {
    if (lengthof(to - from) < nodetol) return 0;
    const std::array<float, 6> ends = {float(from[0]), float(from[1]), float(from[2]),
                                       float(to[0]),   float(to[1]),   float(to[2])};
    if (!made.insert(ends).second) return 0;
    const int g = ngraphics() + 1;
    openrecord(graphics, g, kindline);
    setdefinitionpoint(graphics, g, 1, from);
    setdefinitionpoint(graphics, g, 2, to);
    graphics(0, 0, 0) = float(g);
    const int count = graphsel(0, 0) + 1;
    graphsel(count, 0) = g;
    graphsel(count, 1) = 1;
    graphsel(0, 0) = count;
    for (int end = 1; end <= 2 && graphsel2(0, 0) < graphsel2.upper1; ++end) {
        const int entry = graphsel2(0, 0) + 1;
        graphsel2(entry, 0) = g;
        graphsel2(entry, 1) = end;
        graphsel2(0, 0) = entry;
    }
    return 1;
}

// Line g of a row at parameter t of the line as it was: extended, split, or left alone.
static int cutline(int g, int row, double t) {
    const point3 place = alongrow(row, t);
    if (extendmode && t < 0) return addline(rowof(gmat1, row), place);
    if (extendmode && t >= 1) return addline(alongrow(row, 1), place);
    if (!(linetol[row] < t && t < 1 - linetol[row])) return 0;
    const int count = addline(place, definitionpoint(graphics, g, 2));
    if (count > 0) setdefinitionpoint(graphics, g, 2, place);
    return count;
}

static int cutlines(int ga, int gb) {
    setrowto(1, ga);
    setrowto(2, gb);
    intersectlines();
    if (!linehit) return 0;
    const double ta = lineparam[1], tb = lineparam[2];
    int count = cutline(ga, 1, ta) + cutline(gb, 2, tb);
    const point3 a = alongrow(1, ta), b = alongrow(2, tb);
    if (connecting && count > 0 && lengthof(b - a) > nodetol) count += addline(a, b);
    return count;
}

// The farther cut first, so that the nearer one finds the line's own piece still in its place.
static int cutbycircle(int line, int circle) {
    if (!evaluatecircle(graphics, circle)) return 0;
    if (kindof(graphics, circle) == kindline) return cutlines(line, circle);
    setrowto(1, line);
    intersectcircle(1);
    if (!linehit) return 0;
    const int count = cutline(line, 1, lineparam[2]);
    return lineparam[1] == lineparam[2] ? count : count + cutline(line, 1, lineparam[1]);
}

int connectpair(int i, int j) {
    const int ga = graphsel(i, 0), gb = graphsel(j, 0);
    const int a = kindof(graphics, ga), b = kindof(graphics, gb);
    needroom();
    if (a == kindline && b == kindline) return cutlines(ga, gb);
    if (a == kindline && b == kindcircle) return cutbycircle(ga, gb);
    if (a == kindcircle && b == kindline) return cutbycircle(gb, ga);
    return 0;
}

// Pairs of the selection as it stands, or with the pieces that the pass itself adds.
static void connectall(bool pieces) {
    const int count = graphsel(0, 0);
    const auto last = [&] { return pieces ? graphsel(0, 0) : count; };
    for (int i = 1; i < last(); ++i)
        for (int j = i + 1; j <= last(); ++j) connectpair(i, j);
}

// Curves are left alone; who selected one and saw nothing happen is told why.
static void tellcurves() {
    for (int i = 1; i <= graphsel(0, 0); ++i)
        if (kindof(graphics, graphsel(i, 0)) == kindcurve)
            return door().message("Intersection with Arc not Supported", icons::information);
}

void connectgraphics(connectmodes mode) {
    if (graphsel(0, 0) == 0) {
        door().message("Please, select graphics before choosing this option.", icons::exclamation);
        return;
    }
    const hourglass wait;
    const int selected = graphsel(0, 0);
    extendmode = mode == connectmodes::extend;
    connecting = mode == connectmodes::connect3d && selected == 2;
    made.clear();
    guarded(
        [&] {
            connectall(false);
            connecting = false;
            // Extended pieces would call for extensions without end; pieces of a cut do not.
            if (selected > 1) connectall(!extendmode);
        },
        [](const runtimeerror& e) { door().message(e.what, icons::exclamation); });
    const bool nothing = made.empty();
    made.clear();
    extendmode = false;
    redrawall();
    if (nothing) tellcurves();
}
