// SPDX-License-Identifier: GPL-3.0-or-later
// Merging against the plain sweep over all pairs, and what has to follow a merged node.
#include "edit/merge.h"

#include <algorithm>
#include <array>
#include <random>

#include "core/catalogue.h"
#include "edit/Edit.h"
#include "edit/Mouseprocedures.h"
#include "edit/commands.h"
#include "edit/move.h"
#include "edit/renumber.h"
#include "edit/selection.h"
#include "tests/support/recorder.h"

namespace {
// The sweep as it is told, on a copy of the nodes.
struct plainsweep {
    std::vector<std::array<float, 3>> place{{}};
    std::vector<int> corners, selection;

    void mergepair(int keep, int drop) {
        place.erase(place.begin() + drop);
        for (auto* list : {&corners, &selection})
            for (int& n : *list) n = n == drop ? keep : n > drop ? n - 1 : n;
    }
    void run() {
        for (std::size_t i = 0; i < selection.size(); ++i)
            for (int b = 1; b < int(place.size());) {
                const int a = selection[i];
                const bool merges =
                    b != a && isnear(place[std::size_t(a)].data(), place[std::size_t(b)].data());
                if (merges) mergepair(std::min(a, b), std::max(a, b));
                // After a merge the next node has come to the place of the one that went.
                if (!merges || b < a) ++b;
            }
    }
};
}  // namespace

TEST(Merge, GivesWhatTheSweepOverAllPairsGives) {
    std::mt19937 random(23);
    for (int round = 0; round < 300; ++round) {
        sessionroom room;
        nodetol = 0.3;
        std::uniform_real_distribution<float> offset(-0.4f, 0.4f);
        plainsweep plain;
        for (int n = 1; n <= 40; ++n) {
            const float x = float(random() % 4), y = float(random() % 2);
            const std::array<float, 3> at = {x + offset(random),
                                             y + offset(random) * float(round % 2), -1.0f};
            addnode(at[0], at[1], at[2]);
            plain.place.push_back(at);
        }
        for (int e = 1; e <= 30; ++e) {
            const int a = 1 + int(random() % 40), b = 1 + int(random() % 40);
            addelement(1, {a, b});
            plain.corners.insert(plain.corners.end(), {a, b});
        }
        for (int i = 1 + int(random() % 40); i > 0; --i) {
            const int n = 1 + int(random() % 40);
            if (std::ranges::count(plain.selection, n)) continue;
            plain.selection.push_back(n);
            togglenode(n);
        }
        const std::vector<int> drawn = plain.corners;
        plain.run();
        ASSERT_EQ(mergenodes(), 41 - int(plain.place.size()));
        ASSERT_EQ(nnodes(), int(plain.place.size()) - 1) << "round " << round;
        for (int n = 1; n <= nnodes(); ++n)
            for (int k = 0; k < 3; ++k)
                ASSERT_EQ(nodes(0, n, k), plain.place[std::size_t(n)][std::size_t(k)]);
        int e = 0;
        for (std::size_t i = 0; i < drawn.size(); i += 2) {
            const int a = plain.corners[i], b = plain.corners[i + 1];
            if (a == b && drawn[i] != drawn[i + 1]) continue;  // lost its shape
            ++e;
            ASSERT_EQ(int(elems(e, 1)), a);
            ASSERT_EQ(int(elems(e, 2)), b);
        }
        ASSERT_EQ(nelems(), e);
    }
}

TEST(Merge, ConditionsAndNamesStayWithTheNodeThatRemains) {
    sessionroom room;
    for (int i = 0; i < 3; ++i) addnode(0, 0, 0.0003f * float(i));
    addnode(5, 0, 0);
    nodename(1) = "first";
    nodename(4) = "last";
    addelement(1, {3, 4});
    loadnode(1, 0) = loadnode(1, 1) = 2;
    loadnode(1, 2) = 4;
    ncon = nodesel(0) = nodesel(1) = 1;
    connode(1) = 3;
    EXPECT_EQ(mergenodes(), 2);
    EXPECT_EQ(mergenodes(), 0);
    EXPECT_EQ(loadnode(1, 1), 1);
    EXPECT_EQ(loadnode(1, 2), 2);
    EXPECT_EQ(connode(1), 1);
    EXPECT_EQ(nodename(1), "first");
    EXPECT_EQ(nodename(2), "last");
}

TEST(Merge, ElementsThatLoseTheirShapeLeaveOrBecomeTriangles) {
    sessionroom room;
    const float at[][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}, {1.0003f, 0}, {1, 1.0003f}};
    for (const auto& p : at) addnode(p[0], p[1], 0);
    addelement(9, {1, 2, 5, 3});  // SHELL4 with three corners left
    addelement(5, {1, 2, 5, 4});  // SHEAR4 has no triangle
    addelement(6, {2, 5});        // no length left
    addelement(9, {1, 2, 3, 4});
    addelement(9, {2, 3, 5, 6});  // two corners left
    elemload(1, 0, 0) = elemload(1, 1, 1) = 1;
    elemload(1, 1, 0) = 4;
    selectallnodes();
    EXPECT_EQ(mergenodes(), 2);
    ASSERT_EQ(nelems(), 2);
    EXPECT_EQ(eltypname(long(elems(1, 0))), "SHELL3");
    for (int k = 1; k <= 4; ++k) EXPECT_EQ(elems(1, k), k == 4 ? 0 : k);
    EXPECT_EQ(elemload(1, 1, 0), 2) << "the load follows its element";
    EXPECT_TRUE(room.platform.toldpart("4 element(s) lost their shape"));
    EXPECT_TRUE(room.platform.toldpart("3 removed, 1 made triangles"));
}

