// SPDX-License-Identifier: GPL-3.0-or-later
// Reactions and stresses.
#include "solver/results/stresses.h"

#include <Eigen/Geometry>
#include <algorithm>
#include <cmath>
#include <numeric>

#include "solver/base/memory.h"
#include "solver/base/parallel.h"
#include "solver/dofs/rigid.h"
#include "solver/elements/line.h"
#include "solver/elements/section.h"
#include "solver/processes/ranks.h"

// --- reactions ----------------------------------------------------------------------------------

// Nodes at which a support force can act: those with a constraint, and all of a body with one.
static std::vector<char> supportednodes(const dofmap& d) {
    std::vector<char> supported(d.owner.size(), 0);
    for (std::size_t n = 1; n < supported.size(); ++n)
        for (int k = 0; k < d.pernode; ++k) supported[n] |= d.prescribed[d.index(int(n), k)];
    for (const rigidbody& body : d.bodies) {
        char any = 0;
        for (const int n : body.nodes) any |= supported[std::size_t(n)];
        for (const int n : body.nodes) supported[std::size_t(n)] = any;
    }
    return supported;
}

namespace {
// Sum of nodal forces; their moments about the origin where the analysis has the rotation. And what
// is summed: amounts, moments without those of forces, the largest coordinate.
struct resultant {
    vec6 sum = vec6::Zero(), amounts = vec6::Zero();
    double couples = 0, reach = 0;
};
}  // namespace

// By the nodes that this process counts.
static resultant sumforces(const model& m, const dofmap& d, const double* f) {
    resultant r;
    for (int n = 1; n <= m.nnodes(); ++n) {
        if (!d.nodes->counts(std::size_t(n - 1))) continue;
        vec6 at = vec6::Zero();
        for (int k = 0; k < d.pernode; ++k) at[d.code[k] - 1] = f[d.index(n, k)];
        vec3 x = m.nodes[std::size_t(n)];
        if (m.twod) x.z() = 0;
        const vec3 force = at.head<3>();
        r.reach = std::max(r.reach, x.cwiseAbs().maxCoeff());
        r.couples += at.tail<3>().cwiseAbs().maxCoeff();
        at.tail<3>() += x.cross(force);
        r.sum += at;
        r.amounts += at.cwiseAbs();
    }
    return r;
}

static resultant sumofall(resultant r) {
    double sums[13];
    std::copy_n(r.sum.data(), 6, sums);
    std::copy_n(r.amounts.data(), 6, sums + 6);
    sums[12] = r.couples;
    allranks().sum(sums, 13);
    allranks().most(&r.reach, 1);
    return {vec6::Map(sums), vec6::Map(sums + 6), sums[12], r.reach};
}

// Of all processes, by case. Raises least to what counts as nothing beside the amounts that are
// summed: forces beside forces and moments beside moments, whatever the unit of length.
static std::vector<vec6> resultants(const model& m, const dofmap& d, const displacements& u,
                                    const std::vector<double>& force, std::vector<vec6>& least) {
    const double cancelled = 1e-3;
    std::vector<resultant> found(least.size());
    parallelpieces(u.cases, 1, [&](int first, int last, int) {
        for (auto c = std::size_t(first); c < std::size_t(last); ++c)
            found[c + 1] = sumforces(m, d, force.data() + c * d.equation.size());
    });
    std::vector<vec6> sums = {vec6::Zero()};
    for (std::size_t lc = 1; lc < found.size(); ++lc) {
        const resultant r = sumofall(found[lc]);
        const double forces = r.amounts.head<3>().maxCoeff();
        const double moments = r.amounts.tail<3>().maxCoeff();
        vec6 most;
        most << vec3::Constant(std::max(forces, r.reach > 0 ? r.couples / r.reach : 0)),
            vec3::Constant(std::max(moments, forces * r.reach));
        least[lc] = least[lc].cwiseMax(cancelled * most);
        sums.push_back(r.sum);
    }
    return sums;
}

// Those with stiffness that touch a supported node.
static std::vector<int> elementsat(const model& m, const std::vector<char>& supported) {
    std::vector<int> list = stiffelements(m);
    std::erase_if(list, [&](int e) {
        const elementdef& def = m.elements[std::size_t(e)];
        const int* const end = def.node + kindof(def.type).nodes;
        return std::none_of(def.node, end, [&](int n) { return supported[std::size_t(n)] != 0; });
    });
    return list;
}

