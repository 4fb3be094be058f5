// SPDX-License-Identifier: GPL-3.0-or-later
// Numbers as a picture shows them.
#pragma once

#include <string>

// Four digits that count, and all that stand before the point up to seven.
std::string shorttext(double value);
// The same; what is nothing beside the scale is 0.
std::string plainnumber(double value, double scale);
