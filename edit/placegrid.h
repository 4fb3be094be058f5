// SPDX-License-Identifier: GPL-3.0-or-later
// Places of many items on a plane, sorted into square cells with about one item each, so that what
// lies nearest to a point is found without a look at them all.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "view/celllists.h"
#include "view/surface.h"

class placegrid {
  public:
    // place(i, at) gives the place of item i, 1..count; false where it has none.
    template <typename Place>
    void build(int count, Place place) {
        std::vector<point2> places;
        std::vector<int> numbers;
        point2 at;
        for (int i = 1; i <= count; ++i) {
            if (!place(i, at) || !std::isfinite(at.x) || !std::isfinite(at.y)) continue;
            places.push_back(at);
            numbers.push_back(i);
        }
        setcells(places);
        items.build(std::size_t(columns) * std::size_t(rows), numbers,
                    [&](std::size_t i, auto work) { work(cellof(places[i])); });
    }
    // Calls look(i) for items ring by ring around a point until no other can be nearer than the
    // distance that look returns, which is that of the best so far.
    template <typename Look>
    void around(const point2& p, Look look) const {
        if (items.empty()) return;
        const int x = column(p.x), y = row(p.y);
        double best = farthest;
        for (int ring = 0;; ++ring) {
            for (int j = std::max(0, y - ring); j <= std::min(rows - 1, y + ring); ++j) {
                const bool whole = j == y - ring || j == y + ring;
                for (int i = x - ring; i <= x + ring; i += whole || ring == 0 ? 1 : 2 * ring)
                    if (i >= 0 && i < columns)
                        for (const int item : items.of(index(i, j))) best = look(item);
            }
            if (outside(p, x, y, ring) > best) return;
        }
    }

  private:
    static constexpr double farthest = 1e300;

    void setcells(const std::vector<point2>& places) {
        point2 low{farthest, farthest}, high{-farthest, -farthest};
        for (const point2& p : places) {
            low = {std::min(low.x, p.x), std::min(low.y, p.y)};
            high = {std::max(high.x, p.x), std::max(high.y, p.y)};
        }
        const double n = double(std::max<std::size_t>(places.size(), 1));
        const double w = places.empty() ? 0 : high.x - low.x,
                     h = places.empty() ? 0 : high.y - low.y;
        // A long thin heap of places has no more cells along it than items.
        side = std::max(std::sqrt(w) * std::sqrt(h) / std::sqrt(n), std::max(w, h) / n);
        if (!(side > 0)) side = 1;
        origin = places.empty() ? point2{0, 0} : low;
        columns = int(w / side) + 1;
        rows = int(h / side) + 1;
    }
    int column(double x) const {
        return int(std::clamp(std::floor((x - origin.x) / side), 0.0, columns - 1.0));
    }
    int row(double y) const {
        return int(std::clamp(std::floor((y - origin.y) / side), 0.0, rows - 1.0));
    }
    std::size_t index(int i, int j) const {
        return std::size_t(j) * std::size_t(columns) + std::size_t(i);
    }
    std::size_t cellof(const point2& p) const { return index(column(p.x), row(p.y)); }
    // The least distance from p of a place beyond the square of rings about cell x, y; sides that
    // lie on the border of the grid have nothing beyond them.
    double outside(const point2& p, int x, int y, int ring) const {
        const double slack = 1e-6 * side;  // a place on a side may be counted to either cell
        double least = farthest;
        if (x - ring > 0) least = std::min(least, p.x - origin.x - (x - ring) * side);
        if (x + ring < columns - 1) least = std::min(least, origin.x + (x + ring + 1) * side - p.x);
        if (y - ring > 0) least = std::min(least, p.y - origin.y - (y - ring) * side);
        if (y + ring < rows - 1) least = std::min(least, origin.y + (y + ring + 1) * side - p.y);
        return least == farthest ? 2 * farthest : least - slack;
    }

    point2 origin{0, 0};
    double side = 1;
    int columns = 1, rows = 1;
    celllists items;
};
