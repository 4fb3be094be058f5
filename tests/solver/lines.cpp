// SPDX-License-Identifier: GPL-3.0-or-later
// Lines, springs, masses and rigid links against closed forms, to six digits (Roark's Formulas for
// Stress and Strain, 7th ed., chapter 8, where nothing else is told).
#include <Eigen/LU>
#include <cmath>

#include "solver/loads/loads.h"
#include "tests/solver/verify.h"

static const double modulus = 210000, poisson = 0.3, shearmodulus = modulus / 2.6;
static const double area = 1200, ixx = 4e6, iyy = 1e6, izz = 3e5, density = 7.85e-6;
static const double wxx = 1e5, wyy = 5e4, wzz = 2e4;

static int beamgroup(build& b) {
    const int g = b.bar(modulus, area, {ixx, iyy, izz}, density);
    b.field(g, fieldwxx) = wxx, b.field(g, fieldwyy) = wyy, b.field(g, fieldwzz) = wzz;
    return g;
}

// Beams of that group along x, clamped at node 1.
static build cantilever(double length) {
    build b;
    b.fix(b.chain(typebeam, beamgroup(b), {0, 0, 0}, {length, 0, 0}, 1), clamped);
    return b;
}

static mat6 diagonal(std::initializer_list<double> values) {
    mat6 k = mat6::Zero();
    std::copy(values.begin(), values.end(), k.diagonal().begin());
    return k;
}

static void row(const char* what, const char* mesh, const char* source, double truth,
                double value) {
    prove({"line", what, mesh, source, 0, truth, value, 1e-6});
}

static void expectnear(double value, double wanted, const char* what) {
    EXPECT_NEAR(value, wanted, 1e-6 * std::fabs(wanted) + 1e-300) << what;
}

// --- beams --------------------------------------------------------------------------------------

// A cantilever along any direction under a force and, in another case, a moment at its tip.
TEST(Beam, CantileverTipMovesAsInTheClosedFormWhateverItsDirection) {
    const double length = 2000, cube = std::pow(length, 3);
    const vec3 flexible(length / (modulus * area), cube / (3 * modulus * iyy),
                        cube / (3 * modulus * ixx));
    const vec3 turning(length / (shearmodulus * izz), length / (modulus * ixx),
                       length / (modulus * iyy));
    const vec3 f(500, -700, 900);
    for (const vec3& direction : {vec3(1, 0, 0), vec3(0, 1, 0), vec3(0, 0, 1), vec3(0, 0, -1),
                                  vec3(1, 2, 2), vec3(-3, 1, 0.5)}) {
        build b;
        const int g = beamgroup(b);
        b.field(g, fieldrotation) = 25;
        b.single(typebeam, g, {vec3(0, 0, 0), length * direction.normalized()});
        b.fix(1, clamped);
        const mat3 axes = lineaxes(elementat(b.m, b.s, 1));
        for (int k = 0; k < 3; ++k) b.load(1, 2, k + 1, f[k]);
        b.addcase();
        for (int k = 0; k < 3; ++k) b.load(2, 2, k + 4, f[k]);
        const results r = solvebalanced(b);
        const vec3 u = flexible.cwiseProduct(axes * f), w = turning.cwiseProduct(axes * f);
        EXPECT_LT((axes * movedby(r, 1, 2) - u).norm(), 1e-9 * u.norm());
        EXPECT_LT((axes * movedby(r, 2, 2, 4) - w).norm(), 1e-9 * w.norm());
    }
}

// Section forces of the part beyond the cut, as they act on the face that looks along +e1.
TEST(Beam, EndStressesFollowTheSignsOfTheSectionForces) {
    const double length = 1000, q = 3;
    build b = cantilever(length);
    vec6 load;
    load << 5000, 300, 200, 7000, 90000, 40000;
    b.load(1, 2, load);
    b.press(b.addcase(), 1, 2, q);
    const results r = solvebalanced(b);
    const double wanted[2][4] = {{load[0] / area, (load[4] - load[2] * length) / wxx,
                                  (load[5] + load[1] * length) / wyy, load[3] / wzz},
                                 {load[0] / area, load[4] / wxx, load[5] / wyy, load[3] / wzz}};
    for (int k = 0; k < 8; ++k)
        expectnear(stressofline(b, r, 0, 1)[k], wanted[k / 4][k % 4], "end stress");
    expectnear(stressofline(b, r, 0, 2)[2], q * length * length / 2 / wyy,
               "at the clamp of a pressed one");
    EXPECT_LT(std::fabs(stressofline(b, r, 0, 2)[6]), 1e-9) << "at its free end";
}

