// SPDX-License-Identifier: GPL-3.0-or-later
// Meshes of patches in the model.
#include "tools/patchmesh.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "core/catalogue.h"
#include "core/elempatch.h"
#include "core/model.h"
#include "core/modelitems.h"
#include "core/numtext.h"
#include "core/pack.h"
#include "core/session.h"
#include "edit/Edit.h"
#include "files/filop.h"
#include "tools/Surfaces.h"
#include "tools/enterbuffers.h"
#include "tools/genmesh.h"
#include "tools/meshcheck.h"
#include "tools/spacecells.h"

void ownelements(int p, int first, int last) {
    for (int e = first; e <= last; ++e) elempatch(e) = p;
}

// --- finding ------------------------------------------------------------------------------------

namespace {

// The elements of the model by the place of their middle.
class middles {
  public:
    middles() {
        for (int e = 1; e <= nelems(); ++e)
            if (nodesoftype(elems(e, 0)) > 1) cells.add(middle(e), e);
    }
    // An element of this type there that no patch has yet; 0 for none.
    int take(float type, const point3& at) const {
        return cells.around(at, [&](int e) {
            return elems(e, 0) == type && elempatch(e) == 0 && lengthof(middle(e) - at) < nodetol;
        });
    }

  private:
    static point3 middle(int e) {
        const int corners = nodesoftype(elems(e, 0));
        point3 sum{};
        for (int k = 1; k <= corners; ++k)
            for (long axis = 0; axis < 3; ++axis)
                sum[std::size_t(axis)] += nodes(0, long(elems(e, k)), axis) / corners;
        return sum;
    }
    spacegrid cells{nodetol};
};

}  // namespace

static point3 middleofbuffer(int e) {
    const int corners = nodesoftype(tmpelems(e, 0));
    point3 sum{};
    for (int k = 1; k <= corners; ++k)
        for (long axis = 0; axis < 3; ++axis)
            sum[std::size_t(axis)] += tmpnodes(long(tmpelems(e, k)), axis + 1) / corners;
    return sum;
}

static void emptybuffers() {
    tmpnodes(0, 0) = tmpelems(0, 0) = 0;
}

void findownelements() {
    const keptmeshchoice choice;
    for (int g = 0; g <= ngraphics(); ++g)
        for (int j = 0; j <= 3; ++j)
            std::ranges::copy(graphics.row(g, j), graphics2.row(g, j).begin());
    const middles model;
    for (int p = 1; p <= patches(0, 0, 0); ++p) {
        emptybuffers();
        if (!rebuildpatch(p)) continue;
        for (int e = 1; e <= int(tmpelems(0, 0)); ++e)
            if (const int own = model.take(tmpelems(e, 0), middleofbuffer(e)); own != 0)
                elempatch(own) = p;
    }
    emptybuffers();
    graphics2(0, 0, 0) = 0;
}

// --- meshing again ------------------------------------------------------------------------------

// The meshes of the patches in the buffers; last: the last element of each. A fault is returned.
static std::string makemeshes(const std::vector<int>& list, std::vector<int>& last) {
    const keptmeshchoice choice;
    emptybuffers();
    int inverted = 0;
    for (const int p : list) {
        const std::string name = "Patch " + numbertext(p) + ": ";
        const int before = int(tmpelems(0, 0));
        if (!loadpatch(graphics, p))
            return name + "one of its graphic elements is gone, or its element type does not fit";
        checkedges(graphics);
        if (meshok) checkmeshsize(graphics);
        if (!meshok || !buildmesh(graphics)) return name + meshmessage;
        inverted += invertedelements(before + 1);
        if (inverted > 0) return name + numbertext(inverted) + " of its elements would be inverted";
        last.push_back(int(tmpelems(0, 0)));
    }
    return {};
}

static std::vector<bool> nodeswithconditions() {
    std::vector<bool> marks(std::size_t(nnodes()) + 1, false);
    const auto mark = [&](int n) {
        if (n >= 1 && n <= nnodes()) marks[std::size_t(n)] = true;
    };
    for (int i = 1; i <= ncon; ++i) mark(connode(i));
    for (int lc = 1; lc <= nlc(); ++lc)
        for (int i = 1; i <= loadnode(lc, 0); ++i) mark(loadnode(lc, i));
    return marks;
}

static std::vector<bool> nodesinuse() {
    std::vector<bool> marks(std::size_t(nnodes()) + 1, false);
    for (int e = 1; e <= nelems(); ++e)
        for (int k = 1; k <= nodesoftype(elems(e, 0)); ++k) marks[std::size_t(elems(e, k))] = true;
    return marks;
}

static long elementloads() {
    long sum = 0;
    for (int lc = 1; lc <= nlc(); ++lc) sum += long(elemload(lc, 0, 0));
    return sum;
}

