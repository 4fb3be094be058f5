// SPDX-License-Identifier: GPL-3.0-or-later
// Points in space sorted into cubes, so that those that lie together are found without a look at
// them all.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <unordered_map>
#include <vector>

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

// Items by place, in cubes as wide as the distance within which they are looked for.
class spacegrid {
  public:
    explicit spacegrid(double reach) : side(reach > 0 ? reach * (1 + 1e-6) : 1) {}
    void add(const point3& at, int item) { cells[keyof(cellof(at, side))].push_back(item); }
    // Calls take(item) for all within reach of a place and some beyond, until one is taken; two
    // cubes of equal hash show an item twice. The item that was taken, 0 for none.
    template <typename Take>
    int around(const point3& at, Take take) const {
        const spacecell c = cellof(at, side);
        for (int i = -1; i <= 1; ++i)
            for (int j = -1; j <= 1; ++j)
                for (int k = -1; k <= 1; ++k) {
                    const auto found = cells.find(keyof({c[0] + i, c[1] + j, c[2] + k}));
                    if (found == cells.end()) continue;
                    for (const int item : found->second)
                        if (take(item)) return item;
                }
        return 0;
    }

  private:
    double side;
    std::unordered_map<std::uint64_t, std::vector<int>> cells;
};
