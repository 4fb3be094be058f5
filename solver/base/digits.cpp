// SPDX-License-Identifier: GPL-3.0-or-later
#include "solver/base/digits.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <vector>

static const int mostpower = 308;

// 10^n as the library's power has it, from the least on.
static const std::vector<double> powersoften = [] {
    std::vector<double> powers;
    for (int i = -mostpower; i <= mostpower; ++i) powers.push_back(std::pow(10.0, i));
    return powers;
}();

static double poweroften(int n) {
    return powersoften[std::size_t(n + mostpower)];
}

// The power of ten of the first digit; size: no less than 1e-290.
static int exponentof(double size) {
    const int two = int(std::bit_cast<std::uint64_t>(size) >> 52) - 1023;
    int ten = (two * 315653) >> 20;  // 2^20 log10(2); too low by one at most
    while (ten < mostpower && size >= poweroften(ten + 1)) ++ten;
    return ten;
}

// Eight digits of a number below 10^8 as characters, the first one in the lowest byte: pairs of
// pairs, pairs and digits are parted in all places at once.
static std::uint64_t charactersof(std::uint64_t number) {
    std::uint64_t x = number / 10000 | number % 10000 << 32;
    const std::uint64_t hundreds = (x * 10486 >> 20) & 0x0000007F0000007F;
    x = hundreds | (x - 100 * hundreds) << 16;
    const std::uint64_t tens = (x * 103 >> 10) & 0x000F000F000F000F;
    return (tens | (x - 10 * tens) << 8) + 0x3030303030303030;
}

static const std::uint64_t allzeros = 0x3030303030303030;

// All eight, of which some may have no meaning: p has room for them.
static void store(char* p, std::uint64_t characters) {
    if constexpr (std::endian::native == std::endian::big)
        characters = __builtin_bswap64(characters);
    std::memcpy(p, &characters, sizeof characters);
}

// --- ten digits ---------------------------------------------------------------------------------

static const int rounded = 10;

static char* writeexponent(char* p, int ten) {
    *p++ = 'E';
    *p++ = ten < 0 ? '-' : '+';
    if (std::abs(ten) < 10) *p++ = '0';
    return writenumber(p, long(std::abs(ten)));
}

namespace {
// Ten digits as characters, in registers: what was just stored byte by byte is slow to load at
// once.
struct tendigits {
    std::uint64_t eight;  // the first one in the lowest byte
    char ninth, tenth;
    explicit tendigits(std::uint64_t whole)
        : eight(charactersof(whole / 100)),
          ninth(char('0' + whole % 100 / 10)),
          tenth(char('0' + whole % 10)) {}
    // Up to the last that is not 0.
    int count() const {
        if (tenth != '0') return 10;
        return ninth != '0' ? 9 : 8 - std::countl_zero(eight ^ allzeros) / 8;
    }
    void put(char* p) const {
        store(p, eight);
        p[8] = ninth;
        p[9] = tenth;
    }
};
}  // namespace

// The first count digits, with the point behind the first `before` of them.
static char* writepointed(char* p, const tendigits& digits, int count, int before) {
    digits.put(p);
    if (count <= before) {
        std::fill(p + count, p + before, '0');
        return p + before;
    }
    p[before] = '.';
    if (before <= 8) {
        store(p + before + 1, digits.eight >> 4 * before >> 4 * before);  // before may be 8
        p[9] = digits.ninth;
    }
    p[10] = digits.tenth;
    return p + count + 1;
}

char* writerounded(char* p, double number) {
    const double size = std::fabs(number), least = 1e-290, most = 1e290;
    if (!(size >= least && size <= most)) return writenumber(p, number);
    *p = '-';
    p += number < 0;
    int ten = exponentof(size);
    const std::uint64_t beyond = 10000000000;
    auto whole = std::uint64_t(std::int64_t(size * poweroften(rounded - 1 - ten) + 0.5));
    if (whole >= beyond) {
        whole = beyond / 10;
        ++ten;
    }
    const tendigits digits(whole);
    const int count = digits.count(), leastplain = -4, mostplain = 14;
    if (ten < leastplain || ten > mostplain)
        return writeexponent(writepointed(p, digits, count, 1), ten);
    if (ten >= 0) return writepointed(p, digits, count, ten + 1);
    std::memcpy(p, "0.000", 5);
    p += 1 - ten;
    digits.put(p);
    return p + count;
}

// --- tables -------------------------------------------------------------------------------------

static const int columndigits = 7;  // 9999999.6 is told as 10000000

numbertable::numbertable(const double* largest) {
    const double nothing = 1e-200;
    for (int k = 0; k < kinds; ++k) {
        // Those of a kind that is nothing are written as 0.
        if (!(largest[k] > nothing && std::isfinite(largest[k]))) continue;
        decimals[k] = columndigits - 1 - exponentof(largest[k]);
        factor[k] = poweroften(decimals[k]);
    }
}

