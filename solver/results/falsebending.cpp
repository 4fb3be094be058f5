// SPDX-License-Identifier: GPL-3.0-or-later
// Flat elements that stand for a curved surface hold each other's membrane stress in balance only
// in an even mesh. A pressure reaches the nodes as it balances the least stress that can carry it;
// what the membrane bears beside that leaves forces and moments at the nodes of an uneven mesh,
// which bend the shell where a real one would not. They are worked out from the stress that was
// found.
#include "solver/results/falsebending.h"

#include <Eigen/Geometry>
#include <algorithm>
#include <cmath>

#include "solver/base/parallel.h"
#include "solver/elements/folds.h"
#include "solver/elements/meanplane.h"
#include "solver/elements/membraneload.h"
#include "solver/elements/supports.h"
#include "solver/processes/ranks.h"
#include "solver/results/worstnode.h"

namespace {
// How shells meet at a node.
struct meeting {
    vec3 normal = vec3::Zero();  // of the first
    double angle = 0;            // of their corners, 2 pi all round
    double area = 0, thickness = INFINITY;
    int shells = 0;
    bool smooth = true, besidesupport = false;

    // The surface goes on all round; at its ends and folds more than the membrane holds a node, and
    // beside supports the shell does bend.
    bool inside() const {
        return smooth && !besidesupport && std::fabs(angle - 2 * EIGEN_PI) < 0.5;
    }
};

struct curvedshells {
    std::vector<meeting> nodes;
    std::vector<int> elements;  // their places among those of the stresses
};

// What a case has at the nodes.
struct nodestates {
    double largest = 0;      // stress of curved shells, of any kind
    std::vector<vec6> left;  // forces and moments that nothing balances
};
}  // namespace

static curvedshells findcurved(const model& m, const settings& s, const platestresses& p) {
    curvedshells found;
    found.nodes.resize(m.nodes.size());
    const supportbits supports = supportsof(m);
    for (std::size_t i = 0; i < p.elements.size(); ++i) {
        const int number = p.elements[i];
        const element e = elementat(m, s, number);
        if (!isshell(e.type)) continue;
        const vec3 normal = normalof(m, m.elements[std::size_t(number)]);
        const flatshape shape = flatten(e, meanaxes(e));
        const bool curved = iscurved(e);
        if (curved) found.elements.push_back(int(i));
        const bool held = std::any_of(e.node, e.node + e.nodes, [&](int n) {
            const int here = supports[std::size_t(n)];
            return here != 0 && mirrorsof(here) == 0;
        });
        for (int c = 0; c < e.nodes; ++c) {
            meeting& at = found.nodes[std::size_t(e.node[c])];
            if (at.shells++ == 0) at.normal = normal;
            at.besidesupport |= held;
            at.smooth &= curved && continues(at.normal, normal);
            const double cosine = -shape.along[c].dot(shape.along[(c + e.nodes - 1) % e.nodes]);
            at.angle += std::acos(std::clamp(cosine, -1.0, 1.0));
            at.area += flatarea(shape) / e.nodes;
            at.thickness = std::min(at.thickness, e.field(fieldthickness));
        }
    }
    return found;
}

// Mean over the corners, force a length, model axes.
static mat3 membraneof(const element& e, const double* stress) {
    mat3 mean = mat3::Zero();
    for (int c = 0; c < e.nodes; ++c) {
        const double* const at = stress + platevalues * c;
        mean(0, 0) += at[0], mean(1, 1) += at[1], mean(0, 1) += at[2];
    }
    mean(1, 0) = mean(0, 1);
    const mat3 axes = stressaxes(e);
    return e.field(fieldthickness) / e.nodes * axes.transpose() * mean * axes;
}

// The larger principal value of x, y, xy.
static double principal(const double* stress) {
    return std::fabs(stress[0] + stress[1]) / 2 +
           std::hypot((stress[0] - stress[1]) / 2, stress[2]);
}

static double largeststress(const model& m, const platestresses& p, int lc,
                            const curvedshells& shells) {
    double largest = 0;
    for (const int i : shells.elements) {
        const elementdef& e = m.elements[std::size_t(p.elements[std::size_t(i)])];
        const double* const stress = p.of(lc, p.first[std::size_t(i)]);
        for (int k = 0; k < platevalues * factsof(e.type).nodes; k += 3)
            largest = std::max(largest, principal(stress + k));
    }
    allranks().most(&largest, 1);
    return largest;
}