// What springs to ground exert on the structure: they are supports as well. Whoever counts a node
// holds all elements at it.
static void addgroundsprings(const model& m, const settings& s, const dofmap& d,
                             const displacements& u, std::vector<double>& force) {
    elmatrix k;
    elcases ue;
    for (int e = 1; e <= m.nelems(); ++e) {
        const elementdef& def = m.elements[std::size_t(e)];
        if (kindof(def.type).fam != family::point || !kindof(def.type).stiffness) continue;
        const elementdofs dofs = dofsof(d, def);
        kindof(def.type).stiffness(elementat(m, s, e), k);
        gather(d, dofs, u, ue);
        const elcases f = k * ue;
        for (int a = 0; a < dofs.count; ++a)
            for (int c = 0; c < u.cases && dofs.index[a] >= 0; ++c)
                force[std::size_t(c) * d.equation.size() + std::size_t(dofs.index[a])] -= f(a, c);
    }
}

// Supports that move the structure without strain leave the rounding of its stiffness alone: what
// counts as nothing in cases without loads, whose least is 0 so far.
static void measurerounding(const model& m, const settings& s, const dofmap& d,
                            const displacements& u, const std::vector<int>& elements,
                            std::vector<vec6>& least) {
    const double rounded = 1e-6;
    const auto isnone = [](const vec6& one) { return one.isZero(0); };
    if (std::ranges::count_if(least, isnone) == 1) return;  // there is no case 0
    std::vector<double> amount(least.size(), 0);
    elmatrix k;
    elcases ue;
    for (const int e : elements) {
        const elementdef& def = m.elements[std::size_t(e)];
        kindof(def.type).stiffness(elementat(m, s, e), k);
        gather(d, dofsof(d, def), u, ue);
        for (int c = 0; c < u.cases; ++c)
            amount[std::size_t(c) + 1] +=
                rounded * k.cwiseAbs().maxCoeff() * ue.col(c).cwiseAbs().maxCoeff();
    }
    allranks().sum(amount.data(), std::int64_t(amount.size()));
    for (std::size_t lc = 1; lc < least.size(); ++lc)
        if (isnone(least[lc])) least[lc].setConstant(amount[lc]);
}

reactionset findreactions(const model& m, const settings& s, const dofmap& d,
                          const displacements& u, const std::vector<double>& applied, runlog& log) {
    reactionset r;
    const std::size_t dofs = d.equation.size();
    const std::vector<char> supported = supportednodes(d);
    std::vector<double> unbalanced = zeros(u.u.size());
    const std::vector<int> elements = elementsat(m, supported);
    addforces(m, s, d, u, elements, unbalanced);
    r.force = zeros(u.u.size());
    r.least.assign(std::size_t(u.cases) + 1, vec6::Zero());
    parallelpieces(u.cases, 1, [&](int first, int last, int) {
        for (auto c = std::size_t(first); c < std::size_t(last); ++c) {
            const double* const load = applied.data() + c * dofs;
            double* const rest = unbalanced.data() + c * dofs;
            double* const force = r.force.data() + c * dofs;
            for (std::size_t i = 0; i < dofs; ++i) {
                const std::size_t node = i / std::size_t(d.pernode) + 1;
                rest[i] = supported[node] ? rest[i] - load[i] : 0;
                if (d.prescribed[i]) force[i] = rest[i];
            }
            for (const rigidbody& body : d.bodies) bodyreactions(m, d, body, rest, force);
        }
    });
    r.load = resultants(m, d, u, applied, r.least);
    log.progress("reactions", 100);
    measurerounding(m, s, d, u, elements, r.least);
    addgroundsprings(m, s, d, u, r.force);
    r.reaction = resultants(m, d, u, r.force, r.least);
    return r;
}

// --- lines --------------------------------------------------------------------------------------

// A moment without a section modulus has a stress that nobody can tell; the records hold 0.
static void tellmoduli(const model& m, const lineends& r, runlog& log) {
    const groupfield moduli[] = {fieldwzz, fieldwxx, fieldwyy};  // of the moments at an end, 3 to 5
    const auto lacks = [&](std::size_t line, int k) {
        const elementdef& e = m.elements[std::size_t(r.elements[line])];
        return e.type == typebeam && m.groups[std::size_t(e.group)].field[moduli[k]] == 0;
    };
    std::vector<double> largest(r.elements.size(), 0);  // moment without a modulus
    double most = 0;                                    // of all moments of these elements
    for (std::size_t i = 0; i < r.elements.size(); ++i) {
        const bool without[] = {lacks(i, 0), lacks(i, 1), lacks(i, 2)};
        if (!without[0] && !without[1] && !without[2]) continue;
        for (int lc = 1; lc <= r.cases; ++lc)
            for (int k = 0; k < endvalues; ++k) {
                if (k % 6 < 3) continue;
                const double moment = std::fabs(r.of(lc, i)[k]);
                most = std::max(most, moment);
                if (without[k % 6 - 3]) largest[i] = std::max(largest[i], moment);
            }
    }
    allranks().most(&most, 1);
    const double noise = 1e-6;
    double count = 0, last = -INFINITY;  // minus the first element's number
    for (std::size_t i = 0; i < r.elements.size(); ++i) {
        if (!(largest[i] > noise * most)) continue;
        ++count;
        last = std::max<double>(last, -m.nameof(r.elements[i]));
    }
    allranks().sum(&count, 1);
    allranks().most(&last, 1);
    if (count > 0)
        log.warn(std::to_string(long(count)) + " line element(s), the first of them element " +
                 std::to_string(long(-last)) +
                 ", have moments but no section modulus for them: that part of their stress is 0 "
                 "in the results. Give the element group W xx (moment about e2), W yy (about e3), "
                 "W zz (torsion)");
}

