// SPDX-License-Identifier: GPL-3.0-or-later
// Forces and deflections along the line elements of the results on show. State: the open file and
// what was read of it; it is opened when first asked for and dropped with the results.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "post/memberfile.h"

// A member's curves: the largest, and of an envelope the smallest beside them.
struct memberresult {
    memberline high;
    std::unique_ptr<memberline> least;  // none: the same
    const memberline& low() const { return least ? *least : high; }
};
// Combination that governs each value; of an envelope.
struct membergovernors {
    short high[memberquantities][memberstations], low[memberquantities][memberstations];
};

void dropmembers();    // another model or another analysis: the file is opened anew
void forgetmembers();  // another combination: what was summed is no longer on show
// Null for an element that the file does not hold, or while there is no file; membernote says why.
const memberresult* memberof(int e);
extern std::string membernote;
membergovernors governorsof(int e);
// Combination c's own, for tables; null as above.
const memberline* memberin(int e, int c);

// Where a quantity is largest and smallest among members.
struct memberextreme {
    int e = 0, station = 0;
    double value = 0;
};
struct memberrange {
    memberextreme high, low;
    double alike = 0;      // largest absolute value of all quantities of its unit
    double size() const;   // largest absolute value
    bool isnoise() const;  // so small beside those alike that it is their rounding
};
memberrange rangeof(memberquantity q, const std::vector<int>& members);
std::vector<int> allmembers();  // elements with two nodes that the file holds
