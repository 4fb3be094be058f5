// SPDX-License-Identifier: GPL-3.0-or-later
// The form of the mesh generator.
#include "tools/mesh2d.h"

#include <algorithm>
#include <map>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "edit/Mouseprocedures.h"
#include "edit/merge.h"
#include "edit/move.h"
#include "edit/selection.h"
#include "tools/Surfaces.h"
#include "tools/checkmodel.h"
#include "tools/enterbuffers.h"
#include "tools/genmesh.h"
#include "tools/groups.h"
#include "tools/loopedges.h"
#include "tools/meshcheck.h"
#include "tools/patchmesh.h"
#include "view/drawelems.h"
#include "view/moddraw.h"

int edgeno;
Flag edgepending;
const char* const meshtypes[linemesh + 1] = {"Quad", "Triang", "Transit", "Line"};

namespace {
struct meshrow {
    int edges;
    const char* frame;
    bool cangenerate;
    int corners;  // of the element types that fit
};
}  // namespace

static const meshrow meshrows[] = {
    {4, "Quadrilateral Mesh", true, 4},
    {3, "Triangular Mesh", true, 3},
    {3, "Transition Mesh", false, 4},
    {1, "Line Mesh", true, 2},
};

static const char picking[] =
    "Select edges by pressing edge button on form. Use mouse to select graphic element(s). Note "
    "the order of the edges as defined on the example drawing.";

// --- the select menu ----------------------------------------------------------------------------

// Graphic elements alone can be picked while a mesh is made.
static void reduceselectmenu() {
    setselectitem(selectgraphics);
    for (int i = 0; i < selectgraphics; ++i) MnuSelectItem(i).enabled = false;
    theplatform().refresh();
}

static void restoreselectmenu() {
    for (menustate& item : MnuSelectItem.row()) item.enabled = true;
    theplatform().refresh();
}

static void emptybuffers(mesh2dform& form) {
    tmpnodes(0, 0) = tmpelems(0, 0) = 0;
    form.inverted = 0;
}

// --- opening and choices ------------------------------------------------------------------------

static void countedges(mesh2dform& form) {
    for (int e = 1; e <= 4; ++e)
        form.count[std::size_t(e - 1)] =
            graphmesh(e, 0) == 0 ? "" : numbertext(nodesonedge(graphics, e));
}

static std::vector<int> selectedgraphicelements() {
    std::vector<int> list;
    for (int i = 1; i <= graphsel(0, 0); ++i) list.push_back(graphsel(i, 0));
    return list;
}

// A closed loop that is selected becomes the edges.
static void takeloop(mesh2dform& form, const std::vector<int>& elements) {
    const regionedges region = divideloop(elements);
    if (region.count == 0) return;
    choosemeshtype(form, region.count == 4 ? quadmesh : triangmesh);
    for (int e = 1; e <= region.count; ++e) {
        const auto& chain = region.chain[std::size_t(e - 1)];
        for (std::size_t k = 0; k < chain.size(); ++k) graphmesh(e, long(k) + 1) = chain[k];
        graphmesh(e, 0) = int(chain.size());
    }
    countedges(form);
    form.message = "The selected loop: " + tellregion(region) +
                   ". Press <Generate Mesh>, or an edge button to change an edge";
}

mesh2dform openmesh2d() {
    mesh2dform form;
    const std::vector<int> selected = selectedgraphicelements();
    emptybuffers(form);
    for (int e = 0; e <= 4; ++e) graphmesh(e, 0) = 0;
    meshgroup = 1;
    meshmode = true;
    previewbuffers = true;
    form.message = picking;
    for (int g = ngroups(); g >= 1; --g) form.groups.push_back(groupname(g));
    form.chosengroup = ngroups() - 1;
    reduceselectmenu();
    choosemeshtype(form, quadmesh);
    takeloop(form, selected);
    return form;
}

void closemesh2d(mesh2dform& form) {
    const bool shown = tmpnodes(0, 0) != 0;
    emptybuffers(form);
    meshmode = edgepending = false;
    previewbuffers = false;
    restoreselectmenu();
    if (shown) redrawall();
}

