// SPDX-License-Identifier: GPL-3.0-or-later
// Random models turned, mirrored, renumbered and counted from another corner give the same results.
#include <gtest/gtest.h>

#include <Eigen/Geometry>
#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

#include "tests/solver/build.h"

namespace {
using generator = std::mt19937;

double between(generator& random, double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
}

// A bent sheet of distorted shells with bars, beams, a panel, springs, a mass and a rigid arm on
// it.
build randommodel(generator& random) {
    build b;
    const int shells = b.plate(2e5, 0.3, between(random, 0.5, 4), 8e-6);
    const int beams = b.group({{fieldmodulus, 2e5},
                               {fieldpoisson, 0.3},
                               {fielddensity, 8e-6},
                               {fieldthickness, 30},
                               {fieldixx, 200},
                               {fieldwxx, 40},
                               {fieldiyy, 200},  // as I xx: the section has no direction
                               {fieldwyy, 40},
                               {fieldizz, 300},
                               {fieldwzz, 50}});
    const int springs = b.group({});
    mat6 half = mat6::Random() * 20;
    b.m.groups[std::size_t(springs)].spring = half * half.transpose() + 100 * mat6::Identity();
    const int masses = b.group({{fielddensity, 2}});
    const int n = 4;
    const auto place = [&](double r, double s) -> vec3 {
        const vec3 shift(between(random, -2, 2), between(random, -2, 2), between(random, -1, 1));
        return vec3(60 * r, 50 * s, 20 * r * r - 10 * r * s + 4) + shift;
    };
    const auto quads = b.mesh(typeshell4, shells, n, n, place);
    for (int i = 0; i < n; i += 2) {  // a strip of triangles beside it
        const int p = quads.number(i, n), q = quads.number(i + 1, n), r = quads.number(i + 2, n);
        const int top = b.node(between(random, 10, 50), 65, between(random, 0, 9));
        b.element(typeshell3, shells, {q, r, top});
        b.element(typeshell3, shells, {p, q, top});
        b.element(typebeam, beams, {p, top});
    }
    for (int i = 0; i < n; ++i)
        b.element(typebeam, beams, {quads.number(i, 1), quads.number(i + 1, 1)});
    b.element(typepipe, beams, {quads.number(0, 3), quads.number(2, 2)});
    b.element(typetruss, beams, {quads.number(0, 0), quads.number(n, n)});
    b.element(typeshear4, shells,
              {quads.number(1, 1), quads.number(2, 1), quads.number(2, 2), quads.number(1, 2)});
    const int arm = b.node(70, 20, 40);
    b.element(typerigid, springs, {quads.number(n, 2), arm});
    b.element(typespring, springs, {arm});
    const vec3 corner = b.m.nodes[std::size_t(quads.number(n, 0))];
    const int twin = b.node(corner.x(), corner.y(), corner.z());
    b.element(typespring2, springs, {quads.number(n, 0), twin});
    b.element(typebeam, beams, {twin, quads.number(n, n)});
    b.element(typemass, masses, {quads.number(2, 3)});
    for (int j = 0; j <= n; j += 2) b.fix(quads.number(0, j), {1, 2, 3, 4, 5, 6});
    for (int dof = 1; dof <= 6; ++dof) b.load(1, arm, dof, between(random, -50, 50));
    for (int e = quads.firstelement; e < quads.firstelement + quads.elements; ++e)
        b.press(1, e, 3, between(random, 0, 0.1));
    b.addcase(3, {9.81, 0, 0, 0, 1});
    return b;
}

// turn: an orthogonal matrix; -1 of its determinant mirrors, which turns rotations and moments the
// other way and lets plates look to their other side.
build transformed(const build& b, const mat3& turn, const vec3& shift) {
    build t = b;
    const double side = turn.determinant() < 0 ? -1 : 1;
    for (int n = 1; n <= t.m.nnodes(); ++n)
        t.m.nodes[std::size_t(n)] = turn * t.m.nodes[std::size_t(n)] + shift;
    mat6 both = mat6::Zero();
    both.topLeftCorner<3, 3>() = turn;
    both.bottomRightCorner<3, 3>() = side * turn;
    for (groupdata& g : t.m.groups) g.spring = both * g.spring * both.transpose();
    loadcase& c = t.m.cases[1];
    for (std::size_t i = 0; i < c.nodal.size(); i += 6) {  // six rows a loaded node
        vec6 f;
        for (std::size_t k = 0; k < 6; ++k) f[Eigen::Index(k)] = c.nodal[i + k].value;
        f = both * f;
        for (std::size_t k = 0; k < 6; ++k) c.nodal[i + k].value = f[Eigen::Index(k)];
    }
    for (elementrow& row : c.element) row.value *= side;
    // the acceleration along z becomes one along each axis
    t.m.cases.resize(2);
    for (int k = 0; k < 3; ++k) {
        const double a = 9.81 * turn(k, 2);
        t.addcase(1 + k, {a, 0, 0, 0, 1});
    }
    return t;
}

std::vector<int> shuffled(int count, generator& random) {
    std::vector<int> order(std::size_t(count) + 1);
    std::iota(order.begin(), order.end(), 0);
    std::shuffle(order.begin() + 1, order.end(), random);
    return order;
}

// Elements' plates start at another corner, nodes and elements stand in another order.
build renumbered(const build& b, generator& random, std::vector<int>& node,
                 std::vector<int>& elem) {
    build t = b;
    node = shuffled(b.m.nnodes(), random);
    elem = shuffled(b.m.nelems(), random);
    for (int n = 1; n <= b.m.nnodes(); ++n)
        t.m.nodes[std::size_t(node[std::size_t(n)])] = b.m.nodes[std::size_t(n)];
    for (int e = 1; e <= b.m.nelems(); ++e) {
        elementdef def = b.m.elements[std::size_t(e)];
        const int count = kindof(def.type).nodes;
        for (int k = 0; k < count; ++k) def.node[k] = node[std::size_t(def.node[k])];
        if (kindof(def.type).fam == family::plate)
            std::rotate(def.node, def.node + random() % unsigned(count), def.node + count);
        t.m.elements[std::size_t(elem[std::size_t(e)])] = def;
    }
    for (nodalrow& row : t.m.constraints) row.node = node[std::size_t(row.node)];
    for (loadcase& c : t.m.cases) {
        for (nodalrow& row : c.nodal) row.node = node[std::size_t(row.node)];
        for (elementrow& row : c.element) row.element = elem[std::size_t(row.element)];
    }
    return t;
}

vec3 vectorof(const results& r, int lc, int n, int first) {
    return {moved(r, lc, n, first), moved(r, lc, n, first + 1), moved(r, lc, n, first + 2)};
}

double sizeofcase(const results& r, int lc, int nodes) {
    double size = 0;
    for (int n = 1; n <= nodes; ++n) size = std::max(size, vectorof(r, lc, n, 1).norm());
    return size;
}

// Mean of the squares of the stress over the corners, of plates and of line ends: no axes in it.
double stresssize(const results& r, int lc) {
    double sum = 0;
    for (std::size_t i = 0; i < r.plates.elements.size(); ++i) {
        for (int c = r.plates.first[i]; c < r.plates.first[i + 1]; ++c) {
            const double* const s = r.plates.of(lc, c);
            for (int half = 0; half < 6; half += 3)
                sum +=
                    s[half] * s[half] + s[half + 1] * s[half + 1] + 2 * s[half + 2] * s[half + 2];
        }
    }
    for (std::size_t i = 0; i < r.lines.elements.size(); ++i)
        for (int k = 0; k < 2 * linevalues; ++k) {
            const double value = r.lines.of(i, lc)[k];
            sum += value * value;
        }
    return sum;
}
}  // namespace

