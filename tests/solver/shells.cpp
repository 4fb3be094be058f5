// SPDX-License-Identifier: GPL-3.0-or-later
// Shells against the problems on which published elements are compared. Sources by their letters:
// docs/verification.md.
#include <cmath>
#include <tuple>

#include "tests/solver/verify.h"

using grid = build::grid;

static const double right = M_PI / 2;

static vec3 around(double radius, double angle, double z) {
    return {radius * std::cos(angle), radius * std::sin(angle), z};
}

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

enum diagonals { oneway, otherway, crosswise, quadrilaterals, everyother };

// Cuts quadrilaterals in two, unless they stay, or every other of them does.
static void cut(build& b, diagonals way) {
    const std::vector<elementdef> quads(b.m.elements.begin() + 1, b.m.elements.end());
    b.m.elements.resize(1);
    for (std::size_t i = 0; i < quads.size(); ++i) {
        const int* const n = quads[i].node;
        const bool other = way == otherway || (way == crosswise && i % 2);
        const bool whole = way == quadrilaterals || (way == everyother && i % 3);
        b.quad(whole ? typeshell4 : typeshell3, 1,
               {n[other], n[1 + other], n[2 + other], n[(3 + other) % 4]});
    }
}

namespace {
// Largest bending, and what the membrane has more than its stress at any corner, over this stress:
// both 0 in truth. And what was said about it.
struct answer {
    double wrong;
    std::vector<std::string> said;
};
}  // namespace

// A part of a round shell between planes of symmetry under a pressure and what the cases hold.
static answer answered(build& b, diagonals way, double pressure, double stress) {
    cut(b, way);
    for (int n = 1; n <= b.m.nnodes(); ++n)
        for (int k = 0; k < 3; ++k) {
            if (b.m.nodes[std::size_t(n)][k] != 0) continue;
            b.fix(n, {k + 1, 4 + (k + 1) % 3, 4 + (k + 2) % 3});
        }
    b.pressall(1, 3, pressure);
    const results r = solvebalanced(b);
    double most = 0;
    for (int c = 0; c < r.plates.corners; ++c)
        for (int k = 0; k < 6; ++k)
            most = std::max(most, std::fabs(r.plates.of(1, c)[k]) - (k < 3 ? stress : 0));
    return {most / stress, b.log.warnings()};
}

// A quarter of a cylinder on lines that sway by this part of its size, R / t = 100, under a
// pressure that makes a stress of 50 around, or pulled along by as much.
static answer cylinder(int nx, int ny, double sway, diagonals way, bool pulled = false) {
    build b;
    const grid made = b.mesh(typeshell4, b.plate(2e5, 0.3, 1), nx, ny, [&](double r, double s) {
        const double x = sway * std::sin(2 * M_PI * r) * std::sin(2 * M_PI * s);
        vec3 at = around(100, right * (r + x), 100 * (s + x));
        if (r == 1) at.x() = 0;
        return at;
    });
    for (int i = 0; i <= nx && pulled; ++i)
        b.load(1, made.number(i, ny), 3, 50 * 100 * right / nx * (i % nx == 0 ? 0.5 : 1));
    if (pulled) b.fix(made.top(), {4, 5});
    return answered(b, way, pulled ? 0 : 0.5, 50);
}

// An eighth of a sphere of three squares drawn out, whose lines sway.
static answer sphere(int n, double sway, diagonals way) {
    build b;
    b.plate(2e5, 0.3, 1);
    std::vector<int> found;
    const auto node = [&](int k, int i, int j) {
        vec3 at;
        at[k] = 1, at[(k + 1) % 3] = std::tan(right / 2 * i / n);
        at[(k + 2) % 3] = std::tan(right / 2 * j / n);
        for (int c = 0; c < 3; ++c) at[c] *= 1 + sway * std::sin(5 * at.normalized()[(c + 1) % 3]);
        at *= 100 / at.norm();
        for (const int old : found)
            if ((b.m.nodes[std::size_t(old)] - at).norm() < 1e-6) return old;
        found.push_back(b.node(at));
        return found.back();
    };
    for (int k = 0; k < 3; ++k)
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j)
                b.element(
                    typeshell4, 1,
                    {node(k, i, j), node(k, i + 1, j), node(k, i + 1, j + 1), node(k, i, j + 1)});
    return answered(b, way, 1, 50);
}

