// SPDX-License-Identifier: GPL-3.0-or-later
// The mean plane of plates and shells.
#include "solver/elements/meanplane.h"

#include <Eigen/LU>

flatshape flatten(const element& e, const mat3& axes) {
    flatshape s;
    s.corners = e.nodes;
    s.axes = axes;
    const vec3 middle = middleof(e);
    for (int c = 0; c < e.nodes; ++c) {
        const vec3 local = axes * (e.x[c] - middle);
        s.at[c] = local.head<2>();
        s.height[c] = local.z();
    }
    for (int k = 0; k < e.nodes; ++k) {
        const vec2 side = s.at[s.next(k)] - s.at[k];
        s.edge[k] = side.norm();
        s.along[k] = side / s.edge[k];
    }
    return s;
}

double flatarea(const flatshape& s) {
    double twice = 0;
    for (int k = 0; k < s.corners; ++k) {
        const vec2 &a = s.at[k], &b = s.at[s.next(k)];
        twice += a.x() * b.y() - a.y() * b.x();
    }
    return twice / 2;
}

vec2 flatat(const flatshape& s, const surfaceshape& n) {
    vec2 at = vec2::Zero();
    for (int c = 0; c < s.corners; ++c) at += n.n[c] * s.at[c];
    return at;
}

mat2 jacobianof(const flatshape& s, const surfaceshape& n) {
    mat2 j = mat2::Zero();
    for (int c = 0; c < s.corners; ++c) {
        j.row(0) += n.dr[c] * s.at[c].transpose();
        j.row(1) += n.ds[c] * s.at[c].transpose();
    }
    return j;
}

void addhalf(const halfmatrix& half, const int (&dofs)[3], elmatrix& whole) {
    for (int j = 0; j < half.cols(); ++j)
        for (int i = 0; i < half.rows(); ++i)
            whole(6 * (i / 3) + dofs[i % 3], 6 * (j / 3) + dofs[j % 3]) += half(i, j);
}

void addrows(const halfmatrix& half, const int (&dofs)[3], int first, elmatrix& rows) {
    for (int j = 0; j < half.cols(); ++j)
        for (int i = 0; i < half.rows(); ++i)
            rows(6 * (i / 3) + first + i % 3, 6 * (j / 3) + dofs[j % 3]) += half(i, j);
}

stressframe frameof(const flatshape& s) {
    const mat2 j = jacobianof(s, shapesat(4, {0, 0}));
    const vec2 r = j.row(0), t = j.row(1);
    const vec2 x = (r.normalized() + vec2(t.y(), -t.x()).normalized()).normalized();
    stressframe f;
    f.axes << x.x(), x.y(), -x.y(), x.x();
    f.a = r.norm();
    f.b = t.norm();
    const double c = x.x(), d = x.y();
    f.turn << c * c, d * d, -2 * c * d, d * d, c * c, 2 * c * d, c * d, -c * d, c * c - d * d;
    return f;
}

void addarms(const flatshape& s, elmatrix& rows) {
    for (int c = 0; c < s.corners; ++c) {
        if (s.height[c] == 0) continue;
        const surfaceshape n = shapesat(s.corners, cornerplace(s.corners, c));
        const mat2 inverse = jacobianof(s, n).inverse();
        for (int j = 0; j < s.corners; ++j) {
            const vec2 slope = inverse * vec2(n.dr[j], n.ds[j]);
            rows.col(6 * j + 2) += s.height[c] * (slope.x() * rows.col(6 * c) +  //
                                                  slope.y() * rows.col(6 * c + 1));
        }
    }
}

void rowstonodes(const flatshape& s, elmatrix& rows) {
    if (s.corners == 4) addarms(s, rows);
    const Eigen::Index count = rows.rows();
    for (int at = 0; at < 6 * s.corners; at += 3) {  // by hand: in time it counts
        double *const x = rows.col(at).data(), *const y = x + rows.outerStride();
        double* const z = y + rows.outerStride();
        for (Eigen::Index i = 0; i < count; ++i) {
            const vec3 value(x[i], y[i], z[i]);
            x[i] = value.dot(s.axes.col(0));
            y[i] = value.dot(s.axes.col(1));
            z[i] = value.dot(s.axes.col(2));
        }
    }
}

void tonodes(const flatshape& s, elmatrix& k) {
    rowstonodes(s, k);
    k.transposeInPlace();
    rowstonodes(s, k);
}
