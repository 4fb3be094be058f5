// SPDX-License-Identifier: GPL-3.0-or-later
// Bulk data of Nastran: grids, bars, beams, rods, shells, masses, rigid links, properties,
// constraints and loads, in small, large and free fields.
#pragma once

#include <string>
#include <string_view>

#include "exchange/imported.h"

bool isbulkdata(std::string_view head);  // by the beginning of a file
// Throws with file and line; includes are read only beneath the file's own folder.
void readbulkdata(const std::string& path, imported& found);
