// SPDX-License-Identifier: GPL-3.0-or-later
// The search for closed loops of lines that could be meshed.
#pragma once

#include <array>
#include <vector>

#include "tools/Graphics.h"

// joints(1 or 2, g): the lines that meet line g at that end within nodetol, positive where their
// end 1 lies there, negative for their end 2.
using jointtable = std::array<std::vector<std::vector<int>>, 3>;
jointtable findjoints();

// The command Findpatch: from the first end of each line along each line that meets it there,
// always with the tightest turn in the plane of the first two. A loop that closes is the selection;
// the user is told and goes on to the next one, or stops there with Cancel. Returns how many
// closed.
int findpatch();
