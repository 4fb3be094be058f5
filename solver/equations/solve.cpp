// SPDX-License-Identifier: GPL-3.0-or-later
// Static equations.
#include "solver/equations/solve.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "solver/base/memory.h"
#include "solver/base/parallel.h"
#include "solver/base/refuse.h"
#include "solver/dofs/makedofs.h"
#include "solver/elements/kinds.h"
#include "solver/equations/factor.h"
#include "solver/equations/mechanism.h"
#include "solver/equations/order.h"
#include "solver/processes/ranks.h"

static const double mebibyte = 1024 * 1024;

std::int64_t halfbandwidth(const model& m, const dofmap& d) {
    std::vector<int> first(d.owner.size()), last(d.owner.size());  // unknowns of owners among all
    int place = 0, before = 0;
    for (std::size_t n = 1; n < d.owner.size(); ++n) {
        if (d.owner[n] != int(n)) continue;
        const int count = unknownsof(d, int(n));
        first[n] = d.nodes->alone() ? before : d.firstofall[std::size_t(place++)];
        last[n] = first[n] + count - 1;
        before += count;
    }
    double half = 0;
    for (int e = 1; e <= m.nelems(); ++e) {
        if (!isown(m, e)) continue;
        const elementdef& def = m.elements[std::size_t(e)];
        int low = INT32_MAX, high = -1;
        for (int i = 0; i < kindof(def.type).nodes; ++i) {
            const auto owner = std::size_t(d.owner[std::size_t(def.node[i])]);
            if (owner == 0) continue;
            low = std::min(low, first[owner]);
            high = std::max(high, last[owner]);
        }
        if (high >= low) half = std::max(half, double(high - low) + 1);
    }
    allranks().most(&half, 1);
    return std::int64_t(half);
}

// What the factor and the vectors of so many right sides take.
static double needof(const engine& l, int columns, int unknowns) {
    const double vectors = 5;  // loads, right sides, result, work and residual
    return l.bytes() + vectors * columns * double(unknowns) * sizeof(double);
}

// Degrees of freedom, order and pattern. ownorder: for the own factor; an engine that shares the
// equations among processes finds an order itself.
static void numberequations(const model& m, bool ownorder, equations& q, runlog& log) {
    log.stage("order");
    std::vector<int> list;
    const nodegraph graph = ownergraph(m, q.dofs, list);
    std::string told;
    std::vector<int> order(std::size_t(graph.size()));
    if (ownorder)
        order = ordernodes(graph, told);
    else
        std::iota(order.begin(), order.end(), 0);
    std::vector<int> owners(order.size());
    for (std::size_t p = 0; p < order.size(); ++p) owners[p] = list[std::size_t(order[p])];
    numberunknowns(m, q.dofs, owners);
    if (!ownorder) shareunknowns(q.dofs);
    log.line("Equations: " + std::to_string(q.dofs.unknownsofall) + ", half bandwidth " +
             std::to_string(q.halfbandwidth));
    if (!told.empty()) log.line(told);
    q.stiffness = makepattern(q.dofs, graph, order);
}

equations makeequations(model& m, const settings& s, int anadof, runlog& log, masses moved) {
    equations q;
    q.dofs = makedofs(m, s, anadof, moved, log);
    const bool alone = allranks().alone();
    if (!alone) keeppart(m, q.dofs);
    q.halfbandwidth = halfbandwidth(m, q.dofs);
    numberequations(m, alone, q, log);
    log.stage("assemble");
    assemble(m, s, q.dofs, part::stiffness, q.stiffness, log);
    return q;
}

double factorneed(const model& m, const settings& s, int anadof, int columns) {
    runlog unheard;
    unheard.quiet();
    equations q;
    q.dofs = makedofs(m, s, anadof, masses::none, unheard);
    numberequations(m, true, q, unheard);
    factor l;
    if (q.dofs.unknowns > 0) l.analyse(q.stiffness);
    return needof(l, columns, q.dofs.unknowns);
}

void analysefactor(const equations& q, engine& l, int columns, runlog& log) {
    log.stage("analyse");
    l.analyse(q.stiffness);
    const double needed = needof(l, columns, q.dofs.unknowns);
    const double available = freememory() / allranks().here();
    log.line("Factor: " + shortnumber(l.entries()) + " entries, " + shortnumber(l.operations()) +
             " operations, " + shortnumber(needed / mebibyte) + " MiB needed, " +
             shortnumber(available / mebibyte) + " MiB free");
    onhosts([&] {
        if (needed <= available) return;
        refuse("Not enough memory: the equations need " + shortnumber(needed / mebibyte) +
               " MiB, this machine has " + shortnumber(available / mebibyte) +
               " MiB free. Close other programs, mesh coarser or use fewer load cases");
    });
}

void factorise(const model& m, const settings& s, const equations& q, engine& l, runlog& log) {
    log.stage("factor");
    pivotfound p;
    p.definite = l.factorise(q.stiffness);
    if (p.definite) p.size = l.smallestpivot(q.stiffness, p.unknown);
    const double suspicious = 1e-9;  // of the diagonal
    if (p.size > suspicious) return;
    refusemechanism(m, s, q.dofs, q.stiffness, p, log);
}

// --- solution -----------------------------------------------------------------------------------

static double sizeof2(const sharing& s, const std::vector<double>& v) {
    double largest = 0;
    for (const double value : v) largest = std::max(largest, std::fabs(value));
    allranks().most(&largest, 1);
    if (!(largest > 0)) return largest;
    double sum = 0;
    for (std::size_t i = 0; i < v.size(); ++i)
        if (s.counts(i)) sum += (v[i] / largest) * (v[i] / largest);
    allranks().sum(&sum, 1);
    return largest * std::sqrt(sum);
}

