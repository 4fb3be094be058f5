// SPDX-License-Identifier: GPL-3.0-or-later
// Eigenmodes of bars, beams and masses against closed forms and published benchmarks.
#include <Eigen/Eigenvalues>
#include <cmath>

#include "tests/solver/verify.h"

static const double steel = 200e9, density = 8000;
static const wanted modesalone = {false, false, false, false, true, true};

static double hertz(const results& r, int mode) {
    return std::sqrt(r.modes.value[std::size_t(mode - 1)]) / (2 * M_PI);
}

static double shapeat(const results& r, int mode, int n, int dof) {
    const int k = r.dofs.place[dof];
    return k < 0 ? 0 : r.modes.of(r.dofs, mode)[r.dofs.index(n, k)];
}

// In metres, this many modes asked for.
static build vibrating(int modes) {
    build b;
    b.inmetres();
    b.s.modes = modes;
    return b;
}

static results modesof(build& b) {
    const results r = b.solve(0, modesalone);
    EXPECT_EQ(r.modes.count(), b.s.modes);
    return r;
}

// A spring matrix with a direction of negative stiffness: told as unstable, with what it is.
TEST(Modes, NegativeStiffnessIsToldAsUnstable) {
    build b = vibrating(2);
    mat6 k = mat6::Zero();
    k.topLeftCorner<2, 2>() << 1, 2, 2, 1;
    const int g = b.spring(k);
    b.field(g, fielddensity) = 4;
    const int n = b.node(0, 0);
    b.element(typespring, g, {n}), b.element(typemass, g, {n});
    b.fix(n, {3, 4, 5, 6});
    const results r = modesof(b);
    EXPECT_NEAR(r.modes.value[0], -1.0 / 4, 1e-9);
    EXPECT_NEAR(r.modes.value[1], 3.0 / 4, 1e-9);
    ASSERT_EQ(b.log.warnings().size(), 1u);
    expectwords(b.log.warnings()[0], {"1 mode(s)", "-0.25 1/s^2", "unstable"});
}

// A search that ends by the size of its values would end early at high frequencies.
TEST(Modes, AnyUnitOfMassGivesTheSameModes) {
    std::vector<double> first;
    for (const double unit : {1.0, 1e-6, 1e-14}) {
        build b = vibrating(6);
        b.s.mass = 1 / unit;
        const int g = b.plate(steel, 0.3, 0.05);
        b.field(g, fielddensity) = density * unit;
        const auto at = b.mesh(typeshell4, g, 10, 7, [](double r, double s) {
            return vec3(1.1 * r, 0.9 * s, 0.2 * r * s);
        });
        b.fix(at.left(), clamped);
        const results r = modesof(b);
        if (first.empty()) first = r.modes.value;
        for (std::size_t i = 0; i < first.size(); ++i)
            EXPECT_NEAR(r.modes.value[i] / first[i], 1, 1e-8) << unit << " mode " << i + 1;
    }
}

// Square section of side a; torsion as the published cases take it, by the polar moment.
static int squarebar(build& b, double a) {
    const double i = std::pow(a, 4) / 12;
    return b.bar(steel, a * a, {i, i, 2 * i}, density);
}

static void row(const std::string& what, int mode, const std::string& mesh, const char* source,
                double printed, double truth, double value, double tolerance) {
    prove({"vibration", what + ", mode " + std::to_string(mode), mesh, source, printed, truth,
           value, tolerance});
}

// --- exact values -------------------------------------------------------------------------------

