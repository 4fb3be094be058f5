// SPDX-License-Identifier: GPL-3.0-or-later
// Static equations.
#include "solver/solve.h"

#include <algorithm>
#include <cmath>
#include <numeric>

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
#include "solver/softness.h"
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

equations makeequations(model& m, const settings& s, int anadof, runlog& log) {
    equations q;
    q.dofs = makedofs(m, s, anadof, log);
    q.halfbandwidth = halfbandwidth(m, q.dofs);
    const bool alone = allranks().alone();
    if (!alone) keeppart(m, q.dofs);
    numberequations(m, alone, q, log);
    log.stage("assemble");
    assemble(m, s, q.dofs, part::stiffness, q.stiffness, log);
    return q;
}

double factorneed(const model& m, const settings& s, int anadof, int columns) {
    runlog unheard;
    unheard.quiet();
    equations q;
    q.dofs = makedofs(m, s, anadof, unheard);
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
    together([&] {
        if (needed <= available) return;
        refuse("Not enough memory: the equations need " + shortnumber(needed / mebibyte) +
               " MiB, this machine has " + shortnumber(available / mebibyte) +
               " MiB free. Close other programs, mesh coarser or use fewer load cases");
    });
}

// --- mechanisms ---------------------------------------------------------------------------------

// The node of the files that owns an unknown of all.
static int ownernode(const model& m, const dofmap& d, std::int64_t unknown) {
    double name = 0;
    const int here = d.freedoms->placeof(int(unknown));
    if (here >= 0) {
        const auto after = std::ranges::upper_bound(d.firstunknown, here);
        const int place = int(after - d.firstunknown.begin()) - 1;
        const auto owner = std::find(d.position.begin() + 1, d.position.end(), place);
        name = m.nameofnode(int(owner - d.position.begin()));
    }
    allranks().most(&name, 1);
    return int(name);
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
static strainenergy energyof(const model& m, const settings& s, const dofmap& d,
                             const std::vector<double>& u) {
    displacements motion;
    motion.u = u;
    motion.cases = 1;
    double sums[2] = {};
    for (const int e : stiffelements(m)) {
        const strainenergy one = elementenergy(m, s, d, motion, e);
        sums[0] += one.energy;
        sums[1] += one.rounding;
    }
    allranks().sum(sums, 2);
    return {sums[0], sums[1]};
}

// The motion that costs next to nothing, by inverse iteration. energy: out, of the motion against
// the diagonal's; noise: out, what the search itself leaves of it, 0 where none was possible.
static std::vector<double> softestmotion(const model& m, const settings& s, const equations& q,
                                         strainenergy& energy, double& noise) {
    const std::int64_t n = q.stiffness.size();
    const sharing& unknowns = *q.stiffness.unknowns;
    const std::vector<double> diagonal = diagonalof(q.stiffness);
    sparsematrix a;
    const std::unique_ptr<engine> l = makefactor();
    l->describe(m, q.dofs);
    energy = {-1, 0};
    noise = 0;
    const double trace = factorisewithtrace(q.stiffness, a, *l), least = 1e-10;
    if (trace == 0) return {};
    noise = std::pow(std::max(least, 10 * trace), 2);
    std::vector<double> v(std::size_t(n), 0);
    startnoise start;
    int next = 0;
    for (const int place : q.dofs.position)  // by nodes: the order of elimination does not matter
        for (int k = 0; place >= 0 && k < q.dofs.unknowncount[std::size_t(place)]; ++k) {
            const auto at = std::size_t(q.dofs.firstunknown[std::size_t(place)] + k);
            v[at] = start.at(unknowns.alone() ? next++ : unknowns.numberof(at));
        }
    const int rounds = 6;
    for (int round = 0; round < rounds; ++round) {
        for (std::int64_t j = 0; j < n; ++j) v[std::size_t(j)] *= diagonal[std::size_t(j)];
        l->solve(v.data(), 1);
        double largest = 0;
        for (const double value : v) largest = std::max(largest, std::fabs(value));
        allranks().most(&largest, 1);
        for (double& value : v) value /= largest;
    }
    std::vector<double> weighed = v;
    for (std::size_t j = 0; j < v.size(); ++j) weighed[j] *= diagonal[j];
    const double all = dotproduct(unknowns, v.data(), weighed.data(), v.size());
    energy = energyof(m, s, q.dofs, nodalmotion(q.dofs, v));
    energy.energy /= all;
    energy.rounding /= all;
    return v;
}

static vec3 translationof(const dofmap& d, const std::vector<double>& u, int n) {
    vec3 at = vec3::Zero();
    for (int k = 0; k < d.pernode; ++k)
        if (d.code[k] <= 3) at[d.code[k] - 1] = u[d.index(n, k)];
    return at;
}

// What moves with a node: the nodes joined to it by elements whose nodes all move.
namespace {
struct movingpart {
    double count = 0;
    vec3 low = vec3::Constant(INFINITY), high = -low;
};
}  // namespace

// By node a node that stands for those here that move with it; 0 where it stays.
static std::vector<int> movingroots(const model& m, const dofmap& d, const std::vector<double>& u,
                                    double still) {
    std::vector<int> part(std::size_t(m.nnodes()) + 1);
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
        if (part[std::size_t(i)] != 0) part[std::size_t(i)] = root(i);
    return part;
}

// Each node gets the lowest name of all that move with it; infinity where it stays.
static std::vector<double> labelparts(const model& m, const dofmap& d, const std::vector<double>& u,
                                      double still) {
    const std::vector<int> root = movingroots(m, d, u, still);
    std::vector<double> label(root.size(), INFINITY), least = label;
    for (int i = 1; i <= m.nnodes(); ++i)
        if (root[std::size_t(i)] > 0) label[std::size_t(i)] = m.nameofnode(i);
    for (double changed = 1; changed > 0; allranks().most(&changed, 1)) {
        d.nodes->least(label.data() + 1);
        const std::vector<double> before = label;
        for (std::size_t i = 1; i < label.size(); ++i) {
            double& at = least[std::size_t(root[i])];
            at = std::min(at, label[i]);
        }
        for (std::size_t i = 1; i < label.size(); ++i)
            if (root[i] > 0) label[i] = least[std::size_t(root[i])];
        changed = !d.nodes->alone() && label != before;
    }
    return label;
}

static movingpart partof(const model& m, const dofmap& d, const std::vector<double>& label,
                         double wanted) {
    movingpart part;
    vec6 most = vec6::Constant(-INFINITY);  // of the coordinates, and of their negatives
    for (int i = 1; i <= m.nnodes(); ++i) {
        if (label[std::size_t(i)] != wanted || !d.nodes->counts(std::size_t(i - 1))) continue;
        ++part.count;
        most.head<3>() = most.head<3>().cwiseMax(m.nodes[std::size_t(i)]);
        most.tail<3>() = most.tail<3>().cwiseMax(-m.nodes[std::size_t(i)]);
    }
    allranks().sum(&part.count, 1);
    allranks().most(most.data(), most.size());
    part.high = most.head<3>();
    part.low = -most.tail<3>();
    return part;
}

static std::string placetext(const vec3& at) {
    return shortnumber(at.x()) + ", " + shortnumber(at.y()) + ", " + shortnumber(at.z());
}

// " along 0.6, 0.8, 0" where that is no axis, and the box of what moves with the node of the files
// that is named so.
static std::string extenttext(const model& m, const dofmap& d, const std::vector<double>& u,
                              int name) {
    const int n = m.placeofnode(name);
    const bool counted = n > 0 && d.nodes->counts(std::size_t(n - 1));
    vec3 way = counted ? translationof(d, u, n) : vec3::Zero();
    allranks().sum(way.data(), way.size());
    if (!(way.norm() > 0)) return "";
    std::string text;
    const vec3 along = (way / way.norm() * 1000).array().round() / 1000;
    if (along.cwiseAbs().maxCoeff() < 0.999) text = " (along " + placetext(along) + ")";
    const std::vector<double> label = labelparts(m, d, u, 1e-3 * way.norm());
    double wanted = counted ? label[std::size_t(n)] : 0;
    allranks().sum(&wanted, 1);
    const movingpart part = partof(m, d, label, wanted);
    if (part.count < 2) return text;
    return text + " with " + std::to_string(long(part.count)) + " nodes between " +
           placetext(part.low) + " and " + placetext(part.high);
}

// Names the largest translation of the motion, or its largest rotation where nothing translates.
[[noreturn]] static void refusemotion(const model& m, const dofmap& d,
                                      const std::vector<double>& v) {
    const std::vector<double> u = nodalmotion(d, v);
    const vec3 first = firstnode(m);
    double size = 0;
    for (int n = 1; n <= m.nnodes(); ++n)
        size = std::max(size, (m.nodes[std::size_t(n)] - first).cwiseAbs().maxCoeff());
    allranks().most(&size, 1);
    const auto dofs = std::size_t(d.pernode);
    const auto sizeat = [&](std::size_t i) {
        const double spin = 1e-6;  // a rotation counts where next to nothing translates
        const double part = std::fabs(u[i]), least = 1e-300;  // of a single node
        return std::max(least, d.code[i % dofs] > 3 ? part * spin * size : part);
    };
    const auto sizeofnode = [&](std::size_t i) {
        double most = 0;
        for (std::size_t k = 0; k < dofs; ++k) most = std::max(most, sizeat(i * dofs + k));
        return most;
    };
    const largestof largest = findlargest(*d.nodes, std::size_t(m.nnodes()), sizeofnode);
    double dof = 0;
    if (const int n = m.placeofnode(largest.item); n > 0) {
        largestof part;
        for (int k = 0; k < d.pernode; ++k) part.meet(d.code[k], sizeat(d.index(n, k)));
        dof = part.item;
    }
    allranks().most(&dof, 1);
    refuse("Node " + std::to_string(largest.item) + " can move freely in " + dofname(int(dof)) +
           (dof <= 3 ? extenttext(m, d, u, largest.item) : "") +
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
    strainenergy found;
    double noise = 0;
    const std::vector<double> v = softestmotion(m, s, q, found, noise);
    const double energy = found.energy, none = std::max(nothing, found.rounding);
    log.line("Smallest pivot " + shortnumber(pivot) + " of its diagonal; energy of the softest " +
             "motion " + shortnumber(energy));
    if (definite && energy > none) return;
    if (noise == 0)
        refuse(
            "The stiffness has directions of negative stiffness; check the spring matrices of "
            "the element groups");
    if (energy < -none)
        refuse("The stiffness has a direction of negative stiffness near node " +
               std::to_string(ownernode(m, q.dofs, unknown)) +
               "; check the spring matrices of the element groups");
    if (energy > std::max(noise, none))
        refuse("The equations cannot be solved to a useful accuracy. " + whyillconditioned(m, s));
    refusemotion(m, q.dofs, v);
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

// rest = f - a u; returns its size over that of |a||u| + |f|. Higham, Accuracy and Stability of
// Numerical Algorithms, chapter 7.
static double backwarderror(const sparsematrix& a, const double* u, const double* f,
                            std::vector<double>& rest) {
    const auto n = std::size_t(a.size());
    rest.assign(n, 0);
    for (std::size_t j = 0; j < n; ++j)
        if (a.unknowns->counts(j)) rest[j] = f[j];
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
    a.unknowns->sum(rest.data(), 1);
    a.unknowns->sum(size.data(), 1);
    const double whole = sizeof2(*a.unknowns, size), left = sizeof2(*a.unknowns, rest);
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
