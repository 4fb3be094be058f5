// SPDX-License-Identifier: GPL-3.0-or-later
// Values that are typed with units, through the forms that take them, in a model in m kN t.
#include <algorithm>
#include <filesystem>

#include "core/units.h"
#include "edit/commands.h"
#include "edit/options.h"
#include "edit/selectionsums.h"
#include "files/filop.h"
#include "loads/loadkees.h"
#include "loads/nodeattributes.h"
#include "post/balance.h"
#include "post/contour.h"
#include "post/legend.h"
#include "tests/support/recorder.h"
#include "tools/drafttools.h"
#include "tools/groups.h"
#include "tools/numint.h"
#include "tools/sections.h"
#include "view/viewcontrol.h"

namespace {
// A beam (1) of group 1, a shell (2) of group 2.
struct metricroom : sessionroom {
    metricroom() {
        unitstext = "m kN t";
        for (int n = 1; n <= 4; ++n) addnode(n == 2 || n == 3, n > 2, 0);
        addelement(typebeam, {1, 2}, 1);
        addelement(typeshell4, {1, 2, 3, 4}, 2);
        groups(0, 0) = 2;
    }
    ~metricroom() { editconstraint = editnodalload = editelemload = editing = false; }
};
}  // namespace

TEST(Typedvalues, GroupsKnowWhatTheirFieldsAre) {
    metricroom room;
    groupform form = opengroups();
    EXPECT_EQ(form.unit[fieldmodulus] + " " + form.unit[fieldthickness], "kN/m2 m2");
    editfield(form, fieldmodulus, "70 GPa");
    editfield(form, fieldthickness, "12 cm2");
    editmatrix(form, 0, "5 kN/mm");
    editmatrix(form, 35, "8 kNm/rad");
    updategroups(form);
    EXPECT_EQ(form.message, "");
    EXPECT_EQ(groups(1, fieldmodulus), 70e6);
    EXPECT_EQ(groups(1, fieldthickness), 0.0012);
    EXPECT_TRUE(groupmat(1, 1, 1) == 5000 && groupmat(1, 6, 6) == 8);
    editfield(form, fieldthickness, "12 mm");
    updategroups(form);
    EXPECT_EQ(form.message,
              "Thickness | Area: \"12 mm\" has a unit of another kind; m2 is wanted here, 0 is "
              "stored");
    choosegroup(form, 1);
    EXPECT_EQ(form.unit[fieldthickness], "m");
    editfield(form, fieldthickness, "12 mm");
    updategroups(form);
    EXPECT_EQ(groups(2, fieldthickness), 0.012);
    unitstext.clear();
    EXPECT_EQ(opengroups().unit[fieldthickness], "L | L^2");
}

TEST(Typedvalues, LoadsFitLinesOrFacesNodesOrTurns) {
    metricroom room;
    const auto apply = [&](std::vector<int> elements, const char* text) {
        nodesel(0) = 0;
        elemsel(0) = float(elements.size());
        for (std::size_t i = 0; i < elements.size(); ++i) elemsel(long(i) + 1) = float(elements[i]);
        editelemload = true;
        elemload(1, 0, 0) = 0;
        attributeform form = openattributes();
        EXPECT_EQ(form.loadlabel[0].unit, "kN/m | kN/m2");
        form.text[2] = text;
        applyelemloads(form);
        return elemload(1, 0, 0) == 0 ? 0 : elemload(1, 1, 2);
    };
    EXPECT_EQ(apply({1}, "5000 N/m"), 5);
    EXPECT_EQ(apply({2}, "5000 N/m2"), 5);
    EXPECT_EQ(apply({2}, "5000 N/m"), 0);
    EXPECT_TRUE(room.platform.toldpart("has a unit of another kind; kN/m2 is wanted here"));
    EXPECT_EQ(apply({1, 2}, "5 kN/m"), 0) << "right for one of them alone";
    EXPECT_EQ(apply({1, 2}, "5"), 5);
    editelemload = false;
    elemsel(0) = 0;
    nodesel(0) = nodesel(1) = 1;
    editnodalload = true;
    attributeform form = openattributes();
    form.text[1] = "300 N", form.text[5] = "2 kN cm";
    applyloads(form);
    EXPECT_TRUE(loadval(1, 1) == 0.3f && loadval(1, 2) == 0.02f);
    lctype(1) = caseaccx;
    form = openattributes();
    EXPECT_EQ(form.loadlabel[3].unit, "t m2");
    form.text[0] = "500 kg";
    applyloads(form);
    EXPECT_EQ(loadval(1, 1), 0.5f);
    editnodalload = false;
    editconstraint = true;
    form = openattributes();
    EXPECT_EQ(constraintlabels()[0].unit + constraintlabels()[5].unit, "mDeg");
    form.text[0] = "3 mm", form.text[4] = "0.5 rad";
    applyconstrains(form);
    EXPECT_FLOAT_EQ(conval(1), 0.003f);
    EXPECT_FLOAT_EQ(conval(2), float(90 / pi));
}

