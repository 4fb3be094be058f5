// SPDX-License-Identifier: GPL-3.0-or-later
// Direct commands on the selection and in the mode that adds nodes.
#include "edit/commands.h"

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
        graphics(0, 0, 0) = graphics(1, 0, 0) = 1;
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
    const struct {
        const char* command;
        const char *first, *second;
        std::size_t told = 0;
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
        {"dx=1;2;3;4", "1 0 0", "3 2 4", 1},
        {"dx=1;2;3;", "2 2 3", "4 4 7"},   // an empty fourth field is none
        {"ax=1E39", "1 0 0", "3 2 4", 1},  // nothing leaves the range of Singles
        {"dx=0;0;-1E39", "1 0 0", "3 2 4", 1},
        {"ax=*;1D999", "1 0 0", "3 2 4", 1},
        {"sc=1E39;1E39;1E39", "1 0 0", "3 2 4", 1},
        {"rz=90;1E39", "1 0 0", "3 2 4", 1},
        {"mxy=1E39", "1 0 0", "3 2 4", 1},
    };
    for (const auto& c : cases) {
        commandroom room;
        runcommand(c.command);
        EXPECT_TRUE(c.told == 0 || graphics(1, 2, 1) == 10) << c.command;
        EXPECT_EQ(room.nodetext(1), c.first) << c.command;
        EXPECT_EQ(room.nodetext(2), c.second) << c.command;
        EXPECT_EQ(room.nodetext(3), "9 9 9") << c.command;
        EXPECT_EQ(nodesel(0), 2) << c.command;
        EXPECT_EQ(room.platform.messages.size(), c.told) << c.command;
    }
    commandroom room;
    runcommand("rz=45");
    EXPECT_EQ(nodes(0, 1, 0), 0.707107f) << "six decimals";
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

TEST(Commands, NeedNoSelection) {
    commandroom room;
    emptyselection();
    for (const char* command : {"dx=1", "ax=1", "rx=5", "sc=2", "mxy", "fn=99", "fn=", "fn=abc"})
        runcommand(command);
    EXPECT_EQ(room.nodetext(1), "1 0 0");
    EXPECT_TRUE(room.platform.messages.empty());
    viewvert(1) = viewvert(2);
    viewhor(1) = viewhor(2);
    nodename(3) = "tip";
    for (const char* command : {"fn=3", "fn=tip"}) {
        room.platform.views[0].operations.clear();
        runcommand(command);
        EXPECT_EQ(room.platform.views[0].count("circle 19.00 -4.00 0.375 #ff0000"), 1) << command;
    }
    EXPECT_EQ(nodesel(0), 0) << "the node found is not selected";
    const auto erased = [&] {
        return room.platform.views[0].count("circle 19.00 -4.00 0.375 #ffffff");
    };
    EXPECT_EQ(erased(), 1) << "the circle before goes with the next";
    for (int press = 1; press <= 2; ++press) keyhandler(keyescape);
    EXPECT_EQ(erased(), 2) << "and with ESC";
    runcommand("help");
    EXPECT_EQ(room.platform.dialogs.back(), "cardhelp");
    runcommand("dx=1;2;3;4");
    EXPECT_TRUE(room.platform.told("Error format direct input command. Use ; as list seperator"));
}

TEST(Commands, PointsGoToTheModeThatAddsNodes) {
    commandroom room;
    viewscale(1) = 0.0371f;  // typed coordinates stay exact whatever the scale
    startmode(addnodemode);
    runcommand("ax=-2;0.1;0");
    runcommand("dx=0;6");
    runcommand("ax=*;*;7");
    EXPECT_TRUE(room.platform.messages.empty());
    runcommand("ax=1E39");
    EXPECT_EQ(room.platform.messages.size(), 1u);
    runcommand("ax=3E38;-3E38;1E-400");
    EXPECT_EQ(room.nodetext(1), "1 0 0") << "the selection is not moved";
    keyhandler(keyescape);
    ASSERT_EQ(nnodes(), 7) << "ESC keeps the nodes";
    const char* const expected[] = {"-2 0.1 0", "-2 6.1 0", "-2 6.1 7", "3e+38 -3e+38 0"};
    for (int n = 4; n <= 7; ++n) EXPECT_EQ(room.nodetext(n), expected[n - 4]);
}
