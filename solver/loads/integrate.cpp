// SPDX-License-Identifier: GPL-3.0-or-later
// Integrals over elements.
#include "solver/loads/integrate.h"

#include <algorithm>
#include <vector>

#include "solver/elements/gauss.h"
#include "solver/elements/surface.h"

// --- lines --------------------------------------------------------------------------------------

namespace {
struct linepart {
    elvector force;
    double size = 0;  // integral of the load's magnitude
};
}  // namespace

static linepart linepartof(const element& e, double a, double b, const linedensity& load) {
    const elementkind& kind = kindof(e.type);
    linepart part;
    part.force = elvector::Zero(e.nodes * kind.nodedofs);
    const int points = 5;
    const double half = (b - a) / 2 * lengthof(e);
    placedforce forces[points];
    for (int i = 0; i < points; ++i) {
        const gausspoint& g = gausspoints(points)[i];
        const double x = (a + b) / 2 + g.at * (b - a) / 2;
        const vec3 force = g.weight * half * load(x);
        part.size += force.norm();
        forces[i] = {{x, 0}, force};
    }
    kind.spread(e, placedforces(forces), part.force);
    return part;
}

static void addpart(const element& e, double a, double b, const linedensity& load,
                    const linepart& whole, double size, int depth, elvector& f) {
    const double middle = (a + b) / 2, enough = 1e-7;
    const linepart first = linepartof(e, a, middle, load), second = linepartof(e, middle, b, load);
    const elvector halves = first.force + second.force;
    const double change = (halves - whole.force).cwiseAbs().maxCoeff();
    const bool moments = kindof(e.type).nodedofs == 6;
    const double unit = moments ? std::max(1.0, lengthof(e)) : 1;
    if (depth == 0 || !(change > enough * unit * size)) {
        f += halves;
        return;
    }
    addpart(e, a, middle, load, first, size, depth - 1, f);
    addpart(e, middle, b, load, second, size, depth - 1, f);
}

void integrateline(const element& e, double from, double to, const linedensity& load, elvector& f) {
    const int deepest = 16;
    const linepart whole = linepartof(e, from, to, load);
    addpart(e, from, to, load, whole, whole.size, deepest, f);
}

bool cutlevels(double z0, double z1, double lower, double upper, double& from, double& to) {
    from = 0;
    to = 1;
    for (const bool high : {false, true}) {
        // Inside where d is not below 0.
        const double d0 = high ? upper - z0 : z0 - lower, d1 = high ? upper - z1 : z1 - lower;
        if (d0 < 0 && d1 < 0) return false;
        if (d0 < 0) from = std::max(from, d0 / (d0 - d1));
        if (d1 < 0) to = std::min(to, d0 / (d0 - d1));
    }
    return to > from;
}

// --- plates -------------------------------------------------------------------------------------

// Corners in natural coordinates with the height above them.
struct clipcorner {
    vec2 place;
    double z;
};
using clippolygon = std::vector<clipcorner>;

// The side of the level where sign * (z - level) > 0.
static clippolygon cutpolygon(const clippolygon& p, double level, double sign) {
    clippolygon kept;
    for (std::size_t i = 0; i < p.size(); ++i) {
        const clipcorner &a = p[i], &b = p[(i + 1) % p.size()];
        const double da = sign * (a.z - level), db = sign * (b.z - level);
        if (da >= 0) kept.push_back(a);
        if ((da >= 0) == (db >= 0)) continue;
        const double t = da / (da - db);
        kept.push_back({a.place + t * (b.place - a.place), level});
    }
    return kept;
}

static void addpolygon(const element& e, const clippolygon& p, const platedensity& load,
                       std::vector<placedforce>& forces) {
    for (std::size_t i = 2; i < p.size(); ++i) {
        const vec2 u = p[i - 1].place - p[0].place, v = p[i].place - p[0].place;
        const double size = std::fabs(u.x() * v.y() - u.y() * v.x());
        for (const surfacepoint& q : surfacepoints(3, 5)) {
            const vec2 place = p[0].place + q.place[0] * u + q.place[1] * v;
            const surfaceshape n = shapesat(e.nodes, place);
            const vec3 normal = surfacenormal(e, n);
            const double area = normal.norm();
            const vec3 force = q.weight * size * area * load(surfaceat(e, n), normal / area);
            forces.push_back({place, force});
        }
    }
}

// Triangles of the natural domain; on each the height counts as linear.
static std::vector<clippolygon> trianglesof(const element& e, int cells) {
    const auto corner = [&](double r, double s) {
        const vec2 place(r, s);
        return clipcorner{place, surfaceat(e, shapesat(e.nodes, place)).z()};
    };
    std::vector<clippolygon> list;
    const bool four = e.nodes == 4;
    const double origin = four ? -1 : 0, width = (four ? 2.0 : 1.0) / cells;
    for (int i = 0; i < cells; ++i)
        for (int j = 0; j < (four ? cells : cells - i); ++j) {
            const double r = origin + i * width, t = origin + j * width;
            const auto a = corner(r, t), b = corner(r + width, t);
            const auto c = corner(r + width, t + width), d = corner(r, t + width);
            list.push_back({a, b, d});
            if (four || i + j < cells - 1) list.push_back({b, c, d});
        }
    return list;
}

bool integrateplate(const element& e, double lower, double upper, const platedensity& load,
                    elvector& f) {
    double low = INFINITY, high = -INFINITY;
    for (int c = 0; c < e.nodes; ++c) {
        low = std::min(low, e.x[c].z());
        high = std::max(high, e.x[c].z());
    }
    if (high < lower || low > upper || (high == lower && low == lower)) return false;
    // A plate that reaches a level is worked out finely: the load bends or begins there.
    const bool whole = low > lower && high < upper;
    const int cells = whole ? 1 : 8;
    std::vector<placedforce> forces;
    for (const clippolygon& triangle : trianglesof(e, cells)) {
        const clippolygon part = cutpolygon(cutpolygon(triangle, lower, 1), upper, -1);
        if (part.size() < 3) continue;
        addpolygon(e, part, load, forces);
    }
    kindof(e.type).spread(e, forces, f);
    return !forces.empty();
}
