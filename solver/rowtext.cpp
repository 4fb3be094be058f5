// SPDX-License-Identifier: GPL-3.0-or-later
#include "solver/rowtext.h"

#include <bit>
#include <cstdint>

static const int digits = 7, mostdigits = 8;  // 9999999.6 is told as 10000000

// 10^n as the library's power has it.
static double poweroften(int n) {
    static const int most = 308;
    static const std::vector<double> table = [] {
        std::vector<double> powers;
        for (int i = -most; i <= most; ++i) powers.push_back(std::pow(10.0, i));
        return powers;
    }();
    return table[std::size_t(n + most)];
}

numbercolumn::numbercolumn(double largest) {
    const double nothing = 1e-200;
    if (!(largest > nothing && std::isfinite(largest))) return;  // all are written as 0
    decimals = digits - 1 - int(std::floor(std::log10(largest)));
    factor = poweroften(decimals);
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

// All eight, of which more than count have no meaning: p has room for them.
static void store(char* p, std::uint64_t characters) {
    if constexpr (std::endian::native == std::endian::big)
        characters = __builtin_bswap64(characters);
    std::memcpy(p, &characters, sizeof characters);
}

char* numbercolumn::writemultiple(char* p) const {
    *p = last < 0 ? '-' : '0';
    if (last == 0) return p + 1;
    p += last < 0;
    std::uint64_t text = charactersof(static_cast<std::uint64_t>(std::labs(last)));
    const std::uint64_t zeros = text ^ 0x3030303030303030;
    const int lead = std::countr_zero(zeros) / 8;
    const int tail = std::min(std::countl_zero(zeros) / 8, std::max(decimals, 0));
    const int places = decimals - tail;  // behind the point
    const int count = mostdigits - lead - tail, before = count - places;
    text >>= 8 * lead;
    const int mostplaces = 10;
    if (places < 0 || places > mostplaces) {  // a whole number and the power of ten
        store(p, text);
        p[count] = 'E';
        return writenumber(p + count + 1, long(-places));
    }
    if (before <= 0) {
        std::memcpy(p, "0.0000000000", 2 + mostplaces);
        store(p + 2 - before, text);
        return p + 2 - before + count;
    }
    store(p, text);
    if (places == 0) return p + before;
    p[before] = '.';
    store(p + before + 1, text >> (8 * before));
    return p + count + 1;
}
