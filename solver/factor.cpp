// SPDX-License-Identifier: GPL-3.0-or-later
// CHOLMOD's supernodal factor. The unknowns are numbered in the order of elimination beforehand, so
// that CHOLMOD takes the matrix as it lies, without a permuted copy.
#include "solver/factor.h"

#include <cholmod.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>

#include "solver/parallel.h"
#include "solver/refuse.h"

extern "C" void openblas_set_num_threads(int);
extern "C" [[gnu::weak]] void omp_set_max_active_levels(int);  // absent without OpenMP

// CHOLMOD starts four threads for the small change of a factor, however many cores there are, and
// they spin in the way of those of OpenBLAS, which do the work: a third of all time.
static void calmlibraries() {
    openblas_set_num_threads(threads());
    if (omp_set_max_active_levels) omp_set_max_active_levels(0);
}

// --- order --------------------------------------------------------------------------------------

namespace {
struct orderresult {
    std::vector<int> order;
    double entries = 0, operations = 0;
};
struct cholmodrun {
    cholmod_common c;
    cholmodrun() {
        cholmod_start(&c);
        c.print = 0;
    }
    ~cholmodrun() { cholmod_finish(&c); }
    cholmodrun(const cholmodrun&) = delete;
    cholmodrun& operator=(const cholmodrun&) = delete;
};
}  // namespace

// Empty order where this CHOLMOD cannot do it (built without METIS).
static orderresult tryorder(cholmod_sparse& graph, int method) {
    cholmodrun run;
    cholmod_common& c = run.c;
    c.nmethods = 1;
    c.method[0].ordering = method;
    c.postorder = 1;
    c.supernodal = CHOLMOD_SIMPLICIAL;
    cholmod_factor* const symbolic = cholmod_analyze(&graph, &c);
    orderresult result;
    if (symbolic && c.status >= CHOLMOD_OK) {
        const int* const perm = static_cast<int*>(symbolic->Perm);
        result.order.assign(perm, perm + symbolic->n);
        result.entries = c.lnz;
        result.operations = c.fl;
    }
    cholmod_factor* doomed = symbolic;
    cholmod_free_factor(&doomed, &c);
    return result;
}

std::vector<int> ordernodes(const nodegraph& graph, std::string& told) {
    const int n = graph.size();
    if (n == 0) return {};
    std::vector<int> start(std::size_t(n) + 1, 0), row;
    for (int i = 0; i < n; ++i) {  // upper triangle by columns
        for (auto k = graph.start[std::size_t(i)]; k < graph.start[std::size_t(i) + 1]; ++k)
            if (graph.neighbour[std::size_t(k)] < i) row.push_back(graph.neighbour[std::size_t(k)]);
        row.push_back(i);
        start[std::size_t(i) + 1] = int(row.size());
    }
    cholmod_sparse a{};
    a.nrow = a.ncol = std::size_t(n);
    a.nzmax = row.size();
    a.p = start.data();
    a.i = row.data();
    a.stype = 1;
    a.itype = CHOLMOD_INT;
    a.xtype = CHOLMOD_PATTERN;
    a.dtype = CHOLMOD_DOUBLE;
    a.sorted = a.packed = 1;
    const orderresult degree = tryorder(a, CHOLMOD_AMD);
    const int dissectfrom = 200;  // nodes; below it the choice does not matter
    const orderresult dissected = n < dissectfrom ? orderresult{} : tryorder(a, CHOLMOD_METIS);
    const bool usedegree = dissected.order.empty() || degree.operations <= dissected.operations;
    const auto words = [](const char* name, const orderresult& r) {
        char text[100];
        std::snprintf(text, sizeof text, "%s %.3g entries %.3g operations", name, r.entries,
                      r.operations);
        return std::string(text);
    };
    told = "Order of nodes: " + words("minimum degree", degree);
    if (!dissected.order.empty()) told += ", " + words("nested dissection", dissected);
    told += usedegree ? "; minimum degree taken" : "; nested dissection taken";
    if (usedegree && degree.order.empty()) refuse("Not enough memory to order the equations");
    return usedegree ? degree.order : dissected.order;
}

// --- factor -------------------------------------------------------------------------------------

struct factor::inside {
    cholmod_common c;
    cholmod_factor* l = nullptr;
    cholmod_dense *y = nullptr, *e = nullptr, *x = nullptr;
};

static cholmod_sparse viewof(const sparsematrix& a) {
    cholmod_sparse view{};
    view.nrow = view.ncol = std::size_t(a.size());
    view.nzmax = a.row.size();
    view.p = const_cast<std::int64_t*>(a.start.data());
    view.i = const_cast<std::int64_t*>(a.row.data());
    view.x = const_cast<double*>(a.value.data());
    view.stype = -1;
    view.itype = CHOLMOD_LONG;
    view.xtype = CHOLMOD_REAL;
    view.dtype = CHOLMOD_DOUBLE;
    view.sorted = view.packed = 1;
    return view;
}

