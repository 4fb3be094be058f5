// SPDX-License-Identifier: GPL-3.0-or-later
// Grids for ParaView (.vtu): the model with its groups and local axes, and what results stand
// beside it of each combination and mode: displacements, stresses by corner and their means.
#pragma once

#include <string>

#include "exchange/importreport.h"

// Points are the nodes, with the means of the stresses; stresses of the corners are arrays of the
// cells then. Or each corner of each element is a point, so that jumps between elements show.
enum class gridpoints { nodes, corners };

// Throws errpathaccess, errdiskfull.
void writevtu(const std::string& path, gridpoints kind, importreport& report);
// A list (.pvd) of one grid a combination, BASE_1.vtu and so on, through which ParaView steps as
// through time; the arrays have the same names in each.
void writepvd(const std::string& path, importreport& report);
