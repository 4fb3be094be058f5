// SPDX-License-Identifier: GPL-3.0-or-later
// Needs of an analysis.
#include "tools/needs.h"

#include <array>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/session.h"
#include "core/textfile.h"
#include "core/views.h"
#include "tools/findings.h"

namespace {
// Elements of each group by type.
struct usedgroups {
    std::vector<std::array<int, maxelementtypes>> of;
    int elements = 0;
    usedgroups() : of(std::size_t(ngroups()) + 1) {
        for (int e = 1; e <= nelems(); ++e) {
            if (nodesoftype(elems(e, 0)) == 0) continue;
            ++elements;
            if (egroup(e) >= 1 && egroup(e) <= ngroups())
                ++of[std::size_t(egroup(e))][std::size_t(elems(e, 0))];
        }
    }
    // Membranes and bars alone, which resist nothing across their plane.
    bool areinplane() const {
        for (const auto& types : of)
            for (int t = 1; t < maxelementtypes; ++t)
                if (types[std::size_t(t)] != 0 && t != typetruss && t != typememb3 &&
                    t != typememb4)
                    return false;
        return true;
    }
    bool isgrounded() const {
        for (const auto& types : of)
            for (int t = typespringt; t <= typespring; ++t)
                if (types[std::size_t(t)] != 0) return true;
        return false;
    }
};
}  // namespace

static void findgroupneeds(const usedgroups& used, std::vector<need>& needs) {
    for (int g = 1; g <= ngroups(); ++g)
        for (int t = 1; t < maxelementtypes; ++t) {
            const int count = used.of[std::size_t(g)][std::size_t(t)];
            const std::string lack = count == 0 ? "" : lackofgroup(g, t);
            if (lack.empty()) continue;
            needs.push_back({"Group \"" + shownname(groupname(g)) + "\" has no " + lack +
                                 " for its " + numbertext(count) + " " + eltypname(t) +
                                 (count == 1 ? " element." : " elements."),
                             needplaces::groups, g});
        }
}

static bool isheldsomewhere() {
    for (int i = 1; i <= ncon; ++i)
        if (connode(i) != 0) return true;
    return false;
}

// Does a case push out of the plane x-y, or turn about an axis in it?
static bool isloadedacross(int lc) {
    const int kind = lctype(lc);
    const bool upwards = kind == caseaccz, tilting = kind == caseaccrx || kind == caseaccrx + 1;
    if (kind >= casewave || upwards || tilting) return true;
    for (int i = 1; kind == caseapplied && i <= loadnode(lc, 0); ++i)
        if (loadnode(lc, i) != 0 && loaddof(lc, i) >= 3 && loaddof(lc, i) <= 5) return true;
    for (int i = 1; i <= int(elemload(lc, 0, 0)); ++i)
        if (elemload(lc, i, 0) != 0 && elemload(lc, i, 1) == 3) return true;
    return false;
}

// In the plane of the 2-D analysis, which is not chosen. What bends could carry loads across.
static bool isfreeacross(const usedgroups& used) {
    const int dz = 3;
    if (dim2d || used.isgrounded()) return false;
    for (int lc = 1; lc <= nlc() && !used.areinplane(); ++lc)
        if (isloadedacross(lc)) return false;
    for (int i = 1; i <= ncon; ++i)
        if (connode(i) != 0 && condof(i) == dz) return false;
    for (int n = 1; n <= nnodes(); ++n)
        if (nodes(0, n, 2) != 0) return false;
    return true;
}

static bool isloaded() {
    for (int lc = 1; lc <= nlc(); ++lc)
        if (!iscaseempty(lc)) return true;
    return false;
}

std::vector<need> findneeds() {
    const usedgroups used;
    if (used.elements == 0)
        return {{"There are no elements yet: draw lines and mesh them, or add elements one by one.",
                 needplaces::elements}};
    std::vector<need> needs;
    findgroupneeds(used, needs);
    if (doeigen == 1) return needs;
    if (!isheldsomewhere() && !used.isgrounded())
        needs.push_back(
            {"There are no supports: nothing holds the model in its place.", needplaces::supports});
    if (isfreeacross(used))
        needs.push_back(
            {"The model lies in the plane z = 0 and nothing holds it in z: only the 2-D "
             "analysis has an answer.",
             needplaces::plane});
    if (!isloaded())
        needs.push_back({nlc() == 1
                             ? "There are no loads: all results would be zero."
                             : "None of the load cases has loads: all results would be zero.",
                         needplaces::loads});
    return needs;
}
