// SPDX-License-Identifier: GPL-3.0-or-later
// The lines of a deck: keywords with their parameters, data with their continuations, includes.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/textlines.h"

struct deckcard {
    std::string keyword;  // in capitals, single blanks: "SHELL SECTION"
    std::map<std::string, std::string, std::less<>> parameters;  // names in capitals
    long line = 0;

    std::string_view value(std::string_view name) const;  // empty for none
    bool has(std::string_view name) const { return parameters.find(name) != parameters.end(); }
};

class deckcards {
  public:
    explicit deckcards(const std::string& path);
    bool nextcard(deckcard& card);          // passes over what is left of the data
    bool nextdata(std::string_view& line);  // the next data line of the card; false at its end
    long line() const { return files.back()->number(); }
    double share() const { return files.front()->share(); }
    [[noreturn]] void fail(const std::string& what) const { files.back()->fail(what); }
    // Fields of a data line, which goes on behind a comma at its end.
    std::vector<std::string_view> fields(std::string_view line);
    double real(std::string_view field, const char* what) const;
    long whole(std::string_view field, const char* what) const;

  private:
    bool nextline(std::string_view& line);
    void include(const deckcard& card);
    void readparameters(std::string_view line, deckcard& card) const;
    std::string folder;
    std::vector<std::unique_ptr<textlines>> files;   // the last is read, the others wait
    std::vector<std::unique_ptr<textlines>> passed;  // kept: fields are views into them
    std::size_t included = 0;
    std::string_view ahead;
    bool hasahead = false;
};
