// SPDX-License-Identifier: GPL-3.0-or-later
// What the solver refuses, and that its words name the item.
#include <cmath>

#include "tests/solver/verify.h"

TEST(Refusal, MechanismsAreNamedByNodeAndDirection) {
    const struct {
        const char* name;
        bool twod;
        void (*make)(build&);
        std::initializer_list<const char*> words;
    } rows[] = {
        {"square of four bars without a diagonal",
         true,
         [](build& b) {
             const int g = b.bar(1000, 1);
             b.node(0, 0), b.node(1, 0), b.node(1, 1), b.node(0, 1);
             for (int i = 0; i < 4; ++i) b.element(typetruss, g, {i + 1, (i + 1) % 4 + 1});
             b.fix({1, 2}, {1, 2});
             b.load(1, 3, 1, 1);
         },
         {"can move freely in DX", "mechanism"}},
        {"frame without supports",
         true,
         [](build& b) {
             b.chain(typebeam, b.bar(1000, 1, {0, 1, 0}), {0, 0, 0}, {1, 1, 0}, 2);
             b.load(1, 3, 1, 1);
         },
         {"can move freely in D", "Add a constraint"}},
        {"load on a node without elements",
         false,
         [](build& b) {
             b.single(typetruss, b.bar(1000, 1), {{0, 0, 0}, {1, 0, 0}});
             b.fix(1, {1});
             b.load(1, b.node(5, 5, 5), 2, 1);
         },
         {"Node 3 can move freely in DY", "LC 1"}},
        {"hinge in a space beam",
         false,
         [](build& b) {
             b.single(typebeam, b.bar(1000, 1, {1, 1, 1}), {{0, 0, 0}, {1, 0, 0}});
             b.fix(1, {1, 2, 3}), b.fix(2, {2, 3});
             b.load(1, 2, 5, 1);
         },
         {"can move freely in RX"}},
        {"membrane that leaves its plane a little, whose corners nothing holds across it",
         false,
         [](build& b) {
             b.single(typememb4, b.plate(2e11, 0.3, 0.01),
                      {{0, 0, 0}, {1, 0, 0}, {1, 1, 0.01}, {0, 1, 0}});
             b.fix({1, 2}, {1, 2, 3});
             b.load(1, 3, 1, 5);
         },
         {"Node 3 can move freely in DZ", "mechanism"}},
        {"warped shear panel without its frame",
         false,
         [](build& b) {
             b.single(typeshear4, b.plate(2e11, 0.3, 0.01),
                      {{0, 0, 0}, {1, 0, 0}, {1, 1, 0.3}, {0, 1, 0}});
             b.fix({1, 2}, {1, 2, 3});
             b.load(1, 3, 1, 5);
         },
         {"Node 4 can move freely", "mechanism"}},
        {"force across a membrane, small beside a moment that counts millimetres",
         false,
         [](build& b) {
             b.single(typememb4, b.plate(2e5, 0.3, 10),
                      {{0, 0, 0}, {1000, 0, 0}, {1000, 1000, 0}, {0, 1000, 0}});
             b.fix({1, 2}, {1, 2, 3});
             b.fix(b.chain(typebeam, b.bar(2e5, 1e6, {1e11, 1e11, 1e11}), {0, 2e3, 0},
                           {1000, 2e3, 0}, 1),
                   clamped);
             b.load(1, 6, 5, 1e12), b.load(1, 3, 3, 100);
         },
         {"Node 3 can move freely in DZ", "LC 1"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        build b;
        b.m.twod = row.twod;
        row.make(b);
        expectwords(b.refusal(), row.words);
    }
}

// Supports on a line that leans: rounding makes it crooked, and so seems to hold what turns about
// it, the better the farther from the origin. Thin and slender models are as soft and stand.
TEST(Refusal, WhatOnlyRoundingHoldsIsAMechanism) {
    const mat3 q = Eigen::AngleAxisd(1.1, vec3(1, 2, 3).normalized()).toRotationMatrix();
    for (const double far : {0.0, 1e4, 1e5, 1e6})
        for (const int type : {typeshell4, typeshell3, typebeam}) {
            SCOPED_TRACE(testing::Message() << "far " << far << " type " << type);
            const auto at = [&](double r, double s) -> vec3 {
                const vec3 x = q * vec3(1000 * r, 1000 * s, 0) + far * vec3(1, -0.7, 0.3);
                return x.cast<float>().cast<double>();
            };
            build b;
            if (type != typebeam) {
                const auto grid = b.mesh(type, b.plate(2e5, 0.3, 10), 6, 6, at);
                b.fix(grid.left(), {1, 2, 3});
            } else {
                const int g = b.bar(2e5, 1000, {1e5, 1e5, 1e5});
                for (int i = 0; i < 3; ++i) b.node(at(0, 0.5 * i)), b.node(at(1, 0.4 * i));
                for (const auto& [i, j] : {std::pair(1, 2), {3, 4}, {5, 6}, {2, 4}, {4, 6}})
                    b.element(typebeam, g, {i, j});
                b.fix({1, 3, 5}, {1, 2, 3});
            }
            for (int dof = 1; dof <= 3; ++dof) b.load(1, b.m.nnodes(), dof, 10 * q(dof - 1, 2));
            expectwords(b.refusal(), {"can move ", "freely in DZ (along 0.593, -0.004, 0.805)",
                                      type == typebeam ? "with 3 nodes" : "with 42 nodes",
                                      "a mechanism. Add a constraint"});
        }
}

// Stiff beams on a soft one are no mechanism, whatever the factorisation makes of them.
TEST(Refusal, StiffnessTooFarApartNamesBothElements) {
    for (const double times : {1e12, 1e14}) {
        build b;
        const vec3 inertia(1e6, 1e6, 2e6);
        b.chain(typebeam, b.bar(2e5, 1000, inertia), {0, 0, 0}, {1000, 0, 0}, 10);
        const int stiff = b.bar(2e5 * times, 1000, inertia);
        for (int i = 1; i <= 10; ++i) {
            b.node(1000 + 100 * i, 0);
            b.element(typebeam, stiff, {i + 10, i + 11});
        }
        b.fix(1, clamped);
        b.load(1, 21, 3, 1);
        const std::string words = b.refusal();
        expectwords(words, {"(BEAM, group 2 \"", times > 1e13 ? "1e+14 times" : "1e+12 times",
                            "(BEAM, group 1 \"", "RIGID"});
        EXPECT_EQ(words.find("move freely"), words.npos) << words;
    }
}

// What nothing stiffens and nothing loads is held, and the rest is solved.
TEST(Refusal, UnloadedFreedomWithoutStiffnessIsHeldAndCounted) {
    build b;
    const vec3 along = vec3(1, 2, -2) / 3;
    b.single(typetruss, b.bar(1000, 2), {vec3(0, 0, 0), along});
    b.node(9, 9, 9);
    b.fix(1, {1, 2, 3});
    for (int k = 0; k < 3; ++k) b.load(1, 2, k + 1, 10 * along[k]);
    const results r = solvebalanced(b);
    EXPECT_LT((movedby(r, 1, 2) - 10.0 / 2000 * along).norm(), 1e-12);
    expectwords(b.log.text(), {"no element stiffens: 5 (1 node(s)"});
}

TEST(Refusal, BadElementsAreNamedWithTheirRemedy) {
    const std::vector<vec3> apart = {{0, 0, 0}, {1, 1, 1}};
    const struct {
        int type;
        double modulus, area;
        vec3 inertia;
        std::initializer_list<const char*> words;
    } lines[] = {{typetruss, 0, 1, {0, 0, 0}, {"E modulus"}},
                 {typetruss, 1, -1, {0, 0, 0}, {"area"}},
                 {typebeam, 1, 1, {1, 1, 0}, {"Element 1", "BEAM", "group 1", "I zz"}},
                 {typebeam, 1, 1, {0, 1, 1}, {"I xx"}},
                 {typepipe, 1, 10, {1, 0, 0}, {"PIPE", "solid"}}};
    for (const auto& bad : lines) {
        build b;
        b.single(bad.type, b.bar(bad.modulus, bad.area, bad.inertia), apart);
        expectwords(b.refusal(), bad.words);
    }
    const struct {
        int type;
        std::vector<vec3> at;
        std::initializer_list<const char*> words;
    } shapes[] = {
        {typetruss, {{1, 1, 1}, {1, 1, 1}}, {"Element 1", "TRUSS", "length"}},
        {typememb4, {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {1, 1, 0}}, {"nodes 3 and 4"}},
        {typememb3, {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}}, {"no area"}},
        {typememb4, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}}, {"cross"}},
        {typememb4, {{0, 0, 0}, {2, 0, 0}, {0.5, 0.5, 0}, {0, 2, 0}}, {"concave", "node 3"}},
        {typememb4, {{0, 0, 1}, {1, 0, 0}, {1, 1, 1}, {0, 1, 0}}, {"warped"}}};
    for (const auto& bad : shapes) {
        build b;
        b.single(bad.type, b.bar(1, 1), bad.at);
        expectwords(b.refusal(), bad.words);
    }
    build b;
    b.single(typebeam, b.bar(1, 1, {1, 1, 1}), apart);
    b.field(1, fieldpoisson) = 0.6;
    expectwords(b.refusal(), {"Poisson"});
    build thick;
    thick.single(typeshell3, thick.plate(1, 0.3, 1e20), {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
    expectwords(thick.refusal(), {"Element 1", "as thick as it is long", "unit"});
    for (const double condition : {-1.0, 0.5, 2.0}) {
        build half;
        half.single(typememb3, half.plate(1, 0.3, 1), {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
        half.field(1, fieldplane) = condition;
        expectwords(half.refusal(), {"Element 1", "stress condition"});
    }
}

// Copied onto itself, whichever node comes first. Other nodes, kinds and groups are no twins.
TEST(Refusal, ElementsThatStandTwiceAreTold) {
    build b;
    const int g = b.plate(2e5, 0.3, 1), own = b.plate(2e5, 0.3, 2);
    b.mesh(typeshell4, g, 3, 3, [](double r, double s) { return vec3(r, s, 0); });
    const int bar = b.bar(2e5, 1);
    b.element(typetruss, bar, {1, 2});
    b.element(typeshell4, own, {1, 2, 6, 5}), b.element(typememb4, g, {1, 2, 6, 5});
    b.element(typeshell4, g, {1, 2, 6, 9});
    b.fix(1, clamped), b.load(1, 16, 3, 1);
    b.solve();
    EXPECT_TRUE(b.log.warnings().empty()) << b.log.warnings()[0];
    b.element(typetruss, bar, {2, 1}), b.element(typeshell4, g, {6, 2, 1, 5});
    b.solve();
    ASSERT_EQ(b.log.warnings().size(), 1u);
    expectwords(b.log.warnings()[0],
                {"2 element(s) stand", "element 14 on those of element 10", "Delete one"});
}

TEST(Refusal, FlatBeamNeedsTheInertiaOfItsSectionRotationAlone) {
    for (const bool turned : {false, true}) {
        build b;
        b.m.twod = true;
        const int g = b.bar(1000, 1, turned ? vec3(2, 0, 0) : vec3(0, 2, 0));
        b.field(g, fieldrotation) = turned ? 90 : 0;
        b.single(typebeam, g, {{0, 0, 0}, {1, 0, 0}});
        b.fix(1, {1, 2, 6});
        b.load(1, 2, 2, 1);
        EXPECT_NEAR(moved(b.solve(), 1, 2, 2), 1.0 / 6000, 1e-12);
        b.field(g, fieldrotation) = turned ? 0 : 90;
        expectwords(b.refusal(), {"Element 1", turned ? "I yy" : "I xx"});
    }
}

TEST(Refusal, EmptyModelsIdleCasesAndContradictingConstraints) {
    build b;
    expectwords(b.refusal(), {"no nodes"});
    b.node(0, 0), b.node(1, 0);
    expectwords(b.refusal(), {"no elements"});
    b.element(typetruss, b.bar(1, 1), {1, 2});
    b.fix(1, {1});
    EXPECT_EQ(moved(b.solve(), 1, 2, 1), 0);
    ASSERT_EQ(b.log.warnings().size(), 1u);
    expectwords(b.log.warnings()[0], {"Case 1", "no load"});
    b.fix(1, {1}, 2);
    expectwords(b.refusal(), {"Node 1", "DX"});
}

// Threads look at the elements piece by piece, and come to the second fault first.
TEST(Refusal, OfManyFaultsTheFirstElementIsNamed) {
    build b;
    b.mesh(typeshell4, b.plate(210000, 0.3, 10), 100, 100,
           [](double r, double s) { return vec3(1000 * r, 1000 * s, 0); });
    for (const int e : {8000, 8200, 9900}) {
        elementdef& crossed = b.m.elements[std::size_t(e)];
        std::swap(crossed.node[1], crossed.node[2]);
    }
    EXPECT_TRUE(b.refusal().starts_with("Element 8000 ")) << b.refusal();
}

TEST(Refusal, ResultsBeyondAllNumbers) {
    for (const bool loads : {false, true}) {
        build b;
        b.single(typebeam, b.bar(loads ? 2e5 : 1e-320, 1, {1, 1, 1}), {{0, 0, 0}, {1, 0, 0}});
        b.fix(1, clamped);
        if (loads)
            b.load(1, 2, 3, INFINITY);
        else
            b.load(1, 2, 3, 1);
        expectwords(b.refusal(), {loads ? "loads of case 1" : "displacements of case 1", "units"});
    }
}
