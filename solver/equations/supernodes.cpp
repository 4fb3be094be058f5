// SPDX-License-Identifier: GPL-3.0-or-later
// Unknowns of one node reach the same others, so the symbolic factorisation by CHOLMOD runs on the
// nodes, some six times fewer, and is spread out to the unknowns afterwards.
#include "solver/equations/supernodes.h"

#include <algorithm>
#include <string>

#include "solver/base/parallel.h"
#include "solver/base/refuse.h"
#include "solver/equations/cholmodview.h"

namespace {
// Runs of unknowns with the same rows below them, and the pattern among the runs.
struct quotient {
    std::vector<int> first;  // unknown of each run, one more at the end
    std::vector<int> start, row;
    int size() const { return int(first.size()) - 1; }
};
}  // namespace

// Column j reaches what the column before it reaches.
static bool continues(const sparsematrix& a, std::int64_t j) {
    const auto* const start = a.start.data() + j;
    const auto* const row = a.row.data();
    return start[0] - start[-1] == start[1] - start[0] + 1 &&
           std::equal(row + start[0], row + start[1], row + start[-1] + 1);
}

static quotient makequotient(const sparsematrix& a) {
    quotient q;
    std::vector<char> begins(std::size_t(a.size()));
    parallelpieces(int(a.size()), 4096, [&](int first, int last, int) {
        for (int j = first; j < last; ++j) begins[std::size_t(j)] = j == 0 || !continues(a, j);
    });
    std::vector<int> run(begins.size());
    for (std::size_t j = 0; j < begins.size(); ++j) {
        if (begins[j]) q.first.push_back(int(j));
        run[j] = int(q.first.size()) - 1;
    }
    q.first.push_back(int(a.size()));
    q.start.push_back(0);
    for (int r = 0; r < q.size(); ++r) {
        const auto j = std::size_t(q.first[std::size_t(r)]);
        int last = -1;
        for (auto i = a.start[j]; i < a.start[j + 1]; ++i) {
            const int other = run[std::size_t(a.row[std::size_t(i)])];
            if (other != last) q.row.push_back(other);
            last = other;
        }
        q.start.push_back(int(q.row.size()));
    }
    return q;
}

double operationsof(const supernodetree& t, int s) {
    const double k = t.columns(s), n = k + t.below(s);
    const auto squares = [](double m) { return m * (m + 1) * (2 * m + 1) / 6; };
    return squares(n) - squares(n - k);
}

static void spreadout(const quotient& q, const cholmod_factor& l, supernodetree& t) {
    const auto* const super = static_cast<const int*>(l.super);
    const auto* const pi = static_cast<const int*>(l.pi);
    const auto* const rows = static_cast<const int*>(l.s);
    std::vector<int> owner(std::size_t(q.size()));
    t.start.push_back(0);
    for (int s = 0; s < int(l.nsuper); ++s) {
        const int runs = super[s + 1] - super[s];
        t.first.push_back(q.first[std::size_t(super[s])]);
        std::fill_n(owner.begin() + super[s], runs, s);
        for (int i = pi[s] + runs; i < pi[s + 1]; ++i)
            for (int u = q.first[std::size_t(rows[i])]; u < q.first[std::size_t(rows[i]) + 1]; ++u)
                t.row.push_back(u);
        t.start.push_back(std::int64_t(t.row.size()));
    }
    t.first.push_back(q.first.back());
    t.children.resize(l.nsuper);
    for (int s = 0; s < int(l.nsuper); ++s) {
        const int runs = super[s + 1] - super[s];
        const bool root = pi[s] + runs == pi[s + 1];
        t.parent.push_back(root ? -1 : owner[std::size_t(rows[pi[s] + runs])]);
    }
}

static void checkstatus(const cholmod_common& c) {
    if (c.status == CHOLMOD_OUT_OF_MEMORY || c.status == CHOLMOD_TOO_LARGE)
        refuse(
            "Not enough memory to analyse the equations; close other programs or make the model "
            "smaller");
    if (c.status < CHOLMOD_OK)
        refuse("The equations could not be analysed (status " + std::to_string(c.status) + ")");
}

supernodetree findsupernodes(const sparsematrix& a) {
    quotient q = makequotient(a);
    supernodetree t;
    cholmod_common c;
    cholmod_start(&c);
    c.print = 0;
    c.nmethods = 1;
    c.method[0].ordering = CHOLMOD_NATURAL;
    c.postorder = 0;  // the order is a postorder already
    c.supernodal = CHOLMOD_SUPERNODAL;
    // Columns up to which neighbours are joined although the union stores zeros: CHOLMOD's own
    // limits are for single unknowns.
    const double mean = double(a.size()) / std::max(q.size(), 1);
    const std::size_t limits[] = {4, 16, 48};
    const double zeros[] = {0.5, 0.08, 0.02};  // part of the union, up to each limit and above
    for (int i = 0; i < 3; ++i) {
        c.zrelax[i] = zeros[i];
        c.nrelax[i] = std::max<std::size_t>(1, std::size_t(double(limits[i]) / mean));
    }
    cholmod_sparse view = lowerview(q.start, q.row);
    cholmod_factor* l = cholmod_analyze(&view, &c);
    if (l != nullptr && c.status >= CHOLMOD_OK) spreadout(q, *l, t);
    cholmod_free_factor(&l, &c);
    cholmod_finish(&c);
    checkstatus(c);
    for (int s = 0; s < t.size(); ++s) {
        if (t.parent[std::size_t(s)] >= 0)
            t.children[std::size_t(t.parent[std::size_t(s)])].push_back(s);
        const double k = t.columns(s);
        t.entries += k * t.below(s) + k * (k + 1) / 2;
        t.operations += operationsof(t, s);
    }
    return t;
}
