// SPDX-License-Identifier: GPL-3.0-or-later
// The section tool: properties of typed shapes, the database files, units, and the hand-over to the
// group in edit.
#include "tools/sections.h"

#include <cmath>
#include <filesystem>

#include "core/numtext.h"
#include "core/runtime.h"
#include "tests/support/recorder.h"
#include "tools/sectionfile.h"

// --- shapes -------------------------------------------------------------------------------------

TEST(Sectionvalues, FollowTheRulesOfTheirTypes) {
    const struct {
        int type;
        dimensions d;
        double area, ixx, iyy, izz, wzz;  // worked by hand
    } cases[] = {
        {tubular, {100, 50}, 7853.981634, 4908738.521, 4908738.521, 9817477.042, 196349.5408},
        {beammetric, {200, 200, 9, 15}, 7530, 55134750, 20010327.5, 494955, 32997},
        // In y the stem stands at the flange's edge: Qy 54500, Iby 2522500, Ioy 840833.333.
        {tprofile, {100, 100, 10, 10}, 1900, 1800043.860, 1800043.860, 65000, 6500},
        // tf is taken off the area: c1 = 54500 / 1800.
        {lprofile, {100, 100, 10, 10}, 1800, 1713194.444, 1713194.444, 63333.33333, 6333.333333},
        {dlprofile, {100, 100, 10, 0}, 3800, 3600087.719, 6726666.667, 126666.6667, 12666.66667},
        {boxsection, {100, 100, 5, 5}, 1900, 2865833.333, 2865833.333, 4286875, 90250},
    };
    for (const auto& c : cases) {
        const sectionvalues v = calcsection(c.type, c.d);
        const std::pair<double, double> pairs[] = {
            {v.area, c.area}, {v.ixx, c.ixx}, {v.iyy, c.iyy}, {v.izz, c.izz}, {v.wzz, c.wzz}};
        for (const auto& [found, wanted] : pairs)
            EXPECT_NEAR(found, wanted, 1e-8 * wanted) << sectiontypes[c.type].name;
    }
}

// Timoshenko and Goodier, Theory of Elasticity, article 109, table of the rectangular bar: I zz =
// k1 b^3 h, W zz = k2 b^2 h, b the shorter side.
TEST(Sectionvalues, TorsionOfBarsIsThatOfTheTable) {
    const struct {
        double ratio, k1, k2;
    } table[] = {{1, 0.1406, 0.208}, {1.2, 0.166, 0.219}, {1.5, 0.196, 0.231}, {2, 0.229, 0.246},
                 {3, 0.263, 0.267},  {5, 0.291, 0.291},   {10, 0.312, 0.312}};
    for (const auto& row : table)
        for (const dimensions& d : {dimensions{4, 4 * row.ratio}, dimensions{4 * row.ratio, 4}}) {
            const sectionvalues v = calcsection(prismaticbar, d);
            EXPECT_NEAR(v.izz / (256 * row.ratio), row.k1, 0.0006) << row.ratio;
            EXPECT_NEAR(v.wzz / (64 * row.ratio), row.k2, 0.0006) << row.ratio;
        }
}

// --- database -----------------------------------------------------------------------------------

// IPE 300 and W12x50 as a small database, a tube in metres, one name twice.
static const char smallbase[] =
    "5\r\n\"IPE 300\",\"H-Beam Metric\",\"mm\",5381,83560000,6038000,201200,150,300,7.1,10.7\r\n"
    "\"W12x50\",\"H-Beam US\",\"Inch\",14.6,391,56.3,1.71,8.08,12.2,0.37,0.64\r\n"
    "\"Leg, \"\"A\"\"\",\"Tubular\",\"m\",0.05,0.002,0.002,0.004,0.6,0.03,0,0\r\n"
    "\"Twin\",\"Tubular\",\"mm\",1,1,1,1,10,1,0,0 \"Twin\" \"Tubular\" \"mm\" 2 2 2 4 10 2 0 0\r\n";

struct sectionroom : sessionroom {
    explicit sectionroom(const std::string& base = smallbase) {
        sectcount = 0;
        sectnames.clear();
        sectdata.clear();
        writefile(file("sections.dat"), base);
    }
};

