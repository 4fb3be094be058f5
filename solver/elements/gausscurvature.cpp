// SPDX-License-Identifier: GPL-3.0-or-later
// A surface bends without stretch only as long as its Gauss curvature stays (Gauss, Disquisitiones
// generales circa superficies curvas, 1828). A flat element knows nothing of that: its bending
// alone would let a coarse mesh of a sphere, or the end of a tube, bend in ways that these resist.
#include "solver/elements/gausscurvature.h"

#include <algorithm>
#include <cmath>

#include "solver/elements/edgecurves.h"

// Change of the Gauss curvature times the area: by how much the rotations of the ends of each edge
// differ about the normal of the surface at the edge, summed round the element. At a place p the
// normal leans by S p out of the one in the middle, with S the curvature of the surface; what
// the rotations do about that one cancels.
static halfrow curvaturechange(const mat2& curvature, const flatshape& s) {
    halfrow change = halfrow::Zero(3 * s.corners);
    for (int c = 0; c < s.corners; ++c) {
        const vec2 across = s.at[s.next(c)] - s.at[(c + s.corners - 1) % s.corners];
        change.segment<2>(3 * c + 1) = curvature * across / 2;
    }
    return change;
}

// The strain that goes with a change K of the Gauss curvature grows as K y^2 / 2 across a strip of
// width b. Less its mean it stores E t K^2 b^4 / 1440 an area; here b^4, as far as an element lacks
// this. Quadrilaterals find most of it by their neighbours and share the rest between their two
// widths: what they lack is a quarter, by the hemisphere on coarse meshes.
static double lackofquadrilateral(const flatshape& s) {
    const stressframe f = frameof(s);
    const double a = 4 * f.a * f.a, b = 4 * f.b * f.b, lacking = 0.25;
    return lacking / (1 / (a * a) + 1 / (b * b));
}

// A triangle has one strain, and its edges bow so that this is the mean. The strain that lacks lies
// the way the surface is curved and grows across it. Twice the energy, by the roof of Scordelis and
// Lo and by the ends of cones. Where the surface is curved both ways, it bends by trading one
// curvature for the other; a single triangle sees too little of that, and nothing is added.
static double lackoftriangle(const edgefold& fold, const mat2& curvature, const flatshape& s) {
    const double square = curvature.squaredNorm();
    if (!(square > 0)) return 0;
    const double lacking = 2, little = 0.05;  // by the inner half of a torus
    const double bothways = *std::max_element(fold.bothways, fold.bothways + 3) / little;
    const double faded = lacking / std::pow(1 + bothways * bothways, 2);
    mat2 spread = mat2::Zero();  // mean of p p' over the triangle, b^2 / 18 of legs of length b
    for (int c = 0; c < 3; ++c) spread += s.at[c] * s.at[c].transpose() / 12;
    mat2 across;
    across << curvature(1, 1), -curvature(0, 1), -curvature(0, 1), curvature(0, 0);
    return faded * 18 * 18 * (across * spread).squaredNorm() / square;
}

void addgausscurvature(const element& e, const flatshape& s, halfmatrix& k) {
    if (e.fold == nullptr) return;
    const bool triangle = s.corners == 3;
    const mat2 curvature = triangle ? curvaturefrom(s, *e.fold) : curvatureof(*e.fold);
    const halfrow change = curvaturechange(curvature, s);
    const double fourth = triangle ? lackoftriangle(*e.fold, curvature, s) : lackofquadrilateral(s);
    const double stretch = e.field(fieldmodulus) * e.field(fieldthickness);
    k.noalias() += stretch * fourth / (720 * flatarea(s)) * change.transpose() * change;
}
