// SPDX-License-Identifier: GPL-3.0-or-later
// Mesh regions for the tests of the mesh generator and its patches.
#pragma once

#include "tests/tools/drawn.h"
#include "tools/genmesh.h"
#include "tools/mesh2d.h"

inline void setedge(int e, const std::vector<int>& chain) {
    graphmesh(e, 0) = int(chain.size());
    for (std::size_t k = 0; k < chain.size(); ++k) graphmesh(e, long(k) + 1) = chain[k];
}

// The dialog with a kind of mesh and its edges filled.
inline mesh2dform openwith(int type, const std::vector<std::vector<int>>& edges) {
    mesh2dform form = openmesh2d();
    choosemeshtype(form, type);
    for (std::size_t e = 0; e < edges.size(); ++e) setedge(int(e) + 1, edges[e]);
    return form;
}

// With the mesh of them made.
inline mesh2dform meshof(int type, const std::vector<std::vector<int>>& edges) {
    mesh2dform form = openwith(type, edges);
    generatemesh(form);
    EXPECT_TRUE(meshok) << form.message;
    return form;
}

// A rectangle 4 by 2: edges 1 and 2 along x with n1 spaces, 3 and 4 along y with n3.
inline std::vector<std::vector<int>> rectangle(float n1 = 4, float n3 = 2) {
    const int a = addline({0, 0, 0}, {4, 0, 0}, n1), b = addline({0, 2, 0}, {4, 2, 0}, n1),
              c = addline({0, 0, 0}, {0, 2, 0}, n3), d = addline({4, 0, 0}, {4, 2, 0}, n3);
    return {{a}, {b}, {c}, {d}};
}
