// SPDX-License-Identifier: GPL-3.0-or-later
// Dense elimination of one front: the columns of a supernode over all rows that they reach, and the
// update that they leave on the rest.
#pragma once

#include "solver/equations/crew.h"
#include "solver/equations/staircase.h"

// Turns the columns into those of the Cholesky factor and fills the update (rows - columns square)
// with -l l' of what lies below, on its own or with other threads, whose number makes no difference
// to the numbers. False where a pivot is not above 0.
bool eliminate(const staircase& s, double* columns, double* update, loopsharer* threads);

// One front's part of l x = b and of l' x = b; x: rows numbers a right side, the columns' first.
void solveforward(const staircase& s, const double* columns, double* x, int sides,
                  loopsharer* threads);
void solvebackward(const staircase& s, const double* columns, double* x, int sides,
                   loopsharer* threads);
