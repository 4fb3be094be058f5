// SPDX-License-Identifier: GPL-3.0-or-later
// Compaction of the model's lists, each in one pass over the list and one over its references.
#include "core/pack.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "core/model.h"
#include "core/session.h"
#include "core/views.h"

static void moveelement(long from, long to) {
    std::ranges::copy(elems.row(from), elems.row(to).begin());
    egroup(to) = egroup(from);
    rotpo(to) = rotpo(from);
    elemname(to) = std::move(elemname(from));
    elemflag(to) = elemflag(from);
    for (int v = 0; v <= 4; ++v) elemvis(v, to) = elemvis(v, from);
    for (int end = 0; end <= 4; ++end)
        std::ranges::copy(endrelease.row(from, end), endrelease.row(to, end).begin());
}

static void emptyelement(long e) {
    std::ranges::fill(elems.row(e), 0.0f);
    egroup(e) = 0;
    rotpo(e) = 0;
    elemname(e).clear();
    elemflag(e) = false;
    for (int v = 0; v <= 4; ++v) elemvis(v, e) = false;
    for (int end = 0; end <= 4; ++end) std::ranges::fill(endrelease.row(e, end), 0.0f);
}

// newnumber(e) is 0 for an element that has gone.
static void followelements(const std::vector<int>& newnumber) {
    const auto renumbered = [&](float e) {
        return e >= 1 && e < float(newnumber.size()) ? newnumber[std::size_t(e)] : 0;
    };
    for (int lc = 1; lc <= nlc(); ++lc) {
        const int n = int(elemload(lc, 0, 0));
        int kept = 0;
        for (int i = 1; i <= n; ++i) {
            const float e = elemload(lc, i, 0);
            const int number = renumbered(e);
            if (number == 0 && e >= 1 && e < float(newnumber.size())) continue;
            ++kept;
            elemload(lc, kept, 0) = number != 0 ? float(number) : e;
            elemload(lc, kept, 1) = elemload(lc, i, 1);
            elemload(lc, kept, 2) = elemload(lc, i, 2);
        }
        elemload(lc, 0, 0) = float(kept);
    }
    int kept = 0;
    for (int i = 1; i <= int(elemsel(0)); ++i)
        if (const int number = renumbered(elemsel(i)); number != 0) elemsel(++kept) = float(number);
    elemsel(0) = float(kept);
}

// How many elements each view of a group or a selection still shows.
static void recountviews() {
    for (int v = 1; v <= nviews; ++v) {
        if (viewselnum(v) == 0) continue;
        int count = 0;
        for (int e = 1; e <= nelems(); ++e) count += elemvis(v, e);
        viewselnum(v) = count;
    }
}

void packelems() {
    const int count = nelems();
    int live = 0;
    for (int e = 1; e <= count; ++e) live += elems(e, 0) != 0;
    if (live == count) return;
    std::vector<int> newnumber(std::size_t(count) + 1, 0);
    int c = 0;
    for (int e = 1; e <= count; ++e) {
        if (elems(e, 0) == 0) continue;
        ++c;
        if (c != e) moveelement(e, c);
        newnumber[std::size_t(e)] = c;
    }
    for (int e = c + 1; e <= count; ++e) emptyelement(e);
    elems(0, 0) = float(c);
    followelements(newnumber);
    recountviews();
}

// Selected graphic elements and points take the new numbers; those that have gone leave.
static void followgraphics(array2<int>& list, const std::vector<int>& newnumber) {
    int kept = 0;
    for (int i = 1; i <= list(0, 0); ++i) {
        const int g = list(i, 0);
        const int number = g >= 1 && g < int(newnumber.size()) ? newnumber[std::size_t(g)] : 0;
        if (number == 0) continue;
        ++kept;
        list(kept, 0) = number;
        list(kept, 1) = list(i, 1);
    }
    list(0, 0) = kept;
}

void packgraphics() {
    const int count = ngraphics();
    std::vector<int> newnumber(std::size_t(count) + 1, 0);
    int c = 0;
    for (int g = 1; g <= count; ++g) {
        if (graphics(g, 0, 0) == 0) continue;
        ++c;
        if (c != g)
            for (int j = 0; j <= 3; ++j)
                std::ranges::copy(graphics.row(g, j), graphics.row(c, j).begin());
        newnumber[std::size_t(g)] = c;
    }
    if (c == count) return;
    for (int g = c + 1; g <= count; ++g)
        for (int j = 0; j <= 3; ++j) std::ranges::fill(graphics.row(g, j), 0.0f);
    graphics(0, 0, 0) = float(c);
    followgraphics(graphsel, newnumber);
    followgraphics(graphsel2, newnumber);
    dropundo();
    for (int p = 1; p <= patches(0, 0, 0); ++p)
        for (int j = 1; j <= std::min(int(patches(p, 0, 0)), maxpatchedges); ++j)
            for (int k = 1; k <= std::min(int(patches(p, j, 0)), maxedgepieces); ++k) {
                const int g = patches(p, j, k);
                // 0 for what has gone, so that no other element stands in for it.
                if (g >= 1 && g <= count) patches(p, j, k) = newnumber[std::size_t(g)];
            }
}

void compactbc() {
    const int n = nnodes(), e = nelems();
    int kept = 0;
    for (int i = 1; i <= ncon; ++i) {
        if (connode(i) == 0 || connode(i) > n) continue;
        ++kept;
        connode(kept) = connode(i);
        condof(kept) = condof(i);
        conval(kept) = conval(i);
    }
    ncon = kept;
    for (int lc = 1; lc <= nlc(); ++lc) {
        kept = 0;
        for (int i = 1; i <= loadnode(lc, 0); ++i) {
            if (loadnode(lc, i) == 0 || loadnode(lc, i) > n) continue;
            ++kept;
            loadnode(lc, kept) = loadnode(lc, i);
            loaddof(lc, kept) = loaddof(lc, i);
            loadval(lc, kept) = loadval(lc, i);
        }
        loadnode(lc, 0) = kept;
        kept = 0;
        for (int i = 1; i <= int(elemload(lc, 0, 0)); ++i) {
            if (elemload(lc, i, 0) == 0 || elemload(lc, i, 0) > float(e)) continue;
            ++kept;
            std::ranges::copy(elemload.row(lc, i), elemload.row(lc, kept).begin());
        }
        elemload(lc, 0, 0) = float(kept);
    }
    elemload(0, 0, 0) = float(nlc());
}
