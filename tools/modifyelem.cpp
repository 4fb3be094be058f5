// SPDX-License-Identifier: GPL-3.0-or-later
// The form of the changes to the selected elements.
#include "tools/modifyelem.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/catalogue.h"
#include "core/model.h"
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

// The ends of a line have changed places: a release stays with its node.
static void swapends(int e) {
    if (nodesoftype(elems(e, 0)) != 2) return;
    std::ranges::swap_ranges(endrelease.row(e, 1), endrelease.row(e, 2));
}

// One place on: the first node goes to the end. And the other side up: the order is reversed and
// turned two places, the rotation angle changes its sign.
static void rotatenodes(int e) {
    const auto row = elems.row(e);
    const int count = nodesoftype(row[0]);
    if (count > 1) std::rotate(row.begin() + 1, row.begin() + 2, row.begin() + 1 + count);
    swapends(e);
}

static void mirrornodes(int e) {
    const auto row = elems.row(e);
    std::reverse(row.begin() + 1, row.begin() + 1 + nodesoftype(row[0]));
    swapends(e);
    rotatenodes(e);
    rotatenodes(e);
    rotpo(e) = -rotpo(e);
}

// --- loads of elements whose axes turn ----------------------------------------------------------

// Calls turn(e) for each element and gives the loads on them the directions that keep them where
// they point. False, with nothing changed, when the rows exceed the declared number.
template <typename Turn>
static bool turnwithloads(const std::vector<int>& meant, Turn turn) {
    std::vector<int> place(std::size_t(nelems()) + 1, -1);  // in meant
    std::vector<elementaxes> before, now;
    std::vector<std::array<float, 5>> corners;
    std::vector<double> rotation;
    for (const int e : meant) {
        place[std::size_t(e)] = int(before.size());
        before.push_back(axesofelement(e));
        corners.emplace_back();
        std::ranges::copy(elems.row(e), corners.back().begin());
        rotation.push_back(rotpo(e));
        turn(e);
        now.push_back(axesofelement(e));
    }
    std::vector<std::vector<elementloadrow>> cases(std::size_t(nlc()) + 1);
    bool fits = true;
    for (int lc = 1; lc <= nlc(); ++lc) {
        std::vector<elementloadrow>& rows = cases[std::size_t(lc)];
        for (int i = 1; i <= int(elemload(lc, 0, 0)); ++i) {
            const elementloadrow row = {int(elemload(lc, i, 0)), int(elemload(lc, i, 1)),
                                        double(elemload(lc, i, 2))};
            const int at =
                row.element >= 1 && row.element <= nelems() ? place[std::size_t(row.element)] : -1;
            if (at < 0 || row.direction < 1 || row.direction > 3)
                rows.push_back(row);
            else
                for (const elementloadrow& r :
                     turnedload(row, before[std::size_t(at)], now[std::size_t(at)]))
                    rows.push_back(r);
        }
        fits = fits && long(rows.size()) <= elemload.upper2;
    }
    if (!fits) {
        for (std::size_t i = 0; i < meant.size(); ++i) {
            std::ranges::copy(corners[i], elems.row(meant[i]).begin());
            rotpo(meant[i]) = rotation[i];
        }
        return false;
    }
    for (int lc = 1; lc <= nlc(); ++lc) {
        int i = 0;
        for (const elementloadrow& row : cases[std::size_t(lc)]) {
            ++i;
            elemload(lc, i, 0) = float(row.element);
            elemload(lc, i, 1) = float(row.direction);
            elemload(lc, i, 2) = float(row.value);
        }
        elemload(lc, 0, 0) = float(i);
    }
    return true;
}

// --- the command --------------------------------------------------------------------------------

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
    const auto turn = [&](int e) {
        if (form.rotate) rotatenodes(e);
        if (form.mirror) mirrornodes(e);
    };
    if ((form.rotate || form.mirror) && !turnwithloads(meant, turn)) {
        form.message =
            "The loads of the turned elements need more rows than declared; nothing was "
            "changed. Increase 'Boundary Condition per loadcase'";
        return;
    }
    for (const int e : meant) {
        if (to != 0) elems(e, 0) = float(to);
        if (form.togroup != 0) egroup(e) = form.togroup;
    }
    form.message = "Element succesfully Modified!";
    redrawall();
}