// Takes what the columns from first on below last give of a u off rest, and adds it in amounts to
// size.
static void subtractcolumns(const sparsematrix& a, const double* u, std::size_t first,
                            std::size_t last, double* rest, double* size) {
    for (std::size_t j = first; j < last; ++j) {
        const auto begin = std::size_t(a.start[j]), end = std::size_t(a.start[j + 1]);
        double sum = a.value[begin] * u[j], sumofsizes = std::fabs(sum);
        for (std::size_t i = begin + 1; i < end; ++i) {
            const auto row = std::size_t(a.row[i]);
            const double here = a.value[i] * u[row], there = a.value[i] * u[j];
            sum += here;
            sumofsizes += std::fabs(here);
            rest[row] -= there;
            size[row] += std::fabs(there);
        }
        rest[j] -= sum;
        size[j] += sumofsizes;
    }
}

// rest = f - a u; returns its size over that of |a||u| + |f|. Higham, Accuracy and Stability of
// Numerical Algorithms, chapter 7.
static double backwarderror(const sparsematrix& a, const double* u, const double* f,
                            std::vector<double>& rest) {
    const auto n = std::size_t(a.size());
    rest.assign(n, 0);
    std::vector<double> size(n), otherrest(n), othersize(n);
    for (std::size_t j = 0; j < n; ++j) {
        if (a.unknowns->counts(j)) rest[j] = f[j];
        size[j] = std::fabs(rest[j]);
    }
    // Two halves of the numbers, whatever the number of threads.
    const auto middle =
        std::size_t(std::ranges::upper_bound(a.start, a.start.back() / 2) - a.start.begin() - 1);
    parallelpieces(2, 1, [&](int begin, int end, int) {
        for (int half = begin; half < end; ++half)
            if (half == 0)
                subtractcolumns(a, u, 0, middle, rest.data(), size.data());
            else
                subtractcolumns(a, u, middle, n, otherrest.data(), othersize.data());
    });
    for (std::size_t j = middle; j < n; ++j) {
        rest[j] += otherrest[j];
        size[j] += othersize[j];
    }
    a.unknowns->sum(rest.data(), 1);
    a.unknowns->sum(size.data(), 1);
    const double whole = sizeof2(*a.unknowns, size), left = sizeof2(*a.unknowns, rest);
    return whole > 0 || !(left == 0) ? left / whole : 0;
}

static void findsoftest(const sparsematrix& a, const std::vector<double>& f, const double* u,
                        int columns, solvedcolumns& found) {
    const auto n = std::size_t(a.size());
    const std::vector<double> diagonal = diagonalof(a);
    std::vector<double> sums(2 * std::size_t(columns), 0);  // of each column: work, diagonal's
    parallelpieces(columns, 1, [&](int first, int last, int) {
        for (int c = first; c < last; ++c) {
            const double* const way = u + n * std::size_t(c);
            const double* const load = f.data() + n * std::size_t(c);
            double work = 0, all = 0;
            for (std::size_t j = 0; j < n; ++j) {
                if (!a.unknowns->counts(j)) continue;
                work += load[j] * way[j];
                all += diagonal[j] * way[j] * way[j];
            }
            sums[2 * std::size_t(c)] = work;
            sums[2 * std::size_t(c) + 1] = all;
        }
    });
    allranks().sum(sums.data(), sums.size());
    for (int c = 0; c < columns; ++c) {
        const double stiffness = sums[2 * std::size_t(c)] / sums[2 * std::size_t(c) + 1];
        if (!(found.softest < 0 ? stiffness > 0 : stiffness < found.stiffness)) continue;
        found.softest = c;
        found.stiffness = stiffness;
    }
    if (found.softest < 0) return;
    const auto from = f.begin() + std::ptrdiff_t(n) * found.softest;
    found.load.assign(from, from + std::ptrdiff_t(n));
}

solvedcolumns solvecolumns(const equations& q, engine& l, double* values, int columns) {
    const auto n = std::size_t(q.dofs.unknowns);
    const std::vector<double> f(values, values + n * std::size_t(columns));
    l.solve(values, columns);
    solvedcolumns solved;
    std::vector<double>& error = solved.error;
    error.assign(std::size_t(columns), 0);
    const int piece = allranks().alone() ? 1 : columns;  // processes talk by one thread
    parallelpieces(columns, piece, [&](int first, int last, int) {
        std::vector<double> rest;
        for (int c = first; c < last; ++c) {
            const std::size_t at = n * std::size_t(c);
            error[std::size_t(c)] = backwarderror(q.stiffness, values + at, f.data() + at, rest);
        }
    });
    // A step of iterative refinement where the solution is not as good as the numbers allow.
    const double good = 1e-13;
    for (int c = 0; c < columns; ++c) {
        if (error[std::size_t(c)] < good) continue;
        const std::size_t at = n * std::size_t(c);
        std::vector<double> better(values + at, values + at + n), rest;
        backwarderror(q.stiffness, better.data(), f.data() + at, rest);
        l.solve(rest.data(), 1);
        for (std::size_t i = 0; i < n; ++i) better[i] += rest[i];
        const double now = backwarderror(q.stiffness, better.data(), f.data() + at, rest);
        if (!(now < error[std::size_t(c)])) continue;
        error[std::size_t(c)] = now;
        std::copy(better.begin(), better.end(), values + at);
    }
    findsoftest(q.stiffness, f, values, columns, solved);
    return solved;
}
