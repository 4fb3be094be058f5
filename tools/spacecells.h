// SPDX-License-Identifier: GPL-3.0-or-later
// Points in space sorted into cubes, so that those that lie together are found without a look at
// them all.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "tools/graphiclist.h"

using spacecell = std::array<std::int64_t, 3>;

inline spacecell cellof(const point3& at, double side) {
    const double most = 1e18;  // what lies farther off shares the last cells
    spacecell c{};
    for (std::size_t k = 0; k < 3; ++k)
        c[k] = std::int64_t(std::clamp(std::floor(at[k] / side), -most, most));
    return c;
}

inline std::uint64_t keyof(const spacecell& c) {
    std::uint64_t h = 0;
    for (const std::int64_t v : c) {
        h = (h ^ std::uint64_t(v)) * 0x9E3779B97F4A7C15u;
        h ^= h >> 31;
    }
    return h;
}
