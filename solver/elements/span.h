// SPDX-License-Identifier: GPL-3.0-or-later
// Why equations of a model cannot be solved to a useful accuracy.
#pragma once

#include <string>

#include "solver/base/model.h"
#include "solver/base/settings.h"

// A sentence or two: the stiffest and the softest element where they lie too many powers of ten
// apart, and what to do; elsewhere that a part is next to a mechanism.
std::string whyillconditioned(const model& m, const settings& s);
