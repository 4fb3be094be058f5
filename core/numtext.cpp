// SPDX-License-Identifier: GPL-3.0-or-later
// Numbers to text and back by the standard library's to_chars and from_chars.
#include "core/numtext.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>

static const double wholelimit = 1e15;  // whole numbers below it stand without exponent
static const double plainlimit = 1e-4;  // fractions below it take an exponent

template <typename Real>
static char* writereal(char* p, Real number) {
    char* const last = p + longestnumber;
    if (!std::isfinite(number)) {
        // No file or box is meant to hold these; the words keep a damaged value recognisable.
        const char* const word = std::isnan(number) ? "NaN" : number > 0 ? "Inf" : "-Inf";
        const std::size_t n = std::strlen(word);
        std::memcpy(p, word, n);
        return p + n;
    }
    if (number == 0) {  // minus zero is written 0
        *p = '0';
        return p + 1;
    }
    const Real size = std::fabs(number);
    if (double(size) < wholelimit && number == Real(static_cast<long long>(number)))
        return std::to_chars(p, last, static_cast<long long>(number)).ptr;
    if (double(size) >= plainlimit && double(size) < wholelimit)
        return std::to_chars(p, last, number, std::chars_format::fixed).ptr;
    char* const end = std::to_chars(p, last, number, std::chars_format::scientific).ptr;
    for (char* c = p; c != end; ++c)
        if (*c == 'e') *c = 'E';
    return end;
}

char* writenumber(char* p, float number) {
    return writereal(p, number);
}

char* writenumber(char* p, double number) {
    return writereal(p, number);
}

char* writenumber(char* p, long number) {
    return std::to_chars(p, p + longestnumber, number).ptr;
}

template <typename Number>
static std::string textof(Number number) {
    char buffer[longestnumber];
    return {buffer, writenumber(buffer, number)};
}

std::string numbertext(float number) {
    return textof(number);
}

std::string numbertext(double number) {
    return textof(number);
}

std::string numbertext(long number) {
    return textof(number);
}

static bool isdigit10(char c) {
    return c >= '0' && c <= '9';
}

// Exponents written with D, as Fortran programs do, are read from a copy with E.
template <typename Real>
static numberfault scanwithd(const char* first, const char* last, Real& number, const char*& end) {
    char copy[64];
    const std::size_t n = std::min(std::size_t(last - first), sizeof copy);
    std::memcpy(copy, first, n);
    for (std::size_t i = 0; i < n; ++i)
        if (copy[i] == 'D' || copy[i] == 'd') copy[i] = 'E';
    const auto result = std::from_chars(copy, copy + n, number);
    end = first + (result.ptr - copy);
    return result.ec == std::errc() ? numberfault::none : numberfault::toolarge;
}

// A number out of range is too large or too small: the decimal exponent of its first digit that is
// not 0 tells which. text is well formed.
static bool isbelowone(std::string_view text) {
    const std::size_t mark = text.find_first_of("EeDd");
    const std::string_view digits = text.substr(0, mark);
    const std::size_t lead = digits.find_first_of("123456789");
    if (lead == digits.npos) return true;
    long exponent = 0;
    if (mark != text.npos) {
        std::string_view tail = text.substr(mark + 1);
        if (!tail.empty() && tail.front() == '+') tail.remove_prefix(1);
        const auto result = std::from_chars(tail.data(), tail.data() + tail.size(), exponent);
        if (result.ec == std::errc::result_out_of_range) return tail.front() == '-';
    }
    const std::size_t point = std::min(digits.find('.'), digits.size());
    return long(point) - long(lead) + exponent < 1;
}

// Eight characters as one word, the first of them lowest.
static std::uint64_t eightat(const char* p) {
    std::uint64_t eight = 0;
    std::memcpy(&eight, p, sizeof eight);
    return eight;
}

// How many digits stand before the first other character. A digit is 0..9 once its '0' is taken
// off: 0x76 more does not reach the highest bit.
static int leadingdigits(std::uint64_t eight) {
    const std::uint64_t values = eight ^ 0x3030303030303030;
    return std::countr_zero(((values + 0x7676767676767676) | values) & 0x8080808080808080) / 8;
}

