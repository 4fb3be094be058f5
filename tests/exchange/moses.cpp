// SPDX-License-Identifier: GPL-3.0-or-later
// MOSES texts, opened as the user opens them, and what is written read back.
#include <cmath>
#include <map>
#include <set>

#include "core/catalogue.h"
#include "core/newmodel.h"
#include "core/numtext.h"
#include "core/units.h"
#include "exchange/MOSESINTERFACE.h"
#include "exchange/arithmetic.h"
#include "exchange/mosesexport.h"
#include "tests/exchange/samples.h"

// Opens a text; what the report says.
static std::string opened(exchangeroom& room, const std::string& text) {
    writefile(room.file("a.dat"), text);
    EXPECT_EQ(room.open(room.file("a.dat")), reply::done) << text;
    return lastreport().text();
}

static int groupnamed(const std::string& name) {
    for (int g = 1; g <= ngroups(); ++g)
        if (groupname(g) == name) return g;
    return 0;
}

TEST(Moses, SamplesGiveTheirItemsAndTellWhatIsWrong) {
    const struct {
        const char* file;
        int points, beams, quads, triangles, rows;
        std::vector<std::string> errors, told;
    } cases[] = {
        {"frame.dat", 5, 4, 0, 0, 9, {}, {}},
        {"deck.dat", 7, 0, 2, 1, 0, {}, {"load case Weights"}},
        {"hull.dat", 8, 0, 6, 0, 0, {}, {"&model_def"}},
        {"variables.dat", 4, 3, 0, 0, 0, {}, {"Coordinates turned from feet to metres"}},
        {"bad_points.dat",
         2,
         1,
         0,
         0,
         0,
         {"point \"p2\": the third coordinate is missing (line 4)",
          "point \"p4\": \"zz\" is not a number (line 7)"},
         {"point \"p3\": defined again, the later place holds (line 6)"}},
        {"bad_elements.dat",
         3,
         1,
         0,
         0,
         0,
         {"class \"~nix\" is not defined (line 7)", "a beam has two points or more (line 8)",
          "point \"p9\" is not defined (line 9)", "here are 2 (line 10)",
          "unit \"meters\" does not go with \"kips\" (line 11)",
          "variable \"none\" is not set (line 12)",
          "the file ends after a continuation mark (line 13)"},
         {}},
    };
    for (const auto& c : cases) {
        exchangeroom room;
        automergenodes = false;
        ASSERT_EQ(room.open(samplepath(c.file)), reply::done) << c.file;
        EXPECT_EQ(nnodes(), c.points) << c.file;
        EXPECT_EQ(countoftype(typebeam), c.beams) << c.file;
        EXPECT_EQ(countoftype(typeshell4), c.quads) << c.file;
        EXPECT_EQ(countoftype(typeshell3), c.triangles) << c.file;
        EXPECT_EQ(ncon, c.rows) << c.file;
        EXPECT_EQ(lastreport().count(reportkinds::error), long(c.errors.size()))
            << lastreport().text();
        for (const std::string& error : c.errors)
            EXPECT_NE(reported(reportkinds::error, error), nullptr) << error;
        for (const std::string& told : c.told)
            EXPECT_NE(lastreport().text().find(told), std::string::npos) << told;
    }
}

