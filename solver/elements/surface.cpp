// SPDX-License-Identifier: GPL-3.0-or-later
// Geometry of plates and membranes.
#include "solver/elements/surface.h"

#include <Eigen/Geometry>
#include <Eigen/LU>
#include <algorithm>
#include <cmath>

#include "solver/base/refuse.h"
#include "solver/elements/gauss.h"

surfaceshape shapesat(int nodes, const vec2& place) {
    const double r = place[0], s = place[1];
    surfaceshape n{};
    if (nodes == 3) {
        n = {{1 - r - s, r, s, 0}, {-1, 1, 0, 0}, {-1, 0, 1, 0}};
        return n;
    }
    for (int c = 0; c < 4; ++c) {
        const vec2 at = cornerplace(4, c);
        n.n[c] = (1 + at[0] * r) * (1 + at[1] * s) / 4;
        n.dr[c] = at[0] * (1 + at[1] * s) / 4;
        n.ds[c] = at[1] * (1 + at[0] * r) / 4;
    }
    return n;
}

vec2 cornerplace(int nodes, int c) {
    static const double quadrilateral[4][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
    static const double triangle[3][2] = {{0, 0}, {1, 0}, {0, 1}};
    const double* const at = nodes == 4 ? quadrilateral[c] : triangle[c];
    return {at[0], at[1]};
}

static std::vector<surfacepoint> quadrilateralpoints(int n) {
    std::vector<surfacepoint> points;
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) {
            const gausspoint &a = gausspoints(n)[i], &b = gausspoints(n)[j];
            points.push_back({{a.at, b.at}, a.weight * b.weight});
        }
    return points;
}

// Symmetric rules: Dunavant, High degree efficient symmetrical Gaussian quadrature rules for the
// triangle, Int. J. Numer. Meth. Engng 21, 1985, table II, degrees 1, 2, 4, 5 and 6.
static std::vector<surfacepoint> trianglepoints(int degree) {
    std::vector<surfacepoint> points;
    const auto middle = [&](double w) { points.push_back({{1.0 / 3, 1.0 / 3}, w / 2}); };
    const auto triple = [&](double a, double w) {
        const double b = 1 - 2 * a;
        for (const auto& p : {vec2(a, a), vec2(b, a), vec2(a, b)}) points.push_back({p, w / 2});
    };
    if (degree <= 1) {
        middle(1);
    } else if (degree == 2) {
        triple(1.0 / 6, 1.0 / 3);
    } else if (degree <= 4) {
        triple(0.445948490915965, 0.223381589678011);
        triple(0.091576213509771, 0.109951743655322);
    } else if (degree <= 5) {
        const double root = std::sqrt(15.0);
        middle(0.225);
        triple((6 + root) / 21, (155 + root) / 1200);
        triple((6 - root) / 21, (155 - root) / 1200);
    } else {
        triple(0.249286745170910, 0.116786275726379);
        triple(0.063089014491502, 0.050844906370207);
        const double a = 0.053145049844817, b = 0.310352451033784, c = 1 - a - b;
        const double w = 0.082851075618374;
        for (const auto& p :
             {vec2(a, b), vec2(b, a), vec2(a, c), vec2(c, a), vec2(b, c), vec2(c, b)})
            points.push_back({p, w / 2});
    }
    return points;
}

const std::vector<surfacepoint>& surfacepoints(int nodes, int degree) {
    static const std::vector<surfacepoint> quadrilateral[] = {
        quadrilateralpoints(1), quadrilateralpoints(2), quadrilateralpoints(3),
        quadrilateralpoints(4)};
    static const std::vector<surfacepoint> triangle[] = {trianglepoints(1), trianglepoints(2),
                                                         trianglepoints(4), trianglepoints(5),
                                                         trianglepoints(6)};
    if (nodes == 4) return quadrilateral[std::min(degree, 7) / 2];
    return triangle[degree <= 1 ? 0 : degree == 2 ? 1 : degree <= 4 ? 2 : degree == 5 ? 3 : 4];
}

vec3 surfaceat(const element& e, const surfaceshape& n) {
    vec3 at = vec3::Zero();
    for (int c = 0; c < e.nodes; ++c) at += n.n[c] * e.x[c];
    return at;
}

static void basevectors(const element& e, const surfaceshape& n, vec3& gr, vec3& gs) {
    gr = gs = vec3::Zero();
    for (int c = 0; c < e.nodes; ++c) {
        gr += n.dr[c] * e.x[c];
        gs += n.ds[c] * e.x[c];
    }
}

vec3 surfacenormal(const element& e, const surfaceshape& n) {
    vec3 gr, gs;
    basevectors(e, n, gr, gs);
    return gr.cross(gs);
}

lamina laminaat(const element& e, const mat3& axes, const surfaceshape& n) {
    vec3 gr, gs;
    basevectors(e, n, gr, gs);
    const vec3 normal = gr.cross(gs);
    const vec3 e1 = axes.row(0), mean = axes.row(2), e3 = normal.normalized();
    lamina l;
    l.area = normal.norm();
    l.t1 = e1 - e1.dot(e3) / (1 + mean.dot(e3)) * (mean + e3);
    l.t2 = e3.cross(l.t1);
    l.jacobian << gr.dot(l.t1), gr.dot(l.t2), gs.dot(l.t1), gs.dot(l.t2);
    return l;
}

