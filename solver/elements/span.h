// SPDX-License-Identifier: GPL-3.0-or-later
// How far apart the elements of a model are in stiffness.
#pragma once

#include <string>

#include "solver/base/model.h"
#include "solver/base/settings.h"

// Times as stiff: fewer digits may be left than are useful; a mechanism may be rounding.
const double fewdigits = 1e7, nodigits = 1e12;

// Two sentences: the stiffest and the softest element where one is so many times as stiff as the
// other, and what to do; "" elsewhere.
std::string stiffnesstoofarapart(const model& m, const settings& s, double far = fewdigits);
