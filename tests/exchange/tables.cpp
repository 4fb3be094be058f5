// SPDX-License-Identifier: GPL-3.0-or-later
// Tables of results and pictures of the views as files.
#include "exchange/tables.h"

#include <algorithm>

#include "exchange/pictures.h"
#include "post/resultstream.h"
#include "tests/post/plotroom.h"
#include "view/autoscale.h"
#include "view/svgsurface.h"

static std::string rows(const std::string& file) {
    std::string text = contentof(file);
    std::erase(text, '\r');
    return text;
}

// The table of this caption as text, of the block of this name.
static std::string tableof(plotroom& room, const std::string& caption, const std::string& block,
                           int group = 0, int separator = 0) {
    starttables(room.file("t.csv"));
    tableform form = opentables();
    const auto at = std::ranges::find(form.tables, caption);
    if (at == form.tables.end()) return "no table";
    choosetable(form, int(at - form.tables.begin()));
    form.block = int(std::ranges::find(form.blocks, block) - form.blocks.begin());
    form.group = group;
    form.separator = separator;
    accepttables(form);
    return rows(room.file("t.csv"));
}

TEST(Tables, RowsAreTheSumsOfTheLoadCases) {
    plotroom room;
    loadnode(0, 0) = 2;
    lcname(1) = "Dead; own";
    lcname(2) = "Live";
    lcombname(2) = "Storm";
    groupname(2) = "Skin";
    lcomb(2, 2) = 10;
    writefile(room.file("job.rvp"),
              "6,2\r\n0,0,0\r\n3,4,.5\r\n0,0,0\r\n0,0,0\r\n0,0,0\r\n-1,0,0\r\n\"A \"\"b, c\"\r\n"
              "0 0 0 0.25,1,2 0,0,0 0,0,0 0,0,0 0,0,0 LC2");
    EXPECT_EQ(
        tableof(room, "Displacements", "All combinations", 2).substr(0, 126),
        "Combination,Node,X,Y,Z,DX,DY,RZ [degrees]\nWind,2,0,1,0,3,4,28.64789\nWind,3,0,2,0,0,0,0\n"
        "Wind,5,0,1,1,0,0,0\nWind,6,0,2,1,-1,0,0\n");
    EXPECT_NE(rows(room.file("t.csv")).find(",2,0,1,0,-3.5,2,1088.6198\n"), std::string::npos);
    EXPECT_EQ(tableof(room, "Displacements", "Load case 1: Dead; own", 2, 2).substr(0, 90),
              "Load case;Node;X;Y;Z;DX;DY;RZ [degrees]\n\"Dead; own\";2;0;1;0;3;4;28,64789\n"
              "\"Dead; own\";3;0;2");
    EXPECT_NE(tableof(room, "Displacements", "Envelope of the combinations", 2)
                  .find(",RZ [degrees] smallest,Combination\n2,5,Wind,4.031129,Storm,3,Wind,-3.5,"
                        "Storm,4,Wind,2,Storm,"),
              std::string::npos)
        << contentof(room.file("t.csv"));
    const std::string stress = "Stresses of plates, of each element, local axes";
    room.write(".NSL", {{1, 10}, {1, 20}, {1, 30}, {1, 40}, {2, -5}, {2, 0}, {2, 25}, {2, 35}});
    EXPECT_NE(tableof(room, stress, "Combination 2: Storm", 2).find("Storm,2,Skin,2,3,0,2,0,"),
              std::string::npos)
        << contentof(room.file("t.csv"));
    EXPECT_EQ(rows(room.file("t.csv")).find("\nStorm,1,"), std::string::npos);
    EXPECT_NE(tableof(room, "Stresses of line elements", "Combination 1: Wind")
                  .find("Wind,3," + groupname(1) + ",2,6,0,2,1,9,0,0,0,0,0,0,0,0,0,0,0,9\n"),
              std::string::npos);
    room.writemodes({4, 9});
    EXPECT_NE(tableof(room, "Mode shapes", "Mode 2").find("Mode 2,0.47746482,6,0,2,1,0,1\n"),
              std::string::npos);
}

