// SPDX-License-Identifier: GPL-3.0-or-later
// Constraints and loads of a selection: the rewrite of rows, captions by mode and load case, the
// symbols on show, and what is refused.
#include "loads/nodeattributes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "core/model.h"
#include "core/pack.h"
#include "core/session.h"
#include "core/views.h"
#include "loads/loadkees.h"
#include "tests/support/recorder.h"
#include "view/moddraw.h"

struct conrow {
    int node, dof;
    float value;
    bool operator==(const conrow&) const = default;
};
static void PrintTo(const conrow& r, std::ostream* out) {
    *out << r.node << "/" << r.dof << "/" << r.value;
}

static std::vector<conrow> constraints() {
    std::vector<conrow> rows;
    for (int i = 1; i <= ncon; ++i) rows.push_back({connode(i), condof(i), conval(i)});
    return rows;
}

static std::vector<conrow> loads(int lc) {
    std::vector<conrow> rows;
    for (int i = 1; i <= loadnode(lc, 0); ++i)
        rows.push_back({loadnode(lc, i), loaddof(lc, i), loadval(lc, i)});
    return rows;
}

static std::vector<conrow> elementloads(int lc) {
    std::vector<conrow> rows;
    for (int i = 1; i <= int(elemload(lc, 0, 0)); ++i)
        rows.push_back({int(elemload(lc, i, 0)), int(elemload(lc, i, 1)), elemload(lc, i, 2)});
    return rows;
}

static void setconstraints(const std::vector<conrow>& rows) {
    ncon = 0;
    for (const conrow& r : rows) {
        ++ncon;
        connode(ncon) = r.node;
        condof(ncon) = r.dof;
        conval(ncon) = r.value;
    }
}

static void selectnodes(const std::vector<int>& list) {
    nodesel(0) = int(list.size());
    for (std::size_t i = 0; i < list.size(); ++i) nodesel(long(i) + 1) = list[i];
}

static void selectelements(const std::vector<int>& list) {
    elemsel(0) = float(list.size());
    for (std::size_t i = 0; i < list.size(); ++i) elemsel(long(i) + 1) = float(list[i]);
}

// Nodes 1..count on a line, elements between them.
static void makechain(int count) {
    for (int n = 1; n <= count; ++n) addnode(float(n), 0, 0);
    for (int n = 1; n < count; ++n) addelement(6, {n, n + 1});
}

static attributeform openin(attributemodes mode) {
    startattributes(mode);
    return openattributes();
}

static void fill(attributeform& form, std::vector<std::string> texts) {
    texts.resize(6);
    std::ranges::copy(texts, form.text.begin());
}

// Applies; returns the number of the error, 0 without one.
static int errorof(attributeform& form) {
    int number = 0;
    guarded([&] { applyattributes(form); }, [&](const runtimeerror& e) { number = e.number; });
    return number;
}

TEST(Attributes, FilledFieldsReplaceTheRowsOfANode) {
    const struct {
        const char* name;
        std::vector<conrow> before;
        std::vector<std::string> fields;
        std::vector<conrow> written;  // before the lists are compacted
    } cases[] = {
        {"first rows", {}, {"0", "", "2.5"}, {{2, 1, 0}, {2, 3, 2.5f}}},
        {"zero is a value", {}, {"0"}, {{2, 1, 0}}},
        {"fewer than before",
         {{2, 1, 0}, {3, 1, 7}, {2, 2, 0}},
         {"", "", "5"},
         {{2, 3, 5}, {3, 1, 7}, {0, 2, 0}}},
        {"more than before",
         {{2, 6, 1}, {3, 1, 7}},
         {"1", "2", "", "", "", "6"},
         {{2, 1, 1}, {3, 1, 7}, {2, 2, 2}, {2, 6, 6}}},
        {"all fields empty",
         {{2, 1, 0}, {3, 1, 7}, {2, 2, 0}},
         {},
         {{0, 1, 0}, {3, 1, 7}, {0, 2, 0}}},
        {"blanks are empty", {{2, 1, 0}}, {" ", "4"}, {{2, 2, 4}}},
    };
    for (const auto& c : cases) {
        sessionroom room;
        makechain(4);
        setconstraints(c.before);
        selectnodes({2});
        attributeform form = openin(attributemodes::constraints);
        fill(form, c.fields);
        applysingcon(form, 2);
        EXPECT_EQ(constraints(), c.written) << c.name;
        std::vector<conrow> whole = c.written;
        std::erase_if(whole, [](const conrow& r) { return r.node == 0; });
        applyattributes(form);
        EXPECT_EQ(constraints(), whole) << c.name;
    }
}

