// SPDX-License-Identifier: GPL-3.0-or-later
// Memory of this machine.
#pragma once

#include <cstddef>
#include <vector>

// Bytes that it can still give.
double freememory();

// All threads take memory from the system that has no values yet, now. Where a host lends it to
// a virtual machine that takes far longer than all that is done with the numbers; and it is at hand
// still where earlier stages and programs left it, while it goes back to the host within a second
// or two when it lies idle.
void takememory(void* begin, std::size_t bytes);
// So many zeros, taken so.
std::vector<double> zeros(std::size_t count);
