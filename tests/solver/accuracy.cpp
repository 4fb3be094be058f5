// SPDX-License-Identifier: GPL-3.0-or-later
// Models that are hard on the numbers: planes at any angle and far from the origin, stiffness over
// many powers of ten, next to mechanisms.
#include <Eigen/Geometry>
#include <cmath>
#include <random>

#include "tests/solver/verify.h"

// --- flat models in any plane -------------------------------------------------------------------

// Moments without a section modulus would be told.
static int withmoduli(build& b, int g) {
    for (const groupfield w : {fieldwxx, fieldwyy, fieldwzz}) b.field(g, w) = 1;
    return g;
}

static vec3 asstored(const vec3& at) {
    vec3 stored;
    for (int k = 0; k < 3; ++k) {
        const volatile float single = float(at[k]);  // the compiler would keep the double
        stored[k] = double(single);
    }
    return stored;
}

namespace {
struct placing {
    const char* name;
    mat3 turn;
    vec3 shift;
};
}  // namespace

static std::vector<placing> placings() {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> some(-1, 1);
    std::vector<placing> list = {{"flat", mat3::Identity(), vec3::Zero()},
                                 {"wall at 30 degrees",
                                  Eigen::AngleAxisd(M_PI / 6, vec3::UnitZ()).toRotationMatrix() *
                                      Eigen::AngleAxisd(M_PI / 2, vec3::UnitX()).toRotationMatrix(),
                                  vec3::Zero()}};
    // One draw a line: the order in which arguments are evaluated is the compiler's own.
    for (const double far : {0.0, 3e5, 0.0, 3e5, 0.0, 3e5}) {
        vec3 axis;
        for (double& a : axis) a = some(random);
        const double angle = 3 * some(random);
        list.push_back({far > 0 ? "any, far" : "any",
                        Eigen::AngleAxisd(angle, axis.normalized()).toRotationMatrix(),
                        far * vec3(1, -0.7, 0.4)});
    }
    return list;
}

static void place(build& b, const placing& p) {
    for (vec3& x : b.m.nodes) x = asstored(p.turn * x + p.shift);
}

// A load or support in directions of the plane before it was placed.
static void loadplaced(build& b, const placing& p, int n, const vec3& force, bool moment = false) {
    const vec3 turned = p.turn * force;
    for (int k = 0; k < 3; ++k) b.load(1, n, k + 1 + 3 * moment, turned[k]);
}

// A plane that leans on the axes by less than Singles far away tell, but is told with more digits:
// plates move across it, not along an axis.
TEST(Accuracy, PlatesThatLeanALittleMoveAcrossTheirPlane) {
    build b;
    const double lean = 2e-4, far = 1e6;
    const vec3 normal = vec3(lean, 0, 1).normalized();
    const build::grid at = b.mesh(typeplate4, b.plate(2e5, 0.3, 10), 3, 3, [&](double r, double s) {
        return vec3(far + 300 * r, far + 300 * s, far - lean * 300 * r);
    });
    b.fix(at.left(), clamped);
    for (const int n : at.right())
        b.load(1, n, vec6{{100 * normal.x(), 0, 100 * normal.z(), 0, 0, 0}});
    const vec3 tip = movedby(b.solve(), 1, at.number(3, 1));
    EXPECT_LT(tip.cross(normal).norm(), 1e-9 * tip.norm());
}

