// SPDX-License-Identifier: GPL-3.0-or-later
// Refinement of elements. The parts are worked out beside the model and enter it when all fit.
#include "edit/refine.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/modelitems.h"
#include "core/modelsize.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/views.h"
#include "edit/selection.h"
#include "view/moddraw.h"

namespace {

using place = std::array<float, 3>;

struct placehash {
    std::size_t operator()(const place& p) const {
        std::size_t h = 0;
        for (const float v : p) {
            std::uint32_t bits = 0;
            const float plain = v == 0 ? 0 : v;  // both zeros are one place
            std::memcpy(&bits, &plain, sizeof bits);
            h = (h ^ bits) * 0x9E3779B97F4A7C15u;
            h ^= h >> 29;
        }
        return h;
    }
};

using corners = std::array<int, 4>;

// A side by its two nodes.
std::uint64_t sideof(int a, int b) {
    return std::uint64_t(std::min(a, b)) << 32 | std::uint64_t(std::max(a, b));
}

struct part {
    int parent = 0;
    corners node{};
    int end = 0;  // of a line: the end of the parent that it has
};

// The nodes and parts made so far; new nodes are numbered on from the model's.
struct refinement {
    std::vector<place> made;
    std::unordered_map<place, int, placehash> known;
    std::unordered_set<std::uint64_t> divided;      // sides
    std::vector<part> parts;                        // appended
    std::vector<std::pair<int, corners>> replaced;  // what becomes of the elements themselves

    place at(int n) const {
        if (n > nnodes()) return made[std::size_t(n - nnodes() - 1)];
        return {nodes(0, n, 0), nodes(0, n, 1), nodes(0, n, 2)};
    }
    int addnode(const place& p) {
        made.push_back(p);
        return nnodes() + int(made.size());
    }
    // The midpoint of two nodes, unless a node at that place was made before.
    int refinenode(int a, int b) {
        const place p = at(a), q = at(b);
        place middle;
        for (std::size_t k = 0; k < 3; ++k) middle[k] = (p[k] + q[k]) / 2;
        const auto found = known.find(middle);
        divided.insert(sideof(a, b));
        return found != known.end() ? found->second : known[middle] = addnode(middle);
    }
};

}  // namespace

static void splitline(refinement& r, int e, const corners& n) {
    const int m = r.refinenode(n[0], n[1]);
    r.replaced.push_back({e, {n[0], m}});
    r.parts.push_back({e, {m, n[1]}, 2});
}

static void splittriangle(refinement& r, int e, const corners& n) {
    const int m1 = r.refinenode(n[0], n[1]), m2 = r.refinenode(n[1], n[2]),
              m3 = r.refinenode(n[2], n[0]);
    for (const corners& c : {corners{n[0], m1, m3}, corners{m1, n[1], m2}, corners{m3, m2, n[2]}})
        r.parts.push_back({e, c});
    r.replaced.push_back({e, {m1, m2, m3}});
}

static void splitquadrilateral(refinement& r, int e, const corners& n) {
    const int m1 = r.refinenode(n[0], n[1]), m2 = r.refinenode(n[1], n[2]),
              m3 = r.refinenode(n[2], n[3]), m4 = r.refinenode(n[3], n[0]);
    place middle{};
    for (std::size_t k = 0; k < 3; ++k)
        middle[k] = (r.at(n[0])[k] + r.at(n[1])[k] + r.at(n[2])[k] + r.at(n[3])[k]) / 4;
    const int c = r.addnode(middle);
    for (const corners& q :
         {corners{n[0], m1, c, m4}, corners{m1, n[1], m2, c}, corners{c, m2, n[2], m3}})
        r.parts.push_back({e, q});
    r.replaced.push_back({e, {m4, c, m3, n[3]}});
}

static refinement split() {
    refinement r;
    for (int i = 1; i <= int(elemsel(0)); ++i) {
        const int e = int(elemsel(i));
        const int elnn = nodesoftype(elems(e, 0));
        corners n{};
        for (int k = 0; k < elnn; ++k) n[std::size_t(k)] = int(elems(e, k + 1));
        if (elnn == 2) splitline(r, e, n);
        if (elnn == 3) splittriangle(r, e, n);
        if (elnn == 4) splitquadrilateral(r, e, n);
    }
    return r;
}

static void setcorners(int e, const corners& n) {
    for (int k = 0; k < 4; ++k) elems(e, k + 1) = float(n[std::size_t(k)]);
}

static void fillpart(int e, const part& p) {
    copyitem(items::element, p.parent, e);
    setcorners(e, p.node);
    for (int v = 1; v <= nviews; ++v)
        if (elemvis(v, e) && viewselnum(v) != 0) ++viewselnum(v);
    // The far half of a line has the release of that end, the near half loses it.
    for (int end = 0; end <= 4; ++end)
        if (p.end != end) std::ranges::fill(endrelease.row(e, end), 0.0f);
    if (p.end == 2) std::ranges::fill(endrelease.row(p.parent, 2), 0.0f);
    elemsel(0) = elemsel(0) + 1;
    elemsel(long(elemsel(0))) = float(e);
}

