// SPDX-License-Identifier: GPL-3.0-or-later
// A surface bends without stretch only as long as its Gauss curvature stays (Gauss, Disquisitiones
// generales circa superficies curvas, 1828). A flat element knows nothing of that: its bending
// alone would let a coarse mesh of a sphere bend in ways that a sphere resists.
#include "solver/elements/gausscurvature.h"

// Change of the Gauss curvature times the area: by how much the rotations of the ends of each edge
// differ about the normal of the surface at the edge, summed round the element. At a place p the
// normal leans by S p out of the one in the middle, with S the curvature of the surface; what
// the rotations do about that one cancels.
static halfrow curvaturechange(const mat2& curvature, const flatshape& s) {
    halfrow change = halfrow::Zero(12);
    for (int c = 0; c < 4; ++c)
        change.segment<2>(3 * c + 1) = curvature * (s.at[(c + 1) % 4] - s.at[(c + 3) % 4]) / 2;
    return change;
}

// The strain that goes with a change K of the Gauss curvature grows as K y^2 / 2 across a strip of
// width b. Less its mean it stores E t K^2 b^4 / 1440 an area, which an element of two widths
// shares between them. Flat elements find most of this by their neighbours; what they lack is a
// quarter, by the hemisphere on coarse meshes.
void addgausscurvature(const element& e, const flatshape& s, halfmatrix& k) {
    if (e.fold == nullptr) return;
    const halfrow change = curvaturechange(curvatureof(*e.fold), s);
    const double lacking = 0.25, area = flatarea(s);
    const stressframe f = frameof(s);
    const double a = 4 * f.a * f.a, b = 4 * f.b * f.b;
    const double fourth = 1 / (1 / (a * a) + 1 / (b * b));
    const double stretch = e.field(fieldmodulus) * e.field(fieldthickness);
    k.noalias() += lacking * stretch * fourth / (720 * area) * change.transpose() * change;
}
