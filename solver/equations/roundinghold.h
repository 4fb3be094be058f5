// SPDX-License-Identifier: GPL-3.0-or-later
// Supports or hinges on a line that the rounding of coordinates makes crooked: what could turn
// about it is held, by next to nothing, and moves by a number that means nothing.
#pragma once

#include "solver/equations/solve.h"

// Refuses a solution u, of these loads, that is another one where coordinates are rounded
// otherwise; l holds the factor of q before and after.
void refuseheldbyrounding(const model& m, const settings& s, const equations& q, engine& l,
                          const std::vector<double>& load, const double* u, runlog& log);
