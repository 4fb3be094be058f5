// SPDX-License-Identifier: GPL-3.0-or-later
// How soft the softest motion is, for engines that do not show their pivots.
#pragma once

#include "solver/engine.h"

// The smallest eigenvalue of the matrix scaled to a unit diagonal, near enough to tell a mechanism
// from a slender structure. unknown: out, where its motion is largest. a is factorised.
double softness(engine& l, const sparsematrix& a, std::int64_t& unknown);
