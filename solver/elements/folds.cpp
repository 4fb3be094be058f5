// SPDX-License-Identifier: GPL-3.0-or-later
// Folds between flat elements and the curvature of the surface that they stand for.
#include "solver/elements/folds.h"

#include <Eigen/Geometry>
#include <Eigen/LU>
#include <Eigen/QR>
#include <algorithm>
#include <cmath>

#include "solver/base/parallel.h"
#include "solver/elements/catalogue.h"
#include "solver/elements/meanplane.h"

static const vec3& placeof(const model& m, const elementdef& e, int corner) {
    return m.nodes[std::size_t(e.node[corner])];
}

vec3 normalof(const model& m, const elementdef& e) {
    const vec3 over = placeof(m, e, 2) - placeof(m, e, 0);
    const vec3 other = e.type == typeshell4 ? vec3(placeof(m, e, 3) - placeof(m, e, 1))
                                            : vec3(placeof(m, e, 2) - placeof(m, e, 1));
    return over.cross(other).stableNormalized();
}

bool continues(const vec3& normal, const vec3& other) {
    const double sharpest = 0.9;  // radians; beyond it two surfaces meet
    return std::fabs(normal.dot(other)) >= std::cos(sharpest);
}

// --- over an edge -------------------------------------------------------------------------------

namespace {
// The surface beyond an edge: its normal there and the far corners.
struct further {
    vec3 normal, corner[2];
    int corners = 0;
};
}  // namespace

static further beyond(const model& m, const element& e, int edge, int neighbour) {
    further f;
    if (neighbour < 0) {
        const int across = -neighbour - 1;
        f.normal = meanaxes(e).row(2);
        f.normal[across] = -f.normal[across];
        for (int k = 2; k < e.nodes; ++k) {
            vec3& place = f.corner[f.corners++];
            place = e.x[(edge + k) % e.nodes];
            place[across] = 2 * e.x[edge][across] - place[across];
        }
        return f;
    }
    const elementdef& there = m.elements[std::size_t(neighbour)];
    f.normal = normalof(m, there);
    for (int k = 0; k < factsof(there.type).nodes; ++k) {
        const int n = there.node[k];
        if (n == e.node[edge] || n == e.node[(edge + 1) % e.nodes] || f.corners == 2) continue;
        f.corner[f.corners++] = placeof(m, there, k);
    }
    return f;
}

// From the normal at one side of an edge and that at the other, which may point the other way.
static bool folded(const vec3& normal, const vec3& outward, vec3 other, double& fold) {
    if (!continues(normal, other)) return false;
    if (other.dot(normal) < 0) other = -other;
    fold = other.dot(outward) / (1 + other.dot(normal));
    return true;
}

// Sets the folds; a neighbour beyond a sharp one is none. False: one is missing.
static bool foldall(const model& m, const element& e, edgeneighbours& neighbours, edgefold& fold) {
    const vec3 normal = meanaxes(e).row(2);
    bool whole = true;
    for (int k = 0; k < e.nodes; ++k) {
        int& neighbour = neighbours[std::size_t(k)];
        const vec3 along = e.x[(k + 1) % e.nodes] - e.x[k];
        if (neighbour != 0 && !folded(normal, along.cross(normal).stableNormalized(),
                                      beyond(m, e, k, neighbour).normal, fold.fold[k]))
            neighbour = 0;
        whole &= neighbour != 0;
    }
    return whole;
}

// Turned about the edge into the element's plane, with the height of the surface there, in model
// axes. So far as an arc has gone on over the edge when its chord has turned by an angle, it has
// left the plane by twice the tangent of half the angle: no small angles are taken for granted,
// since folds of coarse rings are none.
static vec3 unrolled(const element& e, int edge, const vec3& normal, const vec3& far) {
    const vec3 along = (e.x[(edge + 1) % e.nodes] - e.x[edge]).normalized();
    const vec3 outward = along.cross(normal).normalized(), over = outward.cross(along);
    const vec3 arm = far - e.x[edge];
    const double out = arm.dot(outward), up = arm.dot(over), size = std::hypot(out, up);
    return e.x[edge] + arm.dot(along) * along + size * outward +
           2 * up * size / (size + out) * over;
}

// --- curvature ----------------------------------------------------------------------------------

static mat2 tensor(const double* xxyyxy) {
    mat2 t;
    t << xxyyxy[0], xxyyxy[2], xxyyxy[2], xxyyxy[1];
    return t;
}

// In model axes.
static mat3 curvatureof(const model& m, const settings& s, int e) {
    const mat3 axes = meanaxes(elementat(m, s, e));
    return axes.topRows<2>().transpose() * curvatureof(m.fold[std::size_t(e)]) * axes.topRows<2>();
}

