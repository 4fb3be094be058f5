// SPDX-License-Identifier: GPL-3.0-or-later
// Rigid bodies of RIGID elements.
#include "solver/dofs/rigid.h"

#include <Eigen/Dense>
#include <algorithm>
#include <map>
#include <numeric>

#include "solver/base/refuse.h"
#include "solver/elements/kinds.h"

// --- which nodes belong together ----------------------------------------------------------------

static int rootof(std::vector<int>& parent, int n) {
    while (parent[std::size_t(n)] != n) {
        parent[std::size_t(n)] = parent[std::size_t(parent[std::size_t(n)])];
        n = parent[std::size_t(n)];
    }
    return n;
}

// A body's leader: the first node of its links that is not led by another; its smallest node where
// every one is led.
static void findbodies(const model& m, dofmap& d) {
    std::vector<int> parent(d.owner.size());
    std::iota(parent.begin(), parent.end(), 0);
    std::vector<char> tied(d.owner.size(), 0), led(d.owner.size(), 0);
    bool any = false;
    for (int e = 1; e <= m.nelems(); ++e) {
        const elementdef& def = m.elements[std::size_t(e)];
        if (def.type != typerigid) continue;
        any = true;
        const int a = rootof(parent, def.node[0]), b = rootof(parent, def.node[1]);
        parent[std::size_t(std::max(a, b))] = std::min(a, b);
        tied[std::size_t(def.node[0])] = tied[std::size_t(def.node[1])] = 1;
        led[std::size_t(def.node[1])] = 1;
    }
    if (!any) return;
    std::map<int, int> bodies;  // root: body
    for (int n = 1; n <= m.nnodes(); ++n) {
        if (!tied[std::size_t(n)]) continue;
        const auto [at, added] = bodies.try_emplace(rootof(parent, n), int(d.bodies.size()));
        if (added) d.bodies.emplace_back();
        rigidbody& body = d.bodies[std::size_t(at->second)];
        body.nodes.push_back(n);
        if (body.leader == 0 && !led[std::size_t(n)]) body.leader = n;
        d.bodyof[std::size_t(n)] = at->second;
    }
    for (rigidbody& body : d.bodies)
        if (body.leader == 0) body.leader = body.nodes.front();
}

// --- kinematics ---------------------------------------------------------------------------------

static int basesize(const model& m) {
    return m.twod ? 3 : 6;
}

mat6 bodyarm(const model& m, const dofmap& d, const rigidbody& body, int node) {
    const vec3 r = m.nodes[std::size_t(node)] - m.nodes[std::size_t(body.leader)];
    mat6 whole = mat6::Identity();  // rows and columns DX DY DZ RX RY RZ
    whole.topRightCorner<3, 3>() << 0, r.z(), -r.y(), -r.z(), 0, r.x(), r.y(), -r.x(), 0;
    const int flat[3] = {0, 1, 5};
    mat6 arm = mat6::Zero();
    for (int k = 0; k < d.pernode; ++k)
        for (int j = 0; j < basesize(m); ++j)
            arm(k, j) = whole(d.code[k] - 1, m.twod ? flat[j] : j);
    return arm;
}

double bodylength(const model& m, const rigidbody& body) {
    double length = 0;
    for (const int n : body.nodes)
        length =
            std::max(length, (m.nodes[std::size_t(n)] - m.nodes[std::size_t(body.leader)]).norm());
    return length > 0 ? length : 1;
}

static bool isrotation(const model& m, int base) {
    return m.twod ? base == 2 : base >= 3;
}

mat6 complementof(const mat6& given, int count, int base) {
    mat6 all = given, rest = mat6::Zero();
    for (int found = 0; count + found < base; ++found) {
        vec6 best = vec6::Zero();
        for (int j = 0; j < base; ++j) {
            vec6 v = vec6::Unit(j);
            for (int pass = 0; pass < 2; ++pass)
                for (int i = 0; i < count + found; ++i) v -= v.dot(all.col(i)) * vec6(all.col(i));
            if (v.norm() > best.norm() * (1 + 1e-9)) best = v;
        }
        all.col(count + found) = rest.col(found) = best.normalized();
    }
    return rest;
}

// --- constraints --------------------------------------------------------------------------------

namespace {
// Constraint rows of a body, made orthonormal one after the other.
struct constraintset {
    mat6 rows = mat6::Zero();  // by columns
    vec6 values = vec6::Zero();
    int count = 0;
};
}  // namespace

