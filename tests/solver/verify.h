// SPDX-License-Identifier: GPL-3.0-or-later
// Computed values against references. Each is a check and a row of docs/verification.md:
//   FEIFLU_PAGE=docs/verification.md build/bin/test_solver --gtest_filter='Verification*'
// writes the rows between the page's marks anew.
#pragma once

#include <string>

#include "tests/solver/build.h"

struct proof {
    const char* chapter;  // mark of the page: <!-- rows chapter -->
    std::string what, mesh;
    double printed;    // in the source; 0: the same as the truth
    double truth;      // what a perfect element gives
    double value;      // computed
    double tolerance;  // of the truth
};

// Checks value / truth and keeps the row.
void prove(const proof& p);

// Checks that the reactions of all cases balance the loads to this part of them.
void provebalance(const results& r, double most = 1e-9);
