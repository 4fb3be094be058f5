// SPDX-License-Identifier: GPL-3.0-or-later
// Load combinations: the equation text, and the changes of names and multipliers.
#include "loads/loadcombinations.h"

#include "files/saving.h"
#include "loads/combinationrules.h"
#include "loads/loadkees.h"
#include "tests/support/recorder.h"
#include "view/drawconditions.h"

static void makecases(int count) {
    loadcaseform form = openloadkees();
    while (nlc() < count) addloadcase(form);
}

TEST(Combinations, TheEquationHoldsSignsFactorsAndNames) {
    const struct {
        std::vector<float> multipliers;
        std::vector<std::string> rows;
    } cases[] = {
        {{0, -2.5f, 0, 0}, {"- 2.5 x LC 2 "}},
        {{-1, 0, 1.35f, 0}, {"- LC 1 + 1.35 x LC 3 "}},
        {{1e-7f, 0, 0, 0}, {"+ 1E-07 x LC 1 "}},
        {{1, 1.125f, 1, 1}, {"+ LC 1 + 1.125 x LC 2 + LC 3 ", "+ LC 4 "}},
    };
    sessionroom room;
    makecases(4);
    for (const auto& c : cases) {
        for (int l = 1; l <= 4; ++l) lcomb(1, l) = c.multipliers[std::size_t(l) - 1];
        EXPECT_EQ(equationof(1), c.rows);
    }
    lcomb(1, 1) = 1.5f;
    lcomb(1, 3) = lcomb(1, 4) = 0;
    // A row of 25 characters goes on: "+ 1.5 x ", the name and a blank; no bytes are counted.
    for (const auto& [name, rows] :
         {std::pair("sixteen l\xC3\xA4tters!", 1), {"seventeen letters", 2}}) {
        lcname(1) = name;
        EXPECT_EQ(equationof(1).size(), std::size_t(rows)) << equationof(1)[0];
    }
}

TEST(Combinations, WhatCanNotBeStoredIsTold) {
    sessionroom room;
    combinationform form = openloadcombinations();
    addloadcomb(form);
    lcomb(2, 1) = 1;
    const struct {
        const char *name, *multiplier, *message;
        float stored;
    } cases[] = {
        {"New", "1e39", "1e39 is too large", 1},  // a number, but no Single
        {"Lcomb1", "3", "Name allready excists", 1},
        {"", "3", "A load combination needs a name", 1},
        {"Lcomb2", "half", "", 0},
    };
    for (const auto& c : cases) {
        form.name = c.name;
        form.multiplier = c.multiplier;
        updateloadcomb(form);
        EXPECT_NE(form.message.find(c.message), std::string::npos) << form.message;
        EXPECT_EQ(lcomb(2, 1), c.stored) << c.message;
        EXPECT_EQ(lcombname(2), "Lcomb2") << c.message;
    }
}

TEST(Combinations, TenIsTheMostWhateverIsDeclared) {
    sessionroom room;
    makecases(2);
    combinationform form = openloadcombinations();
    lcombname(1) = "Lcomb2";
    addloadcomb(form);
    EXPECT_EQ(lcombname(2), "Lcomb2*");
    lcomb(2, 2) = 1.5f;  // of the combination that is copied
    addcopy(form);
    EXPECT_EQ(form.name, "Lcomb3");
    EXPECT_EQ(lcomb(3, 2), 1.5f);
    while (ncomb() < 10) EXPECT_TRUE(addloadcomb(form));
    addcopy(form);
    EXPECT_EQ(ncomb(), 10);
    EXPECT_EQ(form.message, "Maximum number of loadcombinations");
    EXPECT_EQ(lcomb(10, 2), 0) << "the refused copy changes nothing";
}