// The rewrite as it is told, for one node: fields overwrite the node's rows in their order, rows
// left over become holes, fields left over are appended.
static void rewriteplainly(std::vector<conrow>& rows, int n, const std::vector<std::string>& text) {
    int f = 0;
    const auto next = [&] {
        do ++f;
        while (f <= 6 && text[std::size_t(f) - 1].empty());
    };
    const auto row = [&] { return conrow{n, f, std::stof(text[std::size_t(f) - 1])}; };
    next();
    for (conrow& r : rows) {
        if (r.node != n) continue;
        if (f > 6) {
            r.node = 0;
        } else {
            r = row();
            next();
        }
    }
    for (; f <= 6; next()) rows.push_back(row());
}

TEST(Attributes, ASelectionGivesTheRowsOfItsNodesOneByOne) {
    std::mt19937 random(7);
    for (int round = 0; round < 20; ++round) {
        sessionroom room;
        makechain(30);
        const auto any = [&](int low, int high) {
            return std::uniform_int_distribution<int>(low, high)(random);
        };
        std::vector<conrow> rows;
        for (int i = 0; i < 60; ++i) rows.push_back({any(0, 31), any(1, 6), float(i)});
        std::vector<int> selected;  // a node may occur twice
        for (int i = 0; i < 12; ++i) selected.push_back(any(1, 30));
        std::vector<std::string> fields(6);
        for (std::string& f : fields)
            if (any(0, 1)) f = std::to_string(any(-9, 9));

        setconstraints(rows);
        selectnodes(selected);
        attributeform form = openin(attributemodes::constraints);
        fill(form, fields);
        applyconstrains(form);
        for (const int n : selected) rewriteplainly(rows, n, fields);
        EXPECT_EQ(constraints(), rows) << "round " << round;
    }
}

TEST(Attributes, LoadsAndElementLoadsAreOfTheirLoadCase) {
    sessionroom room;
    makechain(4);
    loadcaseform casesform = openloadkees();
    addloadcase(casesform);
    selectnodes({1, 4});
    attributeform form = openin(attributemodes::nodalloads);
    EXPECT_EQ(form.cases, (std::vector<std::string>{"LC 1", "LC 2"}));
    EXPECT_EQ(form.chosencase, 1);
    fill(form, {"", "-10", "", "", "", "2"});
    applyattributes(form);
    EXPECT_EQ(loads(2), (std::vector<conrow>{{1, 2, -10}, {1, 6, 2}, {4, 2, -10}, {4, 6, 2}}));
    EXPECT_TRUE(loads(1).empty());
    chooseattributecase(form, 0);
    EXPECT_EQ(curlc, 1) << "for the whole program";
    EXPECT_EQ(form.text[1], "");
    closeattributes(form);

    selectnodes({});
    selectelements({3, 1});
    form = openin(attributemodes::elementloads);
    fill(form, {"", "", "-0.5"});
    applyattributes(form);
    EXPECT_EQ(elementloads(1), (std::vector<conrow>{{3, 3, -0.5f}, {1, 3, -0.5f}}));
    EXPECT_TRUE(elementloads(2).empty());
    fill(form, {"", "4", "-0.5"});
    applyattributes(form);
    fill(form, {"1", "x", "3"});
    applyattributes(form);
    EXPECT_EQ(elementloads(1),
              (std::vector<conrow>{{3, 1, 1}, {1, 1, 1}, {3, 3, -0.5f}, {1, 3, -0.5f}}))
        << "the fields before the text that is no number are stored, the other rows stay";
    EXPECT_TRUE(room.door.messages.empty());
    const std::vector<conrow> before = elementloads(1);
    fill(form, {"2", "", "1e39"});
    EXPECT_EQ(errorof(form), erroverflow) << "a number too large is told";
    EXPECT_EQ(elementloads(1), before);
}

