// SPDX-License-Identifier: GPL-3.0-or-later
// Shells against the problems on which published elements are compared. Sources by their letters:
// docs/verification.md.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/solver/verify.h"

using grid = build::grid;

static const double right = M_PI / 2;
static const std::initializer_list<int> clamp = {1, 2, 3, 4, 5, 6};

// Share of a load of 1 that is even along an edge of n elements.
static double edgeshare(int i, int n) {
    return (i == 0 || i == n ? 0.5 : 1.0) / n;
}

// --- beams of shells ----------------------------------------------------------------------------

TEST(Verification, StraightBeamOfShells) {
    const char* const shapes[] = {"rectangles", "trapezoids", "parallelograms"};
    for (int shape = 0; shape < 3; ++shape) {
        build b;
        const int g = b.plate(1e7, 0.3, 0.1);
        const grid at = b.mesh(typeshell4, g, 6, 1, [&](double r, double s) {
            const int i = int(std::lround(6 * r)), side = s > 0.5 ? 1 : -1;
            const bool inside = i > 0 && i < 6;
            const double shift = shape == 0   ? 0
                                 : shape == 1 ? (i % 2 ? -0.1 : 0.1) * side
                                              : 0.1 * side;
            return vec3(6 * r + (inside ? shift : 0), 0.2 * s, 0);
        });
        b.addcase(), b.addcase();
        for (int j = 0; j < 2; ++j) {
            b.fix(at.number(0, j), clamp);
            for (int lc = 1; lc <= 3; ++lc) b.load(lc, at.number(6, j), lc, 0.5);
        }
        const results r = b.solve();
        provebalance(r);
        const char* const loads[] = {"stretched", "bent in its plane", "bent across its plane"};
        const double wanted[] = {3e-5, 0.1081, 0.4321};
        for (int lc = 1; lc <= 3; ++lc)
            prove({"shell", std::string("Straight beam, ") + loads[lc - 1],
                   meshname(typeshell4, 6, 1) + " " + shapes[shape], "MH", 0, wanted[lc - 1],
                   (moved(r, lc, at.number(6, 0), lc) + moved(r, lc, at.number(6, 1), lc)) / 2,
                   0.03});
    }
}

// A bar 0.2 x 0.1 in torsion as a plate: the shear near its edges is a matter of the mesh across.
TEST(Verification, TwistedBarOfShells) {
    for (const int ny : {1, 4, 8}) {
        build b;
        const int nx = 6 * ny, g = b.plate(1e7, 0.3, 0.1);
        const grid at = b.mesh(typeshell4, g, nx, ny,
                               [](double r, double s) { return vec3(6 * r, 0.2 * s, 0); });
        for (int j = 0; j <= ny; ++j) b.fix(at.number(0, j), clamp);
        const int low = at.number(nx, 0), high = at.number(nx, ny);
        b.load(1, low, 3, -1 / 0.2);
        b.load(1, high, 3, 1 / 0.2);
        const results r = b.solve();
        provebalance(r);
        // T L / (G J) with J = 0.2287 b t^3 (Roark, table 10.1)
        prove({"shell", "Straight beam, twisted", meshname(typeshell4, nx, ny), "MH", 0.03208,
               0.03411, (moved(r, 1, high, 3) - moved(r, 1, low, 3)) / 0.2,
               ny == 1   ? 0.4
               : ny == 4 ? 0.07
                         : 0.03});
    }
}

TEST(Verification, CurvedBeamOfShells) {
    for (const int n : {6, 12, 24}) {
        build b;
        const int ny = n / 6, g = b.plate(1e7, 0.25, 0.1);
        const grid at = b.mesh(typeshell4, g, n, ny, [](double r, double s) {
            const double radius = 4.12 + 0.2 * s, a = right * (1 - r);
            return vec3(radius * std::cos(a), radius * std::sin(a), 0);
        });
        b.addcase();
        for (int j = 0; j <= ny; ++j) {
            b.fix(at.number(0, j), clamp);
            b.load(1, at.number(n, j), 1, edgeshare(j, ny));
            b.load(2, at.number(n, j), 3, edgeshare(j, ny));
        }
        const results r = b.solve();
        provebalance(r);
        const int tip = at.number(n, 0);
        prove({"shell", "Curved beam, load in its plane", meshname(typeshell4, n, ny), "MH",
               0.08734, 0.08852, moved(r, 1, tip, 1), 0.02});
        prove({"shell", "Curved beam, load across its plane", meshname(typeshell4, n, ny), "MH",
               0.5022, 0.4983, moved(r, 2, tip, 3),
               n == 6    ? 0.2
               : n == 12 ? 0.1
                         : 0.05});
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
                const double load = thin ? 1e-6 : 1;
                for (int j = 0; j <= ny; ++j) {
                    b.fix(at.number(0, j), clamp);
                    b.load(1, at.number(nx, j), 3, load * edgeshare(j, ny));
                    b.load(2, at.number(nx, j), 2, load * edgeshare(j, ny));
                }
                const results r = b.solve();
                provebalance(r);
                const int tip = at.number(nx, ny / 2);
                const std::string name = thin ? "Twisted beam, thin, load " : "Twisted beam, load ";
                const bool coarse = type == typeshell3 && k == 1;
                prove({"shell", name + "along the tip's width", meshname(type, nx, ny), "MH, BW", 0,
                       thin ? 0.005256 : 0.005424, moved(r, 1, tip, 3), coarse ? 0.2 : 0.02});
                prove({"shell", name + "across it", meshname(type, nx, ny), "MH, BW", 0,
                       thin ? 0.001294 : 0.001754, moved(r, 2, tip, 2), 0.02});
            }
}