TEST(Invariance, TurnedAndMirroredModelsMoveAlong) {
    for (unsigned seed = 1; seed <= 6; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        generator random(seed);
        std::srand(seed);
        build b = randommodel(random);
        const results r = b.solve();
        EXPECT_LT(imbalance(r, 2), 1e-9);
        mat3 turn = Eigen::Quaterniond::UnitRandom().toRotationMatrix();
        if (seed % 2 == 0) turn.col(1) *= -1;
        build t = transformed(b, turn, {100, -300, 50});
        const results s = t.solve();
        const double side = turn.determinant() < 0 ? -1 : 1;
        const double size[3] = {0, sizeofcase(r, 1, b.m.nnodes()), sizeofcase(r, 2, b.m.nnodes())};
        for (int n = 1; n <= b.m.nnodes(); ++n)
            for (int lc = 1; lc <= 2; ++lc) {
                vec3 u = vectorof(s, lc, n, 1), w = vectorof(s, lc, n, 4);
                for (int k = 3; lc == 2 && k <= 4; ++k) {
                    u += vectorof(s, k, n, 1);
                    w += vectorof(s, k, n, 4);
                }
                EXPECT_LT((u - turn * vectorof(r, lc, n, 1)).norm(), 1e-8 * size[lc]);
                EXPECT_LT((w - side * turn * vectorof(r, lc, n, 4)).norm(), 1e-8 * size[lc]);
            }
        const double stress = stresssize(r, 1);
        EXPECT_NEAR(stresssize(s, 1), stress, 1e-7 * stress);
    }
}

