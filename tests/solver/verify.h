// SPDX-License-Identifier: GPL-3.0-or-later
// Computed values against references. Each is a check and a row of docs/verification.md, and fails
// where the page tells another result. A run of all tests then leaves the page as it should be in
// verification.md.out, and tests/accept takes that over.
#pragma once

#include <string>

#include "tests/solver/build.h"

struct proof {
    const char* chapter;  // mark of the page: <!-- rows chapter -->
    std::string what, mesh;
    const char* source;  // letters in the page's list of sources; several with commas
    double printed;      // in the source; 0: the same as the truth
    double truth;        // what a perfect element gives
    double value;        // computed
    double tolerance;    // of the truth
};

// Checks value / truth and holds the page against the row.
void prove(const proof& p);

// Solves; the reactions of all cases must balance the loads to 1e-9 of them.
results solvebalanced(build& b);

// Meshes of a benchmark, n elements along an edge, with the error that each may have.
struct fineness {
    int n;
    double tolerance;
};
using meshes = std::vector<fineness>;

// Values on meshes each twice as fine as the one before: the last step shows the second order.
void provequadratic(const std::vector<double>& values, double truth);

// All words stand in a message.
void expectwords(const std::string& said, std::initializer_list<const char*> words);

// Mean of the corner stresses at node n over the elements that share it: value of their global
// records by index.
double meanat(const build& b, const results& r, int n, int value);

// "SHELL4 8 x 8"
std::string meshname(int type, int nx, int ny);