TEST(Sectionfile, ReadsTextAndBinaryAlike) {
    sectionroom room;
    EXPECT_EQ(readsections(false), "");
    EXPECT_EQ(sectcount, 5);
    EXPECT_EQ(sectnames(3, 1), "Leg, \"A\"");
    EXPECT_EQ(sectdata(2, 8), 0.64f);
    EXPECT_EQ(getsection("Twin"), 5) << "the last match wins";

    writesectionsbinary();
    const std::string image = contentof(room.file("sections.dig"));
    EXPECT_EQ(image.substr(0, 4), std::string("\5\0\0\0", 4));
    // Column 0 of six texts and the empty text of row 0 in column 1 stand before the first name.
    EXPECT_EQ(image.substr(4 + 14, 9), std::string("\7\0IPE 300", 9));
    std::filesystem::remove(room.file("sections.dat"));
    sectnames.clear();
    sectdata.clear();
    EXPECT_EQ(readsections(true), "");
    EXPECT_EQ(sectnames(5, 3), "mm");
    EXPECT_EQ(sectdata(1, 2), 83560000.0f);
}

TEST(Sectionfile, DamageIsToldAndNothingIsLost) {
    sectionroom room;
    readsections(false);
    writesectionsbinary();
    const std::string text = smallbase, image = contentof(room.file("sections.dig"));
    const auto survives = [&](bool binary, const std::string& content) {
        const std::string name = binary ? "sections.dig" : "sections.dat";
        writefile(room.file(name), content);
        std::string fault = name;
        const bool good =
            guarded([&] { readsections(binary); }, [&](const runtimeerror& e) { fault = e.what; });
        EXPECT_EQ(sectcount, 5);
        EXPECT_EQ(sectnames(1, 1), "IPE 300");
        EXPECT_NE(fault.find(name), fault.npos) << fault;
        return good;
    };
    // The text is whole once its last digit is there, the image with its last byte.
    for (std::size_t cut = 0; cut < text.size() - 2; ++cut)
        EXPECT_FALSE(survives(false, text.substr(0, cut))) << "text cut at " << cut;
    for (std::size_t cut = 0; cut < image.size(); ++cut)
        EXPECT_FALSE(survives(true, image.substr(0, cut))) << "image cut at " << cut;
    EXPECT_FALSE(survives(true, image + "x"));
    EXPECT_FALSE(survives(true, std::string("\xff\xff\xff\x7f", 4) + image.substr(4)));
    for (const char* count : {"2000000000", "-1"})
        EXPECT_FALSE(survives(false, count + text.substr(1)));
    std::filesystem::remove(room.file("sections.dig"));
    EXPECT_THROW(readsections(true), runtimeerror);

    writefile(room.file("sections.dat"), "4" + text.substr(1));
    EXPECT_EQ(readsections(false),
              "sections.dat goes on behind the 4 records that its first line counts");
    EXPECT_EQ(sectcount, 4);
}

// --- the form -----------------------------------------------------------------------------------

TEST(Sections, StartsWithTheFirstOfItsType) {
    sectionroom room;
    sectionform form = Initiate();
    choosetype(form, beammetric);
    EXPECT_NEAR(form.values[6], 201200.0 / 10.7, 1e-6) << "by the thickest wall";
    choosetype(form, tubular);
    EXPECT_EQ(form.names, (std::vector<std::string>{"Leg, \"A\"", "Twin", "Twin"}));
    choosesection(form, "Twin");
    EXPECT_EQ(Initiate().type, tubular) << "the next use starts with the type of the last";
    choosetype(form, cprofile);
    EXPECT_EQ(form.message, "The database holds no section of this type");
    EXPECT_EQ(form.results[0], "2") << "the results stay";
}

