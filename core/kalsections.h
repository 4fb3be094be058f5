// SPDX-License-Identifier: GPL-3.0-or-later
// The form of the further file BASE.kal, for all who read it:
//
//     "section","keyword"
//     ...                       rows of the section
//     "end"
#pragma once

#include <optional>
#include <string>

extern const std::string kalheadstart, kalendrow;

struct kalsectionplace {
    std::string keyword;
    std::size_t head, rows, end, next;  // places in the text; end: of the row that closes it
};

// The file's text as UTF-8 with LF at the end of each line. Throws as readwhole does, and errtype
// for a byte 0.
std::string readkaltext(const std::string& name);

// The section that begins at or behind a place; none at the end of the text. Throws errtype with
// name and line for what is no whole section.
std::optional<kalsectionplace> nextkalsection(const std::string& text, std::size_t at,
                                              const std::string& name);

std::size_t linesbeforekal(const std::string& text, std::size_t at);
