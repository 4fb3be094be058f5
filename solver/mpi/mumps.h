// SPDX-License-Identifier: GPL-3.0-or-later
// The factorisation by MUMPS, shared among the processes of an MPI job. Each hands in the entries
// of its own elements. Amestoy, Duff, L'Excellent and Koster, A fully asynchronous multifrontal
// solver using distributed dynamic scheduling, SIAM J. Matrix Anal. Appl. 23, 2001.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "solver/equations/engine.h"

class mumps : public engine {
  public:
    // scratch: folder for a factor that the memory does not hold; "": there is none.
    explicit mumps(const std::string& scratch);
    ~mumps() override;

    void describe(const model& m, const dofmap& d) override;
    void analyse(const sparsematrix& a) override;
    double entries() const override;
    double operations() const override;
    double bytes() const override;

    bool factorise(const sparsematrix& a) override;
    // The softest motion stands for the pivots, which stay hidden: 1 where it is none of rounding.
    double smallestpivot(const sparsematrix& a, std::int64_t& unknown) override;
    bool splits() const override { return false; }
    using engine::solve;
    void solve(double* x, int columns, triangles which) override;
    std::int64_t countnegative(const sparsematrix& a, double mostoperations) override;

  private:
    struct inside;
    // Of the unknowns of all, counted from 1; on the first process alone.
    struct ordering {
        std::vector<int> blocks;  // first of each owner's, one more at the end
        std::vector<int> turn;    // of each in the elimination
    };
    std::unique_ptr<inside> in;
    ordering order;
    std::string folder;
    std::int64_t unknowns = 0;
};
