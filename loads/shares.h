// SPDX-License-Identifier: GPL-3.0-or-later
// How a load on several nodes together is shared out among them.
#pragma once

#include <vector>

// Parts of 1 by node number (0..nnodes), 0 for what is not among the nodes: by the areas of the
// faces that have all their corners among them where each node has some, else by the lengths of
// the sides and line elements between them, else alike. A uniform load along an edge comes out so.
std::vector<double> sharesof(const std::vector<int>& among);