// The displacements of a model that is flat in z = 0 before it is placed.
TEST(Accuracy, FlatModelsStandInAnyPlaneAndFarAway) {
    const struct {
        const char* name;
        void (*make)(build&, const placing&);
    } models[] = {
        {"membrane under its weight",
         [](build& b, const placing& p) {
             const int g = b.plate(2e5, 0.3, 10);
             const build::grid at = b.mesh(typememb4, g, 6, 4, [](double r, double s) {
                 return vec3(600 * r, 400 * s + 20 * std::sin(9 * r), 0);
             });
             b.fix(at.bottom(), {1, 2, 3});
             place(b, p);
             b.pressall(1, 2, -0.1);
         }},
        {"plates and membranes, pulled and bent",
         [](build& b, const placing& p) {
             const int g = b.plate(2e5, 0.3, 10);
             for (const int type : {typememb3, typeplate3}) {
                 const build::grid at = b.mesh(type, g, 5, 3, [](double r, double s) {
                     return vec3(500 * r + 10 * s, 300 * s, 0);
                 });
                 if (type == typememb3) b.fix(at.left(), clamped);
                 if (type == typememb3) continue;
                 for (int e = at.firstelement; e < at.firstelement + at.elements; ++e)
                     for (int& n : b.m.elements[std::size_t(e)].node)
                         n -= n > 0 ? at.firstnode - 1 : 0;
                 b.m.nodes.resize(std::size_t(at.firstnode));
             }
             place(b, p);
             for (const int n : {6, 12, 18, 24}) {
                 loadplaced(b, p, n, {100, 30, 5});
                 loadplaced(b, p, n, {0, 700, 0}, true);
             }
             for (int e = 1; e <= b.m.nelems(); ++e)
                 if (b.m.elements[std::size_t(e)].type == typeplate3) b.press(1, e, 3, 0.01);
             const vec3 alone = p.turn * vec3(500, -300, 0);  // no moment anywhere
             b.addcase();
             for (const int n : {9, 15, 17})
                 for (int k = 0; k < 3; ++k) b.load(2, n, k + 1, alone[k]);
         }},
        {"truss",
         [](build& b, const placing& p) {
             const int g = b.bar(2e5, 100);
             for (int i = 0; i < 8; ++i) b.node(100 * (i / 2), 100 * (i % 2), 0);
             for (int i = 0; i < 6; ++i) b.element(typetruss, g, {i + 1, i + 3});
             for (int i = 0; i < 4; ++i) b.element(typetruss, g, {2 * i + 1, 2 * i + 2});
             for (int i = 0; i < 3; ++i) b.element(typetruss, g, {2 * i + 1, 2 * i + 4});
             b.fix({1, 2}, {1, 2, 3});
             place(b, p);
             loadplaced(b, p, 8, {10, -1000, 0});
         }},
        {"truss and membrane with rigid arms",
         [](build& b, const placing& p) {
             const int g = b.bar(2e5, 100);
             for (int i = 0; i < 6; ++i) b.node(100 * (i / 2), 80 * (i % 2), 0);
             b.node(300, 40, 0);
             for (int i = 0; i < 4; ++i) b.element(typetruss, g, {i + 1, i + 3});
             b.element(typetruss, g, {1, 4}), b.element(typetruss, g, {3, 6});
             b.element(typetruss, g, {3, 4});
             b.element(typerigid, g, {5, 6}), b.element(typerigid, g, {5, 7});
             const build::grid at =
                 b.mesh(typememb4, b.plate(2e5, 0.3, 10), 4, 2,
                        [](double r, double s) { return vec3(400 * r, 200 * s + 500, 0); });
             const int arm = b.node(500, 600, 0);
             for (const int n : at.right()) b.element(typerigid, g, {arm, n});
             b.fix({1, 2}, {1, 2, 3}), b.fix(at.left(), {1, 2, 3});
             place(b, p);
             loadplaced(b, p, 7, {50, -300, 0}), loadplaced(b, p, arm, {100, 200, 0});
         }},
    };
    for (const auto& kind : models) {
        Eigen::VectorXd flat;
        for (const placing& p : placings()) {
            SCOPED_TRACE(std::string(kind.name) + ", " + p.name);
            build b;
            kind.make(b, p);
            const results r = b.solve();
            Eigen::VectorXd u = Eigen::VectorXd::Zero(3 * b.m.nnodes());
            for (int n = 1; n <= b.m.nnodes(); ++n)
                for (int lc = 1; lc <= r.u.cases; ++lc)
                    u.segment<3>(3 * n - 3) += p.turn.transpose() * movedby(r, lc, n);
            if (flat.size() == 0) flat = u;
            // Corners are where Singles put them.
            const double much = p.shift.norm() > 0 ? 2e-3 : 1e-5;
            EXPECT_LT((u - flat).norm(), much * flat.norm());
            EXPECT_TRUE(b.log.warnings().empty()) << b.log.warnings()[0];
        }
    }
}

