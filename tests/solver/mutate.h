// SPDX-License-Identifier: GPL-3.0-or-later
// Damaged input for the solver: all files that it reads in one text, damage to that text, and a run
// on what comes of it.
#pragma once

#include <random>
#include <string>
#include <vector>

// Whole sets of good files of small models that use all element kinds and load types.
const std::vector<std::string>& samplesets();

// The set with a few tokens, lines or bytes changed.
std::string damaged(const std::string& set, std::mt19937& random);

// Writes the set's files into the folder and does what the program does with them, in this process.
// Returns the refusal, "" where there was none. Anything else thrown is a fault of the solver.
std::string runset(const std::string& set, const std::string& folder);