static const int batch = 32;  // rows that are rounded at once

// Numbers are parted into fours of digits, those into pairs and these into digits: loops over all
// numbers, long enough that they become vectors.
[[gnu::always_inline]] static inline void roundrows(const double* values, int apart, int count,
                                                    const double* factor, numbertable::row* rows) {
    const int kinds = numbertable::kinds, numbers = kinds * count;
    std::int32_t multiples[kinds * batch];
    std::uint16_t fours[2 * kinds * batch], pairs[4 * kinds * batch];
    char digits[8 * kinds * batch];
    for (int r = 0; r < count; ++r)
        for (int k = 0; k < kinds; ++k) {
            const double value = values[r * apart + k] * factor[k];
            multiples[kinds * r + k] = std::int32_t(value + std::copysign(0.5, value));
        }
    for (int i = 0; i < numbers; ++i) {
        const auto size = std::uint32_t(std::abs(multiples[i]));
        const std::uint32_t high = size / 10000;
        fours[2 * i] = std::uint16_t(high);
        fours[2 * i + 1] = std::uint16_t(size - 10000 * high);
    }
    for (int i = 0; i < 2 * numbers; ++i) {
        const auto high = std::uint16_t(fours[i] * 5243U >> 19);
        pairs[2 * i] = high;
        pairs[2 * i + 1] = std::uint16_t(fours[i] - 100 * high);
    }
    for (int i = 0; i < 4 * numbers; ++i) {
        const auto high = std::uint16_t(std::uint16_t(pairs[i] * 103) >> 10);
        digits[2 * i] = char('0' + high);
        digits[2 * i + 1] = char('0' + pairs[i] - 10 * high);
    }
    for (int r = 0; r < count; ++r) {
        std::memcpy(rows[r].multiple, multiples + kinds * r, sizeof rows[r].multiple);
        std::memcpy(rows[r].text, digits + 8 * kinds * r, sizeof rows[r].text);
    }
}

static void roundplain(const double* values, int apart, int count, const double* factor,
                       numbertable::row* rows) {
    roundrows(values, apart, count, factor, rows);
}

#if defined(__x86_64__)
[[gnu::target("avx2")]] static void roundwide(const double* values, int apart, int count,
                                              const double* factor, numbertable::row* rows) {
    roundrows(values, apart, count, factor, rows);
}
#endif

void numbertable::round(const double* values, int apart, int count, row* rows) const {
#if defined(__x86_64__)
    const auto round = __builtin_cpu_supports("avx2") ? roundwide : roundplain;
#else
    const auto round = roundplain;
#endif
    for (int first = 0; first < count; first += batch)
        round(values + first * apart, apart, std::min(batch, count - first), factor, rows + first);
}

static std::uint64_t load(const char* p) {
    std::uint64_t characters = 0;
    std::memcpy(&characters, p, sizeof characters);
    if constexpr (std::endian::native == std::endian::big)
        characters = __builtin_bswap64(characters);
    return characters;
}

// No branches: the numbers of a kind pass 1, 10, 100 and 0 where nobody foresees it.
static char* writeplain(char* p, bool negative, std::uint64_t text, int decimals) {
    const int digits = numbertable::digits;
    *p = '-';
    p += negative;
    const std::uint64_t zeros = text ^ allzeros;
    const int lead = std::min(std::countr_zero(zeros) / 8, digits - 1 - decimals);
    const int places = decimals - std::min(std::countl_zero(zeros) / 8, decimals);
    const int before = digits - decimals - lead;
    const std::uint64_t rest = text >> 8 * lead;
    store(p, rest);
    p[before] = '.';
    store(p + before + 1, rest >> 4 * before >> 4 * before);  // before may be 8
    return p + before + places + (places > 0);
}

char* numbertable::write(char* p, const row& from, int kind) const {
    const int decimal = decimals[kind];
    const std::int32_t multiple = from.multiple[kind];
    std::uint64_t text = load(from.text[kind]);
    if (decimal >= 0 && decimal < digits) return writeplain(p, multiple < 0, text, decimal);
    *p = multiple < 0 ? '-' : '0';
    if (multiple == 0) return p + 1;
    p += multiple < 0;
    const std::uint64_t zeros = text ^ allzeros;
    const int lead = std::countr_zero(zeros) / 8;
    const int tail = std::min(std::countl_zero(zeros) / 8, std::max(decimal, 0));
    const int places = decimal - tail;  // behind the point
    const int count = digits - lead - tail, before = count - places;
    text >>= 8 * lead;
    const int mostplaces = 10;
    if (places < 0 || places > mostplaces) {  // a whole number and the power of ten
        store(p, text);
        p[count] = 'E';
        return writenumber(p + count + 1, long(-places));
    }
    std::memcpy(p, "0.0000000000", 2 + mostplaces);
    store(p + 2 - before, text);
    return p + 2 - before + count;
}
