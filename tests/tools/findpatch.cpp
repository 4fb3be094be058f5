// SPDX-License-Identifier: GPL-3.0-or-later
// Loops of lines.
#include "tools/findpatch.h"

#include <cmath>
#include <set>

#include "core/session.h"
#include "tests/support/recorder.h"
#include "tests/tools/edges.h"

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
        room.platform.messages.clear();
        findpatch();
        EXPECT_FALSE(room.platform.told("found patch")) << c.name << ": a curve in the loop";
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

// A stadium: the joints of its lines and arcs have no corner.
static void addstadium() {
    addline({0, 0, 0}, {4, 0, 0}, 4);
    addgraphic(kindcircle, {4, 2, 0}, {4, 0, 0}, {5, 1, 0}, 3);
    addline({4, 2, 0}, {0, 2, 0}, 4);
    addgraphic(kindcircle, {0, 0, 0}, {0, 2, 0}, {-1, 1, 0}, 3);
}

TEST(Findpatch, LoopsWithArcsAndCurvesFollowOnceEach) {
    sessionroom room;
    addstadium();
    addgraphic(kindcurve, {0, 0, 0}, {4, 0, 0}, {2, -3, 0});  // another region below
    room.platform.answerqueue.assign(50, answers::ok);
    EXPECT_EQ(findpatch(), 2) << "the stadium, and the way round both";
    EXPECT_TRUE(room.platform.told("found a loop with arcs or curves"));
    room.platform.answerqueue.clear();
    findpatch();
    std::set<int> members;
    for (int k = 1; k <= graphsel(0, 0); ++k) members.insert(graphsel(k, 0));
    EXPECT_EQ(members, (std::set<int>{1, 2, 3, 4}));
    bool red = false;
    for (const std::string& line : room.platform.views[0].operations)
        red |= line.find("#ff0000 w2") != line.npos;
    EXPECT_TRUE(red);
}

TEST(Findpatch, ALoopOfMoreThanAPatchHoldsIsFoundToo) {
    sessionroom room;
    const int n = 100;
    const auto at = [&](int i) {
        return point3{std::cos(2 * pi * i / n), std::sin(2 * pi * i / n), 0};
    };
    for (int i = 0; i < n; ++i) addline(at(i), at((i + 1) % n));
    room.platform.answerqueue.assign(500, answers::ok);
    nodetol = 1e-5;
    EXPECT_EQ(findpatch(), n);
}

TEST(LoopEdges, ASelectedLoopOpensTheMeshDialogWithItsEdges) {
    const struct {
        const char* name;
        std::vector<point3> path;
        std::vector<float> spaces;
        int edges;
        const char* told;
    } cases[] = {
        {"square",
         {{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}},
         {3, 2, 3, 2},
         4,
         "Edge 1: 4 nodes; Edge 2: 4 nodes; Edge 3: 3 nodes; Edge 4: 3 nodes"},
        {"an edge of two pieces",
         {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}},
         {1, 3, 2, 4, 2},
         4,
         "Edge 1: 2 pieces, 5 nodes; Edge 2: 5 nodes;"},
        {"triangle",
         {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {0, 2, 0}},
         {2, 2, 4, 4},
         3,
         "Edge 1: 2 pieces, 5 nodes; Edge 2: 5 nodes; Edge 3: 5 nodes"},
    };
    for (const auto& c : cases) {
        sessionroom room;
        for (std::size_t i = 0; i < c.path.size(); ++i)
            selectgraphicelement(addline(c.path[i], c.path[(i + 1) % c.path.size()], c.spaces[i]));
        mesh2dform form = openmesh2d();
        EXPECT_EQ(form.edges, c.edges) << c.name;
        EXPECT_NE(form.message.find(c.told), std::string::npos) << c.name << form.message;
        generatemesh(form);
        EXPECT_TRUE(meshok) << form.message;
        EXPECT_EQ(form.inverted, 0);
        closemesh2d(form);
    }
    sessionroom room;  // no corner is sharp
    addstadium();
    for (int g = 1; g <= 4; ++g) selectgraphicelement(g);
    mesh2dform form = openmesh2d();
    EXPECT_NE(form.message.find("Edge 1: 5 nodes; Edge 2: 5 nodes; Edge 3: 4 nodes"),
              std::string::npos)
        << form.message;
    graphics(1, 0, 1) = 7;
    equalspaces(form);
    EXPECT_EQ(form.count[0], "8");
    EXPECT_EQ(form.count[1], "8") << form.message;
    generatemesh(form);
    EXPECT_EQ(tmpelems(0, 0), 21) << form.message;
    graphics(3, 1, 2) = 9;  // no longer closed
    EXPECT_EQ(openmesh2d().message.find("The selected loop"), std::string::npos);
}
