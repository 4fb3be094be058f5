// SPDX-License-Identifier: GPL-3.0-or-later
// The table of patches.
#include "tools/Surfaces.h"

#include <algorithm>
#include <string>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/runtime.h"
#include "tools/genmesh.h"
#include "tools/groups.h"

static void checkchains(int edges) {
    for (int e = 1; e <= edges; ++e) {
        const int count = graphmesh(e, 0);
        if (count > maxedgepieces)
            throw runtimeerror{errsubscript, "edge " + std::to_string(e) + " has " +
                                                 std::to_string(count) +
                                                 " graphic elements, a patch holds 20"};
        for (int k = 1; k <= count; ++k) (void)Integer(graphmesh(e, k));
    }
}

void storepatch(int p) {
    const int edges = edgesof(meshtype);
    if (p > maxpatches)
        throw runtimeerror{errsubscript, "all " + std::to_string(maxpatches) + " are in use"};
    checkchains(edges);
    for (int e = 0; e <= maxpatchedges; ++e) std::ranges::fill(patches.row(p, e), Integer(0));
    patches(p, 0, 0) = edges;
    patches(p, 0, 1) = mesheltype;
    patches(p, 0, 2) = meshgroup;
    for (int e = 1; e <= edges; ++e)
        for (int k = 0; k <= graphmesh(e, 0); ++k) patches(p, e, k) = graphmesh(e, k);
}

const char* typeofpatch(int edges) {
    return edges == 4 ? "Quad" : edges == 3 ? "Triang" : "Line";
}

bool loadpatch(const graphiclist& list, int p, int offset) {
    const int edges = patches(p, 0, 0);
    if (edges != 4 && edges != 3 && edges != 1) return false;
    meshtype = typeofpatch(edges);
    mesheltype = patches(p, 0, 1);
    meshgroup =
        std::clamp(int(patches(p, 0, 2)), 1, std::max(ngroups(), 1));  // a file may name any
    for (int e = 1; e <= edges; ++e) {
        const int count = std::clamp(int(patches(p, e, 0)), 0, maxedgepieces);
        for (int k = 1; k <= count; ++k) {
            const int g = patches(p, e, k) + offset;
            if (patches(p, e, k) == 0) return false;  // the element was deleted
            if (g < 1 || g > int(list(0, 0, 0)) || kindof(list, g) == kindfree) return false;
            graphmesh(e, k) = g;
        }
        graphmesh(e, 0) = count;
    }
    const int corners =
        mesheltype >= 1 && mesheltype < maxelementtypes ? eltypnodes(mesheltype) : 0;
    return corners == (edges == 1 ? 2 : edges);
}

bool rebuildpatch(int p, int offset) {
    if (!loadpatch(graphics2, p, offset)) return false;
    checkedges(graphics2);
    if (meshok) checkmeshsize(graphics2);
    return meshok && buildmesh(graphics2);
}
