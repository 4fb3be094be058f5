// SPDX-License-Identifier: GPL-3.0-or-later
// The row of the section "units".
#include "core/unitsrow.h"

#include <fstream>

#include "core/textfile.h"

const char* const unitssection = "units";

std::string unitsrow(const std::string& base) {
    std::ifstream in(findnocase(base + ".kal"));
    const std::string head = "\"section\",\"" + std::string(unitssection) + "\"";
    const auto next = [&](std::string& line) {
        if (!std::getline(in, line)) return false;
        if (line.ends_with('\r')) line.pop_back();
        return true;
    };
    for (std::string line; next(line);)
        if (line == head) return next(line) && line != "\"end\"" ? line : "";
    return {};
}
