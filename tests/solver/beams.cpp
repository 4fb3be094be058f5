// SPDX-License-Identifier: GPL-3.0-or-later
// Bars and beams against closed forms (Roark's Formulas for Stress and Strain, 7th ed., chapter 8,
// where nothing else is told).
#include <gtest/gtest.h>

#include <cmath>

#include "tests/solver/build.h"

static const double modulus = 210000, poisson = 0.3, shearmodulus = modulus / 2.6;
static const double area = 1200, ixx = 4e6, iyy = 1e6, izz = 3e5;

static int beamgroup(build& b, double rotation = 0) {
    return b.group({{fieldmodulus, modulus},
                    {fieldpoisson, poisson},
                    {fieldthickness, area},
                    {fieldrotation, rotation},
                    {fieldixx, ixx},
                    {fieldwxx, 1e5},
                    {fieldiyy, iyy},
                    {fieldwyy, 5e4},
                    {fieldizz, izz},
                    {fieldwzz, 2e4},
                    {fielddensity, 7.85e-6}});
}

static void expectnear(double value, double wanted, const char* what) {
    EXPECT_NEAR(value, wanted, 1e-6 * std::fabs(wanted) + 1e-300) << what;
}

// A cantilever along any direction, loaded along its own axes in turn.
TEST(Beam, CantileverTipMovesAsInTheClosedFormWhateverItsDirection) {
    const vec3 directions[] = {{1, 0, 0},  {0, 1, 0}, {0, 0, 1},
                               {0, 0, -1}, {1, 2, 2}, {-3, 1, 0.5}};
    const double length = 2000;
    for (const vec3& direction : directions) {
        build b;
        const int g = beamgroup(b, 25);
        const vec3 tip = length * direction.normalized();
        b.node(0, 0, 0);
        b.node(tip.x(), tip.y(), tip.z());
        const int e = b.element(typebeam, g, {1, 2});
        b.fix(1, {1, 2, 3, 4, 5, 6});
        const mat3 axes = lineaxes(elementat(b.m, b.s, e));
        const double p = 1000;
        const double wanted[3] = {p * length / (modulus * area),
                                  p * std::pow(length, 3) / (3 * modulus * iyy),
                                  p * std::pow(length, 3) / (3 * modulus * ixx)};
        for (int k = 0; k < 3; ++k) {
            if (k > 0) b.addcase();
            for (int i = 0; i < 3; ++i) b.load(k + 1, 2, i + 1, p * axes(k, i));
        }
        b.addcase();
        for (int i = 0; i < 3; ++i) b.load(4, 2, i + 4, p * axes(0, i));
        const results r = b.solve();
        for (int k = 0; k < 3; ++k) {
            const vec3 u(moved(r, k + 1, 2, 1), moved(r, k + 1, 2, 2), moved(r, k + 1, 2, 3));
            expectnear(axes.row(k).dot(u), wanted[k], "along its own axis");
            EXPECT_LT((u - axes.row(k).dot(u) * axes.row(k).transpose()).norm(), 1e-9 * u.norm());
            EXPECT_LT(imbalance(r, k + 1), 1e-9);
        }
        const vec3 turn(moved(r, 4, 2, 4), moved(r, 4, 2, 5), moved(r, 4, 2, 6));
        expectnear(axes.row(0).dot(turn), p * length / (shearmodulus * izz), "torsion");
    }
}

TEST(Beam, EndStressesFollowTheSignsOfTheSectionForces) {
    build b;
    const int g = beamgroup(b);
    b.node(0, 0, 0);
    b.node(1000, 0, 0);
    b.element(typebeam, g, {1, 2});
    b.fix(1, {1, 2, 3, 4, 5, 6});
    const double load[6] = {5000, 300, 200, 7000, 90000, 40000};
    for (int dof = 1; dof <= 6; ++dof) b.load(1, 2, dof, load[dof - 1]);
    const results r = b.solve();
    const double* const value = r.lines.of(0, 1);
    // Section forces of the part beyond the cut, as they act on the face looking along +e1.
    const double wanted[2][4] = {
        {5000 / area, (90000 - 200.0 * 1000) / 1e5, (40000 + 300.0 * 1000) / 5e4, 7000 / 2e4},
        {5000 / area, 90000 / 1e5, 40000 / 5e4, 7000 / 2e4}};
    for (int end = 0; end < 2; ++end)
        for (int k = 0; k < 4; ++k) expectnear(value[4 * end + k], wanted[end][k], "end stress");
}

