// SPDX-License-Identifier: GPL-3.0-or-later
// Curves of drawings as chains of points, in the axes of the object.
#pragma once

#include <vector>

#include "exchange/imported.h"

using chain = std::vector<triple>;

// How finely a curve is cut.
struct fineness {
    double longest = 10000;  // of a piece
    double turn = 0.2618;    // radians that an arc may turn along a piece: 24 pieces a circle
    double scale = 1;        // of what is drawn: lengths of the object become so much longer
    double deviation = 0;    // out: the largest distance of a curve from its pieces, scaled
};

// From the angle `from` through `sweep` radians, positive counter-clockwise; both ends included.
chain arcpoints(const triple& centre, double radius, double from, double sweep, fineness& how);
// An arc of a flat chain from a to b: bulge is the tangent of a quarter of its angle, positive
// counter-clockwise. Leaves out a.
void addbulge(chain& points, const triple& b, double bulge, fineness& how);
// The major axis as a vector from the centre, the minor one by its ratio about the normal.
chain ellipsepoints(const triple& centre, const triple& major, double ratio, const triple& normal,
                    double from, double to, fineness& how);

// Non-uniform rational B-spline; `weights` is empty or one a control point. Without control points
// the smoothest cubic through the fit points, from knot to knot by its chords' lengths; `starts`
// and `ends` are its directions there, 0 where it may turn freely.
struct spline {
    int degree = 3;
    bool closed = false;
    std::vector<double> knots, weights;
    std::vector<triple> control, fit;
    triple starts{}, ends{};
};
// Empty where the numbers make no curve.
chain splinepoints(const spline& s, fineness& how);
