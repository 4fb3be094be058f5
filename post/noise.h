// SPDX-License-Identifier: GPL-3.0-or-later
// Is a field of displacements more than the rounding of its numbers?
#pragma once

// The displacements in set 1 of nodes, with maxdisp, are so much smaller than the model and than
// what the loads of the current combination would do to its stiffest element that they are numeric
// noise: where nothing moves, rounding is all that is left. False for a field of zeros.
bool isnoise();
