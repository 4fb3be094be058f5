// SPDX-License-Identifier: GPL-3.0-or-later
// Marks on a surface that keep a distance from each other: of those that would stand closer to one
// drawn before them none is drawn. Places in centimetres; beside the surface all are taken.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "view/surface.h"

class thinning {
  public:
    thinning(double width, double height, double distance)
        : least(distance), side(distance / std::sqrt(2.0)) {
        columns = std::clamp(int(width / side) + 1, 1, most);
        rows = std::clamp(int(height / side) + 1, 1, most);
        cells.assign(std::size_t(columns) * std::size_t(rows), {none, none});
    }
    // A cell is so small that it holds one mark at most.
    bool accepts(double x, double y) {
        const double column = std::floor(x / side), row = std::floor(y / side);
        if (!(column >= 0 && column < columns && row >= 0 && row < rows)) return true;
        const int i = int(column), j = int(row);
        if (cellat(i, j).x != none) return false;
        for (int b = std::max(0, j - 2); b <= std::min(rows - 1, j + 2); ++b)
            for (int a = std::max(0, i - 2); a <= std::min(columns - 1, i + 2); ++a)
                if (const point2& p = cellat(a, b);
                    (p.x - x) * (p.x - x) + (p.y - y) * (p.y - y) < least * least)
                    return false;
        cellat(i, j) = {x, y};
        return true;
    }

  private:
    static constexpr double none = -1e300;
    static constexpr int most = 4000;  // cells along a side
    point2& cellat(int i, int j) {
        return cells[std::size_t(j) * std::size_t(columns) + std::size_t(i)];
    }

    double least, side;
    int columns, rows;
    std::vector<point2> cells;
};
