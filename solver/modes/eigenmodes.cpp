// SPDX-License-Identifier: GPL-3.0-or-later
// Eigenmodes: shift, search, checks, scaling.
#include "solver/modes/eigenmodes.h"

#include <Eigen/Cholesky>
#include <Eigen/Eigenvalues>
#include <algorithm>
#include <cmath>
#include <numeric>

#include "solver/base/refuse.h"
#include "solver/equations/engines.h"
#include "solver/loads/loads.h"
#include "solver/modes/mass.h"
#include "solver/modes/spectrum.h"

namespace {
struct pairs {
    Eigen::VectorXd value;   // omega^2 in units of the model, lowest first
    Eigen::MatrixXd vector;  // x' M x = 1
};
}  // namespace

static double sumofdiagonal(const sparsematrix& a, const sparsematrix& where) {
    const std::vector<double> diagonal = diagonalof(a), chosen = diagonalof(where);
    double sum = 0;
    for (std::size_t j = 0; j < diagonal.size(); ++j)
        if (chosen[j] > 0 && a.unknowns->counts(j)) sum += diagonal[j];
    allranks().sum(&sum, 1);
    return sum;
}

static sparsematrix combined(const sparsematrix& a, double factor, const sparsematrix& b) {
    sparsematrix c = a;
    for (std::size_t i = 0; i < c.value.size(); ++i) c.value[i] += factor * b.value[i];
    return c;
}

// The search takes values below 4e-11 for found before they are: those of high frequencies, which
// are small in some units. Of a mass times this scale all are large.
static void scalemass(sparsematrix& mass, double scale) {
    for (double& value : mass.value) value *= scale;
}

// --- shift --------------------------------------------------------------------------------------

// Factorises K + s M with the smallest s that makes it safely definite: 0 for a supported model,
// more for one that floats or holds a mechanism, much more for one with negative stiffness. Returns
// s. shifted: out, what was factorised where s is not 0.
static double shiftandfactorise(const model& m, const settings& s, const equations& q,
                                const sparsematrix& mass, engine& l, equations& shifted,
                                runlog& log) {
    log.stage("factor");
    const double safe = 1e-9, safeshifted = 1e-13;  // smallest pivot over its diagonal
    const double unsplit = 1e-8;  // a whole solution spreads rounding that two halves keep apart
    std::int64_t unknown = 0;
    if (l.factorise(q.stiffness) && l.smallestpivot(q.stiffness, unknown) > safe) return 0;
    const double scale = sumofdiagonal(q.stiffness, mass) / sumofdiagonal(mass, mass);
    double shift = 0;
    for (const double part : {1e-11, 1e-9, 1e-7, 1e-5, 1e-3, 0.1, 10.0, 1e3}) {
        if (!l.splits() && part < unsplit) continue;
        shift = part * scale;
        shifted.stiffness = combined(q.stiffness, shift, mass);
        if (l.factorise(shifted.stiffness) &&
            l.smallestpivot(shifted.stiffness, unknown) > safeshifted) {
            log.line("Shift " + shortnumber(shift) + ": the supports do not hold the whole model");
            return shift;
        }
    }
    // What is still singular moves without stiffness and without mass.
    shifted.dofs = q.dofs;
    factorise(m, s, shifted, l, log);
    return shift;
}

// --- values and checks --------------------------------------------------------------------------

// x' a x, each unknown counted once.
static Eigen::MatrixXd projected(const sparsematrix& a, const Eigen::MatrixXd& x) {
    Eigen::MatrixXd ax(x.rows(), x.cols());
    multiply(a, x.data(), ax.data(), int(x.cols()));
    for (Eigen::Index i = 0; i < x.rows(); ++i)
        if (!a.unknowns->counts(std::size_t(i))) ax.row(i).setZero();
    Eigen::MatrixXd product = x.transpose() * ax;
    allranks().sum(product.data(), product.size());
    return product;
}

