// SPDX-License-Identifier: GPL-3.0-or-later
// Load cases: names, kinds and their parameters, the narrow shift of a deletion.
#include "loads/loadkees.h"

#include "tests/support/recorder.h"

static void setrow(int lc, int i, int n, int dof, float value) {
    loadnode(lc, i) = n;
    loaddof(lc, i) = dof;
    loadval(lc, i) = value;
    loadnode(lc, 0) = std::max(loadnode(lc, 0), i);
}

TEST(Loadcases, AddNamesAndTypesTheNewCase) {
    sessionroom room;
    loadcaseform form = openloadkees();
    lcname(1) = "LC 2";
    elemload(2, 0, 0) = 3;  // left by a case that was deleted
    lcomb(1, 2) = 1.5f;
    form.name = "Gravity";
    editloadcase(form);
    addloadcase(form);
    EXPECT_EQ(form.message,
              "What was typed is not stored. LC 2* is new: give it a name and a type, "
              "then press <Update>");
    EXPECT_EQ(lcname(2), "LC 2*");
    EXPECT_EQ(curlc, 2);
    EXPECT_EQ(lcpar(2, 4), 1) << "element mass is on, though the case is applied";
    EXPECT_EQ(elemload(2, 0, 0), 0);
    EXPECT_EQ(lcomb(1, 2), 0) << "no combination counts a new load case";
    for (int i = 0; i < 3; ++i) addloadcase(form);
    EXPECT_EQ(nlc(), 4);
    EXPECT_EQ(form.message, "Maximum number of loadcase");
}

TEST(Loadcases, EveryKindStoresItsTypeAndParameters) {
    const struct {
        int kind, direction, type;
        double parameters[5];
    } cases[] = {
        {kindacceleration, 0, 1, {9.81, 10, 20, 30, 0}},
        {kindacceleration, 5, 6, {9.81, 10, 20, 30, 0}},
        {kindwave, 0, 7, {8, 12, 45, 0.5, 1}},
        {kindwind, 0, 8, {40, 90, 7, 0, 1}},  // three fields, the rest stays
        {kindbuoyancy, 0, 9, {3, 25, 1.025, 0, 1}},
    };
    for (const auto& c : cases) {
        sessionroom room;
        loadcaseform form = openloadkees();
        choosekind(form, c.kind);
        if (c.kind == kindacceleration) choosedirection(form, c.direction);
        form.acceleration = {"9.81", "10", "20", "30"};
        form.elementmass = 0;
        form.wave = {"8", "12", "45", "0.5", "1"};
        form.wind = {"40", "90", "7"};
        form.buoyancy = {"3", "25", "1.025"};
        EXPECT_EQ(lctype(1), 0) << "nothing is stored before Update";
        updateloadcase(form);
        EXPECT_EQ(lctype(1), c.type);
        for (int k = 0; k < 5; ++k) EXPECT_EQ(lcpar(1, k), c.parameters[k]) << c.type << " " << k;
        const loadcaseform again = openloadkees();
        EXPECT_EQ(again.kind, c.kind);
        EXPECT_EQ(again.lcdirection, c.direction);
        EXPECT_EQ(again.acceleration == form.acceleration, c.kind == kindacceleration);
        EXPECT_EQ(again.wave == form.wave, c.kind == kindwave);
        EXPECT_EQ(again.wind == form.wind, c.kind == kindwind);
        EXPECT_EQ(again.buoyancy == form.buoyancy, c.kind == kindbuoyancy);
        choosekind(form, kindapplied);
        updateloadcase(form);
        EXPECT_EQ(lctype(1), 0);
        EXPECT_EQ(lcpar(1, 0), c.parameters[0]) << "an applied case keeps the parameters";
    }
}

