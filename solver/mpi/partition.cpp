// SPDX-License-Identifier: GPL-3.0-or-later
// Elements shared out to processes by METIS, which keeps neighbours together: Karypis and Kumar, A
// fast and high quality multilevel scheme for partitioning irregular graphs, SIAM J. Sci. Comput.
// 20, 1998.
#include <metis.h>

#include <algorithm>
#include <cstring>
#include <numeric>

#include "solver/base/termwatch.h"
#include "solver/elements/kinds.h"
#include "solver/mpi/mpiranks.h"

// Numbers of all behind one another on the first process, from those of each.
static std::vector<idx_t> gathernumbers(const std::vector<idx_t>& mine) {
    std::vector<idx_t> all;
    std::string bytes(reinterpret_cast<const char*>(mine.data()), mine.size() * sizeof(idx_t));
    allranks().handin(bytes, [&](const std::string& theirs) {
        const std::size_t before = all.size();
        all.resize(before + theirs.size() / sizeof(idx_t));
        if (!theirs.empty()) std::memcpy(all.data() + before, theirs.data(), theirs.size());
    });
    allranks().settle();
    return all;
}

// The first process works it out for all, from their stretches.
std::vector<std::uint16_t> mpiranks::partition(const model& stretch) {
    std::vector<std::uint16_t> rankof(stretch.elements.size(), 0);
    if (all == 1 || stretch.elementsofall == 0) return rankof;
    std::vector<idx_t> nodes, corners;
    for (int e = 1; e <= stretch.nelems(); ++e) {
        const elementdef& def = stretch.elements[std::size_t(e)];
        corners.push_back(kindof(def.type).nodes);
        nodes.insert(nodes.end(), def.node, def.node + corners.back());
    }
    nodes = gathernumbers(nodes);
    std::vector<idx_t> start = gathernumbers(corners), part(start.size());
    std::string fault;
    if (number == 0) {
        for (idx_t& n : nodes) --n;
        start.insert(start.begin(), 0);
        std::partial_sum(start.begin(), start.end(), start.begin());
        std::vector<idx_t> nodepart(std::size_t(stretch.nodesofall));
        idx_t elements = stretch.elementsofall, count = stretch.nodesofall, parts = all, cut = 0;
        const termwatch watch;
        const int done =
            METIS_PartMeshNodal(&elements, &count, start.data(), nodes.data(), nullptr, nullptr,
                                &parts, nullptr, nullptr, &cut, part.data(), nodepart.data());
        if (done != METIS_OK) fault = "Not enough memory to share the elements among processes";
    }
    fault = anyfault(fault);
    if (!fault.empty()) refuse(fault);
    const std::size_t share = std::size_t((stretch.elementsofall + all - 1) / all);
    std::size_t at = 0;
    const std::string mine = handout([&] {
        const std::size_t end = std::min(at + share, part.size());
        const std::vector<std::uint16_t> some(part.begin() + std::ptrdiff_t(at),
                                              part.begin() + std::ptrdiff_t(end));
        at = end;
        return std::string(reinterpret_cast<const char*>(some.data()),
                           some.size() * sizeof(std::uint16_t));
    });
    if (!mine.empty()) std::memcpy(rankof.data() + 1, mine.data(), mine.size());
    return rankof;
}
