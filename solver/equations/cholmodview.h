// SPDX-License-Identifier: GPL-3.0-or-later
// A symmetric matrix as CHOLMOD reads it: a triangle by columns, rows ascending.
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
