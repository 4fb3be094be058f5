// SPDX-License-Identifier: GPL-3.0-or-later
// Over the plane of a triangle the surface rises by h, 0 at the corners. Its mean strain is that of
// a shallow shell, sym (grad u + grad h grad w) with w beyond the plane: Marguerre, Zur Theorie der
// gekruemmten Platte grosser Formaenderung, Proc. 5th Int. Congr. Applied Mechanics, Cambridge
// (Mass.) 1938. By Green's theorem the first part follows from what the surface over the edges
// moves out of the triangle. Then a bending without stretch strains a triangle by the third power
// of its size; by the flat one's own strains alone it would by the square, and thin shells would
// lock.
#include "solver/elements/curvedmembrane.h"

#include "solver/elements/edgebits.h"
#include "solver/elements/edgebow.h"
#include "solver/elements/edgecurves.h"

curvedmembrane::curvedmembrane(const element& of, const flatshape& shape) : e(of), s(shape) {
    const mat2 turn = s.axes.topRows<2>() * meanaxes(e).topRows<2>().transpose();
    tilts plane = tilts::Zero();  // w,y -w,x
    for (int c = 0; c < 3; ++c) {
        lean[c] = turn * vec2(e.fold->lean[c][0], e.fold->lean[c][1]);
        const vec2 across = s.at[(c + 2) % 3] - s.at[(c + 1) % 3];
        plane.col(6 * c + 2) = across / (2 * flatarea(s));
    }
    for (int c = 0; c < 3; ++c) {
        tilt[c] = -plane;
        tilt[c].block<2, 2>(0, 6 * c + 3) += mat2::Identity();
    }
    mixed = false;
    vec3 curve;
    trianglerow sum = trianglerow::Zero();
    for (int k = 0; k < 3; ++k) {
        const int i = k, j = s.next(k);
        curve[k] = (climb(k)[1] - climb(k)[0]) / s.edge[k];
        turned[k] = leanout(k) * out(k).transpose() * (tilt[j] - tilt[i]);
        turned[k][6 * j + 5] += 1;
        turned[k][6 * i + 5] -= 1;
        sum += turned[k];
        mixed |= meetsquadrilateral(e, k);
    }
    // Round a triangle these sum up to the change of the Gauss curvature. It comes from edges that
    // are curved, each as far as the curvature of the surface is that along it.
    const vec3 part = partsalong(s, curvaturefrom(s, curve)).cwiseAbs();
    for (int k = 0; k < 3; ++k)
        changed[k] = part.sum() > 0 ? trianglerow(part[k] / part.sum() * sum) : trianglerow::Zero();
}

// The surface at an end of an edge is turned out of the triangle by r3, and by the tilt where it
// climbs; between, cubic. Edges that bow by more than a beam do so to bend in the plane: by the
// rotation about the normal of the surface, which a bending without stretch leaves alone. One that
// supports hold straight does not bow at all; but along a curved one what pulls at it would tilt
// the whole edge, did the rotations of its ends not balance that.
trianglerow curvedmembrane::bow(int edge) const {
    const int i = edge, j = s.next(edge);
    const vec2& along = s.along[edge];
    const vec2 leans = climb(edge);
    trianglerow ends = along.transpose() * (leans[1] * tilt[j] - leans[0] * tilt[i]);
    ends[6 * j + 5] += 1;
    ends[6 * i + 5] -= 1;
    double bows = edgebow(e, edge);
    if (isstraightedge(e, edge) && !mixed)
        bows = trianglebow * (1 - flatpart(e, s.edge[edge] * (leans[1] - leans[0])));
    ends += (bows - 1) * (turned[edge] - changed[edge]);
    return s.edge[edge] / 12 * ends;
}

trianglerows curvedmembrane::strain() const {
    trianglerows sum = trianglerows::Zero();
    for (int k = 0; k < 3; ++k) {
        const int i = k, j = s.next(k);
        const vec2 n = out(k);
        const double flat = edgebow(e, k) * s.edge[k] / 12;
        trianglerow edge = bow(k);
        edge[6 * j + 5] -= flat;
        edge[6 * i + 5] += flat;
        // grad h grad w in the middle of the edge, where both lie across it
        const trianglerow slope = -s.along[k].transpose() * (tilt[i] + tilt[j]) / 2;
        edge = s.edge[k] / flatarea(s) * edge - leanout(k) / 3 * slope;
        sum += vec3(n.x() * n.x(), n.y() * n.y(), 2 * n.x() * n.y()) * edge;
    }
    return sum;
}

// The surface turns about the normal of the plane by r3 and half of what the tilt gives to the
// other normal; r3 changes as the bend, taken across the curve. Its mean against what the surface
// over the edges moves along them.
trianglerow curvedmembrane::spin() const {
    trianglerow sum = trianglerow::Zero();
    for (int k = 0; k < 3; ++k) {
        const int i = k, j = s.next(k);
        const vec2 n = out(k);
        sum += leanout(k) / 12 * n.transpose() * (tilt[i] + tilt[j]);
        sum += (lean[j] - lean[i]).transpose() * (tilt[j] - tilt[i]) / 24;
        const vec2 leans = climb(k);
        const double length = s.edge[k] * s.edge[k] / (24 * flatarea(s));
        sum -= length * n.transpose() * (leans[0] * tilt[i] - leans[1] * tilt[j]);
    }
    return sum;
}