// The paraboloid through the corners that comes nearest to those beyond the edges. What they leave
// open, at the ends of the surface, is as little curved beside the guess as can be. Worked out over
// the middle lines, in which no element is slender.
static void fitsurface(const model& m, const element& e, const edgeneighbours& neighbours,
                       const mat3& guess, edgefold& fold) {
    const int unknowns = 6, most = 3 * mostnodes + 3;
    Eigen::Matrix<double, most, unknowns> rows = Eigen::Matrix<double, most, unknowns>::Zero();
    Eigen::Matrix<double, most, 1> heights = Eigen::Matrix<double, most, 1>::Zero();
    const flatshape s = flatten(e, meanaxes(e));
    const mat2 lines = jacobianof(s, shapesat(e.nodes, {0, 0})), back = lines.inverse();
    const mat2 guessed = s.axes.topRows<2>() * guess * s.axes.topRows<2>().transpose();
    const vec3 middle = middleof(e), normal = s.axes.row(2);
    int count = 0;
    const auto meet = [&](const vec3& at, double weight) {
        const vec3 local = s.axes * (at - middle);
        const vec2 flat = local.head<2>(), p = back.transpose() * flat;
        rows.row(count) << 1, p.x(), p.y(), -p.x() * p.x() / 2, -p.y() * p.y() / 2, -p.x() * p.y();
        rows.row(count) *= weight;
        heights[count++] = weight * (local.z() + flat.dot(guessed * flat) / 2);
    };
    for (int k = 0; k < e.nodes; ++k) meet(e.x[k], 100);  // as good as exactly
    for (int k = 0; k < e.nodes; ++k) {
        if (neighbours[std::size_t(k)] == 0) continue;
        const further next = beyond(m, e, k, neighbours[std::size_t(k)]);
        for (int i = 0; i < next.corners; ++i) meet(unrolled(e, k, normal, next.corner[i]), 1);
    }
    mat3 curvature;  // by columns xx, yy and root 2 xy of a unit of the last unknowns
    for (int k = 0; k < 3; ++k) {
        const mat2 unit = back * tensor(vec3::Unit(k).eval().data()) * back.transpose();
        curvature.col(k) << unit(0, 0), unit(1, 1), std::sqrt(2.0) * unit(0, 1);
    }
    const bool whole = std::count(neighbours.begin(), neighbours.begin() + e.nodes, 0) == 0;
    const double little = whole ? 1e-4 : 1e-3;  // of what the heights weigh
    const double width = flatarea(s) / *std::max_element(s.edge, s.edge + e.nodes);
    rows.block<3, 3>(count, 3) = little * width * width * curvature;
    const Eigen::Matrix<double, unknowns, 1> found = rows.householderQr().solve(heights);
    const vec2 slope = back * found.segment<2>(1);
    const mat2 bend = guessed + back * tensor(found.data() + 3) * back.transpose();
    std::copy_n(slope.data(), 2, fold.slope);
    fold.bend[0] = bend(0, 0), fold.bend[1] = bend(1, 1), fold.bend[2] = bend(0, 1);
}

// --- all elements -------------------------------------------------------------------------------

// Mean over the neighbours whose curvature is known; they may be wound the other way. False: none
// is.
static bool guessed(const model& m, const settings& s, const elementdef& e,
                    const edgeneighbours& neighbours, const std::vector<char>& known, mat3& guess) {
    const vec3 normal = normalof(m, e);
    int count = 0;
    guess.setZero();
    for (const int n : neighbours) {
        if (n <= 0 || known[std::size_t(n)] == 0) continue;
        vec3 other = normalof(m, m.elements[std::size_t(n)]);
        const double side = normal.dot(other) < 0 ? -1 : 1;
        other *= side;
        const mat3 turn = Eigen::Quaterniond::FromTwoVectors(other, normal).toRotationMatrix();
        guess += side * turn * curvatureof(m, s, n) * turn.transpose();
        ++count;
    }
    if (count > 0) guess /= count;
    return count > 0;
}

// Curvature at the ends of the surface, from inside outwards.
static void fitends(model& m, const settings& s, const std::vector<edgeneighbours>& neighbours,
                    std::vector<char>& known) {
    std::vector<int> open;
    for (int e = 1; e <= m.nelems(); ++e)
        if (isshell(m.elements[std::size_t(e)].type) && known[std::size_t(e)] == 0)
            open.push_back(e);
    const int sweeps = 3;
    for (int sweep = 1; sweep <= sweeps && !open.empty(); ++sweep) {
        std::vector<int> fitted, left;
        for (const int e : open) {
            const elementdef& def = m.elements[std::size_t(e)];
            const edgeneighbours& around = neighbours[std::size_t(e)];
            mat3 guess;
            const bool useful = guessed(m, s, def, around, known, guess) || sweep == sweeps;
            if (useful) fitsurface(m, elementat(m, s, e), around, guess, m.fold[std::size_t(e)]);
            (useful ? fitted : left).push_back(e);
        }
        for (const int e : fitted) known[std::size_t(e)] = 1;
        open = left;
    }
}

void measurefolds(model& m, const settings& s, std::vector<edgeneighbours> neighbours) {
    m.fold.assign(m.elements.size(), edgefold{});
    std::vector<char> known(m.elements.size(), 0);
    parallelpieces(m.nelems(), 4096, [&](int first, int last, int) {
        for (int number = first + 1; number <= last; ++number) {
            const auto e = std::size_t(number);
            if (!isshell(m.elements[e].type)) continue;
            const element here = elementat(m, s, number);
            if (!foldall(m, here, neighbours[e], m.fold[e])) continue;
            fitsurface(m, here, neighbours[e], mat3::Zero(), m.fold[e]);
            known[e] = 1;
        }
    });
    fitends(m, s, neighbours, known);
}