TEST(Verification, HookOfRaasch) {
    const double turn = M_PI / 3;  // of the first arc, radius 14; the second turns 150 degrees
    for (const int k : {2, 4, 8}) {
        build b;
        const int first = 3 * k, nx = 9 * k, ny = 2 * k, g = b.plate(3300, 0.35, 2);
        const grid at = b.mesh(typeshell4, g, nx, ny, [&](double r, double s) {
            const double i = std::round(r * nx), a = turn * std::min(i / first, 1.0);
            vec3 x(14 * std::sin(a), 14 * (1 - std::cos(a)), 20 * s);
            const double c = 5 * M_PI / 6 * std::max(i - first, 0.0) / (nx - first);
            x.head<2>() += 46 * (std::sin(c) * vec2(std::cos(turn), std::sin(turn)) +
                                 (1 - std::cos(c)) * vec2(std::sin(turn), -std::cos(turn)));
            return x;
        });
        for (int j = 0; j <= ny; ++j) {
            b.fix(at.number(0, j), clamp);
            b.load(1, at.number(nx, j), 3, edgeshare(j, ny));
        }
        const results r = b.solve();
        provebalance(r);
        prove({"shell", "Raasch's hook, tip", meshname(typeshell4, nx, ny), "K", 4.9352, 5.02,
               moved(r, 1, at.number(nx, ny / 2), 3), k == 2 ? 0.05 : 0.02});
    }
}

// --- curved shells ------------------------------------------------------------------------------

TEST(Verification, RoofOfScordelisAndLo) {
    for (const int type : {typeshell4, typeshell3})
        for (const int n : {4, 8, 16}) {
            build b;
            b.s.mass = b.s.force = 1;
            const int g = b.plate(4.32e8, 0, 0.25, 90 / 0.25);
            const grid at = b.mesh(type, g, n, n, [](double r, double s) {
                const double a = 40 * M_PI / 180 * s;
                return vec3(25 * std::sin(a), 25 * r, 25 * std::cos(a));
            });
            for (int i = 0; i <= n; ++i) {
                b.fix(at.number(0, i), {1, 3});
                b.fix(at.number(n, i), {2, 4, 6});
                b.fix(at.number(i, 0), {1, 5, 6});
            }
            b.m.cases[1].type = 3;  // weight: acceleration along z
            b.m.cases[1].par[0] = -1;
            const results r = b.solve();
            provebalance(r);
            prove({"shell", "Scordelis-Lo roof, middle of the free edge", meshname(type, n, n),
                   "MH", 0.3024, 0.3006, -moved(r, 1, at.number(n, n), 3),
                   n > 4                ? 0.012
                   : type == typeshell4 ? 0.02
                                        : 0.05});
        }
}

TEST(Verification, HemisphereWithHole) {
    for (const int type : {typeshell4, typeshell3})
        for (const int n : {4, 8, 16, 32}) {
            build b;
            const int g = b.plate(6.825e7, 0.3, 0.04);
            const grid at = b.mesh(type, g, n, n, [](double r, double s) {
                const double a = right * r, h = 72 * M_PI / 180 * s;
                return vec3(10 * std::cos(h) * std::cos(a), 10 * std::cos(h) * std::sin(a),
                            10 * std::sin(h));
            });
            for (int i = 0; i <= n; ++i) {
                b.fix(at.number(0, i), {2, 4, 6});
                b.fix(at.number(n, i), {1, 5, 6});
            }
            b.fix(at.number(0, n), {3});
            b.load(1, at.number(0, 0), 1, 1);
            b.load(1, at.number(n, 0), 2, -1);
            const results r = b.solve();
            provebalance(r);
            const bool coarse = n == 4 || (type == typeshell3 && n == 8);
            prove({"shell", "Hemisphere with an 18 degree hole, under the load",
                   meshname(type, n, n), "MH", 0.094, 0.0935, moved(r, 1, at.number(0, 0), 1),
                   !coarse              ? 0.012
                   : type == typeshell4 ? 0.04
                   : n == 4             ? 0.5
                                        : 0.06});
        }
}

