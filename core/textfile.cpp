// SPDX-License-Identifier: GPL-3.0-or-later
// The token reader and the buffered writer of text files.
#include "core/textfile.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

#include "core/numtext.h"
#include "core/runtime.h"

namespace fs = std::filesystem;

static const double mostcount = 2e9;  // larger counts can only come from a damaged file
// Bytes that go to the file at once. Whole ones from a multiple of their size on are pages of the
// system's cache that it keeps at hand; larger and odd ones take longer.
static const std::size_t writeblock = 1 << 15;

// Throws errfilenotfound or errpathaccess. size: out, of the file, 0 where it tells none.
static filehandle opened(const std::string& path, std::size_t& size) {
    std::error_code ec;
    const fs::file_status status = fs::status(path, ec);
    if (!fs::exists(status)) throw runtimeerror{errfilenotfound, "File not found: " + path};
    if (!fs::is_regular_file(status))
        throw runtimeerror{errpathaccess, "Not a file that can be read: " + path};
    filehandle file(std::fopen(path.c_str(), "rb"));
    if (!file) throw runtimeerror{errpathaccess, "File can not be opened for reading: " + path};
    const auto told = fs::file_size(path, ec);
    size = ec ? 0 : told;
    return file;
}

// Behind what the text holds, up to so many bytes; fewer only at the end of the file.
static void readon(std::FILE* file, const std::string& path, std::string& text, std::size_t most) {
    const std::size_t before = text.size();
    text.resize(before + most);
    const std::size_t got = std::fread(text.data() + before, 1, most, file);
    if (got != most && std::ferror(file))
        throw runtimeerror{errpathaccess, "File can not be read: " + path};
    text.resize(before + got);
}

std::string readwhole(const std::string& path) {
    std::size_t size = 0;
    const filehandle file = opened(path, size);
    std::string content;
    readon(file.get(), path, content, size);
    return content;
}

void copywhole(const std::string& source, const std::string& target) {
    const std::string content = readwhole(source);
    besidefile copy(target);
    copy.write(content.data(), content.size());
    copy.replacetarget();
}

// Length of the UTF-8 sequence at p, 0 where it is none (RFC 3629, table 3-7 of Unicode).
static int utf8length(const unsigned char* p, const unsigned char* last) {
    const unsigned char lead = *p;
    if (lead < 0x80) return 1;
    const int n = lead >= 0xC2 && lead <= 0xDF   ? 2
                  : lead >= 0xE0 && lead <= 0xEF ? 3
                  : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                 : 0;
    if (n == 0 || last - p < n) return 0;
    for (int i = 1; i < n; ++i)
        if ((p[i] & 0xC0) != 0x80) return 0;
    const bool wrong = (lead == 0xE0 && p[1] < 0xA0) || (lead == 0xED && p[1] > 0x9F) ||
                       (lead == 0xF0 && p[1] < 0x90) || (lead == 0xF4 && p[1] > 0x8F);
    return wrong ? 0 : n;
}

static bool isutf8(std::string_view bytes) {
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    const auto* const last = p + bytes.size();
    while (p != last) {
        const int n = utf8length(p, last);
        if (n == 0) return false;
        p += n;
    }
    return true;
}

static void appendutf8(std::string& text, unsigned code) {
    if (code < 0x80) {
        text += char(code);
    } else if (code < 0x800) {
        text += char(0xC0 | (code >> 6));
        text += char(0x80 | (code & 0x3F));
    } else {
        text += char(0xE0 | (code >> 12));
        text += char(0x80 | ((code >> 6) & 0x3F));
        text += char(0x80 | (code & 0x3F));
    }
}

