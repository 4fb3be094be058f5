// SPDX-License-Identifier: GPL-3.0-or-later
// Shells against the problems on which published elements are compared. Sources by their letters:
// docs/verification.md.
#include <cmath>
#include <tuple>

#include "tests/solver/verify.h"

using grid = build::grid;

static void row(const char* source, const std::string& what, const std::string& mesh,
                double printed, double truth, double value, double tolerance) {
    prove({"shell", what, mesh, source, printed, truth, value, tolerance});
}

// Widening of the edge of a long cylinder under a ring load: a beam on an elastic foundation, with
// shear. w = exp(-a x) (w0 cos b x + w1 sin b x); no moment at the edge, shear force 1.
static double edgeunderring(double rigidity, double shear, double foundation) {
    const double half = foundation / (2 * shear), size = std::sqrt(foundation / rigidity);
    const double a = std::sqrt((size + half) / 2), b = std::sqrt((size - half) / 2);
    const double w1 = -half / (2 * a * b);  // over w0
    const double first = -a + b * w1;
    const double third = -a * a * a + 3 * a * b * b + (3 * a * a * b - b * b * b) * w1;
    return 1 / (rigidity * (third - 2 * half * first));
}

TEST(Verification, CylinderUnderARingLoad) {
    const double modulus = 2e5, poisson = 0.3, radius = 10, thickness = 0.1, length = 10;
    const double truth =
        edgeunderring(modulus * std::pow(thickness, 3) / (12 * (1 - poisson * poisson)),
                      5.0 / 6 * modulus / (2 * (1 + poisson)) * thickness,
                      modulus * thickness / (radius * radius));
    for (const int type : {typeshell4, typeshell3}) {
        std::vector<double> values;
        for (const auto [n, tolerance] : meshes{{16, 0.1}, {32, 0.03}, {64, 0.01}}) {
            build b;
            const int nx = n / 2;
            const grid at =
                b.mesh(type, b.plate(modulus, poisson, thickness), nx, n,
                       [&](double r, double s) { return around(radius, right * r, length * s); });
            b.fix(at.left(), {2, 4, 6}), b.fix(at.right(), {1, 5, 6}), b.fix(at.top(), clamped);
            for (int i = 0; i <= nx; ++i) {
                const double push = radius * right / nx * (i == 0 || i == nx ? 0.5 : 1);
                b.load(1, at.number(i, 0), 1, push * std::cos(right * i / nx));
                b.load(1, at.number(i, 0), 2, push * std::sin(right * i / nx));
            }
            const double widened = moved(solvebalanced(b), 1, at.number(0, 0), 1);
            values.push_back(widened);
            row("closed", "Cylinder under a ring load at its edge", meshname(type, nx, n), 0, truth,
                widened, tolerance);
        }
        provequadratic(values, truth);
    }
}

// A long cylinder: a ring of n flat pieces widens by p R^2 / E t times cos of half the angle
// between them, everywhere alike.
TEST(Verification, CylinderUnderPressure) {
    const double modulus = 2e5, radius = 1000, thickness = 1, pressure = 0.06;
    using mesh = std::tuple<int, int, int>;
    for (const auto& [type, nx, ny] :
         {mesh(typeshell4, 2, 2), mesh(typeshell4, 8, 2), mesh(typeshell4, 4, 4),
          mesh(typeshell4, 16, 16), mesh(typeshell3, 2, 2), mesh(typeshell3, 8, 2),
          mesh(typeshell3, 4, 4), mesh(typeshell3, 16, 16)}) {
        build b;
        const grid at =
            b.mesh(type, b.plate(modulus, 0.3, thickness), nx, ny,
                   [&](double r, double s) { return around(radius, right * r, radius * s); });
        b.fix(at.left(), {2, 4, 6}), b.fix(at.right(), {1, 5, 6}), b.fix(at.bottom(), {3});
        b.pressall(1, 3, pressure);
        const results r = solvebalanced(b);
        const double truth =
            pressure * radius * radius / (modulus * thickness) * std::cos(right / nx / 2);
        for (int n = at.firstnode; n <= at.number(nx, ny); ++n)
            EXPECT_NEAR(moved(r, 1, n, 1) * b.m.nodes[std::size_t(n)].x() +
                            moved(r, 1, n, 2) * b.m.nodes[std::size_t(n)].y(),
                        truth * radius, 1e-3 * truth * radius)
                << n;
        row("closed", "Cylinder under pressure, free edge", meshname(type, nx, ny), 0, truth,
            moved(r, 1, at.number(0, ny), 1), 1e-3);
    }
}

