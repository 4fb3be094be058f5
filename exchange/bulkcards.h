// SPDX-License-Identifier: GPL-3.0-or-later
// Cards of a bulk data file, whatever the form of their fields.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/includedlines.h"

struct bulkcard {
    std::string name;                      // in capitals
    std::vector<std::string_view> fields;  // 0 is the name; of a card on several lines all together
    long line = 0;
    const textlines* in = nullptr;

    std::string_view text(std::size_t i) const {
        return i < fields.size() ? fields[i] : std::string_view();
    }
    bool has(std::size_t i) const { return !text(i).empty(); }
    // Each throws with file and line where the field holds something else; empty is `otherwise`.
    double real(std::size_t i, double otherwise = 0) const;
    long whole(std::size_t i, long otherwise = 0) const;
};

class bulkcards {
  public:
    explicit bulkcards(const std::string& path);
    // Lines before BEGIN BULK are handed out as one card each, fields split at blanks, commas and
    // equal signs.
    bool next(bulkcard& card);
    bool incontrol() const { return control; }
    double share() const { return lines.first().share(); }

  private:
    bool nextline(std::string_view& line);
    void addfields(std::string_view line, bulkcard& card) const;
    bool continues(std::string_view line) const;
    void include(std::string_view line);
    std::string_view widen(std::string_view line);
    includedlines lines;
    std::vector<std::unique_ptr<std::string>> widened;  // lines whose tabs became blanks
    std::string_view ahead;
    bool hasahead = false, control = false, ended = false;
};

// A real number without E before the sign of its exponent: 1.5-3.
bool readbulkreal(std::string_view text, double& number);
