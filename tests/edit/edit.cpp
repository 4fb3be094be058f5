// SPDX-License-Identifier: GPL-3.0-or-later
// Copy, paste, delete with renumbering, refinement.
#include "edit/Edit.h"

#include "core/catalogue.h"
#include "core/journal.h"
#include "core/modelsize.h"
#include "core/newmodel.h"
#include "edit/move.h"
#include "edit/refine.h"
#include "edit/selection.h"
#include "tests/support/recorder.h"

// Two quadrilaterals side by side, a triangle behind them, a free node; rows on several of them.
static void makemodel() {
    const float at[][2] = {{0, 0}, {1, 0}, {2, 0}, {0, 1}, {1, 1}, {2, 1}, {3, 0.5f}, {9, 9}};
    for (const auto& p : at) addnode(p[0], p[1], 0);
    addelement(3, {1, 2, 5, 4});
    addelement(3, {2, 3, 6, 5});
    addelement(2, {3, 7, 6});
    for (const int n : {1, 3, 8}) {
        connode(++ncon) = n;
        condof(ncon) = 1;
    }
    loadnode(1, 0) = 2;
    loadnode(1, 1) = 6;
    loadnode(1, 2) = 1;
    loaddof(1, 1) = loaddof(1, 2) = 2;
    elemload(1, 0, 0) = elemload(1, 1, 1) = elemload(1, 2, 1) = 2;
    elemload(1, 1, 0) = 3;
    elemload(1, 1, 2) = 10;
    elemload(1, 2, 0) = 1;
}

TEST(Edit, PasteAppendsWhatWasCopied) {
    sessionroom room;
    makemodel();
    setselectitem(selectelements);
    toggleelement(2);
    toggleelement(3);
    rotpo(3) = 0.7;
    editcopy();
    ASSERT_TRUE(editpaste());
    EXPECT_EQ(rotpo(4), 0);
    EXPECT_EQ(rotpo(5), 0.7);
    EXPECT_EQ(nnodes(), 13);
    EXPECT_EQ(nelems(), 5);
    EXPECT_EQ(elemsel(1), 4);
    EXPECT_EQ(nodesel(0), 5);
    for (int k = 1; k <= 4; ++k) {
        const int n = int(elems(4, k)), from = int(elems(2, k));
        EXPECT_GT(n, 8);
        EXPECT_EQ(nodes(0, n, 0), nodes(0, from, 0));
        EXPECT_EQ(nodes(0, n, 1), nodes(0, from, 1));
    }
    EXPECT_EQ(elems(5, 1), elems(4, 2)) << "neighbours share their pasted nodes";
    EXPECT_TRUE(elemvis(activeview, 5));
    graphics(0, 0, 0) = graphics(2, 2, 1) = 2;
    graphics(1, 0, 0) = 1;
    graphics(2, 0, 0) = 3;
    setselectitem(selectgraphics);
    togglegraphic(1, 2);
    togglegraphic(2, 1);
    editcopy();
    ASSERT_TRUE(editpaste());
    EXPECT_EQ(graphics(4, 2, 1), 2);
    EXPECT_EQ(graphsel2(0, 0), 5) << "two points of the line, three of the circle section";
    EXPECT_EQ(graphsel2(5, 1), 3);
    editdelete();
    EXPECT_TRUE(graphics(2, 0, 0) == 3 && graphics(3, 0, 0) == 0 && graphics(4, 0, 0) == 0);
}

TEST(Edit, WhatDoesNotFitGrowsTheSizesWhenTheUserAgrees) {
    sessionroom room;
    modelsize(sizenodes) = 8;
    modelsize(sizeelements) = modelsize(sizeconditions) = 3;
    resetmodel();
    makemodel();
    setselectitem(selectelements);
    selectallelements();
    startjournal();
    editcopy();
    const auto change = [](const char* name, auto by) {
        const step s(name);
        return bool(by());
    };
    EXPECT_FALSE(change("Paste", editpaste)) << "answered with no";
    EXPECT_EQ(modelsize(sizenodes), 8);
    room.platform.answerqueue = {answers::yes};
    ASSERT_TRUE(change("Paste", editpaste));
    EXPECT_EQ(nnodes(), 15);
    EXPECT_EQ(elems(6, 3), 14) << "the copied corners came along";
    EXPECT_EQ(nodes(0, 14, 0), 2);
    EXPECT_EQ(elemsel(0), 3);
    EXPECT_EQ(connode(3), 8);
    room.platform.answerqueue = {answers::yes, answers::yes, answers::yes};  // and for load rows
    ASSERT_TRUE(change("Refine", refineelements));
    EXPECT_EQ(nelems(), 3 + 3 + 9);
    ASSERT_TRUE(stepback(2));
    EXPECT_EQ(nnodes(), 8);
    EXPECT_EQ(elemload(1, 1, 2), 10);
    ASSERT_TRUE(stepforward(2));
    EXPECT_EQ(nelems(), 15);
    const int declared = modelsize(sizenodes);
    readmodelsize();
    EXPECT_EQ(modelsize(sizenodes), declared) << "the next start has them too";
}