TEST(Moses, SamplesGiveTheirValues) {
    exchangeroom room;
    room.open(samplepath("frame.dat"));
    const int diagonal = 4;
    EXPECT_EQ(elemname(diagonal), "DIAG");
    EXPECT_EQ(elems(diagonal, 1) * 10 + elems(diagonal, 2),
              nodeat(0, 0, 0) * 10 + nodeat(10, 0, 12.5));
    for (const int e : {1, diagonal})
        for (int end = 1; end <= 2; ++end)
            for (int dof = 1; dof <= 6; ++dof)
                EXPECT_EQ(endrelease(e, end, dof), e == diagonal && dof > 4 ? 1 : 0) << e << dof;
    const int leg = egroup(1);
    EXPECT_EQ(groupname(leg).substr(0, 3), "leg");
    EXPECT_EQ(groupname(egroup(2)), "brc 108.0042 deg") << "the brace beside it has no reference";
    const double outer = 0.762, inner = outer - 2 * 0.0254;
    EXPECT_NEAR(groups(leg, fieldthickness), pi / 4 * (outer * outer - inner * inner), 1e-12);
    EXPECT_NEAR(groups(leg, fieldixx), pi / 64 * (std::pow(outer, 4) - std::pow(inner, 4)), 1e-12);
    EXPECT_NEAR(groups(leg, fieldmodulus), 2.1e8, 1) << "kN/m2";
    EXPECT_NEAR(groups(leg, fielddensity), 7.85, 1e-9) << "t/m3";
    // An upright beam: axis 3 looks to the reference point (5, -20), as axis 3 of rotation 0 to -x.
    EXPECT_NEAR(groups(leg, fieldrotation), std::atan2(20, -5) * 180 / pi, 1e-3);

    room.open(samplepath("deck.dat"));
    EXPECT_NEAR(groups(groupnamed("pl12"), fieldthickness), 0.012, 1e-15);
    EXPECT_NEAR(groups(groupnamed("pl15"), fieldthickness), 0.015, 1e-15);
    EXPECT_EQ(lcname(1), "Weights");
    EXPECT_EQ(loadnode(1, 1), nodeat(2, 2, 5));
    EXPECT_EQ(loaddof(1, 1), 3);
    EXPECT_EQ(loadval(1, 1), -40);
    EXPECT_EQ(nodename(loadnode(1, 1)), "d5");

    room.open(samplepath("hull.dat"));
    double volume = 0;
    for (int e = 1; e <= nelems(); ++e)  // of the pyramids from the origin, two triangles each
        for (int k = 2; k <= 3; ++k) {
            const auto p = [&](int corner) { return nodes.row(0, long(elems(e, corner))); };
            const auto a = p(1), b = p(k), c = p(k + 1);
            volume += (a[0] * (b[1] * c[2] - b[2] * c[1]) + a[1] * (b[2] * c[0] - b[0] * c[2]) +
                       a[2] * (b[0] * c[1] - b[1] * c[0])) /
                      6;
        }
    EXPECT_NEAR(volume, 800, 1e-3) << "normals point outwards";
    EXPECT_EQ(groupname(egroup(1)), "shell");

    room.open(samplepath("variables.dat"));
    EXPECT_TRUE(nodeat(6, 0, 0) && nodeat(12, 0, 0));
    EXPECT_NE(nodeat(60.5 * 0.3048, 0, -0.6096, 1e-5), 0);
}

