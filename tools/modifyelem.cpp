// SPDX-License-Identifier: GPL-3.0-or-later
// The form of the changes to the selected elements.
#include "tools/modifyelem.h"

#include <algorithm>

#include "core/catalogue.h"
#include "core/model.h"
#include "edit/selection.h"
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

void rotatenodes(int e) {
    const auto row = elems.row(e);
    const int count = nodesoftype(row[0]);
    if (count > 1) std::rotate(row.begin() + 1, row.begin() + 2, row.begin() + 1 + count);
}

void mirrornodes(int e) {
    const auto row = elems.row(e);
    std::reverse(row.begin() + 1, row.begin() + 1 + nodesoftype(row[0]));
    rotatenodes(e);
    rotatenodes(e);
    rotpo(e) = -rotpo(e);
}

static int chosentype(const std::vector<std::string>& list, int entry) {
    return entry == 0 ? 0 : findtype(list[std::size_t(entry)]);
}

void applymodifyelem(modifyelemform& form) {
    const int from = chosentype(form.fromtypes, form.fromtype),
              to = chosentype(form.totypes, form.totype);
    std::vector<int> meant;
    for (const int e : selectedelements())
        if ((from == 0 || int(elems(e, 0)) == from) &&
            (form.fromgroup == 0 || egroup(e) == form.fromgroup))
            meant.push_back(e);
    const auto fits = [&](int e) { return nodesoftype(elems(e, 0)) == eltypnodes(to); };
    if (to != 0 && !std::ranges::all_of(meant, fits)) {
        form.message = "Element types not compatible!";
        return;
    }
    for (const int e : meant) {
        if (to != 0) elems(e, 0) = float(to);
        if (form.togroup != 0) egroup(e) = form.togroup;
        if (form.rotate) rotatenodes(e);
        if (form.mirror) mirrornodes(e);
    }
    resultflag = 1;
    form.message = "Element succesfully Modified!";
    redrawall();
}