// T L / (G J) of a bar 6 x 0.2 x 0.1 with J = 0.2287 b t^3 (Roark, table 10.1)
static const double twistedtip = 0.03411;

TEST(Verification, StraightBeamOfShells) {
    const char* const shapes[] = {"rectangles", "trapezoids", "parallelograms"};
    const char* const loads[] = {"stretched", "bent in its plane", "bent across its plane",
                                 "twisted"};
    const double printed[] = {3e-5, 0.1081, 0.4321, 0.03208};
    const double truth[] = {3e-5, 0.1081, 0.4321, twistedtip};
    const double quads[] = {0.01, 0.015, 0.03, 0.02}, bentflat[] = {0.06, 0.03, 0.27};
    for (const int type : {typeshell4, typeshell3})
        for (int shape = 0; shape < 3; ++shape) {
            const double triangles[] = {0.01, bentflat[shape], 0.03, 0.02};
            build b;
            const grid at = b.mesh(type, b.plate(1e7, 0.3, 0.1), 6, 1, [&](double r, double s) {
                const int i = int(std::lround(6 * r)), side = s > 0.5 ? 1 : -1;
                const bool moves = shape > 0 && i > 0 && i < 6;
                const double shift = 0.1 * side * (shape == 1 && i % 2 ? -1 : 1);
                return vec3(6 * r + (moves ? shift : 0), 0.2 * s, 0);
            });
            b.addcase(), b.addcase(), b.addcase();
            b.fix(at.left(), clamped);
            for (int lc = 1; lc <= 3; ++lc) b.spread(lc, at.right(), lc, 1);
            const int low = at.number(6, 0), high = at.number(6, 1);
            b.load(4, low, 3, -1 / 0.2), b.load(4, high, 3, 1 / 0.2);
            const results r = solvebalanced(b);
            for (int k = 0; k < 4; ++k) {
                const int lc = k + 1, way = std::min(lc, 3);
                const double a = moved(r, lc, low, way), c = moved(r, lc, high, way);
                row("MH", std::string("Straight beam, ") + loads[k],
                    meshname(type, 6, 1) + " " + shapes[shape], printed[k], truth[k],
                    k == 3 ? (c - a) / 0.2 : (a + c) / 2,
                    (type == typeshell4 ? quads : triangles)[k]);
            }
        }
}

// A bar 0.2 x 0.1 in torsion as a plate: the shear near its edges is a matter of the mesh across.
TEST(Verification, TwistedBarOfShells) {
    for (const int type : {typeshell4, typeshell3})
        for (const auto [ny, tolerance] : meshes{{2, 0.01}, {4, 0.01}, {8, 0.01}}) {
            build b;
            const int nx = 6 * ny;
            const grid at = b.mesh(type, b.plate(1e7, 0.3, 0.1), nx, ny,
                                   [](double r, double s) { return vec3(6 * r, 0.2 * s, 0); });
            b.fix(at.left(), clamped);
            const int low = at.number(nx, 0), high = at.number(nx, ny);
            b.load(1, low, 3, -1 / 0.2);
            b.load(1, high, 3, 1 / 0.2);
            const results r = solvebalanced(b);
            row("MH", "Straight beam, twisted", meshname(type, nx, ny), 0.03208, twistedtip,
                (moved(r, 1, high, 3) - moved(r, 1, low, 3)) / 0.2,
                type == typeshell4 ? tolerance : 0.015 * ny);
        }
}

