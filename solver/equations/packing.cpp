// SPDX-License-Identifier: GPL-3.0-or-later
#include "solver/equations/packing.h"

#include <algorithm>

packing::packing(sharingptr unknowns, std::int64_t held)
    : shared(std::move(unknowns)), n(held), length(held) {
    if (shared->alone()) return;
    for (std::size_t i = 0; i < std::size_t(n); ++i)
        if (shared->counts(i)) places.push_back(i);
    double most = double(places.size());
    allranks().most(&most, 1);
    const Eigen::Index further = 300;  // more than the vectors of any search
    length = Eigen::Index(most) + further;
}

// A search in which this process has nothing but zeros must not take them for its end: the rows
// that stand for nothing are far from 0 and the same everywhere.
void packing::pack(const double* whole, double* packed) const {
    if (shared->alone()) {
        std::copy_n(whole, n, packed);
        return;
    }
    const double far = 1e6;
    std::fill_n(packed, length, far);
    for (std::size_t i = 0; i < places.size(); ++i) packed[i] = whole[places[i]];
}

void packing::unpack(const double* packed, double* whole) const {
    if (shared->alone()) {
        std::copy_n(packed, n, whole);
        return;
    }
    std::fill_n(whole, n, 0.0);
    for (std::size_t i = 0; i < places.size(); ++i) whole[places[i]] = packed[i];
    shared->sum(whole, 1);
}

void packing::multiply(const sparsematrix& a, const double* x, double* y) const {
    if (shared->alone()) return ::multiply(a, x, y, 1);
    std::vector<double> from(static_cast<std::size_t>(n)), to(from.size());
    unpack(x, from.data());
    ::multiply(a, from.data(), to.data(), 1);
    pack(to.data(), y);
}
