// SPDX-License-Identifier: GPL-3.0-or-later
// Lines and plates that stand on the nodes of another one of their kind and group.
#pragma once

#include "solver/base/model.h"
#include "solver/base/report.h"

// Warns of them: a part of the model that was copied onto itself is twice as stiff and as heavy,
// and looks right. A doubled section on purpose has a group of its own.
void telltwins(const model& m, runlog& log);
