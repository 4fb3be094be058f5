// SPDX-License-Identifier: GPL-3.0-or-later
// The mean plane of plates and shells.
#include "solver/flat.h"

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

// The arm: u1 at the plane is u1 - height r2 of the node, u2 at the plane is u2 + height r1.
void rowstonodes(const flatshape& s, elmatrix& rows) {
    for (int c = 0; c < s.corners; ++c) {
        const int at = 6 * c;
        rows.col(at + 4) -= s.height[c] * rows.col(at);
        rows.col(at + 3) += s.height[c] * rows.col(at + 1);
        for (int half = 0; half < 6; half += 3)
            rows.middleCols<3>(at + half) = (rows.middleCols<3>(at + half) * s.axes).eval();
    }
}

void tonodes(const flatshape& s, elmatrix& k) {
    rowstonodes(s, k);
    k.transposeInPlace();
    rowstonodes(s, k);
}