TEST(Shells, MembraneHoldsAPressureOnCurvedSurfaces) {
    for (const diagonals way : {oneway, otherway, crosswise, quadrilaterals, everyother}) {
        SCOPED_TRACE(way);
        for (const auto& [nx, ny] : {std::pair(32, 1), {4, 2}, {8, 4}, {32, 16}})
            EXPECT_LT(cylinder(nx, ny, 0, way).wrong, way == everyother ? 0.03 : 0.01) << nx;
        EXPECT_LT(cylinder(8, 4, 0.05, way).wrong, 0.06);
        EXPECT_LT(cylinder(16, 8, 0.05, way).wrong, way == everyother ? 0.04 : 0.03);
        EXPECT_LT(cylinder(64, 32, 0.05, way).wrong, 0.04);  // neighbours follow rotations unlike
        for (const int n : {2, 4, 8}) EXPECT_LT(sphere(n, 0.1, way).wrong, 0.08) << n;
    }
}

// A quarter of a ring of one row of elements, as long as wide or ten times that, free at both ends:
// what holds the pressure shows nowhere but along it.
TEST(Shells, RingsOfOneRowWidenUnderPressure) {
    const double radius = 100, pressure = 0.1, modulus = 2e5;
    const int n = 16;
    for (const diagonals way : {oneway, otherway, crosswise, quadrilaterals})
        for (const double length : {10.0, 100.0})
            for (const double thickness : {1.0, 0.3}) {
                build b;
                const grid at = b.mesh(
                    typeshell4, b.plate(modulus, 0.3, thickness), n, 1,
                    [&](double r, double s) { return around(radius, right * r, length * s); });
                cut(b, way);
                b.fix(at.left(), {2, 4, 6}), b.fix(at.right(), {1, 5, 6}), b.fix(at.bottom(), {3});
                b.pressall(1, 3, pressure);
                const double truth =
                    pressure * radius * radius / (modulus * thickness) * std::cos(right / n / 2);
                EXPECT_NEAR(moved(solvebalanced(b), 1, at.number(0, 0), 1), truth, 0.01 * truth)
                    << way << ' ' << length << ' ' << thickness;
            }
}

// What a pressure of 1 on all elements sums up to.
static vec3 pressuresum(const build& b) {
    vec3 sum = vec3::Zero();
    for (int e = 1; e <= b.m.nelems(); ++e) {
        const elementdef& def = b.m.elements[std::size_t(e)];
        const int corners = factsof(def.type).nodes;
        const auto at = [&](int k) { return b.m.nodes[std::size_t(def.node[k % corners])]; };
        sum += (at(2) - at(0)).cross(at(3) - at(1)) / 2;
    }
    return sum;
}

// How far the free edge of a cone under pressure widens beside what its hoop stress there tells,
// p R / cos, and what was said. The curvature changes along the cone, and its last row bears on
// that alone.
static answer conewidened(int type, int degrees, int rows, int across, bool reversed = false) {
    const double angle = degrees * right / 90;
    const double modulus = 1e7, thickness = 0.1, wide = 10, narrow = 5;
    build b;
    const grid at =
        b.mesh(type, b.plate(modulus, 0.3, thickness), across, rows, [&](double r, double s) {
            return around(wide + (narrow - wide) * s, right * r,
                          s * (wide - narrow) / std::tan(angle));
        });
    if (reversed)
        for (elementdef& e : b.m.elements)
            std::reverse(e.node, e.node + (type == typeshell3 ? 3 : 4));
    b.fix(at.left(), {2, 4, 6}), b.fix(at.right(), {1, 5, 6});
    b.fix(at.bottom(), {1, 2, 3, 4, 5, 6});
    b.pressall(1, 3, reversed ? -1 : 1);
    const results r = solvebalanced(b);
    vec3 held = pressuresum(b) * (reversed ? -1 : 1);
    for (int n = 1; n <= b.m.nnodes(); ++n) held += reactedby(r, 1, n);
    EXPECT_LT(held.norm(), 1e-9 * wide * wide);
    double widened = 0;
    for (const int n : at.top()) {
        const vec3& place = b.m.nodes[std::size_t(n)];
        widened += movedby(r, 1, n).dot(vec3(place.x(), place.y(), 0)) / narrow;
    }
    const double truth = narrow * narrow / std::cos(angle) / (modulus * thickness);
    return {std::fabs(widened / double(at.top().size()) / truth - 1), b.log.warnings()};
}