static void addconstraint(const model& m, constraintset& set, vec6 row, double value, int node,
                          int dof, double largest) {
    const double dependent = 1e-9;  // of the row's size
    const double size = row.norm();
    for (int pass = 0; pass < 2; ++pass)
        for (int i = 0; i < set.count; ++i) {
            const double part = row.dot(set.rows.col(i));
            row -= part * vec6(set.rows.col(i));
            value -= part * set.values[i];
        }
    if (row.norm() > dependent * size && set.count < basesize(m)) {
        set.rows.col(set.count) = row.normalized();
        set.values[set.count++] = value / row.norm();
    } else if (std::abs(value) > dependent * largest) {
        refuse("Node " + std::to_string(m.nameofnode(node)) +
               " belongs to a rigid body and its prescribed " + dofname(dof) +
               " contradicts the body's other constraints; change one of them");
    }
}

static ownerspace makespace(const model& m, const dofmap& d, int b) {
    const rigidbody& body = d.bodies[std::size_t(b)];
    const int base = basesize(m);
    const double length = bodylength(m, body);
    vec6 scale = vec6::Ones();  // base value = scale * comparable value
    for (int j = 0; j < base; ++j)
        if (isrotation(m, j)) scale[j] = 1 / length;
    double largest = 0;
    for (const int n : body.nodes)
        for (int k = 0; k < d.pernode; ++k)
            largest = std::max(largest, std::abs(d.constant[d.index(n, k)]));
    constraintset set;
    const auto take = [&](int n) {
        const mat6 arm = bodyarm(m, d, body, n) * scale.asDiagonal();
        for (int k = 0; k < d.pernode; ++k)
            if (d.prescribed[d.index(n, k)])
                addconstraint(m, set, arm.row(k), d.constant[d.index(n, k)], n, d.code[k], largest);
    };
    take(body.leader);
    for (const int n : body.nodes)
        if (n != body.leader) take(n);
    ownerspace space;
    space.owner = body.leader;
    space.body = b;
    space.base = base;
    space.count = base - set.count;
    space.start = scale.asDiagonal() * (set.rows * set.values);
    space.z = scale.asDiagonal() * complementof(set.rows, set.count, base);
    for (int j = 0; j < space.count; ++j) {
        const double largestpart = space.z.col(j).cwiseAbs().maxCoeff();
        space.z.col(j) /= largestpart;
    }
    return space;
}

// Bodies in the outermost ring of a part lack links and constraints; whoever counts a body's leader
// has all of them, and speaks for it.
void makebodies(const model& m, dofmap& d, runlog& log) {
    findbodies(m, d);
    double counted = 0;
    std::string fault;
    int wrong = 0;  // the first node of a body that is refused
    for (std::size_t b = 0; b < d.bodies.size(); ++b) {
        const rigidbody& body = d.bodies[b];
        for (const int n : body.nodes) d.owner[std::size_t(n)] = body.leader;
        d.spaceof[std::size_t(body.leader)] = int(d.spaces.size());
        d.spaces.emplace_back().owner = body.leader;
        const bool speaks = iscounted(m, body.leader);
        counted += speaks;
        guarded([&] { d.spaces.back() = makespace(m, d, int(b)); },
                [&](const runtimeerror& e) {
                    if (!speaks || !fault.empty()) return;
                    fault = e.what;
                    wrong = m.nameofnode(body.nodes.front());
                });
    }
    refusefirst(wrong, fault);
    allranks().sum(&counted, 1);
    if (counted > 0) log.line("Rigid bodies: " + std::to_string(long(counted)));
}

// --- reactions ----------------------------------------------------------------------------------

// The body balances: sum of arm' * unbalanced = sum over constraints of arm row' * reaction. More
// constraints than the body needs share the force in the least-squares sense.
void bodyreactions(const model& m, const dofmap& d, const rigidbody& body, const double* unbalanced,
                   double* reaction) {
    const int base = basesize(m);
    const double length = bodylength(m, body);
    vec6 scale = vec6::Ones(), total = vec6::Zero();
    for (int j = 0; j < base; ++j)
        if (isrotation(m, j)) scale[j] = 1 / length;
    std::vector<vec6> rows;
    std::vector<std::size_t> places;
    for (const int n : body.nodes) {
        const mat6 arm = bodyarm(m, d, body, n) * scale.asDiagonal();
        for (int k = 0; k < d.pernode; ++k) {
            const std::size_t i = d.index(n, k);
            total += arm.row(k).transpose() * unbalanced[i];
            if (!d.prescribed[i]) continue;
            rows.emplace_back(arm.row(k));
            places.push_back(i);
        }
    }
    if (rows.empty()) return;
    Eigen::MatrixXd a(base, Eigen::Index(rows.size()));
    for (std::size_t c = 0; c < rows.size(); ++c) a.col(Eigen::Index(c)) = rows[c].head(base);
    const Eigen::VectorXd share =
        a.completeOrthogonalDecomposition().solve(Eigen::VectorXd(total.head(base)));
    for (std::size_t c = 0; c < places.size(); ++c) reaction[places[c]] = share[Eigen::Index(c)];
}
