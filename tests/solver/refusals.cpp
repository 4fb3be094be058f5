// SPDX-License-Identifier: GPL-3.0-or-later
// What the solver refuses, and that its words name the item.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/solver/build.h"

static void expectwords(const std::string& said, std::initializer_list<const char*> words) {
    for (const char* word : words) EXPECT_NE(said.find(word), said.npos) << word << " in: " << said;
}

TEST(Refusal, MechanismsAreNamedByNodeAndDirection) {
    const struct {
        const char* name;
        std::function<void(build&)> make;
        std::initializer_list<const char*> words;
    } rows[] = {
        {"square of four bars without a diagonal",
         [](build& b) {
             b.m.twod = true;
             const int g = b.group({{fieldmodulus, 1000}, {fieldthickness, 1}});
             b.node(0, 0), b.node(1, 0), b.node(1, 1), b.node(0, 1);
             for (int i = 0; i < 4; ++i) b.element(typetruss, g, {i + 1, (i + 1) % 4 + 1});
             b.fix(1, {1, 2}), b.fix(2, {1, 2});
             b.load(1, 3, 1, 1);
         },
         {"can move freely in DX", "mechanism"}},
        {"frame without supports",
         [](build& b) {
             b.m.twod = true;
             const int g = b.group({{fieldmodulus, 1000}, {fieldthickness, 1}, {fieldiyy, 1}});
             b.node(0, 0), b.node(0, 1), b.node(1, 1);
             b.element(typebeam, g, {1, 2}), b.element(typebeam, g, {2, 3});
             b.load(1, 3, 1, 1);
         },
         {"can move freely in D", "Add a constraint"}},
        {"load on a node without elements",
         [](build& b) {
             const int g = b.group({{fieldmodulus, 1000}, {fieldthickness, 1}});
             b.node(0, 0), b.node(1, 0), b.node(5, 5, 5);
             b.element(typetruss, g, {1, 2});
             b.fix(1, {1});
             b.load(1, 3, 2, 1);
         },
         {"Node 3 can move freely in DY", "LC 1"}},
        {"load across a bar",
         [](build& b) {
             b.m.twod = true;
             const int g = b.group({{fieldmodulus, 1000}, {fieldthickness, 1}});
             b.node(0, 0), b.node(1, 1);
             b.element(typetruss, g, {1, 2});
             b.fix(1, {1, 2});
             b.load(1, 2, 1, 1), b.load(1, 2, 2, 0.9);
         },
         {"Node 2 can move freely in D"}},
        {"hinge in a space beam",
         [](build& b) {
             const int g = b.group({{fieldmodulus, 1000},
                                    {fieldthickness, 1},
                                    {fieldixx, 1},
                                    {fieldiyy, 1},
                                    {fieldizz, 1}});
             b.node(0, 0), b.node(1, 0);
             b.element(typebeam, g, {1, 2});
             b.fix(1, {1, 2, 3}), b.fix(2, {2, 3});
             b.load(1, 2, 5, 1);
         },
         {"can move freely in RX"}},
    };
    for (const auto& row : rows) {
        build b;
        row.make(b);
        const std::string said = b.refusal();
        SCOPED_TRACE(row.name);
        expectwords(said, row.words);
    }
}

// What nothing stiffens and nothing loads is held, and the rest is solved.
TEST(Refusal, UnloadedFreedomWithoutStiffnessIsHeldAndCounted) {
    build b;
    const int g = b.group({{fieldmodulus, 1000}, {fieldthickness, 2}});
    const vec3 along = vec3(1, 2, -2) / 3;
    b.node(0, 0, 0), b.node(along.x(), along.y(), along.z()), b.node(9, 9, 9);
    b.element(typetruss, g, {1, 2});
    b.fix(1, {1, 2, 3});
    for (int k = 0; k < 3; ++k) b.load(1, 2, k + 1, 10 * along[k]);
    const results r = b.solve();
    for (int k = 0; k < 3; ++k) EXPECT_NEAR(moved(r, 1, 2, k + 1), 10.0 / 2000 * along[k], 1e-12);
    EXPECT_NE(b.log.text().find("no element stiffens: 5 (1 node(s)"), std::string::npos)
        << b.log.text();
    EXPECT_LT(imbalance(r, 1), 1e-12);
}