// Elements of 1 in planes at any angle, so far away that rounding tilts each by some degrees: wrong
// by no more than the warning says.
TEST(Accuracy, SmallFlatElementsFarAwayAreWrongByNoMoreThanTold) {
    std::mt19937 random(8);
    std::uniform_real_distribution<double> some(-1, 1);
    for (const int type : {typememb3, typememb4, typeplate3, typeplate4})
        for (const double far : {1e5, 3e5, 1e6}) {
            SCOPED_TRACE(std::string(factsof(type).name) + " at " + std::to_string(far));
            const bool bends = type >= typeplate3;
            const mat3 turn = Eigen::Quaterniond(some(random), some(random), some(random), 1)
                                  .normalized()
                                  .toRotationMatrix();
            const vec3 force = turn * (bends ? vec3(0, 0, 1) : vec3(0.3, 1, 0));
            std::vector<vec3> moves[2];
            double told = 0.005;  // what nothing is said of
            for (const double at : {0.0, far}) {
                build b;
                const build::grid g =
                    b.mesh(type, b.plate(2e5, 0.3, 1), 12, 4, [&](double r, double s) {
                        const vec3 x = turn * vec3(12 * r, 4 * s, 0) + vec3(at, at, -at) / 2;
                        return at > 0 ? asstored(x) : x;
                    });
                if (bends)
                    b.fix(g.left(), clamped);
                else
                    b.fix(g.left(), {1, 2, 3});
                for (const int n : g.right())
                    for (int k = 0; k < 3; ++k) b.load(1, n, k + 1, force[k]);
                const results r = b.solve();
                for (int n = 1; n <= b.m.nnodes(); ++n) moves[at > 0].push_back(movedby(r, 1, n));
                const std::string log = b.log.text(), words = "wrong by about ";
                if (const std::size_t place = log.find(words); place != log.npos)
                    told = std::max(told, std::stod(log.substr(place + words.size())) / 100);
            }
            double apart = 0, size = 0;
            for (std::size_t i = 0; i < moves[0].size(); ++i) {
                apart += (moves[1][i] - moves[0][i]).squaredNorm();
                size += moves[0][i].squaredNorm();
            }
            EXPECT_LT(std::sqrt(apart / size), told);
        }
}

// A curved membrane that turns from element to element by less than rounding might tilt them, but
// rises by more than rounding might lift its nodes, is not held as if it were flat.
TEST(Accuracy, CurvedMembranesFarAwayAreNotHeldFlat) {
    const mat3 turn = Eigen::AngleAxisd(0.7, vec3(1, 2, -0.7).normalized()).toRotationMatrix();
    const auto largest = [&](double far) {
        build b;
        const build::grid at =
            b.mesh(typememb4, b.plate(2e5, 0.3, 0.1), 12, 8, [&](double r, double s) {
                const vec3 x = turn * vec3(10 * std::cos(1.2 * r), 10 * std::sin(1.2 * r), 8 * s);
                return far > 0 ? asstored(x + far / 2 * vec3(1, 1, 1)) : x;
            });
        b.fix(at.bottom(), {1, 2, 3}), b.fix(at.left(), {1, 2, 3}), b.fix(at.right(), {1, 2, 3});
        const vec3 pull = turn.col(2);
        for (const int n : at.top())
            for (int k = 0; k < 3; ++k) b.load(1, n, k + 1, pull[k]);
        const results r = b.solve();
        double most = 0;
        for (int n = 1; n <= b.m.nnodes(); ++n) most = std::max(most, movedby(r, 1, n).norm());
        return most;
    };
    EXPECT_NEAR(largest(5e5) / largest(0), 1, 0.5);
}

// Turned by 0.01 from element to element of 1: at 1e5 the files hardly tell it. A plane there, or
// one of places that somebody has typed with four decimals, is none of that.
TEST(Accuracy, CurvatureThatRoundingHidesIsTold) {
    const mat3 turn = Eigen::AngleAxisd(0.7, vec3(1, 2, -0.7).normalized()).toRotationMatrix();
    const struct {
        double bend, far, decimals;
        bool told;
    } rows[] = {{0.01, 0, 0, false}, {0.01, 1e4, 0, true},  {0.01, 1e5, 0, true},
                {0, 1e5, 0, false},  {1e-5, 1e5, 0, false}, {0, 100, 1e4, false}};
    for (const auto& row : rows) {
        build b;
        const build::grid at =
            b.mesh(typememb4, b.plate(2e5, 0.3, 0.1), 12, 8, [&](double r, double s) {
                const double x = 12 * r, size = row.decimals > 0 ? 20 : 1;
                vec3 place = size * turn * vec3(x, -row.bend * x * x / 2, 8 * s) +
                             row.far / 2 * vec3(1, 1, 1);
                if (row.decimals > 0) place = (place * row.decimals).array().round() / row.decimals;
                return asstored(place);
            });
        for (const auto& edge : {at.bottom(), at.left(), at.right()}) b.fix(edge, {1, 2, 3});
        for (const int n : at.top())
            for (int k = 0; k < 3; ++k) b.load(1, n, k + 1, turn(k, 2));
        b.solve();
        bool told = false;
        for (const std::string& one : b.log.warnings())
            told |= one.find("curve by so little") != one.npos;
        EXPECT_EQ(told, row.told) << row.bend << " " << row.far << " " << b.log.text();
    }
}

