// SPDX-License-Identifier: GPL-3.0-or-later
// The membrane of a flat triangle that stands for a part of a curved surface.
#pragma once

#include "solver/elements/meanplane.h"

// Over u1 u2 u3 r1 r2 r3 a corner of a triangle, in the axes of its plane.
using trianglerow = Eigen::Matrix<double, 1, 18>;
using trianglerows = Eigen::Matrix<double, 3, 18>;

class curvedmembrane {
  public:
    curvedmembrane(const element& e, const flatshape& s);  // of a triangle with folds
    // What the mean strain x, y, 2xy has beyond that of the flat triangle.
    trianglerows strain() const;
    // What the mean rotation of the corners less that of the triangle has beyond the flat one.
    trianglerow spin() const;

  private:
    using tilts = Eigen::Matrix<double, 2, 18>;
    const element& e;
    const flatshape& s;
    vec2 lean[3];            // of the surface's normal at the corners
    tilts tilt[3];           // rotations r1 r2 of the corners beyond that of the plane
    trianglerow turned[3];   // from end to end of an edge about the surface's normal in its middle
    trianglerow changed[3];  // of these what goes with a change of the Gauss curvature
    bool mixed;              // beside quadrilaterals, which bow unlike
    // Mean displacement of the surface at an edge out of the triangle, in its plane, beyond the
    // straight line between the corners.
    trianglerow bow(int edge) const;
    // How far the normal leans along an edge at its ends.
    vec2 climb(int edge) const {
        return {lean[edge].dot(s.along[edge]), lean[s.next(edge)].dot(s.along[edge])};
    }
    vec2 out(int edge) const { return {s.along[edge].y(), -s.along[edge].x()}; }
    // Mean lean of an edge, out of the triangle; along the edge there is none in its middle.
    double leanout(int edge) const { return out(edge).dot(lean[edge] + lean[s.next(edge)]) / 2; }
};
