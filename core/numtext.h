// SPDX-License-Identifier: GPL-3.0-or-later
// Numbers to text and back. The locale plays no part: the decimal separator is the point.
//
// Written numbers carry the fewest digits that read back equal: a Single those a Single needs, a
// Double those a Double needs. Whole numbers below 1E+15 stand without point and exponent; other
// numbers from 0.0001 up to 1E+15 are written plainly, the rest as 1.5E-07.
#pragma once

#include <string>
#include <string_view>

const int longestnumber = 32;  // characters that writenumber needs at most

// Write at p, which has room for longestnumber characters; return the place behind the last one.
char* writenumber(char* p, float number);
char* writenumber(char* p, double number);
char* writenumber(char* p, long number);

std::string numbertext(float number);
std::string numbertext(double number);
std::string numbertext(long number);
inline std::string numbertext(int number) {
    return numbertext(long(number));
}

enum class numberfault { none, notanumber, toolarge };

// Reads a number from the start of text: sign, digits, point, exponent with E or D. end is set to
// the first character behind it. Words such as "nan" or "inf" are no numbers; a number too small
// for a Double is 0.
numberfault scannumber(const char* first, const char* last, double& number, const char*& end);
numberfault scannumber(const char* first, const char* last, float& number, const char*& end);

// The whole text as a number, blanks around it allowed. False leaves number as it was.
bool readnumber(std::string_view text, double& number);
bool isnumeric(std::string_view text);

// The number in text, or 0 where it holds none.
double numberof(std::string_view text);

// Rounded to the nearest whole number or fixed decimals: 12.30 for fixedtext(12.3, 2).
std::string fixedtext(double number, int decimals);
