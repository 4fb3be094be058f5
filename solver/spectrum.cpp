// SPDX-License-Identifier: GPL-3.0-or-later
// Search of eigenvalues: through the flexibility of the masses where these are few, else by
// Lanczos' method, which looks again after what it may have missed.
#include "solver/spectrum.h"

#include <Spectra/SymEigsSolver.h>
#include <Spectra/SymGEigsSolver.h>

#include <Eigen/Eigenvalues>
#include <algorithm>
#include <cmath>
#include <memory>
#include <numeric>

#include "solver/ranks.h"
#include "solver/refuse.h"

static const int fewmasses = 200, manymasses = 2000;
static const int furthervectors = 4;  // vectors of each further look

// --- few masses ---------------------------------------------------------------------------------

// Unknowns with mass, ascending.
static std::vector<std::int64_t> massplaces(const sparsematrix& mass) {
    const std::vector<double> diagonal = diagonalof(mass);
    std::vector<std::int64_t> places;
    for (std::int64_t j = 0; j < mass.size(); ++j)
        if (diagonal[std::size_t(j)] > 0) places.push_back(j);
    return places;
}

static bool isfew(std::size_t places, int wanted) {
    return places <= fewmasses || (places <= manymasses && places < 3 * std::size_t(wanted));
}

// M on the unknowns with mass, full.
static Eigen::MatrixXd fullmass(const sparsematrix& mass, const std::vector<std::int64_t>& places) {
    const auto n = Eigen::Index(places.size());
    Eigen::MatrixXd full = Eigen::MatrixXd::Zero(n, n);
    for (Eigen::Index c = 0; c < n; ++c) {
        const auto column = std::size_t(places[std::size_t(c)]);
        auto at = places.begin() + c;
        for (auto i = mass.start[column]; i < mass.start[column + 1]; ++i) {
            const double value = mass.value[std::size_t(i)];
            if (value == 0) continue;
            at = std::lower_bound(at, places.end(), mass.row[std::size_t(i)]);
            full(at - places.begin(), c) = full(c, at - places.begin()) = value;
        }
    }
    allranks().sum(full.data(), n * n);
    return full;
}

// R with R R' = M: eigenvectors of M with unit diagonal, so that lengths and rotations mix.
static Eigen::MatrixXd rootof(const Eigen::MatrixXd& mass) {
    const Eigen::VectorXd size = mass.diagonal().cwiseSqrt();
    const Eigen::VectorXd by = size.cwiseInverse();
    const Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd> solver(by.asDiagonal() * mass *
                                                                by.asDiagonal());
    static const double nothing = 1e-13;  // of a unit mass
    const auto& values = solver.eigenvalues();
    const Eigen::Index first = std::count_if(values.data(), values.data() + values.size(),
                                             [](double v) { return v < nothing; });
    const Eigen::Index rank = values.size() - first;
    return size.asDiagonal() * solver.eigenvectors().rightCols(rank) *
           values.tail(rank).cwiseSqrt().asDiagonal();
}

// With M = R R' the values are those of R' A^-1 R, a matrix as small as the masses are few.
static spectrum fromflexibility(engine& a, const sparsematrix& mass,
                                const std::vector<std::int64_t>& places, int wanted) {
    const Eigen::MatrixXd root = rootof(fullmass(mass, places));
    Eigen::MatrixXd flexible = Eigen::MatrixXd::Zero(mass.size(), root.cols());
    for (std::size_t i = 0; i < places.size(); ++i)
        flexible.row(places[i]) = root.row(Eigen::Index(i));
    a.solve(flexible.data(), int(flexible.cols()));
    Eigen::MatrixXd product = Eigen::MatrixXd::Zero(root.cols(), root.cols());
    for (std::size_t i = 0; i < places.size(); ++i)
        product += root.row(Eigen::Index(i)).transpose() * flexible.row(places[i]);
    const Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd> solver((product + product.transpose()) /
                                                                2);
    const Eigen::Index count = std::min<Eigen::Index>(wanted, root.cols());
    spectrum result;
    result.value = solver.eigenvalues().tail(count).reverse();
    result.vectors = flexible * solver.eigenvectors().rightCols(count).rowwise().reverse();
    return result;
}

