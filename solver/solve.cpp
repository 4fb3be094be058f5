// SPDX-License-Identifier: GPL-3.0-or-later
// Static equations.
#include "solver/solve.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

#include "solver/engines.h"
#include "solver/factor.h"
#include "solver/forces.h"
#include "solver/kinds.h"
#include "solver/makedofs.h"
#include "solver/memory.h"
#include "solver/order.h"
#include "solver/parallel.h"
#include "solver/ranks.h"
#include "solver/refuse.h"
#include "solver/span.h"

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

// What the factor and the vectors of so many right sides take.
static double needof(const engine& l, int columns, int unknowns) {
    const double vectors = 5;  // loads, right sides, result, work and residual
    return l.bytes() + vectors * columns * double(unknowns) * sizeof(double);
}

// Degrees of freedom, order and pattern. ownorder: for the own factor; an engine that shares the
// equations among processes finds an order itself.
static equations numberequations(const model& m, const settings& s, int anadof, bool ownorder,
                                 runlog& log) {
    equations q;
    q.dofs = makedofs(m, s, anadof, log);
    q.halfbandwidth = halfbandwidth(m, q.dofs);
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
    log.line("Equations: " + std::to_string(q.dofs.unknowns) + ", half bandwidth " +
             std::to_string(q.halfbandwidth));
    if (!told.empty()) log.line(told);
    q.stiffness = makepattern(q.dofs, graph, order);
    return q;
}

equations makeequations(const model& m, const settings& s, int anadof, runlog& log) {
    equations q = numberequations(m, s, anadof, allranks().alone(), log);
    log.stage("assemble");
    assemble(m, s, q.dofs, part::stiffness, q.stiffness, log);
    return q;
}

double factorneed(const model& m, const settings& s, int anadof, int columns) {
    runlog unheard;
    unheard.quiet();
    const equations q = numberequations(m, s, anadof, true, unheard);
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
    together([&] {
        if (needed <= available) return;
        refuse("Not enough memory: the equations need " + shortnumber(needed / mebibyte) +
               " MiB, this machine has " + shortnumber(available / mebibyte) +
               " MiB free. Close other programs, mesh coarser or use fewer load cases");
    });
}

// --- mechanisms ---------------------------------------------------------------------------------