// Deflection at the middle of the tip of a thick cantilever of triangles, 4 wide, whose diagonals
// change at 2; or of a half of it.
static double cantilevertip(bool half) {
    build b;
    const grid at =
        b.mesh(typeshell3, b.plate(1e7, 0.3, 1), 6, half ? 2 : 4,
               [&](double r, double s) { return vec3(6 * r, half ? 2 * s : 4 * s, 0); });
    for (int e = 24; e < 48 && !half; e += 2) {
        elementdef* const pair = &b.m.elements[std::size_t(at.firstelement + e)];
        pair[0].node[2] = pair[1].node[2], pair[1].node[0] = pair[0].node[1];
    }
    b.fix(at.left(), clamped);
    if (half) b.fix(at.top(), {2, 4, 6});
    b.load(1, at.number(6, 0), 3, 1);
    if (!half) b.load(1, at.number(6, 4), 3, 1);
    return moved(b.solve(), 1, at.number(6, 2), 3);
}

// Where a plate ends it twists more easily, but not in a plane of symmetry.
TEST(Shells, TrianglesAreNotFreeInAPlaneOfSymmetry) {
    EXPECT_NEAR(cantilevertip(true) / cantilevertip(false), 1, 1e-8);
}

TEST(Verification, CurvedBeamOfShells) {
    for (const int type : {typeshell4, typeshell3})
        for (const auto [n, tolerance] : meshes{{6, 0.06}, {12, 0.03}, {24, 0.02}}) {
            build b;
            const int ny = n / 6;
            const grid at = b.mesh(type, b.plate(1e7, 0.25, 0.1), n, ny, [](double r, double s) {
                return around(4.12 + 0.2 * s, right * (1 - r), 0);
            });
            b.addcase();
            b.fix(at.left(), clamped);
            b.spread(1, at.right(), 1, 1), b.spread(2, at.right(), 3, 1);
            const results r = solvebalanced(b);
            const int tip = at.number(n, 0);
            const std::string mesh = meshname(type, n, ny);
            row("MH", "Curved beam, load in its plane", mesh, 0.08734, 0.08852, moved(r, 1, tip, 1),
                type == typeshell4 ? 0.02 : 0.04);
            row("MH", "Curved beam, load across its plane", mesh, 0.5022, 0.4983,
                moved(r, 2, tip, 3), type == typeshell4 ? tolerance : 0.05);
        }
}

TEST(Verification, TwistedBeam) {
    for (const int type : {typeshell4, typeshell3})
        for (const bool thin : {false, true})
            for (const int k : {1, 2, 4}) {
                build b;
                const int nx = 12 * k, ny = 2 * k, g = b.plate(29e6, 0.22, thin ? 0.0032 : 0.32);
                const grid at = b.mesh(type, g, nx, ny, [](double r, double s) {
                    const double a = right * r, y = 1.1 * (s - 0.5);
                    return vec3(12 * r, y * std::cos(a), y * std::sin(a));
                });
                b.addcase();
                b.fix(at.left(), clamped);
                b.spread(1, at.right(), 3, thin ? 1e-6 : 1);
                b.spread(2, at.right(), 2, thin ? 1e-6 : 1);
                const results r = solvebalanced(b);
                const int tip = at.number(nx, ny / 2);
                const std::string name = thin ? "Twisted beam, thin, load " : "Twisted beam, load ";
                const std::string mesh = meshname(type, nx, ny);
                row("MH, BW", name + "along the tip's width", mesh, 0, thin ? 0.005256 : 0.005424,
                    moved(r, 1, tip, 3), type == typeshell3 && k == 1 ? 0.2 : 0.02);
                row("MH, BW", name + "across it", mesh, 0, thin ? 0.001294 : 0.001754,
                    moved(r, 2, tip, 2), 0.02);
            }
}

