// SPDX-License-Identifier: GPL-3.0-or-later
// Calls of SCOTCH: Pellegrini and Roman, Sparse matrix ordering with SCOTCH, HPCN Europe 1997.
#include "solver/mpi/scotch.h"

#include <cstdint>
#include <cstdio>  // scotch.h needs both

#include <scotch.h>

std::vector<int> dissectbyscotch(const nodegraph& graph) {
    std::vector<SCOTCH_Num> start = {0}, neighbour;
    for (int n = 0; n < graph.size(); ++n) {
        for (auto i = graph.start[std::size_t(n)]; i < graph.start[std::size_t(n) + 1]; ++i)
            if (graph.neighbour[std::size_t(i)] != n)
                neighbour.push_back(graph.neighbour[std::size_t(i)]);
        start.push_back(SCOTCH_Num(neighbour.size()));
    }
    std::vector<SCOTCH_Num> order(std::size_t(graph.size()));
    SCOTCH_Graph g;
    SCOTCH_Strat usual;
    SCOTCH_graphInit(&g);
    SCOTCH_stratInit(&usual);
    const bool done =
        SCOTCH_graphBuild(&g, 0, graph.size(), start.data(), start.data() + 1, nullptr, nullptr,
                          SCOTCH_Num(neighbour.size()), neighbour.data(), nullptr) == 0 &&
        SCOTCH_graphOrder(&g, &usual, nullptr, order.data(), nullptr, nullptr, nullptr) == 0;
    SCOTCH_stratExit(&usual);
    SCOTCH_graphExit(&g);
    return done ? order : std::vector<int>{};
}
