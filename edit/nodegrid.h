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

// How many have a hash, as far as two: most of a model stand alone, and are told so without a look
// at the others. Two bits a counter, which fit the processor's cache where a table of places does
// not.
class crowdcounter {
  public:
    explicit crowdcounter(std::size_t count) {
        const std::size_t counters = 8;  // for each of them: one in ten meets a stranger
        std::size_t size = perword;
        while (size < count * counters) size *= 2;
        words.assign(size / perword, 0);
    }
    void add(std::uint64_t hash) {
        std::uint64_t& word = wordof(hash);
        if (of(hash) < 2) word += std::uint64_t(1) << shiftof(hash);
    }
    unsigned of(std::uint64_t hash) const {
        return unsigned(words[hash / perword & (words.size() - 1)] >> shiftof(hash)) & 3;
    }

  private:
    static constexpr std::size_t perword = 32;
    static unsigned shiftof(std::uint64_t hash) { return unsigned(hash % perword) * 2; }
    std::uint64_t& wordof(std::uint64_t hash) { return words[hash / perword & (words.size() - 1)]; }
    std::vector<std::uint64_t> words;
};

// Nodes by the cell of a grid whose side is some tolerances: whatever is near a place lies in its
// cell or in a neighbour that the tolerance reaches, mostly none. Coordinates of 0 lie in the
// middle of their cells. Only nodes with company in these cells are in the table, in chains of
// equal hash.
class nodegrid {
  public:
    // placeof(n) is the place of node n = 1..count.
    template <typename Placeof>
    nodegrid(int count, Placeof placeof) : met(std::size_t(count) + 1, false) {
        const double tolerances = 16;
        side = mergetol > 0 ? mergetol * tolerances : 1;
        std::vector<unsigned> home(std::size_t(count) + 1);
        crowdcounter crowds{std::size_t(count)};
        for (int n = 1; n <= count; ++n) {
            const float* const at = placeof(n);
            home[std::size_t(n)] = unsigned(hashof(cellof(at[0]), cellof(at[1]), cellof(at[2])));
            crowds.add(home[std::size_t(n)]);
        }
        std::size_t company = 0;
        for (int n = 1; n <= count; ++n) {
            unsigned others = 0;
            reached(placeof(n), [&](unsigned hash) { others += crowds.of(hash); });
            met[std::size_t(n)] = others > 1;  // itself is one
            company += others > 1;
        }
        std::size_t size = 16;
        while (size < company * 2) size *= 2;
        heads.assign(size, 0);
        if (company > 0) next.assign(std::size_t(count) + 1, 0);
        // Chains are built from the last node on, so that each runs up in number.
        for (int n = count; n >= 1; --n) {
            if (!met[std::size_t(n)]) continue;
            int& head = heads[home[std::size_t(n)] & (size - 1)];
            next[std::size_t(n)] = head;
            head = n;
        }
    }
    // No other node is near: nothing to look for.
    bool isalone(int n) const { return !met[std::size_t(n)]; }
    // Calls take(n) for every node of the cells around a place, that of a node, but for those that
    // are alone; a node may come more than once.
    template <typename Take>
    void around(const float* at, Take take) const {
        reached(at, [&](unsigned hash) {
            for (int n = heads[hash & (heads.size() - 1)]; n != 0; n = next[std::size_t(n)])
                take(n);
        });
    }

  private:
    // The hashes of the cells that the tolerance reaches from a place.
    template <typename Visit>
    void reached(const float* at, Visit visit) const {
        const std::int64_t x = cellof(at[0]), y = cellof(at[1]), z = cellof(at[2]);
        const double limit = mergetol * (1 + 1e-6);  // for the rounding of v / side
        const auto reach = [&](float v, std::int64_t cell) {
            const double in = double(v) / side + 0.5 - double(cell);
            return std::pair<int, int>(in * side < limit ? -1 : 0, (1 - in) * side < limit ? 1 : 0);
        };
        const auto rx = reach(at[0], x), ry = reach(at[1], y), rz = reach(at[2], z);
        for (int i = rx.first; i <= rx.second; ++i)
            for (int j = ry.first; j <= ry.second; ++j)
                for (int k = rz.first; k <= rz.second; ++k)
                    visit(unsigned(hashof(x + i, y + j, z + k)));
    }
    std::int64_t cellof(float v) const {
        const double farthest = 1e18;  // cells; beyond it places share theirs
        return std::int64_t(std::clamp(std::floor(double(v) / side + 0.5), -farthest, farthest));
    }
    static std::uint64_t hashof(std::int64_t x, std::int64_t y, std::int64_t z) {
        std::uint64_t h = std::uint64_t(x) * 0x9E3779B97F4A7C15u;
        h = (h ^ (h >> 29) ^ std::uint64_t(y)) * 0xBF58476D1CE4E5B9u;
        h = (h ^ (h >> 32) ^ std::uint64_t(z)) * 0x94D049BB133111EBu;
        return h ^ (h >> 31);
    }
    double side;
    std::vector<int> heads, next;
    std::vector<bool> met;  // company in the cells around
};
