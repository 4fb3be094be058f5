// SPDX-License-Identifier: GPL-3.0-or-later
// Keywords and data lines.
#include "exchange/deckcards.h"

#include <algorithm>
#include <utility>

std::string_view deckcard::value(std::string_view name) const {
    const auto at = parameters.find(name);
    return at == parameters.end() ? std::string_view() : std::string_view(at->second);
}

// The next line that is no comment and not empty; what was included ends before what waits.
bool deckcards::nextline(std::string_view& line) {
    if (hasahead) {
        hasahead = false;
        line = ahead;
        return true;
    }
    if (playing && played < playing->size()) {
        line = (*playing)[played++].first;
        return true;
    }
    playing = nullptr;
    if (std::exchange(hasbehind, false)) {
        line = behind;
        return true;
    }
    while (lines.next(line)) {
        line = trimmed(line);
        if (!line.empty() && !line.starts_with("**")) return true;
    }
    return false;
}

deckdraft deckcards::draft(std::string_view end) {
    deckdraft kept;
    std::string_view line;
    while (nextline(line)) {
        deckcard card;
        if (line.starts_with('*')) readparameters(line.substr(1), card);
        if (card.keyword == end) return kept;
        if (card.keyword == "INCLUDE")
            lines.include(card.value("INPUT"));
        else
            kept.push_back({line, this->line()});
    }
    fail("the card *" + std::string(end) + " is missing");
}

void deckcards::play(const deckdraft& draft) {
    if (playing) fail("an instance stands within a part");
    behind = ahead;
    hasbehind = std::exchange(hasahead, false);
    playing = draft.empty() ? nullptr : &draft;
    played = 0;
}

bool deckcards::nextdata(std::string_view& line) {
    if (!nextline(line)) return false;
    if (!line.starts_with('*')) return true;
    ahead = line;
    hasahead = true;
    return false;
}

bool deckcards::nextcard(deckcard& card) {
    std::string_view line;
    while (nextline(line)) {
        if (!line.starts_with('*')) continue;
        card = {};
        card.line = this->line();
        std::string whole(line);
        while (whole.ends_with(',') && nextline(line)) whole += std::string(line);
        readparameters(std::string_view(whole).substr(1), card);
        if (card.keyword != "INCLUDE") return true;
        lines.include(card.value("INPUT"));
    }
    return false;
}

void deckcards::readparameters(std::string_view line, deckcard& card) const {
    std::string_view field;
    nextfield(line, field);
    for (std::string_view word; nextword(field, word);)
        card.keyword += (card.keyword.empty() ? "" : " ") + uppercase(word);
    while (nextfield(line, field)) {
        const std::size_t equals = field.find('=');
        const std::string name = uppercase(trimmed(field.substr(0, equals)));
        std::string_view value = equals == field.npos ? "" : trimmed(field.substr(equals + 1));
        if (value.size() > 1 && value.front() == '"' && value.back() == '"')
            value = value.substr(1, value.size() - 2);
        card.parameters[name] = std::string(value);
    }
}

// Nothing outside the deck's own folder is opened on its behalf, and no file without end.
std::vector<std::string_view> deckcards::fields(std::string_view line) {
    std::vector<std::string_view> list;
    std::string_view field;
    while (nextfield(line, field)) list.push_back(field);
    return list;
}

std::vector<double> deckcards::numbers(std::string_view line) {
    std::vector<double> list;
    for (const std::string_view field : fields(line))
        list.push_back(field.empty() ? 0 : real(field, "a number"));
    return list;
}

double deckcards::real(std::string_view field, const char* what) const {
    double number = 0;
    if (!readreal(field, number)) fail(std::string(what) + " was expected, found " + shown(field));
    return number;
}

long deckcards::whole(std::string_view field, const char* what) const {
    long number = 0;
    if (!readwholenumber(field, number))
        fail(std::string(what) + " was expected, found " + shown(field));
    return number;
}
