// SPDX-License-Identifier: GPL-3.0-or-later
#include "solver/elements/edgecurves.h"

#include <Eigen/Geometry>
#include <Eigen/LU>
#include <algorithm>
#include <cmath>

#include "solver/base/parallel.h"
#include "solver/elements/folds.h"

double flatpart(const element& e, double turned) {
    const double flat = 0.04 * e.field(fieldthickness);  // bends by 2 % of what the membrane bears
    return std::fabs(turned) > flat ? flat * flat / (turned * turned) : 1;
}

double curvealong(const flatshape& s, const edgefold& f, int edge) {
    const auto leaning = [&](int c) {
        const vec2 lean(f.lean[c][0], f.lean[c][1]);
        return lean.dot(s.along[edge]) / std::sqrt(1 + lean.squaredNorm());
    };
    return (leaning(s.next(edge)) - leaning(edge)) / s.edge[edge];
}

mat2 curvaturefrom(const flatshape& s, const vec3& along) {
    mat3 rows;
    for (int k = 0; k < 3; ++k) {
        const vec2& d = s.along[k];
        rows.row(k) << d.x() * d.x(), d.y() * d.y(), 2 * d.x() * d.y();
    }
    const vec3 found = rows.inverse() * along;
    mat2 curvature;
    curvature << found[0], found[2], found[2], found[1];
    return curvature;
}

mat2 curvaturefrom(const flatshape& s, const edgefold& f) {
    return curvaturefrom(s, vec3(curvealong(s, f, 0), curvealong(s, f, 1), curvealong(s, f, 2)));
}

vec3 partsalong(const flatshape& s, const mat2& tensor) {
    vec3 part;
    for (int k = 0; k < 3; ++k) {
        const vec2 &next = s.along[s.next(k)], &last = s.along[(k + 2) % 3], &d = s.along[k];
        const vec2 m(-next.y(), next.x()), n(-last.y(), last.x());  // across the other two
        part[k] = m.dot(tensor * n) / (m.dot(d) * n.dot(d));
    }
    return part;
}

namespace {
struct facet {  // of a surface at a node
    int element, at;
    flatshape shape;
    mat2 curvature;
    vec3 along[2];  // of its edges at the node, model axes
    double curve[2];
};
}  // namespace

// False: none is a triangle.
static bool listfacets(const model& m, const settings& s, std::span<const corner> corners,
                       std::vector<facet>& facets) {
    facets.clear();
    if (std::ranges::none_of(corners, [&](const corner& one) {
            return m.elements[std::size_t(one.element)].type == typeshell3;
        }))
        return false;
    for (const corner& one : corners) {
        if (!isshell(m.elements[std::size_t(one.element)].type)) continue;
        const element e = elementat(m, s, one.element);
        const edgefold& fold = m.fold[std::size_t(one.element)];
        facet here = {one.element, one.at, flatten(e, meanaxes(e)), curvatureof(fold), {}, {}};
        if (e.nodes == 3) here.curvature = curvaturefrom(here.shape, fold);
        const int edges[2] = {one.at, (one.at + e.nodes - 1) % e.nodes};
        for (int k = 0; k < 2; ++k) {
            here.along[k] = here.shape.axes.topRows<2>().transpose() * here.shape.along[edges[k]];
            here.curve[k] = curvealong(here.shape, fold, edges[k]);
        }
        facets.push_back(here);
    }
    return true;
}

// How near to a sphere or a saddle the most of them is.
static float twowaypart(const std::vector<facet>& facets) {
    double most = 0;
    for (const facet& one : facets) {
        const double square = one.curvature.squaredNorm();
        if (square > 0) most = std::max(most, 2 * std::fabs(one.curvature.determinant()) / square);
    }
    return float(most);
}

// At the node, as far as the edges there go this way; what others lack for that is told by the
// facet's own curvature.
static double curveat(const std::vector<facet>& facets, const facet& own, const vec2& way) {
    const mat3& axes = own.shape.axes;
    const vec3 normal = axes.row(2);
    double sum = 0, weights = 0;
    for (const facet& other : facets) {
        const vec3 its = other.shape.axes.row(2);
        if (!continues(normal, its)) continue;
        const double side = std::copysign(1, normal.dot(its));
        const mat3 turn = Eigen::Quaterniond::FromTwoVectors(side * its, normal).matrix();
        for (int k = 0; k < 2; ++k) {
            const vec2 along = axes.topRows<2>() * (turn * other.along[k]);
            // within 3 degrees of the way an edge counts in full
            const double off = 0.003 + std::pow(along.x() * way.y() - along.y() * way.x(), 2);
            const double lack = way.dot(own.curvature * way) - along.dot(own.curvature * along);
            sum += (side * other.curve[k] + lack) / (off * off);
            weights += 1 / (off * off);
        }
    }
    return sum / weights;
}

void lookopposite(model& m, const settings& s, const cornerlist& corners) {
    parallelpieces(m.nnodes(), 1024, [&](int first, int last, int) {
        std::vector<facet> facets;
        for (int n = first + 1; n <= last; ++n) {
            if (!listfacets(m, s, corners.of(std::size_t(n)), facets)) continue;
            const float bothways = twowaypart(facets);
            for (const facet& one : facets) {
                if (one.shape.corners != 3) continue;
                const int edge = (one.at + 1) % 3;
                edgefold& fold = m.fold[std::size_t(one.element)];
                fold.beyond[edge] = curveat(facets, one, one.shape.along[edge]);
                fold.bothways[one.at] = bothways;
            }
        }
    });
}
