// SPDX-License-Identifier: GPL-3.0-or-later
// The plates and shells by their nodes, which all that neighbours make of them is found from.
#pragma once

#include <span>
#include <vector>

#include "solver/base/model.h"

// Corner `at` (from 0) of an element.
struct corner {
    int element, at;
};

// Those of all membranes, plates and shells, in the order of the elements.
struct cornerlist {
    std::vector<std::size_t> start;  // by node
    std::vector<corner> corners;
    std::span<const corner> of(std::size_t node) const {
        return {corners.data() + start[node], start[node + 1] - start[node]};
    }
};
cornerlist listcorners(const model& m);