std::string toutf8(std::string_view bytes) {
    if (bytes.substr(0, 3) == "\xEF\xBB\xBF") bytes.remove_prefix(3);
    if (isutf8(bytes)) return std::string(bytes);
    // Windows-1252, codes 0x80..0x9F; the five that it leaves open stand for themselves.
    static const unsigned upper[32] = {
        0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
        0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
        0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};
    std::string text;
    for (const char c : bytes) {
        const auto code = static_cast<unsigned char>(c);
        appendutf8(text, code >= 0x80 && code < 0xA0 ? upper[code - 0x80] : code);
    }
    return text;
}

static std::string lowered(std::string text) {
    for (char& c : text)
        if (c >= 'A' && c <= 'Z') c = char(c - 'A' + 'a');
    return text;
}

bool isthere(const std::string& path) {
    std::error_code ec;
    const bool there = fs::exists(path, ec);
    if (ec)
        throw runtimeerror{errpathaccess, path + " can not be looked up (" + ec.message() + ")"};
    return there;
}

std::string findnocase(const std::string& path) {
    std::error_code ec;
    const fs::path wanted(path);
    if (fs::exists(wanted, ec)) return path;
    const fs::path folder = wanted.has_parent_path() ? wanted.parent_path() : fs::path(".");
    const std::string extension = lowered(wanted.extension().string());
    std::string found;  // the first in the order of the names, where there are several
    for (fs::directory_iterator it(folder, ec), end; !ec && it != end; it.increment(ec)) {
        const fs::path& other = it->path();
        if (other.stem() == wanted.stem() && lowered(other.extension().string()) == extension &&
            (found.empty() || other.extension().string() < found))
            found = other.extension().string();
    }
    return found.empty() ? path : fs::path(wanted).replace_extension(found).string();
}

std::string shownname(std::string_view utf8, int most) {
    const auto isinside = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
    if (utf8.size() <= std::size_t(most)) return std::string(utf8);
    std::size_t end = 0, last = 0;  // behind most characters, and before the last one of them
    for (; end < utf8.size() && most > 0; --most) {
        last = end++;
        while (end < utf8.size() && isinside(utf8[end])) ++end;
    }
    if (end == utf8.size()) return std::string(utf8);
    return std::string(utf8.substr(0, last)) + "…";
}

std::string visible(std::string_view text) {
    static const char digits[] = "0123456789ABCDEF";
    std::string shown;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        // In UTF-8 the upper control characters 80..9F follow a C2.
        const bool upper =
            c == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0;
        const auto code = upper ? static_cast<unsigned char>(text[++i]) : c;
        if (upper || (c < ' ' && c != '\n' && c != '\t') || c == 0x7F)
            shown.append("\\x").append(1, digits[code / 16]).append(1, digits[code % 16]);
        else
            shown += char(c);
    }
    return shown;
}

textin::textin(const std::string& path, inmemory held)
    : textin(held == inmemory::whole ? readwhole(path) : "", path) {
    if (held == inmemory::whole) return;
    rest = opened(path, bytes);
    more();
    passbyteorder();
}

textin::textin(std::string text, std::string name)
    : content(std::move(text)), filename(std::move(name)), bytes(content.size()) {
    at = token = content.data();
    last = at + content.size();
    passbyteorder();
}

void textin::passbyteorder() {
    if (std::string_view(content).substr(0, 3) == "\xEF\xBB\xBF") at += 3;
}

// A block of them at a time, whose count fits a byte: that loop becomes vectors.
static std::size_t lineendsin(const char* p, const char* last) {
    const int block = 128;
    std::size_t count = 0;
    for (; last - p >= block; p += block) {
        unsigned char here = 0;
        for (int i = 0; i < block; ++i) here = static_cast<unsigned char>(here + (p[i] == '\n'));
        count += here;
    }
    return count + std::size_t(std::count(p, last, '\n'));
}

