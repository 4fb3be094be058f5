// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog "Model Size": seven numbers, their cost in memory, and the change of the sizes with
// the model in hand kept.
#pragma once

#include <array>
#include <string>

struct sizeform {
    std::array<std::string, 7> text;    // Text boxes 0..6
    std::array<std::string, 7> memory;  // labels of calcmem: six in kilobytes, the total in MB
};
extern const char* const sizelabels[7];

sizeform showsizes();                    // the declared sizes
void editsize(sizeform& form, int box);  // after a key press: no number becomes "0"
// Takes the sizes over and moves the model in hand into arrays of them. A model that
// does not fit, or sizes beyond the memory, are told; the old sizes come back and the boxes show
// them. True when the sizes changed.
bool applysizes(sizeform& form);
