// SPDX-License-Identifier: GPL-3.0-or-later
// The model with its results as VTK unstructured grids, which ParaView reads.
#pragma once

#include <string>

#include "exchange/importreport.h"

// One file of everything: groups, types and local axes of the elements; displacements of every
// combination and mode shape that stand beside the model, and the mean stresses of every
// combination at the nodes.
void writevtu(const std::string& path, importreport& report);