TEST(Pipe, IsTheTubeThatItsAreaAndInertiaTell) {
    const double outer = 100, inner = 90;
    const double a = M_PI / 4 * (outer * outer - inner * inner);
    const double i = M_PI / 64 * (std::pow(outer, 4) - std::pow(inner, 4));
    build b;
    b.single(typepipe, b.bar(modulus, a, {i, 0, 0}), {{0, 0, 0}, {0, 0, 2000}});
    b.fix(1, clamped);
    b.load(1, 2, 1, 500), b.load(1, 2, 6, 3e5);
    const results r = b.solve();
    expectnear(moved(r, 1, 2, 1), 500 * 8e9 / (3 * modulus * i), "bending");
    expectnear(moved(r, 1, 2, 6), 3e5 * 2000 / (shearmodulus * 2 * i), "torsion");
    const linestress value = stressofline(b, r, 0, 1);
    expectnear(std::hypot(value[1], value[2]), 500 * 2000 * outer / 2 / i, "bending stress");
    expectnear(value[3], 3e5 * outer / 2 / (2 * i), "torsion stress");
}

TEST(Verification, BeamsUnderEvenLoad) {
    const double q = 2, length = 3000;
    const struct {
        const char* name;
        std::initializer_list<int> left, right;
        double factor;  // w E I / q L^4 in the middle
    } cases[] = {{"Beam on two supports, even load", {1, 2, 3, 4}, {2, 3}, 5.0 / 384},
                 {"Clamped beam, even load", clamped, clamped, 1.0 / 384},
                 {"Propped cantilever, even load", clamped, {2, 3}, 1.0 / 192},
                 {"Cantilever, even load, at the middle", clamped, {}, 17.0 / 384}};
    for (const auto& c : cases) {
        build b;
        b.chain(typebeam, beamgroup(b), {0, 0, 0}, {length, 0, 0}, 2);
        b.fix(1, c.left), b.fix(3, c.right);
        b.pressall(1, 2, q);
        row(c.name, "BEAM 2", "R", c.factor * q * std::pow(length, 4) / (modulus * iyy),
            moved(solvebalanced(b), 1, 2, 2));
    }
}

// --- springs ------------------------------------------------------------------------------------