// The small shift of a floating model magnifies what rounding leaves of its rigid motions in the
// other vectors, and of these in each other. So each gives up what it has of those before it, which
// are lower modes and better known: the Cholesky factor of x' M x does that for all at once. Then
// those that are not rigid are mixed as Rayleigh and Ritz do it, by the inverse of omega^2, which
// knows the lowest best.
static void separate(const equations& q, const sparsematrix& mass, Eigen::MatrixXd& x) {
    const Eigen::LLT<Eigen::MatrixXd> factor(projected(mass, x));
    if (factor.info() != Eigen::Success) return;
    factor.matrixU().solveInPlace<Eigen::OnTheRight>(x);
    const Eigen::MatrixXd energy = projected(q.stiffness, x);
    const double rigid = 1e-9;  // of the next mode's energy
    Eigen::Index first = x.cols() - 1;
    while (first > 0 && energy(first - 1, first - 1) > rigid * energy(first, first)) --first;
    Eigen::MatrixXd rest = x.rightCols(x.cols() - first);
    const Eigen::MatrixXd stiffness = energy.bottomRightCorner(rest.cols(), rest.cols());
    if (Eigen::LLT<Eigen::MatrixXd>(stiffness).info() != Eigen::Success) return;
    const Eigen::GeneralizedSelfAdjointEigenSolver<Eigen::MatrixXd> solver(projected(mass, rest),
                                                                           stiffness);
    x.rightCols(rest.cols()) = rest * solver.eigenvectors().rowwise().reverse();
}

// Rayleigh quotients, lowest first, vectors with unit modal mass. The largest of
// |K x - omega^2 M x| / |K x| goes to the log. scale: stiffness over mass, as they are on the
// whole.
static pairs refine(const equations& q, const sparsematrix& mass, double scale, Eigen::MatrixXd x,
                    runlog& log) {
    separate(q, mass, x);
    const Eigen::Index n = x.rows(), count = x.cols();
    Eigen::MatrixXd kx(n, count), mx(n, count);
    multiply(q.stiffness, x.data(), kx.data(), int(count));
    multiply(mass, x.data(), mx.data(), int(count));
    const std::vector<double> numbers = diagonalof(q.stiffness);
    const Eigen::Map<const Eigen::VectorXd> diagonal(numbers.data(), n);
    const auto product = [&](const Eigen::VectorXd& a, const Eigen::VectorXd& b) {
        return dotproduct(*q.stiffness.unknowns, a.data(), b.data(), std::size_t(n));
    };
    std::vector<double> value;
    double worst = 0;
    const double nothing = 1e-28 * scale;
    for (Eigen::Index i = 0; i < count; ++i) {
        const double size = 1 / std::sqrt(product(x.col(i), mx.col(i)));
        x.col(i) *= size, kx.col(i) *= size, mx.col(i) *= size;
        const double energy = product(x.col(i), kx.col(i));
        // Below the rounding of K x there is no stiffness left to tell; where K has none, x is.
        const double rounding = 1e-14 * product(x.col(i).cwiseAbs2(), diagonal);
        value.push_back(std::fabs(energy) <= std::max(rounding, nothing) ? 0 : energy);
        const Eigen::VectorXd left = kx.col(i) - energy * mx.col(i);
        const double rest = product(left, left), whole = product(kx.col(i), kx.col(i));
        if (value.back() > 0) worst = std::max(worst, std::sqrt(rest / whole));
    }
    log.line("Largest residual |Kx - omega^2 Mx| / |Kx| of the modes = " + shortnumber(worst));
    const double doubtful = 1e-4;
    if (!(worst < doubtful))
        log.warn("The residual of the modes is large, the model is ill-conditioned");
    std::vector<int> order(value.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(),
                     [&](int a, int b) { return value[std::size_t(a)] < value[std::size_t(b)]; });
    pairs p;
    p.value.resize(count);
    p.vector.resize(n, count);
    for (Eigen::Index i = 0; i < count; ++i) {
        p.value[i] = value[std::size_t(order[std::size_t(i)])];
        p.vector.col(i) = x.col(order[std::size_t(i)]);
    }
    return p;
}

