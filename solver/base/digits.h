// SPDX-License-Identifier: GPL-3.0-or-later
// Numbers of the large result files as text: rounded, in a tenth of the time that the fewest digits
// of a Double take. Eight digits at a time are made in one register.
#pragma once

#include <cstddef>
#include <cstring>

#include "core/numtext.h"

// A number's text, kept to be written again.
struct keptnumber {
    char text[longestnumber] = {};
    std::size_t length = 0;
    explicit keptnumber(float number = 0) {
        length = std::size_t(writenumber(text, number) - text);
    }
};

// Writes a number in ten digits at most, one more than tell every Single; else like writenumber.
char* writerounded(char* p, double number);

// Numbers of one kind along a member, each with the decimals that tell the largest to seven digits:
// whole multiples of the last place.
class numbercolumn {
  public:
    explicit numbercolumn(double largest = 0);
    // Writes a number no larger than the largest at p, which has room for longestnumber characters
    // and may lose all of them; returns the place behind the last one.
    char* write(char* p, double value) const { return writemultiple(p, nearest(value * factor)); }
    static constexpr int longest = 15;  // characters, of a number no larger than the largest

  private:
    // As lround does, in place of a call.
    static long nearest(double value) {
        const long whole = long(value);
        const double rest = value - double(whole);
        return whole + (rest >= 0.5) - (rest <= -0.5);
    }
    char* writemultiple(char* p, long multiple) const;
    char* writeplain(char* p, long multiple) const;
    int decimals = 0;
    double factor = 0;
};
