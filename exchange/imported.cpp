// SPDX-License-Identifier: GPL-3.0-or-later
// Tables of what was read.
#include "exchange/imported.h"

#include <algorithm>

#include "core/platform.h"
#include "core/runtime.h"

int imported::groupof(const std::string& name) {
    const auto [at, isnew] = groupsbyname.try_emplace(name, int(groups.size()) + 1);
    if (isnew) groups.emplace_back().name = name;
    return at->second;
}

void numbertable::put(long number, int item) {
    const long spread = 8, start = 1024;  // entries of the plain table for each item in it
    ++count;
    if (number < 0 || number > spread * count + start) {
        sparse[number] = item;
        return;
    }
    if (std::size_t(number) >= dense.size())
        dense.resize(std::max(std::size_t(number) + 1, dense.size() * 2));
    dense[std::size_t(number)] = item;
}

int numbertable::find(long number) const {
    if (number >= 0 && std::size_t(number) < dense.size() && dense[std::size_t(number)] != 0)
        return dense[std::size_t(number)];
    if (sparse.empty()) return 0;
    const auto at = sparse.find(number);
    return at == sparse.end() ? 0 : at->second;
}

void readingprogress(const std::string& name, double share) {
    if (!theplatform().progress("Reading " + name, share))
        throw runtimeerror{errstopped, "Reading of " + name + " was given up"};
}