TEST(Shells, ConesWidenAtAFreeEdge) {
    for (const int degrees : {15, 30, 45})
        for (const int rows : {6, 12})
            for (const bool reversed : {false, true}) {
                const answer found = conewidened(typeshell4, degrees, rows, 2 * rows / 3, reversed);
                EXPECT_LT(found.wrong, rows == 6 ? 0.025 : 0.01)
                    << degrees << " degrees, " << rows << " rows";
            }
}

// Rows of up to twelve times sqrt(R t): triangles bend on them by their true share alone.
TEST(Shells, ConesOfTrianglesWidenAtAFreeEdge) {
    for (const int degrees : {5, 15, 30, 45})
        for (const auto& [rows, across, tolerance] :
             {std::tuple(6, 24, 0.07), std::tuple(12, 24, 0.025), std::tuple(24, 16, 0.03)})
            for (const bool reversed : {false, true})
                EXPECT_LT(conewidened(typeshell3, degrees, rows, across, reversed).wrong, tolerance)
                    << degrees << " degrees, " << rows << " rows of " << across;
}

// The inner half of a thin torus, free at its top, where it is curved one way alone: it bends there
// on coarse meshes as on fine ones.
TEST(Shells, ATorusBendsAtItsTop) {
    double first = 0;
    for (const int rows : {36, 9, 12}) {
        build b;
        const int across = 2 * rows / 3;
        const grid at =
            b.mesh(typeshell3, b.plate(1e7, 0.3, 0.01), across, rows, [](double r, double s) {
                return around(10 - 4 * std::cos(1.8 * s), right * r, 4 * std::sin(1.8 * s));
            });
        b.fix(at.left(), {2, 4, 6}), b.fix(at.right(), {1, 5, 6});
        b.fix(at.bottom(), {1, 2, 3, 4, 5, 6});
        b.pressall(1, 3, 1);
        const double moved = movedby(solvebalanced(b), 1, at.number(0, rows)).x();
        if (first == 0) first = moved;
        EXPECT_NEAR(moved, first, 0.1 * std::fabs(first)) << rows << " rows";
    }
}

// A zone of a sphere and a hyperboloid, R / t about 1000, free at one end: their triangles bend
// there as quadrilaterals of half the size.
TEST(Shells, ThinShellsOfRevolutionBendAtAFreeEdge) {
    const auto radius = [](bool sphere, double s) {
        return sphere ? 10 * std::cos(s) : 6 * std::cosh(1.1 * s);
    };
    for (const bool sphere : {true, false}) {
        double first = 0;
        for (const auto& [type, nx, ny] :
             {std::tuple(typeshell4, 48, 72), std::tuple(typeshell3, 24, 36)}) {
            build b;
            const grid at = b.mesh(type, b.plate(1e7, 0.3, 0.01), nx, ny, [&](double r, double s) {
                return around(radius(sphere, s), right * r, sphere ? 10 * std::sin(s) : 8 * s);
            });
            b.fix(at.left(), {2, 4, 6}), b.fix(at.right(), {1, 5, 6}), b.fix(at.bottom(), clamped);
            b.pressall(1, 3, 1);
            const results r = solvebalanced(b);
            double widened = 0;
            for (const int n : at.top())
                widened += movedby(r, 1, n).head<2>().dot(b.m.nodes[std::size_t(n)].head<2>()) /
                           double(nx + 1);
            if (first == 0) first = widened;
            EXPECT_NEAR(widened, first, 0.08 * std::fabs(first)) << sphere;
        }
    }
}

// Triangles on long rows of a cone of few flats bend where it does not.
TEST(Shells, ConesOfTrianglesAreToldWhereTheyBendFalsely) {
    for (const int type : {typeshell3, typeshell4})
        for (const int rows : {6, 48}) {
            const bool bad = type == typeshell3 && rows < 48;
            const answer found = conewidened(type, 5, rows, 2 * rows / 3);
            EXPECT_EQ(found.wrong > 0.1, bad) << type << ' ' << rows << ' ' << found.wrong;
            EXPECT_EQ(!found.said.empty(), bad) << type << ' ' << rows;
        }
}

// Widening of the edge of a cylinder under rings of force at distances of x = 1.285, in measures of
// the beam on an elastic foundation that a strip along it is, the outer ones half as strong: over
// that of a pressure. Closed for two rings, by the semi-infinite beam for more.
static double widenedbyrings(int rings) {
    const double x = std::sqrt(std::sqrt(3 * (1 - 0.3 * 0.3)));
    if (rings == 2) return x * (std::cosh(x) + std::cos(x)) / (std::sinh(x) + std::sin(x));
    double sum = 0.5;
    for (int k = 1; k < rings; ++k) sum += std::exp(-k * x) * std::cos(k * x);
    return 2 * x * sum;
}

