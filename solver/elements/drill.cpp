// SPDX-License-Identifier: GPL-3.0-or-later
// Membranes with drilling rotations: a quadrilateral of assumed stress and a triangle of assumed
// strain. Both pass the patch test however distorted and have no motion without energy but the
// rigid ones.
#include "solver/elements/drill.h"

#include <Eigen/LU>
#include <algorithm>
#include <cmath>

#include "solver/elements/edgebow.h"
#include "solver/elements/gauss.h"
#include "solver/elements/smallsolve.h"

// --- quadrilateral ------------------------------------------------------------------------------

// Nine stresses in balance against the nine ways to deform twelve degrees of freedom: Madeo, Zagari
// and Casciaro, An isostatic quadrilateral membrane finite element with drilling rotations and no
// spurious modes, Finite Elements in Analysis and Design 50, 2012. Only edges do work, so nothing
// has to be assumed about the displacement inside.
namespace {
const int straightmodes = 5;  // constant stress and bending: enough for edges that stay straight
const int curvedmodes = 4;    // the others

using stressset =
    Eigen::Matrix<double, 9, 3>;  // a mode a row: loops along the modes take most of the time
using row12 = Eigen::Matrix<double, 1, 12>;
using mat5 = Eigen::Matrix<double, straightmodes, straightmodes>;
using mat5x12 = Eigen::Matrix<double, straightmodes, 12>;

struct isostatic {
    stressframe frame;
    vec2 middle[2];  // unit vectors along the two middle lines
    vec2 bend[2];    // the same in the frame
    row12 spin;
    Eigen::Matrix<double, 9, 12> work;
    mat5x12 straight;  // work of the first modes on edges that stay straight, of curved shells
    mat5 stiffness;    // of the first modes
    Eigen::Matrix<double, curvedmodes, straightmodes> coupling;
    Eigen::Matrix<double, curvedmodes, curvedmodes> rest;  // of the others with the first set free
};
}  // namespace

// Stress x, y, xy in the frame, at a place in the plane.
static stressset stressmodes(const isostatic& h, const vec2& at) {
    const stressframe& f = h.frame;
    const vec2 local = f.axes * at;
    const double x = local.x() / f.a, y = local.y() / f.b, b = f.b / f.a, a = 1 / b;
    stressset p;
    p.col(0) << 1, 0, 0, 0, 0, x, 0, y * y, a * x * y;
    p.col(1) << 0, 1, 0, 0, 0, 0, y, -x * x, -b * x * y;
    p.col(2) << 0, 0, 1, 0, 0, -y * b, -x * a, 0, (x * x - y * y) / 2;
    for (int m = 0; m < 2; ++m) {
        const vec2& along = h.bend[m];
        const double off = along.x() * local.y() - along.y() * local.x();
        p.row(3 + m) = off / (m == 0 ? f.b : f.a) *
                       vec3(along.x() * along.x(), along.y() * along.y(), along.x() * along.y());
    }
    return p;
}

// Mean rotation of the corners less that of the element, which its straight edges tell.
static row12 spinof(const flatshape& s) {
    const double area = flatarea(s);
    row12 spin;
    for (int c = 0; c < 4; ++c) {
        const vec2 across = s.at[(c + 1) % 4] - s.at[(c + 3) % 4];
        spin.segment<2>(3 * c) = -across.transpose() / (4 * area);
        spin[3 * c + 2] = 0.25;
    }
    return spin;
}

// Displacement at x of 0..1 along an edge: straight; bowed by the difference of the rotations at
// its ends; and by the spin.
static Eigen::Matrix<double, 2, 12> edgedisplacement(const flatshape& s, int k, double x,
                                                     const row12& spin) {
    Eigen::Matrix<double, 2, 12> u = Eigen::Matrix<double, 2, 12>::Zero();
    const int i = k, j = s.next(k);
    const vec2 inward(-s.along[k].y(), s.along[k].x());
    const double bow = s.edge[k] * x * (1 - x);
    u.block<2, 2>(0, 3 * i).diagonal().fill(1 - x);
    u.block<2, 2>(0, 3 * j).diagonal().fill(x);
    u.col(3 * i + 2) = bow / 2 * inward;
    u.col(3 * j + 2) = -bow / 2 * inward;
    u += bow * (1 - 2 * x) * inward * spin;
    return u;
}

