// SPDX-License-Identifier: GPL-3.0-or-later
#include "solver/dofs/heldloads.h"

#include <algorithm>
#include <cmath>

#include "solver/base/refuse.h"
#include "solver/dofs/faraway.h"
#include "solver/dofs/rigid.h"
#include "solver/processes/ranks.h"

namespace {
// Loads of a case that nothing takes up.
struct letgo {
    long count = 0;
    int node = 0, dof = 0;  // of the largest; names of the files
    double largest = 0;
    double place = 0, placeoflargest = 0;  // in the search, by which the first of equals is named
};
}  // namespace

[[noreturn]] static void refuseload(int node, int dof, const std::string& casename) {
    refuse("Node " + std::to_string(node) + " can move freely in " + dofname(dof) +
           ": load case \"" + casename +
           "\" loads it there and no element stiffens that direction. Constrain it or change the "
           "load");
}

// Forces or moments of a node or body along a held direction. Of a plane that is flat to an angle,
// a load in it has a part across it that is noise; a little more than that is told, much more would
// have to be carried. Loads of elements that cancel at a node leave the noise of each: it compares
// with the largest of their kind, which stands where none cancels them.
static void checkpart(double part, double whole, double angle, double noload, double largest,
                      int node, int dof, const std::string& casename, letgo& gone) {
    const double quiet = 2 * std::min(angle, quietangle), noise = std::max(1e-4, quiet);
    const double mostletgo = 1e-2;
    const double little = 1e6 * noload;  // what is left of loads in a plane that cancel
    if (part < whole) whole = std::max(whole, little);
    if (angle > 1.5 * leastangle && part <= quiet * largest) return;
    if (part <= std::max(noload, noise * whole)) return;
    const bool tilted = angle > quietangle && part <= 2 * angle * largest;
    if (part > mostletgo * whole && !tilted) refuseload(node, dof, casename);
    ++gone.count;
    if (part <= gone.largest) return;
    gone.largest = part;
    gone.placeoflargest = gone.place;
    gone.node = node;
    gone.dof = dof;
}

// Force or moment, whichever the k-th degree of freedom takes.
static double loadat(const dofmap& d, const double* f, int n, int k) {
    double square = 0;
    for (int j = 0; j < d.pernode; ++j)
        if ((d.code[j] > 3) == (d.code[k] > 3)) square += f[d.index(n, j)] * f[d.index(n, j)];
    return std::sqrt(square);
}

// Force, or moment over length, on a body or node and along a held direction of it. amount: of all
// that acts there, whether it cancels or not; at a node of forces or of moments, whichever have the
// larger part: noise gives a turn that is held a little of a translation, and the forces there are
// to be held against forces.
namespace {
struct heldpart {
    double part = 0, amount = 0;
    double length = 1;  // that makes moments of forces
    vec6 direction = vec6::Zero();
    int at = 0;  // that tells it best: its place in the direction
};
}  // namespace

static heldpart nodepart(const dofmap& d, const helddirection& h, const double* f) {
    heldpart held;
    held.direction = h.direction;
    double parts[2] = {}, largest[2] = {-1, -1};  // of forces, of moments
    int at[2] = {};
    for (int k = 0; k < d.pernode; ++k) {
        const int kind = d.code[k] > 3;
        parts[kind] += h.direction[k] * f[d.index(h.owner, k)];
        if (std::fabs(h.direction[k]) <= largest[kind]) continue;
        largest[kind] = std::fabs(h.direction[k]);
        at[kind] = k;
    }
    held.part = parts[0] + parts[1];
    held.at = at[std::fabs(parts[1]) > std::fabs(parts[0])];
    held.amount = loadat(d, f, h.owner, held.at);
    return held;
}

static heldpart partof(const model& m, const dofmap& d, const helddirection& h, const double* f) {
    const int b = d.bodyof[std::size_t(h.owner)];
    if (b < 0) return nodepart(d, h, f);
    heldpart held;
    held.direction = h.direction;
    const rigidbody& body = d.bodies[std::size_t(b)];
    held.length = bodylength(m, body);
    held.direction.tail(m.twod ? 4 : 3) *= held.length;
    const double size = held.direction.norm();
    held.direction /= size;
    held.direction.cwiseAbs().maxCoeff(&held.at);
    for (const int n : body.nodes) {
        const vec6 motion = bodyarm(m, d, body, n) * h.direction / size;
        for (int k = 0; k < d.pernode; ++k) {
            const double value = f[d.index(n, k)];
            held.part += motion[k] * value;
            held.amount += std::fabs(value) / (d.code[k] > 3 ? held.length : 1);
        }
    }
    return held;
}

