// SPDX-License-Identifier: GPL-3.0-or-later
// The search for ends that meet.
#include "tools/joints.h"

#include <algorithm>
#include <cmath>

#include "core/model.h"
#include "core/session.h"
#include "tools/spacecells.h"

static jointtable jointsof(const std::vector<int>& members) {
    jointtable joints;
    spacegrid ends(nodetol);  // by 2 g + end
    for (const int g : members)
        for (int end = 1; end <= 2; ++end) ends.add(definitionpoint(graphics, g, end), 2 * g + end);
    for (int end = 1; end <= 2; ++end) {
        joints[std::size_t(end)].resize(std::size_t(ngraphics()) + 1);
        for (const int g : members) {
            auto& list = joints[std::size_t(end)][std::size_t(g)];
            const point3 at = definitionpoint(graphics, g, end);
            ends.around(at, [&](int item) {
                const int otherend = item % 2 == 1 ? 1 : 2, other = (item - otherend) / 2;
                const point3 there = definitionpoint(graphics, other, otherend);
                if (other != g && lengthof(there - at) < nodetol)
                    list.push_back(otherend == 1 ? other : -other);
                return false;
            });
            std::ranges::sort(list, {}, [](int c) { return std::pair(std::abs(c), c < 0); });
            // Two cells of equal hash show an end twice.
            list.erase(std::unique(list.begin(), list.end()), list.end());
        }
    }
    return joints;
}

template <typename Takes>
static std::vector<int> members(Takes takes) {
    std::vector<int> list;
    for (int g = 1; g <= ngraphics(); ++g)
        if (takes(kindof(graphics, g))) list.push_back(g);
    return list;
}

jointtable findjoints() {
    return jointsof(members([](int kind) { return kind == kindline; }));
}

jointtable findalljoints() {
    return jointsof(members([](int kind) { return kind != kindfree; }));
}
