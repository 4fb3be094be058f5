// SPDX-License-Identifier: GPL-3.0-or-later
// Whole items of the tables of numbers: new rows, deleted rows, loads that change their load case.
#include <algorithm>
#include <span>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/modelitems.h"
#include "core/modelsize.h"
#include "core/newmodel.h"
#include "core/numtext.h"
#include "core/pack.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/views.h"
#include "edit/Edit.h"
#include "edit/selection.h"
#include "loads/loadcombinations.h"
#include "loads/loadkees.h"
#include "tools/genmesh.h"
#include "tools/groups.h"
#include "tools/numint.h"

// --- new items ----------------------------------------------------------------------------------

bool askadd(long count) {
    return theplatform().yes(count == 1 ? "Add new item?"
                                        : "Add " + numbertext(count) + " new items?");
}

// Room for a list of a tab to grow to a count, declared larger where the user agrees.
static bool hasroom(int tab, long count) {
    const auto within = [&](long most, const char* message) {
        if (count > most) theplatform().message(message, icons::exclamation);
        return count <= most;
    };
    switch (tab) {
        case tabnodes:
            return growby(count - nnodes(), 0);
        case tabelements:
            return growby(0, count - nelems());
        case tabgroups:
            return within(modelsize(sizegroups), "Maximum number of groups");
        case tabloadcases:
            return within(modelsize(sizeloadcases), "Maximum number of loadcase");
        case tabcombinations:
            return within(maxcombinations, "Maximum number of loadcombinations");
        default:
            return growfor({{sizeconditions, count}},
                           "Increase number of boundary conditions on Model declaration form. Do: "
                           "[File,modelsize..]");
    }
}

// "GR 4", or the next free form of it.
static std::string freename(const std::string& start, const array1<std::string>& names, long item) {
    std::string name = start + " " + numbertext(item);
    const auto istaken = [&] {
        for (long i = 1; i < item; ++i)
            if (names(i) == name) return true;
        return false;
    };
    while (istaken()) name += "*";
    return name;
}

// As the row above, so that what is not typed makes sense.
static bool newelement(long e) {
    if (e > 1 && elems(e - 1, 0) != 0) {
        for (int k = 0; k <= 4; ++k) elems(e, k) = elems(e - 1, k);
        egroup(e) = egroup(e - 1);
    } else {
        const int type = eltypnodes(mesheltype) > 0 ? mesheltype : int(typebeam);
        elems(e, 0) = float(type);
        for (int k = 1; k <= eltypnodes(type); ++k) elems(e, k) = float(std::min(k, nnodes()));
        egroup(e) = std::clamp(meshgroup, 1, ngroups());
    }
    elemvis(activeview, e) = true;
    if (viewselnum(activeview) != 0) ++viewselnum(activeview);  // 0: the view shows all
    return nnodes() > 0;
}

static void newgroup(long g) {
    for (int k = 1; k <= groupfields; ++k) groups(g, k) = groups(g - 1, k);
    groupname(g) = freename("GR", groupname, g);
}

static void newloadcase(long lc) {
    defaultloadcase(int(lc));
    loadnode(lc, 0) = 0;
    elemload(lc, 0, 0) = 0;
    for (int c = 1; c <= ncomb(); ++c) lcomb(c, lc) = 0;
    lcname(lc) = freename("LC", lcname, lc);
    elemload(0, 0, 0) = float(nlc());
}

static void newcombination(long c) {
    for (int lc = 0; lc <= nlc(); ++lc) lcomb(c, lc) = 0;
    lcombname(c) = freename("LCOMB", lcombname, c);
}

static bool newcondition(int tab, int lc, long row) {
    if (tab == tabconstraints) {
        connode(row) = row > 1 ? connode(row - 1) : 1;
        condof(row) = row > 1 ? condof(row - 1) : 1;
    } else if (tab == tabnodalloads) {
        loadnode(lc, row) = row > 1 ? loadnode(lc, row - 1) : 1;
        loaddof(lc, row) = row > 1 ? loaddof(lc, row - 1) : 1;
    } else {
        elemload(lc, row, 0) = row > 1 ? elemload(lc, row - 1, 0) : 1.0f;
        elemload(lc, row, 1) = row > 1 ? elemload(lc, row - 1, 1) : 3.0f;
    }
    return tab == tabelementloads ? nelems() > 0 : nnodes() > 0;
}

