// SPDX-License-Identifier: GPL-3.0-or-later
// The working settings both ways, and the form of the view dialog.
#include "files/settings.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "core/colours.h"
#include "core/model.h"
#include "core/session.h"
#include "core/views.h"
#include "tests/support/recorder.h"
#include "view/viewcontrol.h"

TEST(Settings, SaveAndGetLeaveAllValuesAsTheyWere) {
    sessionroom room;
    viewscale(3) = 0.0371f;
    viewhor(2) = -1.25f;
    backcolor = rgb(10, 20, 30);
    nodelabelfont.name = "Courier, \"New\"";
    nodelabelfont.bold = true;
    elemlabelfont.size = 11.5;
    mnudrawlist(2).checked = false;
    checkonly(viewloads, 3);
    nodetol = 0.25;
    dim2d = true;
    singleview = false;
    savesettings();
    const std::string text = contentof(room.file("DEFAULTS.DAT"));
    EXPECT_EQ(std::ranges::count(text, '\n'), 74);
    EXPECT_EQ(text.substr(0, 29), "0\r\n0.25\r\n3\r\n0\r\n#TRUE#\r\n0.7853");
    sessionroom fresh;
    writefile(fresh.file("DEFAULTS.DAT"), text);
    getsettings();
    EXPECT_TRUE(fresh.door.messages.empty());
    EXPECT_EQ(viewscale(3), 0.0371f);
    EXPECT_EQ(viewhor(2), -1.25f);
    EXPECT_EQ(backcolor, rgb(10, 20, 30));
    EXPECT_EQ(nodelabelfont.name, "Courier, \"New\"");
    EXPECT_TRUE(nodelabelfont.bold);
    EXPECT_EQ(elemlabelfont.size, 11.5);
    EXPECT_FALSE(mnudrawlist(2).checked);
    EXPECT_TRUE(viewloads(3).checked) << "on when none of the first three is";
    EXPECT_EQ(mergetol, 0.25);
    EXPECT_TRUE(dim2d);
    EXPECT_FALSE(singleview);
    savesettings();
    EXPECT_EQ(contentof(fresh.file("DEFAULTS.DAT")), text);
    nodelabelfont = labelfont();
    elemlabelfont = labelfont();
}

TEST(Settings, ADamagedFileIsToldAndAppliesWhatStandsBefore) {
    sessionroom room;
    getsettings();
    EXPECT_TRUE(room.door.toldpart("File not found"));
    writefile(room.file("DEFAULTS.DAT"), "1\r\n0.5\r\n3\r\n0\r\nTrue\r\nabc\r\n");
    getsettings();
    EXPECT_EQ(nodetol, 0.5);
    EXPECT_TRUE(dim2d) << "a truth without marks is read";
    EXPECT_TRUE(room.door.toldpart("DEFAULTS.DAT, line 6"));
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
        EXPECT_TRUE(room.door.toldpart(c.told)) << c.told;
        for (int v = 1; v <= nviews; ++v) {
            EXPECT_EQ(viewdist(v), 1000000);
            EXPECT_EQ(viewscale(v), 1);
        }
    }
}

TEST(Viewcontrol, BoxesAreCheckedOnLeaving) {
    sessionroom room;
    viewform form;
    viewhor(1) = float(toradians(30));
    showvalues(form, 1);
    EXPECT_EQ(form.box[boxvertical].substr(0, 2), "45");
    const struct {
        int box;
        const char *typed, *after;
    } cases[] = {{boxx, "abc", "0"},           {boxx, "2.5", "2.5"},         {boxscale, "0", "1"},
                 {boxscale, "-3", "1"},        {boxscale, "3", "3"},         {boxunit, "2", "2"},
                 {boxunit, "2.01", "0.5"},     {boxunit, "0", "0.5"},        {boxaw, "abc", "abc"},
                 {boxdistance, "", "1000000"}, {boxdistance, "0", "1000000"}};
    for (const auto& c : cases) {
        showvalues(form, 1);
        form.box[c.box] = c.typed;
        leavebox(form, c.box);
        EXPECT_EQ(form.box[c.box], c.after) << viewboxcaptions[c.box];
    }
    form.box[boxhorizontal] = "x";
    leavebox(form, boxhorizontal);
    EXPECT_EQ(form.box[boxhorizontal].substr(0, 7), "30.0008") << "the short constant's way back";
}

TEST(Viewcontrol, PasteMakesTheViewACopyOnceItIsStored) {
    sessionroom room;
    viewform form;
    viewscale(1) = 7;
    showvalues(form, 1);
    form.copied = 1;
    takeview(form, 3);
    EXPECT_EQ(form.heading, "View settings for view 3");
    pasteview(form);
    EXPECT_EQ(viewscale(3), 1) << "nothing is stored yet";
    takeview(form, 2);
    EXPECT_EQ(viewscale(3), 7);
    EXPECT_FLOAT_EQ(viewvert(3), viewvert(1));
    form.box[boxaw] = "none";
    form.box[boxz] = "4";
    getvalues(form);
    EXPECT_EQ(viewptz(2), 4) << "what stands before the bad box is stored";
}

TEST(Viewcontrol, GroupAndSelectionMarkTheElementsOfAView) {
    sessionroom room;
    for (int n = 1; n <= 4; ++n) addnode(float(n), 0, 0);
    groups(0, 0) = 2;
    groupname(2) = "Deck";
    addelement(1, {1, 2}, 1);
    addelement(1, {2, 3}, 2);
    addelement(1, {3, 4}, 2);
    viewform form;
    showvalues(form, 1);
    chooseoption(form, 1, "Deck");
    EXPECT_EQ(viewgroup(1), 2);
    EXPECT_EQ(form.selected, "2");
    EXPECT_TRUE(elemvis(1, 3) && !elemvis(1, 1));
    startviewselection();
    EXPECT_TRUE(viewselpending);
    EXPECT_EQ(statusline(),
              "Select Element(s); to view; <Mouse Left Button> to select, <ESC> to stop");
    elemsel(0) = 1;
    elemsel(1) = 1;
    endviewselection(form);
    EXPECT_EQ(viewtype(1), 2);
    EXPECT_EQ(viewselnum(1), 1);
    EXPECT_TRUE(elemvis(1, 1) && !elemvis(1, 3));
}
