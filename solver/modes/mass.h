// SPDX-License-Identifier: GPL-3.0-or-later
// The masses of a model: of its groups for the report, and its matrix for vibrations.
#pragma once

#include "solver/equations/solve.h"

struct massproperties {
    double mass = 0;             // mass units of the model
    vec3 centre = vec3::Zero();  // length units
    vec3 radius = vec3::Zero();  // of gyration about the axes x y z through the centre
};

// Of each group's elements (1..ngroups), and of all elements in slot 0.
std::vector<massproperties> groupmasses(const model& m, const settings& s);

// Pattern of the stiffness. elements: the mass of all elements, else that of MASS elements alone;
// the nodal masses join in both.
sparsematrix massmatrix(const model& m, const settings& s, const equations& q, bool elements,
                        runlog& log);
