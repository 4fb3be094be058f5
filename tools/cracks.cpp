// SPDX-License-Identifier: GPL-3.0-or-later
// Edges of one plate alone, sorted into cubes of space where they are compared.
#include "tools/cracks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <tuple>
#include <utility>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/session.h"
#include "tools/elementshape.h"
#include "tools/spacecells.h"
#include "view/celllists.h"

std::vector<std::pair<int, int>> joinednodes() {
    std::vector<std::pair<int, int>> list;
    for (int e = 1; e <= nelems(); ++e)
        if (const int t = int(elems(e, 0)); t == typespring2 || t == typerigid) {
            const int a = int(elems(e, 1)), b = int(elems(e, 2));
            list.emplace_back(std::min(a, b), std::max(a, b));
        }
    std::ranges::sort(list);
    return list;
}

// --- edges --------------------------------------------------------------------------------------

static std::vector<plateedge> alledges() {
    std::vector<plateedge> edges;
    for (int e = 1; e <= nelems(); ++e) {
        const int count = nodesoftype(elems(e, 0));
        if (count < 3 || !hascorners(e)) continue;
        for (int k = 1; k <= count; ++k) {
            const int a = int(elems(e, k)), b = int(elems(e, k % count + 1));
            if (a != b) edges.push_back({a, b, e});
        }
    }
    return edges;
}

plateedges findedges() {
    plateedges found;
    std::vector<plateedge> edges = alledges();
    const auto ends = [](const plateedge& x) {
        return std::pair(std::min(x.a, x.b), std::max(x.a, x.b));
    };
    std::ranges::sort(edges, {}, [&](const plateedge& x) {
        return std::tuple(std::min(x.a, x.b), std::max(x.a, x.b), x.element);
    });
    for (std::size_t i = 0; i < edges.size();) {
        std::size_t end = i + 1;
        while (end < edges.size() && ends(edges[end]) == ends(edges[i])) ++end;
        if (end - i == 1) found.lonely.push_back(edges[i]);
        const plateedge &x = edges[i], &y = edges[end - 1];
        if (end - i == 2 && x.a == y.a && egroup(x.element) == egroup(y.element) &&
            x.element != y.element)
            found.opposite.push_back({x, y});
        i = end;
    }
    return found;
}

// --- edges on each other ------------------------------------------------------------------------

namespace {

struct segment {
    point3 from, along;  // a unit vector
    double length, nearness;
};

// Which edges pass through which cubes.
class edgecells {
  public:
    explicit edgecells(const std::vector<segment>& list) {
        double sum = 0;
        for (const segment& s : list) sum += s.length;
        const double lengths = 2;  // side of a cube, in mean lengths
        side = lengths * sum / double(list.size());
        if (!(side > 0)) side = 1;
        for (std::size_t i = 0; i < list.size(); ++i) enter(list[i], int(i));
        std::ranges::sort(entries);
        entries.erase(std::unique(entries.begin(), entries.end()), entries.end());
    }
    // Calls take(edge) for those that may pass a place within their nearness.
    template <typename Take>
    void at(const point3& place, Take take) const {
        const std::uint64_t key = keyof(cellof(place, side));
        auto i = std::ranges::lower_bound(entries, std::pair(key, 0));
        for (; i != entries.end() && i->first == key; ++i) take(i->second);
    }

  private:
    // The cubes about points of the edge, so close that none is missed between them.
    void enter(const segment& s, int number) {
        const int parts = 8;  // of a cube's side, between the points
        const int count = int(std::ceil(s.length / side * parts));
        const double reach = side / parts / 2 + s.nearness;
        const point3 corner{reach, reach, reach};
        for (int k = 0; k <= count; ++k) {
            const point3 at = s.from + s.length * k / std::max(count, 1) * s.along;
            const spacecell low = cellof(at - corner, side), high = cellof(at + corner, side);
            for (auto x = low[0]; x <= high[0]; ++x)
                for (auto y = low[1]; y <= high[1]; ++y)
                    for (auto z = low[2]; z <= high[2]; ++z)
                        entries.emplace_back(keyof({x, y, z}), number);
        }
    }
    double side = 1;
    std::vector<std::pair<std::uint64_t, int>> entries;
};

}  // namespace

static segment segmentof(const plateedge& x) {
    segment s{placeofnode(x.a), placeofnode(x.b) - placeofnode(x.a), 0, 0};
    s.length = lengthof(s.along);
    if (s.length > 0) s.along = (1 / s.length) * s.along;
    const double least = 0.001, most = 0.05;  // of the length
    s.nearness = std::clamp(mergetol, least * s.length, most * s.length);
    return s;
}

static double distanceto(const segment& s, const point3& p) {
    const double t = std::clamp(dot(p - s.from, s.along), 0.0, s.length);
    return lengthof(p - s.from - t * s.along);
}

// Does t run along s for more than their nearness?
static bool runsalong(const segment& s, const segment& t) {
    const double from = dot(t.from - s.from, s.along), to = from + t.length * dot(t.along, s.along);
    const double low = std::max(std::min(from, to), 0.0),
                 high = std::min(std::max(from, to), s.length);
    if (!(high - low > s.nearness)) return false;
    return distanceto(t, s.from + low * s.along) <= s.nearness &&
           distanceto(t, s.from + high * s.along) <= s.nearness;
}

// Joined on purpose by lines between their ends.
static bool islinked(const plateedge& x, const plateedge& y,
                     const std::vector<std::pair<int, int>>& joined) {
    for (const int n : {x.a, x.b})
        for (const int m : {y.a, y.b})
            if (std::ranges::binary_search(joined, std::pair(std::min(n, m), std::max(n, m))))
                return true;
    return false;
}

std::vector<edgepair> findcracks(const std::vector<plateedge>& lonely) {
    std::vector<edgepair> cracks;
    if (lonely.empty()) return cracks;
    std::vector<segment> segments;
    std::vector<int> numbers;
    for (std::size_t i = 0; i < lonely.size(); ++i) {
        segments.push_back(segmentof(lonely[i]));
        numbers.push_back(int(i));
    }
    celllists atnode;
    atnode.build(std::size_t(nnodes()) + 1, numbers, [&](std::size_t i, auto work) {
        work(std::size_t(lonely[i].a));
        work(std::size_t(lonely[i].b));
    });
    const edgecells cells(segments);
    const auto joined = joinednodes();
    std::vector<std::pair<int, int>> pairs;
    for (int n = 1; n <= nnodes(); ++n) {
        const auto own = atnode.of(std::size_t(n));
        if (own.empty()) continue;
        const point3 place = placeofnode(n);
        cells.at(place, [&](int at) {
            const plateedge& x = lonely[std::size_t(at)];
            const segment& s = segments[std::size_t(at)];
            if (n == x.a || n == x.b || distanceto(s, place) > s.nearness) return;
            for (const int other : own) {
                const plateedge& y = lonely[std::size_t(other)];
                if (x.element != y.element && runsalong(s, segments[std::size_t(other)]) &&
                    !islinked(x, y, joined))
                    pairs.emplace_back(std::min(at, other), std::max(at, other));
            }
        });
    }
    std::ranges::sort(pairs);
    pairs.erase(std::unique(pairs.begin(), pairs.end()), pairs.end());
    for (const auto& [i, j] : pairs)
        cracks.push_back({lonely[std::size_t(i)], lonely[std::size_t(j)]});
    return cracks;
}
