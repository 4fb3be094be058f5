// SPDX-License-Identifier: GPL-3.0-or-later
// The worst of the nodes that a warning is about.
#pragma once

#include <climits>

#include "solver/base/model.h"

struct worstnode {
    double nodes = 0, worst = 0;  // how many, and the largest value
    int node = INT_MAX;           // where that is, in the files

    // n: of those that this process counts, in ascending order; of values alike the first stays.
    void meet(const model& m, int n, double value);
    // Those of all processes, which all take part.
    void settle();
};