TEST(Attributes, TheListGivesTheRowsOfOneItem) {
    sessionroom room;
    makechain(4);
    setconstraints({{2, 1, 0}, {3, 3, 90}, {2, 6, 1.5f}});
    selectnodes({3, 2});
    attributeform form = openin(attributemodes::constraints);
    EXPECT_EQ(form.items, (std::vector<std::string>{"Selection", "3", "2"}));
    EXPECT_EQ(form.listgroup, "Select Nodes");
    EXPECT_EQ(form.listcaption, "   Apply edit to node");
    chooseitem(form, 2);
    EXPECT_EQ(form.text, (std::array<std::string, 6>{"0", "", "", "", "", "1.5"}));
    fill(form, {"", "4"});
    applyattributes(form);
    EXPECT_EQ(constraints(), (std::vector<conrow>{{2, 2, 4}, {3, 3, 90}})) << "node 3 is untouched";
    chooseitem(form, 0);
    EXPECT_EQ(form.text[1], "") << "the selection shows no rows";
    chooseitem(form, 1);
    EXPECT_EQ(form.text[2], "90");
}

TEST(Attributes, CaptionsFollowModeAndTypeOfLoadCase) {
    const struct {
        attributemodes mode;
        int type;
        const char *title, *group, *first, *firstunit, *fourth, *fourthunit;
        bool fourthshown;
    } cases[] = {
        {attributemodes::nodalloads, 0, "Edit Nodal loads", "Nodal Loads", "Fx =", "F",
         "Mx =", "F.L", true},
        {attributemodes::nodalloads, 3, "Edit Nodal loads", "Nodal Masses", "Massx =", "M",
         "Ix =", "M.L^2", true},
        {attributemodes::elementloads, 0, "Edit Element loads", "Element Loads", "Px =", "F/L^n",
         "", "", false},
        {attributemodes::elementloads, 9, "Edit Element loads", "Element Loads", "Px =", "F/L^n",
         "", "", false},
        {attributemodes::none, 0, "Edit loads and constraints", "Nodal Loads", "Fx =", "F",
         "Mx =", "F.L", true},
    };
    for (const auto& c : cases) {
        sessionroom room;
        makechain(2);
        selectnodes({1});
        selectelements({1});
        lctype(1) = c.type;
        const attributeform form = openin(c.mode);
        EXPECT_EQ(form.title, c.title);
        EXPECT_FALSE(form.constraintgroup);
        EXPECT_EQ(form.loadgroup, c.group);
        EXPECT_EQ(form.loadlabel[0].caption, c.first);
        EXPECT_EQ(form.loadlabel[0].unit, c.firstunit);
        EXPECT_TRUE(form.loadlabel[0].shown);
        EXPECT_EQ(form.loadlabel[3].caption, c.fourth);
        EXPECT_EQ(form.loadlabel[3].unit, c.fourthunit);
        EXPECT_EQ(form.loadlabel[3].shown, c.fourthshown);
        EXPECT_EQ(form.listsnodes, c.mode != attributemodes::elementloads);
    }
}

TEST(Attributes, StartAndCloseSetTheFlags) {
    sessionroom room;
    makechain(2);
    selectnodes({1});
    mnuEditItem(0).enabled = true;
    drawcircle = true;
    attributeform form = openin(attributemodes::elementloads);
    EXPECT_FALSE(drawcircle) << "the start of one mode ends the other";
    EXPECT_TRUE(editelemload);
    EXPECT_TRUE(editing);
    EXPECT_EQ(resultflag, 1);
    EXPECT_FALSE(mnuEditItem(0).enabled);
    EXPECT_EQ(room.door.dialogs, std::vector<std::string>{"nodeattributes"});
    closeattributes(form);
    EXPECT_FALSE(editelemload);
    EXPECT_FALSE(editing);
    EXPECT_EQ(nodesel(0), 1) << "the selection stays";
}

