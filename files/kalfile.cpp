// SPDX-License-Identifier: GPL-3.0-or-later
// The sections of the further file. State: the readers that check them.
#include "files/kalfile.h"

#include <cmath>
#include <map>
#include <optional>

#include "core/kaltext.h"
#include "core/numtext.h"
#include "core/runtime.h"
#include "core/session.h"
#include "core/units.h"
#include "core/unitsrow.h"

static const std::string headstart = "\"section\",\"", endrow = "\"end\"\n";

namespace {
struct section {
    std::string keyword;
    std::size_t head, rows, end, next;  // places in the text; end: of the row that closes it
};
}  // namespace

static std::string headof(const std::string& keyword) {
    return headstart + keyword + "\"\n";
}

static std::size_t linesbefore(const std::string& text, std::size_t at) {
    return std::size_t(std::count(text.begin(), text.begin() + long(at), '\n'));
}

[[noreturn]] static void fail(const std::string& text, std::size_t at, const std::string& name,
                              const std::string& what) {
    throw runtimeerror{errtype,
                       name + ", line " + std::to_string(linesbefore(text, at) + 1) + ": " + what};
}

// The section that begins at or behind a place; none at the end of the text.
static std::optional<section> nextsection(const std::string& text, std::size_t at,
                                          const std::string& name) {
    at = text.find_first_not_of("\n ", at);
    if (at == text.npos) return {};
    section s{"", at, 0, 0, 0};
    const std::size_t line = text.find('\n', at);
    if (text.compare(at, headstart.size(), headstart) != 0 || line == text.npos ||
        line < at + headstart.size() + 1 || text[line - 1] != '"')
        fail(text, at, name, R"(a row "section","keyword" is expected)");
    s.keyword = text.substr(at + headstart.size(), line - 1 - at - headstart.size());
    s.rows = line + 1;
    const std::size_t end = text.find("\n" + endrow, line);
    if (end == text.npos)
        fail(text, at, name, "the section \"" + s.keyword + "\" has no end; the file is cut short");
    s.end = end + 1;
    s.next = s.end + endrow.size();
    return s;
}

static std::optional<section> findsection(const std::string& keyword) {
    for (auto s = nextsection(kaltext, 0, ".kal"); s; s = nextsection(kaltext, s->next, ".kal"))
        if (s->keyword == keyword) return s;
    return {};
}

std::string kalsection(const std::string& keyword) {
    const auto s = findsection(keyword);
    return s ? kaltext.substr(s->rows, s->end - s->rows) : "";
}

void putkalsection(const std::string& keyword, const std::string& rows) {
    std::string text = rows;
    if (!text.empty() && text.back() != '\n') text += '\n';
    if (("\n" + text).find("\n" + endrow) != text.npos)
        throw runtimeerror{errtype, "a row of the section \"" + keyword + "\" would end it"};
    if (!text.empty()) text = headof(keyword) + text + endrow;
    const auto s = findsection(keyword);
    if (s)
        kaltext.replace(s->head, s->next - s->head, text);
    else
        kaltext += text;
}

// Empty lines stand for what comes before, so that a fault counts the file's lines.
static textin readerof(const section& s, const std::string& text, const std::string& name) {
    return {std::string(linesbefore(text, s.rows), '\n') + text.substr(s.rows, s.end - s.rows),
            name};
}

textin kalreader(const std::string& keyword) {
    const auto s = findsection(keyword);
    return s ? readerof(*s, kaltext, modelname + ".kal") : textin("", modelname + ".kal");
}

static std::map<std::string, std::function<void(textin&)>>& checks() {
    static std::map<std::string, std::function<void(textin&)>> rows;
    return rows;
}

void checkkalsection(const std::string& keyword, std::function<void(textin&)> check) {
    checks()[keyword] = std::move(check);
}

// --- the file -----------------------------------------------------------------------------------

bool haskal() {
    return !kaltext.empty() || !unitstext.empty();
}

// The units stand in a variable of their own, since every label asks for them.
static std::string unitsection() {
    if (unitstext.empty()) return {};
    const unitset& set = modelunits();
    std::string row = "\"" + unitstext + "\"";
    if (set.metres > 0)
        for (const double factor : {set.metres, set.newtons, set.kilograms})
            row += "," + numbertext(factor);
    return headof(unitssection) + row + "\n" + endrow;
}

static std::string readunits(textin& in) {
    const std::string text = in.text();
    unitset set;
    if (!findunits(text, set)) in.fail(errtype, "the units \"" + text + "\" are not known");
    if (set.metres == 0) return text;
    for (const double factor : {set.metres, set.newtons, set.kilograms}) {
        const double found = in.number(), same = 1e-6;
        if (!(std::fabs(found - factor) <= same * factor))
            in.fail(errtype, numbertext(found) + " is not the size of a unit of \"" + text + "\"");
    }
    return text;
}

void writekal(textout& out) {
    std::string text;
    for (const char c : unitsection() + kaltext) {
        if (c == '\n') text += '\r';
        text += c;
    }
    out.raw(text);
}

void readkal(const std::string& base) {
    const std::string name = findnocase(base + ".kal");
    std::string text = toutf8(readwhole(name));
    std::erase(text, '\r');
    if (!text.empty() && text.back() != '\n') text += '\n';
    if (text.find('\0') != text.npos) fail(text, text.find('\0'), name, "a byte 0 is no text");
    std::optional<section> units;
    std::string told;
    for (auto s = nextsection(text, 0, name); s; s = nextsection(text, s->next, name)) {
        if (s->keyword == unitssection) {
            textin in = readerof(*s, text, name);
            told = readunits(in);
            units = s;
            continue;
        }
        const auto check = checks().find(s->keyword);
        if (check == checks().end() || !check->second) continue;
        textin in = readerof(*s, text, name);
        check->second(in);
    }
    if (units) text.erase(units->head, units->next - units->head);
    kaltext = text;
    unitstext = told;
}

void dropkal() {
    kaltext.clear();
    unitstext.clear();
}
