// SPDX-License-Identifier: GPL-3.0-or-later
// Bending of plates, thick and thin, on three or four corners: degrees of freedom w r1 r2 a corner
// in the axes of the plane.
#pragma once

#include "solver/elements/meanplane.h"

// Shear over bending of an element's edges, each taken as a beam with shear.
edgeslip slipofedges(const element& e);

class plate {
  public:
    plate(const element& e, const flatshape& s);
    halfmatrix stiffness() const;
    // Bending stress x, y, xy at the +e3 face: rows 3c..3c+2 at corner c.
    halfmatrix cornerstress() const;
    // Deflection at a place, cubic along the edges.
    halfrow deflection(const vec2& place) const;

  private:
    struct assumed;
    struct moments;
    using edgerows = Eigen::Matrix<double, 3, 6>;
    static moments momentsat(const assumed& h, const vec2& at);
    static void addflexibility(const moments& f, const mat3& compliance, double shear, assumed& h);
    halfrow curvaturechange(const vec2& across) const;
    void pairopposites(const element& e);
    edgerows edgemotion(int k, double x) const;
    vec3 bowmotion(int k, double x) const;
    void addwork(const moments& f, int k, double x, double weight, assumed& h) const;
    void addcommon(assumed& h) const;
    assumed makeassumed() const;
    mat3 loosened(const element& e) const;
    halfmatrix trianglestiffness() const;
    halfrows curvature(const vec2& place, double& area) const;
    Eigen::Matrix<double, 2, Eigen::Dynamic, Eigen::ColMajor, 2, mosthalf> shear(
        const vec2& place) const;

    const flatshape& s;
    mat3 rigidity;         // moment a length of a curvature
    mat3 loose;            // the same of a triangle, less at its free edges
    double shearrigidity;  // shear force a length of a shear strain
    double thickness;
    double area;
    halfrow bow[mostnodes];    // by which the rotation along an edge leaves the straight line
    halfrow whole[mostnodes];  // shear strain along an edge that does not bow
    halfrow slide[mostnodes];  // and when it does
    halfrow common[2];         // that a quadrilateral's edge 0 or 1 shares with the one opposite
};
