// SPDX-License-Identifier: GPL-3.0-or-later
// Cutting and joining of graphic elements. State: the rows of the solver, and the lines that the
// command that runs finds and makes.
#include "tools/intersect.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "core/model.h"
#include "core/modelitems.h"
#include "core/modelsize.h"
#include "core/pack.h"
#include "core/platform.h"
#include "core/session.h"
#include "tools/Graphics.h"
#include "tools/circle.h"
#include "tools/closestpoints.h"
#include "view/moddraw.h"

double linetol[3];
Flag extendmode;

static bool connecting;  // Connect 3-D runs on its two elements
static int madelines;    // by this command
// Lines of the drawing by the x of an end. A line that was cut since keeps its former entries.
static std::multimap<double, int> linesbyx;

// The line of a row with the circle evaluated last, both parameters on the line. In plan: x and y
// alone are used.
static void intersectcircle(int row) {
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
    if (growfor({{sizegraphics, std::max(ngraphics(), int(graphsel(0, 0))) + room}})) return;
    throw runtimeerror{errsubscript,
                       "The new lines do not fit the " + std::to_string(modelsize(sizegraphics)) +
                           " graphic elements declared. Increase 'Number of graphic elements' "
                           "with [File,Model size..]"};
}

static void enterends(int g) {
    for (const int end : {1, 2}) linesbyx.insert({definitionpoint(graphics, g, end)[0], g});
}

// Is there a line between these two points, either way round? One other than except.
static bool isdrawn(const point3& from, const point3& to, int except = 0) {
    const auto meet = [](const point3& a, const point3& b) { return lengthof(a - b) < nodetol; };
    const auto last = linesbyx.upper_bound(from[0] + nodetol);
    for (auto at = linesbyx.lower_bound(from[0] - nodetol); at != last; ++at) {
        if (at->second == except || kindof(graphics, at->second) != kindline) continue;
        const point3 a = definitionpoint(graphics, at->second, 1),
                     b = definitionpoint(graphics, at->second, 2);
        if ((meet(a, from) && meet(b, to)) || (meet(a, to) && meet(b, from))) return true;
    }
    return false;
}

// A line of no length is not made, nor one that stands there already. Returns how many.
static int addline(const point3& from, const point3& to) {
    if (lengthof(to - from) < nodetol || isdrawn(from, to)) return 0;
    const int g = appenditems(items::graphic);
    openrecord(graphics, g, kindline);
    setdefinitionpoint(graphics, g, 1, from);
    setdefinitionpoint(graphics, g, 2, to);
    enterends(g);
    ++madelines;
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
    const point3 end = definitionpoint(graphics, g, 2);
    const bool stands = isdrawn(place, end);  // the rest of the line, as a line of its own
    const int count = addline(place, end);
    if (count > 0 || stands) {
        setdefinitionpoint(graphics, g, 2, place);
        enterends(g);
    }
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

// Is the arc drawn where the line at parameter t meets its circle? A circle in any plane is met in
// plan, at its radius; the point of it that lies farthest that way is the one that must be drawn.
static bool isonarc(double t) {
    point3 way = alongrow(1, t) - circlepoint(0) + circleradius * circleu;  // from the centre
    way[2] = 0;
    double angle = std::atan2(dot(way, circlev), dot(way, circleu));
    if (angle < 0) angle += 2 * pi;
    const double reach = nodetol / circleradius;
    return angle <= circleangle + reach || angle >= 2 * pi - reach;
}

// The farther cut first, so that the nearer one finds the line's own piece still in its place.
static int cutbycircle(int line, int circle) {
    if (!evaluatecircle(graphics, circle)) return 0;
    if (kindof(graphics, circle) == kindline) return cutlines(line, circle);
    setrowto(1, line);
    intersectcircle(1);
    if (!linehit) return 0;
    const double near = lineparam[1], far = lineparam[2];
    int count = 0;
    if (isonarc(far)) count += cutline(line, 1, far);
    if (near != far && isonarc(near)) count += cutline(line, 1, near);
    return count;
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
            return theplatform().message("Intersection with Arc not Supported", icons::information);
}

// Lines that overlapped are cut into the same pieces: of those that the command made, after the
// first before, one is enough.
static void droptwice(int before) {
    const int count = ngraphics();
    bool dropped = false;
    for (int g = before + 1; g <= count; ++g) {
        if (!isdrawn(definitionpoint(graphics, g, 1), definitionpoint(graphics, g, 2), g)) continue;
        graphics(g, 0, 0) = kindfree;
        dropped = true;
    }
    if (dropped) packgraphics();
}

void connectgraphics(connectmodes mode) {
    if (graphsel(0, 0) == 0) {
        theplatform().message("Please, select graphics before choosing this option.",
                              icons::exclamation);
        return;
    }
    const hourglass wait;
    const int selected = graphsel(0, 0), before = ngraphics();
    extendmode = mode == connectmodes::extend;
    connecting = mode == connectmodes::connect3d && selected == 2;
    madelines = 0;
    for (int g = 1; g <= ngraphics(); ++g)
        if (kindof(graphics, g) == kindline) enterends(g);
    guarded(
        [&] {
            connectall(false);
            connecting = false;
            // Extended pieces would call for extensions without end; pieces of a cut do not.
            if (selected > 1) connectall(!extendmode);
        },
        [](const runtimeerror& e) { theplatform().message(e.what, icons::exclamation); });
    droptwice(before);
    const bool nothing = madelines == 0;
    linesbyx.clear();
    extendmode = false;
    redrawall();
    if (nothing) tellcurves();
}
