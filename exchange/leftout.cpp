// SPDX-License-Identifier: GPL-3.0-or-later
// Counting of the parts of the model.
#include "exchange/leftout.h"

#include <algorithm>
#include <vector>

#include "core/catalogue.h"
#include "core/model.h"

static long countfreenodes() {
    std::vector<bool> used(std::size_t(nnodes()) + 1, false);
    for (int e = 1; e <= nelems(); ++e)
        for (int k = 1; k <= nodesoftype(elems(e, 0)); ++k) used[std::size_t(elems(e, k))] = true;
    return std::count(used.begin() + 1, used.end(), false);
}

static long countelements(bool (*holds)(int e)) {
    long count = 0;
    for (int e = 1; e <= nelems(); ++e) count += elems(e, 0) != 0 && holds(e);
    return count;
}

static bool isreleased(int e) {
    for (int end = 1; end <= 2; ++end)
        for (int dof = 1; dof <= 6; ++dof)
            if (endrelease(e, end, dof) != 0) return true;
    return false;
}

static long countloads(bool ofelements) {
    long count = 0;
    for (int lc = 1; lc <= nlc(); ++lc)
        count += ofelements ? long(elemload(lc, 0, 0)) : long(loadnode(lc, 0));
    return count;
}

// The combination that a new model has says nothing.
static long countcombinations() {
    return ncomb() == 1 && nlc() == 1 ? 0 : ncomb();
}

void tellleftout(importreport& report, std::initializer_list<parts> written) {
    static const struct {
        const char* caption;
        long (*count)();
    } rows[int(parts::count)] = {
        {"Nodes without elements", countfreenodes},
        {"Properties of element groups", [] { return long(ngroups()); }},
        {"Constraints", [] { return long(ncon); }},
        {"Nodal loads", [] { return countloads(false); }},
        {"Loads on elements", [] { return countloads(true); }},
        {"Elements with end releases", [] { return countelements(isreleased); }},
        {"Elements with turned local axes",
         [] { return countelements([](int e) { return rotpo(e) != 0; }); }},
        {"Load combinations", countcombinations},
        {"Graphic elements", [] { return long(ngraphics()); }},
    };
    for (int p = 0; p < int(parts::count); ++p) {
        if (std::ranges::find(written, parts(p)) != written.end()) continue;
        if (const long count = rows[p].count(); count > 0)
            report.skipped(rows[p].caption, 0, count);
    }
}
