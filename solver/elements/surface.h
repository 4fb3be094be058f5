// SPDX-License-Identifier: GPL-3.0-or-later
// Shape functions of triangles and quadrilaterals, points to integrate over them, and the strains
// of a membrane surface.
#pragma once

#include <vector>

#include "solver/elements/element.h"

// Natural coordinates: quadrilateral -1..1 both, corners (-1,-1) (1,-1) (1,1) (-1,1); triangle 0..1
// with the area coordinates 1-r-s, r, s.
struct surfaceshape {
    double n[mostnodes], dr[mostnodes], ds[mostnodes];
};
surfaceshape shapesat(int nodes, const vec2& place);

// Natural coordinates of corner c, 0-based.
vec2 cornerplace(int nodes, int c);

struct surfacepoint {
    vec2 place;
    double weight;  // in natural coordinates: sum 4 for a quadrilateral, 1/2 for a triangle
};
// Exact for polynomials of this degree in each coordinate (triangle: together), up to 7;
// triangle 6.
const std::vector<surfacepoint>& surfacepoints(int nodes, int degree);

// Point on the surface of the corners.
vec3 surfaceat(const element& e, const surfaceshape& n);
// Area of the surface a unit of natural area, and its normal times that.
vec3 surfacenormal(const element& e, const surfaceshape& n);

// The membrane's tangent plane at a place of a surface that may be warped.
struct lamina {
    mat2 jacobian;  // rows: the base vectors along r and s, in the axes t1, t2 of the plane
    vec3 t1, t2;    // the mean plane's x and y, tilted with it the shortest way
    double area;    // a unit of natural area
};
lamina laminaat(const element& e, const mat3& axes, const surfaceshape& n);

// Strains exx, eyy, 2exy in the lamina's axes from nodal translations in model axes (3 x 3 nodes).
// A rigid motion of a warped surface gives none.
using membranestrain = Eigen::Matrix<double, 3, Eigen::Dynamic, Eigen::ColMajor, 3, 12>;
membranestrain strainof(const lamina& l, const surfaceshape& n, int nodes);

// Plane stress, or plane strain where the group says so: force a length of a membrane of this
// thickness.
mat3 planestiffness(const element& e, bool strain);

// Refuses modulus, Poisson ratio, thickness and density out of range.
void checkplateproperties(const element& e, bool planestrain);
// Refuses coincident corners, no area, crossing or concave edges, and corners that leave the mean
// plane by more than this part of the element's size.
void checkplateshape(const element& e, double mostwarp);

// Consistent mass of the translations, the same in all directions (3 x 3 nodes).
void masssurface(const element& e, elmatrix& m);
// Shares forces among the corners by their shape functions.
void spreadsurface(const element& e, placedforces forces, elvector& f);
