// SPDX-License-Identifier: GPL-3.0-or-later
// Golden texts: words and line ends equal, numbers within 1e-8 of the largest of their column.
#pragma once

#include <string>

// Compares a text with the golden file of this path under tests/. Empty when they agree; else the
// first twenty lines that differ. The text is kept beside the golden file as .out then, where
// tests/accept finds it.
std::string comparegolden(const std::string& text, const std::string& golden);
