// SPDX-License-Identifier: GPL-3.0-or-later
// Order of elimination and the sparse Cholesky factor, by CHOLMOD.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "solver/assemble.h"

// Order in which the owners are eliminated (places of the graph): the cheaper of minimum degree and
// nested dissection by their symbolic factorisation. told: out, for the log.
std::vector<int> ordernodes(const nodegraph& graph, std::string& told);

class factor {
  public:
    factor();
    ~factor();
    factor(const factor&) = delete;
    factor& operator=(const factor&) = delete;

    // Symbolic factorisation. The matrix must outlive the factor.
    void analyse(const sparsematrix& a);
    double entries() const;  // of the factor
    double operations() const;
    double bytes() const;  // that the numerical factor needs

    // Numerical factor l l'. False where the matrix is not positive definite.
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

// How many eigenvalues of the symmetric matrix lie below 0: negative pivots of its l d l' factor.
// -1 where the factor came upon a pivot of 0 or would cost more than this many operations.
std::int64_t countnegative(const sparsematrix& a, double mostoperations);

// Memory that this machine can still give, bytes.
double freememory();
