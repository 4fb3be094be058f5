// SPDX-License-Identifier: GPL-3.0-or-later
// Inverse iteration: a mechanism outweighs all other motions after one step already.
#include "solver/softness.h"

#include <algorithm>
#include <cmath>
#include <random>

double softness(engine& l, const sparsematrix& a, std::int64_t& unknown) {
    const std::vector<double> diagonal = diagonalof(a);
    std::mt19937 random(1);
    std::uniform_real_distribution<double> spread(0.5, 1.5);
    std::vector<double> v(diagonal.size()), next;
    for (double& value : v) value = spread(random);
    double soft = 1;
    for (int round = 0; round < 2; ++round) {
        double largest = 0, before = 0, after = 0;
        for (const double value : v) largest = std::max(largest, std::fabs(value));
        for (double& value : v) value /= largest;
        next = v;
        for (std::size_t j = 0; j < v.size(); ++j) next[j] *= diagonal[j];
        l.solve(next.data(), 1);
        for (std::size_t j = 0; j < v.size(); ++j) {
            before += v[j] * v[j] * diagonal[j];
            after += v[j] * next[j] * diagonal[j];
        }
        soft = before / after;
        v.swap(next);
    }
    const auto most = std::max_element(
        v.begin(), v.end(), [](double x, double y) { return std::fabs(x) < std::fabs(y); });
    unknown = most - v.begin();
    return soft;
}