TEST(Merge, NowMergesWhateverIsSelectedAndTellsATooFineTolerance) {
    sessionroom room;
    for (const float x : {0.0f, 1.0f, 0.0f, 1.0f}) addnode(x, 0, 0);
    addelement(6, {1, 2});
    addelement(6, {3, 4});
    EXPECT_EQ(mergeall(), "2 node(s) and 1 double element(s) merged");
    EXPECT_EQ(nnodes(), 2);
    addnode(60000, 0, 0);
    EXPECT_NE(mergeall().find("less than the step of coordinates, 0.00390625 at 60000"),
              std::string::npos);
    nodetol = 0.0040;
    EXPECT_EQ(tolerancenote(), "");
}

TEST(Merge, ReportsEveryPairAndMergesDoubleElements) {
    sessionroom room;
    nodetol = 0.25;
    const float at[][3] = {{0, 0, 0}, {5, 5, 5}, {0.2f, 0, 0}, {0, 0.2f, 0}, {0, 0, 0.25f}};
    for (const auto& p : at) addnode(p[0], p[1], p[2]);
    nodename(3) = "c";
    groups(0, 0) = 2;
    addelement(9, {1, 2, 3, 4});
    addelement(3, {1, 2, 3, 4});     // another type
    addelement(9, {3, 1, 4, 2});     // double of 1
    addelement(9, {1, 2, 3, 4}, 2);  // another group
    addelement(9, {1, 2, 3, 5});
    addelement(9, {4, 3, 2, 1});  // double of 1
    EXPECT_EQ(findmergenodes(), -1);
    EXPECT_TRUE(room.platform.toldpart("no name yet"));
    modelname = room.file("m");
    EXPECT_EQ(findmergenodes(), 2);
    EXPECT_EQ(contentof(room.file("m.txt")),
              " 1             3                          c\r\n"
              " 1             4                          \r\n");
    commenttext = "notes";
    EXPECT_EQ(finddoubleelems(), -1) << "answered no: the comment stays";
    EXPECT_TRUE(room.platform.toldpart("holds the comment of the model"));
    room.platform.answerqueue = {answers::yes};
    EXPECT_EQ(finddoubleelems(), 2);
    EXPECT_EQ(contentof(room.file("m.txt")).substr(0, 28), " 1             3            ");
    EXPECT_EQ(nelems(), 6) << "the reports change nothing";
    EXPECT_EQ(mergeelements(), 2);
    EXPECT_EQ(nelems(), 4);
    EXPECT_EQ(elems(4, 4), 5);
}

TEST(Merge, RunsWhenWhatWasPlacedIsReleased) {
    const auto escape = [] { keyhandler(keyescape); };
    const auto moved = [] {
        pasteflag = false;
        selectallnodes();
        runcommand("dx=5");
        keyhandler(keyescape);
    };
    const auto notplaced = [] {
        emptyselection();
        toggleelement(1);
        pasteflag = false;
        keyhandler(keyescape);
    };
    const struct {
        const char* name;
        bool nodes, elements;
        void (*release)();
        int nodesleft, elementsleft;
        bool merges;
    } cases[] = {
        {"off", false, false, escape, 8, 2, false},
        {"nodes alone", true, false, escape, 4, 2, true},
        {"another item type", true, true, [] { setselectitem(selectnodes); }, 4, 1, true},
        {"a mode", true, true, [] { startmode(addnodemode); }, 4, 1, true},
        {"a second paste", true, true, [] { editpaste(); }, 8, 2, true},
        {"moved away first", true, true, moved, 4, 1, true},
        {"not placed", true, true, notplaced, 8, 2, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        sessionroom room;
        if (modes().empty()) wiremouse();
        for (const auto& p : {std::pair(0, 0), {1, 0}, {1, 1}, {0, 1}})
            addnode(float(p.first), float(p.second), 0);
        addelement(3, {1, 2, 3, 4});
        automergenodes = c.nodes;
        automergeelems = c.elements;
        setselectitem(selectelements);
        toggleelement(1);
        editcopy();
        ASSERT_TRUE(editpaste());
        EXPECT_EQ(nnodes(), 8) << "a paste merges nothing itself";
        menupostItem(deformedshape).checked = true;
        c.release();
        EXPECT_EQ(nnodes(), c.nodesleft);
        EXPECT_EQ(nelems(), c.elementsleft);
        EXPECT_EQ(menupostItem(deformedshape).checked, !c.merges)
            << "results of the old numbers leave";
        addready();
    }
}

TEST(Renumber, RunsFromTheFarthestToTheNearest) {
    sessionroom room;
    // The reference climbs to node 3, then to node 4; node 5 does not dominate it.
    const float at[][3] = {{0, 0, 0}, {-1, 4, 0}, {2, 1, 1}, {3, 3, 1}, {9, 0, 0}, {3, 3, 1}};
    for (const auto& p : at) addnode(p[0], p[1], p[2]);
    addelement(1, {1, 5});
    ncon = loadnode(1, 0) = 1;
    connode(1) = 2;
    loadnode(1, 1) = 6;
    nodename(5) = "far";
    togglenode(1);
    renumbermodel();
    EXPECT_EQ(nodes(0, 1, 0), 9) << "distance 6.78";
    EXPECT_EQ(nodename(1), "far");
    EXPECT_EQ(elems(1, 2), 1);
    EXPECT_EQ(elems(1, 1), 2) << "distance 4.36";
    EXPECT_EQ(connode(1), 3) << "distance 4.24";
    EXPECT_EQ(loadnode(1, 1), 5) << "of equal distances the highest number comes first";
    EXPECT_EQ(nodesel(0), 0);
}
