// SPDX-License-Identifier: GPL-3.0-or-later
// The model's arrays in the declared sizes.
#pragma once

// Gives up all arrays and allocates them anew from modelsize: numbers 0, texts empty. When memory
// does not suffice a message is shown, the routine returns false with what it has, and no room may
// touch the arrays before an allocation has succeeded.
bool allocmodel();

// Gives every count and every scalar of the model its empty value; the arrays stand allocated. What
// higher floors hold of its items names none any more.
void clearcounts();