TEST(Attributes, WithoutAModeApplyChangesNothing) {
    sessionroom room;
    makechain(2);
    setconstraints({{9, 1, 0}});
    selectnodes({1});
    attributeform form = openin(attributemodes::none);
    EXPECT_TRUE(linepressure);
    fill(form, {"1", "2"});
    applyattributes(form);
    EXPECT_EQ(constraints(), (std::vector<conrow>{{9, 1, 0}}));
    EXPECT_TRUE(loads(1).empty());
}

TEST(Attributes, NothingSelectedIsToldOnceAndAppliesNothing) {
    sessionroom room;
    makechain(2);
    attributeform form = openin(attributemodes::constraints);
    EXPECT_TRUE(
        room.door.told("Please, select node(s)or elements before adding boundary conditions"));
    EXPECT_EQ(form.items, std::vector<std::string>{"None"});
    fill(form, {"0"});
    applyattributes(form);
    EXPECT_EQ(ncon, 0);
    EXPECT_EQ(room.door.messages.size(), 1u);
}

TEST(Attributes, NumbersOfTheOtherKindAreRefused) {
    sessionroom room;
    makechain(4);
    selectelements({2});
    attributeform form = openin(attributemodes::constraints);
    EXPECT_EQ(form.items, (std::vector<std::string>{"Selection", "2"}));
    EXPECT_EQ(form.listgroup, "Select Elements");
    EXPECT_EQ(form.listcaption, "Apply edit to element");
    setconstraints({{2, 1, 5}});
    chooseitem(form, 1);
    EXPECT_EQ(form.text[0], "") << "node 2 is not element 2";
    fill(form, {"0"});
    applyattributes(form);
    EXPECT_EQ(constraints(), (std::vector<conrow>{{2, 1, 5}}));
    EXPECT_TRUE(room.door.toldpart("applied to nodes, the list holds elements"));
    chooseitem(form, 0);
    fill(form, {"0"});
    applyattributes(form);
    EXPECT_TRUE(room.door.toldpart("applied to nodes, but none is selected"));
}

TEST(Attributes, AFailedApplyLeavesTheListsAsTheyWere) {
    sessionroom room;
    modelsize(3) = 4;
    allocmodel();
    makechain(4);
    loadnode(0, 0) = 1;
    curlc = 1;
    setconstraints({{1, 1, 0}, {2, 1, 7}, {2, 2, 8}});
    const std::vector<conrow> before = constraints();
    selectnodes({1, 2});
    attributeform form = openin(attributemodes::constraints);
    const struct {
        std::vector<std::string> fields;
        int error;
    } cases[] = {{{"1", "two"}, errtype},
                 {{"1e39"}, erroverflow},
                 {{"1", "2", "3"}, errsubscript}};  // six rows, four are declared
    for (const auto& c : cases) {
        room.door.views[0].operations.clear();
        fill(form, c.fields);
        EXPECT_EQ(errorof(form), c.error);
        EXPECT_EQ(constraints(), before);
        EXPECT_EQ(room.door.views[0].count("line"), 6) << "three erased, three drawn again";
    }
    selectnodes({1, 2, 1, 2});
    fill(form, {"1", "2"});
    EXPECT_EQ(errorof(form), 0) << "four rows fit, a node named twice needs them once";
    EXPECT_EQ(ncon, 4);
}

