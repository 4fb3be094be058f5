// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

// The text without blanks, tabs and line ends around it.
inline std::string_view trimmed(std::string_view text) {
    const std::string_view blanks = " \t\r\n";
    const std::size_t begin = text.find_first_not_of(blanks);
    if (begin == text.npos) return {};
    return text.substr(begin, text.find_last_not_of(blanks) + 1 - begin);
}
