// SPDX-License-Identifier: GPL-3.0-or-later
// The report's sections that come from the model alone. Headings and labels are the report's fixed
// texts, their spelling included.
#include <string>

#include "core/catalogue.h"
#include "core/kaltext.h"
#include "core/labels.h"
#include "core/model.h"
#include "core/session.h"
#include "core/textfile.h"
#include "loads/loadcombinations.h"
#include "post/plotunits.h"
#include "post/postproces.h"
#include "post/reportsections.h"

void dashline(reporttext& r) {
    r.out.line(std::string(54, '-'));
}

void note(reporttext& r, const std::string& text) {
    if (!text.empty()) r.out.line("Note: " + text);
}

void counted(reporttext& r, const char* label, double number) {
    r.out.text(label).raw(number).end();
}

void pageheader(reporttext& r) {
    const std::string bar = "+" + std::string(118, '-') + "+";
    r.out.line(bar);
    r.out
        .text(
            "                                       K A L V A N E   R E P O R T   F I L E"
            "                   Page Number")
        .raw(++r.page)
        .end();
    r.out.line("                                      Model Name = " + modelname);
    r.out.line(bar);
    r.out.line("  Version number: " + appversion);
    r.out.line(bar);
}

void section(reporttext& r, const char* title, int linesbelow) {
    pageheader(r);
    r.out.line(title);
    r.out.empty(linesbelow);
}

// --- banner and general information -------------------------------------------------------------

void writebanner(reporttext& r) {
    const std::string blanks(49, ' ');
    r.out.line("************ K A L V A N E  ***********");
    r.out.line(appversion);
    r.out.line("             FINITE ELEMENT STRESS ANALYSIS      ");
    r.out.line("  ");
    r.out.line(" - 2-D OR 3-D STATIC ANALYSIS                      ");
    r.out.empty();
    for (int i = 0; i < 2; ++i) r.out.line(blanks);
    r.out.line(" - DEVELOPED BY:                                 ");
    r.out.line("                   TARLE Engineering             ");
    for (int i = 0; i < 9; ++i) r.out.line(blanks);
    r.out.empty(3);
}

// Before an analysis the counts are those of the model in hand.
void writegeneral(reporttext& r) {
    r.out.line("************* GENERAL INFORMATION *************************");
    r.out.line("MODEL NAME = " + modelname);
    summary s{double(nnodes()), 0, double(nelems())};
    const bool analysed = guarded([&] { s = readsummary(); }, [](const runtimeerror&) {});
    counted(r, "             NODES= ", s.nodes);
    counted(r, "          ELEMENTS= ", s.elements);
    if (analysed)
        counted(r, "         BANDWIDTH= ", s.bandwidth);
    else
        r.out.line("         BANDWIDTH= not calculated");
    if (!unitstext.empty()) r.out.line("             UNITS= " + unitstext);
    r.out.empty(4);
}

// --- groups -------------------------------------------------------------------------------------

static void writegrouprows(reporttext& r, int firstproperty) {
    for (int g = 1; g <= ngroups(); ++g) {
        r.out.raw(g).zone().cut(groupname(g));
        for (int k = firstproperty; k < firstproperty + 6; ++k) r.out.zone().sci(groups(g, k));
        r.out.end();
    }
}

void writegroups(reporttext& r) {
    section(r, "******************  ELEMENT GROUP DEFENITION *******************", 2);
    r.out.line(
        "NO            NAME          YOUNG'S       POIS          SPECIFIC      DIMENSION     PLS"
        "           ORT");
    r.out.line(
        "                            MODULUS       RATIO         DENSITY                       ");
    r.out.line(unitline(
        "                            [F/L^2]       [-]           [M/L^3]       [L L^2]          "
        "      "));
    writegrouprows(r, 1);
    r.out.line(
        "Note: For membrane elements, if PLS=1 then plane strain condition is being used, if PLS=0 "
        "then plane stress condition is used.");
    r.out.empty(2);
    r.out.line(
        "NO            NAME          INERTIA       MOM OF RES    INERTIA       MOM OF RES    "
        "INERTIA       MOM OF RES");
    r.out.line(
        "                            X-AXIS        X-AXIS        Y-AXIS        Y-AXIS        Z-AXIS"
        "        Z-AXIS");
    r.out.line(unitline(
        "                            [L^4]         [L^3]         [L^4]         [L^3]         [L^4] "
        "        [L^3]"));
    writegrouprows(r, 7);
}

// --- nodes and elements -------------------------------------------------------------------------

static void writeelement(reporttext& r, int e) {
    const int type = int(elems(e, 0)), elnn = nodesoftype(elems(e, 0));
    if (elnn == 0) return;
    r.out.raw(e).zone().cut(eltypname(type));
    for (int k = 1; k <= 4; ++k) {
        r.out.zone();
        if (k <= elnn) r.out.raw(elems(e, k));
    }
    r.out.zone().raw(egroup(e)).zone();
    if (rotpo(e) == 0)
        r.out.text("0.0");
    else
        r.out.raw(rotpo(e));
    r.out.end();
}

// The headings of this table do not stand in zones.
static void writetypes(reporttext& r) {
    const int namecolumn = 6, nodescolumn = 20;
    r.out.line("ELEMENT TYPES");
    r.out.empty(2);
    r.out.line("NO    NAME          NODES ");
    r.out.empty();
    for (int t = 0; t < neltypes; ++t)
        r.out.raw(t)
            .column(namecolumn)
            .cut(eltypname(t), nodescolumn - namecolumn - 1)
            .column(nodescolumn)
            .raw(eltypnodes(t))
            .end();
}

