// SPDX-License-Identifier: GPL-3.0-or-later
// Cells and rows.
#include "core/csvout.h"

#include <algorithm>
#include <utility>

void appendcell(std::string& row, std::string_view cell, char separator) {
    const char special[] = {'"', '\r', '\n', separator};
    if (cell.find_first_of(std::string_view(special, sizeof special)) == cell.npos) {
        row += cell;
        return;
    }
    row += '"';
    for (const char c : cell) row.append(c == '"' ? 2 : 1, c);
    row += '"';
}

csvout::csvout(const std::string& path, char s, bool comma)
    : out(path), separator(s), decimalcomma(comma) {}

void csvout::separate() {
    if (std::exchange(started, true)) row += separator;
}

csvout& csvout::cell(std::string_view text) {
    separate();
    appendcell(row, text, separator);
    return *this;
}

csvout& csvout::put(std::string number) {
    separate();
    if (decimalcomma) std::ranges::replace(number, '.', ',');
    row += number;
    return *this;
}

void csvout::endrow() {
    out.raw(row).endline();
    row.clear();
    started = false;
}
