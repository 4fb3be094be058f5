// SPDX-License-Identifier: GPL-3.0-or-later
// Cosmos texts, opened as the user opens them.
#include "exchange/cosmosinterface.h"

#include <cmath>

#include "core/catalogue.h"
#include "tests/exchange/samples.h"

static std::string opened(exchangeroom& room, const std::string& text) {
    writefile(room.file("a.mod"), text);
    EXPECT_EQ(room.open(room.file("a.mod")), reply::done) << text;
    return lastreport().text();
}

TEST(Cosmos, SamplesGiveTheirItemsAndTellWhatIsWrong) {
    const struct {
        const char* file;
        int nodes, lines, triangles, quads, groups, rows, loads;
        long skipped;
        std::vector<std::string> errors;
    } cases[] = {
        {"cantilever.geo", 6, 4, 0, 0, 1, 6, 1, 0, {}},
        {"plate_mixed.geo", 6, 0, 2, 1, 2, 7, 2, 0, {}},
        {"cards.inp", 4, 3, 0, 0, 1, 9, 1, 0, {}},
        {"unknown_skipped.geo", 2, 1, 0, 0, 1, 0, 0, 8, {}},
        {"bad_number.geo",
         2,
         1,
         0,
         0,
         1,
         0,
         0,
         0,
         {"y of node 2 is not a number: \"abc\" (line 2)"}},
        {"bad_reference.geo",
         3,
         0,
         1,
         0,
         1,
         0,
         0,
         0,
         {"node 99 is not defined (line 6)", "has 3 nodes, 4 were told (line 7)",
          "node 98 is not defined (line 8)", "label \"FQ\" is not known (line 9)"}},
    };
    for (const auto& c : cases) {
        exchangeroom room;
        ASSERT_EQ(room.open(samplepath(c.file)), reply::done) << c.file;
        EXPECT_EQ(nnodes(), c.nodes) << c.file;
        EXPECT_EQ(countoftype(typebeam) + countoftype(typetruss), c.lines) << c.file;
        EXPECT_EQ(countoftype(typeshell3), c.triangles) << c.file;
        EXPECT_EQ(countoftype(typeshell4), c.quads) << c.file;
        EXPECT_EQ(ngroups(), c.groups) << c.file;
        EXPECT_EQ(ncon, c.rows) << c.file;
        EXPECT_EQ(loadnode(1, 0), c.loads) << c.file;
        EXPECT_EQ(lastreport().count(reportkinds::skipped), c.skipped) << lastreport().text();
        EXPECT_EQ(lastreport().count(reportkinds::error), long(c.errors.size()))
            << lastreport().text();
        for (const std::string& error : c.errors)
            EXPECT_NE(reported(reportkinds::error, error), nullptr) << error;
    }
}

TEST(Cosmos, SamplesGiveTheirValues) {
    exchangeroom room;
    room.open(samplepath("cantilever.geo"));
    EXPECT_EQ(groupname(1), "BEAM3D");
    EXPECT_DOUBLE_EQ(groups(1, fieldmodulus), 2.1e11);
    EXPECT_DOUBLE_EQ(groups(1, fieldthickness), 0.012);
    EXPECT_DOUBLE_EQ(groups(1, fieldixx), 3.4e-5);
    EXPECT_DOUBLE_EQ(groups(1, fieldiyy), 1.1e-5);
    EXPECT_EQ(std::fabs(groups(1, fieldrotation)), 90) << "axis 2 looks up to node 6";
    EXPECT_EQ(loadnode(1, 1), 5);
    EXPECT_EQ(loaddof(1, 1), 3);
    EXPECT_EQ(loadval(1, 1), -1500);
    room.open(samplepath("plate_mixed.geo"));
    EXPECT_EQ(groups(egroup(1), fieldthickness), 0.015);
    EXPECT_EQ(groups(egroup(2), fieldthickness), 0.012);
    EXPECT_EQ(loadnode(1, 2), 6);
}

