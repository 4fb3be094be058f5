// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog "General Options": what its boxes take and what it stores.
#include "edit/options.h"

#include <gtest/gtest.h>

#include "core/session.h"
#include "tests/support/recorder.h"
#include "view/hidden.h"

TEST(Options, TheToleranceTakesNumbersAlone) {
    const struct {
        const char *typed, *shown;
        double stored;
    } cases[] = {
        {"0.02", "0.02", 0.02}, {"1e-6", "1E-06", 1e-6}, {"0", "0", 0},  // merges nothing
        {"", "0.5", 0.5},       {"x", "0.5", 0.5},       {"-1", "0.5", 0.5},
        {"0,2", "0.5", 0.5},    {"1e400", "0.5", 0.5},   {"nan", "0.5", 0.5},
    };
    for (const auto& c : cases) {
        sessionroom room;
        mergetol = 0.5;
        optionsform form = showgeneraloptions();
        form.tolerance = c.typed;
        leavetolerance(form);
        EXPECT_EQ(mergetol, 0.5) << c.typed << ": nothing is stored before Ready";
        storegeneraloptions(form);
        EXPECT_EQ(mergetol, c.stored) << c.typed;
        EXPECT_EQ(nodetol, c.stored) << c.typed;
        EXPECT_EQ(showgeneraloptions().tolerance, c.shown) << c.typed;
    }
}

TEST(Options, ReadyStoresEveryPage) {
    sessionroom room;
    for (const bool on : {true, false, true}) {
        optionsform form = showgeneraloptions();
        form.redrawmove = form.redrawedit = form.mergenodes = form.renumber = on;
        form.redrawdelete = form.mergeelements = form.shading = !on;
        form.shadecolor = on ? 2 : 0;
        form.anglexy = on ? "x" : "30";
        form.intensity = on ? 999 : 40;
        storegeneraloptions(form);
        for (const bool flag : {redrawmove, redrawedit, automergenodes, renumbersave})
            EXPECT_EQ(flag, on);
        for (const bool flag : {redrawdelete, automergeelems, shadingon}) EXPECT_EQ(flag, !on);
        EXPECT_EQ(shadecolor, on ? 2 : 0);
        EXPECT_EQ(lightintensity, on ? 255 : 40);
        if (!on) lightangxy = 12;
    }
    EXPECT_EQ(lightangxy, 12) << "a text leaves the angle as it was";
    optionsform form = showgeneraloptions();
    form.anglexy = form.anglez = "1E39";
    storegeneraloptions(form);
    EXPECT_EQ(lightangxy, 12) << "so does what no Single holds";
    EXPECT_LT(lightangz, 1000);
}
