// SPDX-License-Identifier: GPL-3.0-or-later
// The largest of many sizes and the item that has it. Of a symmetrical model several have it but
// for rounding: the first of them is named, whoever counts.
#pragma once

#include <algorithm>

struct largestof {
    double size = 0;
    int item = 0;  // 0 where all sizes are 0

    void meet(int one, double its) {
        const double rounding = 1e-6;
        if (its > sizeofitem * (1 + rounding)) item = one, sizeofitem = its;
        size = std::max(size, its);
    }

  private:
    double sizeofitem = 0;
};
