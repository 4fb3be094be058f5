// SPDX-License-Identifier: GPL-3.0-or-later
// Tables as text for a spreadsheet: cells with a separator between them, UTF-8, one line a row.
#pragma once

#include <string>
#include <string_view>

#include "core/numtext.h"
#include "core/textfile.h"

// Appends a cell, in quotes where it holds a quote, a line end or the separator.
void appendcell(std::string& row, std::string_view cell, char separator);

// Rows go to the file as they come; it is there whole or not at all.
class csvout {
  public:
    // Throws errpathaccess. A decimal comma is for spreadsheets of countries that write one.
    explicit csvout(const std::string& path, char separator = ',', bool decimalcomma = false);

    csvout& cell(std::string_view text);
    csvout& cell(const char* text) { return cell(std::string_view(text)); }
    // A Single and a Double stand with the digits that read back equal.
    csvout& cell(float number) { return put(numbertext(number)); }
    csvout& cell(double number) { return put(numbertext(number)); }
    csvout& cell(int number) { return put(numbertext(number)); }
    void endrow();
    // Takes the target's place. Throws errdiskfull, errpathaccess.
    void commit() { out.commit(); }

  private:
    csvout& put(std::string number);
    void separate();
    textout out;
    const char separator;
    const bool decimalcomma;
    std::string row;
    bool started = false;
};
