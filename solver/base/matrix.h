// SPDX-License-Identifier: GPL-3.0-or-later
// Vectors and matrices of one element: fixed storage, nothing on the heap.
#pragma once

#include <Eigen/Core>

using vec2 = Eigen::Vector2d;
using vec3 = Eigen::Vector3d;
using mat2 = Eigen::Matrix2d;
using mat3 = Eigen::Matrix3d;
using mat6 = Eigen::Matrix<double, 6, 6>;

// The largest element has four nodes with six degrees of freedom each.
const int mostnodes = 4, mostdofs = 24;

using elmatrix =
    Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::ColMajor, mostdofs, mostdofs>;
using elvector = Eigen::Matrix<double, Eigen::Dynamic, 1, Eigen::ColMajor, mostdofs, 1>;
