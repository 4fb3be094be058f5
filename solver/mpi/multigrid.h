// SPDX-License-Identifier: GPL-3.0-or-later
// Conjugate gradients with an algebraic multigrid, for models too large for any factor: GAMG of
// PETSc. It knows the motions that cost nothing where nothing holds the model. Vanek, Mandel and
// Brezina, Algebraic multigrid by smoothed aggregation, Computing 56, 1996. Small models are
// factorised, and those that it does not come to an end with.
#pragma once

#include <memory>

#include "solver/equations/engine.h"

class multigrid : public engine {
  public:
    multigrid();
    ~multigrid() override;

    void describe(const model& m, const dofmap& d) override;
    void analyse(const sparsematrix& a) override;
    double entries() const override;
    double operations() const override;
    double bytes() const override;

    bool factorise(const sparsematrix& a) override;
    // Softness, as far as a rough solution tells it: 1 where it is none of rounding.
    double smallestpivot(const sparsematrix& a, std::int64_t& unknown) override;
    bool splits() const override { return false; }
    bool factors() const override { return false; }
    using engine::solve;
    void solve(double* x, int columns, triangles which) override;
    std::int64_t countnegative(const sparsematrix&, double) override { return -1; }  // cannot
    std::string remark() const override;
    // By SLEPc: Hernandez, Roman and Vidal, SLEPc: a scalable and flexible toolkit for the solution
    // of eigenvalue problems, ACM Trans. Math. Softw. 31, 2005. Small models leave it to others.
    bool searches() const override;
    eigenpairs search(const sparsematrix& mass, const Eigen::MatrixXd& found,
                      const searchwish& wish, steplog& log) override;

  private:
    struct inside;
    std::unique_ptr<inside> in;
};
