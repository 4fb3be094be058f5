// SPDX-License-Identifier: GPL-3.0-or-later
#include "solver/elements/membraneload.h"

#include <algorithm>

#include "solver/elements/drill.h"

// The cubic deflection gives a load on a flat plate its exact moments at the nodes, p l l / 12. A
// thin curved shell carries the load by its membrane, where nothing balances these moments at an
// edge: they bend it by half of l l / R t of the membrane stress. So the deflection that a load
// meets is the more linear the more the surface is curved.
double cubicpart(const element& e, const flatshape& s) {
    const double turned = *std::max_element(s.edge, s.edge + s.corners) * e.curve;
    const double flat = 0.04 * e.field(fieldthickness);  // 2 % of the membrane stress
    return turned > flat ? flat * flat / (turned * turned) : 1;
}

// What has to act on the corners where the membrane holds a load by this stress, force a length in
// the mean axes, so that it needs no bending for that on any mesh. The element's own forces of the
// stress, as far as they point along the normal of the surface at each corner.
//
// The membrane's edges bow with the rotations, so a stress N across an edge of length l turns its
// ends about the element's normal by moments bow N l l / 12. In a flat plate those of the neighbour
// take them up; at a fold a part along the surface is left, and the load has to balance it.
static halfrow balanceof(const element& e, const flatshape& s, const mat2& stress) {
    elmatrix force = elmatrix::Zero(1, 6 * s.corners);
    for (int c = 0; c < s.corners; ++c) {
        const vec2 across = (s.at[s.next(c)] - s.at[(c + s.corners - 1) % s.corners]) / 2;
        force.block<1, 2>(0, 6 * c) = stress * vec2(across.y(), -across.x());
    }
    if (s.corners == 4) addarms(s, force);
    halfrow balance = halfrow::Zero(3 * s.corners);
    for (int c = 0; c < s.corners; ++c) {
        const vec2 lean(e.fold->lean[c][0], e.fold->lean[c][1]);
        balance[3 * c] = force.block<1, 2>(0, 6 * c).dot(lean) + force(0, 6 * c + 2);
    }
    for (int k = 0; k < s.corners; ++k) {
        const int i = k, j = s.next(k);
        const vec2 out(s.along[k].y(), -s.along[k].x());
        const double across = out.dot(stress * out) * e.fold->fold[k] * s.edge[k];
        const vec2 moment = edgebow(e, k) * across * s.edge[k] / 12 * out;
        balance.segment<2>(3 * i + 1) += moment;
        balance.segment<2>(3 * j + 1) -= moment;
    }
    return balance;
}

// Square of the curvature, or of what a surface has that is all but flat here and bears no
// membrane.
static double leastsquare(const element& e, const flatshape& s, const mat2& curvature) {
    const double longest = *std::max_element(s.edge, s.edge + s.corners);
    const double flat = 0.01 * e.curve / longest;
    return std::max(curvature.squaredNorm(), flat * flat);
}

// With the curvature S a pressure p is carried by the least stress that can: T = p S / (S : S), the
// hoop stress of a cylinder, even in a sphere.
membraneload loadofmembrane(const element& e, const flatshape& s) {
    membraneload load = {halfrow::Zero(3 * s.corners), 0};
    if (e.fold == nullptr) return load;
    const mat2 curvature = curvatureof(*e.fold);
    const double square = leastsquare(e, s, curvature);
    if (!(square > 0)) return load;
    load.part = curvature.squaredNorm() / square;
    load.weight = balanceof(e, s, curvature / (square * flatarea(s)));
    double lack = load.part;  // by the means of the normals; what a load sums up to stays
    for (int c = 0; c < s.corners; ++c) lack -= load.weight[3 * c];
    for (int c = 0; c < s.corners; ++c) load.weight[3 * c] += lack / s.corners;
    return load;
}

bool iscurved(const element& e) {
    return e.fold != nullptr && cubicpart(e, flatten(e, meanaxes(e))) < 1;
}

void balancemembrane(const element& e, const mat3& membrane, elvector& f) {
    const flatshape s = flatten(e, meanaxes(e));
    const mat2 curvature = curvatureof(*e.fold);
    const double square = leastsquare(e, s, curvature);
    const Eigen::Matrix<double, 2, 3> plane = s.axes.topRows<2>();
    mat2 unit = mat2::Zero();
    unit(0, 0) = 1;
    const halfrow x = balanceof(e, s, unit);
    unit(0, 0) = 0, unit(1, 1) = 1;
    const halfrow y = balanceof(e, s, unit);
    unit(1, 1) = 0, unit(0, 1) = unit(1, 0) = 1;
    const halfrow xy = balanceof(e, s, unit);
    mat2 rest = plane * membrane * plane.transpose();
    rest -= rest.cwiseProduct(curvature).sum() / square * curvature;
    f.resize(6 * s.corners);
    for (int c = 0; c < s.corners; ++c) {
        const vec3 local = (rest(0, 0) * x + rest(1, 1) * y + rest(0, 1) * xy).segment<3>(3 * c);
        f.segment<3>(6 * c) = local[0] * s.axes.row(2);
        f.segment<3>(6 * c + 3) = plane.transpose() * local.tail<2>();
    }
}
