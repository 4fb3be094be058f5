// SPDX-License-Identifier: GPL-3.0-or-later
// Nested dissection by SCOTCH.
#pragma once

#include "solver/dofs/dofs.h"

// The order of elimination; nothing where the memory is short.
std::vector<int> dissectbyscotch(const nodegraph& graph);
