// SPDX-License-Identifier: GPL-3.0-or-later
// What the page "Check" finds: a sound model without a finding, and each finding in a model that is
// the sound one with one fault.
#include "tools/findings.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "core/catalogue.h"
#include "core/views.h"
#include "tests/support/recorder.h"
#include "tools/checkform.h"
#include "tools/elementshape.h"
#include "tools/needs.h"
#include "tools/qualitypicture.h"
#include "view/moddraw.h"
#include "view/setviews.h"

namespace {

// A plate of 3 x 2 shells on nodes 1..12, held in three corners, with a pressure; a beam stands on
// node 12 and a spring holds node 1.
struct soundroom : sessionroom {
    soundroom() {
        for (int j = 0; j <= 2; ++j)
            for (int i = 0; i <= 3; ++i) addnode(float(i), float(j), 0);
        for (int j = 0; j < 2; ++j)
            for (int i = 0; i < 3; ++i) {
                const int a = 4 * j + i + 1;
                addelement(typeshell4, {a, a + 1, a + 5, a + 4});
            }
        addnode(3, 2, 2);
        addelement(typebeam, {12, 13});
        addelement(typespringt, {1}, 2);
        groups(0, 0) = 2;
        for (const int f : {fieldmodulus, fieldthickness, fieldixx, fieldiyy, fieldizz})
            groups(1, f) = 1;
        for (int k = 1; k <= 3; ++k) groupmat(2, k, k) = 5;
        for (const auto& [n, dof] : {std::pair(1, 3), {4, 2}, {4, 3}, {9, 1}, {9, 2}, {9, 3}})
            hold(n, dof);
        elemload(1, 0, 0) = elemload(1, 1, 0) = 1;
        elemload(1, 1, 1) = elemload(1, 1, 2) = 3;
        loadnode(0, 0) = 1;
    }
    static void hold(int n, int dof) {
        connode(++ncon) = n;
        condof(ncon) = dof;
    }
    static int shell(const std::vector<int>& corners) {
        return addelement(corners.size() == 3 ? typeshell3 : typeshell4, corners);
    }
};

std::vector<std::string> headings() {
    bool whole = false;
    std::vector<std::string> list;
    for (const finding& f : findfaults(whole))
        if (f.heading) list.push_back(f.text.substr(0, f.text.find(':')));
    EXPECT_TRUE(whole);
    return list;
}

}  // namespace

TEST(Findings, ASoundModelHasNone) {
    soundroom room;
    EXPECT_EQ(headings(), std::vector<std::string>{});
    addnode(3, 2, 2);  // a spring of no length between two nodes on one place
    addelement(typespring2, {13, 14}, 2);
    EXPECT_EQ(headings(), std::vector<std::string>{});
    dim2d = true;
    nodes(0, 13, 2) = nodes(0, 14, 2) = 0;
    nodes(0, 13, 1) = nodes(0, 14, 1) = 5;
    EXPECT_EQ(headings(), std::vector<std::string>{});
    dim2d = false;
}