TEST(Loadcases, TextsThatAreNoNumbers) {
    sessionroom room;
    loadcaseform form = openloadkees();
    choosekind(form, kindacceleration);
    form.acceleration = {"fast", "1", "", "3"};
    updateloadcase(form);
    EXPECT_EQ(lcpar(1, 0), 0);
    EXPECT_EQ(lcpar(1, 1), 1);
    choosekind(form, kindwave);
    form.wave = {"8", "12", "North", "-0.1", "20"};
    editshift(form);
    EXPECT_EQ(form.wave[3], "0");
    form.name = "Storm";
    updateloadcase(form);
    EXPECT_TRUE(room.platform.told("Check loadcases, Error occured"));
    EXPECT_NE(form.message.find("Dir: \"North\""), std::string::npos) << form.message;
    EXPECT_EQ(lctype(1), 7) << "what was stored before the error stays";
    EXPECT_EQ(lcpar(1, 3), 3) << "from the acceleration";
    form.name = " ";
    updateloadcase(form);
    EXPECT_EQ(form.message, "A load case needs a name");
    EXPECT_EQ(lcname(1), "LC 1");
}

TEST(Loadcases, ADeletionMovesNamesTypesAndTheRowsThatFit) {
    sessionroom room;
    room.platform.answerqueue = {answers::no, answers::yes};
    loadcaseform form = openloadkees();
    addloadcase(form);
    addloadcase(form);
    lctype(2) = 7;
    lcpar(2, 0) = 8;
    lcomb(1, 2) = 2;
    elemload(2, 0, 0) = 1;
    setrow(1, 1, 11, 1, 100);
    for (int i = 1; i <= 3; ++i) setrow(2, i, 20 + i, 2, float(200 + i));
    setrow(3, 1, 31, 3, 301);
    loadnode(3, 2) = 99;  // behind the rows of case 3: what a compaction has left
    chooseloadcase(form, 0);
    menupostItem(deformedshape).checked = true;
    stressloaded = true;
    resultflag = 0;
    delloadcase(form);
    EXPECT_EQ(nlc(), 3) << "the answer was No";
    EXPECT_TRUE(stressloaded);
    delloadcase(form);
    EXPECT_NE(form.message.find("stay with their numbers"), std::string::npos);
    EXPECT_FALSE(menupostItem(deformedshape).checked) << "results pair load cases by number";
    EXPECT_FALSE(stressloaded);
    EXPECT_EQ(resultflag, 1);
    ASSERT_EQ(nlc(), 2);
    EXPECT_EQ(curlc, 1);
    EXPECT_EQ(lctype(1), 7);
    EXPECT_EQ(loadnode(1, 0), 1) << "case 1 had room for one row";
    EXPECT_EQ(loadnode(1, 1), 21);
    EXPECT_EQ(loadval(1, 1), 201);
    EXPECT_EQ(loadnode(2, 0), 3) << "counts stay with the slot";
    EXPECT_EQ(loadnode(2, 1), 31);
    EXPECT_EQ(loadnode(2, 2), 0) << "case 3 had one row";
    EXPECT_EQ(loadnode(3, 0), 0);
    EXPECT_EQ(lcpar(2, 0), 8);
    EXPECT_EQ(lcomb(1, 2), 2);
    EXPECT_EQ(elemload(2, 0, 0), 1);
}

TEST(Loadcases, DeletionLowersTheCurrentCaseAndSparesTheLast) {
    sessionroom room;
    loadcaseform form = openloadkees();
    for (int i = 1; i < 4; ++i) addloadcase(form);
    room.platform.answerqueue = {answers::yes, answers::yes, answers::yes};
    delloadcase(form);
    EXPECT_EQ(curlc, 3);
    chooseloadcase(form, 1);
    delloadcase(form);
    EXPECT_EQ(curlc, 1);
    delloadcase(form);
    delloadcase(form);
    EXPECT_EQ(form.message, "Not allowed, one loadcase minimum");
    EXPECT_EQ(room.platform.messages.size(), 3u) << "no question is asked";
    EXPECT_EQ(lcname(1), "LC 3");
}