membranestrain strainof(const lamina& l, const surfaceshape& n, int nodes) {
    membranestrain b(3, 3 * nodes);
    const mat2 inverse = l.jacobian.inverse();
    for (int c = 0; c < nodes; ++c) {
        const vec2 d = inverse * vec2(n.dr[c], n.ds[c]);
        b.block<1, 3>(0, 3 * c) = d[0] * l.t1.transpose();
        b.block<1, 3>(1, 3 * c) = d[1] * l.t2.transpose();
        b.block<1, 3>(2, 3 * c) = d[1] * l.t1.transpose() + d[0] * l.t2.transpose();
    }
    return b;
}

mat3 planestiffness(const element& e, bool strain) {
    double modulus = e.field(fieldmodulus), poisson = e.field(fieldpoisson);
    if (strain) {
        modulus /= 1 - poisson * poisson;
        poisson /= 1 - poisson;
    }
    mat3 d;
    d << 1, poisson, 0, poisson, 1, 0, 0, 0, (1 - poisson) / 2;
    return modulus * e.field(fieldthickness) / (1 - poisson * poisson) * d;
}

void checkplateproperties(const element& e, bool planestrain) {
    if (!(e.field(fieldmodulus) > 0)) refuseelement(e, "has no E modulus; give the group one");
    if (!(e.field(fieldthickness) > 0)) refuseelement(e, "has no thickness; give the group one");
    if (e.field(fielddensity) < 0)
        refuseelement(e, "has a specific mass below 0; correct it in the element group");
    const double poisson = e.field(fieldpoisson);
    const bool inrange = poisson > -1 && (planestrain ? poisson < 0.5 : poisson <= 0.5);
    if (!inrange)
        refuseelement(
            e, planestrain
                   ? "needs a Poisson ratio from -1 to below 0.5 in plane strain; correct it in "
                     "the element group"
                   : "needs a Poisson ratio between -1 and 0.5; correct it in the element group");
}

void checkplateshape(const element& e, double mostwarp) {
    double longest = 0;
    for (int c = 0; c < e.nodes; ++c)
        longest = std::max(longest, (e.x[(c + 1) % e.nodes] - e.x[c]).norm());
    const double nolength = 1e-9;  // of the longest edge
    for (int c = 0; c < e.nodes; ++c)
        for (int d = c + 1; d < e.nodes; ++d)
            if (!((e.x[d] - e.x[c]).norm() > nolength * longest))
                refuseelement(e, "has nodes " + std::to_string(nodenameof(e, c)) + " and " +
                                     std::to_string(nodenameof(e, d)) +
                                     " at the same place; merge or move them");
    const vec3 across = e.nodes == 4 ? vec3((e.x[2] - e.x[0]).cross(e.x[3] - e.x[1]) / 2)
                                     : vec3((e.x[1] - e.x[0]).cross(e.x[2] - e.x[0]) / 2);
    const double noarea = 1e-6;  // of the longest edge squared: a needle without a plane
    if (!(across.norm() > noarea * longest * longest)) {
        const bool crossing = e.nodes == 4 && (e.x[1] - e.x[0]).cross(e.x[2] - e.x[0]).norm() >
                                                  noarea * longest * longest;
        refuseelement(e, crossing ? "has crossing edges; its nodes must follow each other round it"
                                  : "has no area; move its nodes");
    }
    if (e.nodes == 3) return;
    const vec3 normal = across.normalized();
    const double size = std::sqrt(across.norm());
    for (int c = 0; c < 4; ++c) {
        const vec3 next = e.x[(c + 1) % 4] - e.x[c], before = e.x[(c + 3) % 4] - e.x[c];
        const double least = 1e-6 * size * size;  // a straight or reentrant corner
        if (!(next.cross(before).dot(normal) > least))
            refuseelement(e, "is concave, crossed or straight at node " +
                                 std::to_string(nodenameof(e, c)) +
                                 "; number its nodes round it or divide it into triangles");
    }
    const double height = std::fabs((e.x[1] - e.x[0]).dot(normal)) / 2;
    if (height > mostwarp * size)
        refuseelement(e, "is warped, its corners leave their mean plane by " +
                             std::to_string(int(std::lround(100 * height / size))) +
                             " % of its size; divide it into triangles or mesh finer");
}

void masssurface(const element& e, elmatrix& m) {
    m.setZero(3 * e.nodes, 3 * e.nodes);
    const double density = e.field(fielddensity) * e.field(fieldthickness);
    for (const surfacepoint& p : surfacepoints(e.nodes, 3)) {
        const surfaceshape n = shapesat(e.nodes, p.place);
        const double weight = density * p.weight * surfacenormal(e, n).norm();
        for (int i = 0; i < e.nodes; ++i)
            for (int j = 0; j < e.nodes; ++j)
                m.block<3, 3>(3 * i, 3 * j).diagonal().array() += weight * n.n[i] * n.n[j];
    }
}

void spreadsurface(const element& e, placedforces forces, elvector& f) {
    const int stride = int(f.size()) / e.nodes;
    for (const auto& [place, force] : forces) {
        const surfaceshape n = shapesat(e.nodes, place);
        for (int c = 0; c < e.nodes; ++c) f.segment<3>(stride * c) += n.n[c] * force;
    }
}
