// SPDX-License-Identifier: GPL-3.0-or-later
// What a run has found, case by case, from BASE.sum: sums of loads and reactions, what is left of
// both, largest displacements with their nodes, warnings.
#pragma once

#include <array>
#include <string>
#include <vector>

using sums = std::array<double, 6>;  // forces X Y Z, moments X Y Z about the origin

struct casebalance {
    int lc = 0;
    std::string name;
    std::vector<std::pair<std::string, sums>> loads;  // by kind
    sums applied{}, reactions{}, difference{};
    double residual = 0;
    double translation = 0, rotation = 0;
    int translationnode = 0, rotationnode = 0;
    double held = 0;
    double lever = 0;  // of a force about the origin: the farthest coordinate of the model
    std::vector<std::string> warnings;
    // Largest difference over the largest applied or reaction value of its kind; a moment also over
    // that of the largest force at its lever, for loads in symmetry have none.
    double rest() const;
    bool isbalanced() const;  // neither that nor the residual exceeds restlimit
};
const double restlimit = 1e-6;

struct balance {
    std::vector<casebalance> cases;
    std::string fault;  // why there is none
};
balance readbalance();

// A page of rows. A row is red where something is out of balance.
struct balancerow {
    std::vector<std::string> cells;
    bool head = false, red = false;
};
std::vector<balancerow> balancepage(const balance& b);