TEST(Verification, HookOfRaasch) {
    const double turn = M_PI / 3;  // of the first arc, radius 14; the second turns 150 degrees
    for (const int type : {typeshell4, typeshell3})
        for (const auto [k, tolerance] : meshes{{2, 0.05}, {4, 0.02}, {8, 0.02}}) {
            build b;
            const int first = 3 * k, nx = 9 * k, ny = 2 * k, g = b.plate(3300, 0.35, 2);
            const grid at = b.mesh(type, g, nx, ny, [&](double r, double s) {
                const double i = std::round(r * nx), a = turn * std::min(i / first, 1.0);
                vec3 x(14 * std::sin(a), 14 * (1 - std::cos(a)), 20 * s);
                const double c = 5 * M_PI / 6 * std::max(i - first, 0.0) / (nx - first);
                x.head<2>() += 46 * (std::sin(c) * vec2(std::cos(turn), std::sin(turn)) +
                                     (1 - std::cos(c)) * vec2(std::sin(turn), -std::cos(turn)));
                return x;
            });
            b.fix(at.left(), clamped);
            b.spread(1, at.right(), 3, 1);
            row("K", "Raasch's hook, tip", meshname(type, nx, ny), 4.9352, 5.02,
                moved(solvebalanced(b), 1, at.number(nx, ny / 2), 3),
                type == typeshell4 ? tolerance : 0.02);
        }
}

// --- curved shells ------------------------------------------------------------------------------

TEST(Verification, RoofOfScordelisAndLo) {
    for (const int type : {typeshell4, typeshell3})
        for (const auto [n, tolerance] : meshes{{4, 0.05}, {8, 0.02}, {16, 0.012}}) {
            build b;
            b.s.mass = b.s.force = 1;
            const int g = b.plate(4.32e8, 0, 0.25, 90 / 0.25);
            const grid at = b.mesh(type, g, n, n, [](double r, double s) {
                const double a = 40 * M_PI / 180 * s;
                return vec3(25 * std::sin(a), 25 * r, 25 * std::cos(a));
            });
            b.fix(at.left(), {1, 3});
            b.fix(at.right(), {2, 4, 6});
            b.fix(at.bottom(), {1, 5, 6});
            b.onlycase(caseaccz, {-1, 0, 0, 0, 1});
            row("MH", "Scordelis-Lo roof, middle of the free edge", meshname(type, n, n), 0.3024,
                0.3006, -moved(solvebalanced(b), 1, at.number(n, n), 3), tolerance);
        }
}

// A quarter of the hemisphere of radius 10 with a hole at 18 degrees from the pole under two pairs
// of forces: displacement under one of them.
static double hemisphereunderload(int type, double thickness, int nx, int ny) {
    build b;
    const grid at = b.mesh(type, b.plate(6.825e7, 0.3, thickness), nx, ny, [](double r, double s) {
        const double h = 72 * M_PI / 180 * s;
        return around(10 * std::cos(h), right * r, 10 * std::sin(h));
    });
    b.fix(at.left(), {2, 4, 6});
    b.fix(at.right(), {1, 5, 6});
    b.fix(at.number(0, ny), {3});
    b.load(1, at.number(0, 0), 1, 1);
    b.load(1, at.number(nx, 0), 2, -1);
    return moved(solvebalanced(b), 1, at.number(0, 0), 1);
}

TEST(Verification, HemisphereWithHole) {
    const meshes quads = {{4, 0.01}, {8, 0.01}, {16, 0.01}, {32, 0.01}};
    const meshes triangles = {{4, 0.5}, {8, 0.06}, {16, 0.012}, {32, 0.012}};
    for (const int type : {typeshell4, typeshell3})
        for (const auto [n, tolerance] : type == typeshell4 ? quads : triangles)
            row("MH", "Hemisphere with an 18 degree hole, under the load", meshname(type, n, n),
                0.094, 0.0935, hemisphereunderload(type, 0.04, n, n), tolerance);
}

