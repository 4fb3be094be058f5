// SPDX-License-Identifier: GPL-3.0-or-later
#include "solver/elements/membraneload.h"

#include <algorithm>
#include <cmath>

#include "solver/elements/drill.h"
#include "solver/elements/edgebow.h"
#include "solver/elements/edgecurves.h"

// The cubic deflection gives a load on a flat plate its exact moments at the nodes, p l l / 12. A
// thin curved shell carries the load by its membrane, where nothing balances these moments at an
// edge: they bend it by half of l l / R t of the membrane stress. So the deflection that a load
// meets is the more linear the more the surface is curved.
double cubicpart(const element& e, const flatshape& s) {
    return flatpart(e, *std::max_element(s.edge, s.edge + s.corners) * e.curve);
}

// What has to act on the corners where the membrane holds a load by this stress, force a length in
// the mean axes, so that it needs no bending for that on any mesh: the element's own forces of the
// stress, as far as they point along the normal of the surface at each corner.
static halfrow alongnormals(const element& e, const elmatrix& force) {
    halfrow normal = halfrow::Zero(3 * e.nodes);
    for (int c = 0; c < e.nodes; ++c) {
        const vec2 lean(e.fold->lean[c][0], e.fold->lean[c][1]);
        normal[3 * c] = force.block<1, 2>(0, 6 * c).dot(lean) + force(0, 6 * c + 2);
    }
    return normal;
}

// With the moments, as far as they turn about no normal.
static halfrow balanceoftriangle(const element& e, const flatshape& s, const mat2& stress) {
    const vec3 pulls(stress(0, 0), stress(1, 1), stress(0, 1));
    const elmatrix force = flatarea(s) * pulls.transpose() * meanstrain(e, s);
    halfrow balance = alongnormals(e, force);
    for (int c = 0; c < 3; ++c) {
        const Eigen::RowVector2d lean(e.fold->lean[c][0], e.fold->lean[c][1]);
        balance.segment<2>(3 * c + 1) =
            force.block<1, 2>(0, 6 * c + 3) - force(0, 6 * c + 5) * lean;
    }
    return balance;
}

// The membrane's edges bow with the rotations, so a stress N across an edge of length l turns its
// ends about the element's normal by moments bow N l l / 12. In a flat plate those of the neighbour
// take them up; at a fold a part along the surface is left, and the load has to balance it.
static halfrow balanceofquadrilateral(const element& e, const flatshape& s, const mat2& stress) {
    elmatrix force = elmatrix::Zero(1, 24);
    for (int c = 0; c < 4; ++c) {
        const vec2 across = (s.at[s.next(c)] - s.at[(c + 3) % 4]) / 2;
        force.block<1, 2>(0, 6 * c) = stress * vec2(across.y(), -across.x());
    }
    addarms(s, force);
    halfrow balance = alongnormals(e, force);
    for (int k = 0; k < 4; ++k) {
        const int i = k, j = s.next(k);
        const vec2 out(s.along[k].y(), -s.along[k].x());
        const double across = out.dot(stress * out) * e.fold->fold[k] * s.edge[k];
        const vec2 moment = edgebow(e, k) * across * s.edge[k] / 12 * out;
        balance.segment<2>(3 * i + 1) += moment;
        balance.segment<2>(3 * j + 1) -= moment;
    }
    return balance;
}

static halfrow balanceof(const element& e, const flatshape& s, const mat2& stress) {
    return s.corners == 3 ? balanceoftriangle(e, s, stress) : balanceofquadrilateral(e, s, stress);
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
static mat2 leaststress(const element& e, const flatshape& s, const mat2& curvature) {
    const double square = leastsquare(e, s, curvature);
    return square > 0 ? mat2(curvature / square) : mat2(mat2::Zero());
}

// share: of the corners in what the weights lack by the means of the normals; what a load sums up
// to stays.
static membraneload loadheldby(const element& e, const flatshape& s, const mat2& stress,
                               double part, const halfrow& share) {
    membraneload load = {balanceof(e, s, stress / flatarea(s)), part};
    double lack = part;
    for (int c = 0; c < s.corners; ++c) lack -= load.weight[3 * c];
    for (int c = 0; c < s.corners; ++c) load.weight[3 * c] += lack * share[c];
    return load;
}

// Of the corners in what the weights of a triangle lack: of the part that the stress holds along an
// edge as much as lies half way up to the corner opposite, so that of two triangles that are a
// rectangle nothing is left over.
static halfrow halfwayshare(const flatshape& s, const mat2& stress) {
    const vec3 along = partsalong(s, stress).cwiseAbs();
    const halfrow part = vec3(along[1], along[2], along[0]).transpose();  // by the corner opposite
    const double all = part.sum();
    return all > 0 ? halfrow((part.array() / all + 1) / 4) : halfrow::Constant(3, 1.0 / 3);
}

// The one stress of a triangle is, along each of its edges, that of the place half way up to the
// corner opposite (see drill: of two triangles that are a rectangle both have the mean). So must be
// that which holds a load, or each row of a cone would turn the next one over.
static membraneload loadoftriangle(const element& e, const flatshape& s) {
    vec3 own, half, leaning;  // by the normals at the corners; half way up; by the leans
    for (int k = 0; k < 3; ++k) {
        own[k] = curvealong(s, *e.fold, k);
        half[k] = (own[k] + e.fold->beyond[k]) / 2;
        const double *const from = e.fold->lean[k], *const to = e.fold->lean[s.next(k)];
        leaning[k] = vec2(to[0] - from[0], to[1] - from[1]).dot(s.along[k]) / s.edge[k];
    }
    const mat2 curvature = curvaturefrom(s, leaning), held = leaststress(e, s, curvature),
               middle = leaststress(e, s, curvaturefrom(s, half));
    const mat2 stress = held + middle - leaststress(e, s, curvaturefrom(s, own));
    return loadheldby(e, s, stress, held.cwiseProduct(curvature).sum(), halfwayshare(s, middle));
}

membraneload loadofmembrane(const element& e, const flatshape& s) {
    if (e.fold == nullptr) return {halfrow::Zero(3 * s.corners), 0};
    if (s.corners == 3) return loadoftriangle(e, s);
    const mat2 curvature = curvatureof(*e.fold), stress = leaststress(e, s, curvature);
    return loadheldby(e, s, stress, stress.cwiseProduct(curvature).sum(),
                      halfrow::Constant(4, 0.25));
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
