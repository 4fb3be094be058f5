// SPDX-License-Identifier: GPL-3.0-or-later
// The closest points of two lines. State: their rows and what was found.
#include "tools/closestpoints.h"

#include <cmath>

double gmat1[3][4], gmat2[3][4], lineparam[3];
Flag linehit;

point3 rowof(const double (&matrix)[3][4], int row) {
    return {matrix[row][1], matrix[row][2], matrix[row][3]};
}

point3 alongrow(int row, double t) {
    return rowof(gmat1, row) + t * rowof(gmat2, row);
}

void nohit() {
    lineparam[1] = lineparam[2] = 0;
    linehit = false;
}

// Least distance of p1 + t1 d1 and p2 + t2 d2: both derivatives of its square vanish.
void intersectlines() {
    const point3 d1 = rowof(gmat2, 1), d2 = rowof(gmat2, 2);
    const point3 apart = rowof(gmat1, 2) - rowof(gmat1, 1);
    const double a = dot(d1, d1), b = -dot(d2, d1), d = dot(d2, d2);
    const double r1 = dot(apart, d1), r2 = -dot(apart, d2);
    const double det = a * d - b * b;
    // Parallel but for the rounding of the products.
    if (!(std::fabs(det) > 1e-12 * a * d)) return nohit();
    lineparam[1] = (d * r1 - b * r2) / det;
    lineparam[2] = (-b * r1 + a * r2) / det;
    linehit = true;
}