static void warnunstable(const pairs& p, double units, runlog& log) {
    const auto unstable = std::count_if(p.value.data(), p.value.data() + p.value.size(),
                                        [](double v) { return v < 0; });
    if (unstable > 0)
        log.warn(std::to_string(unstable) + " mode(s) have a negative omega^2, the lowest " +
                 shortnumber(p.value[0] * units) +
                 " 1/s^2: the model is unstable, it has no frequency there. Check the spring "
                 "matrices of the element groups");
}

// Sylvester's law of inertia: K - s M has as many negative pivots as there are modes below s.
static void countmodes(const equations& q, const sparsematrix& mass, const pairs& p, engine& l,
                       runlog& log) {
    const double below = 1e-5, most = 2e9;  // operations, a second or two
    const double bound = p.value.tail(1)[0] * (1 - below);
    if (!(bound > 0)) return;
    const std::int64_t found = std::count_if(p.value.data(), p.value.data() + p.value.size(),
                                             [&](double v) { return v < bound; });
    const std::int64_t counted = l.countnegative(combined(q.stiffness, -bound, mass), most);
    if (counted < 0)
        log.line("Sturm count of the modes left out, it would cost too much");
    else
        log.line("Sturm count: " + std::to_string(counted) + " mode(s) below the highest, found " +
                 std::to_string(found));
    if (counted >= 0 && counted != found)
        log.warn("The Sturm count does not agree with the modes found; one may be missing");
}

// --- shapes -------------------------------------------------------------------------------------

// Mass times a unit translation of the whole model along x, y, z, on the unknowns. total: out, the
// mass along each.
static Eigen::MatrixXd translated(const model& m, const settings& s, const dofmap& d, bool elements,
                                  vec3& total) {
    Eigen::MatrixXd result(d.unknowns, 3);
    std::vector<double> f(d.equation.size());
    runlog unheard;
    const int nodal = masscase(m);
    const auto of = elements ? caseloads::inertia::matrices : caseloads::inertia::points;
    for (int axis = 0; axis < 3; ++axis) {
        loadcase unit;
        unit.type = caseaccx + axis;
        unit.par[accvalue] = s.force / s.mass;  // gives 1 in units of the model
        if (nodal > 0) unit.nodal = m.cases[std::size_t(nodal)].nodal;
        caseloads::collect({caseloads(m, s, unit, nodal, of)}, d, f.data(), unheard);
        condense(d, f.data(), result.col(axis).data());
        total[axis] = 0;
        if (d.place[axis + 1] < 0) continue;
        for (int n = 1; n <= m.nnodes(); ++n)
            if (d.nodes->counts(std::size_t(n - 1)))
                total[axis] += f[d.index(n, d.place[axis + 1])];
    }
    allranks().sum(total.data(), total.size());
    return result;
}

// Scales the degrees of freedom of a mode to a largest translation of 1, or a largest rotation of
// 1 where next to nothing translates; the largest component is positive.
static void scaleshape(const model& m, const dofmap& d, double* u, double size) {
    double sizes[2] = {};  // of translations, rotations
    double &translation = sizes[0], &rotation = sizes[1];
    for (int n = 1; n <= m.nnodes(); ++n) {
        double square = 0;
        for (int k = 0; k < d.pernode; ++k) {
            const double value = u[d.index(n, k)];
            if (d.code[k] > 3)
                rotation = std::max(rotation, std::fabs(value));
            else
                square += value * value;
        }
        translation = std::max(translation, std::sqrt(square));
    }
    allranks().most(sizes, 2);
    const auto dofs = std::size_t(d.pernode);
    const auto wayof = [&](std::size_t i) {  // the largest component of a node
        double most = 0;
        for (std::size_t k = 0; k < dofs; ++k)
            if (d.code[k] <= 3 && std::fabs(u[i * dofs + k]) > std::fabs(most) * (1 + 1e-6))
                most = u[i * dofs + k];
        return most;
    };
    const largestof largest = findlargest(*d.nodes, std::size_t(m.nnodes()),
                                          [&](std::size_t i) { return std::fabs(wayof(i)); });
    double negative = 0;
    if (const int n = m.placeofnode(largest.item); n > 0) negative = wayof(std::size_t(n - 1)) < 0;
    allranks().most(&negative, 1);
    const double sign = negative != 0 ? -1 : 1;
    const double still = 1e-9;  // of the model's size times the rotation
    const double by = translation > still * size * rotation ? translation : rotation;
    if (!(by > 0)) return;
    for (int i = 0; i < d.dofs(); ++i) u[i] *= sign / by;
}

