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
    if (!isloaded())
        needs.push_back({nlc() == 1
                             ? "There are no loads: all results would be zero."
                             : "None of the load cases has loads: all results would be zero.",
                         needplaces::loads});
    return needs;
}
