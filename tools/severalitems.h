// SPDX-License-Identifier: GPL-3.0-or-later
// A dialog's field that stands for several items at once.
#pragma once

#include <string>

const char differingtext[] = "Various";

// The field keeps what all have in common.
inline void keepcommon(std::string& field, const std::string& other) {
    if (field != other) field = differingtext;
}
