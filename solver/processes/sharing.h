// SPDX-License-Identifier: GPL-3.0-or-later
// Items - nodes, unknowns - of which each process holds some, at the borders the same as others. A
// vector by them is the same wherever an item is held; one process of these counts the item, so
// that sums over all take it once.
#pragma once

#include <memory>
#include <vector>

#include "core/largest.h"
#include "solver/processes/ranks.h"

class sharing {
  public:
    sharing() = default;  // all are held here, and nowhere else
    // numbers: of the items held here among all, from 0, ascending; counted: by the same place, 1:
    // this process counts it.
    sharing(std::vector<int> numbers, std::vector<char> counted);

    bool alone() const { return !border; }
    int numberof(std::size_t i) const { return alone() ? int(i) : number[i]; }
    bool counts(std::size_t i) const { return alone() || count[i] != 0; }
    const std::vector<int>& numbers() const { return number; }  // empty where alone
    // The place here of an item; -1: it is not held.
    int placeof(int number) const;

    // Of each item the sum, or the least, of what processes have; width numbers an item.
    void sum(double* values, int width) const { pass(values, width, route::join::sum); }
    void least(double* values) const { pass(values, 1, route::join::least); }

  private:
    void pass(double* values, int width, route::join how) const;
    std::vector<int> number;
    std::vector<char> count;
    std::vector<std::size_t> atborder;  // places of what others hold as well
    std::shared_ptr<const route> border;
};
using sharingptr = std::shared_ptr<const sharing>;

// x y, of n items here.
double dotproduct(const sharing& s, const double* x, const double* y, std::size_t n);

// The largest of n items here and elsewhere; item: its number, from 1.
template <typename Size>
largestof findlargest(const sharing& s, std::size_t n, Size sizeat) {
    largestof most;
    for (std::size_t i = 0; i < n; ++i)
        if (s.counts(i)) most.meet(s.numberof(i) + 1, sizeat(i));
    if (s.alone()) return most;
    allranks().most(&most.size, 1);
    const double rounding = 1e-6;
    std::vector<double> first = {-INFINITY};
    for (std::size_t i = 0; i < n && most.size > 0; ++i)
        if (s.counts(i) && sizeat(i) * (1 + rounding) >= most.size) {
            first[0] = -(s.numberof(i) + 1);
            break;
        }
    if (most.size > 0) most.item = int(-allranks().greatest(first)[0]);
    return most;
}
