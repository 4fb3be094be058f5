// SPDX-License-Identifier: GPL-3.0-or-later
// Which graphic elements meet at their ends.
#pragma once

#include <array>
#include <vector>

#include "tools/Graphics.h"

// joints(1 or 2, g): the elements that meet element g at that end within nodetol, positive where
// their end 1 lies there, negative for their end 2.
using jointtable = std::array<std::vector<std::vector<int>>, 3>;

jointtable findjoints();     // of lines alone
jointtable findalljoints();  // of all kinds