// A sphere does not bend where that changes its Gauss curvature, in coarse meshes as in fine ones.
TEST(Shells, CoarseSpheresBendAsFineOnes) {
    for (const double thickness : {0.04, 0.01}) {
        const double fine = hemisphereunderload(typeshell4, thickness, 32, 32);
        for (const auto& [nx, ny] : {std::pair(4, 4), {5, 5}, {6, 4}, {4, 6}, {6, 6}})
            EXPECT_NEAR(hemisphereunderload(typeshell4, thickness, nx, ny) / fine, 1, 0.03)
                << thickness << ' ' << nx << ' ' << ny;
    }
}

// Meshes whose lines sway, so that every quadrilateral is warped and no triangle has a right angle.
TEST(Verification, SwayingMeshes) {
    const auto sway = [](double r, double s) {
        const double x = 0.08 * std::sin(M_PI * r) * std::sin(2 * M_PI * s);
        return vec2(r + x, s - 0.08 * std::sin(2 * M_PI * r) * std::sin(M_PI * s));
    };
    for (const int type : {typeshell4, typeshell3})
        for (const auto [n, quads] : meshes{{8, 0.035}, {16, 0.012}}) {
            const double tolerance = type == typeshell4 ? quads : 2 * quads;
            build roof, ball;
            roof.s.mass = roof.s.force = 1;
            const grid at = roof.mesh(
                type, roof.plate(4.32e8, 0, 0.25, 90 / 0.25), n, n, [&](double r, double s) {
                    const vec2 p = sway(r, s);
                    const double a = 40 * M_PI / 180 * p.y();
                    return vec3(25 * std::sin(a), 25 * p.x(), 25 * std::cos(a));
                });
            roof.fix(at.left(), {1, 3}), roof.fix(at.right(), {2, 4, 6});
            roof.fix(at.bottom(), {1, 5, 6});
            roof.onlycase(caseaccz, {-1, 0, 0, 0, 1});
            row("MH", "Scordelis-Lo roof, swaying mesh", meshname(type, n, n), 0.3024, 0.3006,
                -moved(solvebalanced(roof), 1, at.number(n, n), 3), tolerance);
            ball.mesh(type, ball.plate(6.825e7, 0.3, 0.04), n, n, [&](double r, double s) {
                const vec2 p = sway(r, s);
                const double h = 72 * M_PI / 180 * p.y();
                return around(10 * std::cos(h), right * p.x(), 10 * std::sin(h));
            });
            ball.fix(at.left(), {2, 4, 6}), ball.fix(at.right(), {1, 5, 6});
            ball.fix(at.number(0, n), {3});
            ball.load(1, at.number(0, 0), 1, 1), ball.load(1, at.number(n, 0), 2, -1);
            row("MH", "Hemisphere with an 18 degree hole, swaying mesh", meshname(type, n, n),
                0.094, 0.0935, moved(solvebalanced(ball), 1, at.number(0, 0), 1), tolerance);
        }
}

// Saddle z = x x - y y over a square of side 1 under its weight, clamped along one edge: bending
// alone, without stretch.
TEST(Verification, ClampedSaddle) {
    for (const int type : {typeshell4, typeshell3})
        for (const auto [n, tolerance] : meshes{{8, 0.1}, {16, 0.05}, {32, 0.02}}) {
            build b;
            const grid at =
                b.mesh(type, b.plate(2e11, 0.3, 0.001), 2 * n, n, [](double r, double s) {
                    const double x = r - 0.5, y = s / 2;
                    return vec3(x, y, x * x - y * y);
                });
            b.fix(at.left(), clamped), b.fix(at.bottom(), {2, 4, 6});
            for (int e = 1; e <= b.m.nelems(); ++e) {
                const element el = elementat(b.m, b.s, e);
                for (int k = 1; k <= 3; ++k) b.press(1, e, k, -8 * plateaxes(el)(k - 1, 2));
            }
            row("BI", "Clamped saddle under its weight, tip", meshname(type, 2 * n, n), 0,
                6.3941e-3, -moved(solvebalanced(b), 1, at.number(2 * n, 0), 3), tolerance);
        }
}

