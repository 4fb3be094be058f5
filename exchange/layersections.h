// SPDX-License-Identifier: GPL-3.0-or-later
// Sections by the names of layers: a drawing office calls the layer of a member by its profile.
#pragma once

#include <string>

#include "exchange/imported.h"

// The record of the section library whose name stands in the text, "HEA300-COLUMN": the longest, 0
// for none. Blanks and signs within the name count nothing; it is a word of its own.
int profilein(const std::string& text);

// Groups of lines take the values of the profile that their name tells; told in the report, as are
// those that tell none. metres: a length of the model.
void putprofiles(imported& found, double metres);
