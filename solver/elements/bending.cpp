// SPDX-License-Identifier: GPL-3.0-or-later
// Plates in bending. Along an edge the deflection is cubic and the rotation about its normal
// quadratic; how far that leaves the straight line follows from the edge as a beam with shear:
// Katili, A new discrete Kirchhoff-Mindlin element based on Mindlin-Reissner plate theory and
// assumed shear strain fields, Int. J. Numer. Meth. Engng 36, 1993. On these edges stand his
// triangle and a quadrilateral of assumed moments. Neither locks however thin or thick.
//
// The fibre at x, y moves by z (bx, by) with bx = r2, by = -r1.
#include "solver/elements/bending.h"

#include <Eigen/LU>
#include <algorithm>
#include <cmath>

#include "solver/elements/edgebits.h"
#include "solver/elements/gauss.h"
#include "solver/elements/smallsolve.h"

static const double correction = 5.0 / 6;  // of the shear strain, not even over the thickness

// Bending over shear, 12 D / (G s): an area.
static double shearsoftness(const element& e) {
    const double thickness = e.field(fieldthickness);
    return 2 * thickness * thickness / (correction * (1 - e.field(fieldpoisson)));
}

// Part of the shear strain along a straight edge that is left when it bows.
static double leftover(double slip) {
    return slip / (1 + slip);
}

// Shear balances the change of the bending moment along the edge, as in a beam with shear. In a
// quadrilateral, whose moments may change in both directions, it is that of the twisting moment
// across the edge as well, which St Venant's torsion is all about: there half the width across the
// edge counts. Its edges take two thirds of the one and one third of the other: bars four and eight
// elements wide then twist within 4 %.
edgeslip slipofedges(const element& e) {
    const flatshape s = flatten(e, meanaxes(e));
    const double softness = shearsoftness(e), twisting = 1.0 / 3;
    edgeslip slip{};
    for (int k = 0; k < s.corners; ++k) {
        const double across = flatarea(s) / s.edge[k] / 2;
        const double bent = softness / (s.edge[k] * s.edge[k]);
        const double twisted = softness / (across * across);
        slip.shear[k] = float(bent);
        if (s.corners == 3) continue;
        const double left = (1 - twisting) * leftover(bent) + twisting * leftover(twisted),
                     gone = (1 - twisting) / (1 + bent) + twisting / (1 + twisted);
        slip.shear[k] = float(left / gone);
    }
    return slip;
}

plate::plate(const element& e, const flatshape& shape) : s(shape) {
    const double modulus = e.field(fieldmodulus), poisson = e.field(fieldpoisson);
    thickness = e.field(fieldthickness);
    rigidity = planestiffness(e, false) * thickness * thickness / 12;
    shearrigidity = correction * modulus / (2 * (1 + poisson)) * thickness;
    area = flatarea(s);
    loose = s.corners == 3 ? loosened(e) : rigidity;
    const edgeslip slip = e.slip ? *e.slip : slipofedges(e);
    for (int k = 0; k < s.corners; ++k) {
        const int i = k, j = s.next(k);
        const double length = s.edge[k], c = s.along[k].x(), sine = s.along[k].y();
        halfrow& row = whole[k];
        row.setZero(3 * s.corners);
        row[3 * i] = -1 / length;
        row[3 * j] = 1 / length;
        for (const int n : {i, j}) {
            row[3 * n + 1] = -sine / 2;
            row[3 * n + 2] = c / 2;
        }
        slide[k] = leftover(double(slip.shear[k])) * row;
    }
    if (s.corners == 4) pairopposites(e);
    for (int k = 0; k < s.corners; ++k) bow[k] = 1.5 * (slide[k] - whole[k]);
}

// Adds to w what a cubic edge has over the straight line; both: x (1 - x) faded to nothing at the
// other edges, less: 1 - 2 x, with x of 0..1 along edge k.
static void addcubic(const flatshape& s, int k, double both, double less, const halfrow& bow,
                     halfrow& w) {
    const int i = k, j = s.next(k);
    const double half = s.edge[k] * both / 2, c = s.along[k].x(), sine = s.along[k].y();
    w[3 * j + 1] -= half * sine;
    w[3 * j + 2] += half * c;
    w[3 * i + 1] += half * sine;
    w[3 * i + 2] -= half * c;
    w += s.edge[k] * both * less * 2 / 3 * bow;
}

