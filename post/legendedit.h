// SPDX-License-Identifier: GPL-3.0-or-later
// Edits of the legend in place.
#pragma once

#include <string>

// One edit by its name and value, as the legend's fields and scripts give it: "max 355", "min 0",
// "auto", "palette even", "bands 8", "decimals 2" or "decimals auto". False with the reason, and
// nothing changed, where it makes no sense; else it is drawn.
bool editlegend(const std::string& what, const std::string& value, std::string& fault);
