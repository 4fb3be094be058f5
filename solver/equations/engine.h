// SPDX-License-Identifier: GPL-3.0-or-later
// What an analysis asks of a factorisation, whoever does it: the program's own factor or an engine
// that shares the work among processes. One call does a great deal, so that being virtual costs
// nothing; what every engine can do with these (refinement, search of mechanisms) stands elsewhere.
#pragma once

#include <Eigen/Core>

#include "solver/base/report.h"
#include "solver/equations/assemble.h"

// Values v, largest first, and vectors x of M x = v A x, by columns.
struct eigenpairs {
    Eigen::VectorXd value;
    Eigen::MatrixXd vectors;
};

class engine {
  public:
    engine() = default;
    virtual ~engine() = default;
    engine(const engine&) = delete;
    engine& operator=(const engine&) = delete;

    // What the unknowns stand for; before all else. Both stay, as do the matrices, while it works.
    virtual void describe(const model&, const dofmap&) {}
    // False where it approaches a solution step by step, which is no way to find a mechanism.
    virtual bool factors() const { return true; }

    // Symbolic factorisation, of a matrix in the order of elimination.
    virtual void analyse(const sparsematrix& a) = 0;
    virtual double entries() const = 0;  // of the factor
    virtual double operations() const = 0;
    virtual double bytes() const = 0;  // that the numerical factor needs in this process

    // Numerical factor l l' of what was analysed. False where the matrix is not positive definite.
    virtual bool factorise(const sparsematrix& a) = 0;
    // Smallest pivot over the diagonal it came from, and its unknown.
    virtual double smallestpivot(const sparsematrix& a, std::int64_t& unknown) = 0;
    // Solves for several right sides, in place: a x = b, or, where it splits so, with one triangle
    // l or l' alone.
    enum class triangles { both, lower, upper };
    virtual void solve(double* x, int columns, triangles which) = 0;
    virtual bool splits() const { return true; }
    void solve(double* x, int columns) { solve(x, columns, triangles::both); }

    // Eigenvalues of a symmetric matrix of the analysed pattern that lie below 0: the negative
    // pivots of its l d l' factor. -1 where the factor came upon a pivot of 0 or would cost more
    // than this many operations. What is factorised stays.
    virtual std::int64_t countnegative(const sparsematrix& a, double mostoperations) = 0;

    // What a user should know of the way that the solutions took; "" where it is the usual one.
    virtual std::string remark() const { return {}; }

    // An engine may bring a search of its own for the largest v of M x = v A x, A being what is
    // factorised: beside the vectors found, in a basis of so many, to a part of v. It may find
    // that it does not come to an end, and searches no more.
    virtual bool searches() const { return false; }
    struct searchwish {
        int wanted = 0, basis = 0;
        double tolerance = 0;
    };
    virtual eigenpairs search(const sparsematrix&, const Eigen::MatrixXd&, const searchwish&,
                              steplog&) {
        return {};
    }
};