halfrow plate::deflection(const vec2& place) const {
    const surfaceshape n = shapesat(s.corners, place);
    halfrow w = halfrow::Zero(3 * s.corners);
    for (int c = 0; c < s.corners; ++c) w[3 * c] = n.n[c];
    for (int k = 0; k < s.corners; ++k) {
        const int i = k, j = s.next(k);
        double both = n.n[i] * n.n[j], less = n.n[i] - n.n[j];
        if (s.corners == 4) {
            const bool first = k % 2 == 0;
            const double x = (1 + (k < 2 ? 1 : -1) * place[first ? 0 : 1]) / 2;
            const double fade = (1 + (k == 1 || k == 2 ? 1 : -1) * place[first ? 1 : 0]) / 2;
            both = fade * x * (1 - x);
            less = 1 - 2 * x;
        }
        addcubic(s, k, both, less, bow[k], w);
    }
    return w;
}

// --- quadrilateral ------------------------------------------------------------------------------

// How fast, along a direction, the curvature across it changes: of the sum of the two the shear
// force of thin plates is the slope. From the one way of the corners to turn that bends no straight
// line through the element and leaves every even curvature out: Flanagan and Belytschko, A uniform
// strain hexahedron and quadrilateral with orthogonal hourglass control, Int. J. Numer. Meth. Engng
// 17, 1981.
halfrow plate::curvaturechange(const vec2& across) const {
    const surfaceshape n = shapesat(4, {0, 0});
    const mat2 inverse = jacobianof(s, n).inverse();
    const double sign[] = {1, -1, 1, -1};
    vec2 lean = vec2::Zero();
    for (int c = 0; c < 4; ++c) lean += sign[c] * s.at[c];
    halfrow row = halfrow::Zero(12);
    for (int c = 0; c < 4; ++c) {
        const double part = (sign[c] - lean.dot(inverse * vec2(n.dr[c], n.ds[c]))) / area;
        row[3 * c + 1] = -part * across.y();
        row[3 * c + 2] = part * across.x();
    }
    return row;
}

// The shear strain that opposite edges have in common goes with bending, which wants the length of
// the edges for their span; what they have apart goes with twist, which wants half the width
// between them. An edge that the element shares must stay as it is in the other one. A free one
// follows that opposite, and slides more by what its own corners have beyond: twisting moments fade
// to nothing only there. In bars one element wide, where they do so at both, 0.3 of the width
// serves better (all ratios of width to thickness and to length within 4.5 %).
void plate::pairopposites(const element& e) {
    const double softness = shearsoftness(e);
    for (int a = 0; a < 2; ++a) {
        const int b = a + 2;  // runs the other way
        const vec2 along = (s.along[a] - s.along[b]).normalized();
        const double way = a == 0 ? 1 : -1;
        const vec2 across = way * vec2(-along.y(), along.x());
        const double bent = leftover(softness / (s.edge[a] * s.edge[b]));
        const halfrow apart = whole[a] + whole[b];
        const halfrow alike = bent / 2 * (whole[a] - whole[b]);
        common[a] = alike + (1 - bent) * softness / 12 * curvaturechange(across);
        const bool alone = isfreeedge(e, a) && isfreeedge(e, b);
        for (const int k : {a, b}) {
            if (!isfreeedge(e, k)) continue;
            const double sign = k == a ? 1 : -1, span = area / s.edge[k] * (alone ? 0.3 : 0.5);
            const double twisted = leftover(softness / (span * span));
            if (alone) {
                slide[k] = sign * alike + twisted / 2 * apart;
            } else {
                slide[k] = twisted * apart - slide[k == a ? b : a];
                common[a] += sign * (twisted - bent) / 2 * apart;
            }
        }
    }
}