TEST(Typedvalues, LoadCasesCommandsAndTools) {
    metricroom room;
    loadcaseform form = openloadkees();
    choosekind(form, kindwave);
    form.wave = {"10 ft", "0.2 min", "1 rad", "0.5", "25"};
    updateloadcase(form);
    EXPECT_TRUE(lcpar(1, 0) == 3.048 && lcpar(1, 1) == 12 && lcpar(1, 4) == 25);
    choosekind(form, kindbuoyancy);
    form.buoyancy = {"200 mm", "9", "10 kN"};
    updateloadcase(form);
    EXPECT_EQ(lcpar(1, buoyancylevel), 0.2);
    EXPECT_EQ(form.message, "Density: \"10 kN\" has a unit of another kind; kN/m3 is wanted here");
    choosekind(form, kindacceleration);
    choosedirection(form, 3);
    form.acceleration = {"90 deg/s2", "50 cm", "0", "kN"};
    updateloadcase(form);
    EXPECT_NEAR(lcpar(1, accvalue), pi / 2, 1e-12);
    EXPECT_TRUE(lcpar(1, acccentrex) == 0.5 && lcpar(1, acccentrez) == 0);

    nodesel(0) = nodesel(1) = 1;
    runcommand("ax=25 cm;1 ft");
    EXPECT_TRUE(nodes(0, 1, 0) == 0.25f && nodes(0, 1, 1) == 0.3048f);
    runcommand("dx=1 m;3 kN");
    EXPECT_TRUE(room.platform.toldpart("\"3 kN\" has a unit of another kind; m is wanted here"));
    EXPECT_EQ(nodes(0, 1, 0), 0.25f);
    drafttool& copies = *std::ranges::find_if(
        drafttools(), [](const drafttool& t) { return std::string(t.name) == "arr"; });
    ASSERT_TRUE(setdraftvalues(copies, {"2", "0", "300 mm"}));
    EXPECT_EQ(copies.value(2), 0.3);
    EXPECT_FALSE(setdraftvalues(copies, {"2 mm"})) << "a count";
    for (std::size_t i = 0; i < 3; ++i) copies.fields[i].value = i == 0 ? 1 : 0;

    optionsform options = showgeneraloptions();
    options.tolerance = "2 mm";
    storetolerance(options);
    EXPECT_EQ(nodetol, 0.002);
    viewform view;
    showvalues(view, 1);
    view.box[boxx] = "7 ft", view.box[boxvertical] = "0.5 rad";
    getvalues(view);
    EXPECT_FLOAT_EQ(viewptx(1), 7 * 0.3048f);
    EXPECT_FLOAT_EQ(viewvert(1), 0.5f);
}

TEST(Typedvalues, CellsOfTablesKnowTheirRow) {
    metricroom room;
    ncon = 1, connode(1) = 1, condof(1) = 5;
    loadnode(1, 0) = 1, loadnode(1, 1) = 1, loaddof(1, 1) = 6;
    elemload(1, 0, 0) = 1, elemload(1, 1, 0) = 2, elemload(1, 1, 1) = 3;
    lctype(1) = caseapplied;
    const struct {
        int tab, column;
        const char* text;
        bool taken;
    } cases[] = {
        {tabnodes, 1, "250 mm", true},         {tabnodes, 1, "250 kN", false},
        {tabgroups, 4, "12 mm", true},         {tabgroups, 5, "12 cm2", true},
        {tabgroups, 5, "12 mm", false},        {tabconstraints, 3, "1 rad", true},
        {tabconstraints, 3, "1 mm", false},    {tabnodalloads, 4, "2 kNm", true},
        {tabnodalloads, 4, "2 kN", false},     {tabelementloads, 4, "2 kN/m2", true},
        {tabelementloads, 4, "2 kN/m", false}, {tabloadcases, 4, "1 m", false},
    };
    labelbook book;
    for (const auto& c : cases) {
        const gridcolumn column = columnsof(c.tab)[std::size_t(c.column)];
        EXPECT_EQ(savecell(c.tab, column, 1, c.text, book).written, c.taken)
            << column.caption << " " << c.text;
    }
    EXPECT_EQ(nodes(0, 1, 0), 0.25f);
    EXPECT_EQ(groups(1, fieldthickness), 0.0012);
}

TEST(Typedvalues, SectionsComeInTheLengthOfTheModel) {
    sessionroom room;
    std::filesystem::copy_file(sourcedir() + "/data/sections.dat", room.file("sections.dat"));
    unitstext = "ft kip lb";
    sectionform form = Initiate();
    EXPECT_EQ(std::string(unitnames[form.unit]) + form.unitlabels[0], "FootFoot");
    choosetype(form, prismaticbar);
    editdimension(form, dimb, "6 in");
    editdimension(form, dimh, "12 in");
    EXPECT_NEAR(form.values[0], 0.5, 1e-12);
    EXPECT_NEAR(form.values[1], 0.5 / 12, 1e-12);
}

TEST(Typedvalues, WhatIsToldNamesItsUnit) {
    metricroom room;
    elemsel(0) = elemsel(1) = 1;
    EXPECT_EQ(sumstext(sumselection()).substr(0, 10), "length 1 m");
    stresscomp = 13;
    contourdata = stressdata;
    EXPECT_EQ(makelegend().heading[2], "Combined Stress, N/mm2");
    stresscomp = 27;
    EXPECT_EQ(makelegend().heading[2], "Mx, kN m/m");
    unitstext.clear();
    EXPECT_EQ(makelegend().heading[2], "Mx, F L/L");
    stresscomp = 13;
    contourdata = 0;
    balance b;
    b.cases.push_back({});
    EXPECT_EQ(balancepage(b)[0].cells[4], "MX");
    unitstext = "ft kip lb";
    EXPECT_EQ(balancepage(b)[0].cells[4], "MX [kip ft]");
    writefile(room.file("a.kal"), "\"section\",\"units\"\r\n\"m N kg\",1,1,1\r\n\"end\"\r\n");
    EXPECT_FALSE(importmodel(room.file("a")));
    EXPECT_TRUE(room.platform.toldpart("is in m N kg, the model in hand in ft kip lb"));
}
