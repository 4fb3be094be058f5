// SPDX-License-Identifier: GPL-3.0-or-later
// Line elements one behind the other, as one member: the six diagrams of it along its length.
#pragma once

#include <string>
#include <vector>

#include "post/members.h"

struct chainlink {
    int e;
    bool reversed;    // the chain runs from its second node to its first
    double from, to;  // lengths along the chain
    // Into the axes of the first link: of e1, e2, e3, +1 or -1 each.
    int sign[3];
};
struct memberchain {
    std::vector<chainlink> links;
    std::string fault;  // why they are no chain
    double length() const { return links.empty() ? 0 : links.back().to; }
};
memberchain chainof(const std::vector<int>& elements);

struct chainpoint {
    double at = 0, high = 0, low = 0;  // place along the chain; the same but for an envelope
    int e = 0, station = 0;
};
// Curve of a quantity in the axes of the first link; two points where links meet.
std::vector<chainpoint> chaincurve(const memberchain& chain, memberquantity q);
