// SPDX-License-Identifier: GPL-3.0-or-later
// Units: names, typed values, factors.
#include "core/units.h"

#include "tests/support/recorder.h"

TEST(Units, TypedValuesAreTurnedIntoTheModels) {
    const sessionroom room;
    const struct {
        const char *units, *text, *formula;
        double value;
        const char* fault = "";
    } cases[] = {
        {"mm N kg", "1.5e3", "F", 1500},
        {"mm N kg", " 25 kN", "F", 25000},
        {"m kN t", "25kN", "F", 25},
        {"m kN t", "300 mm", "L", 0.3},
        {"m kN t", "210 GPa", "F/L^2", 210e6},
        {"", "210 GPa", "F/L^2", 210000},
        {"mm N kg", "7.85 t/m3", "W/L^3", 7.85e-6},
        {"m kN t", "7850 kg/m^3", "M/L^3", 7.85},
        {"m N kg", "12.5 cm4", "L^4", 12.5e-8},
        {"m N kg", "3 kN s2/m", "M", 3000},
        {"mm N kg", "3 ft 6 in", "L", 42 * 25.4},
        {"mm N kg", "-3 ft 6 in", "L", -42 * 25.4},
        {"ft kip lb", "36 ksi", "F/L^2", 36 * 144},
        {"in lbf lb", "2 kip-ft", "F.L", 24000},
        {"m kN t", "5 kNm", "F.L", 5},
        {"m kN t", "5 kNm/rad", "F.L", 5},
        {"mm N kg", "5 kN/m\u00b2", "F/L^n", 0.005},
        {"mm N kg", "5 kN/m", "F/L^n", 5},
        {"mm N kg", "5 cm2", "L | L^2", 500},
        {"m kN t", "0.5 rad", "Deg", 90 / pi},
        {"m kN t", "1 MN", "F", 1000},
        {"ft kip lb", "6 ft", "m", 6 * 0.3048},
        {"ft kip lb", "32.174 ft/s2", "m/s^2", 32.174 * 0.3048},
        {"free", "6 m", "m", 6},
        {"free", "6 m", "L", 0, "the model's own units are free"},
        {"mm N kg", "1,200 mm", "L", 0, "is no number"},
        {"mm N kg", "3 kN", "L", 0, "of another kind; mm is wanted here"},
        {"mm N kg", "3 deg", "L", 0, "of another kind"},
        {"mm N kg", "3 mm", "Deg", 0, "of another kind; Deg is wanted"},
        {"mm N kg", "3 deg", "-", 0, "where a plain number is wanted"},
        {"mm N kg", "3 Mm", "L", 0, "is no number"},
        {"mm N kg", "3 mm 4", "L", 0, "is no number"},
        {"mm N kg", "3 mm 4 kN", "L", 0, "is no number"},
        {"mm N kg", "3 /", "L", 0, "is no number"},
        {"mm N kg", "3 mm/", "L", 0, "is no number"},
        {"m kN t", "1e308 km", "L", 0, ""},
    };
    for (const auto& c : cases) {
        unitstext = c.units;
        double value = -7;
        const std::string name = std::string(c.units) + ": " + c.text + " as " + c.formula;
        const bool refused = *c.fault != 0 || c.value == 0;
        EXPECT_EQ(readvalue(c.text, c.formula, value), !refused) << name;
        EXPECT_NEAR(value, refused ? -7 : c.value, 1e-12 * std::abs(c.value)) << name;
        const std::string fault = valuefault(c.text, c.formula);
        EXPECT_NE(fault.find(c.fault), std::string::npos) << fault;
    }
}

TEST(Units, NamesFollowTheModel) {
    const sessionroom room;
    const struct {
        const char *units, *formula, *name, *caption;
    } cases[] = {
        {"", "F/L^2", "N/mm2", "F/L^2"},
        {"mm N kg", "F/L^2", "N/mm2", "N/mm2"},
        {"m kN t", "W/L^3", "t/m3", "t/m3"},
        {"ft kip lb", "F.L", "kip ft", "kip ft"},
        {"in lbf lb", "L | L^2", "in | in2", "in | in2"},
        {"m kN t", "F/L^n", "kN/m | kN/m2", "kN/m | kN/m2"},
        {"m kN t", "F L/L", "kN m/m", "kN m/m"},
        {"cm kN kg", "L | Deg", "cm | Deg", "cm | Deg"},
        {"m kN t", "m/s^2", "m/s^2", "m/s^2"},
        {"free", "M.L^2", "M.L^2", "M.L^2"},
    };
    for (const auto& c : cases) {
        unitstext = c.units;
        EXPECT_EQ(unitname(c.formula), c.name) << c.units;
        EXPECT_EQ(captionunit(c.formula), c.caption) << c.units;
    }
    unitset set;
    for (const char* bad : {"mm N", "mm N kg s", "N mm kg", "M kN t"})
        EXPECT_FALSE(findunits(bad, set)) << bad;
    EXPECT_EQ(namedunits(0.3048, 4448.2216152605, 0.45359237).force, "kip");
    EXPECT_EQ(namedunits(0.5, 1, 1).length, "") << "a length that has no name";
    unitset metric, us;
    findunits("m kN t", metric);
    findunits("ft kip lb", us);
    EXPECT_NEAR(unitfactor("F/L^2", metric, us), 0.3048 * 0.3048 / 4.4482216152605, 1e-12);
    EXPECT_EQ(unitfactor("F/L^2", metric, {}), 1);
}