TEST(Moses, LinesAreTakenAsTheyAreMeant) {
    const std::string points = "*a 0 0 0\n*b 4 0 0\n*c 4 4 0\n*d 0 4 0\n*e -2 2 0\n~k TUBE 100 5\n";
    const struct {
        const char* line;
        int elements, corners;  // of the last
        const char* told;
    } cases[] = {
        {"BEAM ~k *a *b", 1, 2, ""},
        {"  BEAM ~k *A, *b", 1, 2, ""},
        {"beam ~k *a *b", 0, 0, "Lines \"beam\""},
        {"pane *a *b *c *d", 1, 4, ""},
        {"Pane *a *b *c", 0, 0, "Lines \"Pane\""},
        {"PANEL hull *a *b *c *d *e", 3, 3, "more than four corners"},
        {"PANEL *a *b *x *d", 1, 3, "point \"x\" is not defined"},
        {"PANEL *a *x *b", 0, 0, "here are 2"},
        {"PANEL *a *b *c *c", 1, 3, ""},
        {"PLATE ~k -FSOPT *d *e *a *b *c", 0, 0, "Option -FSOPT"},
        {"PLATE ~k *a *b *c -FSOPT *d *e", 1, 3, "Option -FSOPT"},
        {"BEAM ~k *a *x *b *c", 1, 2, "point \"x\" is not defined"},
        {"BEAM ~k -GO1 0 0 -1.5 *a *b", 1, 2, "Option -GO1 of a beam"},
        {"BEAM ~k -REFN 5 *a *b", 1, 2, "-REFN is not followed"},
        {"BEAM ~k *a *a", 0, 0, "ends at the point where it begins"},
        {"BEAM ~k *a \\\n$ between\n  *b \\\n *c", 2, 2, ""},
        {"BEAM %cls *a *b", 0, 0, "variable \"cls\" is not set"},
        {"&set cls = ~k n = *b\nBEAM %cls%,*a %(n)", 1, 2, ""},
        {"BEAM ~k %PO%a %po%b", 1, 2, ""},
        {"&set PO = x\nBEAM ~k %PO%a *b", 0, 0, "a beam has two points or more"},
        {"&set a = %a", 0, 0, "variable \"a\" is not set"},
        {"&IF 1\n&IF 2\nBEAM ~k *a *b\n&ENDIF\n&ENDIF\nBEAM ~k *b *c", 1, 2, "Blocks &IF"},
        {"&MACRO m\nBEAM ~k *a *b", 0, 0, "block &MACRO does not end"},
        {"REST ~k *a", 0, 0, "Restraints of a class that is not FIX"},
        {"CONNECTOR x ~k *a", 0, 0, "Lines \"CONNECTOR\""},
        {"~k BOX 3 4", 0, 0, "several lines"},
        {"~w IBEAM 300 150 8 -LEN 4", 0, 0,
         "class \"w\": set the section of its group, IBEAM 300 150 8"},
        {"~w TUBE 100 60", 0, 0, "the wall of a tube"},
        {"~w PLATE 8 100 50 600", 0, 0, "Sizes of tubes and plates beyond"},
        {"&describe piece p -perm 1\nPANEL *a *b *c", 1, 3, "Options of &DESCRIBE PIECE"},
        {"~w TUBE 100 5 -emod x", 0, 0, "option \"-emod\" has no number"},
    };
    for (const auto& c : cases) {
        exchangeroom room;
        const std::string report = opened(room, points + c.line);
        EXPECT_EQ(nelems(), c.elements) << c.line << report;
        EXPECT_EQ(nodesoftype(elems(nelems(), 0)) * (nelems() > 0), c.corners) << c.line;
        EXPECT_NE(report.find(c.told), std::string::npos) << c.line << report;
    }
    exchangeroom room;  // options and classes hold for the beams behind them
    opened(room, points +
                     "~m TUBE 60 3 -spgr 1 -emod 100000\n"
                     "BEAM B7 ~k *a *b -RELA RY ~m *c NEXT -REL2 MX FZ *d\n");
    ASSERT_EQ(nelems(), 3);
    EXPECT_EQ(elemname(1) + elemname(3), "B7NEXT");
    EXPECT_EQ(groupname(egroup(2)), "m");
    EXPECT_NEAR(groups(egroup(2), fielddensity), 1, 1e-9);
    EXPECT_NEAR(groups(egroup(2), fieldmodulus), 1e8, 1e-3);
    EXPECT_EQ(endrelease(1, 1, 5) + endrelease(1, 2, 4), 0);
    EXPECT_EQ(endrelease(3, 1, 5) + endrelease(3, 2, 4) + endrelease(3, 2, 3), 3);
}

TEST(Moses, UnitsFollowTheFirstThatAreTold) {
    exchangeroom room;
    opened(room,
           "&dimen -dimen feet kips\n*a 3 0 0\n~t PLATE 0.5 -emod 29000 -dens 0.49\n"
           "&dimen -save -dimen meters m-tons\n*b 0.3048 0 0\n~u PLATE 12.7\n"
           "#WEIGHT *b 1\n&dimen -rem\n*c 9 0 0\nPLATE ~t *a *b *c\n");
    EXPECT_NE(nodeat(1, 0, 0), 0);
    EXPECT_NE(nodeat(9, 0, 0), 0);
    EXPECT_NEAR(groups(1, fieldthickness), 0.5 / 12, 1e-9);
    EXPECT_NEAR(groups(2, fieldthickness), 0.5 / 12, 1e-9);
    EXPECT_NEAR(groups(1, fieldmodulus), 29000 * 144, 1e-3);
    EXPECT_EQ(unitstext, "ft kip lb");
    EXPECT_NEAR(groups(1, fielddensity), 490, 1e-6) << "lb/ft3";
    EXPECT_NEAR(loadval(1, 1), -9.80665 / 4.4482216, 1e-6);
}

