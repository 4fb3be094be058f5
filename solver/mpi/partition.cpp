// SPDX-License-Identifier: GPL-3.0-or-later
// Elements shared out to processes by METIS, which keeps neighbours together: Karypis and Kumar, A
// fast and high quality multilevel scheme for partitioning irregular graphs, SIAM J. Sci. Comput.
// 20, 1998.
#include <metis.h>

#include "solver/base/termwatch.h"
#include "solver/elements/kinds.h"
#include "solver/mpi/mpiranks.h"

// The first process works it out for all, so that all have the same.
std::vector<std::uint16_t> mpiranks::partition(const model& m) {
    std::vector<std::uint16_t> rankof(std::size_t(m.nelems()) + 1, 0);
    if (all == 1) return {};
    std::string fault;
    if (number == 0) {
        std::vector<idx_t> start = {0}, nodes, part(std::size_t(m.nelems()));
        std::vector<idx_t> nodepart(std::size_t(m.nnodes()));
        for (int e = 1; e <= m.nelems(); ++e) {
            const elementdef& def = m.elements[std::size_t(e)];
            for (int k = 0; k < kindof(def.type).nodes; ++k) nodes.push_back(def.node[k] - 1);
            start.push_back(idx_t(nodes.size()));
        }
        idx_t elements = m.nelems(), count = m.nnodes(), parts = all, cut = 0;
        const termwatch watch;
        const int done =
            METIS_PartMeshNodal(&elements, &count, start.data(), nodes.data(), nullptr, nullptr,
                                &parts, nullptr, nullptr, &cut, part.data(), nodepart.data());
        if (done != METIS_OK) fault = "Not enough memory to share the elements among processes";
        for (std::size_t e = 0; e < part.size(); ++e) rankof[e + 1] = std::uint16_t(part[e]);
    }
    fault = anyfault(fault);
    if (!fault.empty()) refuse(fault);
    MPI_Bcast(rankof.data(), int(rankof.size()), MPI_UINT16_T, 0, MPI_COMM_WORLD);
    return rankof;
}
