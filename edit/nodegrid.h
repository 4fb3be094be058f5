// SPDX-License-Identifier: GPL-3.0-or-later
// Places sorted by the cells of a grid, so that those within the merge tolerance of one another are
// found without a look at them all.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

#include "core/session.h"

// Nodes by the cell of a grid whose side is some tolerances: whatever is near a place lies in its
// cell or in a neighbour that the tolerance reaches, mostly none. Coordinates of 0 lie in the
// middle of their cells. The table holds chains of nodes of equal hash.
class nodegrid {
  public:
    // placeof(n) is the place of node n = 1..count.
    template <typename Placeof>
    nodegrid(int count, Placeof placeof) : next(std::size_t(count) + 1, 0) {
        std::size_t size = 16;
        while (size < std::size_t(count) * 2) size *= 2;
        heads.assign(size, 0);
        const double tolerances = 16;
        side = mergetol > 0 ? mergetol * tolerances : 1;
        home.resize(std::size_t(count) + 1);
        for (int n = 1; n <= count; ++n) {
            const float* const at = placeof(n);
            home[std::size_t(n)] = unsigned(bucket(cellof(at[0]), cellof(at[1]), cellof(at[2])));
        }
        // Chains are built from the last node on, so that each runs up in number.
        for (int n = count; n >= 1; --n) {
            if (n > ahead) __builtin_prefetch(&heads[home[std::size_t(n - ahead)]], 1);
            int& head = heads[home[std::size_t(n)]];
            next[std::size_t(n)] = head;
            head = n;
        }
    }
    // Nodes are asked for in the order of their numbers from here on: what the later ones need is
    // fetched while the earlier ones are at work.
    void approach(int n) const {
        if (std::size_t(n) + ahead < home.size())
            __builtin_prefetch(&heads[home[std::size_t(n) + ahead]]);
    }
    // Calls take(n) for every node of the cells around a place; a node may come more than once.
    template <typename Take>
    void around(const float* at, Take take) const {
        const std::int64_t x = cellof(at[0]), y = cellof(at[1]), z = cellof(at[2]);
        // Only neighbours that the tolerance reaches are looked at.
        const double limit = mergetol * (1 + 1e-6);  // for the rounding of v / side
        const auto reach = [&](float v, std::int64_t cell) {
            const double in = double(v) / side + 0.5 - double(cell);
            return std::pair<int, int>(in * side < limit ? -1 : 0, (1 - in) * side < limit ? 1 : 0);
        };
        const auto rx = reach(at[0], x), ry = reach(at[1], y), rz = reach(at[2], z);
        for (int i = rx.first; i <= rx.second; ++i)
            for (int j = ry.first; j <= ry.second; ++j)
                for (int k = rz.first; k <= rz.second; ++k)
                    for (int n = heads[bucket(x + i, y + j, z + k)]; n != 0;
                         n = next[std::size_t(n)])
                        take(n);
    }

  private:
    std::int64_t cellof(float v) const {
        const double farthest = 1e18;  // cells; beyond it places share theirs
        return std::int64_t(std::clamp(std::floor(double(v) / side + 0.5), -farthest, farthest));
    }
    std::size_t bucket(std::int64_t x, std::int64_t y, std::int64_t z) const {
        std::uint64_t h = std::uint64_t(x) * 0x9E3779B97F4A7C15u;
        h = (h ^ (h >> 29) ^ std::uint64_t(y)) * 0xBF58476D1CE4E5B9u;
        h = (h ^ (h >> 32) ^ std::uint64_t(z)) * 0x94D049BB133111EBu;
        return std::size_t(h ^ (h >> 31)) & (heads.size() - 1);
    }
    static constexpr int ahead = 16;
    double side;
    std::vector<int> heads, next;
    std::vector<unsigned> home;  // bucket of each node
};