// --- stiffness over many powers of ten ----------------------------------------------------------

// Right to many digits, and nothing said against it.
TEST(Accuracy, SlenderThinAndSoftModelsAreSolvedWithoutAWord) {
    const struct {
        const char* name;
        double truth, tolerance;
        double (*value)(build&);
    } rows[] = {
        {"cantilever of 5000 beams", 1e3 * 1e9 / (3 * 2e5 * 1e6), 1e-6,
         [](build& b) {
             b.chain(typebeam, withmoduli(b, b.bar(2e5, 1000, {1e6, 1e6, 2e6})), {0, 0, 0},
                     {800, 600, 0}, 5000);
             b.fix(1, clamped);
             b.load(1, 5001, 3, 1e3);
             return moved(b.solve(), 1, 5001, 3);
         }},
        {"shells of thickness 1e-6", 0.00406235 * 1e-9 / (2e5 * 1e-18 / (12 * 0.91)), 0.01,
         [](build& b) {
             const build::grid at =
                 b.mesh(typeshell4, b.plate(2e5, 0.3, 1e-6), 10, 10,
                        [](double r, double s) { return vec3(r / 2, s / 2, 0); });
             b.fix(at.left(), {3}), b.fix(at.bottom(), {3});
             b.fix(at.right(), {1, 5, 6}), b.fix(at.top(), {2, 4, 6});
             b.pressall(1, 3, 1e-9);
             return moved(b.solve(), 1, at.number(10, 10), 3);
         }},
        {"bar on weak springs", 5, 1e-9,
         [](build& b) {
             const int bar = b.chain(typetruss, b.bar(1e12, 1), {0, 0, 0}, {1, 0, 0}, 10);
             for (const int n : {bar, bar + 10})
                 b.element(typespringt, b.spring(mat6::Identity()), {n});
             b.load(1, bar + 10, 1, 10);
             return moved(b.solve(), 1, bar, 1);
         }},
        {"soft after stiff", 1 + 1e-12, 1e-9,
         [](build& b) {
             b.node(0, 0), b.node(1, 0), b.node(2, 0);
             b.element(typetruss, b.bar(1e12, 1), {1, 2}),
                 b.element(typetruss, b.bar(1, 1), {2, 3});
             b.fix(1, {1, 2, 3}), b.fix({2, 3}, {2, 3});
             b.load(1, 3, 1, 1);
             return moved(b.solve(), 1, 3, 1);
         }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        build b;
        const double value = row.value(b);
        EXPECT_NEAR(value / row.truth, 1, row.tolerance) << value;
        EXPECT_TRUE(b.log.warnings().empty()) << b.log.warnings()[0];
        const bool absurd = b.log.text().find("times the size of the model") != std::string::npos;
        EXPECT_EQ(absurd, value > 100);
    }
}

// A beam far shorter than its neighbours moves with them, and its forces are lost in rounding: the
// tip is right to what the warning says, or the model is refused.
TEST(Accuracy, BeamsThatAreFarTooShortAreRightOrRefused) {
    for (const double length : {1e-2, 1e-3, 3e-4, 1e-4, 3e-5, 1e-6})
        for (const vec3& along : {vec3(1, 0, 0), vec3(0.36, 0.48, 0.8)}) {
            build b;
            const int g = withmoduli(b, b.bar(2.1e5, 100, {1e4, 1e4, 1e4}));
            for (const double x : {0.0, 100.0, 100 + length, 400.0}) b.node(x * along);
            for (int n = 1; n <= 3; ++n) b.element(typebeam, g, {n, n + 1});
            b.fix(1, clamped);
            const vec3 across = along.unitOrthogonal();
            for (int k = 0; k < 3; ++k) b.load(1, 4, k + 1, across[k]);
            build again = b;
            const std::string why = again.refusal();
            if (!why.empty()) {
                EXPECT_NE(why.find("lement 2 (BEAM"), why.npos) << why;
                EXPECT_LT(length, 2e-3);
                continue;
            }
            const double truth = 400.0 * 400 * 400 / (3 * 2.1e5 * 1e4);
            EXPECT_NEAR(movedby(b.solve(), 1, 4).dot(across), truth, 0.01 * truth) << length;
            EXPECT_EQ(b.log.warnings().empty(), length > 5e-3) << length;
        }
}

// A long membrane whose places are Singles far away: what leaves the plane by their noise goes into
// held directions, so that the reactions miss some, and the displacements are right all the same.
TEST(Accuracy, LongMembranesFarAwayAreNotRefused) {
    build b;
    const build::grid at = b.mesh(typememb4, b.plate(2e5, 0.3, 10), 600, 2,
                                  [](double r, double s) { return vec3(60000 * r, 200 * s, 0); });
    b.fix(at.left(), {1, 2, 3});
    b.load(1, at.number(600, 1), 2, 1);
    const double truth = moved(b.solve(), 1, at.number(600, 1), 2);
    for (const int seed : {1, 2, 3, 4, 5, 6}) {
        std::srand(unsigned(seed));
        build t = b;
        const mat3 turn = Eigen::Quaterniond::UnitRandom().toRotationMatrix();
        for (vec3& x : t.m.nodes) x = asstored(turn * x + 1e6 * vec3(1, -0.7, 0.4));
        t.m.cases[1].nodal.clear();
        for (int k = 0; k < 3; ++k) t.load(1, at.number(600, 1), k + 1, turn(k, 1));
        const vec3 tip = movedby(t.solve(), 1, at.number(600, 1));
        EXPECT_NEAR(tip.dot(turn.col(1)), truth, 5e-3 * truth) << seed;
    }
}

// --- turned and moved copies --------------------------------------------------------------------

namespace {
using grid = build::grid;

// Cases of the verification page, coarse, whose supports can be turned: clamps, and springs in
// place of planes of symmetry.
struct pagecase {
    const char* name;
    void (*make)(build&);
};
}  // namespace

static void support(build& b, const std::vector<int>& nodes, std::initializer_list<int> dofs) {
    mat6 k = mat6::Zero();
    for (const int dof : dofs) k(dof - 1, dof - 1) = 1e9;
    const int g = b.spring(k);
    for (const int n : nodes) b.element(typespring, g, {n});
}

static vec3 onarc(double radius, double angle, double z) {
    return {radius * std::cos(angle), radius * std::sin(angle), z};
}

static const pagecase pagecases[] = {
    {"cantilever under even loads",
     [](build& b) {
         const int g = b.bar(2e5, 900, {3e6, 2e6, 1e6});
         b.fix(b.chain(typebeam, g, {0, 0, 0}, {0, 0, 3000}, 5), clamped);
         b.pressall(1, 1, 2), b.load(1, 6, 5, 7e5), b.load(1, 6, 1, 100);
     }},
    {"straight beam of trapezoids",
     [](build& b) {
         const grid at = b.mesh(typeshell4, b.plate(1e7, 0.3, 0.1), 6, 1, [](double r, double s) {
             const int i = int(std::lround(6 * r));
             const double shift = i % 6 == 0 ? 0 : (s > 0.5 ? 0.1 : -0.1) * (i % 2 ? -1 : 1);
             return vec3(6 * r + shift, 0.2 * s, 0);
         });
         b.fix(at.left(), clamped);
         b.spread(1, at.right(), 2, 1), b.spread(1, at.right(), 3, 1);
     }},
    {"twisted beam",
     [](build& b) {
         const grid at =
             b.mesh(typeshell4, b.plate(29e6, 0.22, 0.0032), 12, 2, [](double r, double s) {
                 return vec3(12 * r, 1.1 * (s - 0.5) * std::cos(M_PI / 2 * r),
                             1.1 * (s - 0.5) * std::sin(M_PI / 2 * r));
             });
         b.fix(at.left(), clamped);
         b.spread(1, at.right(), 3, 1e-6);
     }},
    {"curved beam of triangles",
     [](build& b) {
         const grid at = b.mesh(typeshell3, b.plate(1e7, 0.25, 0.1), 12, 2, [](double r, double s) {
             return onarc(4.12 + 0.2 * s, M_PI / 2 * (1 - r), 0);
         });
         b.fix(at.left(), clamped);
         b.spread(1, at.right(), 1, 1), b.spread(1, at.right(), 3, 1);
     }},
    {"hook",
     [](build& b) {
         const grid at = b.mesh(typeshell4, b.plate(3300, 0.35, 2), 18, 4, [](double r, double s) {
             const double a = r < 1.0 / 3 ? 3 * r * M_PI / 3 : M_PI / 3,
                          rest = std::max(0., r - 1.0 / 3);
             vec3 x(14 * std::sin(a), 14 * (1 - std::cos(a)), 20 * s);
             const double c = 5 * M_PI / 6 * rest * 1.5;
             x.head<2>() += 46 * (std::sin(c) * vec2(0.5, std::sqrt(0.75)) +
                                  (1 - std::cos(c)) * vec2(std::sqrt(0.75), -0.5));
             return x;
         });
         b.fix(at.left(), clamped);
         b.spread(1, at.right(), 3, 1);
     }},
    {"roof",
     [](build& b) {
         const grid at = b.mesh(typeshell4, b.plate(4.32e8, 0, 0.25), 6, 6, [](double r, double s) {
             const double a = 40 * M_PI / 180 * s;
             return vec3(25 * std::sin(a), 25 * r, 25 * std::cos(a));
         });
         support(b, at.left(), {1, 3});
         support(b, at.right(), {2, 4, 6});
         support(b, at.bottom(), {1, 5, 6});
         for (int j = 0; j <= 6; ++j) b.spread(1, grid::edge(at.number(0, j), 1, 6), 3, -200);
     }},
    {"hemisphere",
     [](build& b) {
         const grid at =
             b.mesh(typeshell4, b.plate(6.825e7, 0.3, 0.04), 8, 8, [](double r, double s) {
                 const double h = 72 * M_PI / 180 * s;
                 return onarc(10 * std::cos(h), M_PI / 2 * r, 10 * std::sin(h));
             });
         support(b, at.left(), {2, 4, 6}), support(b, at.right(), {1, 5, 6});
         support(b, {at.number(0, 8)}, {3});
         b.load(1, at.number(0, 0), 1, 1), b.load(1, at.number(8, 0), 2, -1);
     }},
    {"pinched cylinder",
     [](build& b) {
         const grid at = b.mesh(typeshell3, b.plate(3e6, 0.3, 3), 8, 8, [](double r, double s) {
             return vec3(300 * std::sin(M_PI / 2 * s), 300 * r, 300 * std::cos(M_PI / 2 * s));
         });
         support(b, at.left(), {2, 4, 6}), support(b, at.right(), {1, 3});
         support(b, at.bottom(), {1, 5, 6}), support(b, at.top(), {3, 4, 5});
         b.load(1, at.number(0, 0), 3, -0.25);
     }},
    {"Cook's panel",
     [](build& b) {
         const grid at = b.mesh(typememb4, b.plate(1, 1.0 / 3, 1), 8, 8, [](double r, double s) {
             return vec3(48 * r, 44 * r + s * (44 - 28 * r), 0);
         });
         b.fix(at.left(), {1, 2, 3});
         b.spread(1, at.right(), 2, 1);
     }},
    {"elliptic membrane",
     [](build& b) {
         const grid at = b.mesh(typememb4, b.plate(210e3, 0.3, 0.1), 6, 6, [](double r, double s) {
             return vec3((2 + 1.25 * r) * std::cos(M_PI / 2 * s),
                         (1 + 1.75 * r) * std::sin(M_PI / 2 * s), 0);
         });
         support(b, at.bottom(), {2}), support(b, at.top(), {1});
         for (int j = 1; j < 6; ++j)
             b.load(1, at.number(6, j), 1, 1), b.load(1, at.number(6, j), 2, 1);
     }},
};

static build turnedcopy(const build& b, const mat3& q, const vec3& shift) {
    build t = b;
    mat6 both = mat6::Zero();
    both.topLeftCorner<3, 3>() = both.bottomRightCorner<3, 3>() = q;
    for (std::size_t n = 1; n < t.m.nodes.size(); ++n) t.m.nodes[n] = q * b.m.nodes[n] + shift;
    for (groupdata& g : t.m.groups) g.spring = both * g.spring * both.transpose();
    t.m.cases[1].nodal.clear();
    for (const nodalrow& row : b.m.cases[1].nodal)
        t.load(1, row.node, both * (row.value * vec6::Unit(row.dof - 1)));
    return t;
}

static double largeststress(const build& b, const results& r) {
    double most = 0;
    for (std::size_t i = 0; i < r.plates.value.size(); i += platevalues)
        for (const int half : {0, 3}) {
            const double* const s = r.plates.value.data() + i + half;
            most = std::max(most, s[0] * s[0] - s[0] * s[1] + s[1] * s[1] + 3 * s[2] * s[2]);
        }
    for (std::size_t i = 0; i < r.lines.elements.size(); ++i)
        for (const double value : stressofline(b, r, i, 1)) most = std::max(most, value * value);
    return std::sqrt(most);
}

TEST(Accuracy, TurnedAndMovedCopiesOfThePageAgree) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> some(-1, 1);
    for (const pagecase& one : pagecases) {
        SCOPED_TRACE(one.name);
        build b;
        one.make(b);
        const mat3 q = Eigen::Quaterniond(some(random), some(random), some(random), some(random))
                           .normalized()
                           .toRotationMatrix();
        const vec3 way(some(random), some(random), some(random));
        build t = turnedcopy(b, q, 3e5 * way.normalized());
        if (kindof(b.m.elements[1].type).fam == family::line) {
            // e2 stands level: the same loads along e1 alone
            ASSERT_EQ(b.m.cases[1].element.front().direction, 1);
            b.field(1, fieldixx) = b.field(1, fieldiyy);
            t.field(1, fieldixx) = t.field(1, fieldiyy);
        }
        const results r = b.solve(), s = t.solve();
        double size = 0, worst = 0;
        for (int n = 1; n <= b.m.nnodes(); ++n) {
            size = std::max(size, movedby(r, 1, n).norm());
            worst = std::max(worst, (q.transpose() * movedby(s, 1, n) - movedby(r, 1, n)).norm());
        }
        EXPECT_LT(worst, 1e-5 * size);
        const double stress = largeststress(b, r);
        EXPECT_NEAR(largeststress(t, s), stress, 1e-5 * stress);
    }
}

