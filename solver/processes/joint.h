// SPDX-License-Identifier: GPL-3.0-or-later
// Where the numbers of items meet: in one process.
#pragma once

#include <vector>

#include "solver/processes/route.h"

class joint : public route {
  public:
    joint() = default;
    joint(const std::vector<int>& given, const std::vector<int>& taken);
    void pass(const double* given, double* taken, int width, join how) const override;

  private:
    int count = 0;                // items
    std::vector<int> from, into;  // of each that is given, taken: its place; -1: nobody gives it
};
