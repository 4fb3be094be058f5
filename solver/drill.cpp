// SPDX-License-Identifier: GPL-3.0-or-later
// Membranes with drilling rotations: a quadrilateral of assumed stress and a triangle of assumed
// strain. Both pass the patch test however distorted and have no motion without energy but the
// rigid ones.
#include "solver/drill.h"

#include <Eigen/LU>
#include <cmath>

#include "solver/gauss.h"

// --- quadrilateral ------------------------------------------------------------------------------

// Nine stresses in balance against the nine ways to deform twelve degrees of freedom: Madeo, Zagari
// and Casciaro, An isostatic quadrilateral membrane finite element with drilling rotations and no
// spurious modes, Finite Elements in Analysis and Design 50, 2012. Only edges do work, so nothing
// has to be assumed about the displacement inside.
namespace {
using mat9 = Eigen::Matrix<double, 9, 9>;
using mat39 = Eigen::Matrix<double, 3, 9>;
using mat912 = Eigen::Matrix<double, 9, 12>;

struct stressframe {
    vec2 x, y;    // unit vectors
    double a, b;  // half sizes of the element along them
};

struct isostatic {
    mat9 flexibility = mat9::Zero();
    mat912 work = mat912::Zero();
    stressframe frame;
};
}  // namespace

// Half way between the two middle lines: turns with them when the corners are counted from another.
static stressframe frameof(const flatshape& s) {
    const mat2 j = jacobianof(s, shapesat(4, {0, 0}));
    const vec2 r = j.row(0), t = j.row(1);
    stressframe f;
    f.x = (r.normalized() + vec2(t.y(), -t.x()).normalized()).normalized();
    f.y = vec2(-f.x.y(), f.x.x());
    f.a = r.norm();
    f.b = t.norm();
    return f;
}

// Stress x, y, xy in the frame.
static mat39 framestress(const stressframe& f, double x, double y) {
    const double a = f.a, b = f.b;
    mat39 p;
    p << 1, 0, 0, y / b, 0, x / a, 0, a * a * y * y, a * a * x * y,   //
        0, 1, 0, 0, x / a, 0, y / b, -b * b * x * x, -b * b * x * y,  //
        0, 0, 1, 0, 0, -y / a, -x / b, 0, (b * b * x * x - a * a * y * y) / 2;
    p.rightCols<2>() /= a * a * b * b;
    return p;
}

// The same at a place of the plane, in the plane's axes.
static mat39 stressmodes(const stressframe& f, const vec2& at) {
    const double c = f.x.x(), s = f.x.y();
    mat3 turn;
    turn << c * c, s * s, -2 * c * s, s * s, c * c, 2 * c * s, c * s, -c * s, c * c - s * s;
    return turn * framestress(f, f.x.dot(at), f.y.dot(at));
}

// Displacement at x of 0..1 along an edge: straight; bowed by the difference of the rotations at
// its ends; and by the spin, by which the mean of the four rotations leaves that of the element.
static Eigen::Matrix<double, 2, 12> edgedisplacement(const flatshape& s, int k, double x,
                                                     const Eigen::Matrix<double, 1, 12>& spin) {
    Eigen::Matrix<double, 2, 12> u = Eigen::Matrix<double, 2, 12>::Zero();
    const int i = k, j = s.next(k);
    const vec2 inward(-s.along[k].y(), s.along[k].x());
    const double bow = s.edge[k] * x * (1 - x);
    for (int c = 0; c < 2; ++c) {
        u(c, 3 * i + c) = 1 - x;
        u(c, 3 * j + c) = x;
    }
    u.col(3 * i + 2) = bow / 2 * inward;
    u.col(3 * j + 2) = -bow / 2 * inward;
    u += bow * (1 - 2 * x) * inward * spin;
    return u;
}