void LoadElem(mesh2dform& form) {
    form.types.clear();
    for (int t = 1; t < maxelementtypes; ++t)
        if (eltypnodes(t) == meshrows[form.type].corners && !eltypname(t).empty())
            form.types.push_back(eltypname(t));
    chooseelementtype(form, 0);
}

void choosemeshtype(mesh2dform& form, int type) {
    const meshrow& row = meshrows[type];
    form.type = type;
    meshtype = meshtypes[type];
    form.edges = row.edges;
    form.frame = row.frame;
    form.cangenerate = row.cangenerate;
    form.message = picking;
    LoadElem(form);
    countedges(form);
}

void chooseelementtype(mesh2dform& form, int entry) {
    if (entry < 0 || entry >= int(form.types.size())) return;
    form.chosentype = entry;
    mesheltype = findtype(form.types[std::size_t(entry)]);
    form.typenodes = numbertext(eltypnodes(mesheltype));
}

void choosemeshgroup(mesh2dform& form, int entry) {
    if (entry < 0 || entry >= int(form.groups.size())) return;
    form.chosengroup = entry;
    meshgroup = int(form.groups.size()) - entry;
}

// --- edges --------------------------------------------------------------------------------------

void startedge(mesh2dform& form, int index) {
    edgeno = index;
    form.message = picking;
    reduceselectmenu();
    clearselection();
    graphsel(0, 0) = graphsel2(0, 0) = 0;
    edgepending = true;
    prompt("Edge " + numbertext(index + 1), "Graphics", "for mesh",
           "<Mouse Left Button> to select, <ESC> or <Enter> to return");
}

void storeedge(mesh2dform& form) {
    if (!edgepending) return;
    edgepending = false;
    for (int k = 1; k <= graphsel(0, 0); ++k) graphmesh(edgeno + 1, k) = graphsel(k, 0);
    graphmesh(edgeno + 1, 0) = graphsel(0, 0);
    countedges(form);
    showselection();
    prompt("Select", "Graphics", "for mesh", "");
}

static std::vector<int> piecesofedge(int e) {
    std::vector<int> list;
    for (int k = 1; k <= graphmesh(e, 0); ++k) list.push_back(graphmesh(e, k));
    return list;
}

// The spaces of edges first..last become those of the finest.
static std::string equalto(int first, int last, std::map<int, int>& spaces) {
    double most = 0;
    for (int e = first; e <= last; ++e) {
        if (graphmesh(e, 0) == 0) return "Edge " + numbertext(e) + " has no graphic elements";
        most = std::max(most, nodesonedge(graphics, e) - 1);
    }
    for (int e = first; e <= last; ++e)
        if (const auto fault = sharespaces(piecesofedge(e), int(most), spaces); !fault.empty())
            return "Edge " + numbertext(e) + " " + fault;
    return {};
}

void equalspaces(mesh2dform& form) {
    std::map<int, int> spaces;
    if (form.edges == 1) return;
    form.message = equalto(1, form.edges == 4 ? 2 : 3, spaces);
    if (form.message.empty() && form.edges == 4) form.message = equalto(3, 4, spaces);
    if (!form.message.empty()) return;
    for (const auto& [g, n] : spaces) graphics(g, 0, 1) = float(n);
    countedges(form);
    form.message = "Opposite edges have as many spaces; press <Generate Mesh>";
    redrawall();
}

// --- the mesh -----------------------------------------------------------------------------------

// What a line mesh leaves out, and a mesh that the solver could not use as it is.
static std::string noteoffolds(int first) {
    const auto [a, b] = crossingedges();
    if (a != 0)
        return "Error: the contour crosses itself, " +
               (a == b ? "Edge " + numbertext(a) + " cuts itself"
                       : "Edge " + numbertext(a) + " cuts Edge " + numbertext(b)) +
               "; the mesh can not be accepted, press <Reset>";
    const char* const remedy = meshtype == "Triang"
                                   ? "make the edge that is curved or unevenly spaced Edge 1"
                                   : "divide the region into simpler ones";
    if (const int count = invertedelements(first); count > 0)
        return "Error: the mesh is folded, " + numbertext(count) +
               " element(s) are inverted and it can not be accepted; press <Reset> and " + remedy;
    if (const int folds = foldedplaces(first); folds > 0)
        return "Note: the mesh is folded in " + numbertext(folds) + " place(s); " + remedy;
    return "";
}