static Eigen::Matrix<double, 2, 12> straightdisplacement(const flatshape& s, int k, double x) {
    Eigen::Matrix<double, 2, 12> u = Eigen::Matrix<double, 2, 12>::Zero();
    u.block<2, 2>(0, 3 * k).diagonal().fill(1 - x);
    u.block<2, 2>(0, 3 * s.next(k)).diagonal().fill(x);
    return u;
}

// Pure bending along a middle line, of the size of its stress mode, at the corners.
static Eigen::Matrix<double, 12, 1> bendingmotion(const isostatic& h, const flatshape& s, int m,
                                                  const mat3& compliance) {
    const vec2 along = h.middle[m], across(-along.y(), along.x());
    const double size = m == 0 ? h.frame.b : h.frame.a, stretch = compliance(0, 0) / size;
    Eigen::Matrix<double, 12, 1> u;
    for (int c = 0; c < 4; ++c) {
        const double x = along.dot(s.at[c]), y = across.dot(s.at[c]);
        const double contracted = compliance(0, 1) / size * y * y;
        u.segment<2>(3 * c) = stretch * x * y * along + (contracted - stretch * x * x) / 2 * across;
        u[3 * c + 2] = -stretch * x;
    }
    return u;
}

// In pure bending the edges contract by Poisson's ratio in ways that they cannot follow here, and
// the work that lacks would load the other modes and stiffen the element. Hence what a bending mode
// has to do with those is told by the motion of the edges, not by the strains inside: bending
// along a middle line is then exact on a rectangle and all but exact on a parallelogram. The
// constant modes stay as they are, and with them the patch test; the rest stays positive.
static void divide(const Eigen::Matrix<double, 9, 9>& flexibility, const flatshape& s,
                   const mat3& compliance, isostatic& h) {
    const mat5 first = flexibility.topLeftCorner<straightmodes, straightmodes>();
    h.stiffness = solved<straightmodes, straightmodes>(first, mat5::Identity());
    h.coupling = flexibility.bottomLeftCorner<curvedmodes, straightmodes>();
    h.rest = flexibility.bottomRightCorner<curvedmodes, curvedmodes>();
    h.rest -= h.coupling * h.stiffness * h.coupling.transpose();
    for (int m = 0; m < 2; ++m)
        h.coupling.col(3 + m) =
            h.work.bottomRows<curvedmodes>() * bendingmotion(h, s, m, compliance);
}

// What the stresses at a point give to the flexibility: of it the lower triangle and all that the
// last modes do to each other are in use.
static void addflexibility(const stressset& modes, const mat3& compliance,
                           Eigen::Matrix<double, 9, 9>& sum) {
    for (int j = 0; j < 9; ++j) {
        const vec3 strain = compliance * modes.row(j).transpose();
        for (int i = std::min(j, straightmodes - 1) & ~1; i < 9; ++i)  // two at a time
            sum(i, j) +=
                modes(i, 0) * strain[0] + (modes(i, 1) * strain[1] + modes(i, 2) * strain[2]);
    }
}

// An even stress F turns the ends of a bowed edge by F l / 12. Where the element beyond bows by
// less, or there is none, something of that is left over and turns the corners. So to even stress
// an edge bows by this share alone, about its mean place; the other stresses feel its whole bow.
static void sharebow(const flatshape& s, int k, double share, isostatic& h) {
    const vec2 n(s.along[k].y(), -s.along[k].x());
    const vec3 across =
        h.frame.turn.transpose() * vec3(n.x() * n.x(), n.y() * n.y(), 2 * n.x() * n.y());
    const vec3 moment = (1 - share) * s.edge[k] * s.edge[k] / 12 * across;
    h.work.block<3, 1>(0, 3 * k + 2) += moment;
    h.work.block<3, 1>(0, 3 * s.next(k) + 2) -= moment;
}