// Bar of n elements of length h with consistent mass, fixed at one end:
// omega^2 = 6 E / (rho h^2) (1 - cos t) / (2 + cos t), t = (2 k - 1) pi / (2 n).
TEST(Modes, BarHasTheValuesOfItsDifferenceEquation) {
    for (const int n : {5, 300}) {  // through the flexibility, by Lanczos
        build b = vibrating(5);
        b.m.twod = true;
        b.fix(b.chain(typetruss, squarebar(b, 0.1), {0, 0, 0}, {6, 0, 0}, n), {1, 2});
        const results r = modesof(b);
        for (int k = 1; k <= 5; ++k) {
            const double h = 6.0 / n, c = std::cos((2 * k - 1) * M_PI / (2 * n));
            const double square = 6 * steel / (density * h * h) * (1 - c) / (2 + c);
            EXPECT_NEAR(r.modes.value[std::size_t(k - 1)], square, 1e-8 * square) << n << " " << k;
        }
        for (int i = 1; i <= n; ++i) EXPECT_LT(shapeat(r, 1, i, 1), 1);
        EXPECT_NEAR(shapeat(r, 1, n + 1, 1), 1, 1e-12) << "the free end moves most";
        EXPECT_EQ(shapeat(r, 1, 1, 1), 0);
    }
}

// All modes of a bar that floats askew: the rigid ones leave their rounding in the others.
// Stretched with consistent mass it has omega^2 as above with t = k pi / n.
TEST(Modes, RigidMotionsLeaveTheOthersSharp) {
    for (const int n : {1, 5}) {
        build b = vibrating(6 * (n + 1));
        b.chain(typebeam, squarebar(b, 0.1), {0, 0, 0}, {3, 2, -4}, n);
        const results r = modesof(b);
        EXPECT_EQ(b.log.warnings().size(), 0u);
        const double h = std::sqrt(29.0) / n;
        for (int k = 1; k <= n; ++k) {
            const double c = std::cos(k * M_PI / n);
            const double square = 6 * steel / (density * h * h) * (1 - c) / (2 + c);
            double nearest = 1;
            for (const double value : r.modes.value)
                nearest = std::min(nearest, std::fabs(value / square - 1));
            EXPECT_LT(nearest, 1e-10) << n << " elements, stretch " << k;
        }
        vec3 moved = vec3::Zero();
        for (const vec3& part : r.modes.effectivemass) moved += part;
        EXPECT_LT((moved - r.modes.totalmass).norm(), 1e-9 * moved.norm()) << n;
    }
}

// A mass off the one point that springs hold: it turns about that point, and its inertia with it,
// which leaves next to nothing of it in the springs' way. The turns themselves have no frequency.
TEST(Modes, MassesOnArmsTurnAboutTheSpringThatHoldsThem) {
    const double spring = 1000, mass = 2, inertia = 0.1, arm = 3;
    for (const bool rows : {false, true})
        for (const int modes : {3, 6}) {
            SCOPED_TRACE(testing::Message() << modes << (rows ? " of rows of a case" : " of MASS"));
            build b = vibrating(modes);
            const vec3 along = arm * vec3(2, -1, 2) / 3;
            const int point = b.group({}), hub = b.node(1, 2, 3),
                      far = b.node(vec3(1, 2, 3) + along);
            mat6 k = mat6::Zero();
            k.diagonal().head<3>().setConstant(spring);
            b.element(typespringt, b.spring(k), {hub});
            b.element(typerigid, point, {hub, far});
            b.chain(typebeam, b.bar(1, 1, {1, 1, 1}), {9, 9, 9}, {9, 9, 8}, 1);  // has rotations
            b.fix({3, 4}, clamped);
            if (rows) {
                const int lc = b.addcase(caseaccz);
                for (int dof = 1; dof <= 6; ++dof) b.load(lc, far, dof, dof > 3 ? inertia : mass);
            } else {
                for (const groupfield f : {fieldixx, fieldiyy, fieldizz})
                    b.field(point, f) = inertia;
                b.field(point, fielddensity) = mass;
                b.element(typemass, point, {far});
            }
            const results r = modesof(b);
            const double across = spring * (1 / mass + arm * arm / inertia);
            const double wanted[6] = {0, 0, 0, spring / mass, across, across};
            for (int i = 0; i < modes; ++i)
                EXPECT_NEAR(r.modes.value[std::size_t(i)], wanted[i], i < 3 ? 0 : 1e-8 * across);
            EXPECT_TRUE(b.log.warnings().empty()) << b.log.warnings()[0];
        }
}