TEST(Combinations, ADeletionMovesTheUpperOnesDown) {
    sessionroom room;
    makecases(2);
    combinationform form = openloadcombinations();
    for (int c = 2; c <= 10; ++c) {
        addloadcomb(form);
        lcomb(c, 2) = float(c);
    }
    room.platform.answerqueue = {answers::no, answers::yes, answers::yes};
    choosecomb(form, 3);
    delloadcomb(form);
    EXPECT_EQ(ncomb(), 10);
    delloadcomb(form);
    EXPECT_EQ(ncomb(), 9);
    EXPECT_EQ(curlcomb, 3);
    for (int c = 4; c <= 9; ++c) EXPECT_EQ(lcomb(c, 2), c + 1);
    EXPECT_EQ(lcombname(9), "Lcomb10");
    choosecomb(form, 0);
    delloadcomb(form);
    EXPECT_EQ(lcombname(1), "Lcomb2");
    while (ncomb() > 1) removeloadcomb(ncomb());
    delloadcomb(form);
    EXPECT_EQ(form.message, "Not allowed, one loadcombination minimum");
}

TEST(Combinations, ANumberOfAModeShapeIsNoCombination) {
    sessionroom room;
    addnode(0, 0, 0);
    loadnode(1, 0) = loadnode(1, 1) = loaddof(1, 1) = 1;
    loadval(1, 1) = 5;
    checkonly(viewloads, activecombination);
    for (const auto& [number, lines] : {std::pair(1, 1), {2, 0}, {0, 0}, {25, 0}}) {
        curlcomb = number;
        room.platform.views[0].operations.clear();
        drawloads(1);
        EXPECT_EQ(room.platform.views[0].count("line"), lines) << number;
    }
    closeloadcombinations(openloadcombinations());
    EXPECT_EQ(curlcomb, 1) << "no mode shape is on show";
    menupostItem(modeshape).checked = true;
    curlcomb = 25;
    combinationform over = openloadcombinations();
    EXPECT_EQ(curlcomb, 1);
    closeloadcombinations(over);
    EXPECT_EQ(curlcomb, 25) << "the shape on show stays";
}

TEST(Combinations, AFileThatCanNotBeWrittenIsTold) {
    sessionroom room;
    modelname = room.file("missing/a");
    EXPECT_FALSE(savecombinations());
    EXPECT_TRUE(room.platform.toldpart("Loadcombinations Not saved, please retry."));
}

// One permanent and two variable actions, by hand after the rule; and nothing is written that the
// limit or the sizes have no room for.
TEST(Combinationrules, WriteTheCombinationsOfTheTable) {
    sessionroom room;
    loadnode(0, 0) = 3;
    for (int lc = 1; lc <= 3; ++lc) lcname(lc) = "C" + std::to_string(lc);
    ruleform form = openrules();
    form.cases = {{caseroles::permanent, 1.35, 1, 1},
                  {caseroles::variable, 1.5, 0, 0.5},
                  {caseroles::variable, 1.2, 0, 0.25}};
    ASSERT_TRUE(writerules(form)) << form.message;
    const float wanted[4][3] = {
        {1.35f, 1.5f, 0.3f}, {1.35f, 0.75f, 1.2f}, {1, 1.5f, 0.3f}, {1, 0.75f, 1.2f}};
    ASSERT_EQ(ncomb(), 4);
    for (int c = 1; c <= 4; ++c)
        for (int lc = 1; lc <= 3; ++lc) EXPECT_FLOAT_EQ(lcomb(c, lc), wanted[c - 1][lc - 1]) << c;
    EXPECT_EQ(openrules().cases[2].companion, 0.25);
    form.limit = 3;
    form.cases[1].most = 9;
    EXPECT_FALSE(writerules(form));
    EXPECT_EQ(form.message,
              "The rule gives 4 combinations, the limit is 3; up to 10 may be written");
    EXPECT_FLOAT_EQ(lcomb(1, 2), 1.5f);
    form.rule = combinationrules::signs;
    form.limit = 4;
    ASSERT_TRUE(writerules(form)) << form.message;
    EXPECT_FLOAT_EQ(lcomb(4, 2), -9);
    EXPECT_FLOAT_EQ(lcomb(4, 3), -1.2f);
    EXPECT_FLOAT_EQ(lcomb(4, 1), 1.35f);
    form.cases = {{caseroles::unused}, {caseroles::unused}, {caseroles::unused}};
    EXPECT_FALSE(writerules(form));
    EXPECT_EQ(ncomb(), 4);
}