// Work of the stresses at x of 0..1 along edge k.
static void addwork(const flatshape& s, int k, double x, double weight, bool straight,
                    isostatic& h) {
    const vec2 n(s.along[k].y(), -s.along[k].x());
    Eigen::Matrix<double, 2, 3> normal;
    normal << n.x(), 0, n.y(), 0, n.y(), n.x();
    const Eigen::Matrix<double, 2, 3> turned = normal * h.frame.turn;
    const stressset modes = stressmodes(h, (1 - x) * s.at[k] + x * s.at[s.next(k)]);
    Eigen::Matrix<double, 9, 2> traction;
    for (int row = 0; row < 2; ++row)
        for (int i = 0; i < 9; ++i)
            traction(i, row) =
                weight * (turned(row, 0) * modes(i, 0) +
                          (turned(row, 1) * modes(i, 1) + turned(row, 2) * modes(i, 2)));
    const Eigen::Matrix<double, 2, 12> u = edgedisplacement(s, k, x, h.spin);
    for (int j = 0; j < 12; ++j)
        for (int i = 0; i < 9; ++i)
            h.work(i, j) += traction(i, 0) * u(0, j) + traction(i, 1) * u(1, j);
    if (straight)
        h.straight.noalias() += traction.topRows<straightmodes>() * straightdisplacement(s, k, x);
}

// part: of the rotations that the membrane follows.
static isostatic makeisostatic(const element& e, const flatshape& s, double part) {
    isostatic h;
    h.frame = frameof(s);
    const mat2 lines = jacobianof(s, shapesat(4, {0, 0}));
    for (int m = 0; m < 2; ++m) {
        h.middle[m] = lines.row(m).normalized();
        h.bend[m] = h.frame.axes * h.middle[m];
    }
    h.spin = spinof(s);
    h.work.setZero();
    h.straight.setZero();
    Eigen::Matrix<double, 9, 9> flexibility = Eigen::Matrix<double, 9, 9>::Zero();
    const mat3 compliance = planestiffness(e, false).inverse();
    for (const surfacepoint& p : surfacepoints(4, 5)) {
        const surfaceshape n = shapesat(4, p.place);
        const double weight = p.weight * jacobianof(s, n).determinant();
        addflexibility(stressmodes(h, flatat(s, n)), weight * compliance, flexibility);
    }
    const int points = 3;
    for (int k = 0; k < 4; ++k)
        for (int i = 0; i < points; ++i) {
            const gausspoint& g = gausspoints(points)[i];
            addwork(s, k, (1 + g.at) / 2, g.weight * s.edge[k] / 2, part < 1, h);
        }
    for (int k = 0; k < 4; ++k) sharebow(s, k, edgebow(e, k) / part, h);
    divide(flexibility, s, compliance, h);
    return h;
}

// What the other modes work when the first ones have taken their part.
static Eigen::Matrix<double, curvedmodes, 12> restwork(const isostatic& h, const mat5x12& first) {
    return h.work.bottomRows<curvedmodes>() - h.coupling * first;
}

static void stiffenquadrilateral(const element& e, const flatshape& s, halfmatrix& k) {
    const double part = followedpart(e, s);
    const isostatic h = makeisostatic(e, s, part);
    const mat5x12 work = h.work.topRows<straightmodes>();
    const mat5x12 first = h.stiffness.lazyProduct(work);
    const Eigen::Matrix<double, curvedmodes, 12> others = restwork(h, first);
    const Eigen::Matrix<double, curvedmodes, 12> forces = h.rest.inverse() * others;
    k = part * (work.transpose().lazyProduct(first) + others.transpose().lazyProduct(forces));
    if (part == 1) return;
    k += (1 - part) * h.straight.transpose() * h.stiffness * h.straight;
    const double shear = planestiffness(e, false)(2, 2) * flatarea(s);
    k += (1 - part) * shear * h.spin.transpose() * h.spin;
}

static void stressquadrilateral(const element& e, const flatshape& s, halfmatrix& rows) {
    const double part = followedpart(e, s);
    const isostatic h = makeisostatic(e, s, part);
    const mat5x12 first = h.stiffness.lazyProduct(h.work.topRows<straightmodes>());
    const Eigen::Matrix<double, curvedmodes, 12> others = h.rest.inverse() * restwork(h, first);
    Eigen::Matrix<double, 9, 12> parameters;
    parameters << part * (first - h.stiffness * h.coupling.transpose() * others), part * others;
    parameters.topRows<straightmodes>() += (1 - part) * h.stiffness * h.straight;
    parameters /= e.field(fieldthickness);
    rows.resize(12, 12);
    for (int c = 0; c < 4; ++c)
        rows.middleRows<3>(3 * c) = h.frame.turn * stressmodes(h, s.at[c]).transpose() * parameters;
}

// --- triangle -----------------------------------------------------------------------------------

