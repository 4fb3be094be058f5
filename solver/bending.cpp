// SPDX-License-Identifier: GPL-3.0-or-later
// The discrete Kirchhoff-Mindlin triangle and quadrilateral: Katili, A new discrete Kirchhoff-
// Mindlin element based on Mindlin-Reissner plate theory and assumed shear strain fields, parts I
// and II, Int. J. Numer. Meth. Engng 36, 1993.
//
// The fibre at x, y moves by z (bx, by) with bx = r2, by = -r1. Along an edge the rotation about
// its normal is quadratic; how far it leaves the straight line follows from the edge as a beam with
// shear. Thin plates become the discrete Kirchhoff elements, thick ones those of constant shear
// along an edge; there is nothing in between that locks.
#include "solver/bending.h"

#include <Eigen/LU>

plate::plate(const element& e, const flatshape& shape) : s(shape) {
    const double correction = 5.0 / 6;  // of the shear strain, which is not even over the thickness
    const double modulus = e.field(fieldmodulus), poisson = e.field(fieldpoisson);
    thickness = e.field(fieldthickness);
    rigidity = planestiffness(e, false) * thickness * thickness / 12;
    shearrigidity = correction * modulus / (2 * (1 + poisson)) * thickness;
    for (int k = 0; k < s.corners; ++k) {
        const int i = k, j = s.next(k);
        const double length = s.edge[k], c = s.along[k].x(), sine = s.along[k].y();
        const double phi = 12 * rigidity(0, 0) / (shearrigidity * length * length);
        halfrow& row = bow[k];
        row.setZero(3 * s.corners);
        const double factor = -1.5 / (length * (1 + phi));
        row[3 * i] = -factor;
        row[3 * j] = factor;
        for (const int n : {i, j}) {
            row[3 * n + 1] = -factor * length / 2 * sine;
            row[3 * n + 2] = factor * length / 2 * c;
        }
        slide[k] = -2.0 / 3 * phi * row;
    }
}

// Natural derivatives of the bubbles along the edges, 1 in the middle of their own.
static void edgebubbles(int corners, const vec2& place, double* dr, double* ds) {
    const double r = place[0], t = place[1];
    if (corners == 3) {
        const double first = 1 - r - t;
        dr[0] = 4 * (first - r), ds[0] = -4 * r;
        dr[1] = 4 * t, ds[1] = 4 * r;
        dr[2] = -4 * t, ds[2] = 4 * (first - t);
        return;
    }
    dr[0] = -r * (1 - t), ds[0] = -(1 - r * r) / 2;
    dr[1] = (1 - t * t) / 2, ds[1] = -t * (1 + r);
    dr[2] = -r * (1 + t), ds[2] = (1 - r * r) / 2;
    dr[3] = -(1 - t * t) / 2, ds[3] = -t * (1 - r);
}

// area: out, a unit of natural area.
halfrows plate::curvature(const vec2& place, double& area) const {
    const surfaceshape n = shapesat(s.corners, place);
    const mat2 j = jacobianof(s, n), inverse = j.inverse();
    area = j.determinant();
    double dr[mostnodes], ds[mostnodes];
    edgebubbles(s.corners, place, dr, ds);
    halfrows b = halfrows::Zero(3, 3 * s.corners);
    for (int c = 0; c < s.corners; ++c) {
        const vec2 d = inverse * vec2(n.dr[c], n.ds[c]);
        b(0, 3 * c + 2) += d.x();
        b(1, 3 * c + 1) -= d.y();
        b(2, 3 * c + 2) += d.y();
        b(2, 3 * c + 1) -= d.x();
    }
    for (int k = 0; k < s.corners; ++k) {
        const vec2 d = inverse * vec2(dr[k], ds[k]);
        b.row(0) += d.x() * s.along[k].x() * bow[k];
        b.row(1) += d.y() * s.along[k].y() * bow[k];
        b.row(2) += (d.y() * s.along[k].x() + d.x() * s.along[k].y()) * bow[k];
    }
    return b;
}

