// SPDX-License-Identifier: GPL-3.0-or-later
// Compaction of the model's lists, each in one pass over the list and one over its references.
#include "core/pack.h"

#include "core/model.h"
#include "core/modelitems.h"
#include "core/session.h"
#include "core/views.h"

// How many elements each view of a group or a selection still shows.
static void recountviews() {
    for (int v = 1; v <= nviews; ++v) {
        if (viewselnum(v) == 0) continue;
        int count = 0;
        for (int e = 1; e <= nelems(); ++e) count += elemvis(v, e);
        viewselnum(v) = count;
    }
}

// New numbers of the items that live, in their order. Empty when all do.
template <typename Lives>
static newnumbers numbersof(items of, Lives lives) {
    newnumbers number(std::size_t(countof(of)) + 1, 0);
    int c = 0;
    for (std::size_t i = 1; i < number.size(); ++i)
        if (lives(long(i))) number[i] = ++c;
    return std::size_t(c) + 1 == number.size() ? newnumbers() : number;
}

void packelems() {
    const newnumbers number = numbersof(items::element, [](long e) { return elems(e, 0) != 0; });
    if (number.empty()) return;
    closeitems(items::element, number);
    followitems(items::element, number);
    recountviews();
}

void packgraphics() {
    const newnumbers number =
        numbersof(items::graphic, [](long g) { return graphics(g, 0, 0) != 0; });
    if (number.empty()) return;
    closeitems(items::graphic, number);
    followitems(items::graphic, number);
}

// The rows of one list that stay close up.
template <typename Stays>
static void closelist(items of, int lc, Stays stays) {
    const long count = countof(of, lc);
    long kept = 0;
    for (long i = 1; i <= count; ++i) {
        if (!stays(i)) continue;
        if (++kept != i) copyitem(of, i, kept, lc);
    }
    emptyitems(of, kept + 1, count, lc);
    setcount(of, kept, lc);
}

void compactbc() {
    const int n = nnodes();
    const auto isnode = [n](int number) { return number >= 1 && number <= n; };
    closelist(items::constraint, 0, [&](long i) { return isnode(connode(i)); });
    for (int lc = 1; lc <= nlc(); ++lc) {
        closelist(items::nodalload, lc, [&](long i) { return isnode(loadnode(lc, i)); });
        closelist(items::elementload, lc, [&](long i) {
            return elemload(lc, i, 0) >= 1 && elemload(lc, i, 0) <= float(nelems());
        });
    }
    elemload(0, 0, 0) = float(nlc());
}
