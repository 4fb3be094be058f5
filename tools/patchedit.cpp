// SPDX-License-Identifier: GPL-3.0-or-later
// The form of the patches on show.
#include "tools/patchedit.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "edit/move.h"
#include "edit/selection.h"
#include "tools/Surfaces.h"
#include "tools/patchmesh.h"
#include "tools/severalitems.h"
#include "view/moddraw.h"

static std::string elementof(int p) {
    const int t = patches(p, 0, 1);
    return t >= 1 && t < maxelementtypes ? eltypname(t) : numbertext(t);
}

static std::string groupof(int p) {
    const int g = patches(p, 0, 2);
    return g >= 1 && g <= ngroups() ? groupname(g) : numbertext(g);
}

static void showpatch(patcheditform& form, int p) {
    form.mesh = typeofpatch(patches(p, 0, 0));
    form.element = elementof(p);
    form.group = groupof(p);
    for (int e = 1; e <= std::min(int(patches(p, 0, 0)), maxpatchedges); ++e) {
        std::string text = "Edge " + numbertext(e) + ":";
        for (int k = 1; k <= std::min(int(patches(p, e, 0)), maxedgepieces); ++k)
            text += (k > 1 ? ", " : " ") + numbertext(int(patches(p, e, k)));
        form.edges.push_back(text);
    }
}

// The number of the patch on show, 0 for several.
static int shownpatch(const patcheditform& form) {
    const int count = int(patchsel(0));
    if (count == 0 || (form.chosen == 0 && count > 1)) return 0;
    return int(patchsel(std::max(form.chosen, 1)));
}

static double spacesofedge(int p, int e) {
    double sum = 0;
    for (int k = 1; k <= std::min(int(patches(p, e, 0)), maxedgepieces); ++k)
        if (const int g = patches(p, e, k); g >= 1 && g <= ngraphics()) sum += graphics(g, 0, 1);
    return sum;
}

void choosepatch(patcheditform& form, int entry) {
    const int count = int(patchsel(0));
    form.edges.clear();
    form.pairs = 0;
    if (count == 0 || entry < 0 || entry > count) return;
    form.chosen = entry;
    showpatch(form, int(patchsel(std::max(entry, 1))));
    form.single = shownpatch(form) != 0;
    if (form.single) {
        const int p = shownpatch(form), edges = patches(p, 0, 0);
        form.pairs = edges == 4 ? 2 : 1;
        for (int i = 0; i < form.pairs; ++i)
            form.spaces[std::size_t(i)] = numbertext(spacesofedge(p, 1 + 2 * i));
        return;
    }
    form.edges.clear();
    for (int i = 2; i <= count; ++i) {
        const int p = int(patchsel(i));
        keepcommon(form.mesh, typeofpatch(patches(p, 0, 0)));
        keepcommon(form.element, elementof(p));
        keepcommon(form.group, groupof(p));
    }
}

// --- meshing again ------------------------------------------------------------------------------

static void selectpatchlist(const std::vector<int>& list) {
    for (std::size_t i = 0; i < list.size(); ++i) patchsel(long(i) + 1) = float(list[i]);
    patchsel(0) = float(list.size());
}

static bool makeanew(patcheditform& form, const std::vector<int>& list) {
    const hourglass wait;
    bool done = false;
    form.message = meshagain(list, done);
    if (!done) return false;
    hideselection();
    emptyselection();
    setselectitem(selectpatches);
    selectpatchlist(list);
    redrawall();
    return true;
}

// The dialog over the patches that are selected now.
static void reopen(patcheditform& form) {
    const std::string message = form.message;
    form = openpatchedit();
    form.message = message;
}

void meshpatchesagain(patcheditform& form) {
    std::vector<int> list;
    if (const int p = shownpatch(form); p != 0) list.push_back(p);
    for (int i = 1; i <= int(patchsel(0)) && shownpatch(form) == 0; ++i)
        list.push_back(int(patchsel(i)));
    if (list.empty()) {
        form.message = "Please, select patch for editing";
        return;
    }
    std::ranges::sort(list);
    if (makeanew(form, list)) reopen(form);
}

// One number of spaces as typed; the patches that change join the list.
static std::string takespaces(int p, int edge, const std::string& text, std::set<int>& changed) {
    double n = 0;
    if (!readnumber(text, n) || !(n >= 1 && n <= 1e6) || n != std::floor(n))
        return "Spaces should be a whole number above 0";
    std::string fault;
    if (n == spacesofedge(p, edge)) return fault;
    for (const int q : spreadspaces(p, edge, int(n), fault)) changed.insert(q);
    return fault;
}

void setpatchspaces(patcheditform& form) {
    const int p = shownpatch(form);
    if (p == 0) return;
    std::vector<float> before;
    for (int g = 1; g <= ngraphics(); ++g) before.push_back(graphics(g, 0, 1));
    std::set<int> changed;
    form.message.clear();
    for (int i = 0; i < form.pairs && form.message.empty(); ++i)
        form.message = takespaces(p, 1 + 2 * i, form.spaces[std::size_t(i)], changed);
    const bool good = form.message.empty();
    if (good && changed.empty()) return;
    if (good && makeanew(form, {changed.begin(), changed.end()})) return reopen(form);
    for (int g = 1; g <= ngraphics(); ++g) graphics(g, 0, 1) = before[std::size_t(g) - 1];
}

patcheditform openpatchedit() {
    patcheditform form;
    const int count = int(patchsel(0));
    form.items.emplace_back(count == 0 ? "None" : "Selection");
    for (int i = 1; i <= count; ++i) form.items.push_back(numbertext(int(patchsel(i))));
    if (count == 0) theplatform().message("Please, select patch for editing", icons::exclamation);
    choosepatch(form, 0);
    return form;
}