TEST(Findings, EachFaultIsFoundAlone) {
    const auto shell = soundroom::shell;
    const auto move = [](int n, double x, double y, double z) {
        nodes(0, n, 0) = float(x), nodes(0, n, 1) = float(y), nodes(0, n, 2) = float(z);
    };
    using list = std::vector<std::string>;
    const struct {
        std::function<void()> damage;
        list found;
        const char* single;  // a part of one of the lines below
    } cases[] = {
        {[] { addnode(9, 9, 9); }, {"1 free node"}, "Node 14"},
        {[] { nodes(0, 13, 1) = std::nanf(""); },
         {"1 node stands nowhere", "1 element on a missing node"},
         "Element 7"},
        {[&] { move(13, 3, 2, 1e-4); }, {"1 pair of double nodes"}, "Nodes 12 and 13"},
        {[] { elems(7, 0) = 33; }, {"1 free node", "1 element of an unknown type"}, "type 33"},
        {[] { elems(7, 2) = 88; }, {"1 free node", "1 element on a missing node"}, "Element 7"},
        {[&] {
             shell({2, 1, 5, 6});
         },
         {"1 pair of double elements"},
         "Elements 1 and 9"},
        {[&] { move(13, 3, 2, 0); },
         {"1 pair of double nodes", "1 collapsed element"},
         "Element 7"},
        {[&] {
             shell({11, 12, 12, 13});
         },
         {"1 collapsed element"},
         "Element 9"},
        {[&] { move(1, 0.9, 0.95, 0); }, {"1 inverted element"}, "Element 1"},
        {[] { std::swap(elems(1, 3), elems(1, 4)); },
         {"1 inverted element", "1 pair of opposite normals"},
         "Element 1"},
        {[&] { move(1, 0, 0, 0.5); }, {"1 warped element"}, ": 11.4 %"},
        {[&] {
             addnode(3, -1, 1), addnode(4, -1, 0), addnode(4, 0, 1), shell({4, 14, 15, 16});
         },
         {"1 element too warped to be taken"},
         "Element 9: 50 %"},
        {[&] {
             addnode(3, 2.05f, 0), shell({11, 12, 14});
         },
         {"1 needle-shaped element"},
         "times longer"},
        {[&] {
             addnode(3.6f, 2.1f, 0), addnode(3.6f, 2.02f, 0), shell({12, 15, 14});
         },
         {"1 element with a sharp corner"},
         "degrees"},
        {[&] { std::swap(elems(2, 1), elems(2, 4)), std::swap(elems(2, 2), elems(2, 3)); },
         {"3 pairs of opposite normals"},
         "Elements 2 and 5"},
        {[] { groups(1, fieldmodulus) = 0; }, {"2 groups without properties"}, "E modulus"},
        {[] { groups(1, fieldthickness) = 0; }, {"2 groups without properties"}, "thickness"},
        {[] { groups(1, fieldixx) = 0; }, {"1 group without properties"}, "I xx for its 1 BEAM"},
        {[] { groupmat(2, 1, 1) = groupmat(2, 2, 2) = groupmat(2, 3, 3) = 0; },
         {"1 group without properties"},
         "spring matrix"},
        {[] { egroup(3) = 0; }, {"1 element without group"}, "group 0"},
        {[] { soundroom::hold(44, 1); },
         {"1 constraint or load on what does not exist"},
         "node 44"},
        {[] { elemload(1, 1, 0) = 21; },
         {"1 constraint or load on what does not exist"},
         "element 21"},
        {[] { addnode(9, 9, 9), soundroom::hold(14, 1); },
         {"1 free node", "1 constraint or load on a free node"},
         "Constraint 7"},
        {[] { ncon = 0, elems(8, 0) = 0; }, {"No supports"}, nullptr},
        {[] { ncon = 3, elems(8, 0) = 0; }, {"1 part that can move"}, ": 3 of its rigid motions"},
        {[] { elemload(1, 0, 0) = 0; }, {"1 load case without loads"}, "Load case"},
        {[] { lctype(1) = caseaccz, lcpar(1, accelementmass) = 0; },
         {"1 load case without loads"},
         nullptr},
        {[] { lctype(1) = casewave, lcpar(1, waveheight) = 0; },
         {"1 load case without loads"},
         nullptr},
        {[] { dim2d = true; }, {"1 node out of the plane"}, "Node 13: z = 2"},
    };
    int i = 0;
    for (const auto& c : cases) {
        SCOPED_TRACE(++i);
        soundroom room;
        c.damage();
        EXPECT_EQ(headings(), c.found);
        bool whole = false;
        const auto lines = findfaults(whole);
        const bool named = std::ranges::any_of(lines, [&](const finding& f) {
            return !f.heading && c.single != nullptr && f.text.find(c.single) != std::string::npos;
        });
        EXPECT_EQ(named, c.single != nullptr) << (lines.size() > 1 ? lines[1].text : "");
        dim2d = false;
    }
}

