// SPDX-License-Identifier: GPL-3.0-or-later
// Nodal forces on curved triangular shells that bend them where a real shell would not.
#pragma once

#include "solver/results/stresses.h"

// Warns of nodes under forces at which triangles bend by their own folds, case by case from `first`
// on. applied: the loads, numbered like u.
void warnfoldmoments(const model& m, const settings& s, const dofmap& d, const displacements& u,
                     const std::vector<double>& applied, int first, runlog& log);
