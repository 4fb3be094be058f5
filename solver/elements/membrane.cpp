// SPDX-License-Identifier: GPL-3.0-or-later
// MEMB3, the triangle of constant strain, and MEMB4, the quadrilateral of assumed stress.
#include "solver/elements/membrane.h"

#include <Eigen/LU>
#include <cmath>

#include "solver/base/report.h"
#include "solver/elements/surface.h"

using mat5 = Eigen::Matrix<double, 5, 5>;
using mat35 = Eigen::Matrix<double, 3, 5>;

static const double mostwarp = 0.3;  // corner height over element size

static bool isplanestrain(const element& e) {
    return e.field(fieldplane) != 0;
}

void checkmembrane(const element& e) {
    const double condition = e.field(fieldplane);
    if (condition != 0 && condition != 1)
        refuseelement(e, "has the stress condition " + shortnumber(condition) +
                             "; it is 0 in plane stress, 1 in plane strain. Correct its group");
    checkplateproperties(e, isplanestrain(e));
    checkplateshape(e, mostwarp);
}

// Constant-strain triangle: Cook et al., Concepts and Applications of Finite Element Analysis,
// 4th ed., chapter 3.
static membranestrain constantstrain(const element& e, const mat3& axes, double& area) {
    const surfaceshape n = shapesat(3, {1.0 / 3, 1.0 / 3});
    const lamina l = laminaat(e, axes, n);
    area = l.area / 2;
    return strainof(l, n, 3);
}

void stiffenmemb3(const element& e, elmatrix& k) {
    double area = 0;
    const membranestrain b = constantstrain(e, meanaxes(e), area);
    k = area * b.transpose() * planestiffness(e, isplanestrain(e)) * b;
}

// Writes the same membrane stress rows for corner c; bending rows stay 0.
static void putcorner(int c, const membranestrain& rows, elmatrix& s) {
    s.block(6 * c, 0, 3, rows.cols()) = rows;
}

void stressmemb3(const element& e, elmatrix& s) {
    double area = 0;
    const membranestrain b = constantstrain(e, stressaxes(e), area);
    const membranestrain rows = planestiffness(e, isplanestrain(e)) / e.field(fieldthickness) * b;
    s.setZero(18, 9);
    for (int c = 0; c < 3; ++c) putcorner(c, rows, s);
}

// --- assumed stress -----------------------------------------------------------------------------

// Five stress parameters in natural directions, turned by the Jacobian of the middle so that a
// distorted element passes the patch test: Pian and Sumihara, Rational approach for assumed stress
// finite elements, Int. J. Numer. Meth. Engng 20, 1984. On a warped surface strain and stress are
// those of the tangent plane.
namespace {
struct hybrid {
    mat5 flexibility = mat5::Zero();
    Eigen::Matrix<double, 5, 12> work = Eigen::Matrix<double, 5, 12>::Zero();
    mat2 middle;  // Jacobian in the middle
    vec2 centre;  // where the linear modes have no mean: keeps them apart from constant
};
}  // namespace

static mat35 stressmodes(const hybrid& h, const vec2& place) {
    const double a = h.middle(0, 0), b = h.middle(0, 1), c = h.middle(1, 0), d = h.middle(1, 1);
    const double r = place[0] - h.centre[0], s = place[1] - h.centre[1];
    mat35 p;
    p << 1, 0, 0, a * a * s, c * c * r,  //
        0, 1, 0, b * b * s, d * d * r,   //
        0, 0, 1, a * b * s, c * d * r;
    return p;
}

static hybrid makehybrid(const element& e, const mat3& axes) {
    hybrid h;
    const mat3 compliance = planestiffness(e, isplanestrain(e)).inverse();
    h.middle = laminaat(e, axes, shapesat(4, {0, 0})).jacobian;
    double area = 0;
    h.centre.setZero();
    for (const surfacepoint& p : surfacepoints(4, 3)) {
        const double weight = p.weight * surfacenormal(e, shapesat(4, p.place)).norm();
        area += weight;
        h.centre += weight * p.place;
    }
    h.centre /= area;
    for (const surfacepoint& p : surfacepoints(4, 3)) {
        const surfaceshape n = shapesat(4, p.place);
        const lamina l = laminaat(e, axes, n);
        const mat35 modes = stressmodes(h, p.place);
        const double weight = p.weight * l.area;
        h.flexibility += weight * modes.transpose() * compliance * modes;
        h.work += weight * modes.transpose() * strainof(l, n, 4);
    }
    return h;
}

void stiffenmemb4(const element& e, elmatrix& k) {
    const hybrid h = makehybrid(e, meanaxes(e));
    k = h.work.transpose() * h.flexibility.inverse() * h.work;
}

void stressmemb4(const element& e, elmatrix& s) {
    const hybrid h = makehybrid(e, stressaxes(e));
    const Eigen::Matrix<double, 5, 12> parameters =
        h.flexibility.inverse() * h.work / e.field(fieldthickness);
    s.setZero(24, 12);
    for (int c = 0; c < 4; ++c) putcorner(c, stressmodes(h, cornerplace(4, c)) * parameters, s);
}
