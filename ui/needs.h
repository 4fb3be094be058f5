// SPDX-License-Identifier: GPL-3.0-or-later
// The way into an analysis: what the model lacks is told before the solver starts.
#pragma once

// Analyse: runs at once where nothing is missing, else opens the window "needs", which leads to the
// places where it is given.
void startanalysis();
