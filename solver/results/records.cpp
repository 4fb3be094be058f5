// SPDX-License-Identifier: GPL-3.0-or-later
// Stress records of plates.
//
// The combined stress is von Mises' of these components, largest over a, b, d = -1, 1:
//   x = b s9 + d s8 + s1, y = b s9 + d s7 + s2, z = s3,
//   xy = d (s10 - s11) + s4, xz = b (s12 - s10) + s5, yz = a (s12 - s11) + s6.
// It has no bending along z: that is taken off x and y instead, which is the same to von Mises
// where b = -d. The three shears come from two differences, so a tensor fits only where xy = k xz +
// m yz with k, m = -1 or 1. Shears across the plane, which no stress in the plane works with, bring
// the bending there and can only add to the result.
#include "solver/results/records.h"

#include <Eigen/Geometry>
#include <algorithm>
#include <cmath>

#include "solver/elements/kinds.h"

// Indices 1..13 of a record are told in the manual of the result files; here they are 0..12.
enum recordindex { sx, sy, sz, sxy, sxz, syz, sbx, sby, sbz, stx, sty, stz, sc };

static bool isplanestrain(const element& e) {
    return (e.type == typememb3 || e.type == typememb4) && e.field(fieldplane) != 0;
}

facestress facestressof(const element& e, const mat3& axes, const double* corner) {
    facestress s;
    mat2 membrane, bending;
    membrane << corner[0], corner[2], corner[2], corner[1];
    bending << corner[3], corner[5], corner[5], corner[4];
    const auto inplane = axes.topRows<2>();
    s.membrane = inplane.transpose() * membrane * inplane;
    s.bending = inplane.transpose() * bending * inplane;
    if (isplanestrain(e))
        s.membrane +=
            e.field(fieldpoisson) * membrane.trace() * axes.row(2).transpose() * axes.row(2);
    return s;
}

static void putmembrane(const mat3& t, double* record) {
    record[sx] = t(0, 0);
    record[sy] = t(1, 1);
    record[sz] = t(2, 2);
    record[sxy] = t(0, 1);
    record[sxz] = t(0, 2);
    record[syz] = t(1, 2);
}

// --- local axes ---------------------------------------------------------------------------------

static void putlocalbending(double x, double y, double xy, double* record) {
    record[sbx] = y;  // bends about x, so it stretches along y
    record[sby] = x;
    record[stx] = xy / 2;
    record[sty] = -xy / 2;
    record[sc] = combinedstress(record);
}

void localrecord(const element& e, const double* corner, double* record) {
    std::fill_n(record, recordvalues, 0.0);
    record[sx] = corner[0];
    record[sy] = corner[1];
    record[sxy] = corner[2];
    if (isplanestrain(e)) record[sz] = e.field(fieldpoisson) * (corner[0] + corner[1]);
    putlocalbending(corner[3], corner[4], corner[5], record);
}

void localrecord(const facestress& s, const mat3& axes, double* record) {
    std::fill_n(record, recordvalues, 0.0);
    putmembrane(axes * s.membrane * axes.transpose(), record);
    const mat3 t = axes * s.bending * axes.transpose();
    putlocalbending(t(0, 0), t(1, 1), t(0, 1), record);
}

// --- model axes ---------------------------------------------------------------------------------

// The signs to which a plane of this normal comes with the least shear across it. With k = 1 the
// bending along z keeps its sign, so that is taken where the other is not much better.
static recordplane fitof(const vec3& n) {
    recordplane best;
    best.normal = n;
    double most = 0;
    for (const double k : {1.0, -1.0})
        for (const double m : {1.0, -1.0}) {
            const vec3 g(n.y() - k * n.z(), n.x() - m * n.z(), -k * n.x() - m * n.y());
            const vec3 across = g - n * n.dot(g);
            const double preferred = 1.5, tie = 1 + 1e-6;
            const double worth = across.norm() * (k > 0 ? preferred : 1);
            if (worth <= most * tie) continue;
            most = worth;
            best.k = k;
            best.m = m;
            best.across = across;
        }
    return best;
}

