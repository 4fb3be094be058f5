// SPDX-License-Identifier: GPL-3.0-or-later
// The sparse Cholesky factor: a multifrontal elimination along the tree of supernodes, subtrees and
// then large fronts shared among the threads.
#pragma once

#include <memory>

#include "solver/assemble.h"

class factor {
  public:
    factor();
    ~factor();
    factor(const factor&) = delete;
    factor& operator=(const factor&) = delete;

    // Symbolic factorisation, of a matrix in the order of elimination.
    void analyse(const sparsematrix& a);
    double entries() const;  // of the factor
    double operations() const;
    double bytes() const;  // that the numerical factor needs

    // Numerical factor l l', the same for any number of threads. False where the matrix is not
    // positive definite.
    bool factorise(const sparsematrix& a);
    // Smallest pivot over the diagonal it came from, and its unknown.
    double smallestpivot(const sparsematrix& a, std::int64_t& unknown) const;
    // Solves for several right sides, in place: a x = b, or with one triangle l or l' alone.
    enum class triangles { both, lower, upper };
    void solve(double* x, int columns, triangles which = triangles::both);

  private:
    struct inside;
    std::unique_ptr<inside> in;
};
