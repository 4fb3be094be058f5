// SPDX-License-Identifier: GPL-3.0-or-later
// Nested dissection of large graphs by more than one process.
#pragma once

#include "solver/equations/cholmodview.h"

// Parts a graph by METIS: 0 and 1 for its sides, 2 for the separator. Empty where it fails.
std::vector<int> bisect(const uppergraph& graph);
// How dear a cut is beside others of the same graph, by the vertices in its parts: low where the
// separator is small and the sides even, infinite where there are no two sides.
double cutworth(double left, double right, double separator);
double cutworth(const std::vector<int>& side);

// The order of elimination by the separators of METIS, of a large graph part by part: the same
// whatever works on the parts. side: from bisect. Empty where it fails.
std::vector<int> dissect(const uppergraph& graph, const std::vector<int>& side);