factor::factor() : in(new inside) {
    calmlibraries();
    cholmod_common& c = in->c;
    cholmod_l_start(&c);
    c.print = 0;
    c.nmethods = 1;
    c.method[0].ordering = CHOLMOD_NATURAL;
    c.postorder = 0;  // the order is a postorder already
    c.supernodal = CHOLMOD_SUPERNODAL;
    c.useGPU = 0;
}

factor::~factor() {
    cholmod_l_free_factor(&in->l, &in->c);
    cholmod_l_free_dense(&in->y, &in->c);
    cholmod_l_free_dense(&in->e, &in->c);
    cholmod_l_free_dense(&in->x, &in->c);
    cholmod_l_finish(&in->c);
}

static void checkstatus(const cholmod_common& c, const char* step) {
    if (c.status == CHOLMOD_OUT_OF_MEMORY || c.status == CHOLMOD_TOO_LARGE)
        refuse(std::string("Not enough memory to ") + step +
               "; close other programs or make the model smaller");
    if (c.status < CHOLMOD_OK)
        refuse(std::string("The equations could not be brought to an end (") + step + ", status " +
               std::to_string(c.status) + ")");
}

void factor::analyse(const sparsematrix& a) {
    cholmod_sparse view = viewof(a);
    cholmod_l_free_factor(&in->l, &in->c);
    in->l = cholmod_l_analyze(&view, &in->c);
    checkstatus(in->c, "analyse the equations");
}

double factor::entries() const {
    return in->c.lnz;
}

double factor::operations() const {
    return in->c.fl;
}

double factor::bytes() const {
    return double(in->l->xsize) * sizeof(double) + double(in->l->maxcsize) * sizeof(double);
}

bool factor::factorise(const sparsematrix& a) {
    cholmod_sparse view = viewof(a);
    cholmod_l_factorize(&view, in->l, &in->c);
    if (in->c.status == CHOLMOD_NOT_POSDEF) return false;
    checkstatus(in->c, "factorise the equations");
    return true;
}

double factor::smallestpivot(const sparsematrix& a, std::int64_t& unknown) const {
    const auto* const super = static_cast<std::int64_t*>(in->l->super);
    const auto* const pi = static_cast<std::int64_t*>(in->l->pi);
    const auto* const px = static_cast<std::int64_t*>(in->l->px);
    const auto* const x = static_cast<double*>(in->l->x);
    double smallest = 1;
    unknown = 0;
    for (std::size_t s = 0; s < in->l->nsuper; ++s) {
        const std::int64_t rows = pi[s + 1] - pi[s];
        for (std::int64_t j = super[s]; j < super[s + 1]; ++j) {
            const double pivot = x[px[s] + (j - super[s]) * (rows + 1)];
            const double before = a.value[std::size_t(a.start[std::size_t(j)])];
            const double ratio = pivot * pivot / before;
            if (ratio < smallest || !(ratio >= 0)) {
                smallest = ratio;
                unknown = j;
            }
        }
    }
    return smallest;
}

void factor::solve(double* values, int columns, triangles which) {
    const int system = which == triangles::both    ? CHOLMOD_A
                       : which == triangles::lower ? CHOLMOD_L
                                                   : CHOLMOD_Lt;
    cholmod_dense b{};
    b.nrow = in->l->n;
    b.ncol = std::size_t(columns);
    b.d = b.nrow;
    b.nzmax = b.nrow * b.ncol;
    b.x = values;
    b.xtype = CHOLMOD_REAL;
    b.dtype = CHOLMOD_DOUBLE;
    cholmod_l_solve2(system, in->l, &b, nullptr, &in->x, nullptr, &in->y, &in->e, &in->c);
    checkstatus(in->c, "solve the equations");
    const auto* const result = static_cast<double*>(in->x->x);
    std::copy_n(result, b.nzmax, values);
}

std::int64_t countnegative(const sparsematrix& a, double mostoperations) {
    cholmod_common c;
    cholmod_l_start(&c);
    c.print = 0;
    c.nmethods = 1;
    c.method[0].ordering = CHOLMOD_NATURAL;
    c.postorder = 0;
    c.supernodal = CHOLMOD_SIMPLICIAL;
    cholmod_sparse view = viewof(a);
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

double freememory() {
    double available = INFINITY;
    std::ifstream file("/proc/meminfo");
    std::string key;
    double kibibytes = 0;
    std::string unit;
    while (file >> key >> kibibytes) {
        if (key == "MemAvailable:") available = kibibytes * 1024;
        std::getline(file, unit);
    }
    rlimit limit{};
    if (getrlimit(RLIMIT_AS, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY) {
        double pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        // OpenBLAS maps a buffer for each thread when it begins, and waits for ever without it.
        const double buffers = 128.0 * 1024 * 1024 * threads();
        const double taken = pages * double(sysconf(_SC_PAGESIZE)) + buffers;
        available = std::min(available, std::max(0.0, double(limit.rlim_cur) - taken));
    }
    return available;
}