// A distributed load is one a length or an area: the parts carry the same.
static long loadrowsneeded(int lc, const std::vector<std::vector<int>>& parts) {
    long rows = long(elemload(lc, 0, 0));
    for (int i = 1; i <= int(elemload(lc, 0, 0)); ++i)
        rows += long(parts[std::size_t(elemload(lc, i, 0))].size());
    return rows;
}

static void copyloads(const std::vector<std::vector<int>>& parts) {
    for (int lc = 1; lc <= nlc(); ++lc) {
        const int count = int(elemload(lc, 0, 0));
        int rows = count;
        for (int i = 1; i <= count; ++i)
            for (const int e : parts[std::size_t(elemload(lc, i, 0))]) {
                ++rows;
                elemload(lc, rows, 0) = float(e);
                elemload(lc, rows, 1) = elemload(lc, i, 1);
                elemload(lc, rows, 2) = elemload(lc, i, 2);
            }
        elemload(lc, 0, 0) = float(rows);
    }
}

static bool fits(const refinement& r, const std::vector<std::vector<int>>& parts) {
    long rows = 0;
    for (int lc = 1; lc <= nlc(); ++lc) rows = std::max(rows, long(loadrowsneeded(lc, parts)));
    return growby(long(r.made.size()), long(r.parts.size())) && growfor({{sizeconditions, rows}});
}

// --- what the user should know ------------------------------------------------------------------

// Degrees of freedom that are held, a bit each, by node.
static std::vector<int> heldnodes() {
    std::vector<int> held(std::size_t(nnodes()) + 1, 0);
    for (int i = 1; i <= ncon; ++i)
        if (connode(i) >= 1 && connode(i) <= nnodes())
            held[std::size_t(connode(i))] |= 1 << condof(i);
    return held;
}

// Sides that were divided and that an element which was not refined has too.
static int dividedsides(const refinement& r) {
    const auto selected = marksof(selectedelements(), nelems());
    int count = 0;
    for (int e = 1; e <= nelems(); ++e) {
        const int elnn = nodesoftype(elems(e, 0));
        if (selected[std::size_t(e)] || elnn < 2) continue;
        for (int k = 1; k <= (elnn == 2 ? 1 : elnn); ++k)
            count += int(r.divided.count(sideof(int(elems(e, k)), int(elems(e, k % elnn + 1)))));
    }
    return count;
}

// before: the nodes that there were.
static std::string noteofrefinement(const refinement& r, int before) {
    const std::vector<int> held = heldnodes();
    int unheld = 0, twice = 0;
    for (const std::uint64_t s : r.divided) unheld += (held[s >> 32] & held[s & 0xFFFFFFFFu]) != 0;
    for (int n = 1; n <= before; ++n)
        twice += int(r.known.count({nodes(0, n, 0), nodes(0, n, 1), nodes(0, n, 2)}));
    std::string text;
    const auto add = [&](int count, const std::string& what) {
        if (count > 0) text += (text.empty() ? "" : "\n") + numbertext(count) + what;
    };
    add(unheld, " new node(s) between two supported nodes have no support themselves.");
    add(dividedsides(r),
        " divided side(s) belong to elements that were not refined too: the model is open there "
        "until those are refined and merged.");
    if (!automergenodes)
        add(twice,
            " new node(s) lie where a node stands already: merge them by [Merge now] in "
            "General Options.");
    return text;
}

int refineelements() {
    if (elemsel(0) == 0) return 0;
    if (!theplatform().yes("This will refine all selected Elements, Continue?")) return 0;
    const hourglass wait;
    const refinement r = split();
    std::vector<std::vector<int>> parts(std::size_t(nelems()) + 1);
    for (std::size_t i = 0; i < r.parts.size(); ++i)
        parts[std::size_t(r.parts[i].parent)].push_back(nelems() + int(i) + 1);
    if (!fits(r, parts)) return 0;
    hideselection();
    const int before = nnodes();
    copyloads(parts);
    int n = appenditems(items::node, long(r.made.size()));
    for (const place& p : r.made) std::ranges::copy(p, nodes.row(0, n++).begin());
    for (const auto& [e, corner] : r.replaced) setcorners(e, corner);
    int e = appenditems(items::element, long(r.parts.size()));
    for (const part& p : r.parts) fillpart(e++, p);
    gatherelementnodes();
    dropresults();     // elements are others under their numbers
    pasteflag = true;  // at its release the selection merges with neighbours refined before
    redrawall();
    if (const std::string text = noteofrefinement(r, before); !text.empty())
        theplatform().message(text, icons::information);
    return int(r.replaced.size());
}
