// SPDX-License-Identifier: GPL-3.0-or-later
#include "solver/elements/edgebow.h"

#include <algorithm>

#include "solver/elements/edgebits.h"

// Along the surface of a thin curved shell the rotation of a node about the normal of one flat
// element is mostly bending of the neighbours. Held to the membrane of the element, it would stop
// the shell from bending at all until the mesh is very fine. So the more the surface turns over an
// element, and the thinner that is, the less it follows the single rotations; their mean it always
// follows.
double followedpart(const element& e, const flatshape& s) {
    double longest = 0;
    for (int k = 0; k < s.corners; ++k) longest = std::max(longest, s.edge[k]);
    const double turned = longest * e.curve, part = 0.03;  // by the twisted beam and the hemisphere
    const double ratio = turned > 0 ? e.field(fieldthickness) / turned : 1 / part;
    return std::min(1.0, part * ratio * ratio);
}

// Supports that hold an edge against what pulls at it, but leave its ends free to turn, bring no
// moments that would bow it, nor do forces at the two corners of the end of a strip: to even stress
// it stays straight. Forces along other edges: see edgeloads. Long edges, bent with the strip, bow
// as ever.
double edgebow(const element& e, int edge) {
    if (isstraightedge(e, edge)) return 0;
    if (e.nodes == 3 && !meetsquadrilateral(e, edge)) return trianglebow;
    return e.fold == nullptr ? 1 : double(e.fold->followed[edge]);
}
