// SPDX-License-Identifier: GPL-3.0-or-later
// The softest motion by inverse iteration, what it costs, and its name.
#include "solver/equations/mechanism.h"

#include <algorithm>
#include <cmath>

#include "solver/base/refuse.h"
#include "solver/elements/kinds.h"
#include "solver/elements/span.h"
#include "solver/equations/engines.h"
#include "solver/equations/factor.h"
#include "solver/equations/forces.h"
#include "solver/equations/softness.h"
#include "solver/processes/ranks.h"

// --- the softest motion --------------------------------------------------------------------------

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

// By nodes: the order of elimination does not matter.
static std::vector<double> startof(const dofmap& d, const sharing& unknowns, std::size_t n) {
    std::vector<double> v(n, 0);
    startnoise start;
    int next = 0;
    for (const int place : d.position)
        for (int k = 0; place >= 0 && k < d.unknowncount[std::size_t(place)]; ++k) {
            const auto at = std::size_t(d.firstunknown[std::size_t(place)] + k);
            v[at] = start.at(unknowns.alone() ? next++ : unknowns.numberof(at));
        }
    return v;
}

// The motion that costs next to nothing, by inverse iteration. energy: out, of the motion against
// the diagonal's; noise: out, what the search itself leaves of it, 0 where none was possible.
static std::vector<double> softestmotion(const model& m, const settings& s, const dofmap& d,
                                         const sparsematrix& stiffness, strainenergy& energy,
                                         double& noise) {
    const sharing& unknowns = *stiffness.unknowns;
    const std::vector<double> diagonal = diagonalof(stiffness);
    sparsematrix a;
    const std::unique_ptr<engine> l = makefactor();
    l->describe(m, d);
    energy = {-1, 0};
    noise = 0;
    const double trace = factorisewithtrace(stiffness, a, *l), least = 1e-10;
    if (trace == 0) return {};
    noise = std::pow(std::max(least, 10 * trace), 2);
    std::vector<double> v = startof(d, unknowns, diagonal.size());
    const int rounds = 6;
    for (int round = 0; round < rounds; ++round) {
        for (std::size_t j = 0; j < v.size(); ++j) v[j] *= diagonal[j];
        l->solve(v.data(), 1);
        double largest = 0;
        for (const double value : v) largest = std::max(largest, std::fabs(value));
        allranks().most(&largest, 1);
        for (double& value : v) value /= largest;
    }
    std::vector<double> weighed = v;
    for (std::size_t j = 0; j < v.size(); ++j) weighed[j] *= diagonal[j];
    const double all = dotproduct(unknowns, v.data(), weighed.data(), v.size());
    energy = energyof(m, s, d, nodalmotion(d, v));
    energy.energy /= all;
    energy.rounding /= all;
    return v;
}

// --- its name -----------------------------------------------------------------------------------

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

static vec3 translationof(const dofmap& d, const std::vector<double>& u, int n) {
    vec3 at = vec3::Zero();
    for (int k = 0; k < d.pernode; ++k)
        if (d.code[k] <= 3) at[d.code[k] - 1] = u[d.index(n, k)];
    return at;
}

// What moves with a node: the nodes joined to it by elements whose nodes all move.
namespace {
struct movingpart {
    double count;
    nodebox box;
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
    double count = 0;
    const nodebox box = boxof(m, [&](int n) {
        const bool moves = label[std::size_t(n)] == wanted && d.nodes->counts(std::size_t(n - 1));
        count += moves;
        return moves;
    });
    allranks().sum(&count, 1);
    return {count, box};
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
    int axis = 0;
    way.cwiseAbs().maxCoeff(&axis);
    way *= way[axis] < 0 ? -1 : 1;  // a motion has no sign
    const vec3 along = (way / way.norm() * 1000).array().round() / 1000;
    if (along.cwiseAbs().maxCoeff() < 0.999) text = " (along " + placetext(along) + ")";
    const std::vector<double> label = labelparts(m, d, u, 1e-3 * way.norm());
    double wanted = counted ? label[std::size_t(n)] : 0;
    allranks().sum(&wanted, 1);
    const movingpart part = partof(m, d, label, wanted);
    if (part.count < 2) return text;
    return text + " with " + std::to_string(long(part.count)) + " nodes between " +
           placetext(part.box.low) + " and " + placetext(part.box.high);
}

// The largest translation of the motion, or its largest rotation where nothing translates.
static std::string motiontext(const model& m, const dofmap& d, const std::vector<double>& u,
                              const char* freely) {
    const double size = modelsize(m);
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
    return "Node " + std::to_string(largest.item) + " can move " + freely + " in " +
           dofname(int(dof)) + (dof <= 3 ? extenttext(m, d, u, largest.item) : "");
}

void refusemotion(const model& m, const settings& s, const dofmap& d,
                  const std::vector<double>& v) {
    const std::string apart = stiffnesstoofarapart(m, s, nodigits);
    refuse(motiontext(m, d, nodalmotion(d, v), "freely") +
           ": the structure or a part of it is a mechanism. Add a constraint or an element that "
           "holds it" +
           (apart.empty() ? "" : ". If nothing is missing there: " + apart));
}

std::string whyillconditioned(const model& m, const settings& s, const dofmap& d,
                              const std::vector<double>& u) {
    const std::string apart = stiffnesstoofarapart(m, s);
    return !apart.empty() ? apart
                          : motiontext(m, d, u, "almost freely") +
                                ": the structure or a part of it is next to a mechanism. Add a "
                                "constraint or an element that holds it";
}

void refusemechanism(const model& m, const settings& s, const dofmap& d,
                     const sparsematrix& stiffness, const pivotfound& p, runlog& log) {
    const double nothing = 1e-22;  // of the diagonal
    strainenergy found;
    double noise = 0;
    const std::vector<double> v = softestmotion(m, s, d, stiffness, found, noise);
    const double energy = found.energy, none = std::max(nothing, found.rounding);
    log.line("Smallest pivot " + shortnumber(p.size) + " of its diagonal; energy of the softest " +
             "motion " + shortnumber(energy));
    if (p.definite && energy > none) return;
    if (noise == 0)
        refuse(
            "The stiffness has directions of negative stiffness; check the spring matrices of "
            "the element groups");
    if (energy < -none)
        refuse("The stiffness has a direction of negative stiffness near node " +
               std::to_string(ownernode(m, d, p.unknown)) +
               "; check the spring matrices of the element groups");
    if (energy > std::max(noise, none))
        refuse("The equations cannot be solved to a useful accuracy. " +
               whyillconditioned(m, s, d, nodalmotion(d, v)));
    refusemotion(m, s, d, v);
}
