// SPDX-License-Identifier: GPL-3.0-or-later
// The form of the patches on show.
#include "tools/patchedit.h"

#include <algorithm>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "tools/Surfaces.h"
#include "tools/severalitems.h"

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

void choosepatch(patcheditform& form, int entry) {
    const int count = int(patchsel(0));
    form.edges.clear();
    if (count == 0 || entry < 0 || entry > count) return;
    form.chosen = entry;
    showpatch(form, int(patchsel(std::max(entry, 1))));
    if (entry > 0 || count == 1) return;
    form.edges.clear();
    for (int i = 2; i <= count; ++i) {
        const int p = int(patchsel(i));
        keepcommon(form.mesh, typeofpatch(patches(p, 0, 0)));
        keepcommon(form.element, elementof(p));
        keepcommon(form.group, groupof(p));
    }
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
