// SPDX-License-Identifier: GPL-3.0-or-later
// Members between their ends: the forces by statics from the first end, the deflection by that of
// the ends and what the load adds between clamped ends.
#include "solver/results/members.h"

#include <algorithm>

#include "solver/elements/gauss.h"
#include "solver/elements/line.h"
#include "solver/results/rowtext.h"

static const int intervals = memberstations - 1;

namespace {
// The load on each interval between stations, local axes: force, and what it gives at the
// interval's end with an arm of (h - x), (h - x)^2 / 2, (h - x)^3 / 6.
struct memberload {
    bool any = false;  // else the rest does not count
    vec3 force[intervals], arm[intervals], square[intervals], cube[intervals];
    vec3 moment = vec3::Zero();  // a length, even all along
};

// Forces at a place along the element.
struct memberforce {
    vec3 force, moment;  // N Vy Vz, T My Mz
};
}  // namespace

static memberload loadof(const element& e, const beamdata& of, const caseloads& loads) {
    memberload sum;
    if (!loads.loadselements()) return sum;
    for (int i = 0; i < intervals; ++i)
        sum.force[i] = sum.arm[i] = sum.square[i] = sum.cube[i] = vec3::Zero();
    sum.moment = loads.online(e, [&](double from, double to, const linedensity& load) {
        sum.any = true;
        for (int i = 0; i < intervals; ++i) {
            const double a = std::max(from, double(i) / intervals);
            const double b = std::min(to, double(i + 1) / intervals);
            if (a >= b) continue;
            const double end = double(i + 1) / intervals;
            const int points = 5;
            for (int k = 0; k < points; ++k) {
                const gausspoint& g = gausspoints(points)[k];
                const double x = (a + b) / 2 + g.at * (b - a) / 2;
                const vec3 force = of.forces * load(x) * (g.weight * (b - a) / 2 * of.length);
                sum.force[i] += force;
                const double arm = (end - x) * of.length;
                sum.arm[i] += arm * force;
                sum.square[i] += arm * arm / 2 * force;
                sum.cube[i] += arm * arm * arm / 6 * force;
            }
        }
    });
    sum.any |= !sum.moment.isZero(0);
    return sum;
}

// From the forces at an interval's beginning those at its end, h behind it.
static memberforce onwards(const memberforce& at, const memberload& load, int i, double h) {
    memberforce next = at;
    next.force -= load.force[i];
    next.moment -= load.moment * h;
    next.moment[1] += at.force[2] * h - load.arm[i][2];
    next.moment[2] += -at.force[1] * h + load.arm[i][1];
    return next;
}

static memberforce atfirstend(const lineendvalues& ends) {
    return {-ends.segment<3>(0), -ends.segment<3>(3)};
}

