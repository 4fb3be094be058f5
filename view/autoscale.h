// SPDX-License-Identifier: GPL-3.0-or-later
// Scale and view point of a view from what it shows.
#pragma once

#include <vector>

// Fits elements, graphic elements and, while they are drawn, the buffers of one view into its
// surface, by the largest extent whatever the angles. Nothing to fit leaves a scale next to 0.
void autoscale(int nview);
// What the user's fit does: autoscale; where the view is fitted already, the picture of the model
// as it is projected fills the view; where there is nothing, a square of ten units does.
void fit(int nview);
void fitall(bool whole = false);  // every view; whole: as where it is fitted already
// Brings these nodes into the middle of the view, with as much again around them; numbers of nodes
// that do not exist or stand nowhere are passed over.
void fitnodes(int nview, const std::vector<int>& numbers);