TEST(Sections, RecordsAreScaledToTheModelsUnit) {
    sectionroom room;
    sectionform form = Initiate();
    enum { mm, cm, dm, m, inch };
    const struct {
        int type;
        const char* section;
        int unit;
        double area, ixx, second;  // worked by hand; the second dimension
    } cases[] = {
        {beamus, "W12x50", inch, 14.6, 391, 12.2},
        {beamus, "W12x50", mm, 9419.336, 162746487.4096, 309.88},
        {beammetric, "IPE 300", dm, 0.5381, 0.8356, 3},
        {tubular, "Leg, \"A\"", mm, 5e4, 2e9, 30},
    };
    for (const auto& c : cases) {
        choosetype(form, c.type);
        choosesection(form, c.section);
        chooseunit(form, c.unit);
        EXPECT_NEAR(form.values[0], c.area, 1e-11 * c.area) << c.section << c.unit;
        EXPECT_NEAR(form.values[1], c.ixx, 1e-11 * c.ixx) << c.section << c.unit;
        EXPECT_NEAR(numberof(form.dims[1]), c.second, 1e-11 * c.second) << c.section << c.unit;
    }
    chooseunit(form, mm);
}

TEST(Sections, TypedDimensionsAreASectionOfTheirOwn) {
    sectionroom room;
    groupform group = opengroups();
    sectionform form = Initiate();
    choosetype(form, beamus);
    chooseunit(form, 0);
    editdimension(form, dimb, "200");
    EXPECT_EQ(form.name, "W12x50 Mod.");
    EXPECT_EQ(form.dims[1], "309.88") << "the others keep the size they had in the model's unit";
    EXPECT_NEAR(form.values[0], (309.88 - 2 * 16.256) * 9.398 + 2 * 200 * 16.256, 1e-6);
    usedatabase(form, true);
    EXPECT_NEAR(form.values[0], 9419.336, 1e-7) << "the record's own again";
    const struct {
        int type;
        std::vector<const char*> texts;
        const char *message, *area;
        bool accepted;
    } cases[] = {
        {prismaticbar, {"2", "6"}, "", "12", true},
        {prismaticbar, {"2", ""}, "H must be above 0", "12", false},
        {prismaticbar, {"2", "1E120"}, "The dimensions are too large", "12", false},
        {tubular, {"2", "1.1"}, "WT is more than half of OD", "3.11017672705", false},
        {boxsection, {"100", "200", "51", "10"}, "tw does not fit into B", "20360", false},
        {lprofile, {"100", "100", "10", ""}, "", "1900", true},
        {beamus, {"100", "200", "", "10"}, "tw must be above 0", "2000", true},  // two flanges
        {beamus, {"100", "200", "5", "101"}, "tf does not fit into H", "20190", false},
    };
    for (const auto& c : cases) {
        choosetype(form, c.type);
        for (std::size_t k = 0; k < c.texts.size(); ++k) editdimension(form, int(k), c.texts[k]);
        EXPECT_EQ(form.message, c.message);
        EXPECT_EQ(form.results[0], c.area) << c.message;
        EXPECT_EQ(acceptsection(form, group), c.accepted) << c.message;
    }
    choosetype(form, tubular);
    EXPECT_EQ(form.dims[dimb], "") << "the leg of an angle is no diameter";
    editdimension(form, dimb, "323.9");
    editdimension(form, dimh, "10");
    EXPECT_EQ(form.name, "Tubular 323.9x10") << "no modified one of the first in the list";
    choosetype(form, tprofile);
    const char* const tee[] = {"100", "100", "10", "10"};
    for (int k = 0; k < ndims; ++k) editdimension(form, k, tee[k]);
    // (90 10^3 + 10 100^3) / 12, and over 50
    EXPECT_NE(form.message.find("840833 and 16816.7"), std::string::npos) << form.message;
}

TEST(Sections, ReopensOnTheProfileInUse) {
    sectionroom room;
    groupform group = opengroups();
    sectionform form = Initiate();
    choosetype(form, beammetric);
    chooseunit(form, 3);
    choosesection(form, "IPE 300");
    EXPECT_TRUE(acceptsection(form, group));
    putgroup(group);
    choosetype(form, tubular);
    chooseunit(form, 0);
    form = Initiate();
    EXPECT_EQ(form.type, tubular);
    showprofile(form, group);
    EXPECT_EQ(form.section, "IPE 300");
    EXPECT_TRUE(form.type == beammetric && form.unit == 3 && form.database);
    chooseunit(form, 0);
    group.text[7] = "1";
    choosetype(form, tubular);
    const std::string section = form.section;
    showprofile(form, group);
    EXPECT_EQ(form.section, section) << "what is no profile changes nothing";
}

