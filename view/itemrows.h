// SPDX-License-Identifier: GPL-3.0-or-later
// Items by the rows of a view that they reach into, each row in rising order: a look under the
// pointer needs those of one row.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "view/celllists.h"

struct rowspan {
    double low, high;  // centimetres down the surface
};

class itemrows {
  public:
    // reach(i, span) gives the span of item i, 1..count; false for one that is not on show.
    template <typename Reach>
    void build(int count, Reach reach) {
        std::vector<rowspan> spans;
        std::vector<int> numbers;
        rowspan s;
        for (int i = 1; i <= count; ++i) {
            if (!reach(i, s) || !std::isfinite(s.low) || !std::isfinite(s.high)) continue;
            spans.push_back(s);
            numbers.push_back(i);
        }
        setrows(spans);
        const auto eachrow = [&](std::size_t i, auto work) {
            for (std::size_t row = rowof(spans[i].low); row <= rowof(spans[i].high); ++row)
                work(row);
        };
        items.build(std::size_t(rows), numbers, eachrow);
    }
    // Calls look(i) for the items of the row at y.
    template <typename Look>
    void at(double y, Look look) const {
        if (items.empty() || !(y >= all.low && y <= all.high)) return;
        for (const int i : items.of(rowof(y))) look(i);
    }

  private:
    std::size_t rowof(double y) const {
        return std::size_t(std::clamp((y - all.low) / height, 0.0, rows - 1.0));
    }
    // As many rows as keep both the rows and the entries of tall items few.
    void setrows(const std::vector<rowspan>& spans) {
        const double entries = 4;  // an item, on the average
        const double n = double(std::max<std::size_t>(spans.size(), 1));
        double sum = 0;
        all = {1e300, -1e300};
        for (const rowspan& s : spans) {
            all = {std::min(all.low, s.low), std::max(all.high, s.high)};
            sum += s.high - s.low;
        }
        height = std::max((all.high - all.low) / std::sqrt(n), sum / (entries * n));
        if (!(height > 0)) height = 1;
        rows = spans.empty() ? 1 : int((all.high - all.low) / height) + 1;
    }

    rowspan all{0, 0};
    double height = 1;  // of a row, centimetres
    int rows = 1;
    celllists items;  // by rows
};
