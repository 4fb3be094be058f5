// SPDX-License-Identifier: GPL-3.0-or-later
// The room solver: the program feiflu, from a model's files (readmodel) through elements (kinds),
// loads, equations (solve, factor) and modes to stresses and result files.
//
// One analysis: from its files to its results, or from a model in memory to results in memory.
#pragma once

#include "solver/base/control.h"
#include "solver/base/report.h"
#include "solver/results/results.h"

// What is worked out.
struct wanted {
    bool displacements = true;
    bool reactions = true;
    bool linestresses = true;
    bool platestresses = true;
    bool modes = false;
    bool elementmass = true;  // the mass of all elements, not only of MASS elements, in the modes
    std::string checkpoint = {};  // the name of the analysis in it, "": none is kept
};

// Works the model out. doftype 1..3, or 0: taken from the element types, with m.twod as it stands.
results solvemodel(model& m, const settings& s, int doftype, const wanted& what, runlog& log);

// Does what the job asks, from files to files. Throws a refusal.
void analyse(const job& j, runlog& log);