// The first 1..8 of them, digits all, as a number: neighbours join to pairs, fours, the eight.
static std::uint64_t valueof(std::uint64_t eight, int digits) {
    eight = (eight << (64 - 8 * digits)) & 0x0F0F0F0F0F0F0F0F;
    eight = (eight * (1 + (10 << 8)) >> 8) & 0x00FF00FF00FF00FF;
    eight = (eight * (1 + (100 << 16)) >> 16) & 0x0000FFFF0000FFFF;
    return eight * (1 + (std::uint64_t(10000) << 32)) >> 32;
}

// Most numbers of files are short: their digits as a whole number and the power of ten below them
// are exact then, so that one division rounds as from_chars does, in a part of its time (Clinger
// 1990). Null where the number is longer, of another form or close to the end of the text, else
// the place behind it.
template <typename Real>
static const char* scanshort(const char* p, const char* last, Real& number) {
    static const Real tens[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7};
    const int word = 8, longest = 1 + (word - 1) + 1 + word;  // sign, digits, point, word behind it
    if (std::endian::native != std::endian::little || last - p < longest) return nullptr;
    const bool minus = *p == '-';
    p += minus;
    const std::uint64_t front = eightat(p);
    const int digits = leadingdigits(front);
    if (digits == 0 || digits == word) return nullptr;
    p += digits;
    std::uint64_t back = 0;
    int decimals = 0;
    if (*p == '.') {
        back = eightat(++p);
        decimals = leadingdigits(back);
        if (decimals == 0 || decimals == word) return nullptr;
        p += decimals;
    }
    if (const char lower = char(*p | 0x20); lower == 'e' || lower == 'd' || *p == '.')
        return nullptr;
    std::uint64_t whole = valueof(front, digits);
    if (decimals > 0) whole = whole * std::uint64_t(tens[decimals]) + valueof(back, decimals);
    if (whole >> std::numeric_limits<Real>::digits != 0) return nullptr;
    const Real size = Real(whole) / tens[decimals];
    number = minus ? -size : size;
    return p;
}

template <typename Real>
static numberfault scanreal(const char* first, const char* last, Real& number, const char*& end) {
    end = first;
    if (const char* const behind = scanshort(first, last, number)) {
        end = behind;
        return numberfault::none;
    }
    const char* digits = first;
    if (digits != last && (*digits == '+' || *digits == '-')) ++digits;
    if (first != last && *first == '+') first = digits;  // from_chars takes no plus
    if (digits == last) return numberfault::notanumber;
    const bool pointfirst = *digits == '.' && digits + 1 != last && isdigit10(digits[1]);
    if (!isdigit10(*digits) && !pointfirst) return numberfault::notanumber;
    Real value = 0;
    const auto result = std::from_chars(first, last, value);
    end = result.ptr;
    bool inrange = result.ec == std::errc();
    if (end != last && (*end == 'D' || *end == 'd'))
        inrange = scanwithd(first, last, value, end) == numberfault::none;
    if (!inrange) {
        if (!isbelowone({first, std::size_t(end - first)})) return numberfault::toolarge;
        value = 0;
    }
    number = value;
    return numberfault::none;
}

numberfault scannumber(const char* first, const char* last, double& number, const char*& end) {
    return scanreal(first, last, number, end);
}

numberfault scannumber(const char* first, const char* last, float& number, const char*& end) {
    return scanreal(first, last, number, end);
}

bool readnumber(std::string_view text, double& number) {
    const std::size_t begin = text.find_first_not_of(" \t\r\n");
    if (begin == text.npos) return false;
    text = text.substr(begin, text.find_last_not_of(" \t\r\n") + 1 - begin);
    const char* end = nullptr;
    double value = 0;
    if (scannumber(text.data(), text.data() + text.size(), value, end) != numberfault::none)
        return false;
    if (end != text.data() + text.size()) return false;
    number = value;
    return true;
}

bool isnumeric(std::string_view text) {
    double number = 0;
    return readnumber(text, number);
}

double numberof(std::string_view text) {
    double number = 0;
    readnumber(text, number);
    return number;
}

std::string fixedtext(double number, int decimals) {
    char buffer[400];  // the largest Double has 309 digits before the point
    const auto result =
        std::to_chars(buffer, buffer + sizeof buffer, number, std::chars_format::fixed, decimals);
    return {buffer, result.ptr};
}
