// SPDX-License-Identifier: GPL-3.0-or-later
// Lines, springs, masses and rigid links against closed forms, to six digits.
#include <gtest/gtest.h>

#include <Eigen/LU>
#include <cmath>

#include "solver/loads.h"
#include "tests/solver/verify.h"

static const double modulus = 210000, poisson = 0.3, area = 1200, ixx = 4e6, iyy = 1e6, izz = 3e5;

static int beamgroup(build& b) {
    return b.group({{fieldmodulus, modulus},
                    {fieldpoisson, poisson},
                    {fielddensity, 7.85e-6},
                    {fieldthickness, area},
                    {fieldixx, ixx},
                    {fieldwxx, 1e5},
                    {fieldiyy, iyy},
                    {fieldwyy, 5e4},
                    {fieldizz, izz},
                    {fieldwzz, 2e4}});
}

static int springgroup(build& b, const mat6& k) {
    const int g = b.group({});
    b.m.groups[std::size_t(g)].spring = k;
    return g;
}

static mat6 diagonal(std::initializer_list<double> values) {
    mat6 k = mat6::Zero();
    int i = 0;
    for (const double value : values) k(i, i) = value, ++i;
    return k;
}

static void row(const char* what, const char* mesh, const char* source, double truth,
                double value) {
    prove({"line", what, mesh, source, 0, truth, value, 1e-6});
}

// A line of n elements along x from 0 to the length; nodes 1..n+1.
static void makeline(build& b, int type, int g, int n, double length) {
    for (int i = 0; i <= n; ++i) b.node(length * i / n, 0, 0);
    for (int i = 1; i <= n; ++i) b.element(type, g, {i, i + 1});
}

TEST(Verification, BeamsUnderEvenLoad) {
    const double q = 2, length = 3000, bend = modulus * iyy;
    const struct {
        const char* name;
        std::initializer_list<int> left, right;
        double factor;  // w E I / q L^4 in the middle
    } cases[] = {{"Beam on two supports, even load", {1, 2, 3, 4}, {2, 3}, 5.0 / 384},
                 {"Clamped beam, even load", {1, 2, 3, 4, 5, 6}, {1, 2, 3, 4, 5, 6}, 1.0 / 384},
                 {"Propped cantilever, even load", {1, 2, 3, 4, 5, 6}, {2, 3}, 1.0 / 192},
                 {"Cantilever, even load, at the middle", {1, 2, 3, 4, 5, 6}, {}, 17.0 / 384}};
    for (const auto& c : cases) {
        build b;
        makeline(b, typebeam, beamgroup(b), 2, length);
        b.fix(1, c.left), b.fix(3, c.right);
        for (int e = 1; e <= 2; ++e) b.press(1, e, 2, q);
        const results r = b.solve();
        provebalance(r);
        row(c.name, "BEAM 2", "R", c.factor * q * std::pow(length, 4) / bend, moved(r, 1, 2, 2));
    }
}

