// SPDX-License-Identifier: GPL-3.0-or-later
// Matrices and graphs as CHOLMOD reads them: a triangle by columns, rows ascending.
#pragma once

#include <cholmod.h>

#include <type_traits>
#include <vector>

// The lower triangle. The numbers of start and row stay with their owner; value: null for the
// pattern alone.
template <typename Integer>
cholmod_sparse lowerview(const std::vector<Integer>& start, const std::vector<Integer>& row,
                         const double* value = nullptr) {
    cholmod_sparse view{};
    view.nrow = view.ncol = start.size() - 1;
    view.nzmax = row.size();
    view.p = const_cast<Integer*>(start.data());
    view.i = const_cast<Integer*>(row.data());
    view.x = const_cast<double*>(value);
    view.stype = -1;
    view.itype = std::is_same_v<Integer, int> ? CHOLMOD_INT : CHOLMOD_LONG;
    view.xtype = value != nullptr ? CHOLMOD_REAL : CHOLMOD_PATTERN;
    view.dtype = CHOLMOD_DOUBLE;
    view.sorted = view.packed = 1;
    return view;
}

// The same of an upper triangle, the pattern alone.
inline cholmod_sparse upperview(const std::vector<int>& start, const std::vector<int>& row) {
    cholmod_sparse view = lowerview(start, row);
    view.stype = 1;
    return view;
}

// The upper triangle of a graph by columns, each with its diagonal as the last row.
struct uppergraph {
    std::vector<int> start, row;
    int size() const { return int(start.size()) - 1; }
};

// What work(matrix, numbers, c) makes of it, a number a vertex; empty where it fails.
template <typename Work>
std::vector<int> bycholmod(const uppergraph& graph, Work work) {
    cholmod_common c;
    cholmod_start(&c);
    c.print = 0;
    cholmod_sparse view = upperview(graph.start, graph.row);
    std::vector<int> numbers(std::size_t(graph.size()));
    if (!work(view, numbers.data(), c) || c.status < CHOLMOD_OK) numbers.clear();
    cholmod_finish(&c);
    return numbers;
}