// Deflections of beams under a load along their whole length, one element or several.
TEST(Beam, UniformAndOwnWeightLoadAreExactOnOneElement) {
    const double q = 3, length = 3000;
    for (const int count : {1, 4}) {
        build b;
        const int g = beamgroup(b);
        for (int i = 0; i <= count; ++i) b.node(length * i / count, 0, 0);
        for (int i = 1; i <= count; ++i) b.press(1, b.element(typebeam, g, {i, i + 1}), 2, q);
        b.addcase(3, {-9.81, 0, 0, 0, 1});
        b.fix(1, {1, 2, 3, 4, 5, 6});
        const results r = b.solve();
        expectnear(moved(r, 1, count + 1, 2), q * std::pow(length, 4) / (8 * modulus * iyy),
                   "pressed along e2");
        const double weight = 7.85e-6 * area * 9.81;  // N/mm, kg and m/s^2 give newtons
        expectnear(moved(r, 2, count + 1, 3), -weight * std::pow(length, 4) / (8 * modulus * ixx),
                   "own weight");
        expectnear(reacted(r, 1, 1, 6), -q * length * length / 2, "clamping moment");
        expectnear(r.lines.of(0, 1)[2], q * length * length / 2 / 5e4, "stress at the clamp");
        EXPECT_LT(std::fabs(r.lines.of(std::size_t(count - 1), 1)[6]), 1e-9) << "free end";
        EXPECT_LT(imbalance(r, 2), 1e-9);
    }
}

TEST(Beam, SpinningUpBarFeelsTheAngularAcceleration) {
    // Angular acceleration a about z: load rho A a x across the bar, tip of a cantilever under a
    // load that grows to q: 11 q L^4 / (120 E I).
    build b;
    const int g = beamgroup(b);
    const double length = 1500, spin = 40;
    b.node(0, 0, 0);
    b.node(length, 0, 0);
    b.element(typebeam, g, {1, 2});
    b.fix(1, {1, 2, 3, 4, 5, 6});
    b.m.cases[1].type = caseaccrz;
    b.m.cases[1].par[0] = spin;
    b.m.cases[1].par[4] = 1;
    const results r = b.solve();
    const double q = 7.85e-6 * area * spin * length / 1000;  // metres in a millimetre
    // The section's own rotary inertia adds rho I a a length, which turns the tip a little further.
    const double twist = 7.85e-6 * iyy * spin / 1000;
    expectnear(moved(r, 1, 2, 2),
               11 * q * std::pow(length, 4) / (120 * modulus * iyy) +
                   twist * std::pow(length, 3) / (3 * modulus * iyy),
               "tip");
}

TEST(Beam, ShearFlexibilityAddsItsPart) {
    build b;
    const int g = beamgroup(b);
    b.s.shear = 0.85;
    b.node(0, 0, 0);
    b.node(500, 0, 0);
    b.element(typebeam, g, {1, 2});
    b.fix(1, {1, 2, 3, 4, 5, 6});
    b.load(1, 2, 2, 1000);
    const results r = b.solve();
    expectnear(
        moved(r, 1, 2, 2),
        1000 * std::pow(500.0, 3) / (3 * modulus * iyy) + 1000 * 500 / (shearmodulus * 0.85 * area),
        "tip");
}

// Fixed portal frame, span l, height h, under a side load: exact within Bernoulli theory when the
// bars are stiff along their axis (Kleinlogel, Rigid Frame Formulas, frame 41).
TEST(Frame, PortalInTheDrawingPlaneIn2DAnd3D) {
    const double l = 6000, h = 4000, side = 10000;
    double sway[2];
    for (const bool twod : {true, false}) {
        build b;
        const int g = b.group({{fieldmodulus, modulus},
                               {fieldpoisson, poisson},
                               {fieldthickness, 1e9},
                               {fieldixx, 5e6},
                               {fieldiyy, iyy},
                               {fieldizz, izz}});
        b.m.twod = twod;
        b.node(0, 0), b.node(0, h), b.node(l, h), b.node(l, 0);
        for (int i = 1; i <= 3; ++i) b.element(typebeam, g, {i, i + 1});
        b.fix(1, {1, 2, 3, 4, 5, 6});
        b.fix(4, {1, 2, 3, 4, 5, 6});
        b.load(1, 2, 1, side);
        const results r = b.solve();
        EXPECT_EQ(r.dofs.anadof, twod ? 2 : 3);
        const double k = h / l, foot = side * h / 2 * (3 * k + 1) / (6 * k + 1);
        EXPECT_NEAR(reacted(r, 1, 1, 6), foot, 1e-5 * foot);
        EXPECT_NEAR(reacted(r, 1, 1, 1), -side / 2, 1e-5 * side);
        EXPECT_LT(imbalance(r, 1), 1e-9);
        sway[twod] = moved(r, 1, 2, 1);
    }
    EXPECT_NEAR(sway[0], sway[1], 1e-9 * sway[0]);
}

