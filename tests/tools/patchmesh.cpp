// SPDX-License-Identifier: GPL-3.0-or-later
// Meshes of patches that are made again.
#include "tools/patchmesh.h"

#include <algorithm>
#include <numeric>

#include "core/elempatch.h"
#include "core/journal.h"
#include "core/session.h"
#include "edit/Edit.h"
#include "edit/move.h"
#include "edit/selection.h"
#include "files/filop.h"
#include "files/saving.h"
#include "tests/support/recorder.h"
#include "tests/tools/edges.h"
#include "tools/patchedit.h"

// Two rectangles side by side that share the edge x = 4, with 4 x 2 and 3 x 2 elements, and a beam
// chain of the shared edge.
static void twopatches() {
    auto first = rectangle();
    const int a = addline({4, 0, 0}, {7, 0, 0}, 3), b = addline({4, 2, 0}, {7, 2, 0}, 3),
              c = addline({7, 0, 0}, {7, 2, 0}, 2);
    acceptmesh(*std::make_unique<mesh2dform>(meshof(0, first)));
    acceptmesh(*std::make_unique<mesh2dform>(meshof(0, {{a}, {b}, first[3], {c}})));
    acceptmesh(*std::make_unique<mesh2dform>(meshof(3, {first[3]})));
}

static int nodeat(float x, float y) {
    for (int n = 1; n <= nnodes(); ++n)
        if (std::abs(nodes(0, n, 0) - x) + std::abs(nodes(0, n, 1) - y) < 1e-4f) return n;
    return 0;
}

static std::vector<int> elementsofpatches() {
    std::vector<int> count(std::size_t(patches(0, 0, 0)) + 1, 0);
    for (int e = 1; e <= nelems(); ++e) ++count[std::size_t(elempatch(e))];
    return count;
}

static patcheditform dialogof(const std::vector<int>& list) {
    setselectitem(selectpatches);
    for (std::size_t i = 0; i < list.size(); ++i) patchsel(long(i) + 1) = float(list[i]);
    patchsel(0) = float(list.size());
    return openpatchedit();
}

TEST(PatchMesh, SpacesGoAlongOppositeEdgesAndOnThroughTheNeighbours) {
    sessionroom room;
    twopatches();
    connode(1) = nodeat(7, 2);
    connode(2) = nodeat(2, 1);  // the new mesh has no node there
    condof(1) = condof(2) = 1;
    ncon = 2;
    startjournal();
    EXPECT_EQ(elementsofpatches(), (std::vector<int>{0, 8, 6, 2}));
    patcheditform form = dialogof({2});
    EXPECT_EQ(form.spaces[0], "3");
    EXPECT_EQ(form.spaces[1], "2");
    form.spaces[1] = "5";
    {
        const step s("Set Spaces");
        setpatchspaces(form);
    }
    EXPECT_EQ(elementsofpatches(), (std::vector<int>{0, 20, 15, 5})) << form.message;
    EXPECT_EQ(nnodes(), 5 * 6 + 3 * 6 + 1);
    EXPECT_EQ(connode(1), nodeat(7, 2));
    EXPECT_EQ(connode(2), nodeat(2, 1));
    EXPECT_NE(form.message.find("16 elements went, 40 came"), std::string::npos) << form.message;
    EXPECT_NE(form.message.find("1 nodes with constraints or loads are left"), std::string::npos);
    EXPECT_EQ(patchsel(0), 3);
    ASSERT_TRUE(stepback());
    EXPECT_EQ(elementsofpatches(), (std::vector<int>{0, 8, 6, 2}));
    EXPECT_EQ(graphics(4, 0, 1), 2);
    form = dialogof({2});
    for (const char* wrong : {"0", "x", "2.5", "500"}) {
        form.spaces[0] = wrong;
        setpatchspaces(form);
        EXPECT_FALSE(form.message.empty()) << wrong;
        EXPECT_EQ(nelems(), 16) << wrong;
        EXPECT_EQ(graphics(5, 0, 1), 3) << wrong;
    }
}

TEST(PatchMesh, AShapeThatWasChangedIsMeshedAgain) {
    sessionroom room;
    twopatches();
    for (int g : {6, 7})  // the right side, 2 further off
        for (int j = 1; j <= 2; ++j)
            if (graphics(g, j, 1) == 7) graphics(g, j, 1) = 9;
    graphics(5, graphics(5, 1, 1) == 7 ? 1 : 2, 1) = 9;
    patcheditform form = dialogof({2});
    meshpatchesagain(form);
    EXPECT_EQ(elementsofpatches(), (std::vector<int>{0, 8, 6, 2})) << form.message;
    EXPECT_EQ(nodeat(7, 0), 0);
    EXPECT_NE(nodeat(9, 2), 0);
    EXPECT_EQ(nnodes(), 5 * 3 + 3 * 3);
    graphics(7, 0, 0) = 0;
    form = dialogof({1, 2});
    meshpatchesagain(form);
    EXPECT_NE(form.message.find("Patch 2: one of its graphic elements is gone"), std::string::npos);
    EXPECT_EQ(nelems(), 16);
}

TEST(PatchMesh, AModelThatWasReadKnowsItsElements) {
    sessionroom room;
    wirepatches();
    twopatches();
    modelname = room.file("two");
    ASSERT_TRUE(savemodel());
    ASSERT_TRUE(openmodel(room.file("two")));
    EXPECT_EQ(elementsofpatches(), (std::vector<int>{0, 8, 6, 2}));
    EXPECT_EQ(tmpnodes(0, 0) + graphics2(0, 0, 0), 0);
    EXPECT_TRUE(room.platform.messages.empty());
    automergenodes = automergeelems = false;  // the copies lie on what they are of
    dialogof({1, 2});
    editcopy();
    EXPECT_EQ(graphics2(0, 0, 0), 7) << "the edge between them once";
    ASSERT_TRUE(editpaste());
    EXPECT_EQ(elementsofpatches(), (std::vector<int>{0, 8, 6, 2, 8, 6}));
    EXPECT_EQ(patches(5, 3, 1), 7 + patches(2, 3, 1));
    EXPECT_EQ(nelems(), 30);
    graphics2(0, 0, 0) = 0;  // a mesh that is accepted is no copy of patches
    ASSERT_TRUE(editpaste());
    EXPECT_EQ(patches(0, 0, 0), 5);
    for (const int p : {5, 4}) {
        dialogof({p});
        editdelete();
    }
    EXPECT_TRUE(room.platform.messages.empty());
    dialogof({1});
    editdelete();
    EXPECT_EQ(elementsofpatches(), (std::vector<int>{8 + 8 + 6 + 14, 6, 2}));
    patchesread = nullptr;
    copierofpatches = {};
}
