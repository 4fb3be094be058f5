// SPDX-License-Identifier: GPL-3.0-or-later
// Tables of what was read.
#include "exchange/imported.h"

#include <algorithm>
#include <map>

#include "core/catalogue.h"
#include "core/platform.h"
#include "core/runtime.h"

int imported::groupof(const std::string& name) {
    const auto [at, isnew] = groupsbyname.try_emplace(name, int(groups.size()) + 1);
    if (isnew) groups.emplace_back().name = name;
    return at->second;
}

void tellread(imported& found) {
    std::map<int, long> counts;
    for (const importedelement& e : found.elements) ++counts[e.type];
    importreport& report = found.report;
    if (!found.nodes.empty()) report.read("Nodes", long(found.nodes.size()));
    for (const auto& [type, count] : counts) report.read(eltypname(type) + " elements", count);
    if (!found.constraints.empty()) report.read("Constraints", long(found.constraints.size()));
    if (!found.cases.empty()) report.read("Load cases", long(found.cases.size()));
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

template <typename T>
static void keepmarked(std::vector<T>& list, const std::vector<int>& place) {
    if (list.empty()) return;
    for (std::size_t i = 1; i < place.size(); ++i)
        if (place[i] != 0) list[std::size_t(place[i]) - 1] = std::move(list[i - 1]);
    list.resize(std::size_t(std::ranges::max(place)));
}

void dropunused(imported& found, const std::vector<int>& butfor) {
    std::vector<int> place(found.nodes.size() + 1, 0);
    const auto mark = [&](int n) { place[std::size_t(n)] = 1; };
    for (const importedelement& e : found.elements)
        for (const int n : e.corners) mark(n);
    for (const int n : butfor) mark(n);
    for (const importedrow& row : found.constraints) mark(row.item);
    for (const importedcase& c : found.cases)
        for (const importedrow& row : c.nodal) mark(row.item);
    place[0] = 0;
    int kept = 0;
    for (int& n : place)
        if (n != 0) n = ++kept;
    if (std::size_t(kept) == found.nodes.size()) return;
    found.report.skipped("Nodes that nothing uses", 0, long(found.nodes.size()) - kept);
    keepmarked(found.nodes, place);
    keepmarked(found.nodenumbers, place);
    keepmarked(found.nodenames, place);
    for (importedelement& e : found.elements)
        for (int& n : e.corners) n = place[std::size_t(n)];
    for (importedrow& row : found.constraints) row.item = place[std::size_t(row.item)];
    for (importedcase& c : found.cases)
        for (importedrow& row : c.nodal) row.item = place[std::size_t(row.item)];
    for (reportline& line : found.report.lines())
        if (line.items == reportitems::nodes)
            for (int& n : line.numbers) n = place[std::size_t(n)];
}

void readingprogress(const std::string& name, double share) {
    if (!theplatform().progress("Reading " + name, share))
        throw runtimeerror{errstopped, "Reading of " + name + " was given up"};
}
