// SPDX-License-Identifier: GPL-3.0-or-later
// The lines of a deck: keywords with their parameters, data with their continuations, includes.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/includedlines.h"

struct deckcard {
    std::string keyword;  // in capitals, single blanks: "SHELL SECTION"
    std::map<std::string, std::string, std::less<>> parameters;  // names in capitals
    long line = 0;

    std::string_view value(std::string_view name) const;  // empty for none
    bool has(std::string_view name) const { return parameters.find(name) != parameters.end(); }
};

// Lines that are read later, and more than once.
using deckdraft = std::vector<std::pair<std::string_view, long>>;

class deckcards {
  public:
    explicit deckcards(const std::string& path) : lines(path) {}
    bool nextcard(deckcard& card);          // passes over what is left of the data
    bool nextdata(std::string_view& line);  // the next data line of the card; false at its end
    long line() const {
        return playing && played > 0 ? (*playing)[played - 1].second : lines.now().number();
    }
    double share() const { return lines.first().share(); }
    [[noreturn]] void fail(const std::string& what) const { lines.now().failat(line(), what); }
    deckdraft draft(std::string_view end);  // the lines up to a card, which is passed over
    void play(const deckdraft& draft);      // its lines come next
    // Fields of a data line, which goes on behind a comma at its end.
    std::vector<std::string_view> fields(std::string_view line);
    std::vector<double> numbers(std::string_view line);  // of such fields, 0 for empty ones
    double real(std::string_view field, const char* what) const;
    long whole(std::string_view field, const char* what) const;

  private:
    bool nextline(std::string_view& line);
    void readparameters(std::string_view line, deckcard& card) const;
    includedlines lines;
    std::string_view ahead;
    bool hasahead = false;
    const deckdraft* playing = nullptr;
    std::size_t played = 0;
    std::string_view behind;  // what comes when it has been played
    bool hasbehind = false;
};
