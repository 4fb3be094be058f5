// SPDX-License-Identifier: GPL-3.0-or-later
// The edges of SHELL3 bow with the rotations at their ends, so that a membrane stress across an
// edge turns these about the triangle's normal. Over a fold a part along the surface is left. A
// pressure brings what balances it; nodal forces do not, and where the diagonals leave a rest, as
// at a rim, it bends the shell. The membrane then works against the bending: that work is what is
// told, over that of the forces at the node. Where a shell bends as it should, the membrane hardly
// works.
#include "solver/results/foldmoments.h"

#include <algorithm>
#include <cmath>

#include "solver/elements/drill.h"
#include "solver/results/worstnode.h"

// By node: 1 where a force of the case acts.
static std::vector<char> pushednodes(const model& m, int lc) {
    std::vector<char> pushed(m.nodes.size(), 0);
    for (const nodalrow& row : m.cases[std::size_t(lc)].nodal)
        if (row.dof <= 3 && row.value != 0) pushed[std::size_t(row.node)] = 1;
    return pushed;
}

// Work of the membrane stress of a triangle on the part of its edges' bows that lies over the
// folds. stress: membrane and bending x, y, xy at the corners; turned: rotations in model axes.
static double workoverfolds(const element& e, const double* stress, const vec3* turned) {
    const flatshape s = flatten(e, stressaxes(e));
    vec3 mean = vec3::Zero();
    for (int c = 0; c < 3; ++c) mean += vec3::Map(stress + platevalues * c) / 3;
    double work = 0;
    for (int k = 0; k < 3; ++k) {
        const vec2 out(s.along[k].y(), -s.along[k].x());
        const double across = out.x() * out.x() * mean[0] + out.y() * out.y() * mean[1] +
                              2 * out.x() * out.y() * mean[2];
        const double moment =
            edgebow(e, k) * e.field(fieldthickness) * across * s.edge[k] * s.edge[k] / 12;
        const vec3 apart = s.axes * (turned[k] - turned[s.next(k)]);
        work += moment * e.fold->fold[k] * out.dot(apart.head<2>());
    }
    return work;
}

// By case, by node: work of the folds there. pushed: by case, by node.
static std::vector<std::vector<double>> workatnodes(const model& m, const settings& s,
                                                    const dofmap& d, const displacements& u,
                                                    const std::vector<std::vector<char>>& pushed) {
    std::vector<std::vector<double>> folds(pushed.size());
    for (std::vector<double>& one : folds) one.assign(m.nodes.size(), 0);
    elmatrix rows;
    elcases ue;
    for (int e = 1; e <= m.nelems(); ++e) {
        const elementdef& def = m.elements[std::size_t(e)];
        const auto ispushed = [&](const std::vector<char>& there) {
            return std::any_of(def.node, def.node + 3,
                               [&](int n) { return there[std::size_t(n)]; });
        };
        if (def.type != typeshell3 || std::ranges::none_of(pushed, ispushed)) continue;
        const element one = elementat(m, s, e);
        kindof(def.type).stress(one, rows);
        gather(d, dofsof(d, def), u, ue);
        for (std::size_t c = 0; c < pushed.size(); ++c) {
            if (!ispushed(pushed[c])) continue;
            const elvector moved = ue.col(Eigen::Index(c)), stress = rows * moved;
            vec3 turned[3];
            for (int k = 0; k < 3; ++k) turned[k] = moved.segment<3>(6 * k + 3);
            const double work = workoverfolds(one, stress.data(), turned);
            for (int k = 0; k < 3; ++k) folds[c][std::size_t(def.node[k])] += work / 3;
        }
    }
    return folds;
}

// At the nodes of this process: work of the folds over that of the forces. applied, moved: of the
// case.
static worstnode foldsbent(const model& m, const dofmap& d, const std::vector<char>& pushed,
                           const std::vector<double>& folds, const double* applied,
                           const double* moved) {
    worstnode found;
    const double much = 0.03;  // in good meshes at most 0.028
    for (int n = 1; n <= m.nnodes(); ++n) {
        if (!pushed[std::size_t(n)] || !d.nodes->counts(std::size_t(n - 1))) continue;
        double work = 0;
        for (int k = 0; k < d.pernode; ++k) work += applied[d.index(n, k)] * moved[d.index(n, k)];
        double part = work > 0 ? -folds[std::size_t(n)] / work : 0;
        if (!(part > much)) continue;
        part = std::round(1000 * part) / 1000;  // of nodes alike the first, whatever rounding left
        found.meet(m, n, part);
    }
    return found;
}

// All processes take part, whether they have such shells and forces or not.
static void warncase(worstnode here, const model& m, int lc, runlog& log) {
    here.settle();
    if (here.nodes == 0) return;
    log.warn(
        "Case " + std::to_string(lc) + " \"" + m.cases[std::size_t(lc)].name + "\": forces at " +
            std::to_string(long(here.nodes)) +
            " node(s) of curved SHELL3 bend the folds between the triangles, the worst of them "
            "node " +
            std::to_string(here.node) + " with " +
            std::to_string(std::min(100, int(std::lround(100 * here.worst)))) +
            " % of its work. A curved shell would hold them by its membrane. Load the elements "
            "with a pressure, or use SHELL4 or triangles of half the size",
        lc);
}

void warnfoldmoments(const model& m, const settings& s, const dofmap& d, const displacements& u,
                     const std::vector<double>& applied, int first, runlog& log) {
    const bool curved = !m.fold.empty();
    std::vector<std::vector<char>> pushed;
    for (int c = 0; c < u.cases && curved; ++c) pushed.push_back(pushednodes(m, first + c));
    const std::vector<std::vector<double>> folds = workatnodes(m, s, d, u, pushed);
    for (int c = 0; c < u.cases; ++c) {
        const auto i = std::size_t(c), from = i * d.equation.size();
        worstnode bent;
        if (curved)
            bent = foldsbent(m, d, pushed[i], folds[i], applied.data() + from, u.u.data() + from);
        warncase(bent, m, first + c, log);
    }
}
