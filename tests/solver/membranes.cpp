// SPDX-License-Identifier: GPL-3.0-or-later
// Membranes: plane strain, Cook's panel, a ring.
#include <cmath>

#include "solver/results/records.h"
#include "tests/solver/verify.h"

using grid = build::grid;

// A block that cannot widen: s_z = nu (s_x + s_y), modulus E (1-nu) / ((1+nu)(1-2nu)).
TEST(Membrane, PlaneStrainHoldsTheThirdDirection) {
    for (const int type : {typememb3, typememb4}) {
        build b;
        b.m.twod = true;
        const int g = b.plate(1000, 0.3, 2);
        b.field(g, fieldplane) = 1;
        const grid at = b.mesh(type, g, 1, 1, [](double r, double s) { return vec3(r, s, 0); });
        b.fixall({2});
        b.fix(at.left(), {1});
        for (const int n : at.right()) b.fix(n, {1}, 0.01);
        const results r = b.solve();
        const element e = elementat(b.m, b.s, 1);
        double record[recordvalues], local[recordvalues];
        const mat3 axes = stressaxes(e);
        globalrecord(recordplaneof(e, axes), facestressof(e, axes, r.plates.of(1, 0)), record);
        localrecord(e, r.plates.of(1, 0), local);
        const double x = 0.01 * 1000 * 0.7 / (1.3 * 0.4);
        EXPECT_NEAR(record[0], x, 1e-9 * x);
        EXPECT_NEAR(record[1], x * 0.3 / 0.7, 1e-9 * x);
        EXPECT_NEAR(record[2], 0.3 * (x + x * 0.3 / 0.7), 1e-9 * x);
        EXPECT_NEAR(local[2], record[2], 1e-9 * x);
    }
}

// Cook's tapered panel, E 1, Poisson 1/3, shear 1 along the right edge.
TEST(Verification, CooksPanel) {
    const struct {
        int type;
        meshes sizes;
    } rows[] = {{typememb4, {{4, 0.04}, {8, 0.022}, {16, 0.004}}},
                {typeshell4, {{4, 0.025}, {8, 0.015}, {16, 0.004}}},
                {typeshell3, {{4, 0.1}, {8, 0.04}, {16, 0.015}}},
                {typememb3, {{4, 0.55}, {8, 0.33}, {16, 0.11}}}};
    for (const auto& [type, sizes] : rows)
        for (const auto [n, tolerance] : sizes) {
            build b;
            b.m.twod = true;
            const grid at = b.mesh(type, b.plate(1, 1.0 / 3, 1), n, n, [](double r, double s) {
                return vec3(48 * r, 44 * r + (44 - 28 * r) * s, 0);
            });
            b.fix(at.left(), {1, 2, 6});
            b.spread(1, at.right(), 2, 1);
            prove({"membrane", "Cook's panel, middle of the loaded edge", meshname(type, n, n), "C",
                   23.96, 23.965, moved(solvebalanced(b), 1, at.number(n, n / 2), 2), tolerance});
        }
}

// Membranes without rotations that pass the patch test cannot bend in trapezoids (MacNeal, A
// theorem regarding the locking of tapered four-noded membrane elements, IJNME 24, 1987).
TEST(Verification, StraightBeamOfMembranes) {
    const char* const shapes[] = {"rectangles", "trapezoids", "parallelograms"};
    for (const int type : {typememb4, typememb3})
        for (int shape = 0; shape < 3; ++shape) {
            const double quads[] = {0.01, 0.95, 0.37};
            build b;
            b.m.twod = true;
            const grid at = b.mesh(type, b.plate(1e7, 0.3, 0.1), 6, 1, [&](double r, double s) {
                const int i = int(std::lround(6 * r)), side = s > 0.5 ? 1 : -1;
                const bool moves = shape > 0 && i > 0 && i < 6;
                const double shift = 0.1 * side * (shape == 1 && i % 2 ? -1 : 1);
                return vec3(6 * r + (moves ? shift : 0), 0.2 * s, 0);
            });
            b.fix(at.left(), {1, 2});
            b.spread(1, at.right(), 2, 1);
            prove({"membrane", "Straight beam, bent in its plane",
                   meshname(type, 6, 1) + " " + shapes[shape], "MH", 0, 0.1081,
                   moved(solvebalanced(b), 1, at.number(6, 0), 2),
                   type == typememb4 ? quads[shape] : 0.99});
        }
}

// Webs of stiffeners are such strips: one element wide, pure bending, whatever Poisson's ratio.
TEST(Verification, StripBentInItsPlane) {
    for (const int type : {typememb4, typeshell4})
        for (const auto& [name, length] :
             {std::pair("5 : 1", 5.0), {"1 : 1", 1.0}, {"1 : 2", 0.5}, {"1 : 4", 0.25}}) {
            build b;
            b.m.twod = true;
            const double whole = 8 * length;
            const grid at = b.mesh(type, b.plate(1e4, 0.3, 1), 8, 1,
                                   [&](double r, double s) { return vec3(whole * r, s, 0); });
            b.fix(at.left(), {1}), b.fix(at.number(0, 0), {2});
            b.load(1, at.number(8, 0), 1, 1), b.load(1, at.number(8, 1), 1, -1);
            prove({"membrane", std::string("Strip of elements ") + name + ", bent in its plane",
                   meshname(type, 8, 1), "closed", 0, whole * whole / 2 * 12 / 1e4,
                   moved(solvebalanced(b), 1, at.number(8, 0), 2), 1e-6});
        }
}

