// SPDX-License-Identifier: GPL-3.0-or-later
// How numbers of items get from process to process.
#pragma once

// The way that numbers of items take: what processes give of an item is joined and goes to all that
// take the item.
class route {
  public:
    enum class join { sum, least };
    virtual ~route() = default;
    // width numbers an item, in the order in which the items have been named.
    virtual void pass(const double* given, double* taken, int width, join how) const = 0;
};
