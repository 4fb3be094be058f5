// SPDX-License-Identifier: GPL-3.0-or-later
// Search of eigenvalues: through the flexibility of the masses where these are few, else by
// Lanczos' method, which looks again after what it may have missed.
#include "solver/modes/spectrum.h"

#include <Spectra/SymEigsSolver.h>
#include <Spectra/SymGEigsSolver.h>

#include <Eigen/Eigenvalues>
#include <algorithm>
#include <cmath>
#include <memory>
#include <numeric>

#include "solver/base/refuse.h"
#include "solver/equations/packing.h"
#include "solver/equations/softness.h"

static const int fewmasses = 200, manymasses = 2000;
static const int furthervectors = 4;  // vectors of each further look

// --- few masses ---------------------------------------------------------------------------------

// How many unknowns of all have mass.
static std::int64_t countmasses(const sparsematrix& mass) {
    const std::vector<double> diagonal = diagonalof(mass);
    double count = 0;
    for (std::size_t j = 0; j < diagonal.size(); ++j)
        count += diagonal[j] > 0 && mass.unknowns->counts(j);
    allranks().sum(&count, 1);
    return std::int64_t(count);
}

// Their numbers, ascending, where they are few.
static std::vector<int> massplaces(const sparsematrix& mass) {
    const std::vector<double> diagonal = diagonalof(mass);
    std::vector<double> mine;
    for (std::size_t j = 0; j < diagonal.size(); ++j)
        if (diagonal[j] > 0 && mass.unknowns->counts(j)) mine.push_back(mass.unknowns->numberof(j));
    std::vector<double> all = allranks().gather(mine);
    all.resize(std::size_t(countmasses(mass)));
    allranks().takefirst(all.data(), std::int64_t(all.size()));
    std::ranges::sort(all);
    return {all.begin(), all.end()};
}

static bool isfew(std::int64_t masses, int wanted) {
    return masses <= fewmasses || (masses <= manymasses && masses < 3 * std::int64_t(wanted));
}