TEST(Invariance, NumbersOfNodesElementsAndFirstCornersDoNotMatter) {
    for (unsigned seed = 11; seed <= 16; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        generator random(seed);
        std::srand(seed);
        build b = randommodel(random);
        b.m.cases[1].element.clear();  // e3 of a warped shell follows its first edge
        const results r = b.solve();
        std::vector<int> node, elem;
        build t = renumbered(b, random, node, elem);
        const results s = t.solve();
        for (int lc = 1; lc <= 2; ++lc) {
            const double size = sizeofcase(r, lc, b.m.nnodes());
            for (int n = 1; n <= b.m.nnodes(); ++n)
                for (const int first : {1, 4})
                    EXPECT_LT(
                        (vectorof(s, lc, node[std::size_t(n)], first) - vectorof(r, lc, n, first))
                            .norm(),
                        1e-8 * size);
            const double stress = stresssize(r, lc);
            EXPECT_NEAR(stresssize(s, lc), stress, 1e-7 * stress);
        }
    }
}

// The same plane model in 2-D and, held in its plane, in 3-D.
TEST(Invariance, PlaneModelsAreTheSameInTwoAndThreeDimensions) {
    for (const int type : {typememb4, typeshell4, typeshell3}) {
        results r[2];
        int tip = 0;
        for (const bool twod : {false, true}) {
            build b;
            b.m.twod = twod;
            const auto at = b.mesh(type, b.plate(1e4, 0.3, 1, 2), 5, 3, [](double x, double y) {
                return vec3(5 * x, (2 + x) * y + 0.1 * std::sin(9 * x + 5 * y), 0);
            });
            for (int j = 0; j <= 3; ++j) b.fix(at.number(0, j), {1, 2, 3, 4, 5, 6});
            for (int n = 1; n <= b.m.nnodes(); ++n)
                if (!twod && type != typememb4) b.fix(n, {3}), b.fix(n, {4, 5});
            tip = at.number(5, 3);
            b.load(1, tip, 1, 3), b.load(1, tip, 2, -2);
            if (type != typememb4) b.load(1, tip, 6, 1);
            b.press(1, at.firstelement, 1, 4), b.press(1, at.firstelement + 1, 2, 5);
            b.addcase(caseaccrz, {1000, 0, 1, 0, 1});
            r[twod] = b.solve();
        }
        for (int lc = 1; lc <= 2; ++lc)
            for (const int dof : {1, 2, 6})
                EXPECT_NEAR(moved(r[1], lc, tip, dof), moved(r[0], lc, tip, dof),
                            1e-9 * std::fabs(moved(r[0], lc, tip, 2)))
                    << kindof(type).name;
    }
}