TEST(Tables, ReactionsMembersAndSums) {
    plotroom room;
    ncon = 1;
    connode(1) = 3;
    writefile(room.file("job.KRT"),
              "6,1\r\n1,0,0\r\n2,0,0\r\n3,7,-0\r\n4,0,0\r\n5,0,0\r\n6,1,1\r\n"
              "0,8,1\r\n\"LC\"\r\n");
    EXPECT_EQ(tableof(room, "Reactions", "Combination 1: Wind"),
              "Combination,Node,X,Y,Z,FX,FY\nWind,3,0,2,0,7,0\nWind,Total,,,,8,1\n");
    writefile(room.file("job.MEM"), "3,2,0,1,2,3,4,5,6,7,8,1,9,8,7,6,5,4,3,2\r\nEND\r\n");
    EXPECT_NE(tableof(room, "Forces along line elements", "All combinations")
                  .find("Wind,3," + groupname(1) + ",2,1,2.236068,9,8,7,6,5,4,3,2\n"),
              std::string::npos);
    EXPECT_NE(rows(room.file("t.csv")).find(",2,1,2.236068,-18,"), std::string::npos);
    writefile(room.file("job.sum"),
              "\"static\",\"x\",1\r\n\"modes\",\"\",0\r\n\"case\",1,\"Dead\"\r\n"
              "\"load\",\"nodal\",0,-5,0,0,0,1\r\n\"residual\",1E-12\r\n\"rotation\",0.5,"
              "3\r\n\"warnings\",1\r\n"
              "\"warning\",\"soft, very\"\r\n\"mode\",1,4,0.5,0.1,0.2,0.3\r\n");
    EXPECT_EQ(tableof(room, "Sums of loads and reactions", "All load cases"),
              "Load case,Sum of,FX,FY,FZ,MX,MY,MZ,Value,Node\nDead,load: nodal,0,-5,0,0,0,1,,\n"
              "Dead,residual,,,,,,,1E-12,\nDead,rotation "
              "[degrees],,,,,,,28.64789,3\nDead,\"warning: soft, very\",,,,,,,,\n");
    room.writemodes({4});
    EXPECT_NE(tableof(room, "Frequencies and masses of the modes", "All modes")
                  .find("\n1,4,0.5,0.1,0.2,0.3\n"),
              std::string::npos);
}

TEST(Tables, WhatIsNotWholeIsToldAndTheOldFileStands) {
    const std::pair<const char*, const char*> cases[] = {
        {"6,1\r\n0,0\r\n3,4\r\n", "ends in the middle"},
        {"6,1\r\n0,0\r\n3,x\r\n0,0\r\n0,0\r\n0,0\r\n-1,0\r\n\"LC\"\r\n", "line 3: a number"},
        {"5,1\r\n", "5 nodes"},
        {"6,7\r\n", "analysis code"},
    };
    for (const auto& [content, told] : cases) {
        plotroom room;
        writefile(room.file("job.rvp"), content);
        writefile(room.file("t.csv"), "old");
        EXPECT_EQ(tableof(room, "Displacements", "All combinations"), "old");
        EXPECT_TRUE(room.platform.toldpart(told)) << told;
    }
    plotroom room;
    lcomb(2, 2) = 1;
    room.write(".NSL", {{1, 10}});
    writefile(room.file("job.NSL"),
              contentof(room.file("job.NSL")) + "2,0,0,0,1,0,0,0,0,0,0,0,0,0,0,0,0\r\nEND\r\n");
    tableof(room, "Stresses of plates, of each element, local axes", "All combinations");
    EXPECT_TRUE(room.platform.toldpart("rows of different elements"));
}

// Larger than the window through which it is read.
TEST(Tables, AFileComesThroughAsmallWindow) {
    sessionroom room;
    std::string text = "\"" + std::string(100000, ',') + "\"";
    for (int i = 0; i < 40000; ++i) text += std::to_string(i) + (i % 9 ? "," : " \r\n");
    writefile(room.file("a"), text);
    resultstream in(room.file("a"));
    in.passtext();
    streamspot spot;
    for (int i = 0; i < 40000; ++i) {
        if (i == 30000) spot = in.here();
        ASSERT_EQ(in.number(), i);
    }
    EXPECT_TRUE(in.atend());
    EXPECT_EQ(resultstream(room.file("a"), spot).number(), 30000);
}

TEST(Pictures, ADrawingKeepsLettersAndPlaces) {
    plotroom room;
    autoscale(1);
    checkonly(Nodelabeltype, nodenumbers);
    menupostItem(contourplot).checked = true;
    contourdata = 1;
    lcombname(1) = "Wind & <ice>";
    startpicture(room.file("a.svg"));
    pictureform form = openpicture();
    form.width = "x";
    EXPECT_FALSE(acceptpicture(form));
    EXPECT_EQ(form.message, "Numerical input required");
    form.width = "24";
    form.foot = true;
    ASSERT_TRUE(acceptpicture(form)) << form.message;
    const std::string svg = contentof(room.file("a.svg"));
    EXPECT_NE(svg.find("width=\"24.000cm\""), svg.npos);
    EXPECT_NE(svg.find("job - Wind &amp; &lt;ice&gt;</text>"), svg.npos);
    const auto place = [&](const std::string& label, const char* axis) {
        const std::size_t at = svg.rfind("<text", svg.find(">" + label + "</text>"));
        return std::stod(svg.substr(svg.find(axis, at) + 4));
    };
    EXPECT_LT(place("1", " x="), place("3", " x="));
    EXPECT_GT(place("1", " y="), place("4", " y=")) << "upwards is upwards";
    EXPECT_NE(svg.find("<polygon fill=\"#"), svg.npos);
    menupostItem(contourplot).checked = false;
}
