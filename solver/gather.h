// SPDX-License-Identifier: GPL-3.0-or-later
// End forces and stresses of all processes, one case at a time, so that the first, which writes
// them, never holds more than that. All take part.
#pragma once

#include "solver/stresses.h"

// The case as the only one, of all elements in their order; nothing but on the first process.
lineends gathercase(const model& m, const lineends& own, int lc);
platestresses gathercase(const model& m, const platestresses& own, int lc);
