// SPDX-License-Identifier: GPL-3.0-or-later
// The row of the section "units".
#include "core/unitsrow.h"

#include <filesystem>

#include "core/kalsections.h"
#include "core/textfile.h"

const char* const unitssection = "units";

std::string unitsrow(const std::string& base) {
    const std::string name = findnocase(base + ".kal");
    std::error_code ec;
    if (!std::filesystem::exists(name, ec)) return {};
    const std::string text = readkaltext(name);
    for (auto s = nextkalsection(text, 0, name); s; s = nextkalsection(text, s->next, name))
        if (s->keyword == unitssection && s->end > s->rows)
            return text.substr(s->rows, text.find('\n', s->rows) - s->rows);
    return {};
}
