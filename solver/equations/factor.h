// SPDX-License-Identifier: GPL-3.0-or-later
// The sparse Cholesky factor: a multifrontal elimination along the tree of supernodes, subtrees and
// then large fronts shared among the threads.
#pragma once

#include <memory>

#include "solver/equations/engine.h"

class factor : public engine {
  public:
    factor();
    ~factor() override;

    void analyse(const sparsematrix& a) override;
    double entries() const override;
    double operations() const override;
    double bytes() const override;

    // The same numbers for any number of threads.
    bool factorise(const sparsematrix& a) override;
    double smallestpivot(const sparsematrix& a, std::int64_t& unknown) override;
    using engine::solve;
    void solve(double* x, int columns, triangles which) override;
    std::int64_t countnegative(const sparsematrix& a, double mostoperations) override;

  private:
    struct inside;
    std::unique_ptr<inside> in;
};