TEST(Cosmos, CommandsAreTakenAsTheyAreMeant) {
    const std::string nodes4 = "ND,1,0,0,0\nND,2,1,0,0\nND,3,1,1,0\nND,4,0,1,0\n";
    const struct {
        const char* line;
        int elements, rows;
        const char* told;
    } cases[] = {
        {"E,1,2\nE,2,3", 2, 0, ""},
        {"ELEM,5,1,2,3,4", 1, 0, ""},
        {"el 1 SF 0 4 1 2 3 3", 1, 0, ""},
        {"EL,1,VL,0,8,1,2,3,4,1,2,3,4", 0, 0, "Solid elements (VL)"},
        {"ELEM,1,1,1", 0, 0, "has a node twice"},
        {"ELEM,1,1,2\nELEM,1,2,3", 1, 0, "element 1 is defined again"},
        {"DND,1,ALL,0,4,1", 0, 24, ""},
        {"DND,1,UX,0,3,2,UY", 0, 4, ""},
        {"DND,1,UX,0,1000000000000,1", 0, 4, ""},
        {"DND,1,ux,0,1,1", 0, 0, "label \"ux\" is not known"},
        {"DND,1,UX,zero", 0, 0, "the value is not a number"},
        {"D,1,AU,0,9,2,1", 0, 6, ""},
        {"DCR,1,UX,0,1,1\nDSF,1,UX,0", 0, 0, "Commands \"DSF\""},
        {"TITLE, a GROUP of $5", 0, 0, "Commands \"TITLE\""},
        {"E,1,2 $ E,2,3", 0, 0, "several commands on one line"},
        {"E,1,2 ! E,2,3", 1, 0, ""},
        {"ND,1.5,0,0,0", 0, 0, "the number is not a whole number"},
        {"ND,0,0,0,0", 0, 0, "needs a number from 1"},
        {"RCONST,1,1,1,4,5", 0, 0, "4 constants were told"},
        {"ACTSET,XX,1", 0, 0, "class \"XX\" is not known (line 5)"},
        {"NODES,9,1,1,1\nELEMENT,1,1,9\nCOORD,3,0,0,0,0,1,0,0,0,1,0", 1, 0, ""},
        {"EGROUP,7,BEAM3D", 0, 0, "Element groups without elements"},
        {"EGROUP,1,SOLID\nEL,1,SF,0,3,1,2,3", 1, 0, "elements SOLID are taken"},
        {"MPROP,1,EX,2,ALPX,3", 0, 0, "Material properties \"ALPX\""},
    };
    for (const auto& c : cases) {
        exchangeroom room;
        automergeelems = false;
        const std::string report = opened(room, nodes4 + c.line);
        EXPECT_EQ(nelems(), c.elements) << c.line << report;
        EXPECT_EQ(ncon, c.rows) << c.line << report;
        EXPECT_NE(report.find(c.told), std::string::npos) << c.line << report;
    }
}

TEST(Cosmos, SystemsTurnNodesToGlobalPlaces) {
    exchangeroom room;
    automergenodes = false;
    opened(room,
           "COOR,3,1,10,0,0,10,1,0,9,0,0\n"  // x is global y, y is global -x
           "PT,1,0,0,5\nPT,2,0,0,6\nPT,3,1,0,5\n"
           "CS,4,0,1,2,3\n"  // x is global z, y is global x
           "CSANGL,5,2,0,0,0,90,0,0\n"
           "NODE,1,2,90,7,3\nNODE,2,2,90,7,1\nNODE,3,2,90,30,2\nNODE,4,1,2,3\n"
           "ACTSET,CS,4\nND,5,1,2,3\nACTSET,CS,5\nND,6,2,0,90\nND,7,2,90,0\n"
           "ACTSET,CS,0\nND,8,1,2,3\nE,1,2\n");
    EXPECT_EQ(nodeat(8, 0, 7), 1);
    EXPECT_EQ(nodeat(0, 2, 7), 2);
    EXPECT_EQ(nodeat(0, float(2 * std::cos(pi / 6)), 1), 3);
    EXPECT_EQ(nodeat(1, 2, 3), 4);
    EXPECT_EQ(nodeat(2, 3, 6), 5);
    EXPECT_EQ(nodeat(0, 0, 2), 6);
    EXPECT_EQ(nodeat(-2, 0, 0), 7);
    EXPECT_EQ(nnodes(), 8);
    EXPECT_TRUE(room.platform.messages.empty());

    const std::string report = opened(room,
                                      "COOR,3,7,0,0,0,1,0,0,0,1,0\nCOOR,4,0,0,0,0,1,0,0,2,0,0\n"
                                      "NODE,1,0,0,0,9\nNODE,2,0,0,0\n");
    EXPECT_EQ(nnodes(), 1);
    EXPECT_EQ(room.platform.messages.size(), 1u) << "once a file";
    EXPECT_TRUE(room.platform.told("Error coordinate system "));
    EXPECT_NE(report.find("coordinate system 9 is not known (line 3)"), std::string::npos)
        << report;
}

