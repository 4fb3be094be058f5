// SPDX-License-Identifier: GPL-3.0-or-later
// The solver program but for its entry.
#pragma once

#include <string>
#include <vector>

// Does what the words of the command line ask for; returns the exit code.
int runprogram(const std::vector<std::string>& words);
