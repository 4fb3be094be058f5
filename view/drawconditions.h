// SPDX-License-Identifier: GPL-3.0-or-later
// Symbols of constraints, loads and reactions in a view. While drawcolor is backcolor they erase.
#pragma once

void drawconstraints(int nview);
// As the menu viewloads tells: the active case, all cases, or the cases times their factors in the
// active combination; the largest load measures unitveclen. A buoyancy case on show has its water
// plane and bed drawn as dotted rectangles.
void drawloads(int nview);
