// SPDX-License-Identifier: GPL-3.0-or-later
// Lines, variables and units of a MOSES text.
#include "exchange/mosesdeck.h"

#include <algorithm>
#include <utility>

#include "exchange/imported.h"

static const std::size_t longestvalue = 256;        // of a variable, characters
static const std::size_t mostgrowth = 256UL << 20;  // by variables, bytes in all

static bool separates(char c) {
    return c == ' ' || c == '\t' || c == ',';
}

bool nextmosesword(std::string_view& text, std::string_view& word) {
    std::size_t begin = 0;
    while (begin < text.size() && separates(text[begin])) ++begin;
    std::size_t end = begin;
    while (end < text.size() && !separates(text[end])) ++end;
    word = text.substr(begin, end - begin);
    text.remove_prefix(end);
    return !word.empty();
}

bool isoption(std::string_view word) {
    return word.size() > 1 && word[0] == '-' &&
           ((word[1] >= 'a' && word[1] <= 'z') || (word[1] >= 'A' && word[1] <= 'Z'));
}

bool shortens(std::string_view word, std::string_view name, std::size_t least) {
    return word.size() >= least && word.size() <= name.size() &&
           sameword(word, name.substr(0, word.size()));
}

// Macros, conditions and loops: what stands in them may hold or not.
static const char* endofblock(std::string_view word) {
    static const char* const blocks[][2] = {
        {"&MACRO", "&ENDMACRO"}, {"&IF", "&ENDIF"}, {"&LOOP", "&ENDLOOP"}};
    for (const auto& block : blocks)
        if (sameword(word, block[0])) return block[1];
    return nullptr;
}

static bool isoneof(std::string_view word, std::initializer_list<std::string_view> names) {
    return std::ranges::any_of(names, [&](std::string_view name) { return sameword(word, name); });
}

static const mosesunits* findunits(bool ismetric, std::string_view force) {
    const double foot = 0.3048, pound = 0.00045359237, shortton = 8.896443230521,
                 longton = 9.9640164181707;
    static const mosesunits metric[] = {{1, 1, true, "metres", "kN", "m kN t", 1},
                                        {1, 9.80665, true, "metres", "tonnes force", "m tf t", 1}};
    static const mosesunits english[] = {
        {foot, 4.4482216152605, false, "feet", "kips", "ft kip lb", pound},
        {foot, longton, false, "feet", "long tons force", "", pound},
        {foot, shortton, false, "feet", "short tons force", "", pound}};
    if (isoneof(force, {"K-NTS", "K-NT", "KNTS", "KN", "K-N", "K-NEWTONS"}))
        return ismetric ? &metric[0] : nullptr;
    if (isoneof(force, {"M-TONS", "M-TON", "MTONS"})) return ismetric ? &metric[1] : nullptr;
    if (isoneof(force, {"KIPS", "KIP"})) return ismetric ? nullptr : &english[0];
    if (isoneof(force, {"L-TONS", "L-TON", "LTONS"})) return ismetric ? nullptr : &english[1];
    if (isoneof(force, {"S-TONS", "S-TON", "STONS"})) return ismetric ? nullptr : &english[2];
    return nullptr;
}

mosesdeck::mosesdeck(std::string content, const std::string& name, importreport& r)
    : in(std::move(content), name), report(r) {
    variables["PO"] = "*";  // the mark of a point, where the text does not set it
    std::string_view text;
    long line = 0;
    while (nextraw(text, line)) {
        std::string_view rest = text, word;
        if (!nextmosesword(rest, word) || isskipped(word, line)) continue;
        if (replacevariables(text, line)) interpret(text, line);
        const std::size_t often = 8192;
        if (all.size() % often == 0) readingprogress(in.name(), in.share() / 2);
    }
    if (!until.empty()) report.error("the block " + skipping + " does not end", skippedline);
    if (systems.empty()) {
        systems.emplace_back();
        if (!all.empty()) report.warn("No units are told; they are taken as metres and kN");
    }
    model = systems[0].ismetric ? systems[0] : *findunits(false, "KIPS");
}

// Takes a continuation mark off the end of a line.
static bool takecontinuation(std::string_view& text) {
    if (text.empty() || text.back() != '\\') return false;
    if (text.size() > 1 && !separates(text[text.size() - 2])) return false;
    text.remove_suffix(1);
    return true;
}

// A statement as it stands, without comments, continued lines joined; false at the end.
bool mosesdeck::nextraw(std::string_view& text, long& line) {
    std::string* joined = nullptr;
    std::string_view piece;
    while (in.next(piece)) {
        const std::size_t comment = piece.find('$');
        const bool isremark = trimmed(piece).starts_with('$');
        if (joined && isremark) continue;
        piece = trimmed(piece.substr(0, comment));
        const bool goeson = takecontinuation(piece);
        if (!joined) line = in.number();
        if (goeson && !joined) joined = &kept.emplace_back();
        if (joined) joined->append(piece).push_back(' ');
        if (goeson) continue;
        text = joined ? trimmed(*joined) : piece;
        return true;
    }
    if (joined) report.error("the file ends after a continuation mark", in.number());
    return false;
}