// Field whose component along each edge is that edge's shear strain.
Eigen::Matrix<double, 2, Eigen::Dynamic, Eigen::ColMajor, 2, mosthalf> plate::shear(
    const vec2& place) const {
    Eigen::Matrix<double, 2, Eigen::Dynamic, Eigen::ColMajor, 2, mosthalf> natural(2,
                                                                                   3 * s.corners);
    const double r = place[0], t = place[1];
    if (s.corners == 3) {
        const halfrow a = s.edge[0] * slide[0], b = s.edge[1] * slide[1], c = s.edge[2] * slide[2];
        natural.row(0) = a - t * (a + b + c);
        natural.row(1) = -c + r * (a + b + c);
    } else {
        natural.row(0) = ((1 - t) * s.edge[0] * slide[0] - (1 + t) * s.edge[2] * slide[2]) / 4;
        natural.row(1) = ((1 + r) * s.edge[1] * slide[1] - (1 - r) * s.edge[3] * slide[3]) / 4;
    }
    return jacobianof(s, shapesat(s.corners, place)).inverse() * natural;
}

halfmatrix plate::stiffness() const {
    halfmatrix k = halfmatrix::Zero(3 * s.corners, 3 * s.corners);
    for (const surfacepoint& p : surfacepoints(s.corners, s.corners == 4 ? 3 : 2)) {
        double area = 0;
        const halfrows b = curvature(p.place, area);
        const auto g = shear(p.place);
        k.noalias() += p.weight * area * b.transpose() * (rigidity * b);
        k.noalias() += p.weight * area * shearrigidity * g.transpose() * g;
    }
    return k;
}

// A triangle's curvature is linear. That of a quadrilateral is best at the points of integration
// and goes on from there to the corner bilinearly.
halfrows plate::cornerstress(int c) const {
    const double face = 6 / (thickness * thickness);
    double area = 0;
    if (s.corners == 3) return face * rigidity * curvature(cornerplace(3, c), area);
    const vec2 corner = cornerplace(4, c);
    halfrows sum = halfrows::Zero(3, 3 * s.corners);
    for (const surfacepoint& p : surfacepoints(4, 3)) {
        const double share =  // the points are at 1 / sqrt 3
            (1 + 3 * corner[0] * p.place[0]) * (1 + 3 * corner[1] * p.place[1]) / 4;
        sum += share * curvature(p.place, area);
    }
    return face * rigidity * sum;
}

// The edge's rotation and shear strain integrated from one corner to the next, straight across.
halfrow plate::deflection(const vec2& place) const {
    const surfaceshape n = shapesat(s.corners, place);
    halfrow w = halfrow::Zero(3 * s.corners);
    for (int c = 0; c < s.corners; ++c) w[3 * c] = n.n[c];
    for (int k = 0; k < s.corners; ++k) {
        const int i = k, j = s.next(k);
        double both = n.n[i] * n.n[j], less = n.n[i] - n.n[j];  // x (1 - x) and 1 - 2 x on the edge
        if (s.corners == 4) {
            const bool first = k % 2 == 0;
            const double x = (1 + (k < 2 ? 1 : -1) * place[first ? 0 : 1]) / 2;
            const double fade = (1 + (k == 1 || k == 2 ? 1 : -1) * place[first ? 1 : 0]) / 2;
            both = fade * x * (1 - x);
            less = 1 - 2 * x;
        }
        const double length = s.edge[k], c = s.along[k].x(), sine = s.along[k].y();
        const double half = length * both / 2;
        w[3 * j + 1] -= half * sine;
        w[3 * j + 2] += half * c;
        w[3 * i + 1] += half * sine;
        w[3 * i + 2] -= half * c;
        w += length * both * less * 2 / 3 * bow[k];
    }
    return w;
}