TEST(Verification, PinchedCylinder) {
    for (const int type : {typeshell4, typeshell3})
        for (const int n : {8, 16, 32}) {
            build b;
            const int g = b.plate(3e6, 0.3, 3);
            const grid at = b.mesh(type, g, n, n, [](double r, double s) {
                return vec3(300 * std::sin(right * s), 300 * r, 300 * std::cos(right * s));
            });
            for (int i = 0; i <= n; ++i) {
                b.fix(at.number(0, i), {2, 4, 6});
                b.fix(at.number(n, i), {1, 3});
                b.fix(at.number(i, 0), {1, 5, 6});
                b.fix(at.number(i, n), {3, 4, 5});
            }
            b.load(1, at.number(0, 0), 3, -0.25);
            const results r = b.solve();
            provebalance(r);
            prove({"shell", "Pinched cylinder with diaphragms, under the load",
                   meshname(type, n, n), "BS", 0, 1.8248e-5, -moved(r, 1, at.number(0, 0), 3),
                   n == 8    ? 0.12
                   : n == 16 ? 0.03
                             : 0.02});
        }
}

// --- NAFEMS -------------------------------------------------------------------------------------

// Largest stress of a corner over the elements that share node n, mean of them: value by index.
static double meanat(const build& b, const results& r, int n, int value) {
    double sum = 0;
    int count = 0;
    for (std::size_t i = 0; i < r.plates.elements.size(); ++i) {
        const element e = elementat(b.m, b.s, r.plates.elements[i]);
        for (int c = 0; c < e.nodes; ++c) {
            if (e.node[c] != n) continue;
            double record[recordvalues];
            globalrecord(e, stressaxes(e), r.plates.of(1, r.plates.first[i] + c), record);
            sum += record[value];
            ++count;
        }
    }
    return sum / count;
}

// Quarter of an elliptic plate with an elliptic hole under outward pressure at its outer edge.
TEST(Verification, EllipticMembraneLE1) {
    for (const int type : {typememb4, typeshell4, typeshell3})
        for (const int n : {6, 12, 24}) {
            build b;
            b.m.twod = true;
            const int g = b.plate(210e3, 0.3, 0.1);
            const auto ellipse = [](double a, double c, double at) {
                return vec3(a * std::cos(at), c * std::sin(at), 0);
            };
            const grid at = b.mesh(type, g, n, n, [&](double r, double s) {
                return vec3((1 - r) * ellipse(2, 1, right * s) +
                            r * ellipse(3.25, 2.75, right * s));
            });
            const bool rotations = type != typememb4;
            for (int i = 0; i <= n; ++i) {
                b.fix(at.number(i, 0), {2});
                b.fix(at.number(i, n), {1});
                if (rotations) b.fix(at.number(i, 0), {6}), b.fix(at.number(i, n), {6});
            }
            for (int j = 0; j < n; ++j) {  // 10 MPa on each straight piece of the outer edge
                const int p = at.number(n, j), q = at.number(n, j + 1);
                const vec3 side = b.m.nodes[std::size_t(q)] - b.m.nodes[std::size_t(p)];
                for (const int node : {p, q}) {
                    b.load(1, node, 1, 0.1 * 10 * side.y() / 2);
                    b.load(1, node, 2, -0.1 * 10 * side.x() / 2);
                }
            }
            const results r = b.solve();
            provebalance(r);
            prove({"membrane", "LE1 elliptic membrane, stress y at D", meshname(type, n, n), "N", 0,
                   92.7, meanat(b, r, at.number(0, 0), 1),
                   (type == typeshell3 ? 4 : 1) * (n == 6    ? 0.15
                                                   : n == 12 ? 0.05
                                                             : 0.025)});
        }
}

// Z section under a torque of 1.2 MNm: flanges 1 m, web 2 m, 10 m long, 0.1 m thick.
TEST(Verification, SectionLE5) {
    for (const int k : {1, 2, 4}) {
        build b;
        const int nx = 8 * k, ny = 4 * k, g = b.plate(210e3, 0.3, 0.1);
        const grid at = b.mesh(typeshell4, g, nx, ny, [](double r, double s) {
            const double along = 4 * s;  // round the section: flange 1, web 2, flange 1
            const double y = along < 1 ? along - 1 : along < 3 ? 0 : along - 3;
            return vec3(10 * r, y, along < 1 ? -1 : along < 3 ? along - 2 : 1);
        });
        for (int j = 0; j <= ny; ++j) b.fix(at.number(0, j), clamp);
        // 0.6 MN along each flange's edge, in opposite directions, 2 m apart
        for (int j = 0; j <= k; ++j) {
            b.load(1, at.number(nx, j), 2, -0.6 * edgeshare(j, k));
            b.load(1, at.number(nx, ny - j), 2, 0.6 * edgeshare(j, k));
        }
        const results r = b.solve();
        provebalance(r);
        prove({"shell", "LE5 Z section, stress x at A", meshname(typeshell4, nx, ny), "N", 108,
               110.9, std::fabs(meanat(b, r, at.number(nx / 4, 0), 0)), 0.02});
    }
}
