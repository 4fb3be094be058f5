// SPDX-License-Identifier: GPL-3.0-or-later
// Vectors of unknowns as one process counts them: packed, each unknown once, so that products are
// sums over all processes. All have as many rows; the last ones of most stand for nothing.
#pragma once

#include "solver/equations/assemble.h"

class packing {
  public:
    // n: unknowns that are held here.
    packing(sharingptr unknowns, std::int64_t n);
    Eigen::Index rows() const { return length; }
    Eigen::Index held() const { return n; }

    void pack(const double* whole, double* packed) const;
    void unpack(const double* packed, double* whole) const;
    // y = a x, both packed.
    void multiply(const sparsematrix& a, const double* x, double* y) const;
    // x y for the columns of x.
    template <typename Left, typename Right>
    Eigen::VectorXd product(const Left& x, const Right& y) const {
        Eigen::VectorXd sums = x.topRows(counted()).transpose() * y.head(counted());
        allranks().sum(sums.data(), sums.size());
        return sums;
    }

  private:
    Eigen::Index counted() const { return shared->alone() ? n : Eigen::Index(places.size()); }
    sharingptr shared;
    Eigen::Index n, length;
    std::vector<std::size_t> places;  // here, of what is counted
};
