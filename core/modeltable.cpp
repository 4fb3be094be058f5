// SPDX-License-Identifier: GPL-3.0-or-later
// The rows of the model's table.
#include "core/modeltable.h"

#include <algorithm>

#include "core/catalogue.h"
#include "core/colours.h"
#include "core/elempatch.h"
#include "core/kaltext.h"
#include "core/model.h"
#include "core/units.h"
#include "core/views.h"

long bound::upper() const {
    return size == 0 ? least : std::max(least, factor * long(modelsize(size)));
}

static bound fixed(long upper) {
    return {upper};
}

static bound declared(int size) {
    return {0, size};
}

// --- counts -------------------------------------------------------------------------------------

long countof(items of, long list) {
    switch (of) {
        case items::node:
            return nnodes();
        case items::element:
            return nelems();
        case items::group:
            return ngroups();
        case items::constraint:
            return ncon;
        case items::loadcase:
            return nlc();
        case items::nodalload:
            return loadnode(list, 0);
        case items::elementload:
            return long(elemload(list, 0, 0));
        case items::combination:
            return ncomb();
        case items::graphic:
            return ngraphics();
        case items::patch:
            return patches(0, 0, 0);
        case items::none:
            return 0;
    }
    return 0;
}

void setcount(items of, long count, long list) {
    switch (of) {
        case items::node:
            nodes(0, 0, 0) = float(count);
            break;
        case items::element:
            elems(0, 0) = float(count);
            break;
        case items::group:
            groups(0, 0) = double(count);
            break;
        case items::constraint:
            ncon = int(count);
            break;
        case items::loadcase:
            loadnode(0, 0) = int(count);
            break;
        case items::nodalload:
            loadnode(list, 0) = int(count);
            break;
        case items::elementload:
            elemload(list, 0, 0) = float(count);
            break;
        case items::combination:
            lcomb(0, 0) = float(count);
            break;
        case items::graphic:
            graphics(0, 0, 0) = float(count);
            break;
        case items::patch:
            patches(0, 0, 0) = int(count);
            break;
        case items::none:
            break;
    }
}

static std::function<long(long)> countsof(items of) {
    return [of](long list) { return countof(of, list); };
}

// List 0 of the loads holds the number of load cases alone.
static std::function<long(long)> loadsof(items of) {
    return [of](long list) { return list == 0 ? 0 : countof(of, list); };
}

static long onelist() {
    return 0;
}

static long loadcases() {
    return nlc();
}

// --- rows ---------------------------------------------------------------------------------------

using table = std::vector<modelarray>;

static const char* const length = "L";

static void addnodes(table& t) {
    const auto count = countsof(items::node);
    // Set 1, the displacements of a result, is no part of the model.
    t.push_back({"nodes",
                 "Node",
                 &nodes,
                 {fixed(1), declared(1), fixed(3)},
                 roles::model,
                 items::node,
                 2,
                 onelist,
                 count,
                 {{0, 2, "Coordinate", length, kinds::number, ".tek"}},
                 true});
    t.push_back({"nodename",
                 "Node name",
                 &nodename,
                 {declared(1)},
                 roles::model,
                 items::node,
                 1,
                 onelist,
                 count,
                 {{0, 0, "Name", "", kinds::text}}});
    t.push_back({"nodesel",
                 "Selected node",
                 &nodesel,
                 {declared(1)},
                 roles::selection,
                 items::none,
                 1,
                 onelist,
                 [](long) { return long(nodesel(0)); },
                 {{0, 0, "Node", "", kinds::count, "", items::node, losses::leaves}}});
    t.push_back(
        {"tmpnodes", "Node of the buffer", &tmpnodes, {declared(1), fixed(3)}, roles::buffer});
    t.push_back(
        {"nodework", "Work list of nodes", &nodework, {declared(1), fixed(3)}, roles::work});
}

namespace {
// Makes arrays of one column that have a row for each item of a kind.
struct rowmaker {
    table& t;
    items of;
    void operator()(const char* name, const char* caption, arraypointer cells,
                    std::vector<bound> bounds, column c, bool mechanical) const {
        t.push_back({name,
                     caption,
                     cells,
                     std::move(bounds),
                     roles::model,
                     of,
                     1,
                     onelist,
                     countsof(of),
                     {c},
                     mechanical});
    }
};
}  // namespace

