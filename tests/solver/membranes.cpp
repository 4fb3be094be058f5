// SPDX-License-Identifier: GPL-3.0-or-later
// Membranes: bending in the plane, Cook's panel, plane strain.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/solver/verify.h"

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
