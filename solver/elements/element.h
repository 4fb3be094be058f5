// SPDX-License-Identifier: GPL-3.0-or-later
// One element with its geometry, as the element families see it, and its local axes.
#pragma once

#include <span>
#include <string>

#include "solver/base/model.h"
#include "solver/base/settings.h"

struct element {
    int number = 0, type = 0, nodes = 0, group = 0;
    int name = 0;  // its number in the files
    int node[mostnodes] = {};
    const int* nodenames = nullptr;  // in the files, by node; none: the same
    vec3 x[mostnodes];               // corners in model axes; z is 0 in a 2-D analysis
    const groupdata* g = nullptr;
    double turn = 0;                 // of the axes of a plate about its normal, radians
    const edgeslip* slip = nullptr;  // of a plate's edges; none: as the element alone finds it
    const edgefold* fold = nullptr;  // of a shell; none: its neighbours lie in its plane
    double curve = 0;  // radians by which the surface of a shell turns over the element
    double shear = 0;  // shear area over area of a line element, 0: stiff in shear
    bool twod = false;

    double field(groupfield f) const { return g->field[f]; }
};

// A force (model axes) at a place of an element. Line: place[0] in 0..1 from the first node. Plate:
// natural coordinates of its shape.
struct placedforce {
    vec2 place;
    vec3 force;
};
using placedforces = std::span<const placedforce>;

// The number of its k-th node in the files.
inline int nodenameof(const element& e, int k) {
    return e.nodenames ? e.nodenames[e.node[k]] : e.node[k];
}

element elementat(const model& m, const settings& s, int e);

// "Element 12 (BEAM, group 2 \"legs\")".
std::string elementname(const element& e);

// Throws a refusal: the element's name, what is wrong, what to do.
[[noreturn]] void refuseelement(const element& e, const std::string& why);

// Rows are the unit vectors e1, e2, e3 of the local axes; multiplied with a vector in model axes
// they give its local components. Line: e1 along the element, e2 at right angles to e1 in the xy
// plane ((0,1,0) where e1 has no x and y), then turned about e1 by the group's section rotation.
mat3 lineaxes(const element& e);
// e1 along the middle line from edge 4-1 to edge 2-3 (triangle: along edge 1-2), e3 the normal.
mat3 plateaxes(const element& e);
// The same with the normal of the mean plane, from which the corners of a warped quadrilateral are
// equally far; in it an element is worked out. e1 lies in that plane.
mat3 meanaxes(const element& e);
// These turned about the normal by the element's rotation: the axes of its stresses.
mat3 stressaxes(const element& e);

vec3 middleof(const element& e);
double lengthof(const element& e);  // of a line element