// --- Lanczos ------------------------------------------------------------------------------------

namespace {
struct ritzpairs {
    Eigen::VectorXd value;
    Eigen::MatrixXd vectors;
};

// What Lanczos' method is applied to, and what it has found there.
class search {
  public:
    virtual ~search() = default;
    // Largest values of the operator, whose rank is at least most, less what is found already.
    virtual ritzpairs lanczos(int wanted, std::int64_t most, double tolerance) = 0;
    virtual void foundmore() {}            // the found ones have changed
    virtual Eigen::MatrixXd shapes() = 0;  // x of what is found

    Eigen::MatrixXd found;  // orthonormal
    Eigen::VectorXd value;
};

int basissize(int wanted, std::int64_t most) {
    return int(std::min<std::int64_t>(std::max(2 * wanted + 10, 20), most));
}

template <typename Solver>
ritzpairs largestof(Solver& solver, double tolerance) {
    const int rounds = 300;
    solver.init();
    solver.compute(Spectra::SortRule::LargestAlge, rounds, tolerance,
                   Spectra::SortRule::LargestAlge);
    return {solver.eigenvalues(), solver.eigenvectors()};
}

// y = L^-1 M L^-T x with L L' = A.
class reduced : public search {
  public:
    using Scalar = double;
    reduced(engine& l, const sparsematrix& m, runlog& runs) : a(l), mass(m), log(runs) {}
    Eigen::Index rows() const { return mass.size(); }
    Eigen::Index cols() const { return mass.size(); }
    void perform_op(const double* x, double* y) const {
        const Eigen::Map<const Eigen::VectorXd> from(x, rows());
        Eigen::Map<Eigen::VectorXd> to(y, rows());
        work = from;
        a.solve(work.data(), 1, engine::triangles::upper);
        multiply(mass, work.data(), y, 1);
        a.solve(y, 1, engine::triangles::lower);
        if (found.cols() > 0) {
            const Eigen::VectorXd share = found.transpose() * from;
            to.noalias() -= found * value.cwiseProduct(share);
        }
        ++steps;
        log.progress("modes", int(100.0 * steps / (steps + expected)));
    }

    ritzpairs lanczos(int wanted, std::int64_t most, double tolerance) override {
        Spectra::SymEigsSolver<reduced> solver(*this, wanted, basissize(wanted, most));
        return largestof(solver, tolerance);
    }
    Eigen::MatrixXd shapes() override {
        a.solve(found.data(), int(found.cols()), engine::triangles::upper);
        return found;
    }

  private:
    static constexpr int expected = 50;
    engine& a;
    const sparsematrix& mass;
    runlog& log;
    mutable Eigen::VectorXd work;
    mutable int steps = 0;
};

// For an engine that shows no triangles: A^-1 M, symmetric where lengths are measured by A.
class whole : public search {
  public:
    whole(engine& l, const sparsematrix& of, const sparsematrix& m, runlog& runs)
        : a{l, of}, mass{m, *this, runs} {}
    ritzpairs lanczos(int wanted, std::int64_t most, double tolerance) override {
        Spectra::SymGEigsSolver<massof, matrixof, Spectra::GEigsMode::RegularInverse> solver(
            mass, a, wanted, basissize(wanted, most));
        return largestof(solver, tolerance);
    }
    void foundmore() override {
        images.resize(found.rows(), found.cols());
        multiply(a.matrix, found.data(), images.data(), int(found.cols()));
    }
    Eigen::MatrixXd shapes() override { return found; }

