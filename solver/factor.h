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

    // Numerical factor of a + shift * b (b may be null). False where it is not positive definite.
    bool factorise(const sparsematrix& a);
    // Smallest pivot over the diagonal it came from, and its unknown.
    double smallestpivot(const sparsematrix& a, std::int64_t& unknown) const;
    // Solves for several right sides, in place.
    void solve(double* x, int columns);

  private:
    struct inside;
    std::unique_ptr<inside> in;
};

// Memory that this machine can still give, bytes.
double freememory();
