// SPDX-License-Identifier: GPL-3.0-or-later
// Combined stress of the summed components.
#include "post/combinedstress.h"

#include <algorithm>
#include <cmath>

#include "core/model.h"

// The square of von Mises' stress for one choice of signs.
static double mises(const float* s, double a, double b, double d) {
    const double sx = b * s[9] + d * s[8] + s[1];
    const double sy = b * s[9] + d * s[7] + s[2];
    const double sz = s[3];
    const double txy = d * (double(s[10]) - s[11]) + s[4];
    const double txz = b * (double(s[12]) - s[10]) + s[5];
    const double tyz = a * (double(s[12]) - s[11]) + s[6];
    return sx * sx + sy * sy + sz * sz - sx * sy - sx * sz - sy * sz +
           3 * (txy * txy + txz * txz + tyz * tyz);
}

double combinedstressof(const float* s) {
    double most = 0;
    for (const double a : {-1, 1})
        for (const double b : {-1, 1})
            for (const double d : {-1, 1}) most = std::max(most, mises(s, a, b, d));
    return std::sqrt(most);
}

void combinedstress() {
    for (int e = 1; e <= nelems(); ++e) {
        if (elemstress(0, e, 0) == 0) continue;  // no record of this element
        for (int c = 1; c <= 4; ++c) {
            float s[13] = {};
            for (int k = 1; k <= 12; ++k) s[k] = float(elemstress(k, e, c));
            elemstress(13, e, c) = combinedstressof(s);
        }
    }
}
