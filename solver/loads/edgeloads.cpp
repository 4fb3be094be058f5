// SPDX-License-Identifier: GPL-3.0-or-later
// Moments of forces along the edges of shells.
#include "solver/loads/edgeloads.h"

#include <Eigen/Geometry>
#include <algorithm>

#include "solver/elements/catalogue.h"
#include "solver/elements/edgebow.h"
#include "solver/elements/folds.h"
#include "solver/processes/ranks.h"

shellrims::shellrims(const model& of, const settings& set)
    : m(of), s(set), placeof(m.nodes.size(), -1) {
    const auto nodeof = [&](const rim& r, int end) {
        const elementdef& def = m.elements[std::size_t(r.element)];
        return def.node[(r.edge + end) % factsof(def.type).nodes];
    };
    const auto nodesof = [&](const rim& r) { return std::minmax({nodeof(r, 0), nodeof(r, 1)}); };
    for (int e = 1; e < int(m.slip.size()); ++e)
        for (int k = 0; k < mostnodes; ++k)
            if (m.slip[std::size_t(e)].rim >> k & 1) rims.push_back({{}, e, k, vec3::Zero()});
    std::stable_sort(rims.begin(), rims.end(),
                     [&](const rim& a, const rim& b) { return nodesof(a) < nodesof(b); });
    for (std::size_t r = 0; r < rims.size(); ++r) {
        rim& one = rims[r];
        const vec3 along =
            m.nodes[std::size_t(nodeof(one, 1))] - m.nodes[std::size_t(nodeof(one, 0))];
        one.across = along.cross(normalof(m, m.elements[std::size_t(one.element)]).normalized());
        for (int end = 0; end < 2; ++end) {
            int& place = placeof[std::size_t(nodeof(one, end))];
            if (place < 0) {
                place = int(at.size());
                at.emplace_back();
            }
            one.place[end] = place;
            at[std::size_t(place)].push_back(int(r));
        }
    }
}

// The axis about which a pull turns a corner by the bow: the normal of the surface there for a
// triangle, whose stretch knows of it, that of the element for a quadrilateral.
static vec3 turnedabout(const element& e, int corner) {
    const mat3 axes = meanaxes(e);
    if (e.nodes == 4 || e.fold == nullptr) return axes.row(2);
    const double* const lean = e.fold->lean[corner];
    return axes.transpose() * vec3(lean[0], lean[1], 1).normalized();
}

void shellrims::eachmoment(const std::vector<nodalrow>& rows,
                           const std::function<void(int, const vec3&)>& add) const {
    std::vector<vec3> forces(at.size(), vec3::Zero());
    for (const nodalrow& row : rows)
        if (const int place = placeof[std::size_t(row.node)]; row.dof <= 3 && place >= 0)
            forces[std::size_t(place)][row.dof - 1] += row.value;
    for (int r = 0; r < int(rims.size()); ++r) {
        const rim& one = rims[std::size_t(r)];
        if (!isown(m, one.element)) continue;
        // The load a length at an end is its force over half of what goes on straight there. A
        // corner has no say: its force may pull along the edge that meets this one.
        const double length = one.across.norm();
        const vec3 across = one.across / length;
        double pull = 0, goeson = 0;
        for (const int place : one.place) {
            double others = 0;
            for (const int other : at[std::size_t(place)])
                if (other != r) others += std::max(acrossof(other).dot(across), 0.0);
            pull += others * forces[std::size_t(place)].dot(across) * 2 / (length + others);
            goeson += others;
        }
        if (pull == 0) continue;
        const element e = elementat(m, s, one.element);
        const double moment = edgebow(e, one.edge) * pull / goeson * length * length / 12;
        const int next = (one.edge + 1) % e.nodes;
        add(e.node[one.edge], -moment * turnedabout(e, one.edge));
        add(e.node[next], moment * turnedabout(e, next));
    }
}
