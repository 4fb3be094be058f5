// SPDX-License-Identifier: GPL-3.0-or-later
// Members between their ends: the forces by statics from the first end, the deflection by that of
// the ends and what the load adds between clamped ends.
#include "solver/members.h"

#include "solver/gauss.h"
#include "solver/line.h"
#include "solver/rowtext.h"
#include "solver/section.h"

static const int intervals = memberstations - 1;
using vec12 = Eigen::Matrix<double, 12, 1>;

namespace {
// The load on each interval between stations, local axes: force, and its first moment about the
// interval's middle.
struct memberload {
    vec3 force[intervals], first[intervals];
    vec3 moment = vec3::Zero();  // a length, even all along
    bool any = false;
};

// Forces at a place along the element.
struct memberforce {
    vec3 force, moment;  // N Vy Vz, T My Mz
};
}  // namespace

static memberload loadof(const element& e, const mat3& axes, const caseloads& loads) {
    memberload sum;
    for (int i = 0; i < intervals; ++i) sum.force[i] = sum.first[i] = vec3::Zero();
    if (!loads.loadselements()) return sum;
    const double length = lengthof(e);
    sum.moment = loads.online(e, [&](double from, double to, const linedensity& load) {
        sum.any = true;
        for (int i = 0; i < intervals; ++i) {
            const double a = std::max(from, double(i) / intervals);
            const double b = std::min(to, double(i + 1) / intervals);
            if (a >= b) continue;
            const double middle = (i + 0.5) / intervals;
            const int points = 5;
            for (int k = 0; k < points; ++k) {
                const gausspoint& g = gausspoints(points)[k];
                const double x = (a + b) / 2 + g.at * (b - a) / 2;
                const vec3 force = axes * load(x) * (g.weight * (b - a) / 2 * length);
                sum.force[i] += force;
                sum.first[i] += (x - middle) * length * force;
            }
        }
    });
    sum.any |= !sum.moment.isZero(0);
    return sum;
}

// From the forces at an interval's beginning those at s behind it; the load on it counts as linear.
static memberforce onwards(const memberforce& at, const memberload& load, int i, double h,
                           double s) {
    memberforce next = at;
    const vec3 even = load.force[i] / h, slope = 12 * load.first[i] / (h * h * h);
    // Integrals over 0..s of q = even + slope (x - h/2), and of (s - x) q.
    const vec3 force = even * s + slope * (s * s / 2 - h * s / 2);
    const vec3 arm = even * s * s / 2 + slope * (s * s * s / 6 - h * s * s / 4);
    next.force -= force;
    next.moment -= load.moment * s;
    next.moment[1] += at.force[2] * s - arm[2];
    next.moment[2] += -at.force[1] * s + arm[1];
    return next;
}

static memberforce atfirstend(const vec12& ends) {
    return {-ends.segment<3>(0), -ends.segment<3>(3)};
}

namespace {
// Rate of slope and deflection: v' = turn + shear, turn' = M / (E I).
struct flexibility {
    double bend2, bend3, shear;
};
}  // namespace

static flexibility flexibilityof(const element& e) {
    const linesection section = sectionof(e);
    const double modulus = e.field(fieldmodulus);
    const double shearmodulus = modulus / (2 * (1 + e.field(fieldpoisson)));
    const auto over = [](double stiffness) { return stiffness > 0 ? 1 / stiffness : 0; };
    return {over(modulus * section.i2), over(modulus * section.i3),
            over(shearmodulus * e.shear * section.area)};
}

// Deflections v, w that the load gives between clamped ends, whose forces on the element are
// clamps.
static void deflectclamped(const element& e, const memberload& load, const vec12& clamps,
                           vec2* deflection) {
    const flexibility soft = flexibilityof(e);
    const double h = lengthof(e) / intervals;
    memberforce at = atfirstend(clamps);
    vec2 way = vec2::Zero(), turn = vec2::Zero();  // turn: slope without shear
    for (int i = 0; i < intervals; ++i) {
        vec2 nextway = way + turn * h, nextturn = turn;
        const int points = 3;
        for (int k = 0; k < points; ++k) {
            const gausspoint& g = gausspoints(points)[k];
            const double s = (1 + g.at) / 2 * h, weight = g.weight / 2 * h;
            const memberforce f = onwards(at, load, i, h, s);
            const vec2 curvature(f.moment[2] * soft.bend3, -f.moment[1] * soft.bend2);
            nextturn += weight * curvature;
            nextway += weight * ((h - s) * curvature + soft.shear * f.force.tail<2>());
        }
        at = onwards(at, load, i, h, h);
        way = nextway;
        turn = nextturn;
        deflection[i + 1] += way;
    }
}

