// SPDX-License-Identifier: GPL-3.0-or-later
// Findings on nodes and elements.
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/session.h"
#include "edit/merge.h"
#include "edit/nodegrid.h"
#include "tools/cracks.h"
#include "tools/elementshape.h"
#include "tools/findings.h"

// Limits of a shape that is told. The solver refuses a plate whose corners leave their mean plane
// by more than refusedwarp.
static const double mostwarp = 0.05, refusedwarp = 0.3, mostaspect = 10, leastangle = 10;

// --- nodes --------------------------------------------------------------------------------------

static bool standssomewhere(int n) {
    const auto at = nodes.row(0, n);
    return std::isfinite(at[0]) && std::isfinite(at[1]) && std::isfinite(at[2]);
}

static finding nodefinding(int n, const std::string& text = "") {
    return {nodetext(n) + text, false, false, {n}, {}};
}

static finding elementfinding(int e, const std::string& text) {
    return {elementtext(e) + text, false, false, {}, {e}};
}

static void findfreenodes(findinglist& list) {
    std::vector<bool> used(std::size_t(nnodes()) + 1, false);
    for (int e = 1; e <= nelems(); ++e)
        for (int k = 1; k <= nodesoftype(elems(e, 0)); ++k) {
            const float n = elems(e, k);
            if (n >= 1 && n <= float(nnodes())) used[std::size_t(n)] = true;
        }
    std::vector<int> placeless, unused;
    for (int n = 1; n <= nnodes(); ++n) {
        if (!standssomewhere(n)) placeless.push_back(n);
        if (!used[std::size_t(n)]) unused.push_back(n);
    }
    list.add({"node stands nowhere", "nodes stand nowhere",
              "a coordinate is no number; type it anew", true},
             placeless.size(), [&](std::size_t i) { return nodefinding(placeless[i]); });
    list.add({"free node", "free nodes", "no element uses them; delete what is not needed"},
             unused.size(), [&](std::size_t i) { return nodefinding(unused[i]); });
}

// Pairs within the merge tolerance, but for those that a spring or a rigid link joins.
static std::vector<std::pair<int, int>> doublenodes() {
    const std::size_t most = 500000;  // a tolerance beyond all measure finds every node
    std::vector<std::pair<int, int>> pairs;
    std::vector<int> placed;
    for (int n = 1; n <= nnodes(); ++n)
        if (standssomewhere(n)) placed.push_back(n);
    const auto placeof = [&](int i) { return nodes.row(0, placed[std::size_t(i) - 1]).data(); };
    const int count = int(placed.size());
    const nodegrid grid(count, placeof);
    const auto joined = joinednodes();
    for (int i = 1; i <= count && pairs.size() < most; ++i) {
        if (grid.isalone(i)) continue;
        grid.around(placeof(i), [&](int j) {
            if (j <= i || !isnear(placeof(i), placeof(j))) return;
            const std::pair pair(placed[std::size_t(i) - 1], placed[std::size_t(j) - 1]);
            if (!std::ranges::binary_search(joined, pair)) pairs.push_back(pair);
        });
    }
    std::ranges::sort(pairs);
    pairs.erase(std::unique(pairs.begin(), pairs.end()), pairs.end());
    return pairs;
}

static void finddoublenodes(findinglist& list) {
    const auto pairs = doublenodes();
    list.add({"pair of double nodes", "pairs of double nodes",
              "they lie within the merge tolerance of each other; merge them", true},
             pairs.size(), [&](std::size_t i) {
                 const auto [n, m] = pairs[i];
                 return finding{
                     "Nodes " + numbertext(n) + " and " + numbertext(m), false, false, {n, m}, {}};
             });
}

// --- elements -----------------------------------------------------------------------------------

static void finddamaged(findinglist& list) {
    std::vector<int> unknown, cornerless;
    for (int e = 1; e <= nelems(); ++e) {
        if (elems(e, 0) == 0) continue;
        if (nodesoftype(elems(e, 0)) == 0)
            unknown.push_back(e);
        else if (!hascorners(e))
            cornerless.push_back(e);
    }
    list.add({"element of an unknown type", "elements of an unknown type",
              "the catalogue does not hold it; modify or delete them", true},
             unknown.size(), [&](std::size_t i) {
                 return elementfinding(unknown[i], ": type " + numbertext(elems(unknown[i], 0)));
             });
    list.add({"element on a missing node", "elements on missing nodes",
              "a node does not exist or stands nowhere; delete them or type the node anew", true},
             cornerless.size(), [&](std::size_t i) { return elementfinding(cornerless[i], ""); });
}

static void finddoubleelements(findinglist& list) {
    using cornerkey = std::array<int, 5>;  // type, then nodes in ascending order behind zeroes
    std::vector<std::pair<cornerkey, int>> keys;
    for (int e = 1; e <= nelems(); ++e) {
        const auto row = elems.row(e);
        const int count = nodesoftype(row[0]);
        if (count == 0 || !hascorners(e)) continue;
        cornerkey key{int(row[0])};
        for (int k = 1; k <= count; ++k) key[std::size_t(k)] = int(row[std::size_t(k)]);
        std::sort(key.begin() + 1, key.end());
        keys.emplace_back(key, e);
    }
    std::ranges::sort(keys);
    std::vector<finding> singles;
    for (std::size_t i = 1; i < keys.size(); ++i)
        if (keys[i].first == keys[i - 1].first)
            singles.push_back({"Elements " + numbertext(keys[i - 1].second) + " and " +
                                   numbertext(keys[i].second),
                               false,
                               false,
                               {},
                               {keys[i - 1].second, keys[i].second}});
    list.add({"pair of double elements", "pairs of double elements",
              "they are of one type and have the same nodes; delete one of each", true},
             singles);
}

