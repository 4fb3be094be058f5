// SPDX-License-Identifier: GPL-3.0-or-later
// Loops of lines.
#include "tools/findpatch.h"

#include <set>

#include "tests/support/recorder.h"
#include "tests/tools/drawn.h"

TEST(Findpatch, JointsCarryTheEndOfTheOtherLine) {
    sessionroom room;
    addline({0, 0, 0}, {1, 0, 0});
    addline({1, 0, 0}, {1, 1, 0});
    addline({1, -1, 0}, {1.0005, 0, 0});              // within the tolerance
    addline({1.001, 0, 0}, {2, 0, 0});                // at it
    addgraphic(kindcurve, {1, 0, 0}, {3, 0, 0}, {});  // no line
    addline({5, 0, 0}, {6, 0, 0});
    addline({7, 0, 0}, {-1e30, 8, 0});  // farther off than cells can be counted
    addline({-1e30, 8, 0}, {1e30, 0, 0});
    const jointtable joints = findjoints();
    EXPECT_EQ(joints[2][6 + 1], (std::vector<int>{6 + 2}));
    EXPECT_TRUE(joints[2][6 + 2].empty());
    EXPECT_EQ(joints[2][1], (std::vector<int>{2, -3}));
    EXPECT_EQ(joints[1][2], (std::vector<int>{-1, -3}));
    EXPECT_EQ(joints[2][3], (std::vector<int>{-1, 2, 4}));
    EXPECT_TRUE(joints[1][5].empty());
    EXPECT_TRUE(joints[1][6].empty() && joints[2][6].empty());
}

TEST(Findpatch, LoopsThatCloseAreFoundOncePerStart) {
    const struct {
        const char* name;
        std::vector<point3> path;  // lines from each to the next
        int found;
    } cases[] = {
        {"square", {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 0}}, 4},
        {"triangle in space", {{0, 0, 0}, {1, 0, 2}, {1, 1, 5}, {0, 0, 0}}, 3},
        // an edge of two pieces: from their joint no plane is known
        {"pieces", {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}, {0, 0, 0}}, 4},
        {"inwards", {{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {2, 1, 0}, {0, 4, 0}, {0, 0, 0}}, 5},
        {"open", {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}}, 0},
        {"two lines to and fro", {{0, 0, 0}, {1, 0, 0}, {0, 0, 0}}, 0},
        {"out of the plane", {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 1}, {0, 0, 0}}, 0},
        {"nothing", {}, 0},
    };
    for (const auto& c : cases) {
        sessionroom room;
        for (std::size_t i = 1; i < c.path.size(); ++i) addline(c.path[i - 1], c.path[i]);
        room.platform.answerqueue.assign(50, answers::ok);
        EXPECT_EQ(findpatch(), c.found) << c.name;
        EXPECT_EQ(room.platform.told("found patch"), c.found > 0) << c.name;
        EXPECT_EQ(room.platform.told("No lines form a closed loop"), c.found == 0) << c.name;
        if (c.found == 0) continue;
        room.platform.answerqueue.clear();
        EXPECT_EQ(findpatch(), 1) << "Cancel stops there";
        std::set<int> lines;
        for (int k = 1; k <= graphsel(0, 0); ++k) lines.insert(graphsel(k, 0));
        EXPECT_EQ(graphsel(0, 0), int(c.path.size()) - 1) << c.name;
        EXPECT_EQ(lines.size(), c.path.size() - 1) << c.name;
        graphics(1, 0, 0) = kindcurve;
        EXPECT_EQ(findpatch(), 0) << c.name << ": a curve in the loop";
    }
}

TEST(Findpatch, TheTightestTurnGoesRoundOneCell) {
    sessionroom room;
    const int n = 3;
    for (int i = 0; i <= n; ++i)
        for (int j = 0; j < n; ++j) {
            addline({double(i), double(j), 0}, {double(i), j + 1.0, 0});
            addline({double(j), double(i), 0}, {j + 1.0, double(i), 0});
        }
    // The corner at the start of a line is right for each; crossings are walked all the same.
    room.platform.answerqueue.assign(1000, answers::ok);
    EXPECT_GE(findpatch(), 2 * n * (n + 1));
    room.platform.answerqueue.clear();
    findpatch();
    EXPECT_EQ(graphsel(0, 0), 4);
}
