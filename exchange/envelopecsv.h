// SPDX-License-Identifier: GPL-3.0-or-later
// Envelopes of a result as a table for a spreadsheet: of each value the largest and the smallest
// over the combinations, and the combinations that govern them.
#pragma once

#include "core/csvout.h"
#include "post/enveloperows.h"

// group: 0 all, else elements of this group, or their nodes. Returns the rows written.
long writeenvelope(csvout& out, envelopeof what, int group);