// first: of the elements just made.
static std::string noteofmesh(int first) {
    const int count = meshtype == "Line" ? graphmesh(1, 0) : 0;
    for (int k = 1; k <= count; ++k) {
        const int g = graphmesh(1, k);
        if (kindof(graphics, g) == kindcurve)
            return "Note: a curve gives nodes but no elements (graphic element " + numbertext(g) +
                   ")";
        if (kindof(graphics, g) == kindcircle && k < count)
            return "Note: a circle section inside a chain lacks its last element (graphic "
                   "element " +
                   numbertext(g) + "); mesh it on its own";
    }
    if (const int sides = shortsides(first); sides > 0)
        return "Note: " + numbertext(sides) +
               " side(s) of elements are shorter than the merge tolerance; take fewer spaces or a "
               "distribution factor nearer to 1";
    if (const std::string note = noteoffolds(first); !note.empty()) return note;
    if (meshfaded)
        return "Note: the rows follow Edge 3, fading towards the opposite corner, because the "
               "usual ones would invert elements";
    if (const std::string note = tolerancenote(); !note.empty()) return "Note: " + note;
    return "";
}

static std::string countsofbuffers() {
    return numbertext(newplaces()) + " nodes and " + numbertext(tmpelems(0, 0)) + " elements";
}

void generatemesh(mesh2dform& form) {
    if (!form.cangenerate) return;
    checkedges(graphics);
    checkmeshsize(graphics);
    const int before = int(tmpelems(0, 0));
    const bool another = tmpnodes(0, 0) != 0;
    if (meshok) {
        const hourglass wait;
        hideselection();
        buildmesh(graphics);
        showselection();
    }
    form.message = meshmessage;
    if (!meshok) return;
    const int inverted = invertedelements(before + 1);
    form.inverted += inverted;
    form.message = countsofbuffers();
    if (another) form.message += ", with what was generated before (<Reset> takes that away)";
    if (form.inverted == 0) form.message += "; press <Accept> to add them to the model";
    if (const std::string note = noteofmesh(before + 1); !note.empty()) form.message += ". " + note;
}

// The mesh stands without its patch when the table can not hold it.
static std::string storenewpatch() {
    const int p = patches(0, 0, 0) + 1;
    std::string fault;
    guarded(
        [&] {
            storepatch(p);
            patches(0, 0, 0) = p;
        },
        [&](const runtimeerror& e) { fault = "The mesh has no patch: " + e.what; });
    return fault;
}

// The new plates take the local axes of those beside them.
static void alignmesh(mesh2dform& form) {
    const walkresult walked = browsgroup(meshgroup);
    if (walked.rows < 0) form.message += ". " + std::string(toomanyrows);
    if (walked.rows < 0 || walked.mirrored + walked.turned == 0) return;
    form.message += "; local axes made to agree: " + walktext(walked);
    redrawall();
}

void acceptmesh(mesh2dform& form) {
    if (tmpnodes(0, 0) == 0) {
        form.message = "There is no mesh to accept; press <Generate Mesh> first";
        return;
    }
    if (form.inverted > 0) {
        form.message = "The mesh can not be accepted: " + numbertext(form.inverted) +
                       " of its elements are inverted. Press <Reset> and divide the region";
        return;
    }
    const hourglass wait;
    const int first = nelems() + 1;
    const entrance entered = enterbuffers([&] {
        form.message = storenewpatch();
        if (form.message.empty()) ownelements(patches(0, 0, 0), first, nelems());
    });
    if (!entered.done) return;
    emptybuffers(form);
    restoreselectmenu();
    if (form.message.empty()) form.message = "The mesh is part of the model";
    form.message += entered.text;
    alignmesh(form);
}

void resetmesh(mesh2dform& form) {
    hideselection();
    emptyselection();
    emptybuffers(form);
    form.message = picking;
    redrawall();
}