// A second plate beside the first, from x = 3 + gap on, `parts` elements along the common side.
TEST(Findings, CracksAreFreeEdgesOnEachOther) {
    const struct {
        const char* name;
        double gap;
        int parts;
        int common;  // nodes of the first plate that the second shares, from below
        int cracks;
    } cases[] = {
        {"joined", 0, 2, 3, 0},
        {"not joined", 0.0008, 2, 0, 2},
        {"apart", 0.1, 2, 0, 0},
        {"slit above a common node", 0, 2, 2, 1},
        {"one element beside two", 0.0008, 1, 0, 2},
        {"three beside two", 0.0008, 3, 0, 4},
        {"a corner alone in common", 0, 2, 1, 2},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        soundroom room;
        mergetol = 1e-5;
        std::vector<int> left, right;
        for (int k = 0; k <= c.parts; ++k) {
            const float y = 2.0f * float(k) / float(c.parts);
            left.push_back(k < c.common ? 4 * k + 4 : addnode(float(3 + c.gap) + 2e-5f, y, 0));
            right.push_back(addnode(5, y, 0));
        }
        for (std::size_t k = 0; k + 1 < left.size(); ++k)
            room.shell({left[k], right[k], right[k + 1], left[k + 1]});
        bool whole = false;
        long cracks = 0;
        for (const finding& f : findfaults(whole))
            cracks += !f.heading && f.text.find(": edges ") != std::string::npos;
        EXPECT_EQ(cracks, c.cracks);
        const auto found = headings();
        EXPECT_EQ(std::ranges::count(found, "1 part not joined to the rest"), c.common == 0);
        mergetol = 0.001;
    }
}

TEST(Findings, EmptyAndHopelessModels) {
    sessionroom room;
    EXPECT_EQ(headings(), std::vector<std::string>{"1 load case without loads"});
    for (int i = 0; i < 40; ++i) addnode(std::nanf(""), float(i), 1e30f);
    addelement(typeshell4, {1, 2, 3, 4}, 99);
    elems(1, 2) = -5;
    connode(1) = -3;
    ncon = 1;
    bool whole = false;
    const auto lines = findfaults(whole);
    EXPECT_EQ(lines[0].nodes.size(), 40u);
    EXPECT_EQ(std::ranges::count(lines, false, &finding::heading), 25 + 1 + 25 + 1 + 1 + 1 + 1 + 1);
    room.platform.cancelled = true;
    findfaults(whole);
    EXPECT_FALSE(whole);
}

TEST(Findings, ALineSelectsAndZooms) {
    soundroom room;
    addnode(50, 0, 0);
    elemload(1, 0, 0) = 0;
    checkmodelform form = opencheckmodel();
    findall(form);
    ASSERT_TRUE(form.findings[0].heading);
    showfinding(form, 0);
    EXPECT_EQ(nodesel(0), 1);
    EXPECT_EQ(nodesel(1), 14);
    EXPECT_EQ(viewptx(activeview), 50);
    std::swap(elems(2, 1), elems(2, 3));
    std::swap(elems(2, 1), elems(2, 2));
    getvgroup(form, 2);  // the spring alone is on show
    findall(form);
    const auto line = std::ranges::find_if(form.findings, [](const finding& f) {
        return f.text.find("opposite") != std::string::npos ||
               f.text.find("inverted") != std::string::npos;
    });
    ASSERT_NE(line, form.findings.end());
    showfinding(form, std::size_t(line - form.findings.begin()));
    EXPECT_EQ(nodesel(0), 0);
    EXPECT_GE(int(elemsel(0)), 1);
    EXPECT_EQ(viewtype(activeview), 0) << "what is hidden is shown";
    EXPECT_LT(viewptx(activeview), 3);
    closecheckmodel(form);
    EXPECT_EQ(viewtype(2), 0);
}

