// SPDX-License-Identifier: GPL-3.0-or-later
// Nested dissection of large graphs by more than one process.
#pragma once

#include <vector>

// The upper triangle of a graph by columns, each with its diagonal as the last row.
struct uppergraph {
    std::vector<int> start, row;
    int size() const { return int(start.size()) - 1; }
};

// The order of elimination by the separators of METIS, of a large graph part by part: the same
// whatever works on the parts. Empty where it fails.
std::vector<int> dissect(const uppergraph& graph);
