// SPDX-License-Identifier: GPL-3.0-or-later
#include "solver/results/worstnode.h"

#include "solver/processes/ranks.h"

void worstnode::meet(const model& m, int n, double value) {
    ++nodes;
    if (value > worst) worst = value, node = m.nameofnode(n);
}

void worstnode::settle() {
    allranks().sum(&nodes, 1);
    if (nodes == 0) return;
    const std::vector<double> all = allranks().greatest({worst, -double(node)});
    worst = all[0];
    node = int(-all[1]);
}