TEST(Moses, ExpressionsFollowTheRulesOfFortran) {
    const struct {
        const char* text;
        double value;
    } good[] = {{"27.5/2", 13.75}, {"3+6/12", 3.5},   {"-2**2", -4},    {"2**3**2", 512},
                {"(1+2)*-3", -9},  {"1.5D+03", 1500}, {"1E-2*2", 0.02}, {"8/4/2", 1},
                {"((2))-.5", 1.5}, {"+7", 7}};
    for (const auto& c : good) {
        double value = -77;
        EXPECT_TRUE(readexpression(c.text, value)) << c.text;
        EXPECT_DOUBLE_EQ(value, c.value) << c.text;
    }
    for (const std::string& text :
         {std::string(""), std::string("1+"), std::string("(1"), std::string("1)"),
          std::string("1/0"), std::string("nan"), std::string("1e400"), std::string("2 3"),
          std::string(300, '(') + "1" + std::string(300, ')'), std::string("abc")}) {
        double value = -77;
        EXPECT_FALSE(readexpression(text, value)) << text;
        EXPECT_EQ(value, -77) << text;
    }
    std::string endless = "0";
    for (int i = 0; i < 1000000; ++i) endless += "+1";
    double value = 0;
    EXPECT_TRUE(readexpression(endless, value));
    EXPECT_EQ(value, 1000000);
}

// --- written and read back ----------------------------------------------------------------------

// A hull of two plates with a compartment on its points, a deck apart, a frame with a plate in it.
static void fillforexport() {
    const char* const names[] = {
        "", "hull", "GR 2", "a name of many letters", "a name of many others", "frame", "idle"};
    groups(0, 0) = 6;
    for (int g = 1; g <= 6; ++g) groupname(g) = names[g];
    for (int i = 0; i < 12; ++i)
        addnode(float(i % 4) * 1.25F, float(i / 4) * 1000.0625F - 2000, 3.1416F);
    addelement(typeshell4, {1, 2, 6, 5}, 1);
    addelement(typememb3, {2, 3, 7}, 1);
    addelement(typeshell3, {1, 2, 5}, 2);
    addelement(typeshell4, {7, 8, 12, 11}, 3);
    addelement(typeshell3, {9, 10, 6}, 4);
    addelement(typebeam, {1, 9}, 5);
    addelement(typetruss, {9, 12}, 5);
    addelement(typeshell3, {9, 12, 8}, 5);
    addelement(typemass, {12}, 6);
    addnode(7, 7, 7);
}

// Elements as text: corners to the written digits, and the group by its number.
static std::multiset<std::string> structure(bool lineandplates) {
    std::multiset<std::string> all;
    for (int e = 1; e <= nelems(); ++e) {
        const int n = nodesoftype(elems(e, 0));
        if (n < 2 || !lineandplates) continue;
        std::string text = "group " + std::to_string(egroup(e));
        for (int k = 1; k <= n; ++k)
            for (int c = 0; c < 3; ++c)
                text += " " + fixedtext(double(nodes(0, long(elems(e, k)), c)) + 0.0, 3);
        all.insert(text);
    }
    return all;
}

TEST(Moses, WhatIsWrittenReadsBackAsTheSameStructure) {
    exchangeroom room;
    fillforexport();
    for (int chosen = 1; chosen <= 6; ++chosen) {
        const std::multiset<std::string> before = structure(true);
        writefile(room.file("a.ppo"), "old");
        room.platform.filequeue.push_back({true, room.file("a.ppo"), 4});
        room.platform.answerqueue.push_back(answers::yes);
        modelname = room.file("mine");
        EXPECT_EQ(menusave(), reply::cancelled);
        EXPECT_EQ(room.platform.dialogs.back(), "MosesSettings");
        EXPECT_EQ(modelname, room.file("mine")) << "the window may still be cancelled";
        EXPECT_EQ(mosessettingsform().groups.size(), std::size_t(ngroups()));
        mosessettingsform().chosen = chosen - 1;
        acceptmosessettings();
        EXPECT_EQ(modelname, room.file("a"));
        EXPECT_NE(reported(reportkinds::changed, "\"GR 2\" is written as GR_2"), nullptr);
        EXPECT_NE(reported(reportkinds::skipped, "Elements of one node"), nullptr);
        imported found;
        readmoses(room.file("a.ppo"), found);
        EXPECT_EQ(found.report.count(reportkinds::error), 0) << found.report.text();
        const std::string own = room.file("own.ppo");
        writefile(own, contentof(room.file("a.ppo")));
        ASSERT_EQ(room.open(own), reply::done);
        EXPECT_EQ(structure(true), before) << chosen << contentof(own);
        EXPECT_EQ(ngroups(), 6) << "no group but those of the classes";
        resetmodel();
        fillforexport();
    }
}