// Reads on up to a line end, so that no number is cut; what stands from the last value on stays.
// False at the end of the file.
bool textin::more() {
    if (!rest) return false;
    const std::size_t block = 1 << 18;
    const char* const begin = content.data();
    const auto used = std::size_t(token - begin), here = std::size_t(at - token);
    passed += used;
    passedlines += lineendsin(begin, token);
    content.erase(0, used);
    const std::size_t before = content.size();
    content += std::exchange(ahead, {});
    std::size_t end = content.npos;
    while (rest && end == content.npos) {
        const std::size_t size = content.size();
        readon(rest.get(), filename, content, block);
        if (content.size() < size + block) rest.reset();
        end = content.rfind('\n');
        if (end != content.npos && end < before) end = content.npos;
    }
    if (rest) {
        ahead.assign(content, end + 1);
        content.resize(end + 1);
    }
    token = content.data();
    at = token + here;
    last = token + content.size();
    return content.size() > before;
}

static bool isgap(char c) {
    return c == ' ' || c == '\t';
}

static bool islineend(char c) {
    return c == '\r' || c == '\n';
}

bool textin::atend() {
    do {
        const char* p = at;
        while (p != last && (isgap(*p) || islineend(*p) || *p == '\x1A')) ++p;
        if (p != last) return false;
    } while (more());
    return true;
}

bool textin::atlineend() const {
    return at == last || islineend(*at);
}

inline void textin::toword() {
    do {
        while (at != last && (isgap(*at) || islineend(*at))) ++at;
        token = at;
    } while (at == last && more());
    // A control-Z closes the text files of old systems.
    if (at == last || *at == '\x1A') fail(errpastend, "the file ends where a value was expected");
}

// Leaves the token's delimiter: blanks, and one comma or line end.
inline void textin::pasttoken() {
    while (at != last && isgap(*at)) ++at;
    if (at != last && *at == ',') ++at;
}

// The beginning of what was found, as far as a message has room for it.
static std::string excerpt(std::string_view found) {
    const std::size_t most = 40;
    std::size_t n = std::min(found.size(), most);
    while (n > 0 && n < found.size() && (found[n] & 0xC0) == 0x80) --n;
    return visible(toutf8(found.substr(0, n)));
}

void textin::failfound(const std::string& expected) {
    const std::string_view found = word();
    const bool bytes = found.find('\0') != found.npos;  // as UTF-16 has them
    fail(errtype, expected + " was expected, found " +
                      (bytes ? "bytes that are no plain text; save the file as UTF-8"
                             : "\"" + excerpt(found) + "\""));
}

template <typename Real>
inline Real textin::real() {
    toword();
    Real value = 0;
    const char* end = at;
    const numberfault fault = scannumber(at, last, value, end);
    const bool whole = end == last || *end == ',' || isgap(*end) || islineend(*end);
    if (fault == numberfault::toolarge && whole)
        fail(erroverflow, "the number " + std::string(at, end) + " is too large");
    if (fault != numberfault::none || !whole) failfound("a number");
    at = end;
    pasttoken();
    return value;
}

double textin::number() {
    return real<double>();
}

float textin::single() {
    return real<float>();
}

long textin::whole() {
    const double value = number();
    const bool inrange = value < 1e15 && value > -1e15;
    if (!inrange || value != double(static_cast<long long>(value)))
        fail(errtype, "a whole number was expected, found " + numbertext(value));
    return long(value);
}

int textin::wholewithin(int low, int high, const char* what) {
    const long value = whole();
    if (value < low || value > high)
        fail(errtype, std::string(what) + " from " + std::to_string(low) + " to " +
                          std::to_string(high) + " was expected, found " + std::to_string(value));
    return int(value);
}

int textin::count() {
    const double value = number();
    if (value > mostcount) fail(erroverflow, "the count " + numbertext(value) + " is too large");
    if (!(value >= 0) || value != double(int(value)))
        fail(errtype, "a count from 0 up was expected, found " + numbertext(value));
    return int(value);
}

int textin::rows() {
    const int n = count();
    // The shortest row is a digit with what parts it from the next one.
    if (std::size_t(n) > (bytes - passed - std::size_t(at - content.data()) + 1) / 2)
        fail(errpastend, numbertext(long(n)) + " rows are announced, the file ends before them");
    return n;
}