// Moments Mx My Mxy: constant, linear, x y in the bending moments, and twisting along each middle
// line that grows with the square of the distance from it, as in a strip that ends there. The
// linear ones alone would leave two ways to deform that cost nothing. With Q = div M and div Q = 0
// all are in balance, so that only the edges do work: the way of Pian, Derivation of element
// stiffness matrices by assumed stress distributions, AIAA Journal 2, 1964, with the shear force in
// the energy.
static const int even = 3, linear = 6, modes = 13;
template <int rows>
using modesof = Eigen::Matrix<double, modes, rows>;  // by columns: a row of all modes at a time

struct plate::moments {
    modesof<3> m;
    modesof<2> q;  // shear forces in balance with them
};

struct plate::assumed {
    Eigen::Matrix<double, modes, modes> flexibility;  // lower triangle
    Eigen::Matrix<double, modes, 12> work;
    Eigen::Matrix<double, modes, 4> onbow;  // work on the edges, each bowing by 1
    stressframe frame;
    vec2 middle[2];  // unit vectors along the two middle lines, in the frame
    double size;     // by which x and y are divided
};

// In the frame, at a place there over the size.
plate::moments plate::momentsat(const assumed& h, const vec2& at) {
    const double x = at.x(), y = at.y(), one = 1 / h.size;
    moments f;
    f.m.col(0) << 1, 0, 0, x, y, 0, 0, 0, 0, x * y, 0, 0, 0;
    f.m.col(1) << 0, 1, 0, 0, 0, x, y, 0, 0, 0, x * y, 0, 0;
    f.m.col(2) << 0, 0, 1, 0, 0, 0, 0, x, y, 0, 0, 0, 0;
    f.q.col(0) << 0, 0, 0, one, 0, 0, 0, 0, one, y / h.size, 0, 0, 0;
    f.q.col(1) << 0, 0, 0, 0, 0, 0, one, one, 0, 0, x / h.size, 0, 0;
    for (int k = 0; k < 2; ++k) {
        const vec2 along = h.middle[k], across(-along.y(), along.x());
        const double off = across.dot(at);
        f.m.row(modes - 2 + k) = off * off *
                                 vec3(2 * along.x() * across.x(), 2 * along.y() * across.y(),
                                      along.x() * across.y() + along.y() * across.x());
        f.q.row(modes - 2 + k) = 2 * off * along / h.size;
    }
    return f;
}

// Rows bx by w at x of 0..1 along an even edge k, at the three degrees of freedom of its first and
// of its second corner, without the bow; the other corners do not move it.
plate::edgerows plate::edgemotion(int k, double x) const {
    edgerows u = edgerows::Zero();
    u(0, 2) = u(2, 0) = 1 - x;
    u(0, 5) = u(2, 3) = x;
    u(1, 1) = x - 1;
    u(1, 4) = -x;
    const double half = s.edge[k] * x * (1 - x) / 2;
    const double c = half * s.along[k].x(), sine = half * s.along[k].y();
    u.row(2) += Eigen::Matrix<double, 1, 6>(0, sine, -c, 0, -sine, c);
    return u;
}

// bx by w there when the edge bows by 1.
vec3 plate::bowmotion(int k, double x) const {
    const double both = x * (1 - x);
    const vec2 turned = 4 * both * s.along[k];
    return {turned.x(), turned.y(), s.edge[k] * both * (1 - 2 * x) * 2 / 3};
}

// What the moments at a point give to the flexibility. By hand: the loops run along the modes.
void plate::addflexibility(const moments& f, const mat3& compliance, double shear, assumed& h) {
    for (int j = 0; j < modes; ++j) {
        const vec3 bent = compliance * f.m.row(j).transpose();
        const vec2 slid = shear * f.q.row(j).transpose();
        for (int i = j & ~1; i < modes; ++i)  // from an even row on, two at a time
            h.flexibility(i, j) +=
                (f.m(i, 0) * bent[0] + (f.m(i, 1) * bent[1] + f.m(i, 2) * bent[2])) +
                (f.q(i, 0) * slid[0] + f.q(i, 1) * slid[1]);
    }
}

