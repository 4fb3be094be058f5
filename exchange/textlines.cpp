// SPDX-License-Identifier: GPL-3.0-or-later
// Lines, words and fields over one buffer.
#include "exchange/textlines.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <utility>

#include "core/textfile.h"

textlines::textlines(const std::string& path) : textlines(readwhole(path), path) {}

textlines::textlines(std::string text, std::string name)
    : content(std::move(text)), filename(std::move(name)) {
    at = content.data();
    last = at + content.size();
    const std::string_view mark = "\xEF\xBB\xBF";
    if (content.starts_with(mark)) at += mark.size();
    linestart = at;
    feed = at - 1;
}

static bool isblank(char c) {
    return c == ' ' || c == '\t';
}

bool textlines::next(std::string_view& line) {
    linestart = at;
    if (at == last) return false;
    ++count;
    if (feed < at) {  // looked for once, where lines end with CR alone
        feed = static_cast<const char*>(std::memchr(at, '\n', std::size_t(last - at)));
        if (feed == nullptr) feed = last;
    }
    const char* end = feed;
    // A lone carriage return ends a line too.
    const auto* const cr = static_cast<const char*>(std::memchr(at, '\r', std::size_t(end - at)));
    const char* behind = end == last ? last : end + 1;
    if (cr != nullptr && cr + 1 != end) behind = cr + 1;
    if (cr != nullptr) end = cr;
    while (end != at && isblank(end[-1])) --end;
    line = {at, std::size_t(end - at)};
    at = behind;
    return true;
}

void textlines::stepback() {
    if (at != linestart) --count;
    at = linestart;
    feed = at - 1;
}

void textlines::seek(const char* start, long number) {
    at = linestart = start;
    feed = at - 1;
    count = number - 1;
}

double textlines::share() const {
    return content.empty() ? 1 : double(at - content.data()) / double(content.size());
}

void textlines::pass(std::size_t bytes) {
    at += std::min(bytes, std::size_t(last - at));
    linestart = at;
    feed = at - 1;
}

void textlines::countlines(long passed) {
    count = passed;
}

void textlines::fail(const std::string& what) const {
    failat(count, what);
}

void textlines::failat(long line, const std::string& what) const {
    throw runtimeerror{errtype, filename + ", line " + std::to_string(line) + ": " + what};
}

wordstream::wordstream(textlines& lines) : in(lines), firstline(lines.number() + 1) {
    first = at = token = lines.rest().data();
    last = first + lines.rest().size();
}

static bool isspace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

void wordstream::toword() {
    while (at != last && isspace(*at)) ++at;
    token = at;
}

bool wordstream::atend() {
    toword();
    return at == last;
}

bool wordstream::word(std::string_view& word) {
    if (atend()) return false;
    while (at != last && !isspace(*at)) ++at;
    word = {token, std::size_t(at - token)};
    return true;
}

double wordstream::real(const char* what) {
    toword();
    double number = 0;
    if (scannumber(at, last, number, at) != numberfault::none || (at != last && !isspace(*at)))
        failword(what);
    return number;
}

long wordstream::whole(const char* what) {
    toword();
    if (at != last && *at == '+') ++at;
    long number = 0;
    const int few = 18;  // digits that a long surely holds
    const char* c = at;
    while (c != last && *c >= '0' && *c <= '9' && c - at < few) number = 10 * number + (*c++ - '0');
    if (c != at && c != last && isspace(*c)) {
        at = c;
        return number;
    }
    const auto result = std::from_chars(at, last, number);
    at = result.ptr;
    if (result.ec != std::errc() || (at != last && !isspace(*at))) failword(what);
    return number;
}

void wordstream::failword(const char* what) {
    at = token;
    std::string_view found;
    if (!word(found)) fail(std::string("the file ends where ") + what + " was expected");
    fail(std::string(what) + " was expected, found " + shown(found));
}

static bool endsline(const char* c, const char* last) {
    return *c == '\n' || (*c == '\r' && (c + 1 == last || c[1] != '\n'));
}

// Line feeds, eight characters at a time: a byte that is one becomes 0, and of such the top bit is
// left.
static long linefeeds(const char* c, const char* last) {
    const std::uint64_t feeds = 0x0A0A0A0A0A0A0A0A, low = 0x7F7F7F7F7F7F7F7F;
    long count = 0;
    for (std::uint64_t eight; last - c >= long(sizeof eight); c += sizeof eight) {
        std::memcpy(&eight, c, sizeof eight);
        eight ^= feeds;
        count += std::popcount(~(((eight & low) + low) | eight | low));
    }
    return count + std::count(c, last, '\n');
}

long wordstream::line() const {
    if (std::memchr(first, '\r', std::size_t(token - first)) == nullptr)
        return firstline + linefeeds(first, token);
    long count = firstline;
    for (const char* c = first; c != token; ++c) count += endsline(c, last);
    return count;
}

void wordstream::giveback() {
    in.pass(std::size_t(at - first));
    std::string_view passed;
    in.countlines(line() - 1);
    in.next(passed);  // what is left of the last word's line
}

bool nextword(std::string_view& line, std::string_view& word) {
    std::size_t begin = 0;
    while (begin < line.size() && isblank(line[begin])) ++begin;
    if (begin == line.size()) {
        line = {};
        return false;
    }
    std::size_t end = begin + 1;
    while (end < line.size() && !isblank(line[end])) ++end;
    word = line.substr(begin, end - begin);
    line.remove_prefix(end);
    return true;
}

bool nextfield(std::string_view& line, std::string_view& field, char separator) {
    if (line.empty()) return false;
    const std::size_t end = line.find(separator);
    field = trimmed(line.substr(0, end));
    line.remove_prefix(end == line.npos ? line.size() : end + 1);
    return true;
}

bool readreal(std::string_view text, double& number) {
    text = trimmed(text);
    const char* end = nullptr;
    double value = 0;
    const char* const behind = text.data() + text.size();
    if (scannumber(text.data(), behind, value, end) != numberfault::none || end != behind)
        return false;
    number = value;
    return true;
}

bool readwholenumber(std::string_view text, long& number) {
    text = trimmed(text);
    if (text.size() > 1 && text.front() == '+' && text[1] != '-') text.remove_prefix(1);
    long value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return false;
    number = value;
    return true;
}

static char upper(char c) {
    return c >= 'a' && c <= 'z' ? char(c - 'a' + 'A') : c;
}

std::string uppercase(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), upper);
    return result;
}

bool sameword(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, {}, upper, upper);
}

std::string shown(std::string_view text) {
    const std::size_t most = 200;  // bytes that are looked at
    return "\"" + shownname(toutf8(text.substr(0, most)), 40) + "\"";
}
