// SPDX-License-Identifier: GPL-3.0-or-later
// Cards of a bulk data file, whatever the form of their fields. Cards come in any order and are
// taken by kind: a first look tells the name and the place of each, its fields are read when it is
// needed.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/includedlines.h"

struct cardplace {
    textlines* in = nullptr;
    const char* start = nullptr;
    long line = 0;
};

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
    // equal signs. Behind it a card comes without its fields.
    bool next(bulkcard& card);
    bool incontrol() const { return control; }
    cardplace place() const { return last; }  // of the last card
    double share() const { return lines.first().share(); }
    // The fields of a card, once all have come by; its name stays. They are views into the file,
    // or into this until the next card is filled.
    void fill(const cardplace& at, bulkcard& card);

  private:
    bool nextline(std::string_view& line);
    bool nextcontrol(std::string_view line, bulkcard& card);
    void addfields(std::string_view line, bulkcard& card) const;
    void include(std::string_view line);
    std::string_view widen(std::string_view line);
    includedlines lines;
    cardplace last;
    std::vector<std::unique_ptr<std::string>> widened;  // lines whose tabs became blanks
    bool control = false, ended = false;
};

// A real number without E before the sign of its exponent: 1.5-3.
bool readbulkreal(std::string_view text, double& number);
