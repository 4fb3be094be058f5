// SPDX-License-Identifier: GPL-3.0-or-later
// Accelerations, distributed loads by local axis, prescribed values.
#include <Eigen/Geometry>
#include <algorithm>
#include <cmath>

#include "solver/readmodel.h"
#include "tests/solver/verify.h"

// A tripod of beams with a mass at its top and a MASS element at one knee; all nodes are held, so
// that the load is what the masses feel.
static build masses() {
    build b;
    const int g = b.bar(2e5, 100, {1e4, 2e4, 3e4}, 1e-5);
    const int point = b.group({{fielddensity, 4}, {fieldixx, 50}, {fieldiyy, 60}, {fieldizz, 70}});
    const int top = b.node(100, 200, 3000);
    b.node(1000, 0, 0), b.node(-1000, 500, 0), b.node(0, -1200, 100);
    for (int n = 2; n <= 4; ++n) b.element(typebeam, g, {n, top});
    b.element(typemass, point, {3});
    b.fixall();
    return b;
}

// Force and moment that act on the masses when all moves with this acceleration of the field.
TEST(Acceleration, LoadsAreMassTimesTheFieldInAllSixDirections) {
    const vec3 centre(300, -200, 500);
    const double value = 2.5, metre = 0.001;  // kg, N; model lengths are millimetres
    for (int type = caseaccx; type <= caseaccrz; ++type)
        for (const bool elements : {true, false}) {
            build b = masses();
            b.onlycase(type, {value, centre.x(), centre.y(), centre.z(), elements ? 1.0 : 0.0});
            vec6 point;
            point << 8, 8, 8, 900, 900, 900;
            b.load(1, 1, point);
            const vec3 axis = vec3::Unit((type - caseaccx) % 3);
            const bool turns = type >= caseaccrx;
            vec3 force = vec3::Zero(), moment = force;
            const auto add = [&](double mass, const vec3& at, const vec3& inertia) {
                const vec3 a =
                    turns ? vec3(value * metre * axis.cross(at - centre)) : vec3(value * axis);
                force += mass * a;
                moment += mass * at.cross(a);
                if (turns) moment += value * metre * inertia.cwiseProduct(axis);
            };
            add(8, b.m.nodes[1], vec3(900, 900, 900));
            if (elements) add(4, b.m.nodes[3], vec3(50, 60, 70));
            for (int e = 1; elements && e <= 3; ++e) {
                // A bar by Simpson's rule, exact for what is linear in place.
                const element el = elementat(b.m, b.s, e);
                const double mass = 1e-5 * 100 * lengthof(el);
                add(mass / 6, el.x[0], {0, 0, 0});
                add(mass / 6, el.x[1], {0, 0, 0});
                add(4 * mass / 6, middleof(el), {0, 0, 0});
                const mat3 axes = lineaxes(el);
                const vec3 own = 1e-5 * lengthof(el) * vec3(3e4, 1e4, 2e4);
                if (turns)
                    moment += value * metre * axes.transpose() * own.cwiseProduct(axes * axis);
            }
            const vec6 load = solvebalanced(b).reactions.load[1];
            EXPECT_LT((load.head<3>() - force).norm(), 1e-9 * (force.norm() + 1e-9)) << type;
            EXPECT_LT((load.tail<3>() - moment).norm(), 1e-9 * moment.norm()) << type << elements;
        }
}

