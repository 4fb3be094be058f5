// SPDX-License-Identifier: GPL-3.0-or-later
// Patches: the recipe of an accepted mesh, and the mesh made anew from it.
#include "tools/Surfaces.h"

#include <memory>

#include "core/pack.h"
#include "tests/support/recorder.h"
#include "tests/tools/edges.h"
#include "tools/groups.h"

TEST(Patches, AcceptingStoresTheRecipe) {
    sessionroom room;
    auto edges = rectangle();
    mesh2dform form = openwith(0, edges);
    addgroup(*std::make_unique<groupform>());
    generatemesh(form);
    acceptmesh(form);
    ASSERT_EQ(patches(0, 0, 0), 1);
    EXPECT_EQ(patches(1, 0, 1), mesheltype);
    EXPECT_EQ(patches(1, 0, 2), 2);
    for (int e = 1; e <= 4; ++e) {
        EXPECT_EQ(patches(1, e, 0), 1);
        EXPECT_EQ(patches(1, e, 1), edges[std::size_t(e - 1)][0]);
    }
    EXPECT_EQ(egroup(8), 2);
}

TEST(Patches, AChainTooLongForAPatchStillGivesItsMesh) {
    sessionroom room;
    std::vector<int> chain;
    for (int i = 0; i < 21; ++i) chain.push_back(addline({double(i), 0, 0}, {i + 1.0, 0, 0}));
    mesh2dform form = meshof(3, {chain});
    acceptmesh(form);
    EXPECT_EQ(nelems(), 21);
    EXPECT_EQ(patches(0, 0, 0), 0);
    EXPECT_NE(form.message.find("21 graphic elements, a patch holds 20"), std::string::npos);
}

TEST(Patches, TheSecondListRebuildsTheMesh) {
    sessionroom room;
    mesh2dform form = meshof(0, rectangle());
    acceptmesh(form);
    for (int g = 0; g <= 4; ++g)
        for (int j = 0; j <= 3; ++j)
            for (int k = 0; k <= 3; ++k)
                graphics2(g, j, k) = graphics(g, j, k) + (g > 0 && j > 0 && k == 3 ? 5 : 0);
    patches(1, 0, 2) = 7;  // there is no such group
    ASSERT_TRUE(rebuildpatch(1));
    EXPECT_EQ(tmpelems(8, 5), 1);
    EXPECT_EQ(tmpelems(0, 0), 8);
    for (int n = 1; n <= 19; ++n) EXPECT_EQ(tmpnodes(n, 3), 5);
    graphics2(3, 1, 1) = 9;  // no longer closed
    EXPECT_FALSE(rebuildpatch(1));
    EXPECT_EQ(tmpnodes(0, 0), 19);
    graphics2(3, 0, 0) = 0;
    EXPECT_FALSE(rebuildpatch(1));
}

// The elements behind a deleted one move up: it must not be read for another.
TEST(Patches, ADeletedMemberLeavesAGap) {
    sessionroom room;
    mesh2dform form = meshof(0, rectangle());
    acceptmesh(form);
    graphics(2, 0, 0) = 0;
    packgraphics();
    EXPECT_EQ(patches(1, 1, 1), 1);
    EXPECT_EQ(patches(1, 2, 1), 0);
    EXPECT_EQ(patches(1, 3, 1), 2);
    EXPECT_FALSE(loadpatch(graphics, 1, 1));
}
