// SPDX-License-Identifier: GPL-3.0-or-later
// The card of an element type: what it moves, what of its group it uses, which loads it takes and
// which results it gives. Name, nodes and description are those of the catalogue.
#pragma once

#include <string>
#include <vector>

#include "core/codes.h"

struct cardrow {
    const char* heading;
    std::string text;
};
// None for a code that the catalogue does not have.
std::vector<cardrow> elementcard(int type);
// The fields of the group that the type uses.
std::vector<groupfield> fieldsused(int type);
