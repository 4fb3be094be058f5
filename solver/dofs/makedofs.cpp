// SPDX-License-Identifier: GPL-3.0-or-later
// Kinds of analysis, constraints; then rigid bodies and held directions, which have units of their
// own.
#include "solver/dofs/makedofs.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <string>
#include <utility>

#include "solver/base/refuse.h"
#include "solver/dofs/dofs.h"
#include "solver/dofs/rigid.h"
#include "solver/dofs/unstiffened.h"
#include "solver/elements/kinds.h"

bool turnsnodes(const model& m) {
    double any =
        std::ranges::any_of(m.elements, [](const elementdef& e) { return hasrotations(e.type); });
    allranks().most(&any, 1);
    return any != 0;
}

int analysiskind(const model& m, int doftype) {
    const bool rotations = turnsnodes(m);
    switch (doftype) {
        case 1:
            if (rotations)
                refuse(
                    "The control file asks for displacements x y alone, but the model has "
                    "elements with rotations; save the model and analyse again");
            return 1;
        case 2:
            return rotations ? 2 : 0;
        default:
            return 3;
    }
}

static void namedofs(dofmap& d, int anadof) {
    static const int codes[4][6] = {{1, 2, 3}, {1, 2}, {1, 2, 6}, {1, 2, 3, 4, 5, 6}};
    static const int counts[4] = {3, 2, 3, 6};
    d.anadof = anadof;
    d.pernode = counts[anadof];
    std::fill(std::begin(d.place), std::end(d.place), -1);
    for (int k = 0; k < d.pernode; ++k) {
        d.code[k] = codes[anadof][k];
        d.place[d.code[k]] = k;
    }
}

// Whether an element stiffens turns of its nodes, or weighs in them.
static bool hasturns(const model& m, const settings& s, int number) {
    const elementkind& kind = kindof(m.elements[std::size_t(number)].type);
    const element e = elementat(m, s, number);
    const int first = m.twod ? 5 : 3;
    for (const auto matrix : {kind.stiffness, kind.mass}) {
        if (matrix == nullptr) continue;
        elmatrix k;
        matrix(e, k);
        if (!k.block(first, first, 6 - first, 6 - first).isZero(0)) return true;
    }
    return false;
}

// Springs and masses alone give a model no rotations.
static void telllostturns(const model& m, const settings& s, runlog& log) {
    double count = 0, name = INFINITY;  // of the first
    for (int e = 1; e <= m.nelems(); ++e) {
        const elementdef& def = m.elements[std::size_t(e)];
        if (!isown(m, e) || kindof(def.type).nodedofs < 6 || !hasturns(m, s, e)) continue;
        ++count;
        name = std::min<double>(name, m.nameof(e));
    }
    allranks().sum(&count, 1);
    if (count == 0) return;
    name = -allranks().greatest({-name})[0];
    log.warn("What " + std::to_string(long(count)) + " element(s), the first of them element " +
             std::to_string(long(name)) +
             ", mean for turns of their nodes plays no part: without beams, pipes, plates and "
             "shells an analysis has translations alone. A beam anywhere gives it rotations");
}

static void prescribe(const model& m, dofmap& d, runlog& log) {
    double absent = 0;
    std::pair<int, int> wrong = {INT_MAX, 0};  // the first node and direction prescribed twice
    for (const nodalrow& row : m.constraints) {
        const int k = d.place[row.dof];
        if (k < 0) {
            absent += iscounted(m, row.node);
            continue;
        }
        const std::size_t i = d.index(row.node, k);
        if (d.prescribed[i] && d.constant[i] != row.value)
            wrong = std::min(wrong, {m.nameofnode(row.node), row.dof});
        d.prescribed[i] = 1;
        d.constant[i] = row.value;
    }
    refusefirst(wrong.first, wrong.second == 0
                                 ? ""
                                 : "Node " + std::to_string(wrong.first) +
                                       " has two different prescribed values in " +
                                       dofname(wrong.second) + "; remove one of the constraints");
    allranks().sum(&absent, 1);
    if (absent > 0)
        log.line(std::to_string(long(absent)) +
                 " constraint(s) concern directions that this analysis does not have");
}

// Clamped nodes turn about the normal of their shells: see elements/clamped.
static void freeclamped(const model& m, dofmap& d) {
    for (const clampednode& c : m.clamped) {
        ownerspace space = plainspace(m, d, c.node);
        for (int k = 0; k < 3; ++k)
            if (const int turn = d.place[4 + k]; turn >= 0)
                space.z(turn, space.count) = c.normal[k];
        ++space.count;
        d.spaceof[std::size_t(c.node)] = int(d.spaces.size());
        d.spaces.push_back(space);
    }
}

dofmap makedofs(const model& m, const settings& s, int anadof, masses moved, runlog& log) {
    dofmap d;
    namedofs(d, anadof);
    const std::size_t nodes = std::size_t(m.nnodes()) + 1;
    const std::size_t dofs = std::size_t(m.nnodes()) * std::size_t(d.pernode);
    if (std::size_t(m.allnodes()) * std::size_t(d.pernode) > std::size_t(INT32_MAX) / 2)
        refuse("The model has too many degrees of freedom");
    d.equation.assign(dofs, dofmap::constantdof);
    d.constant.assign(dofs, 0);
    d.prescribed.assign(dofs, 0);
    d.heldplain.assign(dofs, 0);
    d.spaceof.assign(nodes, -1);
    d.bodyof.assign(nodes, -1);
    d.owner.resize(nodes);
    for (std::size_t n = 0; n < nodes; ++n) d.owner[n] = int(n);
    prescribe(m, d, log);
    if (d.place[6] < 0) telllostturns(m, s, log);
    makebodies(m, d, log);
    freeclamped(m, d);
    holdunstiffened(m, s, moved, d, log);
    for (std::size_t n = 1; n < nodes; ++n)
        if (d.owner[n] == int(n) && unknownsof(d, int(n)) == 0) d.owner[n] = 0;
    for (const rigidbody& body : d.bodies)
        for (const int n : body.nodes)
            d.owner[std::size_t(n)] = unknownsof(d, body.leader) > 0 ? body.leader : 0;
    return d;
}
