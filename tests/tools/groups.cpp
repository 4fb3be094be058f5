// SPDX-License-Identifier: GPL-3.0-or-later
// Element groups: list, boxes, matrix, the mode for all groups, and deletion with what follows it.
#include "tools/groups.h"

#include "tests/support/recorder.h"

// A model with n groups whose property k is 100 g + k, and matrix cell (i,j) 1000 g + 10 i + j.
static void makegroups(int n) {
    groups(0, 0) = n;
    for (int g = 1; g <= n; ++g) {
        groupname(g) = "G" + std::to_string(g);
        groupcolor(g) = 1000 * g;
        for (int k = 1; k <= groupfields; ++k) groups(g, k) = 100 * g + k;
        for (int i = 1; i <= 6; ++i)
            for (int j = 1; j <= 6; ++j) groupmat(g, i, j) = float(1000 * g + 10 * i + j);
    }
}

TEST(Groups, BoxesGoToTheGroupAndBack) {
    sessionroom room;
    makegroups(2);
    groupform form = opengroups();
    EXPECT_EQ(form.matrix[(2 - 1) + 6 * (3 - 1)], "1023") << "row 2, column 3";
    form.text[1] = "2.1E+11";
    form.text[2] = "";
    form.matrix[(5 - 1) + 6 * (6 - 1)] = "0.1";
    getgroup(form);
    EXPECT_EQ(groups(1, 1), 2.1e11);
    EXPECT_EQ(groups(1, 2), 0) << "an empty box stores 0";
    EXPECT_EQ(groupmat(1, 5, 6), 0.1f);
    EXPECT_EQ(groupmat(1, 6, 5), 1065) << "only the edit of a box mirrors";
    EXPECT_EQ(form.message, "");
    form.text[2] = "0,3";
    EXPECT_FALSE(readygroups(form)) << "stays open until this was read";
    EXPECT_EQ(form.text[2], "0") << "the box shows what is stored";
    EXPECT_EQ(form.message, "Poisson ratio: \"0,3\" is no number, 0 is stored");
    EXPECT_TRUE(readygroups(form));
    form.matrix[0] = "-1E50";
    getgroup(form);
    EXPECT_EQ(form.message, "Matrix row 1, column 1: -1E50 is too large, the old value is kept");
    EXPECT_EQ(groupmat(1, 1, 1), 1011);
    form.text[4] = "x";
    choosegroup(form, 1);
    EXPECT_NE(form.message.find("G1, Thickness | Area: \"x\" is no number"), std::string::npos);
    for (int column = 2; column <= 6; ++column) {
        editmatrix(form, 6 * (column - 1), std::to_string(column));
        EXPECT_EQ(form.matrix[std::size_t(column - 1)], std::to_string(column)) << "row 1";
    }
}

