// SPDX-License-Identifier: GPL-3.0-or-later
// Polygon files: each vertex a node, each face an element, edges as lines.
#pragma once

#include <string>

#include "exchange/imported.h"

// Throws with file and line; binary files are refused.
void readply(const std::string& path, imported& found);