// Mean rotation of the corners less that of the element, which its straight edges tell.
static Eigen::Matrix<double, 1, 12> spinof(const flatshape& s) {
    double area = 0;
    for (int k = 0; k < 4; ++k) {
        const vec2 &a = s.at[k], &b = s.at[s.next(k)];
        area += (a.x() * b.y() - a.y() * b.x()) / 2;
    }
    Eigen::Matrix<double, 1, 12> spin;
    for (int c = 0; c < 4; ++c) {
        const vec2 across = s.at[(c + 1) % 4] - s.at[(c + 3) % 4];
        spin.segment<2>(3 * c) = -across.transpose() / (4 * area);
        spin[3 * c + 2] = 0.25;
    }
    return spin;
}

static isostatic makeisostatic(const element& e, const flatshape& s) {
    isostatic h;
    h.frame = frameof(s);
    const mat3 compliance = planestiffness(e, false).inverse();
    const Eigen::Matrix<double, 1, 12> spin = spinof(s);
    for (const surfacepoint& p : surfacepoints(4, 5)) {
        const surfaceshape n = shapesat(4, p.place);
        vec2 at = vec2::Zero();
        for (int c = 0; c < 4; ++c) at += n.n[c] * s.at[c];
        const mat39 modes = stressmodes(h.frame, at);
        const double weight = p.weight * jacobianof(s, n).determinant();
        h.flexibility.noalias() += modes.transpose() * (weight * compliance * modes);
    }
    const int points = 3;
    for (int k = 0; k < 4; ++k) {
        const double nx = s.along[k].y(), ny = -s.along[k].x();
        Eigen::Matrix<double, 2, 3> traction;
        traction << nx, 0, ny, 0, ny, nx;
        for (int i = 0; i < points; ++i) {
            const gausspoint& g = gausspoints(points)[i];
            const double x = (1 + g.at) / 2, weight = g.weight * s.edge[k] / 2;
            const vec2 at = (1 - x) * s.at[k] + x * s.at[s.next(k)];
            h.work.noalias() += weight * (traction * stressmodes(h.frame, at)).transpose() *
                                edgedisplacement(s, k, x, spin);
        }
    }
    return h;
}

// --- triangle -----------------------------------------------------------------------------------

// Felippa, A study of optimal membrane triangles with drilling freedoms, Comput. Methods Appl.
// Mech. Engrg. 192, 2003. Its free parameters are those of the optimum, which bends exactly in a
// mesh of rectangles of two triangles.
namespace {
using mat9x3 = Eigen::Matrix<double, 9, 3>;
using mat3x9 = Eigen::Matrix<double, 3, 9>;

struct optimal {
    double area, higher;  // weight of the higher part of the strain
    mat9x3 force;         // nodal forces of a unit stress on a unit thickness
    mat3 corner[3];       // natural strains at a corner from the rotations, divided by 2/3 area
    mat3 strain;          // strain x, y, xy from natural
    mat3x9 rotation;      // rotations of the corners less that of the element
};
}  // namespace

