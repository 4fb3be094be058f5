// SPDX-License-Identifier: GPL-3.0-or-later
// Lengths that the session holds beside the model: tolerance, views, buffers, places in dialogs.
// When the model's lengths are converted they follow, in steps back and forward too. State: the
// scale that they have.
#pragma once

#include <functional>
#include <vector>

void scalelengths(double factor);  // of the model, within the step that converts it
void followlengths();              // after a step back or forward
void startlengths();               // the model in hand is a new beginning
// What higher floors hold.
std::vector<std::function<void(double factor)>>& lengthfollowers();