// M on the unknowns with mass, full.
static Eigen::MatrixXd fullmass(const sparsematrix& mass, const std::vector<int>& places) {
    const auto n = Eigen::Index(places.size());
    Eigen::MatrixXd full = Eigen::MatrixXd::Zero(n, n);
    const sharing& unknowns = *mass.unknowns;
    for (Eigen::Index c = 0; c < n; ++c) {
        const int here = unknowns.placeof(places[std::size_t(c)]);
        if (here < 0) continue;
        const auto column = std::size_t(here);
        auto at = places.begin() + c;
        for (auto i = mass.start[column]; i < mass.start[column + 1]; ++i) {
            const double value = mass.value[std::size_t(i)];
            if (value == 0) continue;
            const int row = unknowns.numberof(std::size_t(mass.row[std::size_t(i)]));
            at = std::lower_bound(at, places.end(), row);
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
static spectrum fromflexibility(engine& a, const sparsematrix& mass, const std::vector<int>& places,
                                int wanted) {
    const sharing& unknowns = *mass.unknowns;
    const Eigen::MatrixXd root = rootof(fullmass(mass, places));
    Eigen::MatrixXd flexible = Eigen::MatrixXd::Zero(mass.size(), root.cols());
    for (std::size_t i = 0; i < places.size(); ++i)
        if (const int here = unknowns.placeof(places[i]); here >= 0)
            flexible.row(here) = root.row(Eigen::Index(i));
    a.solve(flexible.data(), int(flexible.cols()));
    Eigen::MatrixXd product = Eigen::MatrixXd::Zero(root.cols(), root.cols());
    for (std::size_t i = 0; i < places.size(); ++i)
        if (const int here = unknowns.placeof(places[i]);
            here >= 0 && unknowns.counts(std::size_t(here)))
            product += root.row(Eigen::Index(i)).transpose() * flexible.row(here);
    allranks().sum(product.data(), product.size());
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
// What Lanczos' method is applied to, and what it has found there.
class search {
  public:
    virtual ~search() = default;
    // Largest values of the operator, whose rank is at least most, less what is found already.
    virtual eigenpairs lanczos(int wanted, std::int64_t most, double tolerance) = 0;
    virtual void foundmore() {}            // the found ones have changed
    virtual Eigen::MatrixXd shapes() = 0;  // x of what is found

    Eigen::MatrixXd found;  // orthonormal
    Eigen::VectorXd value;
};

int basissize(int wanted, std::int64_t most) {
    return int(std::min<std::int64_t>(std::max(2 * wanted + 10, 20), most));
}

template <typename Solver>
eigenpairs largestpairs(Solver& solver, double tolerance, const std::vector<double>& start = {}) {
    const int rounds = 300;
    if (start.empty())
        solver.init();
    else
        solver.init(start.data());
    solver.compute(Spectra::SortRule::LargestAlge, rounds, tolerance,
                   Spectra::SortRule::LargestAlge);
    return {solver.eigenvalues(), solver.eigenvectors()};
}

// y = L^-1 M L^-T x with L L' = A.
class reduced : public search {
  public:
    using Scalar = double;
    reduced(engine& l, const sparsematrix& m, steplog& runs) : a(l), mass(m), log(runs) {}
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
        log.step();
    }

    eigenpairs lanczos(int wanted, std::int64_t most, double tolerance) override {
        Spectra::SymEigsSolver<reduced> solver(*this, wanted, basissize(wanted, most));
        return largestpairs(solver, tolerance);
    }
    Eigen::MatrixXd shapes() override {
        a.solve(found.data(), int(found.cols()), engine::triangles::upper);
        return found;
    }

  private:
    engine& a;
    const sparsematrix& mass;
    steplog& log;
    mutable Eigen::VectorXd work;
};

// A matrix by which lengths are measured, and its inverse; vectors are packed.
struct measure {
    using Scalar = double;
    engine& l;
    const sparsematrix& matrix;
    const packing& packs;
    Eigen::Index rows() const { return packs.rows(); }
    Eigen::Index cols() const { return packs.rows(); }
    void perform_op(const double* x, double* y) const { packs.multiply(matrix, x, y); }
    void solve(const double* x, double* y) const {
        std::vector<double> whole(static_cast<std::size_t>(packs.held()));
        packs.unpack(x, whole.data());
        l.solve(whole.data(), 1);
        packs.pack(whole.data(), y);
    }
};

}  // namespace

// What the search does with vectors beside adding them: products, here over all processes.
template <typename Operator>
class Spectra::ArnoldiOp<double, Operator, measure> {
  public:
    ArnoldiOp(const Operator& op, const measure& by)
        : of(op), lengths(by), image(Eigen::VectorXd::Zero(by.rows())) {}
    Eigen::Index rows() const { return of.rows(); }
    template <typename Left, typename Right>
    double inner_product(const Left& x, const Right& y) const {
        lengths.perform_op(y.data(), image.data());
        return lengths.packs.product(x, image)[0];
    }
    template <typename Left, typename Right>
    void trans_product(const Left& x, const Right& y, Eigen::Ref<Eigen::VectorXd> result) const {
        lengths.perform_op(y.data(), image.data());
        result = lengths.packs.product(x, image);
    }
    template <typename Vector>
    double norm(const Vector& x) const {
        return std::sqrt(inner_product(x, x));
    }
    void perform_op(const double* x, double* y) const { of.perform_op(x, y); }

  private:
    const Operator& of;
    const measure& lengths;
    mutable Eigen::VectorXd image;
};

namespace {
// For an engine that shows no triangles: A^-1 M, symmetric where lengths are measured by A.
class whole : public search {
  public:
    whole(engine& l, const sparsematrix& of, const sparsematrix& m, steplog& runs)
        : packs(of.unknowns, of.size()), a{l, of, packs}, mass{m, packs, *this, runs} {}
    eigenpairs lanczos(int wanted, std::int64_t most, double tolerance) override {
        Spectra::SymGEigsSolver<massof, measure, Spectra::GEigsMode::RegularInverse> solver(
            mass, a, wanted, basissize(wanted, most));
        return largestpairs(solver, tolerance, start());
    }
    void foundmore() override {
        images.resize(found.rows(), found.cols());
        for (Eigen::Index c = 0; c < found.cols(); ++c)
            packs.multiply(a.matrix, found.col(c).data(), images.col(c).data());
    }
    Eigen::MatrixXd shapes() override {
        Eigen::MatrixXd shape(packs.held(), found.cols());
        for (Eigen::Index c = 0; c < found.cols(); ++c)
            packs.unpack(found.col(c).data(), shape.col(c).data());
        return shape;
    }

  protected:
    packing packs;

  private:
    // The same on how many processes ever.
    std::vector<double> start() const {
        startnoise noise;
        std::vector<double> from(static_cast<std::size_t>(packs.held()));
        std::vector<double> packed(static_cast<std::size_t>(packs.rows()));
        for (std::size_t i = 0; i < from.size(); ++i)
            from[i] = noise.at(a.matrix.unknowns->numberof(i)) - 1;
        packs.pack(from.data(), packed.data());
        return packed;
    }
    struct massof {
        using Scalar = double;
        const sparsematrix& matrix;
        const packing& packs;
        const whole& owner;
        steplog& log;
        Eigen::Index rows() const { return packs.rows(); }
        Eigen::Index cols() const { return packs.rows(); }
        void perform_op(const double* x, double* y) const {
            packs.multiply(matrix, x, y);
            const Eigen::Map<const Eigen::VectorXd> from(x, rows());
            Eigen::Map<Eigen::VectorXd> to(y, rows());
            if (owner.found.cols() > 0) {
                const Eigen::VectorXd share = packs.product(owner.images, from);
                to.noalias() -= owner.images * owner.value.cwiseProduct(share);
            }
            log.step();
        }
    };
    measure a;
    massof mass;
    Eigen::MatrixXd images;  // of what is found, by A
};

// By the engine itself, as long as it does.
class foreign : public whole {
  public:
    foreign(engine& l, const sparsematrix& of, const sparsematrix& m, steplog& runs)
        : whole(l, of, m, runs), one(l), masses(m), log(runs) {}
    eigenpairs lanczos(int wanted, std::int64_t most, double tolerance) override {
        eigenpairs r;
        if (one.searches())
            r = one.search(masses, shapes(), {wanted, basissize(wanted, most), tolerance}, log);
        if (!one.searches()) return whole::lanczos(wanted, most, tolerance);
        Eigen::MatrixXd packed(packs.rows(), r.vectors.cols());
        for (Eigen::Index c = 0; c < packed.cols(); ++c)
            packs.pack(r.vectors.col(c).data(), packed.col(c).data());
        return {r.value, packed};
    }

  private:
    engine& one;
    const sparsematrix& masses;
    steplog& log;
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
        const eigenpairs first = op.lanczos(1, most, full ? rough : fine);
        if (first.value.size() == 0 || (full && !(first.value[0] > smallest))) return;
        const eigenpairs more = op.lanczos(furthervectors, most, fine);
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
    const std::int64_t masses = countmasses(mass);
    if (isfew(masses, wanted)) return int(3 * masses);
    return basissize(wanted, masses) + 2 * wanted;
}

spectrum largestvalues(engine& a, const sparsematrix& matrix, const sparsematrix& mass, int wanted,
                       runlog& log) {
    const std::int64_t most = countmasses(mass);
    if (isfew(most, wanted)) return fromflexibility(a, mass, massplaces(mass), wanted);
    const int asked = wanted;
    wanted = int(std::min<std::int64_t>(wanted, most / 3));
    const double fine = 1e-10;
    std::unique_ptr<search> chosen;
    steplog steps(log, "modes");
    if (a.searches())
        chosen = std::make_unique<foreign>(a, matrix, mass, steps);
    else if (a.splits())
        chosen = std::make_unique<reduced>(a, mass, steps);
    else
        chosen = std::make_unique<whole>(a, matrix, mass, steps);
    search& op = *chosen;
    try {
        const eigenpairs first = op.lanczos(wanted, most, fine);
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