  private:
    struct matrixof {
        using Scalar = double;
        engine& l;
        const sparsematrix& matrix;
        Eigen::Index rows() const { return matrix.size(); }
        Eigen::Index cols() const { return matrix.size(); }
        void perform_op(const double* x, double* y) const { multiply(matrix, x, y, 1); }
        void solve(const double* x, double* y) const {
            std::copy_n(x, matrix.size(), y);
            l.solve(y, 1);
        }
    };
    struct massof {
        using Scalar = double;
        const sparsematrix& matrix;
        const whole& owner;
        runlog& log;
        mutable int steps = 0;
        Eigen::Index rows() const { return matrix.size(); }
        Eigen::Index cols() const { return matrix.size(); }
        void perform_op(const double* x, double* y) const {
            multiply(matrix, x, y, 1);
            const Eigen::Map<const Eigen::VectorXd> from(x, rows());
            Eigen::Map<Eigen::VectorXd> to(y, rows());
            if (owner.found.cols() > 0) {
                const Eigen::VectorXd share = owner.images.transpose() * from;
                to.noalias() -= owner.images * owner.value.cwiseProduct(share);
            }
            const int expected = 50;
            ++steps;
            log.progress("modes", int(100.0 * steps / (steps + expected)));
        }
    };
    matrixof a;
    massof mass;
    Eigen::MatrixXd images;  // of what is found, by A
};
}  // namespace

// One start vector meets a multiple eigenvalue once, rounding apart. So the search is repeated
// without what is found until nothing comes that lies above the smallest.
static void lookagain(search& op, int wanted, std::int64_t most, runlog& log) {
    const double rough = 1e-5, fine = 1e-10, equal = 1e-7;
    const int looks = 40;
    for (int look = 0; look < looks && op.value.size() > 0; ++look) {
        const double smallest = op.value.minCoeff() * (1 + equal);
        const bool full = op.value.size() >= wanted;
        const ritzpairs first = op.lanczos(1, most, full ? rough : fine);
        if (first.value.size() == 0 || (full && !(first.value[0] > smallest))) return;
        const ritzpairs more = op.lanczos(furthervectors, most, fine);
        if (more.value.size() == 0) return;
        log.line("A further look found " + std::to_string(more.value.size()) + " mode(s)");
        const Eigen::Index before = op.value.size(), count = more.value.size();
        Eigen::VectorXd value(before + count);
        value << op.value, more.value;
        Eigen::MatrixXd vectors(op.found.rows(), before + count);
        vectors << op.found, more.vectors;
        std::vector<int> order(std::size_t(before + count));
        std::iota(order.begin(), order.end(), 0);
        std::stable_sort(order.begin(), order.end(),
                         [&](int a, int b) { return value[a] > value[b]; });
        const Eigen::Index kept = std::min<Eigen::Index>(wanted, before + count);
        op.value.resize(kept);
        op.found.resize(vectors.rows(), kept);
        for (Eigen::Index i = 0; i < kept; ++i) {
            op.value[i] = value[order[std::size_t(i)]];
            op.found.col(i) = vectors.col(order[std::size_t(i)]);
        }
        op.foundmore();
    }
}

int spectrumcolumns(const sparsematrix& mass, int wanted) {
    const auto places = massplaces(mass);
    if (isfew(places.size(), wanted)) return int(3 * places.size());
    return basissize(wanted, std::int64_t(places.size())) + 2 * wanted;
}

spectrum largestvalues(engine& a, const sparsematrix& matrix, const sparsematrix& mass, int wanted,
                       runlog& log) {
    const auto places = massplaces(mass);
    if (isfew(places.size(), wanted)) return fromflexibility(a, mass, places, wanted);
    const auto most = std::int64_t(places.size());
    const int asked = wanted;
    wanted = int(std::min<std::int64_t>(wanted, most / 3));
    const double fine = 1e-10;
    std::unique_ptr<search> chosen;
    if (a.splits())
        chosen = std::make_unique<reduced>(a, mass, log);
    else
        chosen = std::make_unique<whole>(a, matrix, mass, log);
    search& op = *chosen;
    try {
        const ritzpairs first = op.lanczos(wanted, most, fine);
        op.value = first.value;
        op.found = first.vectors;
        op.foundmore();
        lookagain(op, wanted, most, log);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& e) {
        refuse(std::string("The search of the eigenmodes failed: ") + e.what());
    }
    if (op.value.size() < asked)
        log.warn(std::to_string(op.value.size()) + " of " + std::to_string(asked) +
                 " eigenmodes were found");
    return {op.value, op.shapes()};
}
