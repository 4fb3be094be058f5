// SPDX-License-Identifier: GPL-3.0-or-later
// One front's part of the solution for a single right side, by one thread. Little is done with each
// number of the factor, so what counts is how fast the numbers come from memory.
#pragma once

#include "solver/equations/staircase.h"

// l y = x and l' y = x in place; x: s.rows numbers, the columns' first.
void forwardonecolumn(const staircase& s, const double* columns, double* x);
void backwardonecolumn(const staircase& s, const double* columns, double* x);