std::string textin::text() {
    toword();
    std::string result;
    if (*at == '"') {
        ++at;
        for (;; ++at) {
            if (at == last && !more()) fail(errpastend, "the file ends within a quoted text");
            if (*at == '"') {
                if (at + 1 == last || at[1] != '"') break;
                ++at;
            }
            result += *at;
        }
        ++at;
    } else {
        const char* const begin = at;
        while (at != last && *at != ',' && !islineend(*at)) ++at;
        result.assign(begin, at);
        while (!result.empty() && isgap(result.back())) result.pop_back();
    }
    pasttoken();
    return toutf8(result);
}

std::string textin::quoted() {
    toword();
    if (*at != '"') failfound("a text in quotes");
    return text();
}

std::string_view textin::word() {
    toword();
    const char* const begin = at;
    while (at != last && *at != ',' && !isgap(*at) && !islineend(*at)) ++at;
    const std::string_view result(begin, std::size_t(at - begin));
    pasttoken();
    return result;
}

std::string textin::line() {
    token = at;
    if (at == last) more();
    while (at != last && isgap(*at)) ++at;
    token = at;
    while (at != last && !islineend(*at)) ++at;
    std::string_view rest(token, std::size_t(at - token));
    while (!rest.empty() && (isgap(rest.back()) || rest.back() == '\x1A')) rest.remove_suffix(1);
    if (at != last && *at == '\r') ++at;
    if (at != last && *at == '\n') ++at;
    return toutf8(rest);
}

void textin::skip(long n) {
    for (long i = 0; i < n; ++i) number();
}

void textin::fail(int errornumber, const std::string& what) const {
    const std::size_t line = 1 + passedlines + lineendsin(content.data(), token);
    throw runtimeerror{errornumber, filename + ", line " + std::to_string(line) + ": " + what};
}

double textin::share() const {
    return bytes == 0 ? 1.0 : (double(passed) + double(at - content.data())) / double(bytes);
}

textout::textout(const std::string& path) : beside(path) {
    buffer.resize(writeblock + longestnumber);
}

// What is beyond a whole block stays.
void textout::flush() {
    const std::size_t n = std::min(used, writeblock);
    beside.write(buffer.data(), n);
    used -= n;
    std::memmove(buffer.data(), buffer.data() + n, used);
}

char* textout::numberroom() {
    if (used >= writeblock) flush();
    return buffer.data() + used;
}

template <typename Real>
textout& textout::putreal(Real number) {
    if (!std::isfinite(number))
        throw runtimeerror{erroverflow, beside.target() +
                                            " was not written, its former content stands: " +
                                            "a value is too large for a number"};
    char* const p = numberroom();
    used += std::size_t(writenumber(p, number) - p);
    return *this;
}

textout& textout::put(float number) {
    return putreal(number);
}

textout& textout::put(double number) {
    return putreal(number);
}

textout& textout::put(long number) {
    char* const p = numberroom();
    used += std::size_t(writenumber(p, number) - p);
    return *this;
}

textout& textout::raw(std::string_view text) {
    while (!text.empty()) {
        if (used >= writeblock) flush();
        const std::size_t n = std::min(text.size(), writeblock - used);
        std::memcpy(buffer.data() + used, text.data(), n);
        used += n;
        text.remove_prefix(n);
    }
    return *this;
}

textout& textout::quoted(std::string_view text) {
    raw("\"");
    for (std::size_t quote = text.find('"'); quote != text.npos; quote = text.find('"')) {
        raw(text.substr(0, quote + 1)).raw("\"");
        text.remove_prefix(quote + 1);
    }
    return raw(text).raw("\"");
}

void textout::close() {
    while (used > 0) flush();
    beside.finish();
}

besidefile textout::release() {
    close();
    return std::move(beside);
}

void textout::commit() {
    close();
    beside.replacetarget();
}
