// SPDX-License-Identifier: GPL-3.0-or-later
// Rectangles of cells as text, to and from a spreadsheet: the clipboard's lines with tabs between
// the cells, and CSV files. Numbers stand in full, so that what comes back unchanged changes
// nothing. In a rectangle with the column " ID " the numbers there decide the rows that are
// written.
#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "tools/numint.h"

// Text cut into rows of cells. A cell in double quotes may hold separators and line ends. The text
// has to outlive the sheet.
struct sheet {
    std::vector<std::string_view> cells;
    std::vector<std::size_t> ends;        // behind the last cell of each row
    std::deque<std::string> quotedcells;  // those with a doubled quote
    std::size_t rows() const { return ends.size(); }
    std::size_t columns(std::size_t row) const { return ends[row] - begin(row); }
    std::string_view cell(std::size_t row, std::size_t column) const {
        return cells[begin(row) + column];
    }

  private:
    std::size_t begin(std::size_t row) const { return row == 0 ? 0 : ends[row - 1]; }
};
sheet readsheet(std::string_view text, char separator);

// The cells of rows and columns as lines for the clipboard.
std::string copycells(const numintform& form, int nt, const std::vector<long>& rows,
                      const std::vector<int>& columns);
// Writes the text's cells from this cell of the right table on. A single cell goes to all `rows`,
// where there are several. Rows beyond the last are new items, asked for once; when a cell of one
// of them can not be stored none is added.
void pastecells(numintform& form, const std::vector<long>& rows, int col, std::string_view text);

// The rows on show as a CSV file in UTF-8. Throws as textout.
void writecsv(numintform& form, int nt, const std::string& path);
// Reads one into the right table. Columns go by the captions of the first line, in any order;
// without captions they are those of the table. Comma, semicolon or tab separates. Throws as
// readwhole.
void readcsv(numintform& form, const std::string& path);
