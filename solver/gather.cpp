// SPDX-License-Identifier: GPL-3.0-or-later
// Collecting of stresses.
#include "solver/gather.h"

#include <algorithm>

#include "solver/kinds.h"
#include "solver/ranks.h"

static std::vector<int> elementsof(const model& m, family wanted) {
    std::vector<int> list;
    for (int e = 1; e <= m.nelems(); ++e)
        if (kindof(m.elements[std::size_t(e)].type).fam == wanted) list.push_back(e);
    return list;
}

// Numbers that lie by process and then by element, put by element alone. first: of each element's
// numbers in the result, one more at the end.
static std::vector<double> byelement(const model& m, const std::vector<int>& elements,
                                     const std::vector<std::size_t>& first,
                                     const std::vector<double>& all) {
    std::vector<std::size_t> next(std::size_t(allranks().count()) + 1, 0);
    for (std::size_t i = 0; i < elements.size(); ++i)
        next[std::size_t(m.rankof[std::size_t(elements[i])]) + 1] += first[i + 1] - first[i];
    for (std::size_t r = 1; r < next.size(); ++r) next[r] += next[r - 1];
    std::vector<double> result(first.back());
    for (std::size_t i = 0; i < elements.size(); ++i) {
        std::size_t& from = next[std::size_t(m.rankof[std::size_t(elements[i])])];
        const std::size_t count = first[i + 1] - first[i];
        std::copy_n(all.data() + from, count, result.data() + first[i]);
        from += count;
    }
    return result;
}

lineends gathercase(const model& m, const lineends& own, int lc) {
    const std::size_t size = own.elements.size() * endvalues;
    const double* const begin = own.of(lc, 0);
    const std::vector<double> all = allranks().gather({begin, begin + size});
    lineends whole;
    if (!allranks().first()) return whole;
    whole.cases = 1;
    whole.elements = elementsof(m, family::line);
    std::vector<std::size_t> first;
    for (std::size_t i = 0; i <= whole.elements.size(); ++i) first.push_back(i * endvalues);
    whole.value = byelement(m, whole.elements, first, all);
    return whole;
}

platestresses gathercase(const model& m, const platestresses& own, int lc) {
    const double* const begin = own.of(lc, 0);
    const std::vector<double> all =
        allranks().gather({begin, begin + std::size_t(own.corners) * platevalues});
    platestresses whole;
    if (!allranks().first()) return whole;
    whole.elements = elementsof(m, family::plate);
    std::vector<std::size_t> first = {0};
    whole.first.push_back(0);
    for (const int e : whole.elements) {
        whole.first.push_back(whole.first.back() + kindof(m.elements[std::size_t(e)].type).nodes);
        first.push_back(std::size_t(whole.first.back()) * platevalues);
    }
    whole.corners = whole.first.back();
    whole.value = byelement(m, whole.elements, first, all);
    return whole;
}
