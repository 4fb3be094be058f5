// SPDX-License-Identifier: GPL-3.0-or-later
// The normals of curved shells at their nodes.
#pragma once

#include "solver/elements/corners.h"
#include "solver/elements/element.h"
#include "solver/elements/supports.h"

// Fills the leans of m.fold, of whose slopes and bends they are.
void sharenormals(model& m, const settings& s, const cornerlist& corners, const supportbits& held);
