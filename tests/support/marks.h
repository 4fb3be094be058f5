// SPDX-License-Identifier: GPL-3.0-or-later
// Numbers that tell by themselves where they stood.
#pragma once

#include <string>
#include <type_traits>

#include "core/array.h"

// A number that no other item, list and cell has, as far as the type can hold it.
template <typename T>
T markof(long i, long list, long cell) {
    const long mark = i * 1000 + list * 100 + cell;
    if constexpr (std::is_same_v<T, std::string>)
        return std::to_string(mark);
    else if constexpr (std::is_same_v<T, Flag>)
        return Flag(mark * 2654435761 % 7 < 3);
    else
        return T(int(mark));
}
