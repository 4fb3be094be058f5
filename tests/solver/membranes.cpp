// SPDX-License-Identifier: GPL-3.0-or-later
// Membranes: patch tests, bending in the plane, Cook's panel, plane strain.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/solver/verify.h"

namespace {
// Square of side 1 in any plane, cut into five distorted quadrilaterals round four inner nodes:
// MacNeal and Harder, A proposed standard set of problems to test finite element accuracy, Finite
// Elements in Analysis and Design 1, 1985, figure 1 (0.24 x 0.12).
struct patch {
    build b;
    mat3 axes;
    double width = 0.24, height = 0.12;
};
}  // namespace

static patch makepatch(int type, int doftype, const mat3& axes) {
    patch p;
    p.axes = axes;
    const int g = p.b.plate(1e6, 0.25, 0.001);
    const double at[8][2] = {{0, 0},       {0.24, 0},    {0.24, 0.12}, {0, 0.12},
                             {0.04, 0.02}, {0.18, 0.03}, {0.16, 0.08}, {0.08, 0.08}};
    for (const auto& xy : at) {
        const vec3 x = axes.transpose() * vec3(xy[0], xy[1], 0);
        p.b.node(x.x(), x.y(), x.z());
    }
    const int quads[5][4] = {{1, 2, 6, 5}, {2, 3, 7, 6}, {3, 4, 8, 7}, {4, 1, 5, 8}, {5, 6, 7, 8}};
    for (const auto& q : quads) {
        if (kindof(type).nodes == 4) {
            p.b.element(type, g, {q[0], q[1], q[2], q[3]});
        } else {
            p.b.element(type, g, {q[0], q[1], q[2]});
            p.b.element(type, g, {q[0], q[2], q[3]});
        }
    }
    p.b.m.twod = doftype == 1;
    return p;
}

// Displacements that strain the patch evenly are prescribed at its edge; inside everything must
// follow, and every element has the same stress.
TEST(Membrane, PatchTestIsExactInAnyPlane) {
    mat3 tilted;
    tilted.row(0) = vec3(2, 1, 2) / 3;
    tilted.row(1) = vec3(-2, 2, 1) / 3;
    tilted.row(2) = vec3(-1, -2, 2) / 3;
    const mat3 flat = mat3::Identity();
    for (const int type : {typememb3, typememb4})
        for (const bool space : {false, true}) {
            patch p = makepatch(type, space ? 2 : 1, space ? tilted : flat);
            const double exx = 1e-3, eyy = 1.5e-3, gxy = 1e-3;
            const auto field = [&](int n) {
                const vec3 x = p.axes * p.b.m.nodes[std::size_t(n)];
                const vec3 u(exx * x.x() + gxy / 2 * x.y(), eyy * x.y() + gxy / 2 * x.x(), 0);
                return vec3(p.axes.transpose() * u);
            };
            for (int n = 1; n <= 4; ++n)
                for (int dof = 1; dof <= 3; ++dof) p.b.fix(n, {dof}, field(n)[dof - 1]);
            const results r = p.b.solve();
            for (int n = 5; n <= 8; ++n)
                for (int dof = 1; dof <= (space ? 3 : 2); ++dof)
                    EXPECT_NEAR(moved(r, 1, n, dof), field(n)[dof - 1], 1e-9 * 1e-3);
            const double e = 1e6 / (1 - 0.0625);
            const double wanted[3] = {e * (exx + 0.25 * eyy), e * (eyy + 0.25 * exx),
                                      1e6 / 2.5 * gxy};
            for (std::size_t i = 0; i < r.plates.elements.size(); ++i) {
                const element el = elementat(p.b.m, p.b.s, r.plates.elements[i]);
                for (int c = r.plates.first[i]; c < r.plates.first[i + 1]; ++c) {
                    double record[recordvalues];
                    globalrecord(el, stressaxes(el), r.plates.of(1, c), record);
                    mat3 stress;
                    stress << record[0], record[3], record[4], record[3], record[1], record[5],
                        record[4], record[5], record[2];
                    stress = p.axes * stress * p.axes.transpose();
                    EXPECT_NEAR(stress(0, 0), wanted[0], 1e-9 * 2e3);
                    EXPECT_NEAR(stress(1, 1), wanted[1], 1e-9 * 2e3);
                    EXPECT_NEAR(stress(0, 1), wanted[2], 1e-9 * 2e3);
                    EXPECT_NEAR(stress.row(2).norm(), 0, 1e-9 * 2e3);
                }
            }
        }
}

