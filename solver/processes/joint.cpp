// SPDX-License-Identifier: GPL-3.0-or-later
#include "solver/processes/joint.h"

#include <algorithm>
#include <limits>

joint::joint(const std::vector<int>& given, const std::vector<int>& taken) {
    std::vector<int> items = given;
    std::ranges::sort(items);
    items.erase(std::unique(items.begin(), items.end()), items.end());
    count = int(items.size());
    const auto places = [&](const std::vector<int>& list) {
        std::vector<int> place;
        place.reserve(list.size());
        for (const int one : list) {
            const auto at = std::ranges::lower_bound(items, one);
            place.push_back(at != items.end() && *at == one ? int(at - items.begin()) : -1);
        }
        return place;
    };
    from = places(given);
    into = places(taken);
}

void joint::pass(const double* given, double* taken, int width, join how) const {
    const auto w = std::size_t(width);
    const double none = how == join::sum ? 0 : std::numeric_limits<double>::infinity();
    std::vector<double> at(std::size_t(count) * w, none);
    for (std::size_t i = 0; i < from.size(); ++i)
        for (std::size_t k = 0; k < w; ++k) {
            double& here = at[std::size_t(from[i]) * w + k];
            const double value = given[i * w + k];
            here = how == join::sum ? here + value : std::min(here, value);
        }
    for (std::size_t i = 0; i < into.size(); ++i)
        for (std::size_t k = 0; k < w; ++k)
            taken[i * w + k] = into[i] < 0 ? none : at[std::size_t(into[i]) * w + k];
}
