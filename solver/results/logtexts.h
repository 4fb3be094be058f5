// SPDX-License-Identifier: GPL-3.0-or-later
// What the log says of a model and its results, in words and tables for an engineer.
#pragma once

#include "solver/modes/eigenmodes.h"
#include "solver/modes/mass.h"
#include "solver/results/stresses.h"

void tellunits(const settings& s, runlog& log);
void tellmodel(const model& m, runlog& log);
void tellcases(const model& m, runlog& log);
void tellmass(const massproperties& all, const settings& s, runlog& log);
// Largest translation of each case and its node.
void telllargest(const model& m, const dofmap& d, const displacements& u, runlog& log);
// Load, reaction and their sum in each case.
void tellbalance(const model& m, const reactionset& r, runlog& log);
void tellmodes(const modeset& r, runlog& log);
