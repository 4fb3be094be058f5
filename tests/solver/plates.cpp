// SPDX-License-Identifier: GPL-3.0-or-later
// Plates, thin and thick, against series solutions and published benchmarks. Sources by their
// letters: docs/verification.md.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/solver/verify.h"

using grid = build::grid;

enum class edges { supported, clamped };

// Supports of a quarter of a rectangular plate, planes of symmetry at r = 0 and s = 0.
static void holdquarter(build& b, const grid& at, edges kind) {
    for (int i = 0; i <= at.nx; ++i) {
        b.fix(at.number(i, 0), {2, 4});
        b.fix(at.number(i, at.ny), {3, 5});
        if (kind == edges::clamped) b.fix(at.number(i, at.ny), {4});
    }
    for (int j = 0; j <= at.ny; ++j) {
        b.fix(at.number(0, j), {1, 5});
        b.fix(at.number(at.nx, j), {3, 4});
        if (kind == edges::clamped) b.fix(at.number(at.nx, j), {5});
    }
}

// Quarter of a plate 2 x 2 or 2 x 10, thickness 0.0001, even load and load in the middle.
TEST(Verification, ThinRectangularPlates) {
    const struct {
        edges kind;
        double side;
        double printed[2], truth[2];  // even load, load in the middle
    } rows[] = {{edges::supported, 1, {4.062, 11.60}, {4.062, 11.60}},
                {edges::supported, 5, {12.97, 16.96}, {12.97, 16.96}},
                {edges::clamped, 1, {1.26, 5.60}, {1.2653, 5.612}},
                {edges::clamped, 5, {2.56, 7.23}, {2.604, 7.23}}};
    for (const auto& row : rows)
        for (const int type : {typeplate4, typeplate3, typeshell4})
            for (const int n : {4, 8, 16}) {
                if (type == typeshell4 && n != 8) continue;
                build b;
                const int g = b.plate(1.7472e7, 0.3, 1e-4);
                const grid at = b.mesh(
                    type, g, n, n, [&](double r, double s) { return vec3(r, row.side * s, 0); });
                holdquarter(b, at, row.kind);
                b.addcase();
                for (int e = 1; e <= b.m.nelems(); ++e) b.press(1, e, 3, 1e-4);
                b.load(2, at.number(0, 0), 3, 1e-4);
                const results r = b.solve();
                provebalance(r);
                const std::string name =
                    std::string(row.kind == edges::clamped ? "Clamped" : "Supported") +
                    (row.side == 1 ? " plate 1 : 1, " : " plate 1 : 5, ");
                const bool quad = type != typeplate3, fine = n == 16;
                // Elements five times as long as wide feel a point load late.
                const double even = quad ? 0.005 : n == 4 ? 0.09 : 0.02;
                const double point = row.side == 1 ? (quad ? (n == 4 ? 0.012 : 0.003) : 0.02)
                                                   : (fine     ? 0.012
                                                      : n == 8 ? 0.04
                                                               : 0.1);
                prove({"plate", name + "even load", meshname(type, n, n), "MH", row.printed[0],
                       row.truth[0], moved(r, 1, at.number(0, 0), 3), even});
                prove({"plate", name + "load in the middle", meshname(type, n, n), "MH",
                       row.printed[1], row.truth[1], moved(r, 2, at.number(0, 0), 3), point});
            }
}

// w D / q a^4 of square plates with shear, supported edges held against tilting along them.
TEST(Verification, ThickSquarePlates) {
    const struct {
        edges kind;
        double thickness, truth;
    } rows[] = {{edges::supported, 0.1, 0.0042728},
                {edges::supported, 0.2, 0.0049043},
                {edges::clamped, 0.1, 0.0015045},
                {edges::clamped, 0.2, 0.0021723}};
    for (const auto& row : rows)
        for (const int type : {typeplate4, typeplate3})
            for (const int n : {4, 8, 16}) {
                build b;
                const int g = b.plate(10.92, 0.3, row.thickness);
                const grid at =
                    b.mesh(type, g, n, n, [](double r, double s) { return vec3(r / 2, s / 2, 0); });
                holdquarter(b, at, row.kind);
                const double load = std::pow(row.thickness, 3);  // the rigidity D
                for (int e = 1; e <= b.m.nelems(); ++e) b.press(1, e, 3, load);
                const results r = b.solve();
                provebalance(r);
                const std::string name = row.kind == edges::clamped ? "Clamped" : "Supported";
                prove({"plate",
                       name + " thick plate, t / a = 0." + (row.thickness < 0.15 ? "1" : "2") + "",
                       meshname(type, n, n), "L", 0, row.truth, moved(r, 1, at.number(0, 0), 3),
                       type == typeplate4 ? 0.004
                       : n == 4           ? 0.04
                                          : 0.01});
            }
}

// Pressure that grows from nothing at one edge: half the deflection of the even load in the middle,
// and the moments there (Timoshenko and Woinowsky-Krieger, table 13).
TEST(Verification, SupportedPlateUnderWaterPressure) {
    for (const int n : {8, 16}) {
        build b;
        const int g = b.plate(10.92e6, 0.3, 0.01);
        const grid at =
            b.mesh(typeplate4, g, n, n, [](double r, double s) { return vec3(r, s, 0); });
        for (int i = 0; i <= n; ++i) {
            b.fix(at.number(i, 0), {3, 5}), b.fix(at.number(i, n), {3, 5});
            b.fix(at.number(0, i), {3, 4}), b.fix(at.number(n, i), {3, 4});
        }
        for (int e = 1; e <= b.m.nelems(); ++e)
            b.press(1, e, 3, middleof(elementat(b.m, b.s, e)).x());
        const results r = b.solve();
        provebalance(r);
        const int middle = at.number(n / 2, n / 2);
        prove({"plate", "Supported plate, water pressure, deflection", meshname(typeplate4, n, n),
               "T", 0.00203, 0.0020312, moved(r, 1, middle, 3), 0.003});
        double moment = 0;
        for (std::size_t i = 0; i < r.plates.elements.size(); ++i) {
            const elementdef& def = b.m.elements[std::size_t(r.plates.elements[i])];
            for (int c = 0; c < 4; ++c)
                if (def.node[c] == middle)
                    moment += r.plates.of(1, r.plates.first[i] + c)[3] / 4 * 0.01 * 0.01 / 6;
        }
        prove({"plate", "Supported plate, water pressure, moment", meshname(typeplate4, n, n), "T",
               0.0239, 0.02395, moment, 0.02});
    }
}