TEST(Cosmos, ElementsAndLoadsTakeTheSetsOfTheirLine) {
    exchangeroom room;
    const std::string text =
        "ND,1,0,0,0\nND,2,1,0,0\nND,3,1,1,0\nEGROUP,1,BEAM3D\nEGROUP,2,TRUSS3D\nMPROP,1,EX,1,NUXY,."
        "2\n"
        "MPROP,2,EX,2,DENS,4\nRCONST,1,1,1,5,10,20,30,4,5\nRCONST,1,1,8,1,80\nRCONST,1,2,1,1,11\n"
        "EL,1,CR,0,2,1,2\nACTSET,MP,2\nEL,2,CR,0,2,2,3\nACTSET,RC,2\nEL,3,CR,0,3,1,3,2\n"
        "ACTSET,EG,2\nEL,4,CR,0,2,1,3\nACTSET LC "
        "2\nFND,1,FX,5,2,1\nF,2,MZ,6\nACTSET,LC,7\nFND,3,FZ,1\n"
        "DND,2,ROTZ,0.1\n";
    automergeelems = false;
    opened(room, text);
    EXPECT_EQ(groupname(1) + groupname(2) + groupname(3) + groupname(4),
              "BEAM3DBEAM3D*BEAM3D**TRUSS3D");
    EXPECT_EQ(groups(1, fieldmodulus) * 10 + groups(2, fieldmodulus), 12);
    EXPECT_EQ(groups(1, fieldpoisson), 0.2);
    EXPECT_EQ(groups(2, fielddensity), 4000) << "in kg, from the mass of N and mm";
    EXPECT_EQ(groups(1, fieldizz), 80);
    EXPECT_EQ(groups(1, fieldwxx), 20 / 2.5);
    EXPECT_EQ(groups(1, fieldwyy), 30 / 2.0);
    EXPECT_EQ(groups(3, fieldthickness), 11);
    EXPECT_EQ(countoftype(typetruss), 1);
    ASSERT_EQ(nlc(), 2);
    EXPECT_EQ(lcname(1) + lcname(2), "LC 2LC 7");
    EXPECT_EQ(loadnode(1, 0), 3);
    EXPECT_EQ(loaddof(1, 3), 6);
    EXPECT_NEAR(conval(1), 5.729578, 1e-5) << "degrees in the model";
    EXPECT_EQ(room.import(room.file("a.mod")), reply::done);
    EXPECT_EQ(groupname(5), "BEAM3D***") << "names that are there already get a star";
    EXPECT_EQ(ngroups(), 8);
}

TEST(Cosmos, ContentTellsWhoseTextItIs) {
    EXPECT_TRUE(iscosmostext("C* remark\n\n! other\nND,1,0,0,0"));
    EXPECT_FALSE(iscosmostext("** remark\n*NODE\n1,0,0,0"));
    EXPECT_FALSE(iscosmostext("NEW-PROB      4    0"));
    exchangeroom room;
    writefile(room.file("a.mod"), "TITLE,nothing else\n");
    EXPECT_EQ(room.open(room.file("a.mod")), reply::failed);
    EXPECT_TRUE(room.platform.toldpart("a.mod: this is no Cosmos model"));
}