// Every family, each local direction a case: the total is the load times length or area along the
// axis.
TEST(ElementRows, ActAlongTheLocalAxesOnEveryFamily) {
    const mat3 about[2] = {Eigen::AngleAxisd(0.7, vec3(1, 2, 3).normalized()).toRotationMatrix(),
                           Eigen::AngleAxisd(0.7, vec3::UnitZ()).toRotationMatrix()};
    for (const int type : {typetruss, typebeam, typepipe, typememb3, typememb4, typeshear4,
                           typeshell3, typeshell4, typeplate3, typeplate4})
        for (const bool twod : {false, true}) {
            // nothing in a plate that bends carries a load in its plane
            const bool bends = type == typeplate3 || type == typeplate4;
            const int first = bends ? 3 : 1, last = twod ? 2 : 3;
            if (first > last) continue;
            build b;
            b.m.twod = twod;
            std::vector<vec3> at = {{0, 0, 0}, {5, 0, 0}, {6, 4, 0}, {0, 3, 0}};
            const int count = kindof(type).nodes;
            at.resize(std::size_t(count));
            for (vec3& x : at) x = about[twod] * x;
            b.single(type, b.bar(2e5, 10, {1e4, 1e4, 2e4}), at);
            b.fixall();
            const element e = elementat(b.m, b.s, 1);
            const mat3 axes = count == 2 ? lineaxes(e) : plateaxes(e);
            const double size = count == 2 ? 5 : count == 3 ? 10 : 19;
            for (int direction = first; direction <= last; ++direction) {
                const int lc = direction == first ? 1 : b.addcase();
                b.press(lc, 1, direction, 1.5), b.press(lc, 1, direction, 0.5);  // rows add up
            }
            const results r = b.solve();
            for (int direction = first; direction <= last; ++direction) {
                const vec3 wanted = 2 * size * axes.row(direction - 1).transpose();
                const vec3 load = r.reactions.load[std::size_t(direction + 1 - first)].head<3>();
                EXPECT_LT((load - wanted).norm(), 1e-9) << kindof(type).name << " " << direction;
            }
        }
    build b;
    b.single(typespring2, b.spring(mat6::Identity()), {{0, 0, 0}, {1, 0, 0}});
    b.fix(1, clamped);
    b.press(1, 1, 1, 1);
    expectwords(b.refusal(), {"takes none"});
}

// Elements of a row that differ in one thing alone, each on nodes of its own: every one is loaded as
// if it were the only one.
TEST(ElementRows, LoadAnElementByNothingOfTheOneBefore) {
    struct stand {
        int type;
        double thickness, turn, lean;
        bool beside;  // a thick element, which shares an edge
    };
    const stand row[] = {
        {typeshell4, 1, 0, 0, false}, {typeshell4, 1, 0, 0, true},    {typeshell4, 8, 0, 0, false},
        {typeshell4, 1, 0, 0, false}, {typeshell4, 1, 0.5, 0, false}, {typeshell4, 1, 0, 2, false},
        {typememb4, 1, 0, 2, false},  {typeshell3, 1, 0, 0, false},   {typeshell3, 1, 0, 1, false},
        {typebeam, 1, 0, 0, false},   {typebeam, 1, 0, 3, false},
    };
    const int thick = 2;
    const auto makegroups = [](build& b) {
        for (const double thickness : {1.0, 8.0}) b.plate(2e5, 0.3, thickness);
        b.bar(2e5, 10, {1e4, 1e4, 2e4});
    };
    const auto add = [&](build& b, int i) {
        const stand& one = row[i];
        const double x = 100 * i;
        std::vector<vec3> at = {{x, 0, 0}, {x + 10, 0, one.lean}, {x + 14, 8, 0}, {x + 1, 6, 0}};
        at.resize(std::size_t(kindof(one.type).nodes));
        b.single(one.type, one.type == typebeam ? 3 : one.thickness > 1 ? thick : 1, at);
        b.m.elements.back().turn = one.turn;
        if (!one.beside) return;
        const int n = b.m.nnodes(), next = b.node(x + 20, 0, 0), last = b.node(x + 20, 8, 0);
        b.element(typeshell4, thick, {n - 2, next, last, n - 1});
    };
    const auto load = [](build& b) {
        b.fixall();
        b.pressall(1, 1, 2);
        b.pressall(b.addcase(), 3, 5);
        return b.solve();
    };
    build all;
    makegroups(all);
    for (int i = 0; i < int(std::size(row)); ++i) add(all, i);
    const results together = load(all);
    int before = 0;
    for (int i = 0; i < int(std::size(row)); ++i) {
        build alone;
        makegroups(alone);
        add(alone, i);
        const results r = load(alone);
        for (int lc = 1; lc <= 2; ++lc)
            for (int n = 1; n <= alone.m.nnodes(); ++n)
                for (const int dof : {1, 4}) {
                    const vec3 wanted = reactedby(r, lc, n, dof);
                    EXPECT_LT((reactedby(together, lc, before + n, dof) - wanted).norm(),
                              1e-9 * (1 + wanted.norm()))
                        << i << " node " << n << " case " << lc;
                }
        before += alone.m.nnodes();
    }
}