static void writenodes(reporttext& r) {
    r.out.line("NODAL            COORDINATES       ");
    r.out.line("                X             Y             Z");
    r.out.line(unitline("NO             [L]           [L]           [L]"));
    r.out.empty();
    for (int n = 1; n <= nnodes(); ++n) {
        r.out.raw(n);
        for (int k = 0; k < 3; ++k) r.out.zone().raw(nodes(0, n, k));
        r.out.end();
    }
}

void writemesh(reporttext& r) {
    section(r, "******************  NODAL COORDINATES    *******************", 2);
    r.out.line("******************  ELEMENT DEFINITION   *******************");
    r.out.empty(2);
    r.out.line(
        "ELEM          TYPE           KNP 1         KNP 2         KNP 3         KNP 4         Group"
        "         Rotation");
    r.out.line(" NO   ");
    for (int e = 1; e <= nelems(); ++e) writeelement(r, e);
    writetypes(r);
    r.out.empty(2);
    writenodes(r);
}

// --- constraints and loads ----------------------------------------------------------------------

void writeconstraints(reporttext& r) {
    section(r, "******************  NODAL CONSTRAINS     *******************", 2);
    int rows = 0;
    for (int i = 1; i <= ncon; ++i) rows += connode(i) != 0;  // a row without a node is a hole
    if (rows == 0) {
        r.out.line("NO CONSTRAINS DEFINED");
        return;
    }
    counted(r, "AMOUNT= ", rows);
    r.out.empty();
    r.out.line("NODE       DIRECTION        VALUE");
    r.out.empty();
    for (int i = 1; i <= ncon; ++i)
        if (connode(i) != 0)
            r.out.raw(connode(i))
                .zone()
                .text(std::to_string(condof(i)))
                .zone()
                .raw(conval(i))
                .end();
}

static void writecombination(reporttext& r, int c) {
    counted(r, "Loadcombination number = ", c);
    r.out.line("Loadcombination Name = " + shownname(lcombname(c)));
    const std::string label = "Load Combination = ";
    const std::vector<std::string> equation = equationof(c);
    for (std::size_t i = 0; i < equation.size(); ++i)
        r.out.text(i == 0 ? label : std::string(label.size(), ' ')).text(equation[i]).end();
    r.out.empty();
    dashline(r);
    r.out.empty();
}

// Wave, wind and buoyancy cases have their own words for the parameters.
static void writeparameters(reporttext& r, int lc) {
    struct parameterrow {
        int type;
        const char* names[5];
    };
    static const parameterrow rows[] = {
        {casewave, {"H = ", ", T = ", ", Dir = ", ", Shift = ", ", WD = "}},
        {casewind, {"Vel = ", ", Dir = "}},
        {casebuoyancy, {"WL = ", ", WD = ", ", Density = "}},
    };
    for (const parameterrow& row : rows) {
        if (row.type != lctype(lc)) continue;
        r.out.text(" Parameters: ");
        for (int k = 0; k < 5 && row.names[k] != nullptr; ++k)
            r.out.text(row.names[k]).raw(lcpar(lc, k));
        r.out.end();
    }
}

static void writekind(reporttext& r, int lc) {
    if (lctype(lc) == caseapplied) {
        r.out.line(" Nodal defined forces:");
        return;
    }
    if (lctype(lc) <= caseaccz) {
        r.out.text(" Acceleration = ").raw(lcpar(lc, accvalue)).text(" m/s^2").end();
    } else {
        r.out.text(" Acceleration = ").raw(lcpar(lc, accvalue)).text(" rad/t^2").end();
        r.out.text(" Center of rotation (x,y,z)= (").raw(lcpar(lc, acccentrex)).text(",");
        r.out.raw(lcpar(lc, acccentrey)).text(",").raw(lcpar(lc, acccentrez)).text(")").end();
        writeparameters(r, lc);
    }
    r.out.text(" Element mass switched ").text(lcpar(lc, accelementmass) == 1 ? "ON" : "OFF").end();
    r.out.line(" Nodal defined masses:");
}

static void writeloadrow(reporttext& r, int item, int direction, float value) {
    r.out.raw(item).zone().text(std::to_string(direction)).zone().raw(value).end();
}

static void writeloadcase(reporttext& r, int lc) {
    counted(r, "Loadcase number = ", lc);
    r.out.line("Loadcase Name = " + shownname(lcname(lc)));
    r.out.line("Loadcase Type = " + lcsubname(int(lctype(lc))));
    writekind(r, lc);
    r.out.line("NODE       DIRECTION        VALUE");
    int rows = 0;
    for (int i = 1; i <= loadnode(lc, 0); ++i)
        if (loadnode(lc, i) != 0) {
            writeloadrow(r, loadnode(lc, i), loaddof(lc, i), loadval(lc, i));
            ++rows;
        }
    if (rows == 0) r.out.line("None specified");
    dashline(r);
    r.out.line(" Element distributed forces:");
    r.out.line("ELEMENT       DIRECTION        VALUE");
    rows = 0;
    for (int i = 1; i <= int(elemload(lc, 0, 0)); ++i)
        if (elemload(lc, i, 0) != 0) {
            writeloadrow(r, int(elemload(lc, i, 0)), int(elemload(lc, i, 1)), elemload(lc, i, 2));
            ++rows;
        }
    if (rows == 0) r.out.line("None specified");
    dashline(r);
}

void writeloads(reporttext& r) {
    section(r, "******************     LOAD CASES        *******************", 2);
    r.out.line("******************     LOAD COMBINATIONS    *******************");
    r.out.empty(2);
    counted(r, "Number of loadcombinations = ", ncomb());
    r.out.empty();
    dashline(r);
    for (int c = 1; c <= ncomb(); ++c) writecombination(r, c);
    counted(r, "Number of loadcases = ", nlc());
    dashline(r);
    for (int lc = 1; lc <= nlc(); ++lc) writeloadcase(r, lc);
}
