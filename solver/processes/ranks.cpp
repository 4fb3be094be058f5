// SPDX-License-Identifier: GPL-3.0-or-later
// State: the processes that share this program's analysis.
#include "solver/processes/ranks.h"

#include <algorithm>

#include "solver/processes/joint.h"

static ranks single;
static ranks* current = &single;

void ranks::sum(double*, std::int64_t) {}

void ranks::most(double*, std::int64_t) {}

void ranks::takefirst(double*, std::int64_t) {}

std::vector<double> ranks::greatest(const std::vector<double>& mine) {
    const std::vector<double> all = collect(mine);
    std::vector<double> best = mine;
    for (auto at = all.begin(); at != all.end(); at += std::ptrdiff_t(mine.size()))
        best = std::max(best, {at, at + std::ptrdiff_t(mine.size())});
    return best;
}

std::unique_ptr<route> ranks::findroute(const std::vector<int>& given,
                                        const std::vector<int>& taken) {
    return std::make_unique<joint>(given, taken);
}

std::vector<std::uint16_t> ranks::partition(const model& stretch) {
    return std::vector<std::uint16_t>(stretch.elements.size(), 0);
}

void ranks::end(const std::string&) {}

ranks& allranks() {
    return *current;
}

void workalone() {
    current = &single;
}

void setranks(ranks& r) {
    current = &r;
}

void refusefirst(double place, const std::string& fault) {
    ranks& all = allranks();
    const std::vector<double> first = all.greatest({fault.empty() ? 0.0 : 1.0, -place});
    if (first[0] == 0) return;
    refuse(all.anyfault(-place == first[1] ? fault : ""));
}