bool mosesdeck::isskipped(std::string_view word, long line) {
    if (until.empty()) {
        const char* const end = endofblock(word);
        if (end == nullptr) return false;
        skipping = uppercase(word);
        until = end;
        skippedline = line;
        skipdepth = 1;
        report.warn("Blocks " + skipping + " are not read", line);
        return true;
    }
    if (sameword(word, skipping)) ++skipdepth;
    if (sameword(word, until) && --skipdepth == 0) until.clear();
    return true;
}

// Takes a variable, whose % has been passed, off the front of the text.
bool mosesdeck::findvariable(std::string_view& rest, std::string_view& value, long line) {
    std::size_t end = 0, behind = 0;
    if (rest.starts_with('(')) {
        rest.remove_prefix(1);
        end = rest.find(')');
        if (end == rest.npos) {
            report.error("the name of a variable does not end: " + shown(rest), line);
            return false;
        }
        behind = end + 1;
    } else {
        while (end < rest.size() && rest[end] != '%' && !separates(rest[end])) ++end;
        behind = end + (end < rest.size() && rest[end] == '%' ? 1 : 0);
    }
    const std::string_view name = rest.substr(0, end);
    const auto at = name.size() <= longestvalue ? variables.find(uppercase(name)) : variables.end();
    if (at == variables.end()) {
        report.error("variable " + shown(name) + " is not set", line);
        return false;
    }
    value = at->second;
    rest.remove_prefix(behind);
    return true;
}

// Text by text, once: what a variable holds is not looked through again. False where the line can
// not be read.
bool mosesdeck::replacevariables(std::string_view& text, long line) {
    std::size_t mark = text.find('%');
    if (mark == text.npos) return true;
    std::string& result = kept.emplace_back();
    std::string_view rest = text, value;
    for (; mark != rest.npos; mark = rest.find('%')) {
        result.append(rest.substr(0, mark));
        rest.remove_prefix(mark + 1);
        if (!findvariable(rest, value, line)) {
            kept.pop_back();
            return false;
        }
        result.append(value);
        growth += value.size();
        if (growth > mostgrowth) in.failat(line, "variables make the text grow beyond all bounds");
    }
    text = result.append(rest);
    return true;
}

void mosesdeck::interpret(std::string_view text, long line) {
    std::string_view rest = text, word;
    if (!nextmosesword(rest, word)) return;
    if (sameword(word, "&SET") || sameword(word, "&LOCAL"))
        assign(rest, line);
    else if (shortens(word, "&DIMENSION", 4))
        dimension(rest, line);
    else
        all.push_back({line, current, text});
}

// name = value name = value ...: a value goes as far as the next name.
void mosesdeck::assign(std::string_view text, long line) {
    std::size_t equals = text.find('=');
    std::string_view name = trimmed(text.substr(0, equals));
    if (equals == text.npos || name.empty())
        return report.error("a variable is set by name = value", line);
    while (!name.empty()) {
        text.remove_prefix(equals + 1);
        equals = text.find('=');
        std::string_view value = text.substr(0, equals), next;
        if (equals != text.npos) {
            while (!value.empty() && separates(value.back())) value.remove_suffix(1);
            std::size_t begin = value.size();
            while (begin > 0 && !separates(value[begin - 1])) --begin;
            next = value.substr(begin);
            value = value.substr(0, begin);
        }
        while (!value.empty() && separates(value.front())) value.remove_prefix(1);
        while (!value.empty() && separates(value.back())) value.remove_suffix(1);
        if (name.size() > longestvalue || value.size() > longestvalue)
            return report.error("the value of a variable has more than " +
                                    std::to_string(longestvalue) + " characters",
                                line);
        variables[uppercase(name)] = value;
        name = next;
    }
}

void mosesdeck::dimension(std::string_view text, long line) {
    std::string_view word, length, force;
    while (nextmosesword(text, word)) {
        if (shortens(word, "-SAVE", 2))
            saved = current;
        else if (shortens(word, "-REMEMBER", 2))
            current = saved;
        else if (shortens(word, "-DIMENSION", 2)) {
            if (!nextmosesword(text, length) || !nextmosesword(text, force))
                return report.error("&DIMEN needs a unit of length and one of force", line);
            setunits(length, force, line);
        } else
            report.error("word " + shown(word) + " of &DIMEN is not known", line);
    }
}

void mosesdeck::setunits(std::string_view length, std::string_view force, long line) {
    const bool metres = isoneof(length, {"M", "METER", "METERS", "METRE", "METRES"});
    if (!metres && !isoneof(length, {"F", "FT", "FOOT", "FEET"}))
        return report.error("unit of length " + shown(length) + " is not known", line);
    const mosesunits* const units = findunits(metres, force);
    if (units == nullptr)
        return report.error("unit " + shown(length) + " does not go with " + shown(force), line);
    const auto same = [&](const mosesunits& u) { return u.forcename == units->forcename; };
    current = int(std::ranges::find_if(systems, same) - systems.begin());
    if (current == int(systems.size())) systems.push_back(*units);
}
