// SPDX-License-Identifier: GPL-3.0-or-later
// The form of the dialog "View", and what a copied view shows.
#include "view/viewcontrol.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "core/model.h"
#include "core/session.h"
#include "core/views.h"
#include "tests/support/recorder.h"
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
        takeview(room.form, 2);
        EXPECT_EQ(room.form.group, "") << "no group of this view";
        pasteview(room.form);
        EXPECT_EQ(viewtype(2), 0) << "nothing is stored yet";
        getvalues(room.form);
        EXPECT_EQ(room.shownin(2), room.shownin(1));
        EXPECT_EQ(viewtype(2), option);
        copyview(1, 3, 1, 1, 4, 4);
        EXPECT_EQ(room.shownin(3), room.shownin(1)) << "so does a window of it";
        EXPECT_EQ(viewselnum(3), viewselnum(1));
    }
}

TEST(Viewcontrol, AGroupCountsForAViewOfAGroupAlone) {
    viewroom room;
    chooseoption(room.form, 1, "other");
    EXPECT_EQ(viewgroup(1), 2);
    chooseoption(room.form, 0, "other");
    getvalues(room.form);
    EXPECT_EQ(viewgroup(1), 0) << "a fit takes all groups again";
    autoscale(1);
    EXPECT_FLOAT_EQ(viewptx(1), 1.5);
}

TEST(Viewcontrol, AnEyeOnTheImagePlaneGivesNumbers) {
    viewroom room;
    room.form.box[boxdistance] = room.form.box[boxaw] = "0";
    getvalues(room.form);
    scrx = scry = 3;
    unprojectpoint(1);
    EXPECT_TRUE(std::isfinite(modelx) && std::isfinite(modely) && std::isfinite(modelz));
}

TEST(Viewcontrol, ABoxIsCheckedOnLeaving) {
    const struct {
        int box;
        const char *typed, *left;
    } cases[] = {{boxx, "abc", "0"},
                 {boxx, "2.5", "2.5"},
                 {boxx, "1E39", "0"},
                 {boxz, "-3E+38", "-3E+38"},
                 {boxscale, "0", "0.25"},
                 {boxscale, "-3", "0.25"},
                 {boxscale, "1E-50", "0.25"},
                 {boxscale, "1E39", "0.25"},
                 {boxscale, "3E38", "3E38"},
                 {boxunit, "2", "2"},
                 {boxunit, "2.01", "0.5"},
                 {boxunit, "0", "0.5"},
                 {boxaw, "abc", "abc"},
                 {boxdistance, "", "1000000"},
                 {boxdistance, "0", "1000000"},
                 {boxdistance, "-1E39", "1000000"},
                 {boxvertical, "1E60", "45"},
                 {boxhorizontal, "x", "45"}};
    for (const auto& c : cases) {
        viewroom room;
        viewscale(1) = 0.25f;
        showvalues(room.form, 1);
        room.form.box[c.box] = c.typed;
        leavebox(room.form, c.box);
        EXPECT_EQ(room.form.box[c.box].substr(0, std::strlen(c.left)), c.left)
            << viewboxcaptions[c.box] << c.typed;
    }
    viewroom room;
    room.form.box[boxx] = "1E39";
    room.form.box[boxaw] = "none";
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
    EXPECT_TRUE(std::isfinite(viewptx(1)) && std::isfinite(viewpty(1)));
    EXPECT_TRUE(std::isfinite(viewscale(1)) && viewscale(1) > 0);
}
