// SPDX-License-Identifier: GPL-3.0-or-later
// Fields and continuations.
#include "exchange/bulkcards.h"

#include <algorithm>

bool readbulkreal(std::string_view text, double& number) {
    if (readreal(text, number)) return true;
    const std::size_t sign = text.find_last_of("+-");
    if (sign == text.npos || sign == 0) return false;
    return readreal(std::string(text.substr(0, sign)) + "E" + std::string(text.substr(sign)),
                    number);
}

double bulkcard::real(std::size_t i, double otherwise) const {
    double number = otherwise;
    if (has(i) && !readbulkreal(text(i), number))
        in->failat(line, "field " + numbertext(int(i) + 1) + " of " + name +
                             ": a number was expected, found " + shown(text(i)));
    return number;
}

long bulkcard::whole(std::size_t i, long otherwise) const {
    long number = otherwise;
    if (has(i) && !readwholenumber(text(i), number))
        in->failat(line, "field " + numbertext(int(i) + 1) + " of " + name +
                             ": a whole number was expected, found " + shown(text(i)));
    return number;
}

bulkcards::bulkcards(const std::string& path) : lines(path) {
    // Without the mark everything is bulk data.
    const std::string_view rest = lines.first().rest();
    control =
        uppercase(rest.substr(0, std::min(rest.size(), std::size_t(1) << 20))).find("BEGIN BULK") !=
        std::string::npos;
}

bool bulkcards::nextline(std::string_view& line) {
    if (hasahead) {
        hasahead = false;
        line = ahead;
        return true;
    }
    while (lines.next(line)) {
        line = line.substr(0, line.find('$'));
        while (!line.empty() && (line.back() == ' ' || line.back() == '\t')) line.remove_suffix(1);
        if (line.empty()) continue;
        if (line.find('\t') != line.npos) line = widen(line);
        return true;
    }
    return false;
}

// Tabs go to the next field of eight columns.
std::string_view bulkcards::widen(std::string_view line) {
    widened.push_back(std::make_unique<std::string>());
    std::string& wide = *widened.back();
    const std::size_t stop = 8;
    for (const char c : line)
        wide += c == '\t' ? std::string(stop - wide.size() % stop, ' ') : std::string(1, c);
    return wide;
}

bool bulkcards::continues(std::string_view line) const {
    return line.front() == '+' || line.front() == '*' || line.front() == ' ' || line.front() == ',';
}

// The first field is the name or the mark of a continuation.
void bulkcards::addfields(std::string_view line, bulkcard& card) const {
    const bool first = card.fields.empty();
    if (line.find(',') != line.npos) {
        std::string_view field;
        std::vector<std::string_view> fields;
        while (nextfield(line, field)) fields.push_back(field);
        const std::size_t most = 10;  // the last is a mark of what follows
        if (fields.size() >= most) fields.resize(most - 1);
        if (first) card.fields.push_back(fields[0]);
        // On what is continued each line fills eight fields.
        card.fields.insert(card.fields.end(), fields.begin() + 1, fields.end());
        const std::size_t perline = 8;
        while ((card.fields.size() - 1) % perline != 0) card.fields.emplace_back();
        return;
    }
    const std::string_view name = trimmed(line.substr(0, std::min(line.size(), std::size_t(8))));
    const bool islarge = name.ends_with('*') || name.starts_with('*');
    const std::size_t width = islarge ? 16 : 8, perline = islarge ? 4 : 8;
    if (first) card.fields.push_back(name);
    for (std::size_t i = 0; i < perline; ++i) {
        const std::size_t at = 8 + i * width;
        card.fields.push_back(at < line.size() ? trimmed(line.substr(at, width))
                                               : std::string_view());
    }
}

void bulkcards::include(std::string_view line) {
    const std::size_t begin = line.find_first_of("'\""), end = line.find_last_of("'\"");
    std::string_view name = trimmed(line.substr(std::min(line.size(), std::size_t(7))));
    if (begin != line.npos && end > begin) name = line.substr(begin + 1, end - begin - 1);
    lines.include(name);
}

bool bulkcards::next(bulkcard& card) {
    std::string_view line;
    if (ended) return false;
    while (nextline(line)) {
        card.fields.clear();
        card.in = &lines.now();
        card.line = card.in->number();
        if (sameword(line.substr(0, 7), "INCLUDE")) {
            include(line);
            continue;
        }
        if (control) {
            std::string_view rest = line;
            if (uppercase(line).find("BEGIN BULK") != std::string::npos) {
                control = false;
                continue;
            }
            while (!rest.empty()) {
                const std::size_t end = rest.find_first_of(" =,");
                if (end != 0) card.fields.push_back(rest.substr(0, end));
                rest.remove_prefix(end == rest.npos ? rest.size() : end + 1);
            }
            if (card.fields.empty()) continue;
            card.name = uppercase(card.fields[0]);
            return true;
        }
        if (continues(line)) continue;  // of a card that was not understood
        addfields(line, card);
        while (nextline(line)) {
            const std::size_t most = 100000;  // fields of one card
            if (!continues(line) || card.fields.size() > most) {
                ahead = line;
                hasahead = true;
                break;
            }
            addfields(line, card);
        }
        card.name = uppercase(card.fields[0]);
        if (card.name.ends_with('*')) card.name.pop_back();
        if (card.name != "ENDDATA") return true;
        ended = true;
        return false;
    }
    return false;
}