// --- bad input ----------------------------------------------------------------------------------

TEST(Accuracy, MechanismsAreToldWithDirectionAndExtent) {
    build b;  // a portal in an oblique plane whose beam and right column hang on a hinge of bars
    const mat3 q = Eigen::AngleAxisd(0.7, vec3(1, 2, -1).normalized()).toRotationMatrix();
    const int g = b.bar(2e5, 100, {1e4, 1e4, 2e4});
    const int first = b.chain(typebeam, g, {0, 0, 0}, q * vec3(0, 3000, 0), 3);
    const int part = b.chain(typebeam, g, q * vec3(500, 3000, 0), q * vec3(2500, 3000, 0), 4);
    b.element(typetruss, g, {first + 3, part});
    b.fix(first, clamped);
    b.load(1, part + 4, 2, 1);
    const std::string said = b.refusal();
    expectwords(said, {"can move freely in D", "(along ", "with 5 nodes between ", "mechanism"});
}

// Four bars without a diagonal, inside a truss in an oblique plane that is held otherwise.
TEST(Accuracy, MechanismsInsideAnObliquePartAreTold) {
    build b;
    const mat3 q = Eigen::AngleAxisd(0.7, vec3(1, 2, -1).normalized()).toRotationMatrix();
    const int g = b.bar(2e5, 100);
    for (int i = 0; i < 8; ++i) b.node(asstored(q * vec3(100 * (i / 2), 100 * (i % 2), 0)));
    for (int i = 0; i < 6; ++i) b.element(typetruss, g, {i + 1, i + 3});
    for (int i = 1; i < 4; ++i) b.element(typetruss, g, {2 * i + 1, 2 * i + 2});
    b.element(typetruss, g, {1, 4}), b.element(typetruss, g, {5, 8});  // none from 3 to 6
    b.fix({1, 2}, {1, 2, 3});
    const vec3 push = q * vec3(0, 1, 0);
    for (int k = 0; k < 3; ++k) b.load(1, 8, k + 1, push[k]);
    expectwords(b.refusal(), {"can move freely in D", "(along ", "mechanism"});
    b.element(typetruss, g, {3, 6});
    EXPECT_EQ(b.refusal(), "");
}