// --- shapes -------------------------------------------------------------------------------------

namespace {
struct shapefinding {
    int element;
    double figure;
};
}  // namespace

static void addshapes(findinglist& list, const findingkind& kind, std::vector<shapefinding> found,
                      const std::function<std::string(double)>& figure) {
    std::ranges::stable_sort(found,
                             [](const auto& a, const auto& b) { return a.figure > b.figure; });
    list.add(kind, found.size(), [&](std::size_t i) {
        return elementfinding(found[i].element, figure(found[i].figure));
    });
}

static bool islengthless(int e) {
    const int type = int(elems(e, 0));
    const bool needslength = type == typetruss || type == typebeam || type == typepipe;
    return needslength && !(lengthofline(e) > 0);
}

static void findshapes(findinglist& list) {
    std::vector<shapefinding> collapsed, inverted, refused, warped, needles, sharp;
    const int often = 65536;  // elements between two tellings
    for (int e = 1; e <= nelems(); ++e) {
        if (e % often == 0) tellcheckprogress(0.2 + 0.3 * e / nelems());
        const int count = nodesoftype(elems(e, 0));
        if (count < 2 || !hascorners(e)) continue;
        if (count == 2) {
            if (islengthless(e)) collapsed.push_back({e, 0});
            continue;
        }
        const elementshape s = shapeof(e);
        if (s.collapsed)
            collapsed.push_back({e, 0});
        else if (s.inverted)
            inverted.push_back({e, -s.angle});
        else if (s.warp > mostwarp)
            (s.warp > refusedwarp ? refused : warped).push_back({e, s.warp});
        if (s.collapsed || s.inverted) continue;
        if (s.aspect > mostaspect)
            needles.push_back({e, s.aspect});
        else if (s.angle < leastangle)
            sharp.push_back({e, -s.angle});
    }
    const auto none = [](double) { return std::string(); };
    const auto percent = [](double f) {
        return ": " + shortfigure(100 * f) + " % of its size out of its mean plane";
    };
    addshapes(list,
              {"collapsed element", "collapsed elements",
               "without length or area; delete them or move their nodes", true},
              collapsed, none);
    addshapes(list,
              {"inverted element", "inverted elements",
               "a corner of 180 degrees or more, or edges that cross; move or renumber their "
               "nodes",
               true},
              inverted, none);
    addshapes(list,
              {"element too warped to be taken", "elements too warped to be taken",
               "divide them into triangles or mesh finer", true},
              refused, percent);
    addshapes(list, {"warped element", "warped elements", "triangles or a finer mesh are better"},
              warped, percent);
    addshapes(list,
              {"needle-shaped element", "needle-shaped elements",
               "their stresses are poor; mesh more evenly"},
              needles, [](double f) { return ": " + shortfigure(f) + " times longer than high"; });
    addshapes(list,
              {"element with a sharp corner", "elements with a sharp corner",
               "their stresses are poor there; mesh more evenly"},
              sharp, [](double f) { return ": " + shortfigure(-f) + " degrees"; });
}

// --- edges --------------------------------------------------------------------------------------

static std::string edgetext(const plateedge& x) {
    return numbertext(x.a) + "-" + numbertext(x.b);
}

static void findatedges(findinglist& list) {
    const plateedges edges = findedges();
    tellcheckprogress(0.6);
    const auto pair = [](const edgepair& p, const std::string& text) {
        return finding{"Elements " + numbertext(p.first.element) + " and " +
                           numbertext(p.second.element) + text,
                       false,
                       false,
                       {},
                       {p.first.element, p.second.element}};
    };
    const auto cracks = findcracks(edges.lonely);
    list.add({"crack", "cracks",
              "free edges lie on each other and are not joined; merge the nodes or "
              "mesh both sides alike",
              true},
             cracks.size(), [&](std::size_t i) {
                 finding f = pair(cracks[i], ": edges " + edgetext(cracks[i].first) + " and " +
                                                 edgetext(cracks[i].second));
                 for (const plateedge& x : {cracks[i].first, cracks[i].second}) {
                     f.nodes.push_back(x.a);
                     f.nodes.push_back(x.b);
                 }
                 return f;
             });
    list.add({"pair of opposite normals", "pairs of opposite normals",
              "neighbours of one group point to opposite sides; press <Homogenize Axis>"},
             edges.opposite.size(), [&](std::size_t i) { return pair(edges.opposite[i], ""); });
}

void findmeshfaults(findinglist& list) {
    tellcheckprogress(0);
    findfreenodes(list);
    finddoublenodes(list);
    tellcheckprogress(0.2);
    finddamaged(list);
    finddoubleelements(list);
    findshapes(list);
    findatedges(list);
    tellcheckprogress(0.7);
}
