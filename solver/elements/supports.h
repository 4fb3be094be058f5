// SPDX-License-Identifier: GPL-3.0-or-later
// What supports hold of the nodes, as the edges of plates and shells ask it.
#pragma once

#include <cstdint>
#include <vector>

#include "solver/base/model.h"

// Bits 0..5: DX DY DZ RX RY RZ. A translation or a rotation that is given, other than 0, has its
// bit and one of the last two.
using supportbits = std::vector<std::uint8_t>;
const int allways = 0b111, allturns = 0b111000, waygiven = 1 << 6, turngiven = 1 << 7;

supportbits supportsof(const model& m);  // by node

// Of a node of which this is held: the directions, bits 0..2, across which it lies in a plane of
// symmetry.
int mirrorsof(int held);