lineends findlineends(const model& m, const settings& s, const dofmap& d, const displacements& u,
                      runlog& log) {
    lineends r;
    r.cases = u.cases;
    for (int e = 1; e <= m.nelems(); ++e)
        if (kindof(m.elements[std::size_t(e)].type).fam == family::line && isown(m, e))
            r.elements.push_back(e);
    r.value.resize(r.elements.size() * std::size_t(u.cases) * endvalues);
    std::vector<caseloads> loads;
    for (int lc = 1; lc <= u.cases; ++lc) loads.emplace_back(m, s, lc);
    parallelpieces(int(r.elements.size()), 256, [&](int first, int last, int) {
        elcases f;
        unitloads unit;
        for (int i = first; i < last; ++i) {
            const element e = elementat(m, s, r.elements[std::size_t(i)]);
            const beamdata b = beamdataof(e);
            const int nodedofs = kindof(e.type).nodedofs;
            elementforces(m, s, d, u, e.number, f);
            unit.take(e);
            for (int lc = 1; lc <= u.cases; ++lc) {
                const caseloads& load = loads[std::size_t(lc - 1)];
                elvector between = elvector::Zero(f.rows());
                Eigen::Map<lineendvalues> ends(const_cast<double*>(r.of(lc, std::size_t(i))));
                ends = tolocalends(b.axes, b.axes, f.col(lc - 1).data(), nodedofs);
                if (load.loadselements() && load.onelement(e, unit, between))
                    ends -= tolocalends(b.forces, b.moments, between.data(), nodedofs);
            }
        }
    });
    tellmoduli(m, r, log);
    log.progress("stress", 50);
    return r;
}

static double over(double force, double modulus) {
    return modulus > 0 ? force / modulus : 0;
}

linestress linestressof(const element& e, const double* ends) {
    const linesection section = sectionof(e);
    linestress stress;
    for (int end = 0; end < 2; ++end) {
        const double sign = end == 0 ? -1 : 1;  // the face that looks along +e1
        const double* const f = ends + 6 * end;
        double* const at = stress.data() + end * linevalues;
        at[0] = sign * f[0] / section.area;
        at[1] = sign * over(f[4], section.w2);
        at[2] = sign * over(f[5], section.w3);
        at[3] = sign * over(f[3], section.wt);
    }
    return stress;
}

// --- plates -------------------------------------------------------------------------------------

platestresses findplatestresses(const model& m, const settings& s, const dofmap& d,
                                const displacements& u, runlog& log) {
    platestresses r;
    r.first.push_back(0);
    for (int e = 1; e <= m.nelems(); ++e) {
        const elementkind& kind = kindof(m.elements[std::size_t(e)].type);
        if (kind.fam != family::plate) continue;
        r.elements.push_back(e);
        r.first.push_back(r.first.back() + kind.nodes);
    }
    r.corners = r.first.back();
    r.value = zeros(std::size_t(u.cases) * std::size_t(r.corners) * platevalues);
    parallelpieces(int(r.elements.size()), 128, [&](int first, int last, int) {
        elmatrix rows;
        elcases ue, stress;
        for (int i = first; i < last; ++i) {
            const element e = elementat(m, s, r.elements[std::size_t(i)]);
            kindof(e.type).stress(e, rows);
            gather(d, dofsof(d, m.elements[std::size_t(e.number)]), u, ue);
            stress.noalias() = rows * ue;
            const auto corner = std::size_t(r.first[std::size_t(i)]);
            for (int c = 0; c < u.cases; ++c)
                std::copy_n(stress.col(c).data(), stress.rows(),
                            r.value.data() +
                                (std::size_t(c) * std::size_t(r.corners) + corner) * platevalues);
        }
    });
    log.progress("stress", 100);
    return r;
}
