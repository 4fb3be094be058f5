// SPDX-License-Identifier: GPL-3.0-or-later
// Direct commands on the selection and in the mode that adds nodes.
#include "edit/commands.h"

#include <gtest/gtest.h>

#include <cmath>

#include "core/model.h"
#include "core/session.h"
#include "core/views.h"
#include "edit/Mouseprocedures.h"
#include "edit/selection.h"
#include "tests/support/recorder.h"

namespace {
// A session with two selected nodes and one that is not, and a selected graphic point.
struct commandroom : sessionroom {
    commandroom() {
        if (modes().empty()) wiremouse();
        addnode(1, 0, 0);
        addnode(3, 2, 4);
        addnode(9, 9, 9);
        graphics(0, 0, 0) = 1;
        graphics(1, 0, 0) = 1;
        for (int k = 1; k <= 3; ++k) graphics(1, 2, k) = 10;
        togglenode(1);
        togglenode(2);
    }
    static std::string nodetext(int n) {
        char text[64];
        std::snprintf(text, sizeof text, "%g %g %g", double(nodes(0, n, 0)), double(nodes(0, n, 1)),
                      double(nodes(0, n, 2)));
        return text;
    }
};
}  // namespace

TEST(Commands, ChangeTheSelectedNodes) {
    const double r = std::sqrt(0.5);
    const struct {
        const char* command;
        const char *first, *second;
    } cases[] = {
        {"dx=1;2;-1", "2 2 -1", "4 4 3"},
        {"dx=0;6", "1 6 0", "3 8 4"},
        {"dx=;;5", "1 0 5", "3 2 9"},
        {"ax=*;*;0", "1 0 0", "3 2 0"},
        {"ax=7", "7 0 0", "7 0 0"},
        {"sc=0;2;*", "1 0 0", "3 4 4"},
        {"sc=-1;abc;0.5", "-1 0 0", "-3 2 2"},
        {"rz=90", "0 1 0", "-2 3 4"},
        {"rz=180;2;1", "3 2 0", "1 0 4"},
        {"rx=90", "1 2 -1", "3 -2 1"},     // the centroid lands on 0 in y and z
        {"rx=90;1;2", "1 3 1", "3 -1 3"},  // or where fields 2 and 3 place it
        {"ry=180", "1 0 2", "-1 2 -2"},
        {"mxy", "1 0 4", "3 2 0"},  // about the centroid
        {"mxy=5", "1 0 10", "3 2 6"},
        {"myz0", "-1 0 0", "-3 2 4"},
        {"mxz=*", "1 2 0", "3 0 4"},
        {"DX=1;2;3", "1 0 0", "3 2 4"},  // case as typed
        {"dx", "1 0 0", "3 2 4"},
        {"", "1 0 0", "3 2 4"},
    };
    for (const auto& c : cases) {
        commandroom room;
        runcommand(c.command);
        EXPECT_EQ(room.nodetext(1), c.first) << c.command;
        EXPECT_EQ(room.nodetext(2), c.second) << c.command;
        EXPECT_EQ(room.nodetext(3), "9 9 9") << c.command;
        EXPECT_EQ(nodesel(0), 2) << c.command;
        EXPECT_TRUE(room.door.messages.empty()) << c.command;
    }
    commandroom room;
    runcommand("rz=45");
    EXPECT_EQ(nodes(0, 1, 0), float(std::floor(r * 1e6 + 0.5) / 1e6)) << "six decimals";
}

TEST(Commands, GraphicPointsMoveWithTheNodes) {
    commandroom room;
    togglegraphic(1, 2);
    runcommand("dx=1;1;1");
    EXPECT_EQ(graphics(1, 2, 1), 11);
    EXPECT_EQ(graphics(1, 1, 1), 0) << "the other end stays";
    runcommand("mxy");
    EXPECT_NEAR(graphics(1, 2, 3), 2 * (1 + 5 + 11) / 3.0 - 11, 1e-6) << "the centroid counts it";
}

TEST(Commands, AFourthFieldIsToldAndChangesNothing) {
    commandroom room;
    runcommand("dx=1;2;3;4");
    ASSERT_EQ(room.door.messages.size(), 1u);
    EXPECT_EQ(room.door.messages[0].text,
              "Error format direct input command. Use ; as list seperator");
    EXPECT_EQ(room.nodetext(1), "1 0 0");
    runcommand("dx=1;2;3;");
    EXPECT_EQ(room.door.messages.size(), 1u) << "an empty fourth field is none";
    EXPECT_EQ(room.nodetext(1), "2 2 3");
    runcommand("help");
    EXPECT_EQ(room.door.dialogs.back(), "cardhelp");
    emptyselection();
    for (const char* command : {"dx=1", "ax=1", "rx=5", "sc=2", "mxy", "fn=99", "fn=", "fn=abc"})
        runcommand(command);
    EXPECT_EQ(room.nodetext(1), "2 2 3");
    EXPECT_EQ(room.door.messages.size(), 1u) << "nor is an empty selection told";
}

TEST(Commands, NoCoordinateLeavesTheRangeOfSingles) {
    commandroom room;
    resultflag = 0;
    for (const char* command :
         {"ax=1E39", "dx=0;0;-1E39", "ax=*;1D999", "sc=1E39;1E39;1E39", "rz=90;1E39", "mxy=1E39"}) {
        room.door.messages.clear();
        runcommand(command);
        EXPECT_EQ(room.door.messages.size(), 1u) << command;
        EXPECT_EQ(room.nodetext(1), "1 0 0") << command;
        EXPECT_EQ(room.nodetext(2), "3 2 4") << command;
        EXPECT_EQ(graphics(1, 2, 1), 10) << command;
    }
    EXPECT_EQ(resultflag, 0) << "nothing has changed";
    startmode(addnodemode);
    runcommand("ax=1E39");
    EXPECT_EQ(nnodes(), 3);
    room.door.messages.clear();
    runcommand("ax=3E38;-3E38;1E-400");
    EXPECT_EQ(room.nodetext(4), "3e+38 -3e+38 0");
    EXPECT_TRUE(room.door.messages.empty());
}

TEST(Commands, FindNodeRingsItInViewOne) {
    commandroom room;
    viewvert(1) = viewvert(2);
    viewhor(1) = viewhor(2);
    nodename(3) = "tip";
    for (const char* command : {"fn=3", "fn=tip"}) {
        room.door.views[0].operations.clear();
        runcommand(command);
        EXPECT_EQ(room.door.views[0].count("circle 19.00 -4.00 0.375 #ff0000"), 1) << command;
    }
    EXPECT_EQ(nodesel(0), 2) << "the node is not selected";
}

TEST(Commands, PointsGoToTheModeThatAddsNodes) {
    commandroom room;
    viewscale(1) = 0.0371f;  // typed coordinates stay exact whatever the scale
    startmode(addnodemode);
    runcommand("ax=-2;0.1;0");
    runcommand("dx=0;6");
    runcommand("ax=*;*;7");
    ASSERT_EQ(nnodes(), 6);
    EXPECT_EQ(room.nodetext(4), "-2 0.1 0");
    EXPECT_EQ(room.nodetext(5), "-2 6.1 0");
    EXPECT_EQ(room.nodetext(6), "-2 6.1 7");
    EXPECT_EQ(room.nodetext(1), "1 0 0") << "the selection is not moved";
    keyhandler(keyescape);
    EXPECT_EQ(nnodes(), 6) << "ESC keeps the nodes";
}
