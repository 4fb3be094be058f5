// SPDX-License-Identifier: GPL-3.0-or-later
// Which patch made an element; beside core/model.h, for few rooms want to know.
#pragma once

#include "core/array.h"

extern array1<int> elempatch;  // (0..m2) the patch whose mesh it is of, 0 for none; no file has it
