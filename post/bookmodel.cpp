// SPDX-License-Identifier: GPL-3.0-or-later
// The parts of the illustrated report that tell the model: geometry, groups, supports, loads.
#include <algorithm>
#include <array>
#include <cmath>
#include <map>

#include "core/catalogue.h"
#include "core/formulas.h"
#include "core/labels.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/session.h"
#include "core/textfile.h"
#include "loads/loadcombinations.h"
#include "post/book.h"
#include "post/bookparts.h"
#include "post/legend.h"
#include "post/plainnumber.h"
#include "post/plotunits.h"
#include "view/setviews.h"

using cells = std::vector<std::string>;

static const int rowsperlook = 2000;  // between two looks at the progress window

static void lookat(int row) {
    if (row % rowsperlook == 0) bookprogress();
}

// --- geometry -----------------------------------------------------------------------------------

namespace {
struct extents {
    double low[3] = {HUGE_VAL, HUGE_VAL, HUGE_VAL}, high[3] = {-HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
    double size(int k) const { return high[k] - low[k]; }
};
}  // namespace

static extents extentsofmodel() {
    extents x;
    for (int n = 1; n <= nnodes(); ++n)
        for (int k = 0; k < 3; ++k) {
            x.low[k] = std::min(x.low[k], double(nodes(0, n, k)));
            x.high[k] = std::max(x.high[k], double(nodes(0, n, k)));
        }
    return x;
}

// A flat model has one picture, from the front.
void bookmodelpictures(booksink& b) {
    const extents x = extentsofmodel();
    const double nothing = 1e-6 * std::max({x.size(0), x.size(1), x.size(2)});
    for (int i = 0; i < 4; ++i) {
        static const int across[] = {0, 2, 1, 0};  // the axis that a preset looks along
        const bool flat = x.size(0) <= nothing || x.size(1) <= nothing || x.size(2) <= nothing;
        if (flat && (i == 0 || x.size(across[i]) > nothing)) continue;
        scene s;
        s.caption = std::string("The model, view ") + viewpresets[i].caption;
        s.vertical = viewpresets[i].vertical * pi / 180;
        s.horizontal = viewpresets[i].horizontal * pi / 180;
        s.hidden = i == 0;
        bookpicture(b, s);
    }
}

void booksummary(booksink& b) {
    std::map<int, int> oftype;
    int elements = 0, constraints = 0;
    for (int e = 1; e <= nelems(); ++e)
        if (elems(e, 0) != 0) ++oftype[int(elems(e, 0))], ++elements;
    for (int i = 1; i <= ncon; ++i) constraints += connode(i) != 0;
    b.begintable("", {{"", false, 3}, {"Number", true, 1}}, int(oftype.size()) + 6);
    b.row({"Nodes", numbertext(nnodes())});
    b.row({"Elements", numbertext(elements)});
    for (const auto& [type, count] : oftype)
        b.row({"   of type " + eltypname(type), numbertext(count)});
    b.row({"Element groups", numbertext(ngroups())});
    b.row({"Constraints", numbertext(constraints)});
    b.row({"Load cases", numbertext(nlc())});
    b.row({"Load combinations", numbertext(ncomb())});
    b.endtable();
    if (nnodes() == 0) return;
    const extents x = extentsofmodel();
    b.begintable("Extents", {{headedinput("Direction", "L"), false}, {"From"}, {"To"}, {"Length"}},
                 3);
    for (int k = 0; k < 3; ++k)
        b.row({std::string(1, char('X' + k)), shorttext(x.low[k]), shorttext(x.high[k]),
               shorttext(x.size(k))});
    b.endtable();
    if (!commenttext.empty()) b.text(shownname(commenttext, 2000));
}

void bookgroups(booksink& b) {
    std::vector<int> count(std::size_t(ngroups()) + 1);
    for (int e = 1; e <= nelems(); ++e)
        if (elems(e, 0) != 0 && egroup(e) >= 1 && egroup(e) <= ngroups())
            ++count[std::size_t(egroup(e))];
    b.begintable("Material and main dimension",
                 {{"No", true, 0.5},
                  {"Name", false, 2},
                  {"Elements"},
                  {headedinput("E", "F/L^2")},
                  {"Poisson"},
                  {headedinput("Density", "W/L^3")},
                  {headedinput("Thickness or area", "L | L^2"), true, 1.4}},
                 ngroups());
    for (int g = 1; g <= ngroups(); ++g)
        b.row({numbertext(g), shownname(groupname(g), 40), numbertext(count[std::size_t(g)]),
               shorttext(groups(g, fieldmodulus)), shorttext(groups(g, fieldpoisson)),
               shorttext(groups(g, fielddensity)), shorttext(groups(g, fieldthickness))});
    b.endtable();
    b.begintable("Sections",
                 {{"No", true, 0.5},
                  {"Name", false, 2},
                  {headedinput("Ixx", "L^4")},
                  {headedinput("Wxx", "L^3")},
                  {headedinput("Iyy", "L^4")},
                  {headedinput("Wyy", "L^3")},
                  {headedinput("Izz", "L^4")},
                  {headedinput("Wzz", "L^3")}},
                 ngroups());
    for (int g = 1; g <= ngroups(); ++g) {
        cells row = {numbertext(g), shownname(groupname(g), 40)};
        bool any = false;
        for (int k = fieldixx; k <= fieldwzz; ++k) {
            row.push_back(shorttext(groups(g, k)));
            any = any || groups(g, k) != 0;
        }
        if (any) b.row(row);
    }
    b.endtable();
}

void booknodes(booksink& b) {
    b.begintable(
        "", {{"Node"}, {headedinput("X", "L")}, {headedinput("Y", "L")}, {headedinput("Z", "L")}});
    for (int n = 1; n <= nnodes(); ++n) {
        b.row({numbertext(n), numbertext(nodes(0, n, 0)), numbertext(nodes(0, n, 1)),
               numbertext(nodes(0, n, 2))});
        lookat(n);
    }
    b.endtable();
}

void bookelements(booksink& b) {
    b.begintable(
        "",
        {{"Element"}, {"Type", false}, {"Node 1"}, {"Node 2"}, {"Node 3"}, {"Node 4"}, {"Group"}});
    for (int e = 1; e <= nelems(); ++e) {
        const int elnn = nodesoftype(elems(e, 0));
        if (elnn == 0) continue;
        cells row = {numbertext(e), eltypname(int(elems(e, 0)))};
        for (int c = 1; c <= 4; ++c) row.push_back(c <= elnn ? numbertext(int(elems(e, c))) : "");
        row.push_back(numbertext(egroup(e)));
        b.row(row);
        lookat(e);
    }
    b.endtable();
}

// --- supports -----------------------------------------------------------------------------------

void booksupports(booksink& b) {
    std::map<int, std::array<std::string, 6>> held;  // by node
    for (int i = 1; i <= ncon; ++i)
        if (connode(i) != 0 && condof(i) >= 1 && condof(i) <= 6)
            held[connode(i)][std::size_t(condof(i)) - 1] =
                conval(i) == 0 ? "fixed" : numbertext(conval(i));
    if (held.empty()) return b.text("The model has no supports.", true);
    scene s;
    s.caption = "The model with its supports";
    s.constraints = true;
    bookpicture(b, s);
    b.begintable("Supported nodes: fixed, or the prescribed displacement (rotations in degrees)",
                 {{"Node"},
                  {headedinput("DX", "L")},
                  {headedinput("DY", "L")},
                  {headedinput("DZ", "L")},
                  {"RX"},
                  {"RY"},
                  {"RZ"}},
                 int(held.size()));
    for (const auto& [node, directions] : held) {
        cells row = {numbertext(node)};
        row.insert(row.end(), directions.begin(), directions.end());
        b.row(row);
        lookat(node);
    }
    b.endtable();
}

// --- loads --------------------------------------------------------------------------------------

namespace {
struct parameterrow {
    int first, last;  // types of load case
    std::vector<const char*> names;
};
}  // namespace

static std::string parametersof(int lc) {
    static const parameterrow rows[] = {
        {caseaccx, caseaccz, {"acceleration"}},
        {caseaccrx, caseaccrz, {"acceleration", "centre x", "y", "z"}},
        {casewave, casewave, {"height", "period", "direction", "shift", "water depth"}},
        {casewind, casewind, {"velocity", "direction"}},
        {casebuoyancy, casebuoyancy, {"water level", "water depth", "density"}},
    };
    std::string text;
    for (const parameterrow& row : rows)
        for (std::size_t k = 0;
             lctype(lc) >= row.first && lctype(lc) <= row.last && k < row.names.size(); ++k)
            text += (k ? ", " : ": ") + std::string(row.names[k]) + " " +
                    shorttext(lcpar(lc, long(k))) + behind(parameterformula(lctype(lc), int(k)));
    return text;
}

static void bookcaserows(booksink& b, int lc) {
    static const char* const directions[] = {"X", "Y", "Z", "RX", "RY", "RZ"};
    const bool forces = lctype(lc) == caseapplied;
    if (loadnode(lc, 0) > 0) {
        b.begintable(forces ? "Forces and moments at nodes" : "Masses at nodes",
                     {{"Node"}, {"Direction", false}, {"Value"}});
        for (int i = 1; i <= loadnode(lc, 0); ++i) {
            if (loadnode(lc, i) != 0 && loaddof(lc, i) >= 1 && loaddof(lc, i) <= 6)
                b.row({numbertext(loadnode(lc, i)), directions[loaddof(lc, i) - 1],
                       shorttext(loadval(lc, i)) + behind(nodalformula(lc, loaddof(lc, i)))});
            lookat(i);
        }
        b.endtable();
    }
    if (elemload(lc, 0, 0) > 0) {
        b.begintable("Loads on elements, in their local axes",
                     {{"Element"}, {"Direction", false}, {"Value"}});
        for (int i = 1; i <= int(elemload(lc, 0, 0)); ++i) {
            const int direction = int(elemload(lc, i, 1));
            if (elemload(lc, i, 0) != 0 && direction >= 1 && direction <= 3)
                b.row({numbertext(int(elemload(lc, i, 0))),
                       std::string(1, char('x' + direction - 1)),
                       shorttext(elemload(lc, i, 2)) +
                           behind(elementformula(int(elemload(lc, i, 0))))});
            lookat(i);
        }
        b.endtable();
    }
}

void bookloads(booksink& b) {
    for (int lc = 1; lc <= nlc(); ++lc) {
        const std::string name = numbertext(lc) + ", " + shownname(lcname(lc));
        if (loadnode(lc, 0) > 0 || elemload(lc, 0, 0) > 0) {
            scene s;
            s.caption = "Load case " + name;
            s.loads = activecase;
            s.loadcase = lc;
            s.constraints = true;
            bookpicture(b, s);
        }
        // Below the picture, so that a page can not end between both.
        b.text("Load case " + name + ": " + lcsubname(int(lctype(lc))) + parametersof(lc));
        bookcaserows(b, lc);
    }
}

void bookcombinations(booksink& b) {
    b.begintable("", {{"No", true, 0.4}, {"Combination", false, 1.4}, {"Load cases", false, 4}},
                 ncomb());
    for (int c = 1; c <= ncomb(); ++c) {
        std::string equation;
        for (const std::string& row : equationof(c)) equation += row;
        b.row({numbertext(c), shownname(lcombname(c), 60), equation});
    }
    b.endtable();
}
