// SPDX-License-Identifier: GPL-3.0-or-later
#include "solver/equations/roundinghold.h"

#include <algorithm>
#include <cmath>

#include "solver/dofs/faraway.h"
#include "solver/equations/mechanism.h"
#include "solver/processes/ranks.h"

// Work of the loads on a model of other places; 0 where that cannot stand at all.
static double workon(const model& m, const settings& s, const equations& q, engine& l,
                     const std::vector<double>& load) {
    runlog unheard;
    unheard.quiet();
    sparsematrix a = q.stiffness;
    std::ranges::fill(a.value, 0.0);
    assemble(m, s, q.dofs, part::stiffness, a, unheard);
    if (!l.factorise(a)) return 0;
    std::vector<double> u = load;
    l.solve(u.data(), 1);
    return dotproduct(*a.unknowns, load.data(), u.data(), load.size());
}

void refuseheldbyrounding(const model& m, const settings& s, const equations& q, engine& l,
                          const std::vector<double>& load, const double* u, runlog& log) {
    double differs = otherwiserounded(m, 1) != m.nodes;
    allranks().most(&differs, 1);
    if (differs == 0) return;
    const double work = dotproduct(*q.stiffness.unknowns, load.data(), u, load.size());
    // More of it holds a mechanism far better; thin strips that wave by it only stretch more.
    const double same = 0.02, much = 3;
    const int attempts = 5;  // one may happen to come near to the same
    double stiffer = 0;
    model moved = m;
    for (int attempt = 1; attempt <= attempts && stiffer < much; ++attempt) {
        moved.nodes = otherwiserounded(m, attempt);
        const double other = workon(moved, s, q, l, load), times = work / other;
        stiffer = std::max(stiffer, other > 0 ? times : INFINITY);
        if (attempt == 1 && std::fabs(times - 1) < same) break;
    }
    log.line("Stiffness of the softest case where coordinates are rounded otherwise: " +
             shortnumber(stiffer) + " times as large");
    if (stiffer < much)
        l.factorise(q.stiffness);
    else
        refusemotion(m, s, q.dofs, std::vector<double>(u, u + load.size()));
}
