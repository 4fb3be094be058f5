// SPDX-License-Identifier: GPL-3.0-or-later
// Load combinations: the equation text, and the changes of names and multipliers.
#include "loads/loadcombinations.h"

#include <gtest/gtest.h>

#include "core/model.h"
#include "core/session.h"
#include "files/filop.h"
#include "loads/loadkees.h"
#include "tests/support/recorder.h"
#include "view/drawbc.h"

static void makecases(int count) {
    loadcaseform form = openloadkees();
    while (nlc() < count) addloadcase(form);
}

TEST(Combinations, TheEquationHoldsSignsFactorsAndNames) {
    const struct {
        std::vector<float> multipliers;
        std::vector<std::string> rows;
    } cases[] = {
        {{0, 0, 0, 0}, {""}},
        {{1, 0, 0, 0}, {"+ LC 1 "}},
        {{0, -2.5f, 0, 0}, {"- 2.5 x LC 2 "}},
        {{-1, 0, 1.35f, 0}, {"- LC 1 + 1.35 x LC 3 "}},
        {{1e-7f, 0, 0, 0}, {"+ 1E-07 x LC 1 "}},
        // a row of 28 and one of 29 characters
        {{1.25f, 1.25f, 1, 1}, {"+ 1.25 x LC 1 + 1.25 x LC 2 ", "+ LC 3 + LC 4 "}},
        {{1, 1.125f, 1, 1}, {"+ LC 1 + 1.125 x LC 2 + LC 3 ", "+ LC 4 "}},
    };
    for (const auto& c : cases) {
        sessionroom room;
        makecases(4);
        for (int l = 1; l <= 4; ++l) lcomb(1, l) = c.multipliers[std::size_t(l) - 1];
        EXPECT_EQ(equationof(1), c.rows);
    }
}

TEST(Combinations, ARowOf25CharactersGoesOn) {
    sessionroom room;
    makecases(3);
    for (const auto& [name, rows] : {std::pair("sixteen letters!", 1), {"seventeen letters", 2}}) {
        lcname(1) = name;  // "+ 1.5 x " before it, a blank behind it
        lcomb(1, 1) = 1.5f;
        lcomb(1, 2) = 1;
        EXPECT_EQ(equationof(1).size(), std::size_t(rows)) << equationof(1)[0];
    }
    lcname(1) = "sixteen l\xC3\xA4tters!";  // characters count, not bytes
    EXPECT_EQ(equationof(1).size(), 1u);
}

TEST(Combinations, OneUpdateStoresOneMultiplier) {
    sessionroom room;
    makecases(2);
    combinationform form = openloadcombinations();
    EXPECT_EQ(form.heading, "Equation of Load Combination: Lcomb1");
    EXPECT_EQ(form.multiplier, "1");
    choosecombcase(form, 1);
    EXPECT_EQ(form.multiplier, "0");
    form.multiplier = "-2.5";
    form.name = "Storm";
    editcomb(form);
    EXPECT_EQ(form.message, "Press <Update> to save changes");
    EXPECT_EQ(lcomb(1, 2), 0);
    updateloadcomb(form);
    EXPECT_EQ(lcomb(1, 2), -2.5f);
    EXPECT_EQ(lcomb(1, 1), 1);
    EXPECT_EQ(lcombname(1), "Storm");
    EXPECT_EQ(form.message, "");
    EXPECT_EQ(form.equation, std::vector<std::string>{"+ LC 1 - 2.5 x LC 2 "});
    EXPECT_EQ(lcdesc(1), "+ LC 1 - 2.5 x LC 2 ");
}

TEST(Combinations, WhatIsNoMultiplierIsNotStored) {
    sessionroom room;
    combinationform form = openloadcombinations();
    form.multiplier = "1e39";  // a number, but no Single
    form.name = "New";
    updateloadcomb(form);
    EXPECT_EQ(lcomb(1, 1), 1);
    EXPECT_EQ(lcombname(1), "Lcomb1");
    EXPECT_NE(form.message, "");
    getloadcomb(form);
    EXPECT_EQ(lcomb(1, 1), 1);
    form.multiplier = "half";
    getloadcomb(form);
    EXPECT_EQ(lcomb(1, 1), 1);
    leavemultiplier(form);
    EXPECT_EQ(form.multiplier, "0");
    form.multiplier = "half";
    updateloadcomb(form);
    EXPECT_EQ(lcomb(1, 1), 0);
}

