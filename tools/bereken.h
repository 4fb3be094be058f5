// SPDX-License-Identifier: GPL-3.0-or-later
// Expressions over the variables of an object.
//
//     expression = [sign] term {sign term}
//     term       = factor {("^" | "*" | "/") factor}
//     factor     = number | name
//
// No precedence among the three operators, no parentheses: a term is worked out from left to right,
// 2+3*4^2 is 146. A sign right behind "*" or "/" belongs to the factor, one behind an "E" to an
// exponent; every other sign begins a term. At most 20 terms of at most 20 factors.
//
// State: the variables of the object in hand, and where faults go.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/array.h"

extern int objvarcount;
extern array1<std::string> objvarname;   // (0..objvarcount), 1.. in use
extern array1<std::string> objvarvalue;  // a number, or an expression over other variables
extern array1<std::string> objvartext;   // what it is, for the user
void allocobjvars(int count);

// The value of the last variable of exactly this name, empty for none.
std::string vervang(std::string_view name);

// The value. What has none - a name that is not defined, the root of a negative number, a number
// beyond all bounds - is told and counts as 0; a division by 0 is told and leaves the term as it
// was. Throws errsubscript for a twenty-first term or factor.
double bereken(std::string_view text);

// Faults of expressions are message boxes, one a use, but for as long as a list is there to take
// them.
class faultlist {
  public:
    faultlist();
    ~faultlist();
    faultlist(const faultlist&) = delete;
    faultlist& operator=(const faultlist&) = delete;
    std::vector<std::string> texts;

  private:
    faultlist* before;
};
