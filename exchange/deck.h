// SPDX-License-Identifier: GPL-3.0-or-later
// CalculiX and Abaqus decks: nodes, bars, beams, shells, membranes, masses and springs with their
// sections and materials, constraints, and steps as load cases.
#pragma once

#include <string>
#include <string_view>

#include "exchange/imported.h"

bool isdeck(std::string_view head);  // by the beginning of a file: keywords behind a star

// Throws with file and line; includes are read only beneath the file's own folder.
void readdeck(const std::string& path, imported& found);
// A deck that ccx solves as it stands.
void writedeck(const std::string& path, importreport& report);
