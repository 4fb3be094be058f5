// SPDX-License-Identifier: GPL-3.0-or-later
// Thin curved shells on coarse and uneven meshes: pressures, pulls and forces at nodes bend them
// as closed forms and finer meshes say, or it is told.
#include <cmath>
#include <tuple>

#include "tests/solver/verify.h"

using grid = build::grid;

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
