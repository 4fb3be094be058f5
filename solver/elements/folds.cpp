// SPDX-License-Identifier: GPL-3.0-or-later
// Folds between flat triangles and the curvature of the surface that they stand for.
#include "solver/elements/folds.h"

#include <Eigen/Geometry>
#include <Eigen/LU>
#include <algorithm>
#include <cmath>

#include "solver/base/parallel.h"
#include "solver/elements/catalogue.h"

namespace {
// A triangle in model axes, with the edges from corner 0 and what they are held against.
struct facet {
    vec3 at, b, c;      // corner 0; the edges to 1 and to 2
    vec3 normal;        // of twice the area
    vec3 overb, overc;  // in its plane: 1 along the one edge, 0 along the other
};
}  // namespace

static const vec3& placeof(const model& m, const elementdef& e, int corner) {
    return m.nodes[std::size_t(e.node[corner])];
}

static facet facetof(const model& m, const elementdef& e) {
    facet f;
    f.at = placeof(m, e, 0);
    f.b = placeof(m, e, 1) - f.at;
    f.c = placeof(m, e, 2) - f.at;
    f.normal = f.b.cross(f.c);
    const double square = f.normal.squaredNorm();
    f.overb = f.c.cross(f.normal) / square;
    f.overc = f.normal.cross(f.b) / square;
    return f;
}

vec3 normalof(const model& m, const elementdef& e) {
    const vec3 over = placeof(m, e, 2) - placeof(m, e, 0);
    const vec3 other = e.type == typeshell4 ? vec3(placeof(m, e, 3) - placeof(m, e, 1))
                                            : vec3(placeof(m, e, 2) - placeof(m, e, 1));
    return over.cross(other).stableNormalized();
}

namespace {
// The surface beyond an edge: its normal there and the far corners.
struct further {
    vec3 normal, corner[2];
    int corners = 0;
};
}  // namespace

static further beyond(const model& m, const elementdef& e, int edge, int neighbour) {
    further f;
    if (neighbour < 0) {
        const int across = -neighbour - 1;
        f.normal = normalof(m, e);
        f.normal[across] = -f.normal[across];
        vec3& place = f.corner[f.corners++];
        place = placeof(m, e, (edge + 2) % 3);
        place[across] = 2 * placeof(m, e, edge)[across] - place[across];
        return f;
    }
    const elementdef& there = m.elements[std::size_t(neighbour)];
    f.normal = normalof(m, there);
    for (int k = 0; k < factsof(there.type).nodes; ++k) {
        const int n = there.node[k];
        if (n == e.node[edge] || n == e.node[(edge + 1) % 3] || f.corners == 2) continue;
        f.corner[f.corners++] = placeof(m, there, k);
    }
    return f;
}

// From the normal at one side of an edge and that at the other, which may point the other way.
static bool folded(const vec3& normal, const vec3& outward, vec3 other, double& fold) {
    const double sharpest = 0.9;  // radians; beyond it two surfaces meet
    if (other.dot(normal) < 0) other = -other;
    const double cosine = other.dot(normal);
    if (cosine < std::cos(sharpest)) return false;
    fold = other.dot(outward) / (1 + cosine);
    return true;
}

// Curvature of a bow of 1 at each edge: the bow of an edge d is d S d / 2.
static std::array<mat3, 3> unitcurvatures(const facet& f) {
    const mat3 mixed = f.overb * f.overc.transpose() + f.overc * f.overb.transpose();
    return {2 * f.overb * f.overb.transpose() + mixed, -mixed,
            2 * f.overc * f.overc.transpose() + mixed};
}

// Curvature of the surface over an element as its bows tell it.
static mat3 curvatureof(const model& m, int e) {
    const std::array<mat3, 3> unit = unitcurvatures(facetof(m, m.elements[std::size_t(e)]));
    mat3 sum = mat3::Zero();
    for (std::size_t k = 0; k < 3; ++k) sum += m.fold[std::size_t(e)].bow[k] * unit[k];
    return sum;
}

namespace {
struct unrolled {
    vec3 place;     // turned about the edge into the triangle's plane
    double height;  // of the surface there
};
}  // namespace

// So far as an arc has gone on over the edge when its chord has turned by an angle, it has left the
// plane by twice the tangent of half the angle: no small angles are taken for granted, since
// folds of coarse rings are none.
static unrolled unroll(const model& m, const elementdef& e, int edge, const vec3& normal,
                       const vec3& far) {
    const vec3& at = placeof(m, e, edge);
    const vec3 along = (placeof(m, e, (edge + 1) % 3) - at).normalized();
    const vec3 outward = along.cross(normal), arm = far - at;
    const double out = arm.dot(outward), up = arm.dot(normal), size = std::hypot(out, up);
    return {at + arm.dot(along) * along + size * outward, 2 * up * size / (size + out)};
}