TEST(Verification, SpringsUnderBeams) {
    const double p = 5000, length = 2000, k = 800, kr = 3e8, cube = std::pow(length, 3);
    {
        build b;
        b.chain(typebeam, beamgroup(b), {0, 0, 0}, {length, 0, 0}, 2);
        const int support = b.spring(diagonal({0, k}));
        b.element(typespringt, support, {1}), b.element(typespringt, support, {3});
        b.fix({1, 3}, {1, 3, 4});
        b.load(1, 2, 2, p);
        const results r = solvebalanced(b);
        row("Beam on two springs, load in the middle", "BEAM 2, SPRING-T 2", "R",
            p / (2 * k) + p * cube / (48 * modulus * iyy), moved(r, 1, 2, 2));
        row("Beam on two springs, reaction of a spring", "BEAM 2, SPRING-T 2", "closed", -p / 2,
            reacted(r, 1, 3, 2));
    }
    {
        build b;
        b.chain(typebeam, beamgroup(b), {0, 0, 0}, {length, 0, 0}, 1);
        b.element(typespringr, b.spring(diagonal({0, 0, 0, 0, 0, kr})), {1});
        b.fix(1, {1, 2, 3, 4, 5});
        b.load(1, 2, 2, p);
        row("Cantilever in a turning spring", "BEAM 1, SPRING-R 1", "R",
            p * length * length / kr + p * cube / (3 * modulus * iyy),
            moved(solvebalanced(b), 1, 2, 2));
    }
    {
        // Tip to tip: two cantilevers joined by a spring share the load.
        build b = cantilever(length);
        b.chain(typebeam, 1, {length, 0, 0}, {2 * length, 0, 0}, 1);
        b.element(typespring2, b.spring(diagonal({0, k})), {2, 3});
        b.fix(4, clamped);
        b.load(1, 2, 2, p);
        const double beam = 3 * modulus * iyy / cube, both = 1 / (1 / k + 1 / beam);
        row("Cantilevers joined by a spring", "BEAM 2, SPRING2 1", "closed", p / (beam + both),
            moved(solvebalanced(b), 1, 2, 2));
    }
    {
        // A full matrix to ground: u = K^-1 f.
        mat6 matrix = diagonal({5, 6, 7, 800, 900, 1000});
        matrix(0, 4) = matrix(4, 0) = 30;
        matrix(1, 2) = matrix(2, 1) = -2;
        vec6 f;
        f << 10, -20, 30, 400, 500, -600;
        build b;
        const int beam = beamgroup(b);
        b.field(beam, fieldmodulus) = 1e-3;  // hangs on it free of load
        b.element(typespring, b.spring(matrix), {b.chain(typebeam, beam, {3, 4, 5}, {4, 4, 5}, 1)});
        b.load(1, 1, f);
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

TEST(Refusal, SpringMatricesAndMasses) {
    const struct {
        int type;
        std::function<void(groupdata&)> spoil;
        const char* word;
    } rows[] = {
        {typespring, [](groupdata& g) { g.spring.setZero(); }, "no stiffness"},
        {typespringt, [](groupdata& g) { g.spring(0, 0) = 0; }, "no stiffness"},  // of rotations
        {typespring2, [](groupdata& g) { g.spring(0, 1) = 1; }, "not symmetric"},
        {typespringr, [](groupdata& g) { g.spring(3, 3) = -1; }, "negative"},
        {typemass, [](groupdata& g) { g.field[fielddensity] = -1; }, "below 0"},
    };
    for (const auto& bad : rows) {
        build b;
        const int g = b.spring(diagonal({1, 0, 0, 0, 2, 0}));
        bad.spoil(b.m.groups[std::size_t(g)]);
        b.node(0, 0), b.node(1, 0);
        b.element(bad.type, g, {1, 2});
        expectwords(b.refusal(), {bad.word, "Element 1"});
    }
}

// Springs and masses give a model no rotations, beams do.
TEST(Lines, SpringsAndMassesWithoutRotationsAreTold) {
    const auto warned = [](bool turns, bool beam, bool twod) {
        build b;
        b.m.twod = twod;
        const int g = b.bar(1000, 1, {1, 1, 1});
        b.chain(beam ? typebeam : typetruss, g, {0, 0, 0}, {9, 0, 0}, 1);
        const int mass = b.group({{fielddensity, 2.0}, {fieldizz, turns ? 1.0 : 0.0}});
        b.element(typemass, mass, {2});
        const double k = turns ? 7 : 0;
        b.element(typespring, b.spring(diagonal({5, 5, 5, 0, 0, k})), {2});
        b.fix(1, clamped), b.load(1, 2, 1, 1);
        b.solve();
        return std::ranges::count_if(b.log.warnings(), [](const std::string& w) {
            return w.starts_with("What 2 element(s), the first of them element 2");
        });
    };
    for (const bool twod : {false, true}) {
        EXPECT_EQ(warned(true, false, twod), 1);
        EXPECT_EQ(warned(true, true, twod), 0);
        EXPECT_EQ(warned(false, false, twod), 0);
    }
}

// Turns and ways of a body compare by its length, whatever that is counted in.
TEST(Lines, RigidArmOnASpringInAnyUnitOfLength) {
    for (const double unit : {1e-7, 1.0, 1e7}) {
        build b;
        const double way = 3e5 / unit, turn = 2e4 * unit, arm = 0.8 * unit;
        const int g = b.spring(diagonal({way, way, way, turn, turn, turn}));
        for (const double x : {2.9, 2.9, 3.7}) b.node(x * unit, -0.2 * unit, -2.7 * unit);
        b.element(typespring2, g, {1, 2}), b.element(typerigid, g, {2, 3});
        const double i = std::pow(unit, 4);  // a beam, so that there are rotations
        b.element(typebeam, b.bar(1, unit * unit, {i, i, i}), {1, b.node(0, 0)});
        b.fix({1, 4}, clamped);
        b.load(1, 3, 3, 10);
        const double due = 10 / way + 10 * arm * arm / turn;
        EXPECT_NEAR(movedby(b.solve(), 1, 3).z() / due, 1, 1e-6) << unit;
    }
}

// A spring across a gap is what its matrix says; that it turns the structure is told.
TEST(Springs, BetweenNodesApartAreToldWhenTheyUnbalance) {
    const struct {
        double arm;
        vec3 at;
    } rows[] = {{0, vec3::Zero()}, {2, vec3::Zero()}, {2, {3e7, 1e6, -2e6}}, {0, {3e7, 1e6, -2e6}}};
    for (const auto& [arm, at] : rows) {
        SCOPED_TRACE(at.norm());
        const bool apart = arm > 0;
        build b;
        const int g = b.spring(diagonal({5, 5, 5, 0, 0, 0}));
        b.single(typespring2, g, {at, at + arm * vec3::UnitX()});
        b.fix(1, clamped);
        b.load(1, 2, 2, 10);
        EXPECT_NEAR(moved(b.solve(), 1, 2, 2), 2, 1e-12);
        EXPECT_EQ(b.log.warnings().size(), apart ? 1u : 0u) << b.log.text();
        EXPECT_EQ(b.log.text().find("SPRING2 element 1 lie apart") != std::string::npos, apart);
        b.m.elements[1].node[1] = 1;
        expectwords(b.refusal(), {"node 1 at both ends"});
    }
}

// --- bodies, arms, frames -----------------------------------------------------------------------

TEST(Verification, AcceleratedBodies) {
    const double length = 2000, g = 9.81;
    for (const int type : {typetruss, typebeam}) {
        build b;
        b.fix(b.chain(type, beamgroup(b), {0, 0, 0}, {length, 0, 0}, 3), clamped);
        b.onlycase(caseaccx, {g, 0, 0, 0, 1});
        row("Bar hanging under its weight, tip", type == typetruss ? "TRUSS 3" : "BEAM 3", "closed",
            density * g * length * length / (2 * modulus), moved(solvebalanced(b), 1, 4, 1));
    }
    // A mass at the tip of a bar without mass, turned about z: force m a r, moment I a.
    const double mass = 40, inertia = 5e6, spin = 3, bend = modulus * iyy, metre = 0.001;
    build b = cantilever(length);
    b.element(typemass, b.group({{fielddensity, mass}, {fieldizz, inertia}}), {2});
    b.field(1, fielddensity) = 0;
    b.m.twod = true;
    b.onlycase(caseaccx + 1, {g, 0, 0, 0, 1});
    b.addcase(caseaccrz, {spin, 0, 0, 0, 1});
    const results r = solvebalanced(b);
    row("Mass at the tip of a cantilever, acceleration across", "BEAM 1, MASS 1", "closed",
        mass * g * std::pow(length, 3) / (3 * bend), moved(r, 1, 2, 2));
    row("Mass at the tip of a cantilever, spun up about its root", "BEAM 1, MASS 1", "closed",
        mass * spin * metre * length * std::pow(length, 3) / (3 * bend) +
            inertia * spin * metre * length * length / (2 * bend),
        moved(r, 2, 2, 2));
}

// A crank: cantilever along x, rigid arm along y, load along z at its end.
TEST(Verification, RigidArms) {
    const double length = 1500, arm = 400, p = 300;
    build b = cantilever(length);
    b.element(typerigid, b.group({}), {2, b.node(length, arm)});
    b.load(1, 3, 3, p);
    row("Crank with a rigid arm, end", "BEAM 1, RIGID 1", "R",
        p * std::pow(length, 3) / (3 * modulus * ixx) +
            p * arm * arm * length / (shearmodulus * izz),
        moved(solvebalanced(b), 1, 3, 3));
}

static void ring(build& b, int type, int g, int n) {
    for (int i = 0; i < n; ++i) b.element(type, g, {i + 1, (i + 1) % n + 1});
}

// Four bars pulled apart along a diagonal; half of a bar is a cantilever of side / 2 under p / 2
// across sin 45 and along cos 45.
TEST(Verification, SquareFrame) {
    const double side = 1000, p = 700, d = side / std::sqrt(2.0);
    double drawn[2];
    for (const bool twod : {true, false}) {
        build b;
        b.m.twod = twod;
        b.node(-d, 0), b.node(0, -d), b.node(d, 0), b.node(0, d);
        ring(b, typebeam, beamgroup(b), 4);
        b.fix(1, clamped);
        b.load(1, 3, 1, p);
        const results r = solvebalanced(b);
        EXPECT_EQ(r.dofs.anadof, twod ? 2 : 3);
        drawn[twod] = moved(r, 1, 3, 1);
    }
    const double across = p / 2 * std::sqrt(0.5);
    const double bent = 2 * across * std::pow(side / 2, 3) / (3 * modulus * iyy);
    row("Square frame drawn along its diagonal", "BEAM 4, 2-D", "closed",
        2 * (bent + across * side / (modulus * area)) * std::sqrt(0.5), drawn[true]);
    EXPECT_NEAR(drawn[false], drawn[true], 1e-9 * drawn[true]);
}

// Warren girder of two panels and one bar above: work of the bar forces, which a unit load makes
// 1/2 and -1 in the chords, 1/sqrt 2 in the diagonals.
TEST(Verification, WarrenGirder) {
    const double p = 9000, a = 1000, section = 100, root = std::sqrt(2.0);
    build b;
    b.m.twod = true;
    const int g = b.bar(modulus, section);
    b.node(0, 0), b.node(2 * a, 0), b.node(4 * a, 0), b.node(a, a), b.node(3 * a, a);
    const int bars[7][2] = {{1, 2}, {2, 3}, {1, 4}, {4, 2}, {2, 5}, {5, 3}, {4, 5}};
    for (const auto& bar : bars) b.element(typetruss, g, {bar[0], bar[1]});
    b.fix(1, {1, 2}), b.fix(3, {2});
    b.load(1, 2, 2, -p);
    const results r = solvebalanced(b);
    EXPECT_EQ(r.dofs.anadof, 1);
    const double work = 2 * 0.25 * 2 * a + 1 * 2 * a + 4 * 0.5 * root * a;
    row("Warren girder, load in the middle", "TRUSS 7, 2-D", "closed",
        -p * work / (modulus * section), moved(r, 1, 2, 2));
    expectnear(stressofline(b, r, 0, 1)[0], p / 2 / section, "stress below");
    expectnear(stressofline(b, r, 6, 1)[0], -p / section, "stress above");
}

// A frame of bars carries the edges, the panel between them the shear: q = P / (2 h).
TEST(Verification, ShearPanelInAFrame) {
    for (const bool parallelogram : {false, true}) {
        const double width = 300, height = 200, thickness = 2, p = 1000;
        const double skew = parallelogram ? 100 : 0;
        build b;
        b.single(typeshear4, b.plate(70000, poisson, thickness),
                 {{0, 0, 0}, {width, 0, 0}, {width + skew, height, 0}, {skew, height, 0}});
        ring(b, typetruss, b.bar(1e11, 1e3), 4);
        b.fixall({3});
        b.fix({1, 2}, {2}), b.fix(1, {1});
        b.spread(1, {3, 4}, 1, p);
        // Garvey: a parallelogram of angle a between its sides is softer by 1 + 2 cot^2 a / (1+nu)
        const double shear = 70000 / (2 * (1 + poisson)), cot = skew / height;
        const double soft = 1 + 2 * cot * cot / (1 + poisson);
        row(parallelogram ? "Shear panel, parallelogram" : "Shear panel, rectangle",
            "SHEAR4 1, TRUSS 4", "G", p * height / (shear * thickness * width) * soft,
            moved(solvebalanced(b), 1, 3, 1));
    }
}

// What a moment does to a section whose modulus is not told is in no result: that is said, once,
// and of moments alone that are more than rounding.
TEST(Lines, MomentsWithoutASectionModulusAreTold) {
    const struct {
        groupfield missing;
        int along;  // the load's direction at the tip of a beam along x; 4: torsion
        bool told;
    } rows[] = {{fieldwxx, 3, true},  {fieldwxx, 2, false}, {fieldwyy, 2, true},
                {fieldwyy, 3, false}, {fieldwzz, 4, true},  {fieldwzz, 3, false}};
    for (const auto& row : rows) {
        build b = cantilever(1000);
        b.field(1, row.missing) = 0;
        b.load(1, 2, row.along, 1000);
        b.solve();
        ASSERT_EQ(b.log.warnings().size(), row.told ? 1u : 0u) << row.missing << row.along;
        if (row.told)
            expectwords(b.log.warnings()[0],
                        {"1 line element(s), the first of them element 1", "no section modulus"});
    }
}