// An eighth of a cylinder between diaphragms, one half wave along it and n waves around, against
// Fluegge, Stresses in shells, chapter 5: few elements a wave, whose mass a straight deflection
// between the nodes would miss by a sixth.
TEST(Modes, CurvedShellsSwingWithAllTheirMass) {
    const double radius = 1, length = 2, thickness = 0.01, poisson = 0.3, right = M_PI / 2;
    const auto square = [&](int n) {
        const double l = M_PI * radius / length, k = std::pow(thickness / radius, 2) / 12;
        const double minus = (1 - poisson) / 2, plus = (1 + poisson) / 2;
        mat3 a;
        a(0, 0) = l * l + minus * n * n * (1 + k);
        a(0, 1) = -plus * l * n;
        a(0, 2) = -poisson * l - k * (l * l * l - minus * l * n * n);
        a(1, 1) = n * n + minus * l * l * (1 + 3 * k);
        a(1, 2) = n + (3 - poisson) / 2 * k * l * l * n;
        a(2, 2) = 1 + k * (std::pow(l * l + n * n, 2) - 2 * n * n + 1);
        const double unit = steel / (density * (1 - poisson * poisson) * radius * radius);
        return unit * Eigen::SelfAdjointEigenSolver<mat3>(a.transpose()).eigenvalues()[0];
    };
    for (const int type : {typeshell3, typeshell4}) {
        build b = vibrating(2);
        const auto at = b.mesh(type, b.plate(steel, poisson, thickness, density), 8, 6,
                               [&](double r, double s) {
                                   return vec3(radius * std::cos(right * r),
                                               radius * std::sin(right * r), length / 2 * s);
                               });
        b.fix(at.left(), {2, 4, 6}), b.fix(at.right(), {1, 5, 6});
        b.fix(at.bottom(), {1, 2}), b.fix(at.top(), {3, 4, 5});
        const results r = modesof(b);
        EXPECT_NEAR(std::sqrt(r.modes.value[0] / square(6)), 1, 0.012) << type;
        EXPECT_NEAR(std::sqrt(r.modes.value[1] / square(4)), 1, 0.012) << type;
    }
}

// Newton, millimetre, kilogram: omega^2 = 1000 k / m. What is prescribed is fixed in a vibration.
TEST(Modes, WithoutElementMassTheNodalMassesAloneVibrate) {
    build b;
    const double inertia = 1e4, modulus = 2e5, length = 3000, mass = 50;
    const int g = b.bar(modulus, 100, {inertia, inertia, inertia}, 8e-6);
    b.fix(b.chain(typebeam, g, {0, 0, 0}, {length, 0, 0}, 8), clamped, 0.25);
    b.load(b.addcase(caseaccz), 9, 3, mass);
    b.load(b.addcase(caseaccx), 9, 3, 1000);  // a second case with masses plays no part
    wanted what = modesalone;
    what.elementmass = false;
    const results r = b.solve(0, what);
    ASSERT_EQ(r.modes.count(), 1) << "one mass, one mode";
    const double square = 1000 * 3 * modulus * inertia / std::pow(length, 3) / mass;
    EXPECT_NEAR(r.modes.value[0], square, 1e-8 * square);
    EXPECT_NEAR(r.modes.effectivemass[0][2], mass, 1e-6);
    EXPECT_EQ(shapeat(r, 1, 1, 3), 0);
    EXPECT_EQ(shapeat(r, 1, 9, 3), 1);
    b.m.cases.resize(2);
    expectwords(b.refusal(0, what), {"no mass"});
    b.load(b.addcase(caseaccx), 9, 3, -1);
    expectwords(b.refusal(0, what), {"Node 9"});
}

// --- masses -------------------------------------------------------------------------------------

