// SPDX-License-Identifier: GPL-3.0-or-later
// Where labels stand: the places that they have taken on a surface, so that none covers another
// one, and the numbers beside symbols. Places in centimetres.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <vector>

#include "view/surface.h"

// A raster of small cells.
class labelroom {
  public:
    labelroom(double width, double height)
        : columns(cellsof(width)), rows(cellsof(height)), taken(std::size_t(columns * rows)) {}
    // Takes the box with this top left corner; false where another one has a part of it, or where
    // it lies beside the surface.
    bool take(point2 corner, double width, double height) {
        const int left = cell(corner.x), right = cell(corner.x + width), top = cell(corner.y),
                  bottom = cell(corner.y + height);
        const int i1 = std::max(left, 0), i2 = std::min(right, columns - 1), j1 = std::max(top, 0),
                  j2 = std::min(bottom, rows - 1);
        if (i1 > i2 || j1 > j2) return false;
        for (int j = j1; j <= j2; ++j)
            for (int i = i1; i <= i2; ++i)
                if (at(i, j)) return false;
        for (int j = j1; j <= j2; ++j)
            for (int i = i1; i <= i2; ++i) at(i, j) = 1;
        return true;
    }

  private:
    static constexpr double side = 0.1;  // of a cell
    static int cell(double x) { return int(std::floor(std::clamp(x, -1e6, 1e6) / side)); }
    static int cellsof(double length) { return std::clamp(cell(length) + 1, 1, 10000); }
    char& at(int i, int j) { return taken[std::size_t(j) * std::size_t(columns) + std::size_t(i)]; }

    int columns, rows;
    std::vector<char> taken;
};

// The picture in work begins: no label stands in it.
void freelabels();
// Moves the top left corner of a label to the nearest free place around the point that it is of,
// and takes it; false where there is none. The width is taken by the number of characters.
bool placelabel(surface& s, std::string_view text, point2 of, point2& corner);

// Four digits: 12.35, 1.5E-07.
std::string shortnumber(double value);
// The number of a symbol beside its end, where there is room for it; what it is as a formula of
// units (core/units).
void drawvalue(surface& s, point2 end, double value, const char* formula, colour c);