// The elements of the patches, and the nodes that they alone used, go; nodes with conditions stay
// for the new mesh. Returns how many elements went.
static int dropmeshes(const std::vector<int>& list) {
    std::vector<bool> ofpatch(std::size_t(patches(0, 0, 0)) + 1, false);
    for (const int p : list) ofpatch[std::size_t(p)] = true;
    const std::vector<bool> before = nodesinuse();
    int count = 0;
    for (int e = 1; e <= nelems(); ++e) {
        if (elempatch(e) < 1 || !ofpatch[std::size_t(elempatch(e))]) continue;
        elems(e, 0) = 0;
        ++count;
    }
    packelems();
    const std::vector<bool> after = nodesinuse(), kept = nodeswithconditions();
    newnumbers number(std::size_t(nnodes()) + 1, 0);
    int c = 0;
    for (std::size_t n = 1; n < number.size(); ++n)
        if (after[n] || kept[n] || !before[n]) number[n] = ++c;
    followitems(items::node, number);
    closeitems(items::node, number);
    compactbc();
    return count;
}

// Nodes that the new mesh has left without an element, though they carry something.
static int leftfree() {
    const std::vector<bool> used = nodesinuse(), kept = nodeswithconditions();
    int count = 0;
    for (std::size_t n = 1; n < used.size(); ++n) count += kept[n] && !used[n];
    return count;
}

std::string meshagain(const std::vector<int>& list, bool& done) {
    std::vector<int> last;
    const std::string fault = makemeshes(list, last);
    done = fault.empty();
    if (!done) {
        emptybuffers();
        return fault + "; nothing was changed";
    }
    const int freebefore = leftfree();
    const long loadsbefore = elementloads();
    const int gone = dropmeshes(list), made = int(tmpelems(0, 0)), first = nelems() + 1;
    const Flag merges = automergenodes;
    automergenodes = true;  // the mesh hangs together with what is beside it
    const entrance entered = enterbuffers([&] {
        for (std::size_t i = 0; i < list.size(); ++i)
            ownelements(list[i], first + (i == 0 ? 0 : last[i - 1]), first + last[i] - 1);
    });
    automergenodes = merges;
    std::string text =
        numbertext(gone) + " elements went, " + numbertext(made) + " came" + entered.text;
    if (gone == 0) text += ". None of the elements before was known as one of these patches";
    if (const long loads = loadsbefore - elementloads(); loads > 0)
        text += ". " + numbertext(loads) + " element loads went with their elements";
    if (const int left = leftfree() - freebefore; left > 0)
        text += ". " + numbertext(left) +
                " nodes with constraints or loads are left where the new mesh has no node";
    return text;
}

// --- spaces -------------------------------------------------------------------------------------

static double spacesnow(int g) {
    return std::max(1.0f, graphics(g, 0, 1));
}

std::string sharespaces(const std::vector<int>& pieces, int total, std::map<int, int>& spaces) {
    double before = 0, sofar = 0;
    int unset = 0, left = total, given = 0;
    for (const int g : pieces) {
        const auto known = spaces.find(g);
        if (known != spaces.end()) {
            left -= known->second;
        } else {
            before += spacesnow(g);
            ++unset;
        }
    }
    if (left < unset) return "has more pieces than spaces";
    if (unset == 0) return left == 0 ? "" : "would need two numbers of spaces";
    for (const int g : pieces) {
        if (spaces.contains(g)) continue;
        sofar += spacesnow(g);
        --unset;
        const int upto =
            std::clamp(int(std::lround(sofar / before * left)), given + 1, left - unset);
        spaces[g] = upto - given;
        given = upto;
    }
    return {};
}

namespace {

struct patchedge {
    int p, edge;
    auto operator<=>(const patchedge&) const = default;
};

class spreading {
  public:
    spreading() {
        for (int p = 1; p <= patches(0, 0, 0); ++p)
            for (int e = 1; e <= patches(p, 0, 0); ++e)
                for (int k = 1; k <= patches(p, e, 0); ++k)
                    users[patches(p, e, k)].push_back({p, e});
    }
    // Sets an edge and all that follows; false with the fault told.
    bool set(const patchedge& edge, int spaces) {
        bool good = want(edge, spaces);
        for (std::size_t i = 0; good && i < open.size(); ++i) good = onwards(open[i]);
        return good;
    }
    std::vector<int> touched() const {
        std::vector<int> list;
        for (const auto& [edge, n] : wanted)
            if (list.empty() || list.back() != edge.p) list.push_back(edge.p);
        return list;
    }
    std::map<int, int> spaces;  // of graphic elements, as they shall be
    std::string fault;