TEST(Accuracy, ElementsTooSmallForTheirPlaceAreTold) {
    const std::pair<double, double> places[] = {{1e4, 4.1}, {1e6, 4.1}, {1e6, 4}};  // 4: exact
    for (const auto& [far, size] : places) {
        build b;
        const build::grid at =
            b.mesh(typeshell4, b.plate(2e5, 0.3, 0.1), 4, 4, [far, size](double r, double s) {
                return asstored({far + size * r, far + size * s, 0});
            });
        b.fix(at.left(), clamped);
        b.spread(1, at.right(), 1, 1);
        const results r = b.solve();
        const bool rounded = far > 1e5 && size > 4;
        ASSERT_EQ(b.log.warnings().size(), rounded ? 1u : 0u) << b.log.text();
        if (rounded) expectwords(b.log.warnings()[0], {"15 element(s)", "nearer to the origin"});
    }
    // A thin strip in an oblique plane waves by the rounding: told with the error that it shows
    // against the same strip at the origin, and refused where little of it is right.
    const mat3 turn = Eigen::AngleAxisd(0.7, vec3(1, 2, -0.7).normalized()).toRotationMatrix();
    const auto stretch = [&](double far, double thickness) {
        build b;
        const build::grid at =
            b.mesh(typeshell4, b.plate(2e5, 0.3, thickness), 20, 2, [&](double r, double s) {
                return asstored(vec3(far, far, far) + turn * vec3(20 * r, 2 * s, 0));
            });
        b.fix(at.left(), clamped);
        const vec3 along = turn.col(0);
        for (int k = 0; k < 3; ++k) b.spread(1, at.right(), k + 1, along[k]);
        const std::string refusal = b.refusal();
        if (!refusal.empty()) return std::make_pair(refusal, 0.0);
        const std::vector<std::string> told = b.log.warnings();
        return std::make_pair(told.empty() ? "" : told[0],
                              movedby(b.solve(), 1, at.right()[1]).dot(along));
    };
    const struct {
        double far, thickness, error;
        std::initializer_list<const char*> words;
    } rows[] = {{1e4, 0.1, 1e-3, {}},
                {3e5, 0.1, 0.25, {"40 element(s)", "wrong by about 1", "%"}},
                {1e6, 0.1, 0, {"(SHELL4, group 1", "39 other(s)", "thickness", "nearer"}},
                {1e5, 0.01, 0, {"wrong by about"}}};
    for (const auto& row : rows) {
        const auto [words, moved] = stretch(row.far, row.thickness);
        EXPECT_EQ(words.empty(), row.words.size() == 0) << words;
        expectwords(words, row.words);
        EXPECT_NEAR(moved, row.error > 0 ? stretch(0, row.thickness).second : 0, row.error * moved);
    }
}