// The mean at an edge's node where it bends evenly, of triangles that pair to rectangles.
TEST(Verification, StressOfTrianglesInBending) {
    for (const auto& [poisson, length, ny] :
         {std::tuple(0.1, 1.0, 1), {0.3, 1.0, 1}, {0.3, 3.0, 1}, {0.3, 1.0, 4}, {0.45, 1.0, 2}}) {
        build b;
        b.m.twod = true;
        const int nx = 10 * ny;
        const grid at = b.mesh(typeshell3, b.plate(1e4, poisson, 1), nx, ny,
                               [&](double r, double s) { return vec3(10 * length * r, s, 0); });
        b.fix(at.left(), {1, 6}), b.fix(at.number(0, 0), {2});
        const double width = 1.0 / ny;
        for (int j = 0; j < ny; ++j) {  // traction from -1 to 1
            const double low = 2 * width * j - 1, high = low + 2 * width;
            b.load(1, at.number(nx, j), 1, width * (2 * low + high) / 6);
            b.load(1, at.number(nx, j + 1), 1, width * (low + 2 * high) / 6);
        }
        char name[80];
        std::snprintf(name, sizeof name, "Strip of triangles %g : 1, nu %g, stress at its edge",
                      length, poisson);
        prove({"membrane", name, meshname(typeshell3, nx, ny), "closed", 0, -1,
               meanat(b, solvebalanced(b), at.number(nx / 2, 0), 0), 0.04});
    }
}

// Lame: ring of radii 1 and 2 in plane stress under pressure 1 from inside.
TEST(Verification, RingUnderPressureFromInside) {
    const double modulus = 1000, poisson = 0.3, inner = 1, outer = 2, right = M_PI / 2;
    const double truth = inner / modulus / (outer * outer - inner * inner) *
                         ((1 - poisson) * inner * inner + (1 + poisson) * outer * outer);
    for (const int type : {typememb3, typememb4, typeshell3, typeshell4}) {
        std::vector<double> values;
        for (const int n : {8, 16, 32}) {
            build b;
            b.m.twod = true;
            const grid at =
                b.mesh(type, b.plate(modulus, poisson, 0.5), n, n, [&](double r, double s) {
                    const double radius = inner + (outer - inner) * r;
                    return vec3(radius * std::cos(right * s), radius * std::sin(right * s), 0);
                });
            b.fix(at.bottom(), {2, 6}), b.fix(at.top(), {1, 6});
            for (int i = 0; i <= n; ++i) {
                const double push = 0.5 * inner * right / n * (i == 0 || i == n ? 0.5 : 1);
                b.load(1, at.number(0, i), 1, push * std::cos(right * i / n));
                b.load(1, at.number(0, i), 2, push * std::sin(right * i / n));
            }
            const double widened = moved(solvebalanced(b), 1, at.number(0, 0), 1);
            values.push_back(widened);
            prove({"membrane", "Ring under pressure from inside, inner radius",
                   meshname(type, n, n), "closed", 0, truth, widened,
                   (type == typememb3 || type == typeshell3 ? 3.5 : 0.6) / (n * n)});
        }
        provequadratic(values, truth);
    }
}

// Thick cylinder in plane strain, five rings of a quarter, all but incompressible. A shell is in
// plane stress by its nature and has no part in this.
TEST(Verification, ThickCylinder) {
    const double radii[] = {3, 3.5, 4.2, 5.2, 6.75, 9};
    const struct {
        double poisson, truth;
    } rows[] = {{0.49, 5.0399e-3}, {0.499, 5.0602e-3}, {0.4999, 5.0623e-3}};
    for (const auto& [poisson, truth] : rows) {
        build b;
        b.m.twod = true;
        const int g = b.plate(1000, poisson, 1), n = 9;
        b.field(g, fieldplane) = 1;
        const grid at = b.mesh(typememb4, g, 5, n, [&](double r, double s) {
            const double radius = radii[std::lround(5 * r)], angle = M_PI / 2 * s;
            return vec3(radius * std::cos(angle), radius * std::sin(angle), 0);
        });
        b.fix(at.bottom(), {2}), b.fix(at.top(), {1});
        for (int i = 0; i <= n; ++i) {
            const double angle = M_PI / 2 * i / n, half = i == 0 || i == n ? 0.5 : 1;
            const double push = half * 2 * 3 * std::tan(M_PI / 4 / n);
            b.load(1, at.number(0, i), 1, push * std::cos(angle));
            b.load(1, at.number(0, i), 2, push * std::sin(angle));
        }
        char name[80];
        std::snprintf(name, sizeof name, "Thick cylinder in plane strain, nu %g", poisson);
        prove({"membrane", name, meshname(typememb4, 5, n), "MH", 0, truth,
               moved(solvebalanced(b), 1, at.number(0, 0), 1), 0.02});
    }
}
