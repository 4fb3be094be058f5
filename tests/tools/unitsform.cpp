// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog "Units": conversion there and back, steps, what is refused.
#include "tools/unitsform.h"

#include <algorithm>
#include <filesystem>

#include "core/journal.h"
#include "core/newmodel.h"
#include "files/filop.h"
#include "files/kalfile.h"
#include "files/saving.h"
#include "tests/support/recorder.h"

static bool choose(const std::string& units, bool convert = true, bool fornew = false) {
    unitsform form = openunits();
    const auto place = std::ranges::find(form.choices, units);
    chooseunits(form, int(place - form.choices.begin()));
    chooseway(form, convert);
    form.fornew = fornew;
    return storeunits(form);
}

// Something of every kind that has a unit: a frame, a plate, a mass and a spring.
static void mixedmodel() {
    addnode(304.8f, 0, 0);
    for (int n = 2; n <= 6; ++n) addnode(100.0f * float(n), 50.0f * float(n % 2), 7);
    addelement(typebeam, {1, 2}, 1);
    addelement(typeshell4, {3, 4, 5, 6}, 2);
    addelement(typemass, {2}, 3);
    addelement(typespring, {1}, 4);
    groups(0, 0) = 4;
    for (int g = 1; g <= 4; ++g)
        for (int k = 1; k <= groupfields; ++k) groups(g, k) = 10 * g + k;
    for (int i = 1; i <= 6; ++i)
        for (int j = 1; j <= 6; ++j) groupmat(4, i, j) = float(10 * i + j);
    ncon = 2;
    connode(1) = connode(2) = 1;
    condof(1) = 2, condof(2) = 5;
    conval(1) = conval(2) = 3;
    loadnode(0, 0) = 3;
    lctype(2) = caseaccrx;
    lctype(3) = casebuoyancy;
    for (int lc = 1; lc <= 3; ++lc) {
        loadnode(lc, 0) = 2;
        elemload(lc, 0, 0) = 2;
        for (int i = 1; i <= 2; ++i) {
            loadnode(lc, i) = i;
            loaddof(lc, i) = i == 1 ? 1 : 6;
            loadval(lc, i) = 20;
            elemload(lc, i, 0) = float(i);
            elemload(lc, i, 1) = 3;
            elemload(lc, i, 2) = 2;
        }
        for (int k = 0; k < caseparameters; ++k) lcpar(lc, k) = 5;
    }
    graphics(0, 0, 0) = graphics(1, 0, 0) = graphics(1, 0, 2) = 1;
    graphics(1, 3, 2) = 304.8f;
    startjournal();
}

// All numbers of the model, in their order.
static std::vector<double> numbers() {
    std::vector<double> all;
    for (int n = 1; n <= nnodes(); ++n)
        for (int k = 0; k < 3; ++k) all.push_back(nodes(0, n, k));
    for (int g = 1; g <= ngroups(); ++g)
        for (int k = 1; k <= groupfields; ++k) all.push_back(groups(g, k));
    for (const float m : groupmat.row(4, 6)) all.push_back(m);
    for (int i = 1; i <= ncon; ++i) all.push_back(conval(i));
    for (int lc = 1; lc <= nlc(); ++lc) {
        for (int k = 0; k < caseparameters; ++k) all.push_back(lcpar(lc, k));
        for (int i = 1; i <= 2; ++i) {
            all.push_back(loadval(lc, i));
            all.push_back(elemload(lc, i, 2));
        }
    }
    all.insert(all.end(), {graphics(1, 3, 2), graphics(1, 0, 2), nodetol, viewscale(1)});
    return all;
}

TEST(Unitsform, ConvertsThereAndBackAndInOneStep) {
    const sessionroom room;
    mixedmodel();
    const auto before = numbers();
    ASSERT_TRUE(choose("ft kip lb"));
    const double ft = 304.8, kip = 4448.2216152605, lb = 0.45359237;
    const struct {
        const char* name;
        double found, wanted;
    } cases[] = {
        {"place", nodes(0, 1, 0), 1},
        {"modulus", groups(1, fieldmodulus), 11 * ft * ft / kip},
        {"density", groups(1, fielddensity), 13 * ft * ft * ft / lb},
        {"area", groups(1, fieldthickness), 14 / ft / ft},
        {"thickness", groups(2, fieldthickness), 24 / ft},
        {"inertia", groups(1, fieldixx), 17 / ft / ft / ft / ft},
        {"section modulus", groups(1, fieldwxx), 18 / ft / ft / ft},
        {"Poisson ratio", groups(1, fieldpoisson), 12},
        {"turn of the section", groups(1, fieldrotation), 16},
        {"mass", groups(3, fielddensity), 33 / lb},
        {"rotary inertia", groups(3, fieldixx), 37 / lb / ft / ft},
        {"spring", groupmat(4, 2, 3), 23 * ft / kip},
        {"coupled spring", groupmat(4, 2, 4), 24 / kip},
        {"spring that turns", groupmat(4, 5, 6), 56 / kip / ft},
        {"prescribed way", conval(1), 3 / ft},
        {"prescribed turn", conval(2), 3},
        {"force", loadval(1, 1), 20 / kip},
        {"moment", loadval(1, 2), 20 / kip / ft},
        {"nodal mass", loadval(2, 1), 20 / lb},
        {"nodal inertia", loadval(2, 2), 20 / lb / ft / ft},
        {"line load", elemload(1, 1, 2), 2 * ft / kip},
        {"pressure", elemload(1, 2, 2), 2 * ft * ft / kip},
        {"acceleration", lcpar(2, accvalue), 5},
        {"centre", lcpar(2, acccentrey), 5 / ft},
        {"water level", lcpar(3, buoyancylevel), 5 / ft},
        {"weight of water", lcpar(3, buoyancydensity), 5 * ft * ft * ft / kip},
        {"drawing", graphics(1, 3, 2), 1},
        {"factor of a drawing", graphics(1, 0, 2), 1},
        {"tolerance", nodetol, 0.001 / ft},
    };
    for (const auto& c : cases) EXPECT_NEAR(c.found, c.wanted, 1e-7 * c.wanted) << c.name;
    const auto converted = numbers();
    ASSERT_TRUE(choose("mm N kg"));
    const auto back = numbers();
    for (std::size_t i = 0; i < back.size(); ++i)
        EXPECT_NEAR(back[i], before[i], 1e-6 * std::abs(before[i])) << i;
    EXPECT_TRUE(stepback());
    EXPECT_EQ(unitstext, "ft kip lb");
    EXPECT_EQ(numbers(), converted) << "one step";
    EXPECT_TRUE(stepback());
    EXPECT_EQ(unitstext, "");
    for (std::size_t i = 0; i < back.size(); ++i)
        EXPECT_NEAR(numbers()[i], before[i], 1e-6 * std::abs(before[i])) << i;
}

