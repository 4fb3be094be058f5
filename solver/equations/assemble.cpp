// SPDX-License-Identifier: GPL-3.0-or-later
// Assembly: element matrices are worked out by all threads a batch at a time, then every thread
// adds those columns of the batch that are its own, in the order of the elements.
#include "solver/equations/assemble.h"

#include <algorithm>

#include "solver/base/parallel.h"
#include "solver/base/refuse.h"
#include "solver/processes/ranks.h"

static const int batchsize = 1024;  // elements, 5 MiB of large matrices: they stay in the cache

sparsematrix makepattern(const dofmap& d, const nodegraph& graph, const std::vector<int>& order) {
    std::vector<int> place(order.size());  // of the graph: place in the order
    for (std::size_t p = 0; p < order.size(); ++p) place[std::size_t(order[p])] = int(p);
    sparsematrix a;
    a.unknowns = d.freedoms;
    const auto findlater = [&](std::size_t p, std::vector<int>& list) {
        list.clear();
        const auto node = std::size_t(order[p]);
        for (auto i = graph.start[node]; i < graph.start[node + 1]; ++i) {
            const int q = place[std::size_t(graph.neighbour[std::size_t(i)])];
            if (q > int(p)) list.push_back(q);
        }
    };
    std::vector<int> below(order.size());  // by place: rows beneath those of the node itself
    parallelpieces(int(order.size()), 1024, [&](int first, int last, int) {
        std::vector<int> list;
        for (auto p = std::size_t(first); p < std::size_t(last); ++p) {
            findlater(p, list);
            for (const int q : list) below[p] += d.unknowncount[std::size_t(q)];
        }
    });
    a.start.reserve(std::size_t(d.unknowns) + 1);
    a.start.push_back(0);
    for (std::size_t p = 0; p < order.size(); ++p)
        for (int c = 0; c < d.unknowncount[p]; ++c)
            a.start.push_back(a.start.back() + d.unknowncount[p] - c + below[p]);
    a.row.resize(std::size_t(a.start.back()));
    a.value.resize(std::size_t(a.start.back()));
    parallelpieces(int(order.size()), 1024, [&](int first, int last, int) {
        std::vector<int> list;
        for (auto p = std::size_t(first); p < std::size_t(last); ++p) {
            findlater(p, list);
            std::sort(list.begin(), list.end());
            const auto begin = a.start[std::size_t(d.firstunknown[p])];
            int* next = a.row.data() + begin;
            for (int c = 0; c < d.unknowncount[p]; ++c) {
                for (int r = c; r < d.unknowncount[p]; ++r) *next++ = d.firstunknown[p] + r;
                for (const int q : list)
                    for (int r = 0; r < d.unknowncount[std::size_t(q)]; ++r)
                        *next++ = d.firstunknown[std::size_t(q)] + r;
            }
            std::fill(a.value.data() + begin, a.value.data() + (next - a.row.data()), 0.0);
        }
    });
    return a;
}

namespace {
// An element's matrix on the unknowns, which ascend.
struct piece {
    int count = 0;
    int unknown[mostdofs];
    int runend[mostdofs];               // where those that follow each other from here on end
    double value[mostdofs * mostdofs];  // lower triangle by columns, count a column
};
}  // namespace

static int equationof(const dofmap& d, const elementdofs& dofs, int a) {
    return dofs.index[a] < 0 ? dofmap::constantdof : d.equation[std::size_t(dofs.index[a])];
}

// Where each unknown is one of the element's degrees of freedom.
static bool topieceasis(const dofmap& d, const elementdofs& dofs, const elmatrix& k, piece& p) {
    std::pair<int, int> list[mostdofs];  // unknown, degree of freedom
    p.count = 0;
    for (int a = 0; a < dofs.count; ++a) {
        const int q = equationof(d, dofs, a);
        if (q < dofmap::constantdof) return false;
        if (q >= 0) list[p.count++] = {q, a};
    }
    std::sort(list, list + p.count);
    for (int c = 0; c < p.count; ++c) {
        p.unknown[c] = list[c].first;
        if (c > 0 && p.unknown[c] == p.unknown[c - 1]) return false;
        const double* const from = k.col(list[c].second).data();
        double* const to = p.value + c * p.count;
        for (int r = c; r < p.count; ++r) to[r] = from[list[r].second];
    }
    return true;
}

