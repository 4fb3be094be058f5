// SPDX-License-Identifier: GPL-3.0-or-later
// Distributed loads of elements whose axes turn.
#include "tools/elementaxes.h"

#include <cmath>

#include "view/localaxes.h"

elementaxes axesofelement(int e) {
    localaxes(e);
    const auto vector = [](const double* v) { return point3{v[0], v[1], v[2]}; };
    return {vector(localx), vector(localy), vector(localz)};
}

std::vector<elementloadrow> turnedload(const elementloadrow& row, const elementaxes& before,
                                       const elementaxes& now) {
    const double nothing = 1e-6;  // of the load: what Singles leave of a right angle
    const point3 load = row.value * before[std::size_t(row.direction) - 1];
    std::vector<elementloadrow> rows;
    for (int k = 1; k <= 3; ++k) {
        double part = dot(load, now[std::size_t(k) - 1]);
        if (std::fabs(part) <= nothing * std::fabs(row.value)) continue;
        const bool whole =
            std::fabs(std::fabs(part) - std::fabs(row.value)) <= nothing * std::fabs(row.value);
        if (whole) part = std::copysign(row.value, part);
        rows.push_back({row.element, k, part});
    }
    return rows.empty() ? std::vector{row} : rows;
}