TEST(Attributes, SymbolsAreErasedAndDrawnInTheViewsConcerned) {
    sessionroom room;
    makechain(3);
    singleview = false;
    activeview = 2;
    selectnodes({1});
    attributeform form = openin(attributemodes::constraints);
    fill(form, {"0"});
    applyattributes(form);
    for (int v = 0; v < 4; ++v)
        EXPECT_EQ(room.door.views[std::size_t(v)].count("line"), v == 1 ? 1 : 0) << v;
    for (auto& view : room.door.views) view.operations.clear();
    fill(form, {"", "0"});
    applyattributes(form);
    const auto& drawn = room.door.views[1].operations;
    ASSERT_EQ(room.door.views[1].count("line"), 2);
    EXPECT_NE(drawn.front().find("#ffffff"), std::string::npos) << "the old one is erased first";
    EXPECT_EQ(drawn.back().find("#ffffff"), std::string::npos);
    closeattributes(form);
    EXPECT_GT(room.door.views[3].count("line"), 0) << "the other views follow at the end";

    form = openin(attributemodes::nodalloads);
    fill(form, {"5"});
    for (const bool off : {false, true}) {
        for (auto& view : room.door.views) view.operations.clear();
        checkonly(viewloads, off ? 0 : 2);
        applyattributes(form);
        for (auto& view : room.door.views) EXPECT_EQ(view.count("line") > 0, !off);
    }
    closeattributes(form);

    checkonly(viewloads, 2);
    selectnodes({});
    selectelements({2});
    form = openin(attributemodes::elementloads);
    fill(form, {"", "", "1"});
    for (auto& view : room.door.views) view.operations.clear();
    applyattributes(form);
    for (int v = 0; v < 4; ++v)
        EXPECT_EQ(room.door.views[std::size_t(v)].count("line") > 0, v == 1) << v;
}

TEST(Attributes, ConstraintsThatAreOffAreNotDrawn) {
    sessionroom room;
    makechain(2);
    mnudrawlist(2).checked = false;
    selectnodes({1});
    attributeform form = openin(attributemodes::constraints);
    fill(form, {"0"});
    applyattributes(form);
    EXPECT_EQ(ncon, 1);
    EXPECT_EQ(room.door.views[0].count("line"), 0);
}

TEST(Attributes, AnotherLoadCaseIsDrawnInThePlaceOfTheFirst) {
    sessionroom room;
    makechain(2);
    loadcaseform casesform = openloadkees();
    addloadcase(casesform);
    loadnode(2, 0) = 1;
    loadnode(2, 1) = 1;
    loaddof(2, 1) = 2;
    loadval(2, 1) = 7;
    selectnodes({1});
    attributeform form = openin(attributemodes::nodalloads);
    for (const bool active : {false, true}) {
        checkonly(viewloads, active ? 1 : 2);
        chooseattributecase(form, 1);
        room.door.views[0].operations.clear();
        chooseattributecase(form, 0);
        const auto& drawn = room.door.views[0].operations;
        ASSERT_EQ(room.door.views[0].count("line"), active ? 1 : 0);
        if (active) {
            EXPECT_NE(drawn.front().find("#ffffff"), std::string::npos) << "erased";
        }
    }
}

TEST(Attributes, TheFirstRowMakesTheFirstLoadCase) {
    sessionroom room;
    makechain(2);
    attributeform form = openin(attributemodes::nodalloads);
    loadnode(0, 0) = 0;
    applysingload(form, 2);
    EXPECT_EQ(nlc(), 0) << "no field is filled";
    fill(form, {"5"});
    applysingload(form, 9);
    EXPECT_EQ(nlc(), 0) << "there is no node 9";
    applysingload(form, 2);
    EXPECT_EQ(nlc(), 1);
    EXPECT_EQ(loads(1), (std::vector<conrow>{{2, 1, 5}}));
}

TEST(Attributes, CompactionDropsStaleRowsOfEveryCase) {
    sessionroom room;
    makechain(3);
    loadcaseform casesform = openloadkees();
    addloadcase(casesform);
    setconstraints({{7, 1, 0}, {1, 2, 3}});
    loadnode(1, 0) = 2;
    loadnode(1, 1) = 9;
    loadnode(1, 2) = 2;
    loaddof(1, 2) = 4;
    elemload(2, 0, 0) = 1;
    elemload(2, 1, 0) = 3;  // elements 1 and 2 exist
    selectnodes({3});
    attributeform form = openin(attributemodes::nodalloads);
    applyattributes(form);
    EXPECT_EQ(constraints(), (std::vector<conrow>{{1, 2, 3}}));
    EXPECT_EQ(loads(1), (std::vector<conrow>{{2, 4, 0}}));
    EXPECT_TRUE(elementloads(2).empty());
    EXPECT_EQ(elemload(0, 0, 0), 2);
}
