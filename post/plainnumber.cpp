// SPDX-License-Identifier: GPL-3.0-or-later
// Short numbers.
#include "post/plainnumber.h"

#include <charconv>
#include <cmath>

#include "core/numtext.h"

std::string shorttext(double value) {
    const int digits = 4;
    const double longer = 9999.5, longest = 1e7;
    char text[longestnumber];
    const bool whole = std::fabs(value) >= longer && std::fabs(value) < longest;
    const auto end =
        whole ? std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, 0).ptr
              : std::to_chars(text, text + sizeof text, value, std::chars_format::general, digits)
                    .ptr;
    return {text, end};
}

std::string plainnumber(double value, double scale) {
    const double nothing = 1e-9;
    return shorttext(std::fabs(value) < nothing * scale ? 0 : value);
}
