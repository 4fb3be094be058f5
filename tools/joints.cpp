// SPDX-License-Identifier: GPL-3.0-or-later
// The search for ends that meet.
#include "tools/joints.h"
#include "tools/spacecells.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_map>

#include "core/model.h"
#include "core/session.h"

namespace {

struct pieceend {
    int g, end;
};

// The ends of the elements by place, in a hashed grid of cells as wide as the tolerance.
class endgrid {
  public:
    explicit endgrid(const std::vector<int>& members) {
        for (const int g : members)
            for (int end = 1; end <= 2; ++end)
                cells[keyof(cellof(definitionpoint(graphics, g, end), side))].push_back({g, end});
    }
    // Calls take(end) for the ends nearer than nodetol to a place.
    template <typename Take>
    void around(const point3& at, Take take) const {
        const spacecell c = cellof(at, side);
        for (int i = -1; i <= 1; ++i)
            for (int j = -1; j <= 1; ++j)
                for (int k = -1; k <= 1; ++k) {
                    const auto found = cells.find(keyof({c[0] + i, c[1] + j, c[2] + k}));
                    if (found == cells.end()) continue;
                    for (const pieceend& e : found->second)
                        if (lengthof(definitionpoint(graphics, e.g, e.end) - at) < nodetol) take(e);
                }
    }

  private:
    double side = nodetol > 0 ? nodetol*(1 + 1e-6) : 1;
    std::unordered_map<std::uint64_t, std::vector<pieceend>> cells;
};

}  // namespace

static jointtable jointsof(const std::vector<int>& members) {
    jointtable joints;
    const endgrid grid(members);
    for (int end = 1; end <= 2; ++end) {
        joints[std::size_t(end)].resize(std::size_t(ngraphics()) + 1);
        for (const int g : members) {
            auto& list = joints[std::size_t(end)][std::size_t(g)];
            grid.around(definitionpoint(graphics, g, end), [&](const pieceend& e) {
                if (e.g != g) list.push_back(e.end == 1 ? e.g : -e.g);
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