TEST(Refusal, BadElementsAreNamedWithTheirRemedy) {
    using fields = std::initializer_list<build::fieldvalue>;
    const fields bar = {{fieldmodulus, 1}, {fieldthickness, 1}};
    const struct {
        const char* name;
        int type;
        fields group;
        std::vector<vec3> at;
        std::initializer_list<const char*> words;
    } rows[] = {
        {"no length", typetruss, bar, {{1, 1, 1}, {1, 1, 1}}, {"Element 1", "TRUSS", "length"}},
        {"no modulus", typetruss, {{fieldthickness, 1}}, {{0, 0, 0}, {1, 1, 1}}, {"E modulus"}},
        {"negative area",
         typetruss,
         {{fieldmodulus, 1}, {fieldthickness, -1}},
         {{0, 0, 0}, {1, 1, 1}},
         {"area"}},
        {"no torsion",
         typebeam,
         {{fieldmodulus, 1}, {fieldthickness, 1}, {fieldixx, 1}, {fieldiyy, 1}},
         {{0, 0, 0}, {1, 1, 1}},
         {"Element 1", "BEAM", "group 1", "I zz"}},
        {"no I xx",
         typebeam,
         {{fieldmodulus, 1}, {fieldthickness, 1}, {fieldiyy, 1}, {fieldizz, 1}},
         {{0, 0, 0}, {1, 1, 1}},
         {"I xx"}},
        {"Poisson ratio",
         typebeam,
         {{fieldmodulus, 1},
          {fieldthickness, 1},
          {fieldixx, 1},
          {fieldiyy, 1},
          {fieldizz, 1},
          {fieldpoisson, 0.6}},
         {{0, 0, 0}, {1, 1, 1}},
         {"Poisson"}},
        {"thinner than solid",
         typepipe,
         {{fieldmodulus, 1}, {fieldthickness, 10}, {fieldixx, 1}},
         {{0, 0, 0}, {1, 1, 1}},
         {"PIPE", "solid"}},
        {"coincident corners",
         typememb4,
         bar,
         {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {1, 1, 0}},
         {"nodes 3 and 4"}},
        {"needle", typememb3, bar, {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}}, {"no area"}},
        {"crossing", typememb4, bar, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}}, {"cross"}},
        {"concave",
         typememb4,
         bar,
         {{0, 0, 0}, {2, 0, 0}, {0.5, 0.5, 0}, {0, 2, 0}},
         {"concave", "node 3"}},
        {"warped", typememb4, bar, {{0, 0, 1}, {1, 0, 0}, {1, 1, 1}, {0, 1, 0}}, {"warped"}},
    };
    for (const auto& row : rows) {
        build b;
        b.group(row.group);
        elementdef e;
        e.type = row.type;
        e.group = 1;
        for (std::size_t k = 0; k < row.at.size(); ++k)
            e.node[k] = b.node(row.at[k].x(), row.at[k].y(), row.at[k].z());
        b.m.elements.push_back(e);
        SCOPED_TRACE(row.name);
        expectwords(b.refusal(), row.words);
    }
}

TEST(Refusal, FlatBeamNeedsTheInertiaOfItsSectionRotationAlone) {
    for (const bool turned : {false, true}) {
        build b;
        b.m.twod = true;
        const int g = b.group({{fieldmodulus, 1000},
                               {fieldthickness, 1},
                               {turned ? fieldixx : fieldiyy, 2},
                               {fieldrotation, turned ? 90.0 : 0.0}});
        b.node(0, 0), b.node(1, 0);
        b.element(typebeam, g, {1, 2});
        b.fix(1, {1, 2, 6});
        b.load(1, 2, 2, 1);
        EXPECT_NEAR(moved(b.solve(), 1, 2, 2), 1.0 / 6000, 1e-12);
        b.m.groups[1].field[fieldrotation] = turned ? 0 : 90;
        expectwords(b.refusal(), {"Element 1", turned ? "I yy" : "I xx"});
    }
}

TEST(Refusal, ContradictingConstraintsAndEmptyModels) {
    build b;
    expectwords(b.refusal(), {"no nodes"});
    b.node(0, 0), b.node(1, 0);
    expectwords(b.refusal(), {"no elements"});
    b.element(typetruss, b.group({{fieldmodulus, 1}, {fieldthickness, 1}}), {1, 2});
    b.fix(1, {1}), b.fix(1, {1}, 2);
    expectwords(b.refusal(), {"Node 1", "DX"});
}

TEST(Refusal, CaseWithoutLoadGivesZerosAndAWarning) {
    build b;
    b.node(0, 0), b.node(1, 0);
    b.element(typetruss, b.group({{fieldmodulus, 1}, {fieldthickness, 1}}), {1, 2});
    b.fix(1, {1});
    const results r = b.solve();
    EXPECT_EQ(moved(r, 1, 2, 1), 0);
    ASSERT_EQ(b.log.warnings().size(), 1u);
    expectwords(b.log.warnings()[0], {"Case 1", "no load"});
}
