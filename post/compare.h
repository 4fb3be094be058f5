// SPDX-License-Identifier: GPL-3.0-or-later
// Two combinations, or two modes, side by side: view 1 shows the one in view, view 2 another, on
// one scale or each on its own, and both views look from the same place.
#pragma once

// Side by side with this one, until the layout of the views becomes another.
void startcomparison(int with);
void endcomparison();
int comparedwith();  // 0 while nothing is compared
// One scale for both, of colours and of diagrams, or each its own.
void choosecommonscale(bool common);
void wirecompare();
