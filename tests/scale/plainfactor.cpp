// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/scale/plainfactor.h"

#include "solver/base/blas.h"
#include "solver/base/parallel.h"
#include "solver/base/refuse.h"
#include "solver/equations/cholmodview.h"

struct plainfactor::inside {
    cholmod_common c;
    cholmod_factor* l = nullptr;
    std::vector<std::int64_t> rows;  // as wide as the starts
    double operations = 0;
    inside() {
        cholmod_l_start(&c);
        c.print = 0;
        c.nmethods = 1;
        c.method[0].ordering = CHOLMOD_NATURAL;  // the matrix comes in the order of elimination
        c.supernodal = CHOLMOD_SUPERNODAL;
        openblas_set_num_threads(threads());
    }
    ~inside() {
        openblas_set_num_threads(1);
        cholmod_l_free_factor(&l, &c);
        cholmod_l_finish(&c);
    }
    inside(const inside&) = delete;
    inside& operator=(const inside&) = delete;
};

plainfactor::plainfactor() = default;
plainfactor::~plainfactor() = default;

void plainfactor::analyse(const sparsematrix& a) {
    in = std::make_unique<inside>();
    in->rows.assign(a.row.begin(), a.row.end());
    cholmod_sparse view = lowerview(a.start, in->rows);
    in->l = cholmod_l_analyze(&view, &in->c);
    if (in->l == nullptr) refuse("CHOLMOD does not analyse the equations");
    in->operations = in->c.fl;
}

double plainfactor::entries() const {
    return double(in->l->xsize);
}

double plainfactor::operations() const {
    return in->operations;
}

double plainfactor::bytes() const {
    return entries() * sizeof(double);
}

bool plainfactor::factorise(const sparsematrix& a) {
    cholmod_sparse view = lowerview(a.start, in->rows, a.value.data());
    cholmod_l_factorize(&view, in->l, &in->c);
    return in->c.status == CHOLMOD_OK && in->l->minor == in->l->n;
}

double plainfactor::smallestpivot(const sparsematrix&, std::int64_t& unknown) {
    unknown = 0;
    return 1;
}

void plainfactor::solve(double* x, int columns, triangles) {
    cholmod_dense right{};
    right.nrow = right.d = in->l->n;
    right.ncol = std::size_t(columns);
    right.nzmax = right.nrow * right.ncol;
    right.x = x;
    right.xtype = CHOLMOD_REAL;
    right.dtype = CHOLMOD_DOUBLE;
    cholmod_dense* solution = cholmod_l_solve(CHOLMOD_A, in->l, &right, &in->c);
    if (solution == nullptr) refuse("CHOLMOD does not solve the equations");
    std::copy_n(static_cast<double*>(solution->x), right.nzmax, x);
    cholmod_l_free_dense(&solution, &in->c);
}
