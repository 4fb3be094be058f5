// SPDX-License-Identifier: GPL-3.0-or-later
// The search for closed loops that could be meshed.
#pragma once

#include "tools/joints.h"

// The command Findpatch: from the first end of each line along each line that meets it there,
// always with the tightest turn in the plane of the first two. A loop that closes is the selection,
// the way that was found in red; the user is told and goes on to the next one, or stops there with
// Cancel. Loops that hold arcs or curves follow, each of them once. Returns how many closed.
int findpatch();