static bool newitem(int tab, int lc, long row) {
    switch (tab) {
        case tabnodes:
            for (int k = 0; k <= 2; ++k) nodes(1, row, k) = 0;
            return true;
        case tabelements:
            return newelement(row);
        case tabgroups:
            newgroup(row);
            return true;
        case tabloadcases:
            newloadcase(row);
            return true;
        case tabcombinations:
            newcombination(row);
            return true;
        default:
            return newcondition(tab, lc, row);
    }
}

static bool hasroom(int tab, const std::vector<int>& cases) {
    std::vector<long> more(std::size_t(nlc()) + 1, 0);
    for (const int lc : cases) ++more[isloadtab(tab) ? std::size_t(lc) : 0];
    for (std::size_t list = 0; list < more.size(); ++list)
        if (more[list] > 0 && !hasroom(tab, countof(itemsof(tab), long(list)) + more[list]))
            return false;
    return true;
}

// An empty row; a free group keeps the colour that waits for it.
static void startitem(items of, long row, int list) {
    const int shade = of == items::group ? groupcolor(row) : 0;
    emptyitems(of, row, row, list);
    if (of == items::group) groupcolor(row) = shade;
    setcount(of, row, list);
}

std::vector<long> appenditems(int tab, const std::vector<int>& cases) {
    if (!hasroom(tab, cases)) return {};
    const items of = itemsof(tab);
    std::vector<loadplace> places;
    bool whole = true;
    for (const int lc : cases) {
        const int list = isloadtab(tab) ? lc : 0;
        const long row = countof(of, list) + 1;
        startitem(of, row, list);
        places.push_back({list, row});
        whole = newitem(tab, list, row) && whole;
    }
    std::vector<long> added;
    const std::vector<long> before = loadsbefore(of);
    for (const loadplace& at : places) added.push_back(before[std::size_t(at.lc)] + at.row);
    if (whole) return added;
    dropadded(tab, added);
    theplatform().message(tab == tabelementloads ? "There are no elements to load"
                                                 : "There are no nodes yet, add these first",
                          icons::exclamation);
    return {};
}

void dropadded(int tab, const std::vector<long>& added) {
    const items of = itemsof(tab);
    std::vector<loadplace> places;
    for (const long item : added)
        places.push_back(isloadtab(tab) ? placeofload(of, item) : loadplace{0, item});
    for (const loadplace& at : places) {
        if (tab == tabelements && elemvis(activeview, at.row) && viewselnum(activeview) > 0)
            --viewselnum(activeview);
        emptyitems(of, at.row, at.row, at.lc);
        setcount(of, std::min(countof(of, at.lc), at.row - 1), at.lc);
    }
}

// --- loads that change their load case ----------------------------------------------------------

static void copyload(int tab, const loadplace& from, const loadplace& to) {
    if (tab == tabnodalloads) {
        loadnode(to.lc, to.row) = loadnode(from.lc, from.row);
        loaddof(to.lc, to.row) = loaddof(from.lc, from.row);
        loadval(to.lc, to.row) = loadval(from.lc, from.row);
    } else {
        for (int k = 0; k <= 2; ++k) elemload(to.lc, to.row, k) = elemload(from.lc, from.row, k);
    }
}

static void makehole(int tab, const loadplace& at) {
    if (tab == tabnodalloads)
        loadnode(at.lc, at.row) = 0;
    else
        elemload(at.lc, at.row, 0) = 0;
}

void moveloads(int tab, const std::vector<loadmove>& moves, cellfaults& faults) {
    if (moves.empty()) return;
    const items of = itemsof(tab);
    for (const auto& [from, lc] : moves) {
        if (from.lc == 0 || from.lc == lc) continue;
        const long row = countof(of, lc) + 1;
        if (row > modelsize(sizeconditions)) {
            gridcolumn c;
            c.caption = "Loadcase";
            faults.add(itemofload(of, from) - 1, c, {false, "no room in " + lcname(lc)});
            continue;
        }
        setcount(of, row, lc);
        copyload(tab, from, {lc, row});
        makehole(tab, from);
    }
    compactbc();
}

