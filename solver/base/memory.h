// SPDX-License-Identifier: GPL-3.0-or-later
// Memory of this machine.
#pragma once

#include <cstddef>
#include <vector>

// Bytes that it can still give.
double freememory();

// So many zeros. All threads take their memory from the system: where a host lends it to a virtual
// machine that takes far longer than all that is done with the numbers.
std::vector<double> zeros(std::size_t count);
