// SPDX-License-Identifier: GPL-3.0-or-later
// The form of the changes to the selected elements.
#include "tools/modifyelem.h"

#include <algorithm>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/numtext.h"
#include "edit/selection.h"
#include "tools/elementaxes.h"
#include "view/moddraw.h"

static const char all[] = "All", nochange[] = "No Change";

static void listtypes(modifyelemform& form) {
    std::vector<bool> listed(maxelementtypes, false);
    form.fromtypes = {all};
    for (const int e : selectedelements()) {
        const auto t = std::size_t(elems(e, 0));
        if (t == 0 || t >= listed.size() || listed[t]) continue;
        listed[t] = true;
        form.fromtypes.push_back(eltypname(long(t)));
    }
    form.totypes = {nochange};
    for (int t = 1; t < neltypes; ++t) form.totypes.push_back(eltypname(t));
    if (form.fromtypes.size() == 2) form.fromtype = 1;
}

modifyelemform openmodifyelem() {
    modifyelemform form;
    listtypes(form);
    form.fromgroups = {all};
    form.togroups = {nochange};
    for (int g = 1; g <= ngroups(); ++g) {
        form.fromgroups.push_back(groupname(g));
        form.togroups.push_back(groupname(g));
    }
    return form;
}

// --- the command --------------------------------------------------------------------------------

static int chosentype(const std::vector<std::string>& list, int entry) {
    return entry == 0 ? 0 : findtype(list[std::size_t(entry)]);
}

// The elements that pass the source lists.
static std::vector<int> meantelements(int fromtype, int fromgroup) {
    std::vector<int> meant;
    for (const int e : selectedelements())
        if ((fromtype == 0 || int(elems(e, 0)) == fromtype) &&
            (fromgroup == 0 || egroup(e) == fromgroup))
            meant.push_back(e);
    return meant;
}

static bool compatible(int fromtype, int totype, const std::vector<int>& meant) {
    if (totype == 0) return true;
    if (fromtype != 0) return eltypnodes(fromtype) == eltypnodes(totype);
    return std::ranges::all_of(
        meant, [&](int e) { return nodesoftype(elems(e, 0)) == eltypnodes(totype); });
}

// Rows of loads that were turned, -1 where they have no room.
static int turnnodes(const modifyelemform& form, const std::vector<int>& meant) {
    if (!form.rotate && !form.mirror) return 0;
    return turnwithloads(meant, [&](int e) {
        if (form.rotate) rotatenodes(e);
        if (form.mirror) mirrornodes(e);
    });
}

// The types of the selection are others now. A chosen one that is gone became the target type.
static void relist(modifyelemform& form, int totype) {
    const std::string chosen = form.fromtypes[std::size_t(form.fromtype)];
    listtypes(form);
    const auto& list = form.fromtypes;
    auto at = std::ranges::find(list, chosen);
    if (at == list.end()) at = std::ranges::find(list, eltypname(totype));
    form.fromtype = at == list.end() ? 0 : int(at - list.begin());
}

void modselelem(modifyelemform& form) {
    form.message.clear();
    if (selectedelements().empty()) return;
    const int fromtype = chosentype(form.fromtypes, form.fromtype),
              totype = chosentype(form.totypes, form.totype);
    const std::vector<int> meant = meantelements(fromtype, form.fromgroup);
    if (!compatible(fromtype, totype, meant)) {
        form.message = "Element types not compatible!";
        return;
    }
    const int turned = turnnodes(form, meant);
    if (turned < 0) {
        form.message =
            "The loads of the turned elements need more rows than declared; nothing was "
            "changed. Increase 'Boundary Condition per loadcase'";
        return;
    }
    for (const int e : meant) {
        if (totype != 0) elems(e, 0) = float(totype);
        if (form.togroup != 0) egroup(e) = form.togroup;
    }
    if (totype != 0) relist(form, totype);
    form.message = "Element succesfully Modified!";
    if (turned > 0)
        form.message += " " + numbertext(turned) +
                        (turned == 1 ? " load row was turned and keeps its direction in space"
                                     : " load rows were turned and keep their direction in space");
    redrawall();
}