// Work of the moments at a place of edge k on the motion of its corners and on its bow.
void plate::addwork(const moments& f, int k, double x, double weight, assumed& h) const {
    const vec2 n(s.along[k].y(), -s.along[k].x());
    Eigen::Matrix<double, 2, 3> normal;
    normal << n.x(), 0, n.y(), 0, n.y(), n.x();
    const Eigen::Matrix<double, 2, 3> turned = normal * h.frame.turn;
    const vec2 across = h.frame.axes * n;
    const edgerows u = edgemotion(k, x);
    double bx[modes], by[modes], w[modes];
    for (int i = 0; i < modes; ++i) {
        const auto part = [&](int row) {
            return turned(row, 0) * f.m(i, 0) + turned(row, 1) * f.m(i, 1) +
                   turned(row, 2) * f.m(i, 2);
        };
        bx[i] = weight * part(0);
        by[i] = weight * part(1);
        w[i] = weight * (across.x() * f.q(i, 0) + across.y() * f.q(i, 1));
    }
    const vec3 bowed = bowmotion(k, x);
    for (int i = 0; i < modes; ++i)
        h.onbow(i, k) += bx[i] * bowed[0] + (by[i] * bowed[1] + w[i] * bowed[2]);
    for (int j = 0; j < 6; ++j) {
        const int column = 3 * (j < 3 ? k : s.next(k)) + j % 3;
        for (int i = 0; i < modes; ++i)
            h.work(i, column) += bx[i] * u(0, j) + (by[i] * u(1, j) + w[i] * u(2, j));
    }
}

// Both edges of a pair bow on until what they slide in common is that of bending. Their neighbours
// do not follow, so only the moments that change linearly feel it: even ones, which a patch test
// has, and those of twist do no work on it.
void plate::addcommon(assumed& h) const {
    for (int a = 0; a < 2; ++a) {
        const int b = a + 2;
        const halfrow more = 1.5 * (common[a] - (slide[a] - slide[b]) / 2);
        const auto both = h.onbow.col(a) - h.onbow.col(b);
        h.work.middleRows<linear>(even) += both.segment<linear>(even) * more;
    }
}

plate::assumed plate::makeassumed() const {
    assumed h;
    h.frame = frameof(s);
    h.size = std::sqrt(area);
    const mat2 lines = jacobianof(s, shapesat(4, {0, 0}));
    for (int k = 0; k < 2; ++k) h.middle[k] = h.frame.axes * vec2(lines.row(k).normalized());
    h.flexibility.setZero();
    h.work.setZero();
    h.onbow.setZero();
    const mat3 compliance = rigidity.inverse();
    for (const surfacepoint& p : surfacepoints(4, 5)) {
        const surfaceshape n = shapesat(4, p.place);
        const vec2 at = h.frame.axes * flatat(s, n) / h.size;
        const double weight = p.weight * jacobianof(s, n).determinant();
        addflexibility(momentsat(h, at), weight * compliance, weight / shearrigidity, h);
    }
    const int points = 3;
    for (int k = 0; k < 4; ++k)
        for (int i = 0; i < points; ++i) {
            const gausspoint& g = gausspoints(points)[i];
            const double x = (1 + g.at) / 2, weight = g.weight * s.edge[k] / 2;
            const vec2 at = h.frame.axes * ((1 - x) * s.at[k] + x * s.at[s.next(k)]) / h.size;
            addwork(momentsat(h, at), k, x, weight, h);
        }
    for (int k = 0; k < 4; ++k) h.work += h.onbow.col(k) * bow[k];
    addcommon(h);
    return h;
}

// --- triangle -----------------------------------------------------------------------------------

// Nothing twists a plate at its free edges: beside them the twisting moment grows from nothing to
// its value inside as exp(-y / d) does, d = t / sqrt 10, so that each edge costs the twisting
// stiffness a strip of that width (exact for a bar wider than thick: Timoshenko and Goodier, Theory
// of elasticity, art. 109). Triangles feel this only by meshes finer than the thickness. In coarser
// ones the triangle at a free edge has the strip taken from its stiffness, less in the finer as
// they find more of it themselves (by bars of 1 to 8 elements across). Stresses are those inside.
mat3 plate::loosened(const element& e) const {
    const double layer = thickness / std::sqrt(10.0), most = 0.95;
    double lost = 0;
    vec3 twist = vec3::Zero();  // of a curvature, along the edge
    for (int k = 0; k < 3; ++k) {
        if (!isfreeedge(e, k)) continue;
        const double length = s.edge[k], height = 2 * area / length;
        const double coarse = length * length + height * height;
        const double here = 2 * layer / height * coarse / (coarse + thickness * thickness);
        if (here <= lost) continue;
        lost = here;
        const double c = s.along[k].x(), sine = s.along[k].y();
        twist = vec3(-2 * c * sine, 2 * c * sine, c * c - sine * sine);
    }
    return rigidity - std::min(lost, most) * rigidity(2, 2) * twist * twist.transpose();
}

