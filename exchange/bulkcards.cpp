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

// Without its comment and the blanks before that.
static std::string_view contentof(std::string_view line) {
    line = line.substr(0, line.find('$'));
    while (!line.empty() && (line.back() == ' ' || line.back() == '\t')) line.remove_suffix(1);
    return line;
}

static bool continues(std::string_view line) {
    return std::string_view("+* ,\t").find(line.front()) != std::string_view::npos;
}

bool bulkcards::nextline(std::string_view& line) {
    while (lines.next(line)) {
        line = contentof(line);
        if (!line.empty()) return true;
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

// The first field is the name or the mark of a continuation.
void bulkcards::addfields(std::string_view line, bulkcard& card) const {
    std::vector<std::string_view>& fields = card.fields;
    const bool first = fields.empty();
    const std::size_t perline = 8;
    if (line.find(',') != line.npos) {
        std::string_view field;
        nextfield(line, field);
        if (first) fields.push_back(field);
        // Behind the eighth stands a mark of what follows. Where something does, each line fills
        // eight fields.
        for (std::size_t i = 0; i < perline && nextfield(line, field); ++i) fields.push_back(field);
        while ((fields.size() - 1) % perline != 0) fields.emplace_back();
        return;
    }
    const std::string_view name = trimmed(line.substr(0, std::min(line.size(), std::size_t(8))));
    const bool islarge = name.ends_with('*') || name.starts_with('*');
    const std::size_t width = islarge ? 16 : 8, count = islarge ? 4 : perline;
    if (first) fields.push_back(name);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t at = 8 + i * width;
        fields.push_back(at < line.size() ? trimmed(line.substr(at, width)) : std::string_view());
    }
}

void bulkcards::fill(const cardplace& at, bulkcard& card) {
    const std::size_t most = 100000;  // fields of one card
    card.fields.clear();
    card.in = at.in;
    card.line = at.line;
    widened.clear();
    at.in->seek(at.start, at.line);
    std::string_view line;
    while (card.fields.size() <= most && at.in->next(line)) {
        line = contentof(line);
        if (line.empty()) continue;
        if (!card.fields.empty() && !continues(line)) break;
        addfields(line.find('\t') == line.npos ? line : widen(line), card);
    }
}

void bulkcards::include(std::string_view line) {
    const std::size_t begin = line.find_first_of("'\""), end = line.find_last_of("'\"");
    std::string_view name = trimmed(line.substr(std::min(line.size(), std::size_t(7))));
    if (begin != line.npos && end > begin) name = line.substr(begin + 1, end - begin - 1);
    lines.include(name);
}

bool bulkcards::nextcontrol(std::string_view line, bulkcard& card) {
    if (uppercase(line).find("BEGIN BULK") != std::string::npos) {
        control = false;
        return false;
    }
    while (!line.empty()) {
        const std::size_t end = line.find_first_of(" =,\t");
        if (end != 0) card.fields.push_back(line.substr(0, end));
        line.remove_prefix(end == line.npos ? line.size() : end + 1);
    }
    if (card.fields.empty()) return false;
    card.name = uppercase(card.fields[0]);
    return true;
}

bool bulkcards::next(bulkcard& card) {
    std::string_view line;
    while (!ended && nextline(line)) {
        if (!control && continues(line)) continue;
        textlines& in = lines.now();
        last = {&in, in.start(), in.number()};
        card.fields.clear();
        card.in = &in;
        card.line = last.line;
        if (sameword(line.substr(0, 7), "INCLUDE")) {
            include(line);
            continue;
        }
        if (control) {
            if (nextcontrol(line, card)) return true;
            continue;
        }
        std::string_view name = line.substr(0, 8);
        name = trimmed(name.substr(0, name.find_first_of(",\t")));
        if (name.ends_with('*')) name.remove_suffix(1);
        card.name.assign(name);
        for (char& c : card.name)
            if (c >= 'a' && c <= 'z') c = char(c - 'a' + 'A');
        ended = card.name == "ENDDATA";
        if (!ended) return true;
    }
    return false;
}