TEST(Truss, ThreeBarsShareTheLoadByTheirStiffness) {
    // Timoshenko, Strength of Materials part I, article 6: middle bar F / (1 + 2 cos^3 a).
    const double height = 1000, angle = 0.6, p = 50000;
    build b;
    const int g = b.group({{fieldmodulus, modulus}, {fieldthickness, 100}});
    b.m.twod = true;
    b.node(0, 0);
    const double x[3] = {-height * std::tan(angle), 0, height * std::tan(angle)};
    for (const double at : x) b.fix(b.node(at, height), {1, 2});
    for (int n = 2; n <= 4; ++n) b.element(typetruss, g, {1, n});
    b.load(1, 1, 2, -p);
    const results r = b.solve();
    EXPECT_EQ(r.dofs.anadof, 1);
    const double middle = p / (1 + 2 * std::pow(std::cos(angle), 3));
    expectnear(r.lines.of(1, 1)[0], middle / 100, "middle bar");
    expectnear(r.lines.of(0, 1)[0], middle * std::pow(std::cos(angle), 2) / 100, "side bar");
}

TEST(Truss, SpaceTripodTakesPrescribedDisplacements) {
    build b;
    const int g = b.group({{fieldmodulus, modulus}, {fieldthickness, 100}});
    b.node(0, 0, 1000);
    for (int i = 0; i < 3; ++i) {
        const double a = 2 * M_PI * i / 3 + 0.2;
        b.fix(b.node(800 * std::cos(a), 800 * std::sin(a), 0), {1, 2});
        b.fix(i + 2, {3}, 7);
        b.element(typetruss, g, {1, i + 2});
    }
    b.load(1, 1, 1, 1000);
    const results r = b.solve();
    EXPECT_EQ(r.dofs.anadof, 0);
    expectnear(moved(r, 1, 1, 3), 7, "the feet lift it");
    EXPECT_EQ(moved(r, 1, 2, 3), 7);
    const double bar = std::hypot(800.0, 1000.0);  // sum of EA/L times squared direction cosines
    expectnear(moved(r, 1, 1, 1), 1000 / (modulus * 100 / bar * 3 * 0.5 * 800 * 800 / (bar * bar)),
               "side step");
}

TEST(Pipe, IsTheTubeThatItsAreaAndInertiaTell) {
    const double outer = 100, inner = 90;
    const double a = M_PI / 4 * (outer * outer - inner * inner);
    const double i = M_PI / 64 * (std::pow(outer, 4) - std::pow(inner, 4));
    build b;
    const int g = b.group(
        {{fieldmodulus, modulus}, {fieldpoisson, poisson}, {fieldthickness, a}, {fieldixx, i}});
    b.node(0, 0, 0), b.node(0, 0, 2000);
    b.element(typepipe, g, {1, 2});
    b.fix(1, {1, 2, 3, 4, 5, 6});
    b.load(1, 2, 1, 500);
    b.load(1, 2, 6, 3e5);
    const results r = b.solve();
    expectnear(moved(r, 1, 2, 1), 500 * 8e9 / (3 * modulus * i), "bending");
    expectnear(moved(r, 1, 2, 6), 3e5 * 2000 / (shearmodulus * 2 * i), "torsion");
    const double* const value = r.lines.of(0, 1);
    expectnear(std::hypot(value[1], value[2]), 500 * 2000 * outer / 2 / i, "bending stress");
    expectnear(value[3], 3e5 * outer / 2 / (2 * i), "torsion stress");
}
