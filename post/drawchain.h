// SPDX-License-Identifier: GPL-3.0-or-later
// The diagrams of a chain of members one below the other, over its length.
#pragma once

#include "post/memberchain.h"

struct surface;

// Over the whole surface. first, last: the quantities, N to Mz or v to w.
void drawchain(surface& s, const memberchain& chain, memberquantity first, memberquantity last);
// "element 3 at 0.25 of its length": where a value stands; and what governs it, of an envelope.
std::string placeof(const chainpoint& p);
