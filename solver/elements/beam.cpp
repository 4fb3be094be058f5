// SPDX-License-Identifier: GPL-3.0-or-later
// BEAM and PIPE: bending in two planes, torsion and axial force. Bernoulli's beam while the shear
// area is 0, Timoshenko's otherwise; both exact for loads at the ends.
#include <algorithm>
#include <cmath>

#include "solver/elements/gauss.h"
#include "solver/elements/line.h"

using mat12 = Eigen::Matrix<double, 12, 12>;
using row4 = Eigen::Matrix<double, 1, 4>;

// Second moment about the global z axis, the only one that a beam of a 2-D model bends about.
static double flatinertia(const element& e, const linesection& s) {
    const double angle = e.field(fieldrotation) * M_PI / 180;
    const double c = std::cos(angle), sine = std::sin(angle);
    return s.i3 * c * c + s.i2 * sine * sine;
}

// The plane of a 2-D model leaves a turned section one curvature, whose parts about e2 and e3 are
// as large as the axes are turned. Each of the beam's own two planes has then I / flat of the load
// and of the shear stiffness, flat = I3 c^2 + I2 s^2, and no load bows it out of the model.
static void bendflat(beamdata& b, const element& e) {
    linesection& s = b.section;
    const double least = 1e-9 * (s.i2 + s.i3);  // where the group tells one of them alone
    s.i2 = std::max(s.i2, least);
    s.i3 = std::max(s.i3, least);
    const double flat = flatinertia(e, s);
    b.shear2 *= s.i2 / flat;
    b.shear3 *= s.i3 / flat;
    b.forces.row(1) *= s.i3 / flat;
    b.forces.row(2) *= s.i2 / flat;
    b.moments.row(1) *= s.i2 / flat;
    b.moments.row(2) *= s.i3 / flat;
    b.forces.col(2).setZero();
    b.moments.leftCols(2).setZero();
}

beamdata beamdataof(const element& e) {
    beamdata b;
    b.section = sectionof(e);
    b.length = lengthof(e);
    b.modulus = e.field(fieldmodulus);
    b.shearmodulus = b.modulus / (2 * (1 + e.field(fieldpoisson)));
    b.axes = b.forces = b.moments = lineaxes(e);
    b.shear2 = b.shear3 = b.shearmodulus * e.shear * b.section.area;
    if (e.twod && e.type != typetruss) bendflat(b, e);
    const double unit = 12 * b.modulus / (b.length * b.length);
    b.phi2 = e.shear > 0 ? unit * b.section.i2 / b.shear2 : 0;
    b.phi3 = e.shear > 0 ? unit * b.section.i3 / b.shear3 : 0;
    return b;
}

static void requireinertia(const element& e, double value, const char* field) {
    if (value > 0) return;
    refuseelement(e, std::string("needs ") + field + " above 0; give it in the element group");
}

// In 2-D the beam bends about the global z axis alone: that inertia must be there.
static void checkflatinertia(const element& e, const linesection& s) {
    const double smallest = 1e-12;  // cos(90 degrees) is not quite 0
    if (flatinertia(e, s) > smallest * (s.i2 + s.i3)) return;
    const double angle = e.field(fieldrotation) * M_PI / 180;
    requireinertia(e, 0, std::fabs(std::cos(angle)) > std::fabs(std::sin(angle)) ? "I yy" : "I xx");
}

void checkbeam(const element& e) {
    checktruss(e);
    const double poisson = e.field(fieldpoisson);
    if (!(poisson > -1 && poisson <= 0.5))
        refuseelement(e, "has a Poisson ratio outside -1..0.5; correct it in the element group");
    for (const groupfield f : {fieldixx, fieldiyy, fieldizz, fieldwxx, fieldwyy, fieldwzz})
        if (e.field(f) < 0)
            refuseelement(
                e,
                "has a second moment or section modulus below 0; correct it in the element group");
    if (e.type == typepipe) {
        const double i2 = e.field(fieldixx), i3 = e.field(fieldiyy);
        requireinertia(e, i2 + i3, "I xx");
        const double inertia = i2 > 0 && i3 > 0 ? (i2 + i3) / 2 : i2 + i3,
                     area = e.field(fieldthickness);
        const double solid = area * area / (4 * M_PI);  // no tube of this area has less
        if (inertia < solid * (1 - 1e-3))
            refuseelement(e, "has less I xx than a solid round bar of its area; correct the group");
        return;
    }
    const linesection s = sectionof(e);
    if (e.twod) {
        checkflatinertia(e, s);
        return;
    }
    requireinertia(e, s.i2, "I xx");
    requireinertia(e, s.i3, "I yy");
    requireinertia(e, s.torsion, "I zz");
}

// Cantilever-exact stiffness with shear: Przemieniecki, Theory of Matrix Structural Analysis,
// section 5.6. Bending in the plane of e1 and e2 (about e3) and of e1 and e3 (about e2).
static mat12 localstiffness(const beamdata& b) {
    mat12 k = mat12::Zero();
    const double l = b.length;
    const auto pair = [&k](int i, int j, double value) { k(i, j) = k(j, i) = value; };
    const double axial = b.modulus * b.section.area / l;
    const double twist = b.shearmodulus * b.section.torsion / l;
    pair(0, 0, axial), pair(6, 6, axial), pair(0, 6, -axial);
    pair(3, 3, twist), pair(9, 9, twist), pair(3, 9, -twist);
    const auto bend = [&](int w, int r, double sign, double inertia, double phi) {
        const double a = b.modulus * inertia / (l * l * l * (1 + phi));
        pair(w, w, 12 * a), pair(w + 6, w + 6, 12 * a), pair(w, w + 6, -12 * a);
        pair(w, r, sign * 6 * a * l), pair(w, r + 6, sign * 6 * a * l);
        pair(w + 6, r, -sign * 6 * a * l), pair(w + 6, r + 6, -sign * 6 * a * l);
        pair(r, r, (4 + phi) * a * l * l), pair(r + 6, r + 6, (4 + phi) * a * l * l);
        pair(r, r + 6, (2 - phi) * a * l * l);
    };
    bend(1, 5, 1, b.section.i3, b.phi3);
    bend(2, 4, -1, b.section.i2, b.phi2);
    return k;
}