// Where they depend on unknowns in any other way.
static void topiececombined(const dofmap& d, const elementdofs& dofs, const elmatrix& k, piece& p) {
    int unknown[mostdofs * 7];  // one may first be listed more than once
    int* end = unknown;
    for (int a = 0; a < dofs.count; ++a) {
        const int q = equationof(d, dofs, a);
        if (q >= 0) *end++ = q;
        if (q >= dofmap::constantdof) continue;
        const combination& c = d.combinations[std::size_t(-2 - q)];
        for (int j = 0; j < c.count; ++j)
            if (std::find(unknown, end, c.first + j) == end) *end++ = c.first + j;
    }
    std::sort(unknown, end);
    p.count = int(std::unique(unknown, end) - unknown);
    std::copy_n(unknown, p.count, p.unknown);
    const auto slot = [&](int one) {
        return std::lower_bound(p.unknown, p.unknown + p.count, one) - p.unknown;
    };
    elmatrix t = elmatrix::Zero(dofs.count, p.count);
    for (int a = 0; a < dofs.count; ++a) {
        const int q = equationof(d, dofs, a);
        if (q >= 0) t(a, slot(q)) = 1;
        if (q >= dofmap::constantdof) continue;
        const combination& c = d.combinations[std::size_t(-2 - q)];
        for (int j = 0; j < c.count; ++j) t(a, slot(c.first + j)) = c.factor[j];
    }
    Eigen::Map<Eigen::MatrixXd>(p.value, p.count, p.count).noalias() = t.transpose() * k * t;
}

static void topiece(const dofmap& d, const elementdofs& dofs, const elmatrix& k, piece& p) {
    if (!topieceasis(d, dofs, k, p)) topiececombined(d, dofs, k, p);
    for (int i = p.count - 1; i >= 0; --i) {
        const bool goeson = i + 1 < p.count && p.unknown[i + 1] == p.unknown[i] + 1;
        p.runend[i] = goeson ? p.runend[i + 1] : i + 1;
    }
}

// Adds the columns of this thread: unknown / 64 spreads them, so that neighbours share cache lines.
static void addpiece(const piece& p, int thread, int count, sparsematrix& a) {
    // By row: how far from the end of its column it was found last. Columns of one node have the
    // same rows at their ends.
    std::ptrdiff_t fromend[mostdofs];
    std::fill_n(fromend, p.count, 1);
    for (int c = 0; c < p.count; ++c) {
        if ((p.unknown[c] / 64) % count != thread) continue;
        const auto column = std::size_t(p.unknown[c]);
        const int* const begin = a.row.data() + a.start[column];
        const int* const end = a.row.data() + a.start[column + 1];
        const double* const from = p.value + c * p.count;
        for (int r = c; r < p.count; r = p.runend[r]) {
            const int* at = r == c ? begin : end - std::min(fromend[r], end - begin);
            if (*at != p.unknown[r]) at = std::lower_bound(begin, end, p.unknown[r]);
            fromend[r] = end - at;
            double* const to = a.value.data() + (at - a.row.data());
            for (int i = r; i < p.runend[r]; ++i) to[i - r] += from[i];
        }
    }
}

void assemble(const model& m, const settings& s, const dofmap& d, part what, sparsematrix& a,
              runlog& log) {
    std::vector<piece> pieces(std::size_t(std::min(batchsize, m.nelems())));
    const int share = 64;  // elements that a thread takes at a time
    for (int begin = 1; begin <= m.nelems(); begin += batchsize) {
        const int count = std::min(batchsize, m.nelems() + 1 - begin);
        parallelpieces(count, share, [&](int first, int last, int) {
            elmatrix k;
            for (int i = first; i < last; ++i) {
                const int e = begin + i;
                piece& p = pieces[std::size_t(i)];
                p.count = 0;
                const elementkind& kind = kindof(m.elements[std::size_t(e)].type);
                const auto work = what == part::stiffness ? kind.stiffness : kind.mass;
                const bool left =
                    !isown(m, e) || (what == part::pointmass && kind.fam != family::point);
                if (!work || left) continue;
                work(elementat(m, s, e), k);
                topiece(d, dofsof(d, m.elements[std::size_t(e)]), k, p);
            }
        });
        const int helpers = threads();
        eachthread([&](int thread) {
            for (int i = 0; i < count; ++i) addpiece(pieces[std::size_t(i)], thread, helpers, a);
        });
        log.progress(what == part::stiffness ? "assemble" : "mass",
                     int(100.0 * (begin + count - 1) / m.nelems()));
    }
}

