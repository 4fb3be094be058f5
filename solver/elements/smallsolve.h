// SPDX-License-Identifier: GPL-3.0-or-later
// Equations of the size of one element, with a positive definite matrix. The library's solver of
// triangles packs its operands for large blocks first, which takes longer here than the work.
#pragma once

#include <Eigen/Cholesky>

// x becomes inverse(L) x with the factor's lower triangle L.
template <typename Lower, typename Rows>
void solvelower(const Lower& lower, Rows& x) {
    for (int j = 0; j < x.rows(); ++j) {
        x.row(j) /= lower(j, j);
        for (int i = j + 1; i < x.rows(); ++i) x.row(i) -= lower(i, j) * x.row(j);
    }
}

// x becomes inverse(L') x.
template <typename Lower, typename Rows>
void solveupper(const Lower& lower, Rows& x) {
    for (int j = int(x.rows()) - 1; j >= 0; --j) {
        x.row(j) /= lower(j, j);
        for (int i = 0; i < j; ++i) x.row(i) -= lower(j, i) * x.row(j);
    }
}

// inverse(L) b, or inverse(L L') b, by rows.
template <int n, int columns>
using rowsof = Eigen::Matrix<double, n, columns, Eigen::RowMajor>;

template <int n, int columns>
rowsof<n, columns> halfsolved(const Eigen::Matrix<double, n, n>& a,
                              const Eigen::Matrix<double, n, columns>& b) {
    rowsof<n, columns> x = b;
    solvelower(a.llt().matrixLLT(), x);
    return x;
}

template <int n, int columns>
rowsof<n, columns> solved(const Eigen::Matrix<double, n, n>& a,
                          const Eigen::Matrix<double, n, columns>& b) {
    const Eigen::Matrix<double, n, n> lower = a.llt().matrixLLT();
    rowsof<n, columns> x = b;
    solvelower(lower, x);
    solveupper(lower, x);
    return x;
}
