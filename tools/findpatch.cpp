// SPDX-License-Identifier: GPL-3.0-or-later
// Loops of lines. The ends lie in a hashed grid of cells as wide as the tolerance.
#include "tools/findpatch.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <set>
#include <unordered_map>

#include "core/colours.h"
#include "core/model.h"
#include "core/platform.h"
#include "core/session.h"
#include "edit/move.h"
#include "edit/selection.h"
#include "view/moddraw.h"

namespace {

struct lineend {
    int g, end;
};

// The ends of all lines by place.
class endgrid {
  public:
    endgrid() {
        for (int g = 1; g <= ngraphics(); ++g)
            for (int end = 1; end <= 2 && kindof(graphics, g) == kindline; ++end)
                cells[keyof(cellof(definitionpoint(graphics, g, end)))].push_back({g, end});
    }
    // Calls take(end) for the ends nearer than nodetol to a place.
    template <typename Take>
    void around(const point3& at, Take take) const {
        const cell c = cellof(at);
        for (int i = -1; i <= 1; ++i)
            for (int j = -1; j <= 1; ++j)
                for (int k = -1; k <= 1; ++k) {
                    const auto found = cells.find(keyof({c[0] + i, c[1] + j, c[2] + k}));
                    if (found == cells.end()) continue;
                    for (const lineend& e : found->second)
                        if (lengthof(definitionpoint(graphics, e.g, e.end) - at) < nodetol) take(e);
                }
    }

  private:
    using cell = std::array<std::int64_t, 3>;
    cell cellof(const point3& at) const {
        const double most = 1e18;  // what lies farther off shares the last cells
        cell c{};
        for (std::size_t k = 0; k < 3; ++k)
            c[k] = std::int64_t(std::clamp(std::floor(at[k] / side), -most, most));
        return c;
    }
    static std::uint64_t keyof(const cell& c) {
        std::uint64_t h = 0;
        for (const std::int64_t v : c) {
            h = (h ^ std::uint64_t(v)) * 0x9E3779B97F4A7C15u;
            h ^= h >> 31;
        }
        return h;
    }
    double side = nodetol > 0 ? nodetol*(1 + 1e-6) : 1;
    std::unordered_map<std::uint64_t, std::vector<lineend>> cells;
};

}  // namespace

jointtable findjoints() {
    jointtable joints;
    const endgrid grid;
    for (int end = 1; end <= 2; ++end) {
        joints[std::size_t(end)].resize(std::size_t(ngraphics()) + 1);
        for (int g = 1; g <= ngraphics(); ++g) {
            if (kindof(graphics, g) != kindline) continue;
            auto& list = joints[std::size_t(end)][std::size_t(g)];
            grid.around(definitionpoint(graphics, g, end), [&](const lineend& e) {
                if (e.g != g) list.push_back(e.end == 1 ? e.g : -e.g);
            });
            std::ranges::sort(list, {}, [](int c) { return std::pair(std::abs(c), c < 0); });
            // Two cells of equal hash show an end twice.
            list.erase(std::unique(list.begin(), list.end()), list.end());
        }
    }
    return joints;
}

static point3 wayof(int signedline) {
    const int g = std::abs(signedline);
    const point3 way = definitionpoint(graphics, g, 1) - definitionpoint(graphics, g, 2);
    return signedline > 0 ? way : -1.0 * way;
}

// Directions of the signed lines a and b, each from point 2 to point 1 times its sign, and their
// cross product.
static void turningvector(int a, int b, point3& wayofa, point3& wayofb, point3& turn) {
    wayofa = wayof(a);
    wayofb = wayof(b);
    turn = cross(wayofa, wayofb);
}

// Angle from the way back to the way on, about the loop's normal, 0 to 2 pi; -1 where the way on
// leaves the plane of the loop.
static double turnof(const point3& back, const point3& on, const point3& normal) {
    const double outofplane = 1e-3;  // of the line's length
    const double size = lengthof(normal), length = lengthof(on);
    if (!(length > 0) || std::fabs(dot(on, normal)) > outofplane * length * size) return -1;
    const double angle = std::atan2(dot(cross(back, on), normal) / size, dot(back, on));
    return angle <= 0 ? angle + 2 * pi : angle;
}

// Follows the lines from g by way of c, which meets its end 1, and back. Empty where none leads
// back.
static std::vector<int> walk(const jointtable& joints, int g, int c) {
    std::vector<int> loop = {g, std::abs(c)};
    std::set<int> used(loop.begin(), loop.end());
    point3 back, on, normal;
    // Ways from the joint: of g towards its end 2, of c towards its far end.
    turningvector(-g, -c, back, on, normal);
    if (!(lengthof(normal) > 0)) return {};
    for (int current = c;;) {
        const int far = current > 0 ? 2 : 1;
        const auto& list = joints[std::size_t(far)][std::size_t(std::abs(current))];
        if (loop.size() > 2 && std::ranges::find(list, -g) != list.end()) return loop;
        back = wayof(current);  // from the far end to the joint before
        int best = 0;
        double least = 2 * pi;
        for (const int next : list) {
            if (used.count(std::abs(next)) != 0) continue;
            const double turn = turnof(back, wayof(-next), normal);
            if (turn < 0 || turn >= least) continue;
            least = turn;
            best = next;
        }
        if (best == 0) return {};
        loop.push_back(std::abs(best));
        used.insert(std::abs(best));
        current = best;
    }
}

static void selectloop(const std::vector<int>& loop) {
    hideselection();
    emptyselection();
    int entries = 0;
    for (std::size_t k = 0; k < loop.size(); ++k) {
        graphsel(long(k) + 1, 0) = loop[k];
        graphsel(long(k) + 1, 1) = 1;
        for (int end = 1; end <= 2; ++end) {
            ++entries;
            graphsel2(entries, 0) = loop[k];
            graphsel2(entries, 1) = end;
        }
    }
    graphsel(0, 0) = int(loop.size());
    graphsel2(0, 0) = entries;
    showselection();
}

// True when the user wants to see the next one.
static bool tellfound() {
    messagebox box;
    box.text = "found patch";
    box.set = buttons::okcancel;
    box.icon = icons::information;
    return theplatform().show(box) == answers::ok;
}

int findpatch() {
    setselectitem(selectgraphics);
    const jointtable joints = findjoints();
    int found = 0;
    for (int g = 1; g <= ngraphics(); ++g)
        for (const int c : joints[1][std::size_t(g)]) {
            const std::vector<int> loop = walk(joints, g, c);
            if (loop.empty()) continue;
            ++found;
            selectloop(loop);
            if (!tellfound()) return found;
        }
    clearselection();
    if (found == 0) theplatform().message("No lines form a closed loop", icons::information);
    return found;
}
