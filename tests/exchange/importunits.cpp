// SPDX-License-Identifier: GPL-3.0-or-later
// Units of foreign files beside those of the model.
#include "exchange/importunits.h"

#include "core/journal.h"
#include "exchange/deck.h"
#include "exchange/mosesexport.h"
#include "tests/exchange/samples.h"

static const std::string materials =
    "*NODE\n1,0,0,0\n2,2000,0,0\n*ELEMENT,TYPE=B31,ELSET=BAR\n1,1,2\n*MATERIAL,NAME=S\n*ELASTIC\n";
static const std::string sections =
    "*BEAM SECTION,ELSET=BAR,MATERIAL=S,SECTION=RECT\n40,60\n0,1,0\n*ELEMENT,TYPE=MASS,ELSET=M\n"
    "2,2\n*MASS,ELSET=M\n0.5\n*STEP\n*STATIC\n*DLOAD\nBAR,GRAV,9810,0,0,1\n*END STEP\n";

static std::size_t longestfield(const std::string& text) {
    std::size_t longest = 0;
    for (std::size_t begin = 0, end = 0; end != text.npos; begin = end + 1) {
        end = text.find_first_of(",\n", begin);
        if (text.substr(begin, 1) != "*" && text.substr(begin, 1) != " ")
            longest = std::max(longest, std::min(end, text.size()) - begin);
    }
    return longest;
}

// A deck says nothing of units; where its materials are metals in some, these are the model's.
TEST(ImportUnits, DecksAreReadInTheUnitsOfTheirMetals) {
    const struct {
        const char *material, *newunits, *units;
        double density, mass, acceleration;
    } cases[] = {
        {"210000,.3\n*DENSITY\n7.85E-9\n", "", "mm N t", 7.85e-9, 0.5, 9.81},
        {"2.1E11,.3\n*DENSITY\n7850\n", "", "m N kg", 7850, 0.5, 9810},
        {"2.9E7,.3\n*DENSITY\n7.35E-4\n", "", "in lbf lb", 0.2837751, 193.04429, 249.174},
        {"500,.3\n*DENSITY\n1E-9\n", "", "", 1e-6, 500, 9.81},
        {"500,.3\n*DENSITY\n1.2\n", "m kN t", "m kN t", 1.2, 0.5, 9810},
    };
    for (const auto& c : cases) {
        exchangeroom room;
        newunits = c.newunits;
        writefile(room.file("a.inp"), materials + c.material + sections);
        ASSERT_EQ(room.open(room.file("a.inp")), reply::done);
        newunits.clear();
        EXPECT_EQ(unitstext, c.units) << c.material;
        EXPECT_NEAR(groups(egroup(1), fielddensity), c.density, 1e-5 * c.density);
        EXPECT_NEAR(groups(egroup(2), fielddensity), c.mass, 1e-5 * c.mass);
        EXPECT_NEAR(lcpar(1, accvalue), c.acceleration, 1e-5 * c.acceleration) << c.material;
        // A deck that is written has consistent numbers again.
        importreport report;
        writedeck(room.file("b.inp"), report);
        const std::string text = contentof(room.file("b.inp"));
        EXPECT_LE(longestfield(text), 20u) << "all that the other solver reads";
        EXPECT_NE(text.find("*MASS, ELSET=M\n0.5"), std::string::npos) << text;
        EXPECT_NE(text.find("BAR,GRAV,9810,0,0,1"), std::string::npos) << text;
    }
}

// Two points in metres behind a model in millimetres, behind one that says nothing, and in an empty
// one.
TEST(ImportUnits, AFileThatTellsItsUnitsIsTurnedIntoTheModels) {
    const std::string text =
        "&dimen -dimen meters k-nts\n*a 3 0 0\n*b 3 0 2\n~t TUBE 500 20\nBEAM ~t *a *b\n"
        "#WEIGHT *b 7\n";
    const struct {
        const char* units;
        bool isempty;
        double metre, area, force;
        reportkinds kind;
        const char* told;
    } cases[] = {
        {"mm N kg", false, 1000, 1e6, 1000, reportkinds::changed, "turned from m kN t"},
        {"", false, 1, 1, 1, reportkinds::warning, "stay as they are"},
        {"", true, 1, 1, 1, reportkinds::read, "Points"},
    };
    for (const auto& c : cases) {
        exchangeroom room;
        unitstext = c.units;
        if (!c.isempty) addnode(0, 0, 0);
        startjournal();
        writefile(room.file("a.dat"), text);
        {
            const step s("Import");
            ASSERT_EQ(room.import(room.file("a.dat")), reply::done);
        }
        EXPECT_EQ(unitstext, c.isempty ? "m kN t" : c.units);
        EXPECT_NE(nodeat(3 * c.metre, 0, 2 * c.metre), 0);
        const double area = M_PI / 4 * (0.25 - 0.2116) * c.area;
        EXPECT_NEAR(groups(egroup(1), fieldthickness), area, 1e-9 * area);
        EXPECT_NEAR(loadval(nlc(), 1), -7 * c.force, 1e-3);
        EXPECT_NE(reported(c.kind, c.told), nullptr) << lastreport().text();
        if (c.isempty) {
            EXPECT_NEAR(groups(1, fieldmodulus), 2.1e8, 1) << "what the empty model had";
        }
        importreport report;  // a text in metres again
        exportmoses(room.file("b.ppo"), 1, report);
        EXPECT_NE(contentof(room.file("b.ppo")).find("3.000*%xfac"), std::string::npos) << c.units;
        stepback();
        EXPECT_EQ(unitstext, c.units) << "one step takes all of it away";
        EXPECT_EQ(groups(1, fieldmodulus), 210000);
    }
}