// Deflection and slope of a beam bent by its end values w1 r1 w2 r2, at x of 0..1: Friedman and
// Kosmatka, An improved two-node Timoshenko beam finite element, Computers & Structures 47, 1993.
static row4 deflection(double x, double l, double phi) {
    const double a = 1 / (1 + phi), y = 1 - x;
    return {a * (1 - 3 * x * x + 2 * x * x * x + phi * y), a * l * (x * y * y + phi / 2 * x * y),
            a * (3 * x * x - 2 * x * x * x + phi * x), -a * l * (x * x * y + phi / 2 * x * y)};
}

static row4 slope(double x, double l, double phi) {
    const double a = 1 / (1 + phi);
    return {-6 * a * x * (1 - x) / l, a * (1 - 4 * x + 3 * x * x + phi * (1 - x)),
            6 * a * x * (1 - x) / l, a * (3 * x * x - 2 * x + phi * x)};
}

// Rows u1 u2 u3 r1 r2 r3 at x of 0..1 from the twelve local end values.
static Eigen::Matrix<double, 6, 12> shapes(const beamdata& b, double x) {
    Eigen::Matrix<double, 6, 12> n = Eigen::Matrix<double, 6, 12>::Zero();
    n(0, 0) = n(3, 3) = 1 - x;
    n(0, 6) = n(3, 9) = x;
    const int about3[4] = {1, 5, 7, 11}, about2[4] = {2, 4, 8, 10};
    const row4 w3 = deflection(x, b.length, b.phi3), r3 = slope(x, b.length, b.phi3);
    const row4 w2 = deflection(x, b.length, b.phi2), r2 = slope(x, b.length, b.phi2);
    for (int i = 0; i < 4; ++i) {
        const double sign = i % 2 == 0 ? 1 : -1;  // r2 is minus the slope of u3
        n(1, about3[i]) = w3[i];
        n(5, about3[i]) = r3[i];
        n(2, about2[i]) = sign * w2[i];
        n(4, about2[i]) = -sign * r2[i];
    }
    return n;
}

// t' a t with t the local axes four times on the diagonal.
static void tomodelaxes(const mat12& local, const mat3& axes, elmatrix& k) {
    k.resize(12, 12);
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j)
            k.block<3, 3>(3 * i, 3 * j) = axes.transpose() * local.block<3, 3>(3 * i, 3 * j) * axes;
}

void stiffenbeam(const element& e, elmatrix& k) {
    const beamdata b = beamdataof(e);
    tomodelaxes(localstiffness(b), b.axes, k);
}

void massbeam(const element& e, elmatrix& m) {
    const beamdata b = beamdataof(e);
    const double density = e.field(fielddensity);
    const double inertia[6] = {b.section.area, b.section.area,
                               b.section.area, b.section.i2 + b.section.i3,
                               b.section.i2,   b.section.i3};
    mat12 local = mat12::Zero();
    const int points = 4;
    for (int i = 0; i < points; ++i) {
        const gausspoint& g = gausspoints(points)[i];
        const auto n = shapes(b, (1 + g.at) / 2);
        const double weight = density * b.length * g.weight / 2;
        for (int c = 0; c < 6; ++c) local += weight * inertia[c] * n.row(c).transpose() * n.row(c);
    }
    tomodelaxes(local, b.axes, m);
}

// The deflection above as a polynomial of x, from the constant part on.
static Eigen::Vector4d polynomial(double w1, double r1, double w2, double r2, double l,
                                  double phi) {
    const double a = 1 / (1 + phi), rise = w2 - w1;
    return {w1, a * (phi * rise + l * (r1 + phi / 2 * (r1 - r2))),
            a * (3 * rise - l * (2 * r1 + r2 + phi / 2 * (r1 - r2))),
            a * (l * (r1 + r2) - 2 * rise)};
}

void deflectbeam(const beamdata& b, const lineendvalues& ends, int intervals, vec2* deflections) {
    const Eigen::Vector4d v = polynomial(ends[1], ends[5], ends[7], ends[11], b.length, b.phi3);
    const Eigen::Vector4d w = polynomial(ends[2], -ends[4], ends[8], -ends[10], b.length, b.phi2);
    const vec2 p[4] = {{v[0], w[0]}, {v[1], w[1]}, {v[2], w[2]}, {v[3], w[3]}};
    for (int i = 0; i <= intervals; ++i) {
        const double x = double(i) / intervals;
        deflections[i] = p[0] + x * (p[1] + x * (p[2] + x * p[3]));
    }
}

void spreadbeam(const element& e, placedforces forces, elvector& f) {
    const beamdata b = beamdataof(e);
    lineendvalues local = lineendvalues::Zero();
    for (const auto& [place, force] : forces)
        local += shapes(b, place[0]).topRows<3>().transpose() * (b.axes * force);
    for (int i = 0; i < 4; ++i) f.segment<3>(3 * i) += b.axes.transpose() * local.segment<3>(3 * i);
}
