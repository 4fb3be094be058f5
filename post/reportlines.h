// SPDX-License-Identifier: GPL-3.0-or-later
// Lines of a report in print zones: a field goes on from the one before it or begins at the next
// multiple of fourteen columns.
#pragma once

#include <string>
#include <string_view>

#include "core/textfile.h"

const int zonewidth = 14;

class reportlines {
  public:
    explicit reportlines(const std::string& target);  // throws errpathaccess

    reportlines& text(std::string_view utf8);
    // No more than so many characters of a name: what follows keeps its column.
    reportlines& cut(std::string_view utf8, int most = zonewidth - 1);
    // On to the next zone, one that has not begun: at least one blank parts two fields.
    reportlines& zone();
    // Blanks up to a column that a table's own headings fix; none where the line is there already.
    reportlines& column(int wanted);
    // A positive number has a leading blank. It keeps all its digits as far as a zone has room for
    // them and is rounded to what fits otherwise, so that columns stand under each other.
    reportlines& raw(float number);
    reportlines& raw(double number);
    reportlines& raw(int number);
    reportlines& sci(double number);  // 1.23E+04
    void end();                       // ends the line
    void line(std::string_view utf8);
    void empty(int count = 1);

    // Takes the target's place. Throws errdiskfull or errpathaccess.
    void commit();

  private:
    template <typename Number>
    reportlines& fitted(Number number);
    textout out;
    std::string row;
    int at = 0;  // characters of the row so far
};
