// SPDX-License-Identifier: GPL-3.0-or-later
// Numbers of the large result files as text: rounded, in a tenth of the time that the fewest digits
// of a Double take.
#pragma once

#include <cstddef>
#include <cstdint>
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

// Numbers of eight kinds along a member, each kind with the decimals that tell its largest to seven
// digits: whole multiples of the last place.
class numbertable {
  public:
    static constexpr int kinds = 8, digits = 8;
    struct row {
        std::int32_t multiple[kinds];
        char text[kinds][digits];  // of its size, with zeros before it
    };
    explicit numbertable(const double* largest);  // of each kind
    // Rows of numbers no larger than the largest, which lie so many numbers apart.
    void round(const double* values, int apart, int count, row* rows) const;
    // Writes a number of a row at p, which has room for longestnumber characters and may lose all
    // of them; returns the place behind the last one.
    char* write(char* p, const row& from, int kind) const;
    static constexpr int longest = 15;  // characters

  private:
    int decimals[kinds] = {};
    double factor[kinds] = {};
};
