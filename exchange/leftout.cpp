// SPDX-License-Identifier: GPL-3.0-or-later
// The parts of the model, item by item.
#include "exchange/leftout.h"

#include <algorithm>
#include <functional>
#include <vector>

#include "core/catalogue.h"
#include "core/model.h"

// Calls take(number) for each item; what is no node and no element is counted by 0.
using taker = std::function<void(int number)>;

static void freenodes(const taker& take) {
    std::vector<bool> used(std::size_t(nnodes()) + 1, false);
    for (int e = 1; e <= nelems(); ++e)
        for (int k = 1; k <= nodesoftype(elems(e, 0)); ++k) used[std::size_t(elems(e, k))] = true;
    for (int n = 1; n <= nnodes(); ++n)
        if (!used[std::size_t(n)]) take(n);
}

static bool isreleased(int e) {
    for (int end = 1; end <= 2; ++end)
        for (int dof = 1; dof <= 6; ++dof)
            if (endrelease(e, end, dof) != 0) return true;
    return false;
}

static void constraints(const taker& take) {
    for (int i = 1; i <= ncon; ++i) take(connode(i));
}

static void nodalloads(const taker& take) {
    for (int lc = 1; lc <= nlc(); ++lc)
        for (int i = 1; i <= loadnode(lc, 0); ++i) take(loadnode(lc, i));
}

static void elementloads(const taker& take) {
    for (int lc = 1; lc <= nlc(); ++lc)
        for (int i = 1; i <= int(elemload(lc, 0, 0)); ++i) take(int(elemload(lc, i, 0)));
}

template <bool (*holds)(int e)>
static void elementsthat(const taker& take) {
    for (int e = 1; e <= nelems(); ++e)
        if (elems(e, 0) != 0 && holds(e)) take(e);
}

static bool isturned(int e) {
    return rotpo(e) != 0;
}

static void times(long count, const taker& take) {
    for (long i = 0; i < count; ++i) take(0);
}

// The combination that a new model has says nothing.
static long countcombinations() {
    return ncomb() == 1 && nlc() == 1 ? 0 : ncomb();
}

void tellleftout(importreport& report, std::initializer_list<parts> written) {
    static const struct {
        const char* caption;
        reportitems items;
        void (*each)(const taker& take);
    } rows[int(parts::count)] = {
        {"Nodes without elements", reportitems::nodes, freenodes},
        {"Properties of element groups", reportitems::none,
         [](const taker& take) { times(ngroups(), take); }},
        {"Constraints", reportitems::nodes, constraints},
        {"Nodal loads", reportitems::nodes, nodalloads},
        {"Loads on elements", reportitems::elements, elementloads},
        {"Elements with end releases", reportitems::elements, elementsthat<isreleased>},
        {"Elements with turned local axes", reportitems::elements, elementsthat<isturned>},
        {"Load combinations", reportitems::none,
         [](const taker& take) { times(countcombinations(), take); }},
        {"Graphic elements", reportitems::none,
         [](const taker& take) { times(ngraphics(), take); }},
    };
    for (int p = 0; p < int(parts::count); ++p) {
        if (std::ranges::find(written, parts(p)) != written.end()) continue;
        rows[p].each([&](int number) {
            report.skipped(rows[p].caption);
            if (number > 0) report.about(rows[p].items, number);
        });
    }
}