// As much through a warped element as through its edges, whichever corner is its first.
TEST(ElementRows, PressureIsNormalToAWarpedSurface) {
    for (const int type : {typeshell4, typememb4}) {
        std::vector<int> corners = {1, 2, 3, 4};
        vec3 first[4];
        for (int start = 0; start < 4; ++start) {
            build b;
            b.node(0, 0, 0), b.node(50, 4, 3), b.node(46, 41, -2), b.node(3, 38, 4);
            b.element(type, b.plate(2e5, 0.3, 2), corners);
            b.fixall();
            b.press(1, 1, 3, 2);
            const results r = b.solve();
            const std::vector<vec3>& x = b.m.nodes;
            const vec3 through = (x[3] - x[1]).cross(x[4] - x[2]);  // 2 times half of it
            EXPECT_LT((r.reactions.load[1].head<3>() - through).norm(), 1e-9 * through.norm());
            for (int n = 0; n < 4; ++n) {
                const vec3 here = reactedby(r, 1, n + 1);
                if (start == 0) first[n] = here;
                EXPECT_LT((here - first[n]).norm(), 1e-9 * through.norm()) << type << start;
            }
            std::rotate(corners.begin(), corners.begin() + 1, corners.end());
        }
    }
}

// All six directions at once on a cantilever; a typed DZ moves the node by what was typed.
TEST(Prescribed, DisplacementsAndRotationsMoveTheNodeAndLoadTheRest) {
    build b;
    const double e = 2e5, i2 = 1e4, i3 = 2e4, l = 1000;
    const double given[6] = {0.5, 3, 10, 0.01, 0.02, -0.03};
    b.single(typebeam, b.bar(e, 100, {i2, i3, 3e4}), {{0, 0, 0}, {l, 0, 0}});
    b.fix(1, clamped);
    for (int k = 1; k <= 6; ++k) b.fix(2, {k}, given[k - 1]);
    tempfolder folder;
    b.write(folder / "m");
    build c;
    c.m = readmodel(folder / "m", c.log);
    const results r = solvebalanced(c);
    for (int k = 1; k <= 6; ++k) EXPECT_NEAR(moved(r, 1, 2, k), given[k - 1], 1e-12) << k;
    const double wanted[4] = {
        e * 100 / l * given[0],
        12 * e * i3 / (l * l * l) * given[1] - 6 * e * i3 / (l * l) * given[5],
        12 * e * i2 / (l * l * l) * given[2] + 6 * e * i2 / (l * l) * given[4],
        e / 2.6 * 3e4 / l * given[3]};
    for (int k = 0; k < 4; ++k) EXPECT_NEAR(reacted(r, 1, 2, k + 1), wanted[k], 1e-4) << k;
}

TEST(Acceleration, SwitchesThatAreNoneAndMassesBelowZeroAreTold) {
    for (const double elements : {0.0, 1.0, 2.0, -1.0, 0.5}) {
        build b;
        b.single(typebeam, b.bar(1, 1, {1, 1, 1}), {{0, 0, 0}, {1, 0, 0}});
        b.fix(1, clamped);
        const int lc = b.addcase(caseaccz, {-10, 0, 0, 0, elements});
        b.load(lc, 2, 3, elements == 1 ? -2 : 2);
        if (elements != 0 && elements != 1) {
            expectwords(b.refusal(), {"case", "masses of elements", "off (0) or on (1)"});
            continue;
        }
        b.solve();
        std::string said;
        for (const std::string& one : b.log.warnings())
            if (one.find("nodal mass") != one.npos) said = one;
        EXPECT_EQ(said.empty(), elements == 0);
        if (elements == 1)
            expectwords(said, {"1 nodal mass", "below 0", "node 2", "applied loads"});
    }
}
