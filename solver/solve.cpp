// SPDX-License-Identifier: GPL-3.0-or-later
// Static equations.
#include "solver/solve.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

#include "solver/kinds.h"
#include "solver/memory.h"
#include "solver/order.h"
#include "solver/parallel.h"
#include "solver/refuse.h"

static const double mebibyte = 1024 * 1024;

std::int64_t halfbandwidth(const model& m, const dofmap& d) {
    std::vector<std::int64_t> first(d.owner.size() + 1, 0);  // unknowns of all owners before
    for (std::size_t n = 1; n < d.owner.size(); ++n)
        first[n + 1] = first[n] + (d.owner[n] == int(n) ? unknownsof(d, int(n)) : 0);
    std::int64_t half = 0;
    for (int e = 1; e <= m.nelems(); ++e) {
        const elementdef& def = m.elements[std::size_t(e)];
        std::int64_t low = INT64_MAX, high = -1;
        for (int i = 0; i < kindof(def.type).nodes; ++i) {
            const auto owner = std::size_t(d.owner[std::size_t(def.node[i])]);
            if (owner == 0) continue;
            low = std::min(low, first[owner]);
            high = std::max(high, first[owner + 1] - 1);
        }
        if (high >= low) half = std::max(half, high - low + 1);
    }
    return half;
}

equations makeequations(const model& m, const settings& s, int anadof, runlog& log) {
    equations q;
    q.dofs = makedofs(m, s, anadof, log);
    q.halfbandwidth = halfbandwidth(m, q.dofs);
    log.stage("order");
    std::vector<int> list;
    const nodegraph graph = ownergraph(m, q.dofs, list);
    std::string told;
    const std::vector<int> order = ordernodes(graph, told);
    std::vector<int> owners(order.size());
    for (std::size_t p = 0; p < order.size(); ++p) owners[p] = list[std::size_t(order[p])];
    numberunknowns(m, q.dofs, owners);
    log.line("Equations: " + std::to_string(q.dofs.unknowns) + ", half bandwidth " +
             std::to_string(q.halfbandwidth));
    if (!told.empty()) log.line(told);
    log.stage("assemble");
    q.stiffness = makepattern(q.dofs, graph, order);
    assemble(m, s, q.dofs, part::stiffness, q.stiffness, log);
    return q;
}

void analysefactor(const equations& q, factor& l, int columns, runlog& log) {
    log.stage("analyse");
    l.analyse(q.stiffness);
    const double vectors = 4;  // right sides, result, CHOLMOD's work and residual
    const double needed = l.bytes() + vectors * columns * double(q.dofs.unknowns) * sizeof(double);
    const double available = freememory();
    log.line("Factor: " + shortnumber(l.entries()) + " entries, " + shortnumber(l.operations()) +
             " operations, " + shortnumber(needed / mebibyte) + " MiB needed, " +
             shortnumber(available / mebibyte) + " MiB free");
    if (needed > available)
        refuse("Not enough memory: the equations need " + shortnumber(needed / mebibyte) +
               " MiB, this machine has " + shortnumber(available / mebibyte) +
               " MiB free. Close other programs, mesh coarser or use fewer load cases");
}

// --- mechanisms ---------------------------------------------------------------------------------

namedunknown nameunknown(const dofmap& d, std::int64_t unknown) {
    const auto after = std::upper_bound(d.firstunknown.begin(), d.firstunknown.end(), int(unknown));
    const int place = int(after - d.firstunknown.begin()) - 1;
    const auto owner = std::find(d.position.begin() + 1, d.position.end(), place);
    namedunknown name{int(owner - d.position.begin()), d.code[0]};
    for (int k = 0; k < d.pernode; ++k) {
        const int q = d.equation[d.index(name.node, k)];
        const bool own = q == unknown;
        if (own) name.dof = d.code[k];
        if (own || q >= dofmap::constantdof) continue;
        const combination& c = d.combinations[std::size_t(-2 - q)];
        if (c.factor[unknown - c.first] != 0) name.dof = d.code[k];
    }
    return name;
}

// The motion that costs next to nothing, by inverse iteration with the matrix made definite by a
// trace of its diagonal. energy: out, of the motion against the diagonal's.
static std::vector<double> softestmotion(const equations& q, double& energy) {
    const double trace = 1e-9;  // of the diagonal
    sparsematrix a = q.stiffness;
    const std::int64_t n = a.size();
    std::vector<double> diagonal(std::size_t(n), 0);
    for (std::int64_t j = 0; j < n; ++j) {
        double& entry = a.value[std::size_t(a.start[std::size_t(j)])];
        diagonal[std::size_t(j)] = entry;
        entry *= 1 + trace;
    }
    factor l;
    l.analyse(a);
    energy = 1;
    if (!l.factorise(a)) {
        energy = -1;
        return {};
    }
    std::mt19937 random(1);
    std::uniform_real_distribution<double> spread(0.5, 1.5);
    std::vector<double> v(std::size_t(n), 0), kv(v);
    for (double& value : v) value = spread(random);
    const int rounds = 6;
    for (int round = 0; round < rounds; ++round) {
        for (std::int64_t j = 0; j < n; ++j) v[std::size_t(j)] *= diagonal[std::size_t(j)];
        l.solve(v.data(), 1);
        double largest = 0;
        for (const double value : v) largest = std::max(largest, std::fabs(value));
        for (double& value : v) value /= largest;
    }
    multiply(q.stiffness, v.data(), kv.data(), 1);
    double own = 0, all = 0;
    for (std::size_t j = 0; j < v.size(); ++j) {
        own += v[j] * kv[j];
        all += v[j] * v[j] * diagonal[j];
    }
    energy = own / all;
    return v;
}

