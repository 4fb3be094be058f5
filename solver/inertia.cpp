// SPDX-License-Identifier: GPL-3.0-or-later
// Counts of eigenvalues by the simplicial l d l' factor of CHOLMOD.
#include "solver/inertia.h"

#include <cholmod.h>

// rows: of the matrix, as wide as CHOLMOD's large models take them.
static cholmod_sparse viewof(const sparsematrix& a, std::vector<std::int64_t>& rows) {
    rows.assign(a.row.begin(), a.row.end());
    cholmod_sparse view{};
    view.nrow = view.ncol = std::size_t(a.size());
    view.nzmax = rows.size();
    view.p = const_cast<std::int64_t*>(a.start.data());
    view.i = rows.data();
    view.x = const_cast<double*>(a.value.data());
    view.stype = -1;
    view.itype = CHOLMOD_LONG;
    view.xtype = CHOLMOD_REAL;
    view.dtype = CHOLMOD_DOUBLE;
    view.sorted = view.packed = 1;
    return view;
}

std::int64_t countnegative(const sparsematrix& a, double mostoperations) {
    cholmod_common c;
    cholmod_l_start(&c);
    c.print = 0;
    c.nmethods = 1;
    c.method[0].ordering = CHOLMOD_NATURAL;
    c.postorder = 0;
    c.supernodal = CHOLMOD_SIMPLICIAL;
    std::vector<std::int64_t> rows;
    cholmod_sparse view = viewof(a, rows);
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
