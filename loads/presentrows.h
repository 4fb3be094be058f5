// SPDX-License-Identifier: GPL-3.0-or-later
// What a selection has at present, in words, for the window that edits loads and constraints.
#pragma once

#include <string>

#include "loads/nodeattributes.h"

// Of the chosen item or of all of them, by the mode that runs: "At present: Dx 0 at 4 of 4, Dy 1 to
// 3 at 2 of 4". Empty without a mode or a selection.
std::string presentrows(const attributeform& form);