static void addelements(table& t) {
    const auto count = countsof(items::element);
    const bound m2 = declared(2);
    const rowmaker element{t, items::element};
    element("elems", "Element", &elems, {m2, fixed(4)}, {0, 0, "Type", "", kinds::code, ".tek"},
            true);
    t.back().columns.push_back({1, 4, "Node", "", kinds::count, ".tek", items::node});
    element("egroup", "Group of an element", &egroup, {m2},
            {0, 0, "Group", "", kinds::count, ".tek", items::group, losses::instead}, true);
    element("rotpo", "Rotation of an element", &rotpo, {m2},
            {0, 0, "Rotation", "rad", kinds::angle, ".rot"}, true);
    element("elempatch", "Patch of an element", &elempatch, {m2},
            {0, 0, "Patch", "", kinds::count, "", items::patch}, false);
    element("elemname", "Element name", &elemname, {m2}, {0, 0, "Name", "", kinds::text}, false);
    element("endrelease", "End release", &endrelease, {m2, fixed(4), fixed(6)},
            {0, 34, "Release", "", kinds::flag}, true);
    t.push_back({"elemvis",
                 "Element shown",
                 &elemvis,
                 {fixed(nviews), m2},
                 roles::shown,
                 items::element,
                 2,
                 [] { return long(nviews); },
                 count,
                 {{0, 0, "Shown", "", kinds::flag}}});
    t.push_back({"elemflag",
                 "Element marked for plots",
                 &elemflag,
                 {m2},
                 roles::shown,
                 items::element,
                 1,
                 onelist,
                 count,
                 {{0, 0, "Marked", "", kinds::flag}}});
    t.push_back({"elemsel",
                 "Selected element",
                 &elemsel,
                 {m2},
                 roles::selection,
                 items::none,
                 1,
                 onelist,
                 [](long) { return long(elemsel(0)); },
                 {{0, 0, "Element", "", kinds::count, "", items::element, losses::leaves}}});
    t.push_back({"tmpelems",
                 "Element of the buffer",
                 &tmpelems,
                 {m2, fixed(5)},
                 roles::buffer,
                 items::none,
                 1,
                 onelist,
                 [](long) { return long(tmpelems(0, 0)); },
                 {{5, 5, "Group", "", kinds::count, "", items::group, losses::instead}}});
    t.push_back({"tmprotpo",
                 "Rotation of an element of the buffer",
                 &tmprotpo,
                 {m2},
                 roles::buffer,
                 items::none,
                 1,
                 onelist,
                 [](long) { return long(tmpelems(0, 0)); },
                 {{0, 0, "Rotation", "rad", kinds::angle}}});
    t.push_back({"elemdepth", "Depth of an element", &elemdepth, {m2, fixed(1)}, roles::work});
    t.push_back({"elemstress", "Stress", &elemstress, {fixed(13), m2, fixed(4)}, roles::result});
}

static void addgroups(table& t) {
    const bound m4 = declared(4);
    const rowmaker group{t, items::group};
    group("groups", "Element group", &groups, {m4, fixed(12)},
          {1, 12, "Property", "", kinds::number, ".mlt"}, true);
    group("groupname", "Group name", &groupname, {m4}, {0, 0, "Name", "", kinds::text, ".mlt"},
          false);
    group("groupmat", "Spring matrix", &groupmat, {m4, fixed(6), fixed(6)},
          {8, 48, "Stiffness", "F/L", kinds::number, ".mlt"}, true);
    group("groupcolor", "Colour of a group", &groupcolor, {m4}, {0, 0, "Colour", "", kinds::colour},
          false);
    t.back().blank = groupcolorof;
    // The palette has ten entries whatever is declared.
    t.push_back({"groupshow", "Colour of a stress band", &groupshow, {{9, 4}}, roles::work});
}

static void addconstraints(table& t) {
    const bound m3 = declared(3);
    const rowmaker constraint{t, items::constraint};
    constraint("connode", "Constraint", &connode, {m3},
               {0, 0, "Node", "", kinds::count, ".vpl", items::node}, true);
    constraint("condof", "Constraint", &condof, {m3}, {0, 0, "Direction", "", kinds::code, ".vpl"},
               true);
    constraint("conval", "Constraint", &conval, {m3},
               {0, 0, "Value", "L | Deg", kinds::number, ".vpl"}, true);
}