TEST(Elementshape, QualityBandsAndPicture) {
    soundroom room;
    wirelayers();
    wirequality();
    nodes(0, 13, 0) = 3, nodes(0, 13, 1) = float(2 + std::sqrt(0.75)), nodes(0, 13, 2) = 0;
    nodes(0, 1, 0) = -9;  // a long corner
    addnode(4, 2, 0);
    const int regular = room.shell({12, 14, 13});
    nodes(0, 13, 0) = 3.5f;
    EXPECT_NEAR(qualityof(regular), 1, 1e-6);
    EXPECT_NEAR(qualityof(2), 1, 1e-6);
    EXPECT_NEAR(qualityof(1), 2 / 83.0, 1e-6);
    EXPECT_LT(qualityof(7), 0) << "a beam";
    EXPECT_EQ(countqualities(1)[9], 6);
    EXPECT_EQ(elementsofband(bandofquality(qualityof(1)), 0), std::vector<int>{1});
    EXPECT_EQ(countqualities(2), qualitycounts{});
    checkmodelform form = opencheckmodel();
    const recordsurface& picture = room.platform.views[0];
    setpreset(1, 1);
    showqualities(form, true);
    EXPECT_EQ(picture.count("polygon"), 7);
    closecheckmodel(form);
    EXPECT_EQ(picture.count("polygon"), 0);
    wirelayers();
}

// What is missing before an analysis, the most basic first; a model that has it all needs nothing.
TEST(Findings, WhatAnAnalysisNeedsIsToldWithItsPlace) {
    const auto nothingheld = [] { ncon = groups(0, 0) = 0, elems(8, 0) = 0, groups(0, 0) = 1; };
    const auto unloaded = [] { elemload(1, 0, 0) = 0, loadnode(1, 0) = 0; };
    const auto flat = [] {
        for (int e = 2; e <= nelems(); ++e) elems(e, 0) = 0;
        elems(1, 0) = typetruss;
        for (int n = 1; n <= nnodes(); ++n) nodes(0, n, 2) = 0;
        for (int i = 1; i <= ncon; ++i) condof(i) = 1;
    };
    const struct {
        const char* name;
        std::function<void()> fault;
        std::vector<needplaces> wanted;
    } cases[] = {
        {"all there", [] {}, {}},
        {"no elements", [] { nodes(0, 0, 0) = elems(0, 0) = 0; }, {needplaces::elements}},
        {"no supports", nothingheld, {needplaces::supports}},
        {"held by a spring", [] { ncon = 0; }, {}},
        {"no loads", unloaded, {needplaces::loads}},
        {"a wave", [&] { unloaded(), lctype(1) = casewave, lcpar(1, waveheight) = 2; }, {}},
        {"no E", [] { groups(1, fieldmodulus) = 0; }, {needplaces::groups, needplaces::groups}},
        {"free across its plane", flat, {needplaces::plane}},
        {"of the 2-D analysis", [&] { flat(), dim2d = true; }, {}},
        {"held in z", [&] { flat(), condof(1) = 3; }, {}},
        {"bending, pressed across", [&] { flat(), elems(1, 0) = typeshell4; }, {}},
        {"bending, pulled along",
         [&] { flat(), elems(1, 0) = typeshell4, elemload(1, 1, 1) = 1; },
         {needplaces::plane}},
        {"bending, in a wave",
         [&] { flat(), elems(1, 0) = typeshell4, elemload(1, 1, 1) = 1, lctype(1) = casewave; },
         {}},
        {"modes ask for neither", [&] { nothingheld(), unloaded(), doeigen = 1; }, {}},
    };
    for (const auto& c : cases) {
        const soundroom room;
        c.fault();
        std::vector<needplaces> found;
        for (const need& n : findneeds()) found.push_back(n.place);
        EXPECT_EQ(found, c.wanted) << c.name;
        doeigen = 0;
    }
    const soundroom room;
    groups(1, fieldmodulus) = 0;
    ASSERT_FALSE(findneeds().empty());
    EXPECT_EQ(findneeds()[0].text, "Group \"" + groupname(1) + "\" has no E modulus for its 1 " +
                                       eltypname(typebeam) + " element.");
}
