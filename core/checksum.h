// SPDX-License-Identifier: GPL-3.0-or-later
// A model's fingerprint, by which results are known to be this model's.
#pragma once

#include <string>

// Sixteen hexadecimal digits of what the analysis reads of the model whose path without extension
// is base: nodes, elements, rotations, groups, constraints, loads, units. A missing file counts as
// empty.
std::string modelchecksum(const std::string& base);
