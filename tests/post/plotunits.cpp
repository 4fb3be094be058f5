// SPDX-License-Identifier: GPL-3.0-or-later
// Units of results: names, factors of stresses, and what follows a conversion.
#include "post/plotunits.h"

#include "core/numtext.h"
#include "core/units.h"
#include "post/convertplots.h"
#include "post/cut.h"
#include "post/exactstress.h"
#include "post/legendlook.h"
#include "post/probes.h"
#include "tests/support/recorder.h"
#include "tools/unitsform.h"

TEST(Plotunits, StressesKeepTheFewDigitsThatEngineersKnow) {
    const sessionroom room;
    const struct {
        const char *units, *stress;
        double factor;  // of a stress
        const char *force, *moment;
    } cases[] = {
        {"", "", 1, "N", "M"},
        {"free", "", 1, "N", "M"},
        {"mm N kg", "N/mm2", 1, "N [N]", "M [N mm/mm]"},
        {"m kN t", "N/mm2", 1e-3, "N [kN]", "M [kN m/m]"},
        {"m N kg", "N/mm2", 1e-6, "N [N]", "M [N m/m]"},
        {"cm kN kg", "N/mm2", 10, "N [kN]", "M [kN cm/cm]"},
        {"in lbf lb", "psi", 1, "N [lbf]", "M [lbf in/in]"},
        {"ft kip lb", "ksi", 1 / 144.0, "N [kip]", "M [kip ft/ft]"},
    };
    for (const auto& c : cases) {
        unitstext = c.units;
        EXPECT_EQ(resultunit(componentformula(1)), c.stress) << c.units;
        EXPECT_NEAR(shownfactor(componentformula(1)), c.factor, 1e-11 * c.factor) << c.units;
        EXPECT_EQ(shownfactor(componentformula(forcex)), 1);
        EXPECT_EQ(headed("N", "F"), c.force);
        EXPECT_EQ(headed("M", componentformula(momentxy)), c.moment);
    }
    EXPECT_EQ(headedinput("E", "F/L^2"), "E [kip/ft2]") << "data of the model are not scaled";
}

TEST(Plotunits, ColumnsOfTheReportStayWhereTheyAre) {
    const sessionroom room;
    const std::string line = "NO             [L]           [F/L^2]       [-]           [F.L]";
    EXPECT_EQ(unitline(line), line);
    unitstext = "in lbf lb";
    EXPECT_EQ(unitline(line), "NO             [in]          [lbf/in2]     [-]           [lbf in]");
    EXPECT_EQ(unitline("[F/L^2] [F]"), "[lbf/in2] [lbf]") << "at least one blank between them";
}

TEST(Plotunits, LimitsProbesAndCutsFollowAConversion) {
    const sessionroom room;
    wireconversion();
    addnode(1, 2, 3);
    unitstext = "m kN t";
    setlegendlimits("SX", scalelimits{-1, 2});
    setlegendlimits("NX", scalelimits{0, 7});
    setlegendlimits("DX", scalelimits{0, 1});
    thecut.position = "2.5";
    unitsform form = openunits();
    chooseunits(form, 4);
    ASSERT_EQ(form.choices[4], "in lbf lb");
    ASSERT_TRUE(storeunits(form));
    const double inch = 0.0254, pound = 4.4482216152605;
    EXPECT_NEAR(legendlimits("SX")->high, 2 * 145.0377377, 1e-6) << "N/mm2 and psi";
    EXPECT_NEAR(legendlimits("SX")->low, -145.0377377, 1e-6);
    EXPECT_NEAR(legendlimits("NX")->high, 7000 / pound * inch, 1e-9);
    EXPECT_NEAR(legendlimits("DX")->high, 1 / inch, 1e-9);
    EXPECT_NEAR(numberof(thecut.position), 2.5 / inch, 1e-4);
    thecut = {};
}
