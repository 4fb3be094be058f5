// SPDX-License-Identifier: GPL-3.0-or-later
// Envelope of one stress component over combinations: the largest and smallest value at each
// corner, and the combination that governs it. State: the envelope on show.
//
// The stress file is read once: its load cases are blocks of the same records, so each case has a
// place of its own in the file and they advance together, record by record.
#pragma once

#include <string>
#include <vector>

#include "post/governed.h"

// Forms it of the source's set from the stress file in force, for the component. False after it has
// told what is wrong.
bool readenvelope(int component);
void dropenvelope();
// Of element e, corner 1..4.
const governed& governedat(int e, int corner);

// A table of the worst places: of each group the one with the largest and the one with the smallest
// value among the elements that count.
struct enveloperow {
    int group, e, corner, combination;
    double value;
};
std::vector<enveloperow> envelopetable(bool (*counts)(int e));
