// SPDX-License-Identifier: GPL-3.0-or-later
// Gauss-Legendre points and weights.
#pragma once

#include <array>

struct gausspoint {
    double at, weight;
};

const int mostgauss = 10;

// n points (1..mostgauss) on -1..1, weights sum to 2; exact for polynomials of degree 2n-1.
const gausspoint* gausspoints(int n);
