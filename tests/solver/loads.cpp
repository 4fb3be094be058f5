// SPDX-License-Identifier: GPL-3.0-or-later
// Accelerations, distributed loads by local axis, prescribed values.
#include <gtest/gtest.h>

#include <Eigen/Geometry>
#include <cmath>

#include "solver/readmodel.h"
#include "tests/solver/build.h"

// A tripod of beams with a mass at its top and a MASS element at one knee; all nodes are held, so
// that the load is what the masses feel.
static build masses() {
    build b;
    const int g = b.group({{fieldmodulus, 2e5},
                           {fieldpoisson, 0.3},
                           {fielddensity, 1e-5},
                           {fieldthickness, 100},
                           {fieldixx, 1e4},
                           {fieldiyy, 2e4},
                           {fieldizz, 3e4}});
    const int point = b.group({{fielddensity, 4}, {fieldixx, 50}, {fieldiyy, 60}, {fieldizz, 70}});
    const int top = b.node(100, 200, 3000);
    b.node(1000, 0, 0), b.node(-1000, 500, 0), b.node(0, -1200, 100);
    for (int n = 2; n <= 4; ++n) b.element(typebeam, g, {n, top});
    b.element(typemass, point, {3});
    for (int n = 1; n <= 4; ++n) b.fix(n, {1, 2, 3, 4, 5, 6});
    b.m.cases.resize(1);
    return b;
}

// Force and moment that act on the masses when all moves with this acceleration of the field.
TEST(Acceleration, LoadsAreMassTimesTheFieldInAllSixDirections) {
    const vec3 centre(300, -200, 500);
    const double value = 2.5, units = 1.0, metre = 0.001;  // kg, N; model lengths are millimetres
    for (int type = caseaccx; type <= caseaccrz; ++type)
        for (const bool elements : {true, false}) {
            build b = masses();
            const int lc =
                b.addcase(type, {value, centre.x(), centre.y(), centre.z(), elements ? 1.0 : 0.0});
            for (int k = 1; k <= 3; ++k) b.load(lc, 1, k, 8);
            b.load(lc, 1, 4, 900), b.load(lc, 1, 5, 900), b.load(lc, 1, 6, 900);
            const results r = b.solve();
            const vec3 axis = vec3::Unit((type - caseaccx) % 3);
            const bool turns = type >= caseaccrx;
            vec3 force = vec3::Zero(), moment = force;
            const auto add = [&](double mass, const vec3& at, const vec3& inertia) {
                const vec3 a =
                    turns ? vec3(value * metre * axis.cross(at - centre)) : vec3(value * axis);
                force += units * mass * a;
                moment += units * mass * at.cross(a);
                if (turns) moment += value * metre * inertia.cwiseProduct(axis);
            };
            add(8, b.m.nodes[1], vec3(900, 900, 900));
            if (elements) {
                add(4, b.m.nodes[3], vec3(50, 60, 70));
                for (int e = 1; e <= 3; ++e) {
                    // A bar by Simpson's rule, exact for what is linear in place.
                    const element el = elementat(b.m, b.s, e);
                    const double mass = 1e-5 * 100 * lengthof(el);
                    const mat3 axes = lineaxes(el);
                    const vec3 about = axes * axis;
                    const vec3 own =
                        1e-5 * lengthof(el) * vec3(3e4 * about[0], 1e4 * about[1], 2e4 * about[2]);
                    add(mass / 6, el.x[0], {0, 0, 0});
                    add(mass / 6, el.x[1], {0, 0, 0});
                    add(4 * mass / 6, middleof(el), {0, 0, 0});
                    if (turns) moment += value * metre * axes.transpose() * own;
                }
            }
            const vec6 load = r.reactions.load[std::size_t(lc)];
            const double size = force.norm() + 1e-9;
            EXPECT_NEAR((load.head<3>() - force).norm(), 0, 1e-9 * size) << type << elements;
            EXPECT_NEAR((load.tail<3>() - moment).norm(), 0, 1e-9 * moment.norm())
                << type << elements;
            EXPECT_LT(imbalance(r, lc), 1e-9);
        }
}

TEST(Acceleration, OtherCasesTakeNodalRowsAsMassesThatDoNothing) {
    build b = masses();
    b.addcase(casebuoyancy, {-1e6, 10, 1});
    b.load(1, 1, 3, 8);
    const results r = b.solve();
    EXPECT_EQ(r.reactions.load[1].norm(), 0);
    ASSERT_EQ(b.log.warnings().size(), 1u) << "no load";
}