vec6 heldload(const model& m, const dofmap& d, const double* f) {
    vec6 sum = vec6::Zero();
    const auto add = [&](int n, int dof, double value) {
        vec3 at = m.nodes[std::size_t(n)];
        if (m.twod) at.z() = 0;
        sum[dof - 1] += value;
        if (dof <= 3) sum.tail<3>() += at.cross(vec3(value * vec3::Unit(dof - 1)));
    };
    const auto counted = [&](int n) { return d.nodes->counts(std::size_t(n - 1)); };
    for (int i = 0; i < d.dofs(); ++i)
        if (d.heldplain[std::size_t(i)] && f[i] != 0 && counted(i / d.pernode + 1))
            add(i / d.pernode + 1, d.code[i % d.pernode], f[i]);
    for (const helddirection& h : d.held) {
        if (!counted(h.owner)) continue;
        const heldpart held = partof(m, d, h, f);
        if (d.bodyof[std::size_t(h.owner)] < 0) {
            for (int k = 0; k < d.pernode; ++k)
                add(h.owner, d.code[k], held.part * held.direction[k]);
            continue;
        }
        for (int j = 0; j < (m.twod ? 3 : 6); ++j) {
            const int dof = m.twod && j == 2 ? 6 : j + 1;
            add(h.owner, dof, held.part * held.direction[j] * (dof > 3 ? held.length : 1));
        }
    }
    allranks().sum(sum.data(), sum.size());
    return sum;
}

// Degrees of freedom, then directions of owners, by the numbers of the files; those that this
// process counts. largest: force, moment; size: of the model, by which they compare.
static void checkparts(const model& m, const dofmap& d, const std::vector<float>& angle,
                       const double* f, const double* largest, double size,
                       const std::string& casename, letgo& gone) {
    const double part = 1e-9, force = std::max(largest[0], largest[1] / size);
    const double noloads[2] = {part * force, part * force * size};
    for (int i = 0; i < d.dofs(); ++i) {
        const int n = i / d.pernode + 1, k = i % d.pernode, name = m.nameofnode(n);
        const double noload = noloads[d.code[k] > 3];
        if (!d.heldplain[std::size_t(i)] || std::fabs(f[i]) <= noload) continue;
        if (!d.nodes->counts(std::size_t(n - 1))) continue;
        gone.place = double(name) * d.pernode + k;
        checkpart(std::fabs(f[i]), loadat(d, f, n, k), angle[std::size_t(n)], noload,
                  largest[d.code[k] > 3], name, d.code[k], casename, gone);
    }
    for (const helddirection& h : d.held) {
        if (!d.nodes->counts(std::size_t(h.owner - 1))) continue;
        gone.place = (double(m.allnodes()) + m.nameofnode(h.owner) + 1) * d.pernode;
        const heldpart held = partof(m, d, h, f);
        const bool body = d.bodyof[std::size_t(h.owner)] >= 0;
        const int at = held.at, dof = !body ? d.code[at] : m.twod && at == 2 ? 6 : at + 1;
        const double nothing =
            body ? part * std::max(largest[0], largest[1] / held.length) : noloads[dof > 3];
        if (std::fabs(held.part) <= nothing) continue;
        checkpart(std::fabs(held.part), held.amount, angleof(d, angle, h.owner), nothing,
                  largest[dof > 3] / (dof > 3 ? held.length : 1), m.nameofnode(h.owner), dof,
                  casename, gone);
    }
}

void checkheldloads(const model& m, const dofmap& d, const std::vector<float>& angle,
                    const double* f, int lc, runlog& log) {
    const std::string& casename = m.cases[std::size_t(lc)].name;
    double largest[2] = {};  // force, moment
    for (int i = 0; i < d.dofs(); ++i) {
        double& kind = largest[d.code[i % d.pernode] > 3];
        kind = std::max(kind, std::fabs(f[i]));
    }
    allranks().most(largest, 2);
    const double reach = modelsize(m), size = reach > 0 ? reach : 1;
    letgo gone;
    std::string fault;
    guarded([&] { checkparts(m, d, angle, f, largest, size, casename, gone); },
            [&](const runtimeerror& e) { fault = e.what; });
    refusefirst(gone.place, fault);
    double count = double(gone.count);
    allranks().sum(&count, 1);
    if (count == 0) return;
    const std::vector<double> most = allranks().greatest(
        {gone.largest, -gone.placeoflargest, double(gone.node), double(gone.dof)});
    gone = {long(count), int(most[2]), int(most[3]), most[0]};
    log.warn("Load case \"" + casename + "\": " + std::to_string(gone.count) +
                 " small load(s) fall away, nothing stiffens their direction; the largest, " +
                 shortnumber(gone.largest) + ", at node " + std::to_string(gone.node) + " in " +
                 dofname(gone.dof),
             lc);
}
