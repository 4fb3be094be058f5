// SPDX-License-Identifier: GPL-3.0-or-later
// Numbers as a picture shows them.
#pragma once

#include <string>

std::string shorttext(double value);  // four digits that count
// The same; what is nothing beside the scale is 0.
std::string plainnumber(double value, double scale);
