// SPDX-License-Identifier: GPL-3.0-or-later
// The report's sections on stresses: line elements by end, finite elements by group and corner.
#include <algorithm>
#include <string>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/session.h"
#include "core/textfile.h"
#include "post/plotunits.h"
#include "post/postproces.h"
#include "post/reportsections.h"
#include "post/stressfile.h"

static const char* const nostress = "Stress component not calculated";
static const char* const stressnames[] = {"",    "Sx",  "Sy",  "Sz",  "Sxy", "Sxz", "Syz",
                                          "Sbx", "Sby", "Sbz", "Stx", "Sty", "Stz", "SC"};
static const std::initializer_list<int> allvalues = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13};
static const std::initializer_list<int> membranevalues = {1, 2, 3, 4, 5, 6, 13};
static const std::initializer_list<int> bendingvalues = {7, 8, 9, 10, 11, 12, 13};

// Reads the file that the three switches choose, for combination c.
static bool readfor(int c) {
    curlcomb = c;
    stressloaded = false;
    return readstressquiet();
}

static void stresssection(reporttext& r, const char* title) {
    section(r, title);
    for (int i = 0; i < 2; ++i) r.out.line(" ");
}

static void writenames(reporttext& r, std::initializer_list<int> components) {
    r.out.text("EL NO").zone().text("NODE");
    for (const int k : components) r.out.zone().text(stressnames[k]);
    r.out.end();
}

static void writevalues(reporttext& r, int e, int corner, std::initializer_list<int> components) {
    const double factor = shownfactor("F/L^2");
    r.out.raw(e).zone().raw(elems(e, corner));
    for (const int k : components) r.out.zone().sci(factor * elemstress(k, e, corner));
    r.out.end();
}

static void writecombination(reporttext& r, const char* title, const char* axes, int c) {
    r.out.line(title);
    r.out.line(axes);
    r.out.line("Stress report for loadcombination: ");
    counted(r, "                          Number = ", c);
    r.out.line("                          Name   = " + shownname(lcombname(c)));
    if (const std::string unit = resultunit("F/L^2"); !unit.empty())
        r.out.line("Stresses in " + unit);
    note(r, stressnote);
}

// --- line elements ------------------------------------------------------------------------------

static const char* const localaxestext =
    "Stresses given in element nodes and defined in local element coordinate system ";
static const char* const globalaxestext =
    "Stresses given in element nodes and defined in global coordinate system ";

static void writelinestresses(reporttext& r) {
    stresssection(r, "******************  LINE ELEMENT LOCAL STRESS REPORT  *******************");
    lineelstress = 1;
    for (int c = 1; c <= ncomb(); ++c) {
        if (!readfor(c)) {
            r.out.line(nostress);
            break;
        }
        writecombination(r, "Line Element Stress report", localaxestext, c);
        writenames(r, allvalues);
        for (int e = 1; e <= nelems(); ++e) {
            if (nodesoftype(elems(e, 0)) != 2 || elemstress(0, e, 0) == 0) continue;
            for (int end = 1; end <= 2; ++end) writevalues(r, e, end, allvalues);
        }
        r.out.empty();
    }
    lineelstress = 0;
}

// --- finite elements ----------------------------------------------------------------------------

static bool hasstress(int e) {
    return nodesoftype(elems(e, 0)) > 2 && elemstress(0, e, 0) > 0;
}

static bool hasbending(int e) {
    if (hasrotations(int(elems(e, 0)))) return true;
    for (int k = 7; k <= 12; ++k)
        for (int corner = 1; corner <= stresscorners; ++corner)
            if (elemstress(k, e, corner) != 0) return true;
    return false;
}

// Elements with stresses, a list for each group.
static std::vector<std::vector<int>> elementsbygroup() {
    std::vector<std::vector<int>> lists(std::size_t(ngroups()) + 1);
    for (int e = 1; e <= nelems(); ++e)
        if (hasstress(e) && egroup(e) >= 1 && egroup(e) <= ngroups())
            lists[std::size_t(egroup(e))].push_back(e);
    return lists;
}

static void writetable(reporttext& r, const std::vector<int>& list,
                       std::initializer_list<int> components) {
    if (list.empty()) return;
    writenames(r, components);
    for (const int e : list) {
        const int corners = std::min(nodesoftype(elems(e, 0)), int(elemstress(0, e, 0)));
        for (int corner = 1; corner <= corners; ++corner) writevalues(r, e, corner, components);
    }
    r.out.empty();
}

namespace {
struct platesection {
    const char *title, *caption;
    bool mean, global;
};
}  // namespace

static void writeplates(reporttext& r, const platesection& s) {
    stresssection(r, s.title);
    lineelstress = 0;
    stressaverage = s.mean;
    stressglobal = s.global;
    for (int c = 1; c <= ncomb(); ++c) {
        if (!readfor(c)) {
            r.out.line(nostress);
            return;
        }
        const auto lists = elementsbygroup();
        for (int g = 1; g <= ngroups(); ++g) {
            const std::vector<int>& list = lists[std::size_t(g)];
            if (list.empty()) continue;
            writecombination(r, s.caption, s.global ? globalaxestext : localaxestext, c);
            r.out.line("                    Element Group: ");
            counted(r, "                          Number = ", g);
            r.out.line("                          Name   = " + shownname(groupname(g)));
            writetable(r, list, membranevalues);
            std::vector<int> bent;
            std::ranges::copy_if(list, std::back_inserter(bent), hasbending);
            writetable(r, bent, bendingvalues);
        }
    }
}

void writestresses(reporttext& r) {
    static const char* const caption = "Nodal stress report";
    writelinestresses(r);
    writeplates(r, {"******************  FINITE ELEMENT LOCAL STRESS REPORT  *******************",
                    caption, false, false});
    writeplates(r, {"******************  FINITE ELEMENT GLOBAL STRESS REPORT  *******************",
                    caption, false, true});
}

void writeaverages(reporttext& r) {
    static const char* const caption = "Nodal stress Average report";
    writeplates(
        r, {"******************  NODAL STRESS AVERAGE LOCAL STRESS REPORT  *******************",
            caption, true, false});
    writeplates(
        r, {"******************  NODAL STRESS AVERAGE GLOBAL STRESS REPORT  *******************",
            caption, true, true});
}
