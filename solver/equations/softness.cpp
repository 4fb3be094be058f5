// SPDX-License-Identifier: GPL-3.0-or-later
// Inverse iteration: a mechanism outweighs all other motions after one step already.
#include "solver/equations/softness.h"

#include <algorithm>
#include <cmath>

double softness(engine& l, const sparsematrix& a, std::int64_t& unknown) {
    const sharing& unknowns = *a.unknowns;
    const std::vector<double> diagonal = diagonalof(a);
    startnoise start;
    std::vector<double> v(diagonal.size()), next, weighed;
    for (std::size_t j = 0; j < v.size(); ++j) v[j] = start.at(unknowns.numberof(j));
    const auto energy = [&](const std::vector<double>& with) {
        weighed = with;
        for (std::size_t j = 0; j < v.size(); ++j) weighed[j] *= diagonal[j];
        return dotproduct(unknowns, v.data(), weighed.data(), v.size());
    };
    double soft = 1;
    for (int round = 0; round < 2; ++round) {
        double largest = 0;
        for (const double value : v) largest = std::max(largest, std::fabs(value));
        allranks().most(&largest, 1);
        for (double& value : v) value /= largest;
        next = v;
        for (std::size_t j = 0; j < v.size(); ++j) next[j] *= diagonal[j];
        l.solve(next.data(), 1);
        soft = energy(v) / energy(next);
        v.swap(next);
    }
    std::vector<double> most = {-1, 0};
    for (std::size_t j = 0; j < v.size(); ++j)
        if (std::fabs(v[j]) > most[0]) most = {std::fabs(v[j]), -double(unknowns.numberof(j))};
    unknown = std::int64_t(-allranks().greatest(most)[1]);
    return soft;
}
