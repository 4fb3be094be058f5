// SPDX-License-Identifier: GPL-3.0-or-later
#include "solver/elements/supports.h"

supportbits supportsof(const model& m) {
    supportbits nodes(m.nodes.size(), 0);
    for (const nodalrow& row : m.constraints) {
        const int given = row.value == 0 ? 0 : row.dof > 3 ? turngiven : waygiven;
        nodes[std::size_t(row.node)] |= std::uint8_t(1 << (row.dof - 1) | given);
    }
    return nodes;
}

int mirrorsof(int held) {
    int mirrors = 0;
    if ((held & (waygiven | turngiven)) != 0 || (held & allways) == allways) return mirrors;
    for (int k = 0; k < 3; ++k) {
        const int symmetric = 1 << k | (allturns & ~(8 << k));
        if ((held & symmetric) == symmetric) mirrors |= 1 << k;
    }
    return mirrors;
}