static void addloads(table& t) {
    const bound m3 = declared(3), m7 = declared(7);
    const auto load = [&](const char* name, arraypointer cells, std::vector<bound> bounds, items of,
                          const char* caption, std::vector<column> columns) {
        t.push_back({name, caption, cells, std::move(bounds), roles::model, of, 2, loadcases,
                     loadsof(of), std::move(columns), true});
    };
    load("loadnode", &loadnode, {m7, m3}, items::nodalload, "Nodal load",
         {{0, 0, "Node", "", kinds::count, ".knk", items::node}});
    load("loaddof", &loaddof, {m7, m3}, items::nodalload, "Nodal load",
         {{0, 0, "Direction", "", kinds::code, ".knk"}});
    load("loadval", &loadval, {m7, m3}, items::nodalload, "Nodal load",
         {{0, 0, "Value", "F | F.L", kinds::number, ".knk"}});
    load("elemload", &elemload, {m7, m3, fixed(2)}, items::elementload, "Element load",
         {{0, 0, "Element", "", kinds::count, ".ell", items::element, losses::leaves},
          {1, 1, "Direction", "", kinds::code, ".ell"},
          {2, 2, "Value", "F/L^n", kinds::number, ".ell"}});
}

static void addloadcases(table& t) {
    const bound m7 = declared(7);
    const rowmaker loadcase{t, items::loadcase};
    loadcase("lcname", "Load case name", &lcname, {m7}, {0, 0, "Name", "", kinds::text, ".lcd"},
             false);
    loadcase("lctype", "Kind of a load case", &lctype, {m7},
             {0, 0, "Kind", "", kinds::code, ".lcd"}, true);
    loadcase("lcpar", "Parameter of a load case", &lcpar, {m7, fixed(4)},
             {0, 4, "Parameter", "", kinds::number, ".lcd"}, true);
}

static void addcombinations(table& t) {
    const bound m7 = declared(7), rows = {maxcombinations, 7};
    // A list of factors by load case for each combination.
    t.push_back({"lcomb",
                 "Load combination",
                 &lcomb,
                 {rows, m7},
                 roles::model,
                 items::none,
                 2,
                 [] { return long(ncomb()); },
                 [](long) { return long(nlc()); },
                 {{0, 0, "Multiplier", "", kinds::number, ".lco"}}});
    t.push_back({"lcombname",
                 "Load combination name",
                 &lcombname,
                 {rows},
                 roles::model,
                 items::combination,
                 1,
                 onelist,
                 countsof(items::combination),
                 {{0, 0, "Name", "", kinds::text, ".lco"}}});
    t.push_back({"lcdesc", "Equation text", &lcdesc, {rows}, roles::work});
    t.push_back({"dispres", "Nodal force", &dispres, {m7, declared(1), fixed(6)}, roles::result});
}

static void addgraphics(table& t) {
    const bound m5 = declared(5);
    const std::vector<bound> shape = {m5, fixed(3), fixed(3)};
    t.push_back({"graphics",
                 "Graphic element",
                 &graphics,
                 shape,
                 roles::model,
                 items::graphic,
                 1,
                 onelist,
                 countsof(items::graphic),
                 {{0, 0, "Kind", "", kinds::code, ".gra"},
                  {1, 1, "Spaces", "", kinds::count, ".gra"},
                  {2, 2, "Factor", "", kinds::number, ".gra"},
                  {5, 7, "First point", length, kinds::number, ".gra"},
                  {9, 11, "Second point", length, kinds::number, ".gra"},
                  {13, 15, "Third point", length, kinds::number, ".gra"}}});
    t.push_back({"graphics2", "Graphic element of the buffer", &graphics2, shape, roles::buffer});
    const auto list = [&](const char* name, const char* caption, array2<int>& cells, bound upper) {
        t.push_back(
            {name,
             caption,
             &cells,
             {upper, fixed(1)},
             roles::selection,
             items::none,
             1,
             onelist,
             [&cells](long) { return long(cells(0, 0)); },
             {{0, 0, "Graphic element", "", kinds::count, "", items::graphic, losses::leaves},
              {1, 1, "Point", "", kinds::count}}});
    };
    list("graphsel", "Picked graphic element", graphsel, m5);
    list("graphsel2", "Selected graphic element", graphsel2, {0, 5, 3});  // up to three points each
}

static void addedges(table& t) {
    const bound m6 = declared(6);
    const auto work = [&](const char* name, const char* caption, arraypointer cells,
                          std::vector<bound> bounds) {
        t.push_back({name, caption, cells, std::move(bounds), roles::work});
    };
    work("graphmesh", "Graphic elements of an edge", &graphmesh, {fixed(4), declared(5)});
    work("edgedata", "Nodes along an edge", &edgedata, {fixed(4), m6});
    work("edgegrid", "Grid of generated nodes", &edgegrid, {m6, m6});
    const char* const chord = "Deviation of an edge from its chord";
    work("edgechordax", chord, &edgechordax, {m6});
    work("edgechorday", chord, &edgechorday, {m6});
    work("edgechordaz", chord, &edgechordaz, {m6});
    work("edgechordbx", chord, &edgechordbx, {m6});
    work("edgechordby", chord, &edgechordby, {m6});
    work("edgechordbz", chord, &edgechordbz, {m6});
}

