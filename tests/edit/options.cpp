// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog "General Options": what its boxes take and what it stores.
#include "edit/options.h"

#include "tests/support/recorder.h"
#include "view/hidden.h"

TEST(Options, ReadyStoresWhatFits) {
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
    sessionroom room;
    for (const bool on : {true, false}) {
        optionsform form = showgeneraloptions();
        form.redrawmove = form.redrawedit = form.mergenodes = form.renumber = on;
        form.redrawdelete = form.mergeelements = form.shading = !on;
        storegeneraloptions(form);
        for (const bool flag : {redrawmove, redrawedit, automergenodes, renumbersave})
            EXPECT_EQ(flag, on);
        for (const bool flag : {redrawdelete, automergeelems, shadingon}) EXPECT_EQ(flag, !on);
    }
    lightangxy = 12;
    for (const char* typed : {"x", "1E39"}) {
        optionsform form = showgeneraloptions();
        form.anglexy = typed;
        form.intensity = 999;
        storegeneraloptions(form);
        EXPECT_EQ(lightangxy, 12) << typed;
        EXPECT_EQ(lightintensity, 255);
    }
}