TEST(Moses, LinesOfTheTextStandAsTold) {
    exchangeroom room;
    fillforexport();
    importreport report;
    exportmoses(room.file("rig.ppo"), 1, report);
    const std::string text = contentof(room.file("rig.ppo"));
    const std::string border = "$" + std::string(71, '@'), stars = "$" + std::string(40, '*');
    const std::string gap(10, ' ');
    std::size_t at = 0;
    for (const std::string& expected :
         {std::string("$\r\n$ MOSES Model Generated with KALVANE\r\n$\r\n"
                      "&dimen -save -dimen Meters     KN\r\n&LOCAL xfac = 1 yfac = 1 zfac = 1\r\n"
                      "&model_def -save\r\n&model_def -fyield 248.04 -alpha 3.6111E-6 -spgravit "
                      "7.8492 -emodulus \\\r\n       1.9981E5 -poi_ratio 0.3 -kfac 1 1 -cmfac 0.85 "
                      "0.85 -flood no -use @\r\n"),
          border + "\r\n",
          std::string("$@                           Define Points"),
          border,
          "$\r\n" + stars + gap + "Set body to SIP\r\n$\r\n&describe body rig\r\n$\r\n" + stars +
              gap + "Set factors\r\n$\r\n&set xfac = 1\r\n",
          std::string("&describe part  rig\r\n"),
          std::string("\r\n%PO%01    0.000*%xfac         -2000.000*%yfac     3.142*%zfac\r\n"),
          std::string("\r\n%PO%06    1.250*%xfac         -999.938*%yfac      3.142*%zfac\r\n"),
          std::string("&describe piece  hull -diftype 3ddif\r\n$\r\n") + stars + gap +
              "Define Panels\r\n$\r\nPANEL   %PO%01    %PO%02    %PO%06    %PO%05\r\n"
              "PANEL   %PO%02    %PO%03    %PO%07\r\n",
          "$\r\n&describe compartment  GR_2\r\n$\r\n" + stars + gap +
              "Set Piece  \r\n$\r\n&describe piece GR_2\r\n$\r\n" + stars + gap +
              "Define Panels\r\nPANEL   %PO%01    %PO%02    %PO%05\r\n",
          stars + gap + "Start new PART  \r\n&describe part a_name\r\n",
          std::string("\r\n*0007     "),
          stars + gap + "Set Piece  \r\n&describe piece P_a_name\r\n",
          std::string("PANEL   *0007     *0008     *0012     *0011\r\n"),
          std::string("&describe part  JACKET\r\n"),
          std::string("\r\n*J0001    0.000*%xfac"),
          std::string("PANEL   *J0009    *J0012    *J0008\r\n"),
          stars + gap + "Set Piece to SUCANC\r\n",
          std::string("$@                              Classes "),
          std::string("~frame TUBE 250 10 -fyield 345 -dens 77 -emod 205000 -poi_rat 0.28125\r\n"),
          std::string("ELEMENTS"),
          std::string("\r\nBEAM M6        ~frame   *J0001    *J0009\r\n")}) {
        const std::size_t found = text.find(expected, at);
        ASSERT_NE(found, std::string::npos) << expected << "\n" << text;
        at = found + 1;
    }
    plainnames names(4);
    std::string plain;
    for (const char* name : {"abcdef", "ABCDEF", "a b", "", "abcdx"}) plain += names.plain(name);
    EXPECT_EQ(plain, "abcdAB_1a_b_ab_2");
    EXPECT_THROW(exportmoses(room.file("none/rig.ppo"), 1, report), runtimeerror);
}