// Forces at the nodes of rows of triangles, sqrt(R t) long, bend the shell as such rings would.
TEST(Shells, ForcesAtTheNodesWidenARing) {
    const double radius = 100, modulus = 2e5, row = 10;
    const int nx = 16;
    for (const diagonals way : {oneway, otherway, crosswise})
        for (const int ny : {1, 4}) {
            build b;
            const grid at =
                b.mesh(typeshell4, b.plate(modulus, 0.3, 1), nx, ny,
                       [&](double r, double s) { return around(radius, right * r, row * ny * s); });
            cut(b, way);
            b.fix(at.left(), {2, 4, 6}), b.fix(at.right(), {1, 5, 6}), b.fix(at.bottom(), {3});
            for (int j = 0; j <= ny; ++j)
                for (int i = 0; i <= nx; ++i) {
                    const double area = radius * right / nx * row * (i % nx == 0 ? 0.5 : 1) *
                                        (j % ny == 0 ? 0.5 : 1);
                    b.load(1, at.number(i, j), 1, 0.1 * area * std::cos(right * i / nx));
                    b.load(1, at.number(i, j), 2, 0.1 * area * std::sin(right * i / nx));
                }
            const double widened = moved(solvebalanced(b), 1, at.number(0, 0), 1);
            const double truth = widenedbyrings(ny + 1);
            EXPECT_NEAR(widened / (0.1 * radius * radius / modulus), truth, 0.03 * truth)
                << way << ' ' << ny;
        }
}

// Pulled along, a cylinder gets no wider or narrower at its rim than elsewhere.
TEST(Shells, PullsAlongDoNotBendARim) {
    const double radius = 10, modulus = 1e7, thickness = 0.01;
    for (const diagonals way : {oneway, crosswise, quadrilaterals}) {
        build b;
        const int nx = 16, ny = 24;
        const grid at =
            b.mesh(typeshell4, b.plate(modulus, 0.3, thickness), nx, ny,
                   [&](double r, double s) { return around(radius, right * r, radius * s); });
        cut(b, way);
        b.fix(at.left(), {2, 4, 6}), b.fix(at.right(), {1, 5, 6}), b.fix(at.bottom(), {3});
        b.spread(1, at.top(), 3, radius * right);
        const double truth = -0.3 * radius / (modulus * thickness);
        const results r = solvebalanced(b);
        for (const int j : {0, ny / 2, ny})
            EXPECT_NEAR(moved(r, 1, at.number(0, j), 1), truth, -0.01 * truth) << way << ' ' << j;
    }
}

// Part of a sphere under a motion that bends it without stretch (Rayleigh, On the infinitesimal
// bending of surfaces of revolution, Proc. London Math. Soc. 13, 1881; here of three waves): the
// strain of a triangle falls with the third power of its size.
TEST(Shells, TrianglesDoNotStretchWhereASphereBends) {
    const auto place = [](double polar, double angle) {
        return vec3(std::sin(polar) * std::cos(angle), std::sin(polar) * std::sin(angle),
                    std::cos(polar));
    };
    const auto motion = [&](double polar, double angle) {
        const double size = std::pow(std::tan(polar / 2), 3);
        const vec3 along(std::cos(polar) * std::cos(angle), std::cos(polar) * std::sin(angle),
                         -std::sin(polar)),
            round(-std::sin(angle), std::cos(angle), 0);
        return vec3(-std::sin(polar) * size * std::sin(3 * angle) * along +
                    std::sin(polar) * size * std::cos(3 * angle) * round +
                    size * std::sin(3 * angle) * (3 + std::cos(polar)) * place(polar, angle));
    };
    // Of the surface: what turns its two tangents with it.
    const auto rotation = [&](double polar, double angle) {
        const double h = 1e-5, wide = std::sin(polar);
        const vec3 t = (place(polar + h, angle) - place(polar - h, angle)) / (2 * h);
        const vec3 p = (place(polar, angle + h) - place(polar, angle - h)) / (2 * h * wide);
        const vec3 ut = (motion(polar + h, angle) - motion(polar - h, angle)) / (2 * h);
        const vec3 up = (motion(polar, angle + h) - motion(polar, angle - h)) / (2 * h * wide);
        const vec3 n = t.cross(p);
        return vec3(up.dot(n) * t - ut.dot(n) * p + (ut.dot(p) - up.dot(t)) / 2 * n);
    };
    double before = 0;
    for (const int n : {8, 16}) {
        build b;
        const double from = 1.2, size = 0.4;
        const auto polarat = [&](double s) { return from + size * s; };
        const auto angleat = [&](double r) { return 0.3 + size * r; };
        const grid at = b.mesh(typeshell3, b.plate(1, 0.3, 1e-4), n, n,
                               [&](double r, double s) { return place(polarat(s), angleat(r)); });
        for (int j = 0; j <= n; ++j)
            for (int i = 0; i <= n; ++i) {
                const double polar = polarat(double(j) / n), angle = angleat(double(i) / n);
                const vec3 u = motion(polar, angle), turned = rotation(polar, angle);
                for (int k = 0; k < 3; ++k) {
                    b.fix(at.number(i, j), {k + 1}, u[k]);
                    b.fix(at.number(i, j), {k + 4}, turned[k]);
                }
            }
        const results r = b.solve();
        double most = 0;
        for (std::size_t i = 0; i < r.plates.elements.size(); ++i) {
            const int quad = (r.plates.elements[i] - 1) / 2, x = quad % n, y = quad / n;
            if (std::min({x, y, n - 1 - x, n - 1 - y}) < n / 4) continue;  // normals are guessed
            for (int c = r.plates.first[i]; c < r.plates.first[i] + 3; ++c)
                for (int k = 0; k < 3; ++k) most = std::max(most, std::fabs(r.plates.of(1, c)[k]));
        }
        EXPECT_TRUE(before == 0 || std::log2(before / most) > 2.5) << n << ' ' << before / most;
        before = most;
    }
}