TEST(Masses, OfAGroupAreMassCentreAndRadiiOfGyration) {
    build b;
    const int bar = squarebar(b, 0.2), plate = b.plate(2e11, 0.3, 0.1, 1000);
    const int point = b.group({{fielddensity, 30}, {fieldixx, 7}, {fieldiyy, 8}, {fieldizz, 9}});
    const int none = b.plate(2e11, 0.3, 0.1);
    const vec3 far(1e5, -2e5, 3e5);  // a distant origin costs no digits
    b.single(typebeam, bar, {far, far + vec3(6, 0, 0)});
    b.single(typeshell4, plate,
             {far + vec3(0, 0, 1), far + vec3(4, 0, 1), far + vec3(4, 2, 1), far + vec3(0, 2, 1)});
    b.element(typemass, point, {1});
    b.element(typememb3, none, {3, 4, 5});
    const auto masses = groupmasses(b.m, b.s);
    ASSERT_EQ(masses.size(), 5u);
    const double m1 = 8000 * 0.04 * 6, m2 = 1000 * 0.1 * 8;
    EXPECT_NEAR(masses[1].mass, m1, 1e-9 * m1);
    EXPECT_NEAR((masses[1].centre - far - vec3(3, 0, 0)).norm(), 0, 1e-6);
    const double own = std::pow(0.2, 4) / 12 * 6 * 8000 / m1;  // of the section about one axis
    EXPECT_NEAR(masses[1].radius[0], std::sqrt(2 * own), 1e-6);
    EXPECT_NEAR(masses[1].radius[1], std::sqrt(3 + own), 1e-6);
    EXPECT_NEAR(masses[2].mass, m2, 1e-9 * m2);
    EXPECT_NEAR((masses[2].centre - far - vec3(2, 1, 1)).norm(), 0, 1e-6);
    EXPECT_NEAR(masses[2].radius[2], std::sqrt((16 + 4) / 12.0), 2e-3) << "thickness counts a bit";
    EXPECT_EQ(masses[3].mass, 30);
    EXPECT_NEAR(masses[3].radius[1], std::sqrt(8 / 30.0), 1e-6);
    EXPECT_EQ(masses[4].mass, 0);
    EXPECT_EQ(masses[4].centre, vec3(0, 0, 0));
    EXPECT_NEAR(masses[0].mass, m1 + m2 + 30, 1e-9 * m1);
}

// --- published cases ----------------------------------------------------------------------------

// Eight arms of 5 m on pins, side 0.125 m, four elements an arm, in the plane.
TEST(Verification, PinEndedDoubleCross) {
    build b = vibrating(16);
    b.m.twod = true;
    const int g = squarebar(b, 0.125), middle = b.node(0, 0);
    for (int arm = 0; arm < 8; ++arm) {
        const vec3 to = 5 * vec3(std::cos(M_PI / 4 * arm), std::sin(M_PI / 4 * arm), 0);
        const int first = b.chain(typebeam, g, to / 4, to, 3);
        b.element(typebeam, g, {middle, first});
        b.fix(first + 3, {1, 2});
    }
    const results r = modesof(b);
    for (int k = 1; k <= 16; ++k) {
        const double wanted = k == 1 ? 11.336 : k < 9 ? 17.709 : k == 9 ? 45.345 : 57.390;
        row("FV2 double cross", k, "BEAM, 4 an arm", "NF", 0, wanted, hertz(r, k), 0.012);
        const bool again = (k > 4 && k < 9) || k > 12;
        EXPECT_NEAR(hertz(r, k), hertz(r, again ? k - 1 : k), 1e-7 * wanted) << "as often as it is";
    }
}