TEST(Edit, WhatIsDeletedTakesItsRowsAndTheRestClosesUp) {
    sessionroom room;
    makemodel();
    for (const int n : {2, 8, 5}) togglenode(n);
    editdelete();
    EXPECT_TRUE(room.platform.told("Node(s) attached to element are not deleted"));
    EXPECT_EQ(room.platform.messages.size(), 1u) << "once";
    EXPECT_EQ(nnodes(), 7) << "the free node went";
    EXPECT_EQ(ncon, 2);
    setselectitem(selectelements);
    toggleelement(1);
    menupostItem(deformedshape).checked = true;
    rotpo(3) = 0.5;
    editdelete();
    EXPECT_EQ(nelems(), 2);
    EXPECT_EQ(nnodes(), 5) << "nodes 1 and 4 went, 2 and 5 stay with their elements";
    EXPECT_EQ(elems(1, 1), 1);
    EXPECT_EQ(elems(1, 4), 3);
    EXPECT_EQ(elems(2, 2), 5);
    EXPECT_EQ(ncon, 1) << "the row of node 1 went with it";
    EXPECT_EQ(connode(1), 2);
    EXPECT_TRUE(loadnode(1, 0) == 1 && loadnode(1, 1) == 4);
    EXPECT_EQ(elemload(1, 0, 0), 1);
    EXPECT_TRUE(elemload(1, 1, 0) == 2 && elemload(1, 1, 2) == 10) << "the load of element 3";
    EXPECT_EQ(rotpo(2), 0.5);
    EXPECT_FALSE(menupostItem(deformedshape).checked) << "results leave the views";
    for (int p = 1; p <= 3; ++p) {
        patches(p, 0, 0) = patches(p, 1, 0) = 1;
        patches(p, 1, 1) = 10 * p;
    }
    patches(0, 0, 0) = 3;
    togglepatch(2);
    editdelete();
    EXPECT_EQ(patches(0, 0, 0), 2) << "patches close up";
    EXPECT_EQ(patches(2, 1, 1), 30);
}

TEST(Refine, SplitsByTheNodeCount) {
    sessionroom room;
    makemodel();
    addelement(6, {7, 8});
    endrelease(4, 1, 5) = endrelease(4, 2, 5) = 1;
    rotpo(3) = 0.4;
    setselectitem(selectelements);
    selectallelements();
    EXPECT_EQ(refineelements(), 0) << "answered with no";
    room.platform.answerqueue = {answers::yes};
    EXPECT_EQ(refineelements(), 4);
    EXPECT_EQ(nelems(), 4 + 3 + 3 + 3 + 1);
    // 7 sides of the quadrilaterals, 2 more of the triangle, the beam, 2 centres.
    EXPECT_EQ(nnodes(), 8 + 7 + 2 + 1 + 2);
    EXPECT_EQ(elemsel(0), nelems());
    EXPECT_EQ(nodesel(0), nnodes());
    EXPECT_EQ(elems(1, 4), 4) << "the first quadrilateral became (M4, C, M3, n4)";
    EXPECT_EQ(elems(6, 3), elems(8, 4)) << "the midpoint of the common side is one node";
    EXPECT_EQ(elems(4, 2), elems(14, 1));
    EXPECT_EQ(endrelease(4, 1, 5), 1);
    EXPECT_EQ(endrelease(4, 2, 5), 0);
    EXPECT_EQ(endrelease(14, 2, 5), 1);
    EXPECT_EQ(rotpo(11), 0.4);
    ASSERT_EQ(elemload(1, 0, 0), 8) << "the parts carry the distributed load";
    for (int e = 1; e <= nelems(); ++e) {
        if (nodesoftype(elems(e, 0)) != 4) continue;
        double sum = 0;
        for (int k = 1; k <= 4; ++k) {
            const long a = long(elems(e, k)), b = long(elems(e, k % 4 + 1));
            sum += nodes(0, a, 0) * nodes(0, b, 1) - nodes(0, b, 0) * nodes(0, a, 1);
        }
        EXPECT_DOUBLE_EQ(sum / 2, 0.25) << "each part is a quarter and turns the same way";
    }
    modelsize(sizenodes) = 12;
    resetmodel();
    makemodel();
    selectallelements();
    room.platform.answerqueue = {answers::yes};
    EXPECT_EQ(refineelements(), 0) << "what does not fit leaves the model untouched";
    EXPECT_TRUE(room.platform.toldpart("Increase number of nodes or elements"));
    EXPECT_TRUE(nnodes() == 8 && nelems() == 3);
}

// Neighbours refined one after the other: the nodes on their common side become one when the
// selection is released.
TEST(Refine, NeighboursCloseAtTheRelease) {
    for (const bool merges : {true, false}) {
        sessionroom room;
        makemodel();
        automergenodes = merges;
        connode(2) = 2;  // as node 1 in x: a support along the lower edge
        setselectitem(selectelements);
        const auto refine = [&](int e) {
            toggleelement(e);
            room.platform.answerqueue = {answers::yes};
            refineelements();
            releaseselection();
        };
        refine(1);
        EXPECT_TRUE(room.platform.toldpart("1 new node(s) between two supported nodes"));
        EXPECT_TRUE(room.platform.toldpart("1 divided side(s) belong to elements that were not"));
        EXPECT_EQ(nnodes(), 8 + 5);
        room.platform.messages.clear();
        refine(2);
        EXPECT_EQ(nnodes(), 8 + 5 + (merges ? 4 : 5));
        EXPECT_TRUE(room.platform.toldpart("1 divided side(s)")) << "the triangle's";
        EXPECT_NE(room.platform.toldpart("1 new node(s) lie where a node stands already"), merges);
    }
}