// Loads that fall away are told with node and direction, those of elements too.
TEST(Accuracy, LoadsThatFallAwayAreTold) {
    build b;
    b.m.twod = true;
    b.single(typebeam, withmoduli(b, b.bar(1000, 1, {1, 1, 1})), {{0, 0, 0}, {10, 0, 0}});
    b.fix(1, {1, 2, 6});
    b.load(1, 2, 1, 1), b.load(1, 2, 3, 4);
    b.addcase();
    b.press(2, 1, 2, 1), b.press(2, 1, 3, 3);  // along y, along z: 15 at either end
    b.solve();
    ASSERT_EQ(b.log.warnings().size(), 2u);
    expectwords(b.log.warnings()[0], {"Case 1", "1 load(s) fall away", "4, at node 2 in DZ"});
    expectwords(b.log.warnings()[1], {"Case 2", "fall away", "15, at node 1 in DZ"});
    EXPECT_EQ(b.log.caseof(1), 2);

    // A wall that leans out of its plane by more than rounding but not by much.
    build wall;
    const build::grid at = wall.mesh(typememb4, wall.plate(1e3, 0.3, 1), 3, 3,
                                     [](double r, double s) { return vec3(3 * r, 0, 3 * s); });
    wall.fix(at.bottom(), {1, 2, 3});
    wall.load(1, at.number(3, 3), 3, -100), wall.load(1, at.number(3, 3), 2, 0.5);
    wall.solve();
    ASSERT_EQ(wall.log.warnings().size(), 1u);
    expectwords(wall.log.warnings()[0], {"fall away", "0.5, at node 16 in DY"});
    wall.load(1, at.number(3, 3), 2, 5);
    expectwords(wall.refusal(), {"Node 16 can move freely in DY"});
}