TEST(Groups, NamesAreUniqueAndCaseCounts) {
    sessionroom room;
    makegroups(3);
    groupform form = opengroups();
    const struct {
        const char *typed, *name, *message;
    } cases[] = {
        {"G2", "G1", "Name allready excists"},         {"g2", "g2", ""},
        {"All Groups", "g2", "Name allready excists"}, {"  ", "g2", "A group needs a name"},
        {"Deck, \"60\"", "Deck, \"60\"", ""},          {"Deck, \"60\"", "Deck, \"60\"", ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(changename(form, c.typed), *c.message == 0) << c.typed;
        EXPECT_EQ(groupname(1), c.name) << c.typed;
        EXPECT_EQ(form.name, c.name) << c.typed;
        EXPECT_EQ(form.message, c.message) << c.typed;
    }
}

TEST(Groups, AddingFindsAFreeName) {
    sessionroom room;
    makegroups(3);
    groupname(1) = "GR 4";
    groupname(2) = "GR 4*";
    groupform form = opengroups();
    form.text[1] = "5";
    groups(4, 1) = groupmat(4, 2, 2) = 9;
    groupcolor(2) = groupcolorof(4);
    addgroup(form);
    EXPECT_EQ(groupcolor(4), groupcolorof(5)) << "the next colour that no group has";
    EXPECT_EQ(groupname(4), "GR 4**");
    EXPECT_EQ(form.text[1], "5") << "the material of the group on show";
    EXPECT_EQ(form.text[2] + form.text[3] + form.text[4], "1021030") << "its section is not";
    EXPECT_EQ(groupmat(4, 2, 2), 0);
    EXPECT_EQ(groups(1, 1), 5) << "the group that was left is kept";
    while (ngroups() < modelsize(sizegroups)) addgroup(form);
    addgroup(form);
    EXPECT_EQ(form.message, "Maximum number of groups");
    EXPECT_EQ(ngroups(), modelsize(sizegroups));
}

TEST(Groups, DeletingMovesAllThatNamesAGroup) {
    sessionroom room;
    makegroups(4);
    for (int n = 0; n < 3; ++n) addnode(float(n), 0, 0);
    for (const int g : {1, 3, 4}) addelement(1, {1, 2}, g);
    tmpelems(0, 0) = tmpelems(1, 5) = 2;
    tmpelems(2, 5) = 4;
    patches(0, 0, 0) = 3;
    for (int p = 1; p <= 3; ++p) patches(p, 0, 2) = p;
    for (int v = 1; v <= 3; ++v) viewgroup(v) = v;
    groupform form = opengroups();
    choosegroup(form, 1);
    room.platform.answerqueue = {answers::no, answers::yes};
    deletegroup(form);
    EXPECT_EQ(ngroups(), 4) << "answered no";
    deletegroup(form);
    EXPECT_EQ(ngroups(), 3);
    EXPECT_EQ(groups(2, 12), 312);
    EXPECT_EQ(groupmat(3, 6, 5), 4065);
    EXPECT_EQ(groupcolor(2), 3000);
    for (int e = 1; e <= 3; ++e) EXPECT_EQ(egroup(e), e);
    EXPECT_EQ(tmpelems(1, 5), 1);
    EXPECT_EQ(tmpelems(2, 5), 3);
    const int ofpatch[] = {1, 1, 2};
    for (int p = 1; p <= 3; ++p) EXPECT_EQ(patches(p, 0, 2), ofpatch[p - 1]) << p;
    EXPECT_EQ(viewgroup(1), 1);
    EXPECT_EQ(viewgroup(2), 0) << "all groups";
    EXPECT_EQ(viewgroup(3), 2);
}

TEST(Groups, WhatCanNotBeDeletedStays) {
    sessionroom room;
    makegroups(2);
    addelement(1, {1, 2}, 2);
    room.platform.answerqueue = {answers::yes, answers::yes};
    groupform form = opengroups();
    choosegroup(form, 2);
    deletegroup(form);
    EXPECT_EQ(ngroups(), 2) << "all groups are none that could go";
    choosegroup(form, 0);
    deletegroup(form);
    EXPECT_EQ(egroup(1), 1);
    room.platform.messages.clear();
    deletegroup(form);
    EXPECT_EQ(form.message, "Not allowed, one group minimum");
    EXPECT_TRUE(room.platform.messages.empty()) << "before any question";
}

TEST(Groups, AnEditOfAllGroupsTakesTheNumbersAlone) {
    sessionroom room;
    makegroups(3);
    groupform form = opengroups();
    choosegroup(form, 3);
    editfield(form, 2, "0.25");
    editmatrix(form, 0, "5");
    editfield(form, 3, "steel");
    updategroups(form);
    EXPECT_EQ(groups(1, 2), 102) << "answered no";
    room.platform.answerqueue = {answers::yes};
    updategroups(form);
    for (int g = 1; g <= 3; ++g) {
        EXPECT_EQ(groups(g, 2), 0.25);
        EXPECT_EQ(groups(g, 3), 100 * g + 3);
        EXPECT_EQ(groupmat(g, 1, 1), float(1000 * g + 11));
    }
    EXPECT_NE(form.message.find("\"steel\" is no number"), std::string::npos);
    editfield(form, 1, "8");
    EXPECT_TRUE(readygroups(form));
    EXPECT_EQ(groups(2, 1), 201) << "closing stores one group, never all";
    EXPECT_EQ(meshgroup, 1) << "elements need a group";
}
