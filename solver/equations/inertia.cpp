// SPDX-License-Identifier: GPL-3.0-or-later
// Counts of eigenvalues by the simplicial l d l' factor of CHOLMOD.
#include "solver/equations/inertia.h"

#include "solver/equations/cholmodview.h"

std::int64_t countnegative(const sparsematrix& a, double mostoperations) {
    cholmod_common c;
    cholmod_l_start(&c);
    c.print = 0;
    c.nmethods = 1;
    c.method[0].ordering = CHOLMOD_NATURAL;
    c.postorder = 0;
    c.supernodal = CHOLMOD_SIMPLICIAL;
    const std::vector<std::int64_t> rows(a.row.begin(), a.row.end());  // as wide as the starts
    cholmod_sparse view = lowerview(a.start, rows, a.value.data());
    cholmod_factor* l = cholmod_l_analyze(&view, &c);
    std::int64_t negative = -1;
    if (l != nullptr && c.fl <= mostoperations) {
        cholmod_l_factorize(&view, l, &c);
        if (c.status == CHOLMOD_OK && l->minor == l->n) {
            const auto* const start = static_cast<std::int64_t*>(l->p);
            const auto* const value = static_cast<double*>(l->x);
            negative = 0;
            for (std::size_t j = 0; j < l->n; ++j) negative += value[start[j]] < 0;
        }
    }
    cholmod_l_free_factor(&l, &c);
    cholmod_l_finish(&c);
    return negative;
}