// --- deletion -----------------------------------------------------------------------------------

using itemlist = std::vector<int>;

// Through the delete of the selection. What was selected beside the rows stays selected, under the
// numbers that it gets.
static void deleteselected(int tab, const itemlist& gone) {
    itemlist kept = tab == tabnodes ? selectednodes() : selectedelements();
    const std::vector<bool> goes = marksof(gone, int(itemcount(tab)));
    std::erase_if(kept,
                  [&](int i) { return std::size_t(i) < goes.size() && goes[std::size_t(i)]; });
    const auto select = [tab](const itemlist& list) {
        emptyselection();
        long count = 0;
        for (const int i : list) {
            if (i == 0) continue;
            ++count;
            if (tab == tabnodes)
                nodesel(count) = i;
            else
                elemsel(count) = float(i);
        }
        if (tab == tabnodes)
            nodesel(0) = int(count);
        else
            elemsel(0) = float(count);
    };
    heldreferences().push_back(
        {"Selected row", itemsof(tab), losses::zero, [&kept] { return std::span<int>(kept); }});
    select(gone);
    editdelete();
    heldreferences().pop_back();
    select(kept);
}

static void delnodes(const itemlist& gone) {
    deleteselected(tabnodes, gone);
}

static void delelem(const itemlist& gone) {
    deleteselected(tabelements, gone);
}

static void delcons(const itemlist& gone) {
    for (const int i : gone) connode(i) = 0;
    compactbc();
}

static void delnodalload(const itemlist& gone) {
    for (const int i : gone) makehole(tabnodalloads, placeofload(items::nodalload, i));
    compactbc();
}

static void delelemload(const itemlist& gone) {
    for (const int i : gone) makehole(tabelementloads, placeofload(items::elementload, i));
    compactbc();
}

static std::string delgroup(int g) {
    if (isgroupused(g)) {
        theplatform().message("Not deleted,Group in use", icons::exclamation);
        return "Group " + groupname(g) + " is in use";
    }
    if (ngroups() <= 1) return "Not allowed, one group minimum";
    removegroup(g);
    return {};
}

static std::string delloadcase(int lc) {
    if (nlc() <= 1) return "Not allowed, one loadcase minimum";
    removeloadcase(lc);
    dropresults();
    return {};
}

static std::string delloadcomb(int c) {
    if (ncomb() <= 1) return "Not allowed, one loadcombination minimum";
    removeloadcomb(c);
    return {};
}

// One by one from the last, so that the numbers of the others hold; the first refusal ends it.
static std::string eachfromlast(const itemlist& gone, std::string (*drop)(int)) {
    for (auto i = gone.rbegin(); i != gone.rend(); ++i)
        if (std::string refusal = drop(*i); !refusal.empty()) return refusal;
    return {};
}

// The items, in rising order, out of the model; what was refused in words.
static std::string Delrow(int tab, const itemlist& gone) {
    switch (tab) {
        case tabnodes:
            delnodes(gone);
            return {};
        case tabelements:
            delelem(gone);
            return {};
        case tabgroups:
            return eachfromlast(gone, delgroup);
        case tabconstraints:
            delcons(gone);
            return {};
        case tabloadcases:
            return eachfromlast(gone, delloadcase);
        case tabnodalloads:
            delnodalload(gone);
            return {};
        case tabelementloads:
            delelemload(gone);
            return {};
        default:
            return eachfromlast(gone, delloadcomb);
    }
}

void delitem(numintform& form, const std::vector<long>& rows) {
    const numinttable& t = form.table[1];
    form.message.clear();
    itemlist gone;
    for (const long row : rows)
        if (const long item = t.itemof(row); item != 0) gone.push_back(int(item));
    std::ranges::sort(gone);
    gone.erase(std::unique(gone.begin(), gone.end()), gone.end());
    if (gone.empty() || !theplatform().yes("Delete complete item?")) return;
    form.message = Delrow(t.tab, gone);
    for (const int nt : {1, 0}) Showdata(form, nt);
    notenumbers(form);
}
