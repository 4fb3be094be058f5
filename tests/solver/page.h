// SPDX-License-Identifier: GPL-3.0-or-later
// Rows of the verification page: a published or closed-form value beside what the solver computes.
#pragma once

#include <string>

struct verification {
    std::string name, mesh, source;  // of the case, what stands for it, where the value comes from
    double reference = 0, result = 0;
    double tolerance = 0;  // of the reference
};

// Expects the result within the tolerance, and the page to tell this very result. Where the
// environment sets KALVANE_ACCEPT the row of the page is written instead.
void verify(const verification& v);