// Names the largest translation of the motion, or its largest rotation where nothing translates.
[[noreturn]] static void refusemotion(const model& m, const dofmap& d,
                                      const std::vector<double>& v) {
    std::vector<double> u(d.equation.size()), rest(d.equation.size());
    const std::vector<double> still(v.size(), 0);
    expand(d, v.data(), u.data());
    expand(d, still.data(), rest.data());
    double size = 0;
    for (int n = 1; n <= m.nnodes(); ++n)
        size = std::max(size, (m.nodes[std::size_t(n)] - m.nodes[1]).cwiseAbs().maxCoeff());
    double largest = -1;
    int at = 0;
    for (int i = 0; i < d.dofs(); ++i) {
        double part = std::fabs(u[std::size_t(i)] - rest[std::size_t(i)]);
        const double spin = 1e-6;  // a rotation counts where next to nothing translates
        if (d.code[i % d.pernode] > 3) part *= spin * size;
        if (part > largest * (1 + 1e-6)) {
            largest = part;
            at = i;
        }
    }
    refuse("Node " + std::to_string(at / d.pernode + 1) + " can move freely in " +
           dofname(d.code[at % d.pernode]) +
           ": the structure or a part of it is a mechanism. Add a constraint or an element that "
           "holds it");
}

void factorise(const model& m, const equations& q, factor& l, runlog& log) {
    log.stage("factor");
    const bool definite = l.factorise(q.stiffness);
    std::int64_t unknown = 0;
    const double pivot = definite ? l.smallestpivot(q.stiffness, unknown) : 0;
    const double suspicious = 1e-9, nothing = 1e-13;  // of the diagonal
    if (definite && pivot > suspicious) return;
    double energy = 0;
    const std::vector<double> v = softestmotion(q, energy);
    log.line("Smallest pivot " + shortnumber(pivot) + " of its diagonal; energy of the softest " +
             "motion " + shortnumber(energy));
    if (definite && energy > nothing) return;
    if (v.empty())
        refuse(
            "The stiffness has directions of negative stiffness; check the spring matrices of "
            "the element groups");
    if (energy < -nothing)
        refuse("The stiffness has a direction of negative stiffness near node " +
               std::to_string(nameunknown(q.dofs, unknown).node) +
               "; check the spring matrices of the element groups");
    refusemotion(m, q.dofs, v);
}

// --- solution -----------------------------------------------------------------------------------

static double largestof(const double* v, std::int64_t n) {
    double largest = 0;
    for (std::int64_t i = 0; i < n; ++i) largest = std::max(largest, std::fabs(v[i]));
    return largest;
}

static double sizeof2(const double* v, std::int64_t n) {
    const double largest = largestof(v, n);
    if (!(largest > 0)) return largest;
    double sum = 0;
    for (std::int64_t i = 0; i < n; ++i) sum += (v[i] / largest) * (v[i] / largest);
    return largest * std::sqrt(sum);
}

std::vector<double> solvecolumns(const equations& q, factor& l, double* values, int columns) {
    const std::int64_t n = q.dofs.unknowns;
    const auto count = std::size_t(n) * std::size_t(columns);
    const std::vector<double> f(values, values + count);
    l.solve(values, columns);
    std::vector<double> rest(count), relative(std::size_t(columns), 0);
    // One step of iterative refinement where the residual is above rounding.
    for (int round = 0; round < 2; ++round) {
        multiply(q.stiffness, values, rest.data(), columns);
        bool good = true;
        for (std::size_t i = 0; i < count; ++i) rest[i] = f[i] - rest[i];
        for (int c = 0; c < columns; ++c) {
            const std::int64_t at = c * n;
            const double size = sizeof2(f.data() + at, n);
            const double left = sizeof2(rest.data() + at, n);
            relative[std::size_t(c)] = size > 0 ? left / size : 0;
            good &= relative[std::size_t(c)] < 1e-12;
        }
        if (good || round == 1) break;
        l.solve(rest.data(), columns);
        for (std::size_t i = 0; i < count; ++i) values[i] += rest[i];
    }
    return relative;
}
