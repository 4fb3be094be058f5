// SPDX-License-Identifier: GPL-3.0-or-later
#include "solver/elements/clamped.h"

#include <Eigen/Geometry>
#include <algorithm>

#include "solver/elements/catalogue.h"
#include "solver/elements/folds.h"
#include "solver/elements/supports.h"
#include "solver/processes/ranks.h"

// What supports hold of the nodes; none of the rotations where one has a moment, an inertia or a
// given rotation.
static supportbits heldfreedoms(const model& m) {
    supportbits nodes = supportsof(m);
    for (const loadcase& one : m.cases)
        for (const nodalrow& row : one.nodal)
            if (row.dof > 3) nodes[std::size_t(row.node)] |= turngiven;
    for (std::uint8_t& held : nodes) held &= (held & turngiven) != 0 ? allways : allways | allturns;
    return nodes;
}

// Nodes with elements other than plates and shells that know rotations.
static std::vector<char> nodesofothers(const model& m) {
    std::vector<char> nodes(m.nodes.size(), 0);
    for (const elementdef& e : m.elements) {
        const kindfacts& facts = factsof(e.type);
        if (facts.nodedofs < 6 || facts.fam == family::plate) continue;
        for (int k = 0; k < facts.nodes; ++k) nodes[std::size_t(e.node[k])] = 1;
    }
    return nodes;
}

// Whether this stops a shell with this unit normal from moving in its plane and turning in it.
static bool holdsinplane(int held, const vec3& normal) {
    double gives = 0, turned = 0;
    for (int k = 0; k < 3; ++k) {
        if (!(held >> k & 1)) gives += 1 - normal[k] * normal[k];
        if (!(held >> (3 + k) & 1)) turned += normal[k] * normal[k];
    }
    const double little = 0.01;  // of the square of a unit vector
    return gives < little && turned < little;
}

// The mean normal of the plates and shells at a node, 0 where they are no single surface or
// give way.
static vec3 normalat(const model& m, const cornerlist& corners, const supportbits& held,
                     std::size_t n) {
    vec3 sum = vec3::Zero(), first = vec3::Zero();
    for (const corner& one : corners.of(n)) {
        const elementdef& e = m.elements[std::size_t(one.element)];
        if (!bends(e.type)) continue;
        const vec3 normal = normalof(m, e);
        if (first.isZero()) first = normal;
        if (!continues(first, normal) || !holdsinplane(held[n], normal)) return vec3::Zero();
        sum += normal.dot(first) < 0 ? vec3(-normal) : normal;
    }
    return sum.normalized();
}

// What the process that counts a node found of it: that one surely has all elements there.
static void asktheirs(const model& m, std::vector<char>& found) {
    if (allranks().alone()) return;
    std::vector<int> told, asked;
    std::vector<double> given;
    for (int n = 1; n <= m.nnodes(); ++n) {
        asked.push_back(m.nameofnode(n));
        if (!iscounted(m, n)) continue;
        told.push_back(m.nameofnode(n));
        given.push_back(found[std::size_t(n)]);
    }
    std::vector<double> theirs(asked.size(), 0);
    allranks().findroute(told, asked)->pass(given.data(), theirs.data(), 1, route::join::sum);
    for (std::size_t i = 0; i < theirs.size(); ++i) found[i + 1] = char(theirs[i]);
}

namespace {
// The clamped edges at a node; both their ends are of a single surface.
struct clampededges {
    int first = 0, count = 0;  // the node at the other end of the first one; how many, up to two
    bool quadrilateral = false;
};

class clampfinder {
  public:
    clampfinder(const model& of, const cornerlist& at);
    vec3 clampednormal(int n) const;  // 0 where the node is none at a clamped edge

  private:
    bool isheld(std::size_t n) const { return held[n] >> 3 != 0; }
    clampededges edgesat(std::size_t n) const;

    const model& m;
    const cornerlist& corners;
    supportbits held;           // what supports hold, bits 0..5
    std::vector<char> surface;  // 1: all that turns is one surface
    std::vector<char> count;    // of clamped edges, up to two
};
}  // namespace

clampfinder::clampfinder(const model& of, const cornerlist& at)
    : m(of), corners(at), held(heldfreedoms(m)), surface(nodesofothers(m)), count(held.size(), 0) {
    for (std::size_t n = 1; n < held.size(); ++n)
        surface[n] = isheld(n) && surface[n] == 0 && !normalat(m, corners, held, n).isZero();
    asktheirs(m, surface);
    for (std::size_t n = 1; n < held.size(); ++n)
        if (surface[n] != 0) count[n] = char(edgesat(n).count);
    asktheirs(m, count);
}

clampededges clampfinder::edgesat(std::size_t n) const {
    clampededges found;
    for (const corner& one : corners.of(n)) {
        const elementdef& e = m.elements[std::size_t(one.element)];
        if (!isshell(e.type)) continue;
        const int nodes = factsof(e.type).nodes;
        for (const int k : {one.at + 1, one.at + nodes - 1}) {
            const int far = e.node[k % nodes], both = held[n] & held[std::size_t(far)];
            if (surface[std::size_t(far)] == 0 || !holdsinplane(both, normalof(m, e))) continue;
            found.quadrilateral |= e.type == typeshell4;
            if (found.first == 0) found.first = far;
            found.count = std::max(found.count, found.first == far ? 1 : 2);
        }
    }
    return found;
}

// A strip of triangles one element wide, clamped along a single edge, leans on what holds its end:
// free to turn it would bend too far there.
vec3 clampfinder::clampednormal(int n) const {
    const auto node = std::size_t(n);
    vec3 normal = vec3::Zero();
    if (surface[node] == 0) return normal;
    const clampededges here = edgesat(node);
    const bool goeson = here.count > 1 || count[std::size_t(here.first)] > 1;
    if (here.count == 0 || !(here.quadrilateral || goeson)) return normal;
    normal = normalat(m, corners, held, node);
    for (int k = 0; k < 3; ++k)
        if (!(held[node] >> (3 + k) & 1)) normal[k] = 0;
    return normal.normalized();
}

void findclamped(model& m, const cornerlist& corners) {
    m.clamped.clear();
    const clampfinder finder(m, corners);
    for (int n = 1; n <= m.nnodes(); ++n)
        if (const vec3 normal = finder.clampednormal(n); !normal.isZero())
            m.clamped.push_back({n, normal});
}
