// SPDX-License-Identifier: GPL-3.0-or-later
// Curvature of curved shells along the edges of their triangles, from the normals at the nodes.
// Exact on cylinders and spheres, however coarse the mesh.
#pragma once

#include "solver/elements/corners.h"
#include "solver/elements/meanplane.h"

// The part that an element has of a flat one where its surface turns over a length, the product
// told.
double flatpart(const element& e, double turned);
// By how much the normal turns from the first end of an edge to the other, a length.
double curvealong(const flatshape& s, const edgefold& f, int edge);
// Of a triangle, from what it has along its edges; from its leans.
mat2 curvaturefrom(const flatshape& s, const vec3& along);
mat2 curvaturefrom(const flatshape& s, const edgefold& f);
// The way back: a symmetric tensor of a triangle is the sum of such parts of d d', d the unit
// vectors along its edges.
vec3 partsalong(const flatshape& s, const mat2& tensor);
// Fills what m.fold tells of the surface at the corners of triangles; the leans are known.
void lookopposite(model& m, const settings& s, const cornerlist& corners);