TEST(Verification, PinchedCylinder) {
    for (const int type : {typeshell4, typeshell3})
        for (const auto [n, tolerance] : meshes{{8, 0.12}, {16, 0.03}, {32, 0.02}}) {
            build b;
            const grid at = b.mesh(type, b.plate(3e6, 0.3, 3), n, n, [](double r, double s) {
                return vec3(300 * std::sin(right * s), 300 * r, 300 * std::cos(right * s));
            });
            b.fix(at.left(), {2, 4, 6});
            b.fix(at.right(), {1, 3});
            b.fix(at.bottom(), {1, 5, 6});
            b.fix(at.top(), {3, 4, 5});
            b.load(1, at.number(0, 0), 3, -0.25);
            row("BS", "Pinched cylinder with diaphragms, under the load", meshname(type, n, n), 0,
                1.8248e-5, -moved(solvebalanced(b), 1, at.number(0, 0), 3), tolerance);
        }
}

// Bends without stretch far more than with it, and nothing holds its ends.
TEST(Verification, PinchedCylinderWithFreeEnds) {
    const double radius = 4.953, half = 10.35 / 2, force = 100;
    for (const int type : {typeshell4, typeshell3})
        for (const auto [n, tolerance] : meshes{{4, 0.03}, {8, 0.01}, {16, 0.005}}) {
            build b;
            const int around = 3 * n / 2;
            const grid at =
                b.mesh(type, b.plate(10.5e6, 0.3125, 0.094), n, around, [&](double r, double s) {
                    return vec3(radius * std::sin(right * s), half * r,
                                radius * std::cos(right * s));
                });
            b.fix(at.left(), {2, 4, 6});
            b.fix(at.bottom(), {1, 5, 6});
            b.fix(at.top(), {3, 4, 5});
            b.load(1, at.number(0, 0), 3, -force / 4);
            row("Li", "Pinched cylinder with free ends, under the load", meshname(type, n, around),
                0.1139, 0.1139, -moved(solvebalanced(b), 1, at.number(0, 0), 3), tolerance);
        }
}

// --- NAFEMS -------------------------------------------------------------------------------------

// Quarter of an elliptic plate with an elliptic hole under outward pressure at its outer edge.
TEST(Verification, EllipticMembraneLE1) {
    for (const int type : {typememb4, typeshell4, typeshell3})
        for (const auto [n, tolerance] : meshes{{6, 0.15}, {12, 0.05}, {24, 0.025}}) {
            build b;
            b.m.twod = true;
            const grid at = b.mesh(type, b.plate(210e3, 0.3, 0.1), n, n, [&](double r, double s) {
                return vec3((2 + 1.25 * r) * std::cos(right * s),
                            (1 + 1.75 * r) * std::sin(right * s), 0);
            });
            b.fix(at.bottom(), {2, 6}), b.fix(at.top(), {1, 6});
            for (int j = 0; j < n; ++j) {  // 10 MPa on each straight piece of the outer edge
                const int p = at.number(n, j), q = at.number(n, j + 1);
                const vec3 side = b.m.nodes[std::size_t(q)] - b.m.nodes[std::size_t(p)];
                for (const int node : {p, q}) {
                    b.load(1, node, 1, 0.1 * 10 * side.y() / 2);
                    b.load(1, node, 2, -0.1 * 10 * side.x() / 2);
                }
            }
            const results r = solvebalanced(b);
            prove({"membrane", "LE1 elliptic membrane, stress y at D", meshname(type, n, n), "N", 0,
                   92.7, meanat(b, r, at.number(0, 0), 1),
                   tolerance * (type == typeshell3 ? 3 : 1)});
        }
}

