// SPDX-License-Identifier: GPL-3.0-or-later
// How the numbers of a front lie in memory.
#pragma once

#include <algorithm>
#include <cstdint>

// Storage of a lower trapezoid: blocks of columns, each a full matrix by columns from its diagonal
// down. What lies above the diagonal within a block has no meaning.
struct staircase {
    int rows = 0, columns = 0;  // rows >= columns

    // Columns of a block: wide ones are fast, narrow ones waste less above the diagonal.
    int width() const { return columns <= 256 ? 64 : columns <= 512 ? 128 : 256; }
    int blocks() const { return (columns + width() - 1) / width(); }
    int wide(int block) const { return std::min(width(), columns - block * width()); }
    int tall(int block) const { return rows - block * width(); }
    std::int64_t place(int block) const {  // of its first number
        const std::int64_t w = width(), b = block;
        return w * b * rows - w * w * (b * (b - 1) / 2);
    }
    std::int64_t size() const {
        return blocks() == 0
                   ? 0
                   : place(blocks() - 1) + std::int64_t(tall(blocks() - 1)) * wide(blocks() - 1);
    }
    // The column, such that [row] of it is the entry for row >= block's first row.
    std::int64_t column(int c) const {
        const int block = c / width(), top = block * width();
        return place(block) + std::int64_t(c - top) * tall(block) - top;
    }
};
