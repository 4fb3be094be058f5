// SPDX-License-Identifier: GPL-3.0-or-later
// Renumbering of the nodes by a geometric sweep, from the farthest to the nearest of a reference
// point, which narrows the band of a stiffness matrix.
#pragma once

// Gives all nodes their new numbers and every reference to them; the selection is empty afterwards.
// Plots the sweep in the active view, redraws all views at the end.
void renumbermodel();