static namedunknown nameunknown(const dofmap& d, std::int64_t unknown) {
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

static std::vector<double> nodalmotion(const dofmap& d, const std::vector<double>& v) {
    std::vector<double> u(d.equation.size()), rest(d.equation.size());
    const std::vector<double> still(v.size(), 0);
    expand(d, v.data(), u.data());
    expand(d, still.data(), rest.data());
    for (std::size_t i = 0; i < u.size(); ++i) u[i] -= rest[i];
    return u;
}

// Factorises the matrix made definite by a trace of its diagonal, which is returned; 0 where a
// trace is too little.
static double factorisewithtrace(const sparsematrix& stiffness, sparsematrix& a, engine& l) {
    for (const double trace : {1e-12, 1e-9}) {
        a = stiffness;
        for (std::size_t j = 0; j < std::size_t(a.size()); ++j)
            a.value[std::size_t(a.start[j])] *= 1 + trace;
        l.analyse(a);
        if (l.factorise(a)) return trace;
    }
    return 0;
}

// Energy of a motion, element by element with the rigid part of it taken out: a slender structure's
// softest motion costs less than the rounding of its matrix, a mechanism's nothing at all.
static double energyof(const model& m, const settings& s, const dofmap& d,
                       const std::vector<double>& u) {
    displacements motion;
    motion.u = u;
    motion.cases = 1;
    double energy = 0;
    elcases f, ue;
    for (const int e : stiffelements(m)) {
        elementforces(m, s, d, motion, e, f);
        gather(d, dofsof(d, m.elements[std::size_t(e)]), motion, ue);
        energy += ue.col(0).dot(f.col(0));
    }
    allranks().sum(&energy, 1);
    return energy;
}

// The motion that costs next to nothing, by inverse iteration. energy: out, of the motion against
// the diagonal's; noise: out, what the search itself leaves of it.
static std::vector<double> softestmotion(const model& m, const settings& s, const equations& q,
                                         double& energy, double& noise) {
    const std::int64_t n = q.stiffness.size();
    const std::vector<double> diagonal = diagonalof(q.stiffness);
    sparsematrix a;
    const std::unique_ptr<engine> l = makefactor();
    l->describe(m, q.dofs);
    energy = -1;
    const double trace = factorisewithtrace(q.stiffness, a, *l), least = 1e-10;
    if (trace == 0) return {};
    noise = std::pow(std::max(least, 10 * trace), 2);
    std::mt19937 random(1);
    std::uniform_real_distribution<double> spread(0.5, 1.5);
    std::vector<double> v(std::size_t(n), 0);
    for (const int place : q.dofs.position)  // by nodes: the order of elimination does not matter
        for (int k = 0; place >= 0 && k < q.dofs.unknowncount[std::size_t(place)]; ++k)
            v[std::size_t(q.dofs.firstunknown[std::size_t(place)] + k)] = spread(random);
    const int rounds = 6;
    for (int round = 0; round < rounds; ++round) {
        for (std::int64_t j = 0; j < n; ++j) v[std::size_t(j)] *= diagonal[std::size_t(j)];
        l->solve(v.data(), 1);
        double largest = 0;
        for (const double value : v) largest = std::max(largest, std::fabs(value));
        for (double& value : v) value /= largest;
    }
    double all = 0;
    for (std::size_t j = 0; j < v.size(); ++j) all += v[j] * v[j] * diagonal[j];
    energy = energyof(m, s, q.dofs, nodalmotion(q.dofs, v)) / all;
    return v;
}

static vec3 translationof(const dofmap& d, const std::vector<double>& u, int n) {
    vec3 at = vec3::Zero();
    for (int k = 0; k < d.pernode; ++k)
        if (d.code[k] <= 3) at[d.code[k] - 1] = u[d.index(n, k)];
    return at;
}

// The nodes that move with node n: joined to it by elements whose nodes all move.
static std::vector<int> movingpart(const model& m, const dofmap& d, const std::vector<double>& u,
                                   int n) {
    const double still = 1e-3 * translationof(d, u, n).norm();
    std::vector<int> part(std::size_t(m.nnodes()) + 1), list;
    for (int i = 1; i <= m.nnodes(); ++i)
        part[std::size_t(i)] = translationof(d, u, i).norm() > still ? i : 0;
    const auto root = [&](int i) {
        while (part[std::size_t(i)] != i) {
            part[std::size_t(i)] = part[std::size_t(part[std::size_t(i)])];
            i = part[std::size_t(i)];
        }
        return i;
    };
    for (int e = 1; e <= m.nelems(); ++e) {
        const elementdef& def = m.elements[std::size_t(e)];
        int before = 0;
        for (int k = 0; k < kindof(def.type).nodes; ++k) {
            if (part[std::size_t(def.node[k])] == 0) continue;
            const int here = root(def.node[k]);
            if (before > 0) part[std::size_t(std::max(before, here))] = std::min(before, here);
            before = root(here);
        }
    }
    for (int i = 1; i <= m.nnodes(); ++i)
        if (part[std::size_t(i)] != 0 && root(i) == root(n)) list.push_back(i);
    return list;
}

static std::string placetext(const vec3& at) {
    return shortnumber(at.x()) + ", " + shortnumber(at.y()) + ", " + shortnumber(at.z());
}

// " along 0.6, 0.8, 0" where that is no axis, and the box of what moves with the node.
static std::string extenttext(const model& m, const dofmap& d, const std::vector<double>& u,
                              int n) {
    const vec3 way = translationof(d, u, n);
    if (!(way.norm() > 0)) return "";
    std::string text;
    const vec3 along = (way / way.norm() * 1000).array().round() / 1000;
    if (along.cwiseAbs().maxCoeff() < 0.999) text = " (along " + placetext(along) + ")";
    const std::vector<int> part = movingpart(m, d, u, n);
    if (part.size() < 2) return text;
    vec3 low = m.nodes[std::size_t(n)], high = low;
    for (const int i : part) {
        low = low.cwiseMin(m.nodes[std::size_t(i)]);
        high = high.cwiseMax(m.nodes[std::size_t(i)]);
    }
    return text + " with " + std::to_string(part.size()) + " nodes between " + placetext(low) +
           " and " + placetext(high);
}

// Names the largest translation of the motion, or its largest rotation where nothing translates.
[[noreturn]] static void refusemotion(const model& m, const dofmap& d,
                                      const std::vector<double>& v) {
    const std::vector<double> u = nodalmotion(d, v);
    double size = 0;
    for (int n = 1; n <= m.nnodes(); ++n)
        size = std::max(size, (m.nodes[std::size_t(n)] - m.nodes[1]).cwiseAbs().maxCoeff());
    double largest = -1;
    int at = 0;
    for (int i = 0; i < d.dofs(); ++i) {
        double part = std::fabs(u[std::size_t(i)]);
        const double spin = 1e-6;  // a rotation counts where next to nothing translates
        if (d.code[i % d.pernode] > 3) part *= spin * size;
        if (part > largest * (1 + 1e-6)) {
            largest = part;
            at = i;
        }
    }
    const int n = at / d.pernode + 1, dof = d.code[at % d.pernode];
    refuse("Node " + std::to_string(n) + " can move freely in " + dofname(dof) +
           (dof <= 3 ? extenttext(m, d, u, n) : "") +
           ": the structure or a part of it is a mechanism. Add a constraint or an element that "
           "holds it");
}

void factorise(const model& m, const settings& s, const equations& q, engine& l, runlog& log) {
    log.stage("factor");
    const bool definite = l.factorise(q.stiffness);
    std::int64_t unknown = 0;
    const double pivot = definite ? l.smallestpivot(q.stiffness, unknown) : 0;
    const double suspicious = 1e-9, nothing = 1e-22;  // of the diagonal
    if (definite && pivot > suspicious) return;
    double energy = 0, noise = 0;
    const std::vector<double> v = softestmotion(m, s, q, energy, noise);
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
    if (energy > noise)
        refuse("The equations cannot be solved to a useful accuracy. " + whyillconditioned(m, s));
    refusemotion(m, q.dofs, v);
}

// --- solution -----------------------------------------------------------------------------------

static double sizeof2(const std::vector<double>& v) {
    double largest = 0, sum = 0;
    for (const double value : v) largest = std::max(largest, std::fabs(value));
    if (!(largest > 0)) return largest;
    for (const double value : v) sum += (value / largest) * (value / largest);
    return largest * std::sqrt(sum);
}

// rest = f - a u; returns its size over that of |a||u| + |f|. Higham, Accuracy and Stability of
// Numerical Algorithms, chapter 7.
static double backwarderror(const sparsematrix& a, const double* u, const double* f,
                            std::vector<double>& rest) {
    const auto n = std::size_t(a.size());
    rest.assign(n, 0);
    if (allranks().first()) std::copy_n(f, n, rest.data());
    std::vector<double> size(n);
    for (std::size_t j = 0; j < n; ++j) size[j] = std::fabs(rest[j]);
    for (std::size_t j = 0; j < n; ++j) {
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
    allranks().sum(rest.data(), a.size());
    allranks().sum(size.data(), a.size());
    const double whole = sizeof2(size), left = sizeof2(rest);
    return whole > 0 || !(left == 0) ? left / whole : 0;
}

std::vector<double> solvecolumns(const equations& q, engine& l, double* values, int columns) {
    const auto n = std::size_t(q.dofs.unknowns);
    const std::vector<double> f(values, values + n * std::size_t(columns));
    l.solve(values, columns);
    std::vector<double> error(std::size_t(columns), 0);
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
    return error;
}