TEST(Verification, SpringsUnderBeams) {
    const double p = 5000, length = 2000, k = 800, kr = 3e8;
    {
        build b;
        makeline(b, typebeam, beamgroup(b), 2, length);
        const int support = springgroup(b, diagonal({0, k, 0, 0, 0, 0}));
        b.element(typespringt, support, {1}), b.element(typespringt, support, {3});
        for (const int n : {1, 3}) b.fix(n, {1, 3, 4});
        b.load(1, 2, 2, p);
        const results r = b.solve();
        provebalance(r);
        row("Beam on two springs, load in the middle", "BEAM 2, SPRING-T 2", "R",
            p / (2 * k) + p * std::pow(length, 3) / (48 * modulus * iyy), moved(r, 1, 2, 2));
        row("Beam on two springs, reaction of a spring", "BEAM 2, SPRING-T 2", "closed", -p / 2,
            reacted(r, 1, 3, 2));
    }
    {
        build b;
        makeline(b, typebeam, beamgroup(b), 1, length);
        b.element(typespringr, springgroup(b, diagonal({0, 0, 0, 0, 0, kr})), {1});
        b.fix(1, {1, 2, 3, 4, 5});
        b.load(1, 2, 2, p);
        const results r = b.solve();
        provebalance(r);
        row("Cantilever in a turning spring", "BEAM 1, SPRING-R 1", "R",
            p * length * length / kr + p * std::pow(length, 3) / (3 * modulus * iyy),
            moved(r, 1, 2, 2));
    }
    {
        // Tip to tip: two cantilevers joined by a spring share the load.
        build b;
        const int g = beamgroup(b);
        b.node(0, 0, 0), b.node(length, 0, 0), b.node(length, 0, 0), b.node(2 * length, 0, 0);
        b.element(typebeam, g, {1, 2}), b.element(typebeam, g, {3, 4});
        b.element(typespring2, springgroup(b, diagonal({0, k, 0, 0, 0, 0})), {2, 3});
        b.fix(1, {1, 2, 3, 4, 5, 6}), b.fix(4, {1, 2, 3, 4, 5, 6});
        b.load(1, 2, 2, p);
        const results r = b.solve();
        provebalance(r);
        const double beam = 3 * modulus * iyy / std::pow(length, 3), both = 1 / (1 / k + 1 / beam);
        row("Cantilevers joined by a spring", "BEAM 2, SPRING2 1", "closed", p / (beam + both),
            moved(r, 1, 2, 2));
    }
    {
        // A full matrix to ground: u = K^-1 f.
        mat6 matrix = diagonal({5, 6, 7, 800, 900, 1000});
        matrix(0, 4) = matrix(4, 0) = 30;
        matrix(1, 2) = matrix(2, 1) = -2;
        vec6 f;
        f << 10, -20, 30, 400, 500, -600;
        build b;
        b.node(3, 4, 5);
        b.node(4, 4, 5);
        b.element(typespring, springgroup(b, matrix), {1});
        const int beam = beamgroup(b);
        b.m.groups[std::size_t(beam)].field[fieldmodulus] = 1e-3;
        b.element(typebeam, beam, {1, 2});  // hangs on it free of load
        for (int dof = 1; dof <= 6; ++dof) b.load(1, 1, dof, f[dof - 1]);
        const results r = b.solve();
        const vec6 u = matrix.inverse() * f;
        for (int dof = 1; dof <= 6; ++dof) {
            EXPECT_NEAR(moved(r, 1, 1, dof), u[dof - 1], 1e-7 * u.norm());
            EXPECT_NEAR(reacted(r, 1, 1, dof), -f[dof - 1], 1e-6 * f.norm());
        }
        row("Whole matrix to ground, turn about z", "SPRING 1, BEAM 1", "closed", u[5],
            moved(r, 1, 1, 6));
    }
}

TEST(Verification, AcceleratedBodies) {
    const double length = 2000, rho = 7.85e-6, g = 9.81;
    for (const int type : {typetruss, typebeam}) {
        build b;
        makeline(b, type, beamgroup(b), 3, length);
        b.fix(1, {1, 2, 3, 4, 5, 6});
        b.m.cases[1].type = 1;
        b.m.cases[1].par[0] = g;
        const results r = b.solve();
        provebalance(r);
        row("Bar hanging under its weight, tip", type == typetruss ? "TRUSS 3" : "BEAM 3", "closed",
            rho * g * length * length / (2 * modulus), moved(r, 1, 4, 1));
    }
    {
        // A mass at the tip of a bar without mass, turned about z: force m a r, moment I a.
        const double mass = 40, inertia = 5e6, spin = 3;
        build b;
        makeline(b, typebeam, beamgroup(b), 1, length);
        const int m = b.group({{fielddensity, mass}, {fieldizz, inertia}});
        b.element(typemass, m, {2});
        b.m.groups[1].field[fielddensity] = 0;
        b.fix(1, {1, 2, 3, 4, 5, 6});
        b.addcase(caseaccrz, {spin, 0, 0, 0, 1});
        b.m.cases[1].type = 2;
        b.m.cases[1].par[0] = g;
        const results r = b.solve();
        provebalance(r);
        const double bend = modulus * iyy, metre = 0.001;
        row("Mass at the tip of a cantilever, acceleration across", "BEAM 1, MASS 1", "closed",
            mass * g * std::pow(length, 3) / (3 * bend), moved(r, 1, 2, 2));
        row("Mass at the tip of a cantilever, spun up about its root", "BEAM 1, MASS 1", "closed",
            mass * spin * metre * length * std::pow(length, 3) / (3 * bend) +
                inertia * spin * metre * length * length / (2 * bend),
            moved(r, 2, 2, 2));
    }
}

