// SPDX-License-Identifier: GPL-3.0-or-later
// What an analysis has found, in memory.
#pragma once

#include "solver/modes/eigenmodes.h"
#include "solver/modes/mass.h"
#include "solver/results/stresses.h"

struct results {
    dofmap dofs;
    std::int64_t halfbandwidth = 0;
    displacements u;
    std::vector<double> residual;  // by case from 0: backward error of the equations
    reactionset reactions;
    lineends lines;
    platestresses plates;
    modeset modes;
    std::vector<massproperties> masses;  // of the groups' elements, in slot 0 of all
};