  private:
    bool refuse(const patchedge& at, const std::string& what) {
        fault = "Edge " + numbertext(at.edge) + " of patch " + numbertext(at.p) + " " + what;
        return false;
    }
    double spacesof(int g) const {
        const auto found = spaces.find(g);
        return found != spaces.end() ? found->second : spacesnow(g);
    }
    bool want(const patchedge& edge, int spaces) {
        const auto [known, isnew] = wanted.insert({edge, spaces});
        if (!isnew)
            return known->second == spaces || refuse(edge, "would need two numbers of spaces");
        open.push_back(edge);
        return share(edge, spaces);
    }
    bool share(const patchedge& at, int total) {
        std::vector<int> pieces;
        for (int k = 1; k <= patches(at.p, at.edge, 0); ++k)
            pieces.push_back(patches(at.p, at.edge, k));
        const std::string what = sharespaces(pieces, total, spaces);
        return what.empty() || refuse(at, what);
    }
    // The edges that must agree with this one, and the patches beside it.
    bool onwards(const patchedge at) {
        const int edges = patches(at.p, 0, 0), total = wanted[at];
        for (int e = 1; e <= edges; ++e) {
            const bool agrees = edges == 3 || (edges == 4 && (e - 1) / 2 == (at.edge - 1) / 2);
            if (e != at.edge && agrees && !want({at.p, e}, total)) return false;
        }
        for (int k = 1; k <= patches(at.p, at.edge, 0); ++k)
            for (const patchedge& other : users[patches(at.p, at.edge, k)]) {
                if (wanted.contains(other)) continue;
                double sum = 0;
                for (int i = 1; i <= patches(other.p, other.edge, 0); ++i)
                    sum += spacesof(patches(other.p, other.edge, i));
                if (!want(other, int(sum))) return false;
            }
        return true;
    }
    std::vector<patchedge> open;  // edges whose neighbours follow
    std::map<int, std::vector<patchedge>> users;
    std::map<patchedge, int> wanted;
};

}  // namespace

std::vector<int> spreadspaces(int p, int edge, int spaces, std::string& fault) {
    for (int q = 1; q <= patches(0, 0, 0); ++q)
        for (int e = 1; e <= patches(q, 0, 0); ++e)
            for (int k = 1; k <= patches(q, e, 0); ++k)
                if (const int g = patches(q, e, k);
                    g < 1 || g > ngraphics() || kindof(graphics, g) == kindfree) {
                    fault = "Patch " + numbertext(q) + " names a graphic element that is gone";
                    return {};
                }
    spreading s;
    if (!s.set({p, edge}, spaces)) {
        fault = s.fault + "; nothing was changed";
        return {};
    }
    for (const auto& [g, n] : s.spaces) graphics(g, 0, 1) = float(n);
    return s.touched();
}

// --- copies -------------------------------------------------------------------------------------

namespace {
// A patch in the buffers: members are numbers of the second list.
struct copiedpatch {
    int edges, type, group;
    std::array<std::vector<int>, 5> chain;
    int lastelement;
};
struct patchcopies {
    std::vector<copiedpatch> list;
    float graphics = 0, elements = 0;  // of the buffers that they belong to
};
}  // namespace

static patchcopies copies;

// The number in the second list of a graphic element, which is copied there once.
static int copyofgraphic(int g, std::map<int, int>& known) {
    const auto [place, isnew] = known.insert({g, int(known.size()) + 1});
    const int to = place->second;
    for (int j = 0; isnew && j <= 3; ++j)
        std::ranges::copy(graphics.row(g, j), graphics2.row(to, j).begin());
    graphics2(0, 0, 0) = float(known.size());
    return to;
}

static void copypatch(int p, std::map<int, int>& known) {
    if (!loadpatch(graphics, p)) return;
    copiedpatch copy{edgesof(meshtype), mesheltype, meshgroup, {}, 0};
    for (int e = 1; e <= copy.edges; ++e)
        for (int k = 1; k <= graphmesh(e, 0); ++k) {
            graphmesh(e, k) = copyofgraphic(graphmesh(e, k), known);
            copy.chain[std::size_t(e)].push_back(graphmesh(e, k));
        }
    checkedges(graphics2);
    if (meshok) checkmeshsize(graphics2);
    if (!meshok || !buildmesh(graphics2)) return;
    copy.lastelement = int(tmpelems(0, 0));
    copies.list.push_back(std::move(copy));
}

static void copypatches() {
    const keptmeshchoice choice;
    copies = {};
    std::map<int, int> known;
    for (int i = 1; i <= int(patchsel(0)); ++i) copypatch(int(patchsel(i)), known);
    copies.graphics = graphics2(0, 0, 0);
    copies.elements = tmpelems(0, 0);
}

// Other contents of the buffers than those that were copied bring no patches.
static void pastepatches(int graphicsbefore, int elementsbefore) {
    if (copies.list.empty() || copies.graphics != graphics2(0, 0, 0) ||
        copies.elements != tmpelems(0, 0))
        return;
    int first = elementsbefore + 1;
    for (const copiedpatch& copy : copies.list) {
        const int p = patches(0, 0, 0) + 1;
        if (p > maxpatches) return;
        patches(p, 0, 0) = copy.edges;
        patches(p, 0, 1) = copy.type;
        patches(p, 0, 2) = copy.group;
        for (int e = 1; e <= copy.edges; ++e) {
            const auto& chain = copy.chain[std::size_t(e)];
            patches(p, e, 0) = int(chain.size());
            for (std::size_t k = 0; k < chain.size(); ++k)
                patches(p, e, long(k) + 1) = graphicsbefore + chain[k];
        }
        patches(0, 0, 0) = p;
        ownelements(p, first, elementsbefore + copy.lastelement);
        first = elementsbefore + copy.lastelement + 1;
    }
}

void wirepatches() {
    patchesread = findownelements;
    copierofpatches = {copypatches, pastepatches};
}