// A web that ends in the middle of a plate, upright or leaning, and one that crosses it.
TEST(Shells, WhatStandsOnAPlateDoesNotCurveIt) {
    for (const int last : {2, 4})
        for (const double lean : {0.0, 0.6}) {
            build b;
            const int g = b.plate(2e5, 0.3, 1);
            const grid at = b.mesh(typeshell4, g, 4, 4,
                                   [](double r, double s) { return vec3(40 * r, 40 * s, 0); });
            const grid web = b.mesh(typeshell4, g, last, 1, [&](double r, double s) {
                return vec3(10 * last * r, 20 + 10 * lean * s, 10 * s);
            });
            for (int e = web.firstelement; e < web.firstelement + web.elements; ++e)
                for (int& n : b.m.elements[std::size_t(e)].node)
                    if (n >= 1 && b.m.nodes[std::size_t(n)].z() == 0)
                        n = at.number(n - web.firstnode, 2);
            b.fix(at.left(), clamped), b.fix(web.top(), clamped);
            for (const int n : web.bottom()) b.fix(n, clamped);  // carries nothing any more
            b.pressall(1, 3, 1);
            b.solve();
            for (int e = 1; e <= b.m.nelems(); ++e)
                EXPECT_LT(b.m.curve[std::size_t(e)], 1e-9) << "lean " << lean << " element " << e;
        }
}

// Flat elements of an uneven mesh bend under the membrane stress that no pressure brought; that is
// told from a tenth of it on.
TEST(Shells, FalseBendingOfUnevenMeshesIsTold) {
    const struct {
        diagonals way;
        int nx, ny;
        double sway;
        bool pulled, told;
    } rows[] = {
        {oneway, 8, 4, 0.05, true, true},
        {oneway, 16, 8, 0.05, true, true},
        {oneway, 64, 32, 0.05, true, false},
        {crosswise, 8, 4, 0.05, true, true},
        {crosswise, 8, 4, 0, true, false},
        {quadrilaterals, 8, 4, 0.05, true, true},
        {quadrilaterals, 32, 16, 0.05, true, false},
        {everyother, 8, 4, 0.05, true, true},
        {oneway, 8, 4, 0.05, false, false},
        {everyother, 16, 8, 0.05, false, false},
    };
    for (const auto& row : rows) {
        const answer found = cylinder(row.nx, row.ny, row.sway, row.way, row.pulled);
        EXPECT_EQ(found.wrong > 0.1, row.told) << row.way << ' ' << row.nx << ' ' << found.wrong;
        EXPECT_EQ(!found.said.empty(), row.told) << row.way << ' ' << row.nx;
        if (row.told && !found.said.empty())
            expectwords(found.said.back(), {"Case 1", "curved shells", "times", "even lines"});
    }
}

// --- beams of shells ----------------------------------------------------------------------------

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