// In a plane parallel to a coordinate plane (axis: its normal) local axes that stand across the
// model's give the combined stress of their records more than others do. Then half the difference
// of the two bending stresses, as if those were twist as well, gives the global one no less: no
// axes of the plane have more twist than that. All axes count that another order of the nodes could
// give.
static bool standsacross(const element& e, int axis) {
    const double parallel = 1e-5;
    const int u = (axis + 1) % 3, w = (axis + 2) % 3;
    bool across = false;
    for (int c = 0; c < (e.nodes == 4 ? 2 : 3); ++c) {
        const vec3 next = e.x[(c + 1) % e.nodes],
                   way = e.nodes == 3 ? vec3(next - e.x[c])
                                      : vec3(next + e.x[(c + 2) % 4] - e.x[c] - e.x[(c + 3) % 4]);
        const double angle = std::atan2(way[w], way[u]);
        for (const double turn : {e.turn, -e.turn})
            across |= std::fabs(std::sin(2 * (angle + turn))) > parallel;
    }
    return across;
}

recordplane recordplaneof(const element& e, const mat3& axes) {
    recordplane plane = fitof(axes.row(2));
    int axis = 0;
    const double coordinateplane = 1 - 5e-9;
    const double most = plane.normal.cwiseAbs().maxCoeff(&axis);
    if (most >= coordinateplane && standsacross(e, axis)) plane.axis = axis;
    return plane;
}

// Shear across the plane along the vector that is returned, twice its size.
static vec3 shearacross(const recordplane& plane, const mat3& bending) {
    const double gap = bending(0, 1) - plane.k * bending(0, 2) - plane.m * bending(1, 2);
    vec3 v = -2 * gap / plane.across.squaredNorm() * plane.across;
    if (plane.axis < 0) return v;
    const int u = (plane.axis + 1) % 3, w = (plane.axis + 2) % 3;
    const double half = (bending(u, u) - bending(w, w)) / 2;
    return v + std::sqrt(2.0) * half * plane.normal.cross(plane.across.normalized());
}

static void putglobalbending(const recordplane& plane, const facestress& s, const vec3& v,
                             double* record) {
    const vec3& n = plane.normal;
    const mat3 t = s.bending + (n * v.transpose() + v * n.transpose()) / 2;
    record[sbx] = t(1, 1);
    record[sby] = t(0, 0);
    record[sbz] = plane.k * t(2, 2);
    const double xy = t(0, 1), xz = plane.k * t(0, 2);  // s10 - s11, s10 - s12
    record[stx] = (xy + xz) / 3;
    record[sty] = record[stx] - xy;
    record[stz] = record[stx] - xz;
    record[sc] = combinedstress(record);
}

// A mean over a surface that turns does not lie in the plane of one element.
static bool leaves(const vec3& n, const mat3& stress) {
    const vec3 on = stress * n;
    return (on - n * n.dot(on)).squaredNorm() > 1e-18 * stress.squaredNorm();
}

// The larger von Mises stress of the faces.
static double facesmises(const facestress& s) {
    double most = 0;
    for (const double face : {-1.0, 1.0}) {
        const mat3 whole = s.membrane + face * s.bending;
        most = std::max(most, 1.5 * (whole.squaredNorm() - std::pow(whole.trace(), 2) / 3));
    }
    return std::sqrt(most);
}

void globalrecord(const recordplane& plane, const facestress& s, double* record) {
    std::fill_n(record, recordvalues, 0.0);
    putmembrane(s.membrane, record);
    if (s.bending.isZero(0)) {
        record[sc] = combinedstress(record);
        return;
    }
    vec3 v = shearacross(plane, s.bending);
    putglobalbending(plane, s, v, record);
    if (!leaves(plane.normal, s.bending) && !leaves(plane.normal, s.membrane)) return;
    // What lies across the plane may work against the shear that was added there: as much more of
    // it as makes the told stress no less than that of either face.
    const vec3 beside = plane.normal.cross(plane.across.normalized());
    const double exact = facesmises(s);
    const int rounds = 20;
    for (int round = 0; round < rounds && record[sc] < exact; ++round) {
        v += std::sqrt(4.0 / 3 * (exact * exact - record[sc] * record[sc])) * beside;
        putglobalbending(plane, s, v, record);
    }
}

double combinedstress(const double* s) {
    double largest = 0;
    const double yz = std::fabs(s[stz] - s[sty]) + std::fabs(s[syz]);  // for the worse sign of a
    for (const double b : {-1.0, 1.0})
        for (const double d : {-1.0, 1.0}) {
            const double x = b * s[sbz] + d * s[sby] + s[sx];
            const double y = b * s[sbz] + d * s[sbx] + s[sy];
            const double z = s[sz];
            const double xy = d * (s[stx] - s[sty]) + s[sxy];
            const double xz = b * (s[stz] - s[stx]) + s[sxz];
            const double square =
                x * x + y * y + z * z - x * y - x * z - y * z + 3 * (xy * xy + xz * xz + yz * yz);
            largest = std::max(largest, square);
        }
    return std::sqrt(largest);
}
