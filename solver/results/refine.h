// SPDX-License-Identifier: GPL-3.0-or-later
// Displacements to more digits than the equations hold, for models whose stiffness differs so much
// that reactions feel the rounding.
#pragma once

#include "solver/equations/solve.h"
#include "solver/results/stresses.h"

// Largest part of a case's load, in forces or in moments, that its reactions do not balance.
// letgo: by case from 0, what of the load nothing takes up; about: the moments' centre. About a
// place in the model they show what is lost beside those of a distant origin; about the origin they
// round least.
double worstbalance(const reactionset& r, const std::vector<vec6>& letgo, const vec3& about);

// One round: improves u by what the forces of the single elements leave of the loads; fills u.rest.
// applied: the loads, numbered like u. Returns the largest change over the largest displacement.
double refine(const model& m, const settings& s, const equations& q, engine& l,
              const std::vector<double>& applied, displacements& u);