// A strip of rectangles bends exactly, however long they are: end moment M gives the slope M L / E
// I.
TEST(Membrane, RectanglesOfAnyShapeBendExactlyInTheirPlane) {
    for (const int count : {1, 3, 20}) {
        build b;
        b.m.twod = true;
        const double length = 10, depth = 1, thickness = 0.1, modulus = 1e7;
        const int g = b.plate(modulus, 0.3, thickness);
        const auto grid = b.mesh(typememb4, g, count, 1, [&](double r, double s) {
            return vec3(length * r, depth * s, 0);
        });
        b.fix(grid.number(0, 0), {1, 2});
        b.fix(grid.number(0, 1), {1});
        b.load(1, grid.number(count, 0), 1, 100);
        b.load(1, grid.number(count, 1), 1, -100);
        const results r = b.solve();
        const double curvature = 100 * depth / (modulus * thickness * depth * depth * depth / 12);
        const double turn =
            (moved(r, 1, grid.number(count, 0), 1) - moved(r, 1, grid.number(count, 1), 1)) / depth;
        EXPECT_NEAR(turn, curvature * length, 1e-9 * curvature * length);
        EXPECT_NEAR(r.plates.of(1, 0)[0], modulus * curvature * depth / 2, 1e-6);
        EXPECT_LT(imbalance(r, 1), 1e-9);
    }
}

// Cook's tapered panel, E 1, Poisson 1/3, shear 1 along the right edge.
TEST(Verification, CooksPanel) {
    const struct {
        int type;
        double coarse, fine;  // error that 4 x 4 and 16 x 16 may have
    } rows[] = {{typememb4, 0.04, 0.004},
                {typeshell4, 0.025, 0.004},
                {typeshell3, 0.13, 0.025},
                {typememb3, 0.55, 0.11}};
    for (const auto& row : rows)
        for (const int n : {4, 8, 16}) {
            build b;
            const int g = b.plate(1, 1.0 / 3, 1);
            b.m.twod = true;
            const auto grid = b.mesh(row.type, g, n, n, [](double r, double s) {
                const double low = 44 * r, high = 44 + 16 * r;
                return vec3(48 * r, low + (high - low) * s, 0);
            });
            for (int j = 0; j <= n; ++j) {
                b.fix(grid.number(0, j), {1, 2, 6});
                b.load(1, grid.number(n, j), 2, (j == 0 || j == n ? 0.5 : 1.0) / n);
            }
            const results r = b.solve();
            provebalance(r);
            prove({"membrane", "Cook's panel, middle of the loaded edge",
                   std::string(kindof(row.type).name) + " " + std::to_string(n) + " x " +
                       std::to_string(n),
                   "C", 23.96, 23.965, moved(r, 1, grid.number(n, n / 2), 2),
                   n == 4   ? row.coarse
                   : n == 8 ? (row.coarse + row.fine) / 2
                            : row.fine});
        }
}

// A block that cannot widen: s_z = nu (s_x + s_y), modulus E (1-nu) / ((1+nu)(1-2nu)).
TEST(Membrane, PlaneStrainHoldsTheThirdDirection) {
    for (const int type : {typememb3, typememb4}) {
        build b;
        b.m.twod = true;
        const int g = b.plate(1000, 0.3, 2);
        b.m.groups[std::size_t(g)].field[fieldplane] = 1;
        const auto grid = b.mesh(type, g, 1, 1, [](double r, double s) { return vec3(r, s, 0); });
        for (int n = grid.firstnode; n < grid.firstnode + 4; ++n) b.fix(n, {2});
        for (int j = 0; j < 2; ++j) {
            b.fix(grid.number(0, j), {1});
            b.fix(grid.number(1, j), {1}, 0.01);
        }
        const results r = b.solve();
        const element e = elementat(b.m, b.s, 1);
        double record[recordvalues];
        globalrecord(e, stressaxes(e), r.plates.of(1, 0), record);
        const double x = 0.01 * 1000 * 0.7 / (1.3 * 0.4);
        EXPECT_NEAR(record[0], x, 1e-9 * x);
        EXPECT_NEAR(record[1], x * 0.3 / 0.7, 1e-9 * x);
        EXPECT_NEAR(record[2], 0.3 * (x + x * 0.3 / 0.7), 1e-9 * x);
    }
}