static vec12 localends(const elvector& v, const mat3& axes) {
    vec12 local = vec12::Zero();
    const int stride = int(v.size()) / 2;
    for (int end = 0; end < 2; ++end)
        for (int half = 0; half < stride / 3; ++half)
            local.segment<3>(6 * end + 3 * half) = axes * v.segment<3>(stride * end + 3 * half);
    return local;
}

// ends: nodal forces of the element's stiffness on the ends (model axes) and u: their
// displacements, as elementforces and gather give them; loads: of the case.
static memberline memberof(const element& e, const elvector& ends, const elvector& u,
                           const caseloads& loads) {
    const mat3 axes = lineaxes(e);
    const memberload load = loadof(e, axes, loads);
    elvector between = elvector::Zero(ends.size());
    if (load.any) loads.onelement(e, between);
    const vec12 moved = localends(u, axes), clamps = localends(-between, axes);
    vec2 deflection[memberstations];
    if (kindof(e.type).nodedofs == 6) {
        deflectbeam(e, moved, intervals, deflection);
        if (load.any) deflectclamped(e, load, clamps, deflection);
    } else {
        for (int i = 0; i < memberstations; ++i) {
            const double x = double(i) / intervals;
            deflection[i] = (1 - x) * moved.segment<2>(1) + x * moved.segment<2>(7);
        }
    }
    memberline line;
    memberforce at = atfirstend(localends(ends, axes) + clamps);
    const double h = lengthof(e) / intervals;
    for (int i = 0; i < memberstations; ++i) {
        line.col(i) << double(i) / intervals, at.force, at.moment, deflection[i];
        if (i < intervals) at = onwards(at, load, i, h, h);
    }
    return line;
}

static void putline(const memberline& line, const std::vector<keptnumber>& places, rowtext& text) {
    std::array<numbercolumn, membervalues> columns;
    for (int k = 1; k < membervalues; ++k)
        columns[std::size_t(k)] = numbercolumn(line.row(k).cwiseAbs().maxCoeff());
    char* p = text.place(memberstations * membervalues * (longestnumber + 1));
    for (int at = 0; at < memberstations; ++at) {
        const keptnumber& place = places[std::size_t(at)];
        *p++ = ',';
        std::memcpy(p, place.text, longestnumber);
        p += place.length;
        for (int k = 1; k < membervalues; ++k) {
            *p++ = ',';
            p = columns[std::size_t(k)].write(p, line(k, at));
        }
    }
    text.putto(p);
}

void writemembers(const model& m, const settings& s, const dofmap& d, const displacements& u) {
    std::vector<int> lines;
    for (int e = 1; e <= m.nelems(); ++e)
        if (kindof(m.elements[std::size_t(e)].type).fam == family::line) lines.push_back(e);
    std::vector<keptnumber> places;
    for (int at = 0; at < memberstations; ++at) places.emplace_back(float(double(at) / intervals));
    textout out(m.base + ".MEM");
    for (int lc = 1; lc <= u.cases; ++lc) {
        displacements one;
        one.cases = 1;
        one.u.assign(u.of(d, lc), u.of(d, lc) + d.equation.size());
        if (!u.rest.empty())
            one.rest.assign(u.rest.data() + (u.of(d, lc) - u.u.data()),
                            u.rest.data() + (u.of(d, lc) - u.u.data()) + d.equation.size());
        const caseloads loads(m, s, lc);
        writerows(out, int(lines.size()), 32, [&](int i, rowtext& text) {
            const element e = elementat(m, s, lines[std::size_t(i)]);
            elcases ends, moved;
            elementforces(m, s, d, one, e.number, ends);
            gather(d, dofsof(d, m.elements[std::size_t(e.number)]), one, moved);
            const memberline line = memberof(e, ends.col(0), moved.col(0), loads);
            text.put(e.number);
            text.put(memberstations);
            putline(line, places, text);
            text.endline();
        });
        out.raw("END").endline();
    }
    out.commit();
}