// By the elements of this process, then of all.
static void addleft(const model& m, const settings& s, const dofmap& d, const platestresses& p,
                    int lc, const curvedshells& shells, nodestates& nodes) {
    const int count = int(shells.elements.size()), batch = 8192;
    const auto placeof = [&](int i) { return std::size_t(shells.elements[std::size_t(i)]); };
    std::vector<elvector> forces(std::size_t(std::min(batch, count)));
    for (int begin = 0; begin < count; begin += batch) {
        const int size = std::min(batch, count - begin);
        parallelpieces(size, 256, [&](int first, int last, int) {
            for (int i = first; i < last; ++i) {
                const std::size_t place = placeof(begin + i);
                const element e = elementat(m, s, p.elements[place]);
                balancemembrane(e, membraneof(e, p.of(lc, p.first[place])), forces[std::size_t(i)]);
            }
        });
        for (int i = 0; i < size; ++i) {
            const int number = p.elements[placeof(begin + i)];
            const elementdef& e = m.elements[std::size_t(number)];
            for (int c = 0; c < factsof(e.type).nodes && isown(m, number); ++c)
                nodes.left[std::size_t(e.node[c])] += forces[std::size_t(i)].segment<6>(6 * c);
        }
    }
    d.nodes->sum(nodes.left.front().data() + 6, 6);  // from node 1 on
}

// Takes off the forces their mean about each node, as a pressure: a little more or less stress of
// the membrane holds that.
static void roughen(const model& m, const dofmap& d, const platestresses& p,
                    const curvedshells& shells, nodestates& nodes) {
    const std::vector<meeting>& met = shells.nodes;
    std::vector<vec3> even(m.nodes.size(), vec3::Zero());
    for (const int i : shells.elements) {
        const int number = p.elements[std::size_t(i)];
        if (!isown(m, number)) continue;
        const elementdef& e = m.elements[std::size_t(number)];
        const int corners = factsof(e.type).nodes;
        vec3 sum = vec3::Zero();
        int inside = 0;
        for (int c = 0; c < corners; ++c) {
            const auto n = std::size_t(e.node[c]);
            if (!met[n].inside()) continue;
            sum += nodes.left[n].head<3>() / met[n].area;
            ++inside;
        }
        for (int c = 0; c < corners && inside > 0; ++c) {
            const auto n = std::size_t(e.node[c]);
            even[n] += met[n].area / met[n].shells * sum / inside;
        }
    }
    d.nodes->sum(even.front().data() + 3, 3);
    for (std::size_t n = 1; n < even.size(); ++n) nodes.left[n].head<3>() -= even[n];
}

// At the nodes of this process: stress over the largest of the case.
static worstnode bendingat(const model& m, const dofmap& d, const std::vector<meeting>& met,
                           const nodestates& nodes) {
    worstnode found;
    const double little = 0.1;
    // Of the bending stress of a plate that takes all of it over the width of an element, by tori
    // under pressure and cylinders that are pulled.
    const double part = 0.8;
    for (int n = 1; n <= m.nnodes(); ++n) {
        const meeting& at = met[std::size_t(n)];
        if (!at.inside() || !d.nodes->counts(std::size_t(n - 1))) continue;
        const vec6& left = nodes.left[std::size_t(n)];
        const double moment = left.head<3>().norm() + left.tail<3>().norm() / std::sqrt(at.area);
        double stress = part * 6 * moment / (at.thickness * at.thickness * nodes.largest);
        if (!(stress > little)) continue;
        stress = std::round(100 * stress) / 100;  // of nodes alike the first, however they round
        found.meet(m, n, stress);
    }
    return found;
}

static void warncase(worstnode here, const model& m, int lc, runlog& log) {
    here.settle();
    if (here.nodes == 0) return;
    log.warn("Case " + std::to_string(lc) + " \"" + m.cases[std::size_t(lc)].name +
                 "\": the mesh of curved shells is too coarse and uneven about " +
                 std::to_string(long(here.nodes)) +
                 " node(s): flat elements answer the membrane stress with bending that is not "
                 "there, most about node " +
                 std::to_string(here.node) + ", up to about " +
                 shortnumber(std::round(10 * here.worst) / 10) +
                 " times the largest stress. Use even lines that cross at right angles, SHELL4 in "
                 "place of SHELL3, or elements of half the size for a quarter of it",
             lc);
}

void warnfalsebending(const model& m, const settings& s, const dofmap& d, const platestresses& p,
                      int cases, runlog& log) {
    double any = m.fold.empty() || p.elements.empty() ? 0 : 1;
    allranks().most(&any, 1);
    if (any == 0) return;
    const curvedshells shells = findcurved(m, s, p);
    for (int lc = 1; lc <= cases; ++lc) {
        nodestates nodes;
        nodes.left.assign(m.nodes.size(), vec6::Zero());
        nodes.largest = largeststress(m, p, lc, shells);
        if (nodes.largest > 0) {
            addleft(m, s, d, p, lc, shells, nodes);
            roughen(m, d, p, shells, nodes);
        }
        warncase(nodes.largest > 0 ? bendingat(m, d, shells.nodes, nodes) : worstnode{}, m, lc,
                 log);
    }
}