// Stress along the arc at the outer face, in the middle of a piece of cylinder.
TEST(Verification, CylinderPatchLE2) {
    for (const auto& [type, n] :
         {std::pair(typeshell4, 4), {typeshell4, 8}, {typeshell3, 4}, {typeshell3, 8}}) {
        build b;
        const grid at = b.mesh(type, b.plate(210e9, 0.3, 0.01), n, n,
                               [](double r, double s) { return around(1, M_PI / 6 * r, 0.5 * s); });
        b.fix(at.left(), clamped), b.fix(at.bottom(), {3, 4, 5}), b.fix(at.top(), {3, 4, 5});
        b.addcase();
        b.spread(1, at.right(), 6, 500);
        b.pressall(2, 3, 0.6e6);
        b.spread(2, at.right(), 1, -300e3 * std::sin(M_PI / 6));
        b.spread(2, at.right(), 2, 300e3 * std::cos(M_PI / 6));
        const results r = solvebalanced(b);
        const int middle = (n / 2 * n + n / 2) * (type == typeshell3 ? 2 : 1);  // element
        for (int lc = 1; lc <= 2; ++lc) {
            const double* const s = r.plates.of(lc, r.plates.first[std::size_t(middle)]);
            row("N", std::string("LE2 cylindrical patch, ") + (lc == 1 ? "moment" : "pressure"),
                meshname(type, n, n), 0, 60e6, s[0] + s[3], 0.01);
        }
    }
}

// Hemisphere under two pairs of forces; a square drawn out to a circle, laid on the sphere.
TEST(Verification, HemisphereLE3) {
    using mesh = std::tuple<int, int, double>;
    for (const auto& [type, n, tolerance] :
         {mesh(typeshell4, 8, 0.06), mesh(typeshell4, 16, 0.02), mesh(typeshell3, 8, 0.06),
          mesh(typeshell3, 16, 0.02)}) {
        build b;
        const grid at = b.mesh(type, b.plate(68.25e9, 0.3, 0.04), n, n, [](double r, double s) {
            const double far = std::max(r, s), near = std::min(r, s);
            const double turn = far > 0 ? M_PI / 4 * near / far : 0;
            const vec3 circle = r >= s ? around(far, turn, 0) : around(far, right - turn, 0);
            const vec3 flat = far * circle + (1 - far) * vec3(r, s, 0) * 0.8;
            const double rise = right * flat.norm();
            return vec3(
                10 * (std::sin(rise) * flat.stableNormalized() + std::cos(rise) * vec3(0, 0, 1)));
        });
        b.fix(at.bottom(), {2, 4, 6}), b.fix(at.left(), {1, 5, 6}), b.fix(at.number(0, 0), {3});
        b.load(1, at.number(n, 0), 1, 2000), b.load(1, at.number(0, n), 2, -2000);
        row("N", "LE3 hemisphere, under the force", meshname(type, n, n), 0, 0.185,
            moved(solvebalanced(b), 1, at.number(n, 0), 1), tolerance);
    }
}

// Z section under a torque of 1.2 MNm: flanges 1 m, web 2 m, 10 m long, 0.1 m thick.
TEST(Verification, SectionLE5) {
    for (const auto& [type, k] : {std::pair(typeshell4, 1),
                                  {typeshell4, 2},
                                  {typeshell4, 4},
                                  {typeshell3, 1},
                                  {typeshell3, 2},
                                  {typeshell3, 4}}) {
        build b;
        const int nx = 8 * k, ny = 4 * k, g = b.plate(210e3, 0.3, 0.1);
        const grid at = b.mesh(type, g, nx, ny, [](double r, double s) {
            const double along = 4 * s;  // round the section: flange 1, web 2, flange 1
            const double y = along < 1 ? along - 1 : along < 3 ? 0 : along - 3;
            return vec3(10 * r, y, along < 1 ? -1 : along < 3 ? along - 2 : 1);
        });
        b.fix(at.left(), clamped);
        // 0.6 MN along each flange's edge, in opposite directions, 2 m apart
        const std::vector<int> tip = at.right();
        b.spread(1, {tip.begin(), tip.begin() + k + 1}, 2, -0.6);
        b.spread(1, {tip.end() - k - 1, tip.end()}, 2, 0.6);
        const results r = solvebalanced(b);
        row("N", "LE5 Z section, stress x at A", meshname(type, nx, ny), 108, 110.9,
            std::fabs(meanat(b, r, at.number(nx / 4, 0), 0)),
            type == typeshell4 ? 0.02
            : k == 1           ? 0.05
                               : 0.025);
    }
}
