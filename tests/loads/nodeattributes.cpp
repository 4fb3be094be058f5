// SPDX-License-Identifier: GPL-3.0-or-later
// Constraints and loads of a selection: the rewrite of rows, captions by mode and load case, the
// symbols on show, and what is refused.
#include "loads/nodeattributes.h"
#include "loads/presentrows.h"

#include <algorithm>
#include <random>

#include "core/allocmodel.h"
#include "core/kaltext.h"
#include "loads/loadaxes.h"
#include "loads/loadkees.h"
#include "tests/support/recorder.h"
#include "view/moddraw.h"

struct conrow {
    int node, dof;
    float value;
    bool operator==(const conrow&) const = default;
};

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

static void setselectednodes(const std::vector<int>& list) {
    nodesel(0) = int(list.size());
    for (std::size_t i = 0; i < list.size(); ++i) nodesel(long(i) + 1) = list[i];
}

static void setselectedelements(const std::vector<int>& list) {
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

// For one node: fields overwrite its rows in their order, rows left over become holes, fields left
// over are appended.
static void rewriteplainly(std::vector<conrow>& rows, int n, const std::vector<std::string>& text) {
    std::vector<conrow> fresh;
    for (int f = 1; f <= 6; ++f)
        if (const std::string& t = text[std::size_t(f) - 1]; !t.empty())
            fresh.push_back({n, f, std::stof(t)});
    auto next = fresh.begin();
    for (conrow& r : rows)
        if (r.node == n) r = next == fresh.end() ? conrow{0, r.dof, r.value} : *next++;
    rows.insert(rows.end(), next, fresh.end());
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
        std::vector<std::string> typed = fields;
        if (round % 2) std::ranges::replace(typed, "", " ");  // blanks are empty

        setconstraints(rows);
        setselectednodes(selected);
        attributeform form = openin(attributemodes::constraints);
        fill(form, typed);
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
    setselectednodes({1, 4});
    attributeform form = openin(attributemodes::nodalloads);
    fill(form, {"", "-10", "", "", "", "2"});
    applyattributes(form);
    EXPECT_EQ(loads(2), (std::vector<conrow>{{1, 2, -10}, {1, 6, 2}, {4, 2, -10}, {4, 6, 2}}));
    EXPECT_TRUE(loads(1).empty());
    chooseattributecase(form, 0);
    closeattributes(form);

    setselectednodes({});
    setselectedelements({3, 1});
    form = openin(attributemodes::elementloads);
    fill(form, {"", "", "-0.5"});
    applyattributes(form);
    EXPECT_EQ(elementloads(1), (std::vector<conrow>{{3, 3, -0.5f}, {1, 3, -0.5f}}));
    fill(form, {"1", "x", "3"});
    applyattributes(form);
    EXPECT_EQ(elementloads(1), (std::vector<conrow>{{3, 1, 1}, {1, 1, 1}}))
        << "the fields before the text that is no number are stored";
    EXPECT_TRUE(room.platform.messages.empty());
}

TEST(Attributes, CaptionsFollowTheTypeOfTheLoadCase) {
    sessionroom room;
    makechain(2);
    setselectednodes({1});
    for (const bool mass : {false, true}) {
        lctype(1) = mass ? 3 : 0;
        const attributeform form = openin(attributemodes::nodalloads);
        EXPECT_EQ(form.loadlabel[0].caption, mass ? "Massx =" : "Fx =");
        EXPECT_EQ(form.loadlabel[3].unit, mass ? "M.L^2" : "F.L");
    }
}

TEST(Attributes, WithoutModeOrSelectionApplyChangesNothing) {
    sessionroom room;
    makechain(2);
    const std::vector<conrow> rows = {{2, 1, 0}};
    setconstraints(rows);
    for (const auto mode : {attributemodes::constraints, attributemodes::none}) {
        attributeform form = openin(mode);
        fill(form, {"1", "2"});
        applyattributes(form);
        EXPECT_EQ(constraints(), rows);
        EXPECT_TRUE(loads(1).empty());
        setselectednodes({1});
    }
    EXPECT_EQ(room.platform.messages.size(), 1u) << "that nothing is selected is told once";
}

TEST(Attributes, NumbersOfTheOtherKindAreRefused) {
    sessionroom room;
    makechain(4);
    setselectedelements({2});
    attributeform form = openin(attributemodes::constraints);
    setconstraints({{2, 1, 5}});
    chooseitem(form, 1);
    EXPECT_EQ(form.text[0], "") << "node 2 is not element 2";
    fill(form, {"0"});
    applyattributes(form);
    EXPECT_EQ(constraints(), (std::vector<conrow>{{2, 1, 5}}));
    EXPECT_TRUE(room.platform.toldpart("applied to nodes, the list holds elements"));
    chooseitem(form, 0);
    applyattributes(form);
    EXPECT_TRUE(room.platform.toldpart("applied to nodes, but none is selected"));
}

TEST(Attributes, AFailedApplyLeavesTheListsAsTheyWere) {
    sessionroom room;
    modelsize(sizeconditions) = 4;
    allocmodel();
    makechain(4);
    loadnode(0, 0) = 1;
    curlc = 1;
    setconstraints({{1, 1, 0}, {2, 1, 7}, {2, 2, 8}});
    const std::vector<conrow> before = constraints();
    setselectednodes({1, 2});
    attributeform form = openin(attributemodes::constraints);
    const struct {
        std::vector<std::string> fields;
        int error;
    } cases[] = {{{"1", "two"}, errtype},
                 {{"1e39"}, erroverflow},
                 {{"1", "2", "3"}, errsubscript}};  // six rows, four are declared
    for (const auto& c : cases) {
        room.platform.views[0].operations.clear();
        fill(form, c.fields);
        EXPECT_EQ(errorof(form), c.error);
        EXPECT_EQ(constraints(), before);
        EXPECT_EQ(room.platform.views[0].count("line"), 6) << "three erased, three drawn again";
    }
    setselectednodes({1, 2, 1, 2});
    fill(form, {"1", "2"});
    EXPECT_EQ(errorof(form), 0) << "four rows fit, a node named twice needs them once";
    EXPECT_EQ(ncon, 4);
}

TEST(Attributes, SymbolsAreErasedAndDrawnInTheViewsConcerned) {
    sessionroom room;
    makechain(3);
    singleview = false;
    activeview = 2;
    setselectednodes({1});
    attributeform form = openin(attributemodes::constraints);
    fill(form, {"0"});
    applyattributes(form);
    for (int v = 0; v < 4; ++v)
        EXPECT_EQ(room.platform.views[std::size_t(v)].count("line"), v == 1) << v;
    for (auto& view : room.platform.views) view.operations.clear();
    fill(form, {"", "0"});
    applyattributes(form);
    const auto& drawn = room.platform.views[1].operations;
    ASSERT_EQ(room.platform.views[1].count("line"), 2);
    EXPECT_NE(drawn.front().find("#ffffff"), std::string::npos) << "the old one is erased first";
    EXPECT_EQ(drawn.back().find("#ffffff"), std::string::npos);
    closeattributes(form);
    EXPECT_GT(room.platform.views[3].count("line"), 0) << "the other views follow at the end";

    form = openin(attributemodes::nodalloads);
    fill(form, {"5"});
    for (const int on : {2, 0}) {
        for (auto& view : room.platform.views) view.operations.clear();
        checkonly(viewloads, on);
        applyattributes(form);
        for (auto& view : room.platform.views) EXPECT_EQ(view.count("line") > 0, on != 0);
    }
}

TEST(Attributes, AnotherLoadCaseIsDrawnInThePlaceOfTheFirst) {
    sessionroom room;
    makechain(2);
    loadcaseform casesform = openloadkees();
    addloadcase(casesform);
    loadnode(2, 0) = loadnode(2, 1) = loaddof(2, 1) = 1;
    loadval(2, 1) = 7;
    setselectednodes({1});
    attributeform form = openin(attributemodes::nodalloads);
    checkonly(viewloads, activecase);
    chooseattributecase(form, 1);
    room.platform.views[0].operations.clear();
    chooseattributecase(form, 0);
    ASSERT_EQ(room.platform.views[0].count("line"), 1);
    EXPECT_NE(room.platform.views[0].operations[0].find("#ffffff"), std::string::npos) << "erased";
}

TEST(Attributes, TheFirstRowMakesTheFirstLoadCase) {
    sessionroom room;
    makechain(2);
    attributeform form = openin(attributemodes::nodalloads);
    loadnode(0, 0) = 0;
    fill(form, {"5"});
    applysingload(form, 9);
    EXPECT_EQ(nlc(), 0) << "there is no node 9";
    applysingload(form, 2);
    EXPECT_EQ(nlc(), 1);
    EXPECT_EQ(loads(1), (std::vector<conrow>{{2, 1, 5}}));
}

TEST(Attributes, TheSelectionsRowsAreToldInWords) {
    sessionroom room;
    for (int n = 1; n <= 4; ++n) addnode(float(n), 0, 0);
    ncon = 4;
    for (int i = 1; i <= 4; ++i) {
        connode(i) = i == 4 ? 0 : i;  // the last is a hole
        condof(i) = i == 3 ? 6 : 1;
        conval(i) = i == 2 ? 1.5f : 0;
    }
    nodesel(0) = 3;
    for (int i = 1; i <= 3; ++i) nodesel(i) = i;
    editconstraint = true;
    attributeform form = openattributes();
    EXPECT_EQ(presentrows(form), "At present: Dx 0 to 1.5 at 2 of 3, Rz 0 at 1 of 3");
    form.chosen = 2;
    EXPECT_EQ(presentrows(form), "At present: Dx 1.5");
    unitstext = "m kN t";
    EXPECT_EQ(presentrows(form), "At present: Dx 1.5 m");
    closeattributes(form);
    EXPECT_EQ(presentrows(form), "") << "no mode";
    editnodalload = true;
    EXPECT_EQ(presentrows(openattributes()), "At present: nothing at 3 nodes");
    editnodalload = false;
    editelemload = true;
    EXPECT_EQ(presentrows(openattributes()), "") << "no element is selected";
    editelemload = false;
    addelement(1, {1, 2});
    nodesel(0) = 0;
    elemsel(0) = elemsel(1) = 1;
    editconstraint = true;
    EXPECT_EQ(presentrows(openattributes()), "") << "elements have no constraints";
    editconstraint = false;
}

// A sheet of two rows, of height 1 and 2, and a free node.
TEST(Attributes, TotalsAreSharedOutByWhatBelongsToEachNode) {
    sessionroom room;
    for (const float y : {0.0f, 1.0f, 3.0f})
        for (const float x : {0.0f, 1.0f, 2.0f}) addnode(x, y, 0);
    for (const int a : {1, 2, 4, 5}) addelement(9, {a, a + 1, a + 4, a + 3});
    addelement(6, {9, addnode(2, 9, 0)});
    addnode(7, 7, 0);
    const struct {
        const char* name;
        std::vector<int> among;
        std::vector<float> loads;
    } cases[] = {
        {"an edge", {3, 6, 9}, {100, 300, 200}},
        {"a line between faces counts once", {2, 5, 8}, {100, 300, 200}},
        {"an edge and a member", {3, 6, 9, 10}, {600.f / 18, 100, 4 * 600.f / 9, 200}},
        {"faces", {1, 2, 4, 5, 7, 8}, {50, 50, 150, 150, 100, 100}},
        {"nothing between them", {1, 9, 11}, {200, 200, 200}},
        {"one", {5}, {600}},
    };
    for (const auto& c : cases) {
        loadnode(1, 0) = 0;
        setselectednodes(c.among);
        attributeform form = openin(attributemodes::nodalloads);
        form.shared = true;
        form.text[1] = "600";
        applyattributes(form);
        ASSERT_EQ(loadnode(1, 0), int(c.among.size())) << c.name;
        for (std::size_t i = 0; i < c.among.size(); ++i)
            EXPECT_NEAR(loadval(1, int(i) + 1), c.loads[i], 1e-3) << c.name << c.among[i];
        closeattributes(form);
    }
}

TEST(Attributes, AButtonFillsTheFieldsOfASupport) {
    sessionroom room;
    attributeform form;
    const auto held = [&](bool plane, bool clamped) {
        dim2d = plane;
        fillsupport(form, clamped);
        std::string text;
        for (const std::string& t : form.text) text += t.empty() ? "-" : t;
        return text;
    };
    EXPECT_EQ(held(false, true), "000000");
    EXPECT_EQ(held(false, false), "000---");
    EXPECT_EQ(held(true, true), "00---0");
    EXPECT_EQ(held(true, false), "00----");
    dim2d = false;
}

TEST(Attributes, CompactionDropsStaleRowsOfEveryCase) {
    sessionroom room;
    makechain(3);
    loadcaseform casesform = openloadkees();
    addloadcase(casesform);
    setconstraints({{7, 1, 0}, {1, 2, 3}});
    loadnode(1, 0) = loadnode(1, 2) = 2;
    loadnode(1, 1) = 9;
    loaddof(1, 2) = 4;
    elemload(2, 0, 0) = 1;
    elemload(2, 1, 0) = 3;  // elements 1 and 2 exist
    setselectednodes({3});
    attributeform form = openin(attributemodes::nodalloads);
    applyattributes(form);
    EXPECT_EQ(constraints(), (std::vector<conrow>{{1, 2, 3}}));
    EXPECT_EQ(loads(1), (std::vector<conrow>{{2, 4, 0}}));
    EXPECT_TRUE(elementloads(2).empty());
}

TEST(Attributes, TheAxesOfElementLoadsStandWhileTheWindowIsOpen) {
    sessionroom room;
    makechain(3);
    wirelayers();
    wireloadaxes();
    mnuSettingsItem(globalaxison).checked = false;  // the triad has a blue line too
    setselectedelements({2});
    const auto drawn = [&](const std::string& start, const std::string& end) {
        return std::ranges::count_if(room.platform.views[0].operations,
                                     [&](const std::string& line) {
                                         return line.starts_with(start) && line.ends_with(end);
                                     });
    };
    redrawall();
    EXPECT_EQ(drawn("line", "#0000ff"), 0);
    const attributeform form = openin(attributemodes::elementloads);
    EXPECT_EQ(drawn("line", "#0000ff"), 1) << "axis 3";
    EXPECT_EQ(drawn("text", " 3"), 1);
    closeattributes(form);
    room.platform.views[0].operations.clear();
    redrawall();
    EXPECT_EQ(drawn("line", "#0000ff"), 0);
}
