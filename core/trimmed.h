// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

// The text without blanks, tabs and line ends around it. Readers call it for every field of a file,
// so it looks at characters one by one, where a search of the library takes a call for each.
inline std::string_view trimmed(std::string_view text) {
    const auto isblank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    while (!text.empty() && isblank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isblank(text.back())) text.remove_suffix(1);
    return text;
}