TEST(Unitsform, NamesAloneChangeNoNumber) {
    const sessionroom room;
    mixedmodel();
    const auto before = numbers();
    for (const auto& [units, convert] :
         {std::pair("m kN t", false), std::pair("free", true), std::pair("ft kip lb", true)}) {
        ASSERT_TRUE(choose(units, convert));
        EXPECT_EQ(unitstext, units);
        EXPECT_EQ(numbers(), before) << units;
    }
    EXPECT_TRUE(stepback(3));
    EXPECT_EQ(unitstext, "");
}

TEST(Unitsform, RefusesWhatHasTwoMeaningsAndAsksBeforeResultsGo) {
    sessionroom room;
    mixedmodel();
    modelname = room.file("m");
    const std::string results = room.file("m.rvp"), foreign = room.file("m.log");
    writefile(results, "1");
    writefile(foreign, "notes of somebody");
    room.platform.answerqueue = {answers::no};
    EXPECT_FALSE(choose("m kN t"));
    EXPECT_TRUE(room.platform.toldpart("They are removed from the disk"));
    EXPECT_TRUE(unitstext.empty() && nodes(0, 1, 0) == 304.8f && std::filesystem::exists(results));
    egroup(2) = 1;
    EXPECT_FALSE(choose("m kN t"));
    EXPECT_TRUE(room.platform.toldpart("a thickness for the ones and an area for the others"));
    egroup(2) = 2, egroup(3) = 1;
    EXPECT_FALSE(choose("m kN t"));
    EXPECT_TRUE(room.platform.toldpart("a mass for the ones and a density for the others"));
    egroup(3) = 3;
    elemload(1, 2, 2) = 3e38f;
    EXPECT_FALSE(choose("m N kg"));
    EXPECT_TRUE(room.platform.toldpart("would be too large"));
    elemload(1, 2, 2) = 1;
    room.platform.answerqueue = {answers::yes};
    EXPECT_TRUE(choose("m kN t"));
    EXPECT_FALSE(std::filesystem::exists(results));
    EXPECT_TRUE(std::filesystem::exists(foreign));
}

TEST(Unitsform, UnitsGoWithTheFileAndIntoNewModels) {
    sessionroom room;
    mixedmodel();
    ASSERT_TRUE(choose("m kN t", true, true));
    modelname = room.file("a");
    ASSERT_TRUE(savemodel());
    const std::string section = "\"section\",\"units\"\r\n\"m kN t\",1,1000,1000\r\n\"end\"\r\n";
    EXPECT_EQ(contentof(room.file("a.kal")), section);
    resetmodel();
    EXPECT_EQ(unitstext, "m kN t");
    EXPECT_EQ(groups(1, fieldmodulus), 210e6);
    EXPECT_EQ(groups(1, fielddensity), 7.85);
    newunits.clear();
    ASSERT_TRUE(openmodel(room.file("a")));
    EXPECT_EQ(unitstext, "m kN t");
    EXPECT_EQ(kaltext, "");
    for (const char* damage : {"\"m kN st\",1,1,1", "\"m kN t\",1,1,1000", "\"m kN t\",1"}) {
        writefile(room.file("a.kal"),
                  std::string("\"section\",\"units\"\r\n") + damage + "\r\n\"end\"\r\n");
        room.platform.messages.clear();
        ASSERT_TRUE(openmodel(room.file("a")));
        EXPECT_TRUE(room.platform.toldpart("a.kal, line ")) << damage;
        EXPECT_FALSE(haskal());
    }
    std::filesystem::remove(room.file("a.kal"));
    writefile(room.file("feiflu.ini"), "length = 1 # metres\r\nforce=1000\nmass = 1000\nx = 2");
    ASSERT_TRUE(openmodel(room.file("a")));
    EXPECT_EQ(unitname("F/L^2"), "kN/m2") << "what the solver takes";
    EXPECT_EQ(captionunit("F/L^2"), "F/L^2");
}
