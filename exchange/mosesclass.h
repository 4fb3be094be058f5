// SPDX-License-Identifier: GPL-3.0-or-later
// Classes of a MOSES text: sections and materials as element groups, fixings of restraints.
#pragma once

#include <string_view>
#include <vector>

#include "exchange/imported.h"
#include "exchange/mosesdeck.h"

struct mosesclass {
    int group = 0;           // of `imported`
    bool isfixing = false;   // FIX
    std::vector<int> fixed;  // freedoms 1..6
};

// X Y Z RX RY RZ, or FX FY FZ MX MY MZ: 1..6; 0 for any other word.
int mosesfreedom(std::string_view word);
// Reads what stands behind the name; the group of the class takes its values, in the model's units.
void readclass(std::string_view text, const mosesstatement& statement, const mosesdeck& deck,
               imported& found, mosesclass& result);
