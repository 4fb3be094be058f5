// SPDX-License-Identifier: GPL-3.0-or-later
// The working settings both ways.
#include "files/settings.h"

#include <algorithm>

#include "core/colours.h"
#include "tests/support/recorder.h"

TEST(Settings, SaveAndGetLeaveAllValuesAsTheyWere) {
    sessionroom room;
    viewscale(3) = 0.0371f;
    viewhor(2) = -1.25f;
    backcolor = rgb(10, 20, 30);
    nodelabelfont.name = "Courier, \"New\"";
    nodelabelfont.bold = true;
    elemlabelfont.size = 11.5;
    mnudrawlist(constraintsdrawn).checked = false;
    checkonly(viewloads, activecombination);
    nodetol = 0.25;
    dim2d = true;
    singleview = false;
    savesettings();
    EXPECT_EQ(room.platform.status, "Settings saved in " + room.file("DEFAULTS.DAT"));
    const std::string text = contentof(room.file("DEFAULTS.DAT"));
    EXPECT_EQ(std::ranges::count(text, '\n'), 74);
    EXPECT_EQ(text.substr(0, 29), "0\r\n0.25\r\n3\r\n0\r\n#TRUE#\r\n0.7853");
    sessionroom fresh;
    writefile(fresh.file("DEFAULTS.DAT"), text);
    getsettings();
    EXPECT_TRUE(fresh.platform.messages.empty());
    EXPECT_EQ(viewhor(2), -1.25f);
    EXPECT_EQ(backcolor, rgb(10, 20, 30));
    EXPECT_EQ(nodelabelfont.name, "Courier, \"New\"");
    EXPECT_FALSE(mnudrawlist(constraintsdrawn).checked);
    EXPECT_TRUE(viewloads(activecombination).checked) << "on when none of the first three is";
    EXPECT_EQ(mergetol, 0.25);
    savesettings();
    EXPECT_EQ(contentof(fresh.file("DEFAULTS.DAT")), text);
    nodelabelfont = labelfont();
    elemlabelfont = labelfont();
}

TEST(Settings, AToleranceOfZeroIsOneThatMergesNothing) {
    sessionroom room;
    nodetol = 0;
    savesettings();
    nodetol = 1;
    getsettings();
    EXPECT_EQ(mergetol, 0);
    EXPECT_TRUE(room.platform.messages.empty());
}

TEST(Settings, ADamagedFileIsToldAndAppliesWhatStandsBefore) {
    sessionroom room;
    getsettings();
    EXPECT_TRUE(room.platform.toldpart("File not found"));
    writefile(room.file("DEFAULTS.DAT"), "1\r\n0.5\r\n3\r\n0\r\nTrue\r\nabc\r\n");
    getsettings();
    EXPECT_EQ(nodetol, 0.5);
    EXPECT_TRUE(dim2d) << "a truth without marks is read";
    EXPECT_TRUE(room.platform.toldpart("DEFAULTS.DAT, line 6"));
    EXPECT_FLOAT_EQ(viewvert(1), float(pi / 4));
}

// A view that a value of the file would collapse keeps its own.
TEST(Settings, AViewThatShowsNothingIsRefused) {
    sessionroom room;
    savesettings();
    const std::string text = contentof(room.file("DEFAULTS.DAT"));
    const struct {
        int line;
        const char *value, *told;
    } cases[] = {
        {16, "0", "line 16: an eye distance other than 0 was expected, found 0"},
        {16, "nan", "line 16: a number was expected"},
        {22, "0.0", "line 22: an eye distance other than 0 was expected, found 0"},
        {14, "0", "line 14: a view scale above 0 was expected, found 0"},
        {14, "-2", "line 14: a view scale above 0 was expected, found -2"},
    };
    for (const auto& c : cases) {
        std::size_t begin = 0;
        for (int line = 1; line < c.line; ++line) begin = text.find("\r\n", begin) + 2;
        const std::size_t end = text.find("\r\n", begin);
        writefile(room.file("DEFAULTS.DAT"), text.substr(0, begin) + c.value + text.substr(end));
        getsettings();
        EXPECT_TRUE(room.platform.toldpart(c.told)) << c.told;
        for (int v = 1; v <= nviews; ++v) {
            EXPECT_EQ(viewdist(v), 1000000);
            EXPECT_EQ(viewscale(v), 1);
        }
    }
}