// Every family, each local direction: the total is the load times length or area along the axis.
TEST(ElementRows, ActAlongTheLocalAxesOnEveryFamily) {
    for (const int type : {typetruss, typebeam, typepipe, typememb3, typememb4, typeshear4,
                           typeshell3, typeshell4, typeplate3, typeplate4}) {
        build b;
        const int g = b.group({{fieldmodulus, 2e5},
                               {fieldpoisson, 0.3},
                               {fieldthickness, 10},
                               {fieldixx, 1e4},
                               {fieldiyy, 1e4},
                               {fieldizz, 2e4}});
        const mat3 turn = Eigen::AngleAxisd(0.7, vec3(1, 2, 3).normalized()).toRotationMatrix();
        const vec3 at[4] = {{0, 0, 0}, {5, 0, 0}, {6, 4, 0}, {0, 3, 0}};
        const int count = kindof(type).nodes;
        elementdef def;
        def.type = type;
        def.group = g;
        for (int i = 0; i < count; ++i) {
            const vec3 x = turn * at[i];
            def.node[i] = b.node(x.x(), x.y(), x.z());
            b.fix(def.node[i], {1, 2, 3, 4, 5, 6});
        }
        b.m.elements.push_back(def);
        const element e = elementat(b.m, b.s, 1);
        const mat3 axes = count == 2 ? lineaxes(e) : plateaxes(e);
        const double size = count == 2 ? 5 : count == 3 ? 10 : 19;
        for (int direction = 1; direction <= 3; ++direction) {
            const int lc = direction == 1 ? 1 : b.addcase();
            b.press(lc, 1, direction, 1.5);
            b.press(lc, 1, direction, 0.5);  // rows add up
        }
        const results r = b.solve();
        for (int direction = 1; direction <= 3; ++direction) {
            const vec3 wanted = 2 * size * axes.row(direction - 1).transpose();
            const vec6 load = r.reactions.load[std::size_t(direction)];
            const bool bends = type == typeplate3 || type == typeplate4;
            if (bends && direction < 3) continue;  // nothing carries a load in its plane
            EXPECT_NEAR((load.head<3>() - wanted).norm(), 0, 1e-9)
                << kindof(type).name << " " << direction;
        }
    }
    build b;
    b.node(0, 0), b.node(1, 0);
    b.element(typespring2, b.group({}), {1, 2});
    b.m.groups[1].spring.diagonal().setOnes();
    b.fix(1, {1, 2, 3, 4, 5, 6});
    b.press(1, 1, 1, 1);
    EXPECT_NE(b.refusal().find("takes none"), std::string::npos) << b.refusal();
}

// All six directions at once on a cantilever; a typed DZ moves the node by what was typed.
TEST(Prescribed, DisplacementsAndRotationsMoveTheNodeAndLoadTheRest) {
    build b;
    const int g = b.group({{fieldmodulus, 2e5},
                           {fieldpoisson, 0.3},
                           {fieldthickness, 100},
                           {fieldixx, 1e4},
                           {fieldiyy, 2e4},
                           {fieldizz, 3e4}});
    const double l = 1000, given[6] = {0.5, 3, 10, 0.01, 0.02, -0.03};
    b.node(0, 0, 0), b.node(l, 0, 0);
    b.element(typebeam, g, {1, 2});
    b.fix(1, {1, 2, 3, 4, 5, 6});
    for (int k = 1; k <= 6; ++k) b.fix(2, {k}, given[k - 1]);
    tempfolder folder;
    b.write(folder / "m");
    runlog log;
    log.quiet();
    build c;
    c.m = readmodel(folder / "m", log);
    const results r = c.solve();
    for (int k = 1; k <= 6; ++k) EXPECT_NEAR(moved(r, 1, 2, k), given[k - 1], 1e-12) << k;
    const double i3 = 2e4, i2 = 1e4, e = 2e5;
    EXPECT_NEAR(reacted(r, 1, 2, 1), e * 100 / l * 0.5, 1e-6);
    EXPECT_NEAR(reacted(r, 1, 2, 2), 12 * e * i3 / (l * l * l) * 3 - 6 * e * i3 / (l * l) * -0.03,
                1e-6);
    EXPECT_NEAR(reacted(r, 1, 2, 3), 12 * e * i2 / (l * l * l) * 10 + 6 * e * i2 / (l * l) * 0.02,
                1e-6);
    EXPECT_NEAR(reacted(r, 1, 2, 4), e / 2.6 * 3e4 / l * 0.01, 1e-4);
    EXPECT_LT(imbalance(r, 1), 1e-9);
}
