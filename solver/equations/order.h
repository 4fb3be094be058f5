// SPDX-License-Identifier: GPL-3.0-or-later
// Order of elimination.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "solver/dofs/dofs.h"

// Order in which the owners are eliminated (places of the graph): the cheaper of minimum degree and
// nested dissection by their symbolic factorisation. told: out, for the log.
std::vector<int> ordernodes(const nodegraph& graph, std::string& told);

// Has nested dissection done by another library than METIS, where feiflu.ini names it so; it
// returns an order, or nothing where it fails.
using dissector = std::function<std::vector<int>(const nodegraph& graph)>;
void adddissector(const std::string& name, dissector work);
// Says so where this program is without that library.
void usedissector(const std::string& name, runlog& log);
