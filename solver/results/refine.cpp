// SPDX-License-Identifier: GPL-3.0-or-later
// Iterative refinement in two-part numbers: Higham, Accuracy and Stability of Numerical Algorithms,
// chapter 12. The residual comes from the elements, not from the matrix, which has lost their
// balance to rounding.
#include "solver/results/refine.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "solver/base/memory.h"
#include "solver/base/parallel.h"

static vec6 movedto(const vec3& place, vec6 sum) {
    sum.tail<3>() -= place.cross(vec3(sum.head<3>()));
    return sum;
}

double worstbalance(const reactionset& r, const std::vector<vec6>& letgo, const vec3& about) {
    double worst = 0;
    for (std::size_t lc = 1; lc < r.load.size(); ++lc) {
        const vec6 load = movedto(about, r.load[lc]), reaction = movedto(about, r.reaction[lc]);
        const double size = std::max(
            {load.cwiseAbs().maxCoeff(), reaction.cwiseAbs().maxCoeff(), r.least[lc].maxCoeff()});
        const vec6 left = load + reaction - movedto(about, letgo[lc - 1]);
        if (size > 0) worst = std::max(worst, left.cwiseAbs().maxCoeff() / size);
    }
    return worst;
}

static void addtwopart(double step, double& value, double& rest) {
    const double both = rest + step, sum = value + both;
    rest = both - (sum - value);
    value = sum;
}

double refine(const model& m, const settings& s, const equations& q, engine& l,
              const std::vector<double>& applied, displacements& u) {
    const dofmap& d = q.dofs;
    const std::size_t dofs = d.equation.size();
    const auto unknowns = std::size_t(d.unknowns);
    const std::vector<int> elements = stiffelements(m);
    const std::vector<double> nothing(unknowns, 0);
    std::vector<double> still(dofs), columns = zeros(unknowns * std::size_t(u.cases));
    expand(d, nothing.data(), still.data());
    if (u.rest.empty()) u.rest = zeros(u.u.size());
    std::vector<double> force = zeros(u.u.size());
    addforces(m, s, d, u, elements, force);
    eachcase(u.cases, [&](std::size_t c) {
        double* const left = force.data() + c * dofs;
        for (std::size_t i = 0; i < dofs; ++i) left[i] = applied[c * dofs + i] - left[i];
        condense(d, left, columns.data() + c * unknowns);
    });
    l.solve(columns.data(), u.cases);
    // Changes of translations, of rotations; the largest of both.
    std::vector<std::array<double, 4>> found(std::size_t(u.cases), {0, 0, 0, 0});
    eachcase(u.cases, [&](std::size_t c) {
        std::vector<double> step(dofs);
        expand(d, columns.data() + c * unknowns, step.data());
        std::array<double, 4> most{};
        for (std::size_t i = 0; i < dofs; ++i) {
            const std::size_t at = c * dofs + i;
            const int turns = d.code[i % std::size_t(d.pernode)] > 3;
            most[turns] = std::max(most[turns], std::fabs(step[i] - still[i]));
            most[2 + turns] = std::max(most[2 + turns], std::fabs(u.u[at]));
            addtwopart(step[i] - still[i], u.u[at], u.rest[at]);
        }
        found[c] = most;
    });
    allranks().most(found[0].data(), 4 * found.size());
    const double size = boxof(m).size().norm();  // makes lengths of rotations
    double worst = 0;
    for (const std::array<double, 4>& most : found) {
        const double part = std::max(most[0], most[1] * size);
        const double whole = std::max(most[2], most[3] * size);
        if (!(part <= worst * whole)) worst = part / whole;
    }
    return worst;
}
