// SPDX-License-Identifier: GPL-3.0-or-later
// Bending of curved shells that comes of their flat elements alone.
#pragma once

#include "solver/results/stresses.h"

// Warns, case by case, of nodes about which an uneven mesh bends where a shell would not.
void warnfalsebending(const model& m, const settings& s, const dofmap& d, const platestresses& p,
                      int cases, runlog& log);