// Deflections v, w that the load gives between clamped ends, whose forces on the element are
// clamps.
static void deflectclamped(const beamdata& b, const memberload& load, const lineendvalues& clamps,
                           vec2* deflection) {
    const auto over = [](double stiffness) { return stiffness > 0 ? 1 / stiffness : 0; };
    const vec2 soften(over(b.modulus * b.section.i3), -over(b.modulus * b.section.i2));
    const vec2 slip(over(b.shear3), over(b.shear2));
    const double h = b.length / intervals;
    memberforce at = atfirstend(clamps);
    vec2 way = vec2::Zero(), turn = vec2::Zero();  // turn: slope without shear
    for (int i = 0; i < intervals; ++i) {
        const vec3 &v = at.force, &m = at.moment;
        const double half = h * h / 2, sixth = h * h * h / 6;
        // Integrals of the moments over the interval, once and twice.
        const vec2 once(m[2] * h - v[1] * half + load.square[i][1] - load.moment[2] * half,
                        m[1] * h + v[2] * half - load.square[i][2] - load.moment[1] * half);
        const vec2 twice(m[2] * half - v[1] * sixth + load.cube[i][1] - load.moment[2] * sixth,
                         m[1] * half + v[2] * sixth - load.cube[i][2] - load.moment[1] * sixth);
        way += turn * h + twice.cwiseProduct(soften) +
               slip.cwiseProduct((v * h - load.arm[i]).tail<2>());
        turn += once.cwiseProduct(soften);
        at = onwards(at, load, i, h);
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
static void addload(const element& e, const beamdata& b, const memberload& load,
                    const caseloads& loads, memberforce at, memberforce* forces, vec2* deflection) {
    const int nodedofs = kindof(e.type).nodedofs;
    elvector between = elvector::Zero(2 * nodedofs);
    unitloads unit;
    unit.take(e);
    loads.onelement(e, unit, between);
    if (nodedofs == 6)
        deflectclamped(b, load, -tolocalends(b.forces, b.moments, between.data(), nodedofs),
                       deflection);
    const double h = b.length / intervals;
    for (int i = 0; i < intervals; ++i) forces[i + 1] = at = onwards(at, load, i, h);
}

memberline memberwriter::lineof(const element& e, const double* ends) const {
    const beamdata b = beamdataof(e);
    const elementdofs dofs = dofsof(d, m.elements[std::size_t(e.number)]);
    double nodal[mostdofs];
    for (int a = 0; a < dofs.count; ++a) nodal[a] = dofs.index[a] < 0 ? 0 : u[dofs.index[a]];
    const lineendvalues moved = tolocalends(b.axes, b.axes, nodal, dofs.count / 2);
    vec2 deflection[memberstations];
    if (kindof(e.type).nodedofs == 6) {
        deflectbeam(b, moved, intervals, deflection);
    } else {
        for (int i = 0; i < memberstations; ++i) {
            const double x = double(i) / intervals;
            deflection[i] = (1 - x) * moved.segment<2>(1) + x * moved.segment<2>(7);
        }
    }
    memberforce forces[memberstations];
    forces[0] = atfirstend(Eigen::Map<const lineendvalues>(ends));
    const double h = b.length / intervals;
    for (int i = 1; i < memberstations; ++i) {
        forces[i] = forces[0];
        forces[i].moment[1] += forces[0].force[2] * i * h;
        forces[i].moment[2] -= forces[0].force[1] * i * h;
    }
    const memberload load = loadof(e, b, loads);
    if (load.any) addload(e, b, load, loads, forces[0], forces, deflection);
    memberline line;
    for (int i = 0; i < memberstations; ++i)
        line.col(i) << double(i) / intervals, forces[i].force, forces[i].moment, deflection[i];
    return line;
}

// N, Vy, Vz and T stay the same where no load acts: so does their text then.
void memberwriter::put(const element& e, const double* ends, rowtext& text) const {
    const memberline line = lineof(e, ends);
    const Eigen::Matrix<double, membervalues, 1> largest = line.cwiseAbs().rowwise().maxCoeff();
    const numbertable table(largest.data() + 1);  // all but the place
    numbertable::row rows[memberstations];
    table.round(line.data() + 1, membervalues, memberstations, rows);
    text.put(e.name);
    text.put(memberstations);
    const int even = 4;
    char* p = text.place(memberstations * membervalues * (longestnumber + 1));
    char former[even * (numbertable::longest + 1)] = {};  // text of these, with the commas
    std::size_t length = 0;
    for (int at = 0; at < memberstations; ++at) {
        const keptnumber& place = places[std::size_t(at)];
        *p++ = ',';
        std::memcpy(p, place.text, longestnumber);
        p += place.length;
        const auto number = [&](int k) {
            *p++ = ',';
            p = table.write(p, rows[at], k);
        };
        if (at > 0 &&
            std::equal(rows[at].multiple, rows[at].multiple + even, rows[at - 1].multiple)) {
            std::memcpy(p, former, sizeof former);
            p += length;
        } else {
            const char* const begin = p;
            for (int k = 0; k < even; ++k) number(k);
            length = std::size_t(p - begin);
            std::memcpy(former, begin, sizeof former);
        }
        for (int k = even; k < numbertable::kinds; ++k) number(k);
    }
    text.putto(p);
    text.endline();
}