// Ten metres of round bar, clamped, at its tip two masses on rigid arms of 2 m.
TEST(Verification, CantileverWithMassesOffItsAxis) {
    build b = vibrating(6);
    const double d = 0.5, i = M_PI / 64 * std::pow(d, 4);
    const int g = b.bar(steel, M_PI / 4 * d * d, {i, i, 2 * i}, density);
    b.fix(b.chain(typebeam, g, {0, 0, 0}, {10, 0, 0}, 5), clamped);
    const int one = b.node(10, 2, 0), other = b.node(10, -2, 0);
    b.element(typerigid, g, {6, one}), b.element(typerigid, g, {6, other});
    const int lc = b.addcase(caseaccz);
    for (int k = 1; k <= 3; ++k) b.load(lc, one, k, 10000), b.load(lc, other, k, 1000);
    const results r = modesof(b);
    const double wanted[6] = {1.723, 1.727, 7.413, 9.972, 18.155, 26.957};
    for (int k = 1; k <= 6; ++k)
        row("FV4 cantilever with off-centre masses", k, "BEAM 5, RIGID 2", "NF", 0, wanted[k - 1],
            hertz(r, k), 0.01);
}

// Ten metres of a square bar of 2 m: shear and rotary inertia count. Mode 8 is the third half wave
// of bending on five elements, hence the finer mesh beside the published one.
TEST(Verification, DeepSimplySupportedBeam) {
    const double wanted[9] = {42.649, 42.649, 77.542, 125.00, 148.31,
                              148.31, 233.10, 284.55, 284.55};
    for (const int elements : {5, 20}) {
        build b = vibrating(9);
        b.s.shear = 0.85;
        b.fix(b.chain(typebeam, squarebar(b, 2), {0, 0, 0}, {10, 0, 0}, elements), {1, 2, 3, 4});
        b.fix(elements + 1, {2, 3});
        const results r = modesof(b);
        for (int k = 1; k <= 9; ++k)
            row("FV5 deep beam", k, "BEAM " + std::to_string(elements), "NF", 0, wanted[k - 1],
                hertz(r, k),
                elements > 5 ? 0.005
                : k < 7      ? 0.02
                             : 0.06);
    }
}

// What modes leave free is held in the load cases of the same run.
TEST(Modes, BesideLoadCasesAreThoseOfARunOfTheirOwn) {
    build b = vibrating(6);
    const int point = b.group({}), hub = b.node(0, 0, 0), far = b.node(3, 0, 0);
    mat6 k = mat6::Zero();
    k.diagonal().head<3>().setConstant(1000);
    b.element(typespringt, b.spring(k), {hub});
    b.element(typerigid, point, {hub, far});
    b.chain(typebeam, b.bar(1, 1, {1, 1, 1}), {9, 9, 9}, {9, 9, 8}, 1);  // has rotations
    b.fix({3, 4}, clamped);
    b.field(point, fielddensity) = 2;
    b.field(point, fieldixx) = b.field(point, fieldiyy) = b.field(point, fieldizz) = 0.1;
    b.element(typemass, point, {far});
    b.addcase();
    b.load(1, hub, 2, 5);
    const results own = modesof(b), cases = b.solve();
    wanted all;
    all.modes = true;
    const results both = b.solve(0, all);
    EXPECT_EQ(both.u.u, cases.u.u);
    EXPECT_EQ(both.modes.value, own.modes.value);
    EXPECT_EQ(both.modes.shape, own.modes.shape);
    EXPECT_NEAR(moved(both, 1, far, 2), 0.005, 1e-12);
}

// A wall that tapers from 5 m to 1 m over ten, 0.05 m thick, swings in its plane.
TEST(Verification, TaperedCantileverInItsPlane) {
    const double wanted[6] = {44.623, 130.03, 162.70, 246.05, 379.90, 391.44};
    for (const int type : {typememb4, typeshell4, typeshell3}) {
        build b = vibrating(6);
        const auto at =
            b.mesh(type, b.plate(steel, 0.3, 0.05, density), 32, 16,
                   [](double r, double s) { return vec3(10 * r, (5 - 4 * r) * (s - 0.5), 0); });
        b.fixall({3, 4, 5});
        b.fix(at.left(), {1, 2, 6});
        const results r = modesof(b);
        for (int k = 0; k < 6; ++k)
            row("FV32 tapered cantilever", k + 1, meshname(type, 32, 16), "NF", 0, wanted[k],
                hertz(r, k + 1), type == typeshell3 ? 0.014 : 0.008);
    }
}