// Felippa, A study of optimal membrane triangles with drilling freedoms, Comput. Methods Appl.
// Mech. Engrg. 192, 2003. Its free parameters are those of the optimum, which bends exactly in a
// mesh of rectangles of two triangles; in others the higher part of the strain counts for less.
// Such edges bow by half more than a beam (his alpha); an edge of a quadrilateral bows like a beam,
// as far as it follows the rotations, and so does that of a triangle beside it.
namespace {
using mat9x3 = Eigen::Matrix<double, 9, 3>;
using mat3x9 = Eigen::Matrix<double, 3, 9>;

struct optimal {
    double area;
    mat9x3 force;     // nodal forces of a unit stress on a unit thickness
    mat3 corner[3];   // natural strains at a corner from the rotations, divided by 2/3 area
    mat3 strain;      // strain x, y, xy from natural
    mat3x9 rotation;  // rotations of the corners less that of the element
};
}  // namespace

static optimal makeoptimal(const element& e, const flatshape& s) {
    optimal t;
    const auto dx = [&](int i, int j) { return s.at[i].x() - s.at[j].x(); };
    const auto dy = [&](int i, int j) { return s.at[i].y() - s.at[j].y(); };
    t.area = (dx(1, 0) * dy(2, 0) - dx(2, 0) * dy(1, 0)) / 2;
    for (int i = 0; i < 3; ++i) {
        const int j = (i + 1) % 3, k = (i + 2) % 3;
        const double to = edgebow(e, i), from = edgebow(e, k);  // of the edges to j, from k
        t.force.row(3 * i) << dy(j, k), 0, dx(k, j);
        t.force.row(3 * i + 1) << 0, dx(k, j), dy(j, k);
        t.force.row(3 * i + 2) << from * dy(i, k) * dy(i, k) - to * dy(j, i) * dy(j, i),
            from * dx(k, i) * dx(k, i) - to * dx(i, j) * dx(i, j),
            2 * (from * dx(k, i) * dy(i, k) - to * dx(i, j) * dy(j, i));
        t.force.row(3 * i + 2) /= 6;
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

// Pure bending along an edge at the corners, about the line half way up to the opposite one.
static Eigen::Matrix<double, 9, 1> edgebending(const flatshape& s, int edge, double poisson) {
    const vec2 along = s.along[edge], across(-along.y(), along.x());
    const double middle = across.dot(s.at[edge] + s.at[(edge + 2) % 3]) / 2;
    Eigen::Matrix<double, 9, 1> u;
    for (int c = 0; c < 3; ++c) {
        const double x = along.dot(s.at[c]), y = across.dot(s.at[c]) - middle;
        u.segment<2>(3 * c) = x * y * along - (x * x + poisson * y * y) / 2 * across;
        u[3 * c + 2] = -x;
    }
    return u;
}

// Work of the rotations, their part of the strain weighted by the optimum and by its fit: of the
// work of bending along an edge the constant part of the strain takes some, and the optimum gives
// the rotations what is left where two triangles are a rectangle. Other shapes leave less, down to
// nothing in leaning slender ones, which the whole of it would stop from bending. The edge counts
// along which most is left: it lies most nearly along the lines of the mesh.
static mat3 rotationwork(const element& e, const flatshape& s, const optimal& t,
                         const mat3& stretch) {
    const double none = 0.1, whole = 0.45;  // what is left over the optimum; by the curved beam
    const double leastweight = 0.01, poisson = e.field(fieldpoisson);
    const mat3 natural = t.strain.transpose() * stretch * t.strain;
    mat3 work = mat3::Zero();
    for (int c = 0; c < 3; ++c) {
        const mat3 middle = (t.corner[c] + t.corner[(c + 1) % 3]) / 2;
        work += 0.75 * t.area * middle.transpose() * natural * middle;
    }
    const double weight = std::max((1 - 4 * poisson * poisson) / 2, leastweight);
    const double modulus = stretch(0, 0) * (1 - poisson * poisson);
    double left = 0;
    for (int k = 0; k < 3; ++k) {
        const Eigen::Matrix<double, 9, 1> bent = edgebending(s, k, poisson);
        const vec3 strain = t.force.transpose() * bent, turned = t.rotation * bent;
        const double height = 2 * t.area / s.edge[k];
        const double all = modulus * t.area * height * height / 12;
        const double constant = strain.dot(stretch * strain) / t.area;
        left = std::max(left, (all - constant) / (weight * turned.dot(work * turned)));
    }
    return work * std::max(weight * std::min((left - none) / (whole - none), 1.0), leastweight);
}

static trianglerows widened(const mat3x9& rows) {
    trianglerows wide = trianglerows::Zero();
    for (int c = 0; c < 3; ++c)
        for (int i = 0; i < 3; ++i) wide.col(6 * c + membranedofs[i]) = rows.col(3 * c + i);
    return wide;
}

static trianglerows flatstrain(const optimal& t) {
    return widened(t.force.transpose() / t.area);
}

trianglerows meanstrain(const element& e, const flatshape& s) {
    trianglerows strain = flatstrain(makeoptimal(e, s));
    if (e.fold) strain += curvedmembrane(e, s).strain();
    return strain;
}

static void stiffentriangle(const element& e, const flatshape& s, elmatrix& k) {
    const optimal t = makeoptimal(e, s);
    const mat3 stretch = planestiffness(e, false);
    const double part = followedpart(e, s);
    trianglerows strain = flatstrain(t), turned = widened(t.rotation);
    if (e.fold) {
        const curvedmembrane curved(e, s);
        strain += curved.strain();
        turned.rowwise() += curved.spin();
    }
    k += t.area * strain.transpose() * stretch * strain;
    k += part * turned.transpose() * rotationwork(e, s, t, stretch) * turned;
    if (part == 1) return;
    const trianglerow spin = turned.colwise().mean();
    const double hold = 0.3;  // of the shear modulus; as much as the higher part holds the spin
    k += (1 - part) * hold * stretch(2, 2) * t.area * spin.transpose() * spin;
}

// The stress follows the strain of edges bowed by the rotations, which is linear: Allman, A
// compatible triangular element including vertex rotations for plane elasticity analysis,
// Computers & Structures 19, 1984. It is better at the corners than the stress that the stiffness
// stands for. The bow is that of a beam times what makes the mean at the nodes exact in bending
// where two triangles are a rectangle.
static mat3x9 bowedstrain(const element& e, const flatshape& s, int corner) {
    const surfaceshape n = shapesat(3, cornerplace(3, corner));
    const mat2 inverse = jacobianof(s, n).inverse();
    const double poisson = e.field(fieldpoisson), bows = 2 - 3 * poisson * poisson;
    mat3x9 b = mat3x9::Zero();
    const auto add = [&b](int column, const vec2& slope, const vec2& u) {
        b.col(column) +=
            vec3(slope.x() * u.x(), slope.y() * u.y(), slope.y() * u.x() + slope.x() * u.y());
    };
    for (int k = 0; k < 3; ++k) {
        const int i = k, j = s.next(k);
        const vec2 straight = inverse * vec2(n.dr[k], n.ds[k]);
        add(3 * k, straight, vec2(1, 0));
        add(3 * k + 1, straight, vec2(0, 1));
        const vec2 bubble = inverse * vec2(n.dr[i] * n.n[j] + n.n[i] * n.dr[j],
                                           n.ds[i] * n.n[j] + n.n[i] * n.ds[j]);
        const vec2 bow = bows * s.edge[k] / 2 * vec2(-s.along[k].y(), s.along[k].x());
        add(3 * i + 2, bubble, bow);
        add(3 * j + 2, bubble, -bow);
    }
    return b;
}

static void stresstriangle(const element& e, const flatshape& s, elmatrix& rows) {
    const optimal t = makeoptimal(e, s);
    const mat3 modulus = planestiffness(e, false) / e.field(fieldthickness);
    const double part = followedpart(e, s);
    trianglerows beyond = trianglerows::Zero();
    if (e.fold) beyond = curvedmembrane(e, s).strain();
    for (int c = 0; c < 3; ++c)
        rows.middleRows<3>(6 * c) +=
            modulus * (part * widened(bowedstrain(e, s, c)) + (1 - part) * flatstrain(t) + beyond);
}

// --- both ---------------------------------------------------------------------------------------

void stiffendrilling(const element& e, const flatshape& s, elmatrix& k) {
    if (s.corners == 3) return stiffentriangle(e, s, k);
    halfmatrix half;
    stiffenquadrilateral(e, s, half);
    addhalf(half, membranedofs, k);
}

void stressdrilling(const element& e, const flatshape& s, elmatrix& rows) {
    if (s.corners == 3) return stresstriangle(e, s, rows);
    halfmatrix half;
    stressquadrilateral(e, s, half);
    addrows(half, membranedofs, 0, rows);
}