// The paraboloid through the corners and the places beyond the edges: its height is the sum of
// bow[k] l[i] l[j], the area coordinates of the edge's ends. What these leave open, at the ends of
// the surface, is as little curved beside the guess as can be.
static void fitbows(const model& m, const elementdef& e, const edgeneighbours& neighbours,
                    const mat3& guess, edgefold& fold) {
    const facet f = facetof(m, e);
    const vec3 normal = f.normal.normalized(), edges[3] = {f.b, f.c - f.b, f.c};
    vec3 guessed;
    for (int k = 0; k < 3; ++k) guessed[k] = edges[k].dot(guess * edges[k]) / 2;
    const bool whole = std::ranges::count(neighbours, 0) == 0;
    const std::array<mat3, 3> unit = unitcurvatures(f);
    mat3 square;
    for (int k = 0; k < 3; ++k)
        for (int l = 0; l < 3; ++l)
            square(k, l) = unit[std::size_t(k)].cwiseProduct(unit[std::size_t(l)]).sum();
    square *= (whole ? 1e-9 : 1e-6) / square.trace();
    vec3 right = vec3::Zero();
    for (int k = 0; k < 3; ++k) {
        if (neighbours[std::size_t(k)] == 0) continue;
        const further next = beyond(m, e, k, neighbours[std::size_t(k)]);
        for (int i = 0; i < next.corners; ++i) {
            const unrolled far = unroll(m, e, k, normal, next.corner[i]);
            const vec3 place = far.place - f.at;
            const double l1 = place.dot(f.overb), l2 = place.dot(f.overc), l0 = 1 - l1 - l2;
            const vec3 row(l0 * l1, l1 * l2, l2 * l0);
            square += row * row.transpose();
            right += row * (far.height - row.dot(guessed));
        }
    }
    const vec3 bow = guessed + square.inverse() * right;
    for (int k = 0; k < 3; ++k) fold.bow[k] = bow[k];
}

// Sets the folds; a neighbour beyond a sharp one is none.
static bool foldall(const model& m, const elementdef& e, edgeneighbours& neighbours,
                    edgefold& fold) {
    const vec3 normal = normalof(m, e);
    bool whole = true;
    for (int k = 0; k < 3; ++k) {
        int& neighbour = neighbours[std::size_t(k)];
        const vec3 along = placeof(m, e, (k + 1) % 3) - placeof(m, e, k);
        if (neighbour != 0 && !folded(normal, along.cross(normal).stableNormalized(),
                                      beyond(m, e, k, neighbour).normal, fold.fold[k]))
            neighbour = 0;
        whole &= neighbour != 0;
    }
    return whole;
}

double roundness(const model& m, int e) {
    if (m.fold.empty()) return 0;
    const mat3 curvature = curvatureof(m, e);  // of rank 2: half of tr^2 - tr(S S) is its Gauss
    const double all = curvature.squaredNorm(), trace = curvature.trace();
    return all > 0 ? std::fabs(trace * trace - all) / all : 0;
}

// Mean over the neighbours whose bows are known; they may be wound the other way. False: none is.
static bool guessed(const model& m, const elementdef& e, const edgeneighbours& neighbours,
                    const std::vector<char>& known, mat3& guess) {
    const vec3 normal = normalof(m, e);
    int count = 0;
    guess.setZero();
    for (const int n : neighbours) {
        if (n <= 0 || known[std::size_t(n)] == 0) continue;
        vec3 other = normalof(m, m.elements[std::size_t(n)]);
        const double side = normal.dot(other) < 0 ? -1 : 1;
        other *= side;
        const mat3 turn = Eigen::Quaterniond::FromTwoVectors(other, normal).toRotationMatrix();
        guess += side * turn * curvatureof(m, n) * turn.transpose();
        ++count;
    }
    if (count > 0) guess /= count;
    return count > 0;
}

// Bows at the ends of the surface, from those inside outwards.
static void fitends(model& m, const std::vector<edgeneighbours>& neighbours,
                    std::vector<char>& known) {
    std::vector<int> open;
    for (int e = 1; e <= m.nelems(); ++e)
        if (m.elements[std::size_t(e)].type == typeshell3 && known[std::size_t(e)] == 0)
            open.push_back(e);
    const int sweeps = 3;
    for (int sweep = 1; sweep <= sweeps && !open.empty(); ++sweep) {
        std::vector<int> fitted, left;
        for (const int e : open) {
            const elementdef& def = m.elements[std::size_t(e)];
            const edgeneighbours& around = neighbours[std::size_t(e)];
            mat3 guess;
            const bool useful = guessed(m, def, around, known, guess) || sweep == sweeps;
            if (useful) fitbows(m, def, around, guess, m.fold[std::size_t(e)]);
            (useful ? fitted : left).push_back(e);
        }
        for (const int e : fitted) known[std::size_t(e)] = 1;
        open = left;
    }
}

void measurefolds(model& m, std::vector<edgeneighbours> neighbours) {
    m.fold.assign(m.elements.size(), edgefold{});
    std::vector<char> known(m.elements.size(), 0);
    parallelpieces(m.nelems(), 4096, [&](int first, int last, int) {
        for (auto e = std::size_t(first) + 1; e <= std::size_t(last); ++e) {
            const elementdef& def = m.elements[e];
            if (def.type != typeshell3 || !foldall(m, def, neighbours[e], m.fold[e])) continue;
            fitbows(m, def, neighbours[e], mat3::Zero(), m.fold[e]);
            known[e] = 1;
        }
    });
    fitends(m, neighbours, known);
}