TEST(Verification, RigidArms) {
    // A crank: cantilever along x, rigid arm along y, load along z at its end.
    const double length = 1500, arm = 400, p = 300;
    build b;
    makeline(b, typebeam, beamgroup(b), 1, length);
    b.node(length, arm, 0);
    b.element(typerigid, b.group({}), {2, 3});
    b.fix(1, {1, 2, 3, 4, 5, 6});
    b.load(1, 3, 3, p);
    const results r = b.solve();
    provebalance(r);
    const double shear = modulus / (2 * (1 + poisson));
    row("Crank with a rigid arm, end", "BEAM 1, RIGID 1", "R",
        p * std::pow(length, 3) / (3 * modulus * ixx) + p * arm * arm * length / (shear * izz),
        moved(r, 1, 3, 3));
}

TEST(Verification, FramesAndTrusses) {
    {
        // Square frame cut open: a ring of four bars pulled at opposite corners along a diagonal.
        // Each bar is clamped at its corners by symmetry of neighbours: spread P L^3 / 24 E I ...
        // in bending alone; its axial part P L / 2 E A.
        const double side = 1000, p = 700;
        build b;
        b.m.twod = true;
        const int g = beamgroup(b);
        const double d = side / std::sqrt(2.0);
        b.node(-d, 0), b.node(0, -d), b.node(d, 0), b.node(0, d);
        for (int i = 0; i < 4; ++i) b.element(typebeam, g, {i + 1, (i + 1) % 4 + 1});
        b.fix(1, {1, 2, 6});
        b.load(1, 3, 1, p);
        const results r = b.solve();
        provebalance(r);
        // half of a bar is a cantilever of side / 2 under p / 2 across sin 45 and along cos 45
        const double across = p / 2 * std::sqrt(0.5), half = side / 2;
        const double bent = 2 * across * std::pow(half, 3) / (3 * modulus * iyy);
        const double drawn = across * side / (modulus * area);
        row("Square frame drawn along its diagonal", "BEAM 4, 2-D", "closed",
            2 * (bent + drawn) * std::sqrt(0.5), moved(r, 1, 3, 1));
    }
    {
        // Warren girder of two panels and one bar above: work of the bar forces.
        const double p = 9000, a = 1000;
        build b;
        b.m.twod = true;
        const int g = b.group({{fieldmodulus, modulus}, {fieldthickness, 100}});
        b.node(0, 0), b.node(2 * a, 0), b.node(4 * a, 0), b.node(a, a), b.node(3 * a, a);
        const int bars[7][2] = {{1, 2}, {2, 3}, {1, 4}, {4, 2}, {2, 5}, {5, 3}, {4, 5}};
        for (const auto& bar : bars) b.element(typetruss, g, {bar[0], bar[1]});
        b.fix(1, {1, 2}), b.fix(3, {2});
        b.load(1, 2, 2, -p);
        const results r = b.solve();
        provebalance(r);
        const double root = std::sqrt(2.0);  // unit load: chords 1/2 and -1, diagonals 1/sqrt 2
        const double work = 2 * 0.25 * 2 * a + 1 * 2 * a + 4 * 0.5 * root * a;
        row("Warren girder, load in the middle", "TRUSS 7, 2-D", "closed",
            -p * work / (modulus * 100), moved(r, 1, 2, 2));
    }
}

