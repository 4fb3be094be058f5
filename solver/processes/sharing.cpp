// SPDX-License-Identifier: GPL-3.0-or-later
#include "solver/processes/sharing.h"

#include <algorithm>

sharing::sharing(std::vector<int> numbers, std::vector<char> counted)
    : number(std::move(numbers)), count(std::move(counted)) {
    std::vector<double> holders(number.size(), 1);
    allranks().findroute(number, number)->pass(holders.data(), holders.data(), 1, route::join::sum);
    std::vector<int> items;
    for (std::size_t i = 0; i < number.size(); ++i)
        if (holders[i] > 1) {
            atborder.push_back(i);
            items.push_back(number[i]);
        }
    border = allranks().findroute(items, items);
}

int sharing::placeof(int item) const {
    if (alone()) return item;
    const auto at = std::ranges::lower_bound(number, item);
    return at != number.end() && *at == item ? int(at - number.begin()) : -1;
}

void sharing::pass(double* values, int width, route::join how) const {
    if (alone()) return;
    const auto w = std::size_t(width);
    std::vector<double> part(atborder.size() * w);
    for (std::size_t i = 0; i < atborder.size(); ++i)
        std::copy_n(values + atborder[i] * w, w, part.data() + i * w);
    border->pass(part.data(), part.data(), width, how);
    for (std::size_t i = 0; i < atborder.size(); ++i)
        std::copy_n(part.data() + i * w, w, values + atborder[i] * w);
}

double dotproduct(const sharing& s, const double* x, const double* y, std::size_t n) {
    double sum = 0;
    for (std::size_t i = 0; i < n; ++i)
        if (s.counts(i)) sum += x[i] * y[i];
    allranks().sum(&sum, 1);
    return sum;
}