static void addentry(sparsematrix& a, int row, int column, double value) {
    if (row < column) std::swap(row, column);
    const auto begin = a.row.begin() + a.start[std::size_t(column)];
    const auto end = a.row.begin() + a.start[std::size_t(column) + 1];
    const auto at = std::lower_bound(begin, end, row);
    a.value[std::size_t(at - a.row.begin())] += value;
}

void addatdof(const dofmap& d, std::size_t dof, double value, sparsematrix& a) {
    const int q = d.equation[dof];
    if (q >= 0) addentry(a, q, q, value);
    if (q >= dofmap::constantdof) return;
    const combination& c = d.combinations[std::size_t(-2 - q)];
    for (int i = 0; i < c.count; ++i)
        for (int j = 0; j <= i; ++j)
            addentry(a, c.first + i, c.first + j, value * c.factor[i] * c.factor[j]);
}

std::vector<double> diagonalof(const sparsematrix& a) {
    std::vector<double> diagonal(std::size_t(a.size()));
    parallelpieces(int(diagonal.size()), 16384, [&](int first, int last, int) {
        for (auto j = std::size_t(first); j < std::size_t(last); ++j)
            diagonal[j] = a.value[std::size_t(a.start[j])];
    });
    a.unknowns->sum(diagonal.data(), 1);
    return diagonal;
}

void multiply(const sparsematrix& a, const double* x, double* y, int columns) {
    const std::int64_t n = a.size();
    parallelpieces(columns, 1, [&](int firstcolumn, int lastcolumn, int) {
        for (int c = firstcolumn; c < lastcolumn; ++c) {
            const double* const u = x + c * n;
            double* const f = y + c * n;
            std::fill_n(f, n, 0.0);
            for (std::int64_t j = 0; j < n; ++j) {
                const auto begin = std::size_t(a.start[std::size_t(j)]);
                const auto end = std::size_t(a.start[std::size_t(j) + 1]);
                double sum = a.value[begin] * u[j];
                for (std::size_t i = begin + 1; i < end; ++i) {
                    sum += a.value[i] * u[a.row[i]];
                    f[a.row[i]] += a.value[i] * u[j];
                }
                f[j] += sum;
            }
        }
    });
    for (int c = 0; c < columns; ++c) a.unknowns->sum(y + c * n, 1);
}

std::vector<double> constantforces(const model& m, const settings& s, const dofmap& d) {
    const auto moves = [](const combination& c) { return c.constant != 0; };
    double any = std::ranges::any_of(d.combinations, moves) ||
                 std::ranges::any_of(d.constant, [](double v) { return v != 0; });
    allranks().most(&any, 1);
    if (any == 0) return {};
    std::vector<double> u(d.constant), zero(std::size_t(d.unknowns), 0.0);
    expand(d, zero.data(), u.data());
    std::vector<double> force(u.size(), 0);
    for (int e = 1; e <= m.nelems(); ++e) {
        if (!isown(m, e)) continue;
        const elementdef& def = m.elements[std::size_t(e)];
        const elementkind& kind = kindof(def.type);
        const elementdofs dofs = dofsof(d, def);
        elvector value = elvector::Zero(dofs.count);
        for (int a = 0; a < dofs.count; ++a)
            if (dofs.index[a] >= 0) value[a] = u[std::size_t(dofs.index[a])];
        if (!kind.stiffness || value.isZero(0)) continue;
        elmatrix k;
        kind.stiffness(elementat(m, s, e), k);
        const elvector f = k * value;
        for (int a = 0; a < dofs.count; ++a)
            if (dofs.index[a] >= 0) force[std::size_t(dofs.index[a])] -= f[a];
    }
    sumshares(d, force.data());
    return force;
}