// A frame of bars carries the edges, the panel between them the shear: q = P / (2 h).
TEST(Verification, ShearPanelInAFrame) {
    for (const bool parallelogram : {false, true}) {
        const double width = 300, height = 200, thickness = 2, p = 1000;
        const double skew = parallelogram ? 100 : 0;
        build b;
        const int g = b.plate(70000, poisson, thickness);
        b.node(0, 0), b.node(width, 0), b.node(width + skew, height), b.node(skew, height);
        b.element(typeshear4, g, {1, 2, 3, 4});
        const int stiff = b.group({{fieldmodulus, 1e11}, {fieldthickness, 1e3}});
        for (int i = 0; i < 4; ++i) b.element(typetruss, stiff, {i + 1, (i + 1) % 4 + 1});
        b.fix(1, {1, 2, 3}), b.fix(2, {2, 3}), b.fix(3, {3}), b.fix(4, {3});
        for (const int n : {3, 4}) b.load(1, n, 1, p / 2);
        const results r = b.solve();
        provebalance(r);
        // Garvey: a parallelogram of angle a between its sides is softer by 1 + 2 cot^2 a / (1+nu)
        const double shear = 70000 / (2 * (1 + poisson)), cot = skew / height;
        const double soft = 1 + 2 * cot * cot / (1 + poisson);
        row(parallelogram ? "Shear panel, parallelogram" : "Shear panel, rectangle",
            "SHEAR4 1, TRUSS 4", "G", p * height / (shear * thickness * width) * soft,
            moved(r, 1, 3, 1));
    }
}

TEST(Refusal, SpringMatricesAndMasses) {
    const struct {
        const char* name;
        int type;
        std::function<void(groupdata&)> spoil;
        const char* word;
    } rows[] = {
        {"empty", typespring, [](groupdata& g) { g.spring.setZero(); }, "no stiffness"},
        {"rotations alone", typespringt, [](groupdata& g) { g.spring(0, 0) = 0; }, "no stiffness"},
        {"one sided", typespring2, [](groupdata& g) { g.spring(0, 1) = 1; }, "not symmetric"},
        {"negative", typespringr, [](groupdata& g) { g.spring(3, 3) = -1; }, "negative"},
        {"negative mass", typemass, [](groupdata& g) { g.field[fielddensity] = -1; }, "below 0"},
    };
    for (const auto& bad : rows) {
        build b;
        const int g = springgroup(b, diagonal({1, 0, 0, 0, 2, 0}));
        bad.spoil(b.m.groups[std::size_t(g)]);
        b.node(0, 0), b.node(1, 0);
        b.element(bad.type, g, {1, 2});
        const std::string said = b.refusal();
        EXPECT_NE(said.find(bad.word), said.npos) << bad.name << ": " << said;
        EXPECT_NE(said.find("Element 1"), said.npos) << bad.name;
    }
}

// A spring across a gap is what its matrix says; that it turns the structure is told.
TEST(Springs, BetweenNodesApartAreToldWhenTheyUnbalance) {
    for (const bool apart : {false, true}) {
        build b;
        const int g = springgroup(b, diagonal({5, 5, 5, 7, 7, 7}));
        b.node(0, 0, 0), b.node(apart ? 2 : 0, 0, 0);
        b.element(typespring2, g, {1, 2});
        b.fix(1, {1, 2, 3, 4, 5, 6});
        b.load(1, 2, 2, 10);
        const results r = b.solve();
        EXPECT_NEAR(moved(r, 1, 2, 2), 2, 1e-12);
        EXPECT_EQ(b.log.warnings().size(), apart ? 1u : 0u) << b.log.text();
        EXPECT_EQ(b.log.text().find("SPRING2 element 1 lie apart") != std::string::npos, apart);
        b.m.elements[1].node[1] = 1;
        EXPECT_NE(b.refusal().find("node 1 at both ends"), std::string::npos);
    }
}
