// SPDX-License-Identifier: GPL-3.0-or-later
// How far apart the elements of a model are in stiffness.
#pragma once

#include <string>

#include "solver/base/model.h"
#include "solver/base/settings.h"

// Two sentences: the stiffest and the softest element where they lie too many powers of ten apart
// for a useful accuracy, and what to do; "" elsewhere.
std::string stiffnesstoofarapart(const model& m, const settings& s);
