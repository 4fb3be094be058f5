// SPDX-License-Identifier: GPL-3.0-or-later
// The orderings by AMD, METIS and planes; CHOLMOD tells what each would cost.
// State: other libraries that dissect, and the one in use.
#include "solver/equations/order.h"

#include <cstdio>
#include <map>

#include "solver/base/parallel.h"
#include "solver/base/refuse.h"
#include "solver/base/termwatch.h"
#include "solver/equations/planes.h"

namespace {
struct orderresult {
    std::vector<int> order;
    double entries = 0, operations = 0;
};
struct cholmodrun {
    cholmod_common c;
    cholmodrun() {
        cholmod_start(&c);
        c.print = 0;
    }
    ~cholmodrun() { cholmod_finish(&c); }
    cholmodrun(const cholmodrun&) = delete;
    cholmodrun& operator=(const cholmodrun&) = delete;
};
}  // namespace

static std::map<std::string, dissector> dissectors;
static std::string current = "metis";

void adddissector(const std::string& name, dissector work) {
    dissectors[name] = std::move(work);
}

void usedissector(const std::string& name, runlog& log) {
    const bool known = name == "metis" || dissectors.count(name) > 0;
    if (!known) log.warn("ordering = " + name + " is not in this program, which takes metis");
    current = known ? name : "metis";
}

// Empty order where it fails. given: an order to look at.
static orderresult tryorder(cholmod_sparse& graph, int method, std::vector<int> given = {}) {
    cholmodrun run;
    cholmod_common& c = run.c;
    c.nmethods = 1;
    c.method[0].ordering = method;
    c.postorder = 1;
    c.supernodal = CHOLMOD_SIMPLICIAL;
    cholmod_factor* const symbolic = given.empty()
                                         ? cholmod_analyze(&graph, &c)
                                         : cholmod_analyze_p(&graph, given.data(), nullptr, 0, &c);
    orderresult result;
    if (symbolic && c.status >= CHOLMOD_OK) {
        const int* const perm = static_cast<int*>(symbolic->Perm);
        result.order.assign(perm, perm + symbolic->n);
        result.entries = c.lnz;
        result.operations = c.fl;
    }
    cholmod_factor* doomed = symbolic;
    cholmod_free_factor(&doomed, &c);
    return result;
}

// Planes order a mesh of rows as well as METIS does, which is told by the cuts of both through the
// whole, side being the one of METIS, and through small parts.
static bool aregood(const planeorder& planes, const std::vector<int>& side) {
    const double nearly = 1.01;
    double ours = 0, theirs = 0;
    if (side.empty() || planes.order.empty()) return false;  // not asked for, or failed
    if (!(planes.firstcut <= nearly * cutworth(side))) return false;
    for (const planeorder::trial& one : planes.trials) {
        ours += one.worth;
        theirs += cutworth(bisect(one.graph));
    }
    return ours <= nearly * theirs;
}

// Does the works on as many threads as there are.
static void beside(const std::vector<std::function<void()>>& works) {
    parallelpieces(int(works.size()), 1, [&](int first, int last, int) {
        for (int i = first; i < last; ++i) works[std::size_t(i)]();
    });
}

std::vector<int> ordernodes(const nodegraph& graph, std::string& told) {
    const int n = graph.size();
    if (n == 0) return {};
    uppergraph upper;
    upper.start.push_back(0);
    for (int i = 0; i < n; ++i) {
        for (auto k = graph.start[std::size_t(i)]; k < graph.start[std::size_t(i) + 1]; ++k)
            if (graph.neighbour[std::size_t(k)] < i)
                upper.row.push_back(graph.neighbour[std::size_t(k)]);
        upper.row.push_back(i);
        upper.start.push_back(int(upper.row.size()));
    }
    cholmod_sparse a = upperview(upper.start, upper.row);
    const int dissectfrom = 200;  // nodes; below it the choice does not matter
    const bool large = n >= dissectfrom, bymetis = large && current == "metis";
    orderresult degree, dissected;
    std::vector<int> side;  // by the first cut of METIS
    planeorder planes;
    bool byplanes = false;
    const termwatch watch;  // as long as libraries work
    const auto parted = [&] {
        if (bymetis) side = bisect(upper);
    };
    const auto planed = [&] {
        if (bymetis && !graph.at.empty()) planes = orderbyplanes(graph, upper);
    };
    const auto looked = [&] {
        if (!planes.order.empty()) dissected = tryorder(a, CHOLMOD_GIVEN, planes.order);
    };
    beside({planed, parted, [&] { degree = tryorder(a, CHOLMOD_AMD); }});  // the longest first
    beside({looked, [&] { byplanes = aregood(planes, side); }});
    if (large && !byplanes)
        dissected =
            tryorder(a, CHOLMOD_GIVEN, bymetis ? dissect(upper, side) : dissectors[current](graph));
    const bool usedegree = dissected.order.empty() || degree.operations <= dissected.operations;
    const auto words = [](const char* name, const orderresult& r) {
        char text[100];
        std::snprintf(text, sizeof text, "%s %.3g entries %.3g operations", name, r.entries,
                      r.operations);
        return std::string(text);
    };
    told = "Order of nodes: " + words("minimum degree", degree);
    if (!dissected.order.empty())
        told +=
            ", " + words(byplanes ? "nested dissection by planes" : "nested dissection", dissected);
    told += usedegree ? "; minimum degree taken" : "; nested dissection taken";
    if (usedegree && degree.order.empty()) refuse("Not enough memory to order the equations");
    return usedegree ? degree.order : dissected.order;
}