static void addpatches(table& t) {
    const int edge = maxedgepieces + 1;  // cells of one edge
    std::vector<column> columns = {
        {0, 0, "Edges", "", kinds::count, ".pat"},
        {1, 1, "Type", "", kinds::code, ".pat"},
        {2, 2, "Group", "", kinds::count, ".pat", items::group, losses::instead}};
    for (int j = 1; j <= maxpatchedges; ++j) {
        columns.push_back({edge * j, edge * j, "Pieces", "", kinds::count, ".pat"});
        columns.push_back({edge * j + 1, edge * j + maxedgepieces, "Graphic element", "",
                           kinds::count, ".pat", items::graphic});
    }
    t.push_back({"patches",
                 "Patch",
                 &patches,
                 {fixed(maxpatches), fixed(maxpatchedges), fixed(maxedgepieces)},
                 roles::model,
                 items::patch,
                 1,
                 onelist,
                 countsof(items::patch),
                 columns});
    t.push_back({"patchsel",
                 "Selected patch",
                 &patchsel,
                 {fixed(maxpatches)},
                 roles::selection,
                 items::none,
                 1,
                 onelist,
                 [](long) { return long(patchsel(0)); },
                 {{0, 0, "Patch", "", kinds::count, "", items::patch, losses::leaves}}});
}

const std::vector<modelarray>& modelarrays() {
    static const table rows = [] {
        table t;
        for (const auto add : {addnodes, addelements, addgroups, addconstraints, addloads,
                               addloadcases, addcombinations, addgraphics, addedges, addpatches})
            add(t);
        return t;
    }();
    return rows;
}

const std::vector<modelscalar>& modelscalars() {
    static const std::vector<modelscalar> rows = {
        {"ncon", "Constraints", &ncon, roles::model, true},
        {"hasmass", "An element has one node", &hasmass, roles::shown},
        {"hasplates", "An element has more than two nodes", &hasplates, roles::shown},
        {"doftype", "Degrees of freedom for the solver", &doftype, roles::shown},
        {"commenttext", "Comment", &commenttext},
        {"kaltext", "Further data", &kaltext},
        {"unitstext", "Units", &unitstext, roles::model, true},
        {"lengthscale", "Conversion of lengths", &lengthscale},
        {"meshgroup", "Current group", &meshgroup, roles::shown},
        {"curlc", "Current load case", &curlc, roles::shown},
        {"curlcomb", "Current load combination", &curlcomb, roles::shown},
        {"nload", "Loads read last", &nload, roles::work},
        {"linepressure", "Line pressure", &linepressure, roles::work},
        {"modeltoolarge", "Model too large", &modeltoolarge, roles::work},
        {"resultflag", "Results no longer fit", &resultflag, roles::result},
        {"stressloaded", "Stresses in memory", &stressloaded, roles::result},
        {"maxdisp", "Largest displacement", &maxdisp, roles::result},
        {"undomark", "A move can be taken back", &undomark, roles::work},
    };
    return rows;
}

template <typename Rows>
static auto findrow(const Rows& rows, const std::string& name) -> decltype(rows.data()) {
    const auto found = std::ranges::find_if(rows, [&](const auto& r) { return name == r.name; });
    return found == rows.end() ? nullptr : &*found;
}

const modelarray* findarray(const std::string& name) {
    return findrow(modelarrays(), name);
}

const modelscalar* findscalar(const std::string& name) {
    return findrow(modelscalars(), name);
}

long lastlist(const modelarray& row) {
    return row.along == 1 ? 0 : row.bounds[0].upper();
}

// --- references of higher floors ----------------------------------------------------------------

std::vector<heldreference>& heldreferences() {
    static std::vector<heldreference> rows = {
        {"Current group", items::group, losses::instead, [] { return std::span(&meshgroup, 1); }},
        {"Group shown in a view", items::group, losses::zero,
         [] { return viewgroup.row().subspan(1); }}};
    return rows;
}

void holdreference(const char* caption, items refers, losses lost,
                   std::function<std::span<int>()> numbers) {
    std::erase_if(heldreferences(),
                  [&](const auto& r) { return caption == std::string(r.caption); });
    heldreferences().push_back({caption, refers, lost, std::move(numbers)});
}
