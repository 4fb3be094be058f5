// SPDX-License-Identifier: GPL-3.0-or-later
// Eigenvalues below 0 of a symmetric matrix, counted by the signs of its pivots (its inertia).
#pragma once

#include "solver/equations/assemble.h"

// How many eigenvalues of the symmetric matrix lie below 0: negative pivots of its l d l' factor.
// -1 where the factor came upon a pivot of 0 or would cost more than this many operations.
std::int64_t countnegative(const sparsematrix& a, double mostoperations);
