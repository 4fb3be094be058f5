// SPDX-License-Identifier: GPL-3.0-or-later
// The form of the dialog "View", and what a copied view shows.
#include "view/viewcontrol.h"

#include <cmath>
#include <cstring>

#include "tests/support/recorder.h"
#include "view/autoscale.h"
#include "view/moddraw.h"
#include "view/scaleview.h"
#include "view/setviews.h"

namespace {
// Three lines; the groups "GR1" of the first and "other" of the others.
struct viewroom : sessionroom {
    viewroom() {
        for (int i = 0; i < 4; ++i) addnode(float(i), 0, 0);
        groups(0, 0) = 2;
        groupname(2) = "other";
        for (int e = 1; e <= 3; ++e) addelement(1, {e, e + 1}, e == 1 ? 1 : 2);
        showvalues(form, 1);
    }
    std::string shownin(int v) const {
        std::string text;
        for (int e = 1; e <= nelems(); ++e)
            if (viewselnum(v) == 0 || elemvis(v, e)) text += std::to_string(e);
        return text;
    }
    viewform form;
};
}  // namespace

TEST(Viewcontrol, APastedViewShowsTheElementsOfTheOther) {
    for (const int option : {1, 2}) {
        viewroom room;
        elemsel(0) = 1;
        elemsel(1) = 3;
        chooseoption(room.form, option, "other");
        EXPECT_EQ(room.shownin(1), option == 1 ? "23" : "3");
        elemsel(0) = 0;
        room.form.copied = 1;
        chooseview(room.form, 2);
        EXPECT_EQ(room.form.group, "") << "no group of this view";
        pasteview(room.form);
        EXPECT_EQ(viewtype(2), 0) << "nothing is stored yet";
        getvalues(room.form);
        EXPECT_EQ(room.shownin(2), room.shownin(1));
        EXPECT_EQ(viewtype(2), option);
        copyview(1, 3, 1, 1, 4, 4);
        EXPECT_EQ(room.shownin(3), room.shownin(1)) << "so does a window of it";
        EXPECT_EQ(viewselnum(3), viewselnum(1));
        mnudrawlist(nodesdrawn).checked = mnuSettingsItem(globalaxison).checked = false;
        drawview(3);
        EXPECT_EQ(room.platform.views[2].count("line"), option == 1 ? 2 : 1);
        chooseoption(room.form, 0, "other");
        getvalues(room.form);
        autoscale(2);
        EXPECT_FLOAT_EQ(viewptx(2), 1.5) << "a fit takes all groups again";
    }
}

TEST(Viewcontrol, ABoxIsCheckedOnLeaving) {
    const std::pair<int, const char*> refused[] = {
        {boxx, "abc"},       {boxx, "1E39"},     {boxscale, "0"},        {boxscale, "-3"},
        {boxscale, "1E-50"}, {boxscale, "1E39"}, {boxunit, "2.01"},      {boxunit, "0"},
        {boxdistance, ""},   {boxdistance, "0"}, {boxdistance, "-1E39"}, {boxvertical, "1E60"},
        {boxhorizontal, "x"}};
    const std::pair<int, const char*> taken[] = {
        {boxx, "2.5"}, {boxz, "-3E+38"}, {boxscale, "3E38"}, {boxunit, "2"}, {boxaw, "abc"}};
    const auto left = [](int box, const char* typed) {
        viewroom room;
        viewscale(1) = 0.25f;
        showvalues(room.form, 1);
        const std::string before = room.form.box[box].substr(0, 2);
        room.form.box[box] = typed;
        leavebox(room.form, box);
        return room.form.box[box].substr(0, 2) == before ? "before" : room.form.box[box];
    };
    for (const auto& [box, typed] : refused) EXPECT_EQ(left(box, typed), "before") << typed;
    for (const auto& [box, typed] : taken) EXPECT_EQ(left(box, typed), typed);
    viewroom room;
    room.form.box[boxx] = "1E39";
    getvalues(room.form);
    EXPECT_EQ(viewptx(1), 0);
}

TEST(Viewcontrol, AViewNeverLosesItsScale) {
    viewroom room;
    for (int i = 0; i < 300; ++i) halveview(1);
    EXPECT_GT(viewscale(1), 0);
    for (int i = 0; i < 600; ++i) doubleview(1);
    EXPECT_TRUE(std::isfinite(viewscale(1)));
    viewscale(1) = 1e-40f;
    scrollview(1, 5, 5);
    panview(1, 3, 3);
    copyview(1, 1, 1, 1, 3, 3);
    copyview(1, 1, 5, 5, 5, 5);
    viewdist(1) = viewaw(1) = 0;  // the eye on the image plane
    scrx = scry = 3;
    unprojectpoint(1);
    EXPECT_TRUE(std::isfinite(modelx) && std::isfinite(modely) && std::isfinite(modelz));
    EXPECT_TRUE(std::isfinite(viewptx(1)) && std::isfinite(viewpty(1)));
    EXPECT_TRUE(std::isfinite(viewscale(1)) && viewscale(1) > 0);
}

TEST(Viewcontrol, AnglesAreShownRoundedAndKeptWhole) {
    viewroom room;
    viewvert(1) = 1.5707964f;  // 90.0000025 degrees
    viewhor(1) = -0.123456789f;
    showvalues(room.form, 1);
    EXPECT_EQ(room.form.box[boxvertical], "90");
    EXPECT_EQ(room.form.box[boxhorizontal], "-7.0736");
    getvalues(room.form);
    EXPECT_EQ(viewhor(1), -0.123456789f);
    room.form.box[boxhorizontal] = "45";
    getvalues(room.form);
    EXPECT_FLOAT_EQ(viewhor(1), 0.7853982f);
}
