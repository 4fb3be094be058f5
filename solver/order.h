// SPDX-License-Identifier: GPL-3.0-or-later
// Order of elimination.
#pragma once

#include <string>
#include <vector>

#include "solver/dofs.h"

// Order in which the owners are eliminated (places of the graph): the cheaper of minimum degree and
// nested dissection by their symbolic factorisation. told: out, for the log.
std::vector<int> ordernodes(const nodegraph& graph, std::string& told);
