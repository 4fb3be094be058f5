// SPDX-License-Identifier: GPL-3.0-or-later
// Members between their ends: the forces by statics from the first end, the deflection by that of
// the ends and what the load adds between clamped ends.
#include "solver/members.h"

#include "solver/gauss.h"
#include "solver/line.h"
#include "solver/rowtext.h"
#include "solver/section.h"

static const int intervals = memberstations - 1;

namespace {
// The load on each interval between stations, local axes: force, and its first moment about the
// interval's middle.
struct memberload {
    bool any = false;  // else the rest does not count
    vec3 force[intervals], first[intervals];
    vec3 moment = vec3::Zero();  // a length, even all along
};

// Forces at a place along the element.
struct memberforce {
    vec3 force, moment;  // N Vy Vz, T My Mz
};
}  // namespace

static memberload loadof(const element& e, const mat3& axes, const caseloads& loads) {
    memberload sum;
    if (!loads.loadselements()) return sum;
    for (int i = 0; i < intervals; ++i) sum.force[i] = sum.first[i] = vec3::Zero();
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

static memberforce atfirstend(const lineendvalues& ends) {
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
static void deflectclamped(const element& e, const memberload& load, const lineendvalues& clamps,
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

memberwriter::memberwriter(const model& m, const settings& s, const dofmap& d,
                           const displacements& u, int lc)
    : m(m), d(d), u(u.of(d, lc)), loads(m, s, lc) {
    for (int at = 0; at < memberstations; ++at)
        places[std::size_t(at)] = keptnumber(float(double(at) / intervals));
}

// What the load adds to the deflection of the ends, and the forces that it changes on its way.
static void addload(const element& e, const mat3& axes, const memberload& load,
                    const caseloads& loads, memberforce at, memberforce* forces, vec2* deflection) {
    const int nodedofs = kindof(e.type).nodedofs;
    elvector between = elvector::Zero(2 * nodedofs);
    loads.onelement(e, between);
    if (nodedofs == 6)
        deflectclamped(e, load, -tolocalends(axes, between.data(), nodedofs), deflection);
    const double h = lengthof(e) / intervals;
    for (int i = 0; i < intervals; ++i) forces[i + 1] = at = onwards(at, load, i, h, h);
}

memberline memberwriter::lineof(const element& e, const double* ends) const {
    const mat3 axes = lineaxes(e);
    const elementdofs dofs = dofsof(d, m.elements[std::size_t(e.number)]);
    double nodal[mostdofs];
    for (int a = 0; a < dofs.count; ++a) nodal[a] = dofs.index[a] < 0 ? 0 : u[dofs.index[a]];
    const lineendvalues moved = tolocalends(axes, nodal, dofs.count / 2);
    vec2 deflection[memberstations];
    if (kindof(e.type).nodedofs == 6) {
        deflectbeam(e, moved, intervals, deflection);
    } else {
        for (int i = 0; i < memberstations; ++i) {
            const double x = double(i) / intervals;
            deflection[i] = (1 - x) * moved.segment<2>(1) + x * moved.segment<2>(7);
        }
    }
    memberforce forces[memberstations];
    forces[0] = atfirstend(Eigen::Map<const lineendvalues>(ends));
    const double h = lengthof(e) / intervals;
    for (int i = 1; i < memberstations; ++i) {
        forces[i] = forces[0];
        forces[i].moment[1] += forces[0].force[2] * i * h;
        forces[i].moment[2] -= forces[0].force[1] * i * h;
    }
    const memberload load = loadof(e, axes, loads);
    if (load.any) addload(e, axes, load, loads, forces[0], forces, deflection);
    memberline line;
    for (int i = 0; i < memberstations; ++i)
        line.col(i) << double(i) / intervals, forces[i].force, forces[i].moment, deflection[i];
    return line;
}

// N, Vy, Vz and T stay the same where no load acts: so does their text then.
void memberwriter::put(const element& e, const double* ends, rowtext& text) const {
    const memberline line = lineof(e, ends);
    const Eigen::Matrix<double, membervalues, 1> largest = line.cwiseAbs().rowwise().maxCoeff();
    std::array<numbercolumn, membervalues> columns;
    for (int k = 1; k < membervalues; ++k) columns[std::size_t(k)] = numbercolumn(largest[k]);
    text.put(e.number);
    text.put(memberstations);
    const int even = 4;
    char* p = text.place(memberstations * membervalues * (longestnumber + 1));
    char former[even * (numbercolumn::longest + 1)] = {};  // text of these, with the commas
    std::size_t length = 0;
    for (int at = 0; at < memberstations; ++at) {
        const keptnumber& place = places[std::size_t(at)];
        *p++ = ',';
        std::memcpy(p, place.text, longestnumber);
        p += place.length;
        const auto number = [&](int k) {
            *p++ = ',';
            p = columns[std::size_t(k)].write(p, line(k, at));
        };
        const auto forces = [&](int station) { return line.col(station).segment<even>(1); };
        if (at > 0 && forces(at) == forces(at - 1)) {
            std::memcpy(p, former, sizeof former);
            p += length;
        } else {
            const char* const begin = p;
            for (int k = 1; k <= even; ++k) number(k);
            length = std::size_t(p - begin);
            std::memcpy(former, begin, sizeof former);
        }
        for (int k = even + 1; k < membervalues; ++k) number(k);
    }
    text.putto(p);
    text.endline();
}
