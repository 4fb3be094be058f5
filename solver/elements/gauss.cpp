// SPDX-License-Identifier: GPL-3.0-or-later
// Gauss-Legendre points, found once as the roots of the Legendre polynomials.
#include "solver/elements/gauss.h"

#include <cmath>

#include "solver/base/refuse.h"

using gausstable = std::array<std::array<gausspoint, mostgauss>, mostgauss + 1>;

// Newton's method on P_n from the Chebyshev-like starting values: Press et al., Numerical Recipes,
// 3rd ed., section 4.6.
static gausspoint gaussroot(int n, int i) {
    double z = std::cos(M_PI * (i + 0.75) / (n + 0.5)), slope = 1;
    for (int step = 0; step < 100; ++step) {
        double p = 1, before = 0;
        for (int j = 0; j < n; ++j) {
            const double last = before;
            before = p;
            p = ((2 * j + 1) * z * before - j * last) / (j + 1);
        }
        slope = n * (z * p - before) / (z * z - 1);
        const double move = p / slope;
        z -= move;
        if (std::fabs(move) < 1e-15) break;
    }
    return {-z, 2 / ((1 - z * z) * slope * slope)};
}

static gausstable maketable() {
    gausstable table{};
    for (int n = 1; n <= mostgauss; ++n)
        for (int i = 0; i < n; ++i) table[std::size_t(n)][std::size_t(i)] = gaussroot(n, i);
    for (int n = 1; n <= mostgauss; n += 2) table[std::size_t(n)][std::size_t(n / 2)].at = 0;
    return table;
}

const gausspoint* gausspoints(int n) {
    static const gausstable table = maketable();
    if (n < 1 || n > mostgauss) throw subscripterror(n, mostgauss);
    return table[std::size_t(n)].data();
}