TEST(Sections, AcceptingFillsTheGroupInEdit) {
    sectionroom room;
    groups(0, 0) = 2;
    groupname(2) = "IPE 300";
    groupform group = opengroups();
    sectionform form = Initiate();
    choosetype(form, beammetric);
    const auto expectaccepted = [&](int g) {
        const int fields[] = {4, 7, 8, 9, 10, 11, 12};
        for (std::size_t i = 0; i < nresults; ++i) EXPECT_EQ(groups(g, fields[i]), form.values[i]);
    };
    const std::string weak = "Loads in the plane x-y bend it about y, the weaker axis (I yy)";
    nodes(0, 0, 0) = 1;
    nodes(0, 1, 2) = 1;
    EXPECT_TRUE(acceptsection(form, group));
    EXPECT_EQ(group.message, "") << "in space";
    nodes(0, 1, 2) = 0;
    EXPECT_TRUE(acceptsection(form, group));
    EXPECT_TRUE(group.message.starts_with(weak)) << group.message;
    expectaccepted(1);
    editfield(group, 6, "90");
    EXPECT_TRUE(acceptsection(form, group));
    EXPECT_EQ(group.message, "") << "turned";
    form.autoname = true;
    EXPECT_TRUE(acceptsection(form, group));
    EXPECT_EQ(groupname(1), "GR 1") << "the name is another group's";
    EXPECT_EQ(group.message, "Name allready excists");
    editdimension(form, dimh, "310");
    EXPECT_TRUE(acceptsection(form, group));
    EXPECT_EQ(groupname(1), "IPE 300 Mod.");
    choosegroup(group, 2);
    EXPECT_TRUE(acceptsection(form, group));
    EXPECT_EQ(groups(2, 4), 0) << "all groups wait for Update";
    room.platform.answerqueue = {answers::yes};
    updategroups(group);
    expectaccepted(2);
}

TEST(Sections, RecordsThatLackSomethingAreTold) {
    sectionroom room(
        "2\r\n\"Rail\",\"H-Beam Metric\",\"cm\",77,3038,512,90,0,0,0,0\r\n"
        "\"Odd\",\"H-Beam US\",\"ft\",1,1,1,1,1,1,0.1,0.1\r\n");
    groupform group = opengroups();
    groups(1, 8) = 5;
    sectionform form = Initiate();
    choosetype(form, beammetric);
    EXPECT_EQ(form.message, "Rail: without all dimensions the section moduli are 0");
    EXPECT_TRUE(acceptsection(form, group));
    EXPECT_EQ(groups(1, 4), 7700);
    EXPECT_EQ(groups(1, 8), 0) << "not what another section left";
    choosetype(form, beamus);
    EXPECT_EQ(form.message, "Odd: the unit \"ft\" is not known");
    EXPECT_FALSE(acceptsection(form, group));
}

TEST(Sections, WithoutADatabaseDimensionsCanBeTyped) {
    sectionroom room;
    sectionform form = Initiate();
    choosetype(form, beamus);
    usebinary(form, true);
    EXPECT_FALSE(form.binary) << "there is no binary file";
    EXPECT_NE(form.message.find("sections.dig"), std::string::npos);
    EXPECT_EQ(form.section, "W12x50");
    writefile(room.file("sections.dig"), "the user's own");
    writebinary(form);
    EXPECT_EQ(contentof(room.file("sections.dig")), "the user's own") << "answered no";

    std::filesystem::remove(room.file("sections.dat"));
    sectcount = 0;
    form = Initiate();
    EXPECT_NE(form.message.find("sections.dat"), std::string::npos);
    for (int k = 0; k < ndims; ++k) editdimension(form, k, k < dimtw ? "10" : "1");
    EXPECT_EQ(form.results[0], "28");
}
