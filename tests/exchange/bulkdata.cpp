// SPDX-License-Identifier: GPL-3.0-or-later
// Bulk data in small, large and free fields.
#include "exchange/bulkdata.h"

#include "core/units.h"

#include "tests/exchange/samples.h"

TEST(Bulkdata, CardsOfEveryFormAreRead) {
    exchangeroom room;
    automergenodes = false;
    ASSERT_EQ(room.open(samplepath("frame.bdf")), reply::done);
    ASSERT_EQ(nnodes(), 4);
    EXPECT_EQ(nodes(0, 3, 2), 3) << "a continued large card";
    EXPECT_EQ(nodes(0, 4, 2), 3) << "a grid of another system";
    const auto group = [](int type) {
        for (int e = 1; e <= nelems(); ++e)
            if (int(elems(e, 0)) == type) return egroup(e);
        return 0;
    };
    EXPECT_EQ(nelems(), 6);
    EXPECT_EQ(countoftype(typebeam), 2);
    EXPECT_EQ(groups(egroup(1), fieldmodulus), 210000) << "an exponent without its letter";
    EXPECT_EQ(groups(egroup(1), fielddensity), 7.85e-9);
    EXPECT_EQ(unitstext, "mm N t");
    EXPECT_EQ(groups(egroup(1), fieldthickness), 6);
    EXPECT_NEAR(groups(egroup(1), fieldiyy), 2 * 27.0 / 12, 1e-12) << "upright: bends about axis 3";
    EXPECT_NEAR(groups(egroup(1), fieldrotation), 90, 1e-9);
    EXPECT_EQ(groups(egroup(2), fieldiyy), 4.5);
    EXPECT_EQ(groups(egroup(2), fieldixx), 2);
    for (int dof = 1; dof <= 6; ++dof)
        EXPECT_EQ(endrelease(2, 1, dof), dof > 3 ? 1 : 0) << "pins of the first end";
    EXPECT_EQ(groups(group(typeshell3), fieldthickness), 0.5);
    EXPECT_EQ(groups(group(typetruss), fieldthickness), 1.25);
    EXPECT_EQ(groups(group(typemass), fielddensity), 2.5);
    EXPECT_EQ(countoftype(typerigid), 1);
    EXPECT_EQ(ncon, 8) << "of the set that is chosen, and of a grid";
    ASSERT_EQ(nlc(), 3);
    EXPECT_EQ(lcname(1), "Subcase 1");
    EXPECT_EQ(loadval(1, 1), -12) << "factors of the sum and of the part";
    EXPECT_EQ(loaddof(1, 2) * 10 + loadval(1, 2), 51);
    EXPECT_EQ(elemload(1, 1, 2), 3);
    EXPECT_EQ(int(lctype(2)), int(caseaccz));
    EXPECT_NEAR(lcpar(2, accvalue), -2 * 9.81 / 1000, 1e-12) << "from millimetres";
    EXPECT_EQ(loadval(3, 1), -6);
    EXPECT_NE(reported(reportkinds::skipped, "Card CHEXA (line 39)"), nullptr)
        << lastreport().text();
}

TEST(Bulkdata, FaultsAreToldWithTheirLine) {
    const std::string grids = "GRID,1,,0.,0.,0.\nGRID,2,,1.,0.,0.\nGRID,3,,0.,1.,0.\n";
    const struct {
        std::string text;
        int elements;  // -1: refused
        const char* told;
    } cases[] = {
        {grids + "CTRIA3,1,1,1,2,9\nCTRIA3,2,1,1,2,3\n", 1,
         "CTRIA3 uses grid 9, which is not defined (line 4)"},
        {grids + "PSHELL,1,7,0.5\nCTRIA3,2,1,1,2,3\n", 1, "Material 7 is not defined"},
        {grids + "CTRIA3,2,1,1,2,3\nLOAD,1,1.,1.,1\n", 1, "Load 1 is not defined, or names itself"},
        {grids + "GRID,4,,.5,0.,0.\nCTRIA6,1,1,1,2,3,4,4,\n+,4\n", 1,
         "Elements of second order became straight ones (line 5)"},
        {"GRID,1,,zero,0.,0.\n", -1, "line 1: field 4 of GRID: a number was expected"},
        {"INCLUDE '/etc/passwd'\n", -1, "is not beneath the folder of the file"},
        {"CTRIA3\t2\t1\t1\t2\t3\nGRID\t1\t\t0.\t0.\t0.\nINCLUDE 'part.bdf'\nGRID,3,,0.,1.,0.\n", 1,
         "SHELL3 elements"},
        {grids + "SPC1,1,1,1,THRU,99999999999\n", -1, "a range of numbers without end"},
        {"TITLE = none\n", -1, "no GRID was found"},
    };
    for (const auto& c : cases) {
        exchangeroom room;
        writefile(room.file("a.bdf"), c.text);
        writefile(room.file("part.bdf"), "GRID*   2\t\t\t\t1.\n$ between\n*       0.\n");
        EXPECT_EQ(room.open(room.file("a.bdf")), c.elements < 0 ? reply::failed : reply::done)
            << c.text;
        EXPECT_EQ(nelems(), std::max(c.elements, 0)) << c.text;
        EXPECT_TRUE(room.platform.toldpart(c.told) ||
                    lastreport().text().find(c.told) != std::string::npos)
            << c.text << lastreport().text();
    }
}

// A ring of grids in a round system, what all grids have, and constraints as the sum of two sets.
TEST(Bulkdata, RoundSystemsDefaultsAndSumsOfSets) {
    exchangeroom room;
    automergenodes = false;
    writefile(room.file("a.bdf"),
              "SOL 101\nSPC = 9\nBEGIN BULK\nCORD2C,3,,1.,0.,0.,1.,0.,1.,\n,2.,0.,0.\n"
              "CORD2S,4,,0.,0.,0.,0.,0.,1.,\n,1.,0.,0.\nGRDSET,,3,,,,,345\n"
              "GRID,1,,2.,0.,0.\nGRID,2,,2.,90.,5.\nGRID,3,,2.,180.,0.,,0\nGRID,4,4,2.,90.,90.\n"
              "MAT1,1,210000.,,.3\nCONROD,1,1,2,1,50.\nCONROD,2,2,3,1,50.\nCONROD,3,3,4,1,60.\n"
              "SPCADD,9,1,2\nSPC1,1,1,1,THRU,4,EXCEPT,2,3\nSPC1,2,2,1,THRU,4,BY,3\nSPC1,7,1,2\n"
              "ENDDATA\n");
    ASSERT_EQ(room.open(room.file("a.bdf")), reply::done);
    EXPECT_EQ(lastreport().count(reportkinds::error), 0) << lastreport().text();
    EXPECT_EQ(nodeat(3, 0, 0), 1);
    EXPECT_EQ(nodeat(1, 2, 5), 2);
    EXPECT_EQ(nodeat(-1, 0, 0), 3);
    EXPECT_EQ(nodeat(0, 2, 0), 4) << "radius, angle from the axis, angle about it";
    EXPECT_EQ(countoftype(typetruss), 3);
    EXPECT_EQ(groups(egroup(3), fieldthickness), 60);
    EXPECT_EQ(ncon, 3 * 3 + 2 + 2) << "of all grids but one, and of both sets";
}