// --- plates -------------------------------------------------------------------------------------

// Ten metres square, 0.05 m thick; x, y and the drilling are held everywhere.
static build::grid squareplate(build& b, int type, int n) {
    const build::grid at = b.mesh(type, b.plate(steel, 0.3, 0.05, density), n, n,
                                  [](double r, double s) { return vec3(10 * r, 10 * s, 0); });
    b.fixall({1, 2, 6});
    return at;
}

// The printed targets stand beside the coarse mesh; the fine one meets converged series (lambda of
// omega a^2 sqrt(rho h / D)), which lie up to 1.2 % below some of them.
static const double plateunit =
    std::sqrt(steel * 0.05 * 0.05 / (12 * 0.91 * density)) / (2 * M_PI * 100);
static const meshes coarseandfine = {{8, 0.01}, {32, 0.001}};

TEST(Verification, FreeSquarePlate) {
    const double printed[5] = {1.622, 2.360, 2.922, 4.233, 4.233};
    const double series[5] = {13.468, 19.596, 24.270, 34.801, 34.801};
    for (const auto [n, tolerance] : coarseandfine)
        for (const int type : {typeshell4, typeshell3}) {
            build b = vibrating(8);
            squareplate(b, type, n);
            const results r = modesof(b);
            for (std::size_t k = 0; k < 3; ++k) EXPECT_EQ(r.modes.value[k], 0);
            for (int k = 0; k < 5; ++k)
                row("FV12 free plate", k + 4, meshname(type, n, n), "NF, B", printed[k],
                    series[k] * plateunit, hertz(r, k + 4),
                    type == typeshell4 ? tolerance : 3 * tolerance);
            const double pair = type == typeshell4 ? 1e-6 : 1e-2;  // one-way diagonals part it
            EXPECT_NEAR(hertz(r, 7), hertz(r, 8), pair * hertz(r, 7));
            EXPECT_TRUE(b.log.warnings().empty()) << b.log.text();
            expectwords(b.log.text(), {"mechanisms): 3"});
        }
}

TEST(Verification, CantileveredSquarePlate) {
    const double printed[6] = {0.421, 1.029, 2.582, 3.306, 3.753, 6.555};
    const double series[6] = {3.4710, 8.5066, 21.285, 27.199, 30.955, 54.183};
    for (const auto [n, tolerance] : coarseandfine)
        for (const int type : {typeshell4, typeshell3}) {
            build b = vibrating(6);
            b.fix(squareplate(b, type, n).left(), {3, 4, 5});
            const results r = modesof(b);
            for (int k = 0; k < 6; ++k)
                row("FV16 cantilevered plate", k + 1, meshname(type, n, n), "NF, B", printed[k],
                    series[k] * plateunit, hertz(r, k + 1),
                    type == typeshell4 ? tolerance : 2 * tolerance);
        }
}

// Simply supported: omega = pi^2 (i^2 + j^2) / a^2 sqrt(D / rho h), equal for i, j and j, i.
TEST(Verification, SupportedSquarePlateHasItsPairs) {
    build b = vibrating(6);
    const build::grid at = squareplate(b, typeshell4, 24);
    for (const auto& edge : {at.left(), at.right(), at.bottom(), at.top()}) b.fix(edge, {3});
    const results r = modesof(b);
    const int waves[6] = {2, 5, 5, 8, 10, 10};
    for (int k = 0; k < 6; ++k)
        row("Supported square plate", k + 1, "SHELL4 24 x 24", "Bl", 0,
            waves[k] * M_PI * M_PI * plateunit, hertz(r, k + 1), 0.01);
    EXPECT_NEAR(hertz(r, 2), hertz(r, 3), 1e-6 * hertz(r, 2)) << "one turns into the other";
    EXPECT_NEAR(hertz(r, 5), hertz(r, 6), 1e-4 * hertz(r, 5)) << "alike in the plate, not the mesh";
}
