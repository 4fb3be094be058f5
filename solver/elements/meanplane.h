// SPDX-License-Identifier: GPL-3.0-or-later
// The mean plane of a plate or shell, in which its stiffness is worked out, and the way from there
// to the nodes: a corner of a warped element hangs on its place in the plane by a rigid arm, so
// that a rigid motion of the warped element strains nothing.
#pragma once

#include "solver/elements/surface.h"

// Matrices of one half of a shell, three degrees of freedom a corner.
const int mosthalf = 3 * mostnodes;
using halfmatrix =
    Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::ColMajor, mosthalf, mosthalf>;
using halfrow = Eigen::Matrix<double, 1, Eigen::Dynamic, Eigen::RowMajor, 1, mosthalf>;
using halfrows = Eigen::Matrix<double, 3, Eigen::Dynamic, Eigen::ColMajor, 3, mosthalf>;

struct flatshape {
    int corners = 0;
    mat3 axes;                 // rows: x and y of the plane and its normal, in model axes
    vec2 at[mostnodes];        // corners in the plane, from their middle, anticlockwise
    double height[mostnodes];  // of the nodes above it
    double edge[mostnodes];    // length from corner k to the next
    vec2 along[mostnodes];     // unit vector
    int next(int k) const { return (k + 1) % corners; }
};
flatshape flatten(const element& e, const mat3& axes);

// Curvature of the surface in the mean axes.
inline mat2 curvatureof(const edgefold& f) {
    mat2 curvature;
    curvature << f.bend[0], f.bend[2], f.bend[2], f.bend[1];
    return curvature;
}

double flatarea(const flatshape& s);
vec2 flatat(const flatshape& s, const surfaceshape& n);  // place in the plane

// Base vectors along the natural coordinates by rows; derivatives along x and y of a function with
// natural derivatives dr, ds are its inverse times (dr, ds).
mat2 jacobianof(const flatshape& s, const surfaceshape& n);

// Axes in the plane half way between the two middle lines of a quadrilateral: they turn with these
// when the corners are counted from another. Assumed stresses and moments are told in them.
struct stressframe {
    mat2 axes;    // rows: unit vectors
    double a, b;  // half sizes of the element along them
    mat3 turn;    // stress x, y, xy from the frame to the plane's axes
};
stressframe frameof(const flatshape& s);

// Where the two halves stand among a corner's local u1 u2 u3 r1 r2 r3.
const int membranedofs[3] = {0, 1, 5}, bendingdofs[3] = {2, 3, 4};
// Adds a half to the whole, both on local degrees of freedom at the plane.
void addhalf(const halfmatrix& half, const int (&dofs)[3], elmatrix& whole);
// Adds a half's rows (three a corner) to the six of a corner, from row `first` on.
void addrows(const halfmatrix& half, const int (&dofs)[3], int first, elmatrix& rows);

// In the plane below a node at some height the surface moves sideways as its slope there turns the
// arm between them: rows on the plane's corners take in what that makes of u3. Slopes are those of
// the straight lines between the corners: taken from the nodes' rotations they would strain a thin
// warped element whenever it bends.
void addarms(const flatshape& s, elmatrix& rows);

// k becomes t' k t, rows become rows t, with t from the nodes in model axes to the plane's corners
// in its own axes.
void tonodes(const flatshape& s, elmatrix& k);
void rowstonodes(const flatshape& s, elmatrix& rows);
