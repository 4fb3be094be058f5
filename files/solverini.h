// SPDX-License-Identifier: GPL-3.0-or-later
// feiflu.ini as the workbench reads and writes it: a key and its value a line, comments behind # or
// a semicolon. What a value may be is the solver's to say, with its line.
#pragma once

#include <string>
#include <utility>
#include <vector>

std::string solverinifile();
// Keys with their values in the order of the file; none where it cannot be read.
std::vector<std::pair<std::string, std::string>> solverinientries();
// Writes the value of a key; all else in the file stays. Throws runtimeerror.
void storesolverini(const std::string& key, const std::string& value);
