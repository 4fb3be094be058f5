// SPDX-License-Identifier: GPL-3.0-or-later
// Numbers sorted into cells: those of one cell stand together, in the order in which they came.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

class celllists {
  public:
    // eachcell(i, work) calls work(cell) for the cells, 0..cells-1, of numbers[i].
    template <typename Eachcell>
    void build(std::size_t cells, const std::vector<int>& numbers, Eachcell eachcell) {
        first.assign(cells + 1, 0);
        for (std::size_t i = 0; i < numbers.size(); ++i)
            eachcell(i, [&](std::size_t cell) { ++first[cell + 1]; });
        for (std::size_t cell = 1; cell <= cells; ++cell) first[cell] += first[cell - 1];
        items.resize(std::size_t(first.back()));
        std::vector<int> next(first.begin(), first.end() - 1);
        for (std::size_t i = 0; i < numbers.size(); ++i)
            eachcell(i, [&](std::size_t cell) { items[std::size_t(next[cell]++)] = numbers[i]; });
    }
    bool empty() const { return items.empty(); }
    std::size_t size() const { return items.size(); }  // of all cells
    std::span<const int> of(std::size_t cell) const {
        return std::span(items).subspan(std::size_t(first[cell]),
                                        std::size_t(first[cell + 1] - first[cell]));
    }

  private:
    std::vector<int> first;  // of each cell in items; one more at the end
    std::vector<int> items;
};
