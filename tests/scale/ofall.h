// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "solver/results/results.h"

// The displacements of the parts of all processes, whole and everywhere.
inline std::vector<double> ofall(const results& r) {
    const dofmap& d = r.dofs;
    const std::size_t held = d.equation.size() / std::size_t(d.pernode);
    double last = -1;
    for (std::size_t i = 0; i < held; ++i) last = std::max<double>(last, d.nodes->numberof(i));
    allranks().most(&last, 1);
    const std::size_t dofs = std::size_t(last + 1) * std::size_t(d.pernode);
    std::vector<double> u(dofs * std::size_t(r.u.cases), 0);
    for (std::size_t i = 0; i < r.u.u.size(); ++i) {
        const std::size_t c = i / d.equation.size(), at = i % d.equation.size();
        const std::size_t node = at / std::size_t(d.pernode), k = at % std::size_t(d.pernode);
        if (!d.nodes->counts(node)) continue;
        u[c * dofs + std::size_t(d.nodes->numberof(node) * d.pernode) + k] = r.u.u[i];
    }
    allranks().sum(u.data(), std::int64_t(u.size()));
    return u;
}