// area: out, a unit of natural area.
halfrows plate::curvature(const vec2& place, double& unit) const {
    const surfaceshape n = shapesat(3, place);
    const mat2 j = jacobianof(s, n), inverse = j.inverse();
    unit = j.determinant();
    halfrows b = halfrows::Zero(3, 9);
    for (int c = 0; c < 3; ++c) {
        const vec2 d = inverse * vec2(n.dr[c], n.ds[c]);
        b(0, 3 * c + 2) += d.x();
        b(1, 3 * c + 1) -= d.y();
        b(2, 3 * c + 2) += d.y();
        b(2, 3 * c + 1) -= d.x();
    }
    for (int k = 0; k < 3; ++k) {
        const int i = k, l = s.next(k);  // the edge's bubble is 4 n[i] n[l]
        const vec2 d =
            4 * inverse *
            vec2(n.dr[i] * n.n[l] + n.n[i] * n.dr[l], n.ds[i] * n.n[l] + n.n[i] * n.ds[l]);
        b.row(0) += d.x() * s.along[k].x() * bow[k];
        b.row(1) += d.y() * s.along[k].y() * bow[k];
        b.row(2) += (d.y() * s.along[k].x() + d.x() * s.along[k].y()) * bow[k];
    }
    return b;
}

// Field whose component along each edge is that edge's shear strain.
Eigen::Matrix<double, 2, Eigen::Dynamic, Eigen::ColMajor, 2, mosthalf> plate::shear(
    const vec2& place) const {
    Eigen::Matrix<double, 2, Eigen::Dynamic, Eigen::ColMajor, 2, mosthalf> natural(2, 9);
    const halfrow a = s.edge[0] * slide[0], c = s.edge[2] * slide[2];
    const halfrow sum = a + s.edge[1] * slide[1] + c;
    natural.row(0) = a - place[1] * sum;
    natural.row(1) = -c + place[0] * sum;
    return jacobianof(s, shapesat(3, place)).inverse() * natural;
}

halfmatrix plate::trianglestiffness() const {
    halfmatrix k = halfmatrix::Zero(9, 9);
    for (const surfacepoint& p : surfacepoints(3, 2)) {
        double unit = 0;
        const halfrows b = curvature(p.place, unit);
        const auto g = shear(p.place);
        k.noalias() += p.weight * unit * b.transpose() * (loose * b);
        k.noalias() += p.weight * unit * shearrigidity * g.transpose() * g;
    }
    return k;
}

// --- both ---------------------------------------------------------------------------------------

halfmatrix plate::stiffness() const {
    if (s.corners == 3) return trianglestiffness();
    const assumed h = makeassumed();
    const rowsof<modes, 12> half = halfsolved(h.flexibility, h.work);
    return half.transpose().lazyProduct(half);
}

halfmatrix plate::cornerstress() const {
    const double face = 6 / (thickness * thickness);
    halfmatrix rows(3 * s.corners, 3 * s.corners);
    if (s.corners == 3) {
        double unit = 0;
        for (int c = 0; c < 3; ++c)
            rows.middleRows<3>(3 * c) = face * rigidity * curvature(cornerplace(3, c), unit);
        return rows;
    }
    const assumed h = makeassumed();
    const rowsof<modes, 12> parameters = solved(h.flexibility, h.work);
    for (int c = 0; c < 4; ++c) {
        const vec2 at = h.frame.axes * s.at[c] / h.size;
        rows.middleRows<3>(3 * c) =
            face * h.frame.turn * momentsat(h, at).m.transpose() * parameters;
    }
    return rows;
}