modeset findmodes(const model& m, const settings& s, const equations& q, bool elements,
                  runlog& log) {
    const dofmap& d = q.dofs;
    log.stage("mass");
    sparsematrix mass = massmatrix(m, s, q, elements, log);
    if (d.unknownsofall == 0 || !(sumofdiagonal(mass, mass) > 0))
        refuse(
            "The model has no mass that can move, so it has no eigenmodes. Give the element groups "
            "a specific mass, or nodal masses in a load case that is not of the applied kind");
    const std::unique_ptr<engine> l = makeengine();
    l->describe(m, d);
    analysefactor(q, *l, spectrumcolumns(mass, s.modes), log);
    equations shifted;
    const double shift = shiftandfactorise(m, s, q, mass, *l, shifted, log);
    log.stage("modes");
    const bool matters = shift != 0 && !l->splits();
    if (!matters) shifted = {};
    const sparsematrix& factorised = matters ? shifted.stiffness : q.stiffness;
    const double scale = sumofdiagonal(q.stiffness, mass) / sumofdiagonal(mass, mass);
    const double large = std::exp2(std::round(std::log2(scale)));  // powers of two lose nothing
    scalemass(mass, large);
    const spectrum found = largestvalues(*l, factorised, mass, s.modes, log);
    scalemass(mass, 1 / large);
    const pairs p = refine(q, mass, scale, found.vectors, log);
    warnunstable(p, s.force / (s.length * s.mass), log);
    if (p.value.size() < s.modes)
        log.line("The model's mass allows " + std::to_string(p.value.size()) + " mode(s) of " +
                 std::to_string(s.modes) + " wanted");
    if (shift > 0) {
        const auto still = std::count(p.value.data(), p.value.data() + p.value.size(), 0.0);
        log.line("Motions without stiffness (rigid bodies, mechanisms): " + std::to_string(still));
    }
    countmodes(q, mass, p, *l, log);

    modeset r;
    const double units = s.force / (s.length * s.mass);  // of omega^2: force over length and mass
    const Eigen::MatrixXd along = translated(m, s, d, elements, r.totalmass);
    const double size = modelsize(m);
    std::vector<double> rest(d.equation.size());
    const std::vector<double> still(std::size_t(d.unknowns), 0);
    expand(d, still.data(), rest.data());  // prescribed values take no part
    r.shape.resize(d.equation.size() * std::size_t(p.value.size()));
    for (Eigen::Index i = 0; i < p.value.size(); ++i) {
        r.value.push_back(p.value[i] * units);
        vec3 share;
        for (int k = 0; k < 3; ++k)
            share[k] = dotproduct(*d.freedoms, along.col(k).data(), p.vector.col(i).data(),
                                  std::size_t(d.unknowns));
        r.effectivemass.emplace_back(share.cwiseAbs2());
        double* const u = r.shape.data() + std::size_t(i) * d.equation.size();
        expand(d, p.vector.col(i).data(), u);
        for (std::size_t k = 0; k < rest.size(); ++k) u[k] = d.prescribed[k] ? 0 : u[k] - rest[k];
        scaleshape(m, d, u, size);
    }
    return r;
}