static optimal makeoptimal(const element& e, const flatshape& s) {
    optimal t;
    const auto dx = [&](int i, int j) { return s.at[i].x() - s.at[j].x(); };
    const auto dy = [&](int i, int j) { return s.at[i].y() - s.at[j].y(); };
    t.area = (dx(1, 0) * dy(2, 0) - dx(2, 0) * dy(1, 0)) / 2;
    const double poisson = e.field(fieldpoisson);
    const double leastbeta = 0.01;
    t.higher = std::max((1 - 4 * poisson * poisson) / 2, leastbeta);
    const double alpha = 1.5;
    for (int i = 0; i < 3; ++i) {
        const int j = (i + 1) % 3, k = (i + 2) % 3;
        t.force.row(3 * i) << dy(j, k), 0, dx(k, j);
        t.force.row(3 * i + 1) << 0, dx(k, j), dy(j, k);
        t.force.row(3 * i + 2) << alpha / 6 * dy(j, k) * (dy(i, k) - dy(j, i)),
            alpha / 6 * dx(k, j) * (dx(k, i) - dx(i, j)),
            alpha / 3 * (dx(k, i) * dy(i, k) - dx(i, j) * dy(j, i));
    }
    t.force /= 2;
    const double l21 = s.edge[0] * s.edge[0], l32 = s.edge[1] * s.edge[1],
                 l13 = s.edge[2] * s.edge[2];
    const double beta[10] = {0, 1, 2, 1, 0, 1, -1, -1, -1, -2};
    const int place[3][3][3] = {{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}},
                                {{9, 7, 8}, {3, 1, 2}, {6, 4, 5}},
                                {{5, 6, 4}, {8, 9, 7}, {2, 3, 1}}};
    const double square[3] = {l21, l32, l13};
    for (int c = 0; c < 3; ++c)
        for (int i = 0; i < 3; ++i)
            for (int j = 0; j < 3; ++j)
                t.corner[c](i, j) = 2 * t.area / 3 * beta[place[c][i][j]] / square[i];
    t.strain << dy(1, 2) * dy(0, 2) * l21, dy(2, 0) * dy(1, 0) * l32, dy(0, 1) * dy(2, 1) * l13,  //
        dx(1, 2) * dx(0, 2) * l21, dx(2, 0) * dx(1, 0) * l32, dx(0, 1) * dx(2, 1) * l13,          //
        (dy(1, 2) * dx(2, 0) + dx(2, 1) * dy(0, 2)) * l21,
        (dy(2, 0) * dx(0, 1) + dx(0, 2) * dy(1, 0)) * l32,
        (dy(0, 1) * dx(1, 2) + dx(1, 0) * dy(2, 1)) * l13;
    t.strain /= 4 * t.area * t.area;
    t.rotation.setZero();
    for (int c = 0; c < 3; ++c) {
        for (int i = 0; i < 3; ++i) {
            const int j = (i + 1) % 3, k = (i + 2) % 3;
            t.rotation(c, 3 * i) = dx(k, j) / (4 * t.area);
            t.rotation(c, 3 * i + 1) = dy(k, j) / (4 * t.area);
        }
        t.rotation(c, 3 * c + 2) = 1;
    }
    return t;
}

static void stiffentriangle(const element& e, const flatshape& s, halfmatrix& k) {
    const optimal t = makeoptimal(e, s);
    const mat3 stretch = planestiffness(e, false);
    const mat3 natural = t.strain.transpose() * stretch * t.strain;
    mat3 byrotation = mat3::Zero();
    for (int c = 0; c < 3; ++c) {
        const mat3 middle = (t.corner[c] + t.corner[(c + 1) % 3]) / 2;
        byrotation += middle.transpose() * natural * middle;
    }
    byrotation *= 0.75 * t.higher * t.area;
    k = t.force * stretch * t.force.transpose() / t.area;
    k += t.rotation.transpose() * byrotation * t.rotation;
}

static void stresstriangle(const element& e, const flatshape& s, halfmatrix& rows) {
    const optimal t = makeoptimal(e, s);
    const mat3 modulus = planestiffness(e, false) / e.field(fieldthickness);
    rows.setZero(9, 9);
    for (int c = 0; c < 3; ++c) {
        const mat3x9 strain = t.force.transpose() / t.area +
                              1.5 * std::sqrt(t.higher) * t.strain * t.corner[c] * t.rotation;
        rows.middleRows<3>(3 * c) = modulus * strain;
    }
}

// --- both ---------------------------------------------------------------------------------------

void stiffendrilling(const element& e, const flatshape& s, halfmatrix& k) {
    if (s.corners == 3) {
        stiffentriangle(e, s, k);
        return;
    }
    const isostatic h = makeisostatic(e, s);
    k = h.work.transpose() * h.flexibility.inverse() * h.work;
}

void stressdrilling(const element& e, const flatshape& s, halfmatrix& rows) {
    if (s.corners == 3) {
        stresstriangle(e, s, rows);
        return;
    }
    const isostatic h = makeisostatic(e, s);
    const mat912 parameters = h.flexibility.inverse() * h.work / e.field(fieldthickness);
    rows.setZero(12, 12);
    for (int c = 0; c < 4; ++c)
        rows.middleRows<3>(3 * c) = stressmodes(h.frame, s.at[c]) * parameters;
}