TEST(Combinations, AClashOfNamesStoresNoMultiplier) {
    sessionroom room;
    combinationform form = openloadcombinations();
    addloadcomb(form);
    form.name = "Lcomb1";
    form.multiplier = "3";
    updateloadcomb(form);
    EXPECT_EQ(form.message, "Name allready excists");
    EXPECT_EQ(lcomb(2, 1), 0);
    EXPECT_EQ(lcombname(2), "Lcomb2");
    EXPECT_EQ(form.name, "Lcomb2");
    form.name = "Lcomb1";
    form.multiplier = "1e39";
    updateloadcomb(form);
    EXPECT_EQ(form.message, "Name allready excists") << "the clash comes first";
    EXPECT_EQ(form.multiplier, "0");
    form.name = "";
    updateloadcomb(form);
    EXPECT_EQ(form.message, "A load combination needs a name");
    EXPECT_EQ(lcombname(2), "Lcomb2");
}

TEST(Combinations, TenIsTheMostWhateverIsDeclared) {
    sessionroom room;
    makecases(2);
    combinationform form = openloadcombinations();
    lcombname(1) = "Lcomb2";
    addloadcomb(form);
    EXPECT_EQ(lcombname(2), "Lcomb2*");
    EXPECT_EQ(form.equation, std::vector<std::string>{""});
    lcomb(2, 2) = 1.5f;  // of the combination that is copied
    addcopy(form);
    EXPECT_EQ(form.name, "Lcomb3");
    EXPECT_EQ(lcomb(3, 2), 1.5f);
    EXPECT_EQ(form.equation, std::vector<std::string>{"+ 1.5 x LC 2 "});
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
    room.door.answerqueue = {answers::no, answers::yes, answers::yes};
    choosecomb(form, 3);
    delloadcomb(form);
    EXPECT_EQ(ncomb(), 10);
    delloadcomb(form);
    EXPECT_EQ(ncomb(), 9);
    EXPECT_EQ(curlcomb, 3);
    EXPECT_EQ(lcombname(4), "Lcomb5");
    EXPECT_EQ(lcomb(4, 2), 5);
    EXPECT_EQ(lcombname(9), "Lcomb10");
    EXPECT_EQ(lcomb(9, 2), 10);
    EXPECT_EQ(lcombname(10), "");
    EXPECT_EQ(form.names.size(), 9u);
    choosecomb(form, 0);
    delloadcomb(form);
    EXPECT_EQ(curlcomb, 1);
    EXPECT_EQ(lcombname(1), "Lcomb2");
    while (ncomb() > 1) removeloadcomb(ncomb());
    delloadcomb(form);
    EXPECT_EQ(form.message, "Not allowed, one loadcombination minimum");
    EXPECT_EQ(ncomb(), 1);
}

TEST(Combinations, ANumberOfAModeShapeIsNoCombination) {
    sessionroom room;
    curlcomb = 25;
    const combinationform form = openloadcombinations();
    EXPECT_EQ(curlcomb, 1);
    EXPECT_EQ(form.name, "Lcomb1");
    closeloadcombinations(form);
    EXPECT_EQ(curlcomb, 1) << "no mode shape is on show";

    menupostItem(3).checked = true;
    curlcomb = 25;
    combinationform over = openloadcombinations();
    addloadcomb(over);
    EXPECT_EQ(curlcomb, 2);
    closeloadcombinations(over);
    EXPECT_EQ(curlcomb, 25) << "the shape on show stays";
}

TEST(Combinations, LoadsOfAModesNumberAreNone) {
    sessionroom room;
    addnode(0, 0, 0);
    loadnode(1, 0) = 1;
    loadnode(1, 1) = 1;
    loaddof(1, 1) = 1;
    loadval(1, 1) = 5;
    checkonly(viewloads, 3);
    for (const auto& [number, lines] : {std::pair(1, 1), {2, 0}, {25, 0}, {0, 0}}) {
        curlcomb = number;
        room.door.views[0].operations.clear();
        drawloads(1);
        EXPECT_EQ(room.door.views[0].count("line"), lines) << number;
    }
}

TEST(Combinations, GoToTheirFileWithoutTheModel) {
    sessionroom room;
    makecases(2);
    lcomb(1, 2) = -2.5f;
    modelname = room.file("a");
    EXPECT_TRUE(savecombinations());
    EXPECT_EQ(contentof(room.file("a.lco")), "1\r\n2\r\n\"Lcomb1\"\r\n1\r\n-2.5\r\n");
    EXPECT_EQ(contentof(room.file("a.tek")), "");
    modelname = room.file("missing/a");
    EXPECT_FALSE(savecombinations());
    EXPECT_TRUE(
        room.door.told("Error occurred while trying to save Loadcombinations. Loadcombinations Not "
                       "saved, please retry."));
}
