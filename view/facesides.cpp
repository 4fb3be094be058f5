// SPDX-License-Identifier: GPL-3.0-or-later
// The table of sides. State: that of the model last asked for.
#include "view/facesides.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numeric>

#include "core/catalogue.h"
#include "core/model.h"

namespace {

// Every side with its lower and its higher node.
template <typename Work>
void eachside(Work work) {
    for (int e = 1; e <= nelems(); ++e) {
        const auto row = elems.row(e);
        const int elnn = nodesoftype(row[0]);
        for (int k = 0; elnn > 2 && k < elnn; ++k) {
            const int a = int(row[std::size_t(k + 1)]),
                      b = int(row[std::size_t((k + 1) % elnn + 1)]);
            if (a >= 1 && b >= 1 && a <= nnodes() && b <= nnodes())
                work(std::min(a, b), std::max(a, b), 4 * e + k);
        }
    }
}

struct halfside {
    int other, side;  // the higher node
};

// Sorted by lower node, each node's stretch is short.
facesides findsides() {
    std::vector<int> first(std::size_t(nnodes()) + 2);
    eachside([&](int a, int, int) { ++first[std::size_t(a) + 1]; });
    std::partial_sum(first.begin(), first.end(), first.begin());
    std::vector<halfside> sides(std::size_t(first.back()));
    std::vector<int> place = first;
    eachside([&](int a, int b, int side) {
        sides[std::size_t(place[std::size_t(a)]++)] = {b, side};
    });
    facesides found;
    found.ring.resize(4 * (std::size_t(nelems()) + 1));
    std::iota(found.ring.begin(), found.ring.end(), 0);
    for (int a = 1; a <= nnodes(); ++a) {
        const auto begin = sides.begin() + first[std::size_t(a)],
                   end = sides.begin() + first[std::size_t(a) + 1];
        std::sort(begin, end,
                  [](const halfside& s, const halfside& t) { return s.other < t.other; });
        // Two rings become one where two of their sides change successors.
        for (auto i = begin; i != end; ++i)
            if (i + 1 != end && (i + 1)->other == i->other)
                std::swap(found.ring[std::size_t(i->side)], found.ring[std::size_t((i + 1)->side)]);
    }
    return found;
}

}  // namespace

std::uint64_t stampofmodel(bool withplaces) {
    std::uint64_t stamp = std::uint64_t(nnodes()) * 31 + std::uint64_t(nelems());
    const auto mix = [&](float x, float y) {
        const std::uint64_t both =
            std::uint64_t(std::bit_cast<std::uint32_t>(x)) << 32 | std::bit_cast<std::uint32_t>(y);
        stamp = (stamp ^ stamp >> 32) * 0x9E3779B97F4A7C15u + both;
    };
    for (int n = 1; withplaces && n <= nnodes(); ++n) {
        const auto at = nodes.row(0, n);
        mix(at[0], at[1]);
        mix(at[2], 0);
    }
    for (int e = 1; e <= nelems(); ++e) {
        const auto row = elems.row(e);
        mix(row[0], row[1]);
        mix(row[2], row[3]);
        mix(row[4], 0);
    }
    return stamp;
}

const facesides& sidesofmodel() {
    static facesides kept;
    static std::uint64_t keptstamp = 0;
    const std::uint64_t stamp = stampofmodel(false);
    if (stamp != keptstamp || kept.ring.empty()) {
        kept = {};  // not two tables at a time
        kept = findsides();
        keptstamp = stamp;
    }
    return kept;
}

std::array<double, 3> facenormal(int e) {
    const auto row = elems.row(e);
    const int elnn = nodesoftype(row[0]);
    if (elnn < 3) return {};
    const float last = float(nnodes());
    for (std::size_t k = 1; k <= std::size_t(elnn); ++k)
        if (!(row[k] >= 1 && row[k] <= last)) return {};
    const auto corner = [&](std::size_t k) { return nodes.row(0, long(row[k])).data(); };
    const float *const p = corner(1), *const q = corner(2), *const r = corner(3),
                       *const s = corner(elnn == 4 ? 4 : 2);
    const float* const from = elnn == 4 ? q : p;  // the second diagonal, or side
    const double ax = double(r[0]) - double(p[0]), bx = double(s[0]) - double(from[0]),
                 ay = double(r[1]) - double(p[1]), by = double(s[1]) - double(from[1]),
                 az = double(r[2]) - double(p[2]), bz = double(s[2]) - double(from[2]);
    const double x = ay * bz - az * by, y = az * bx - ax * bz, z = ax * by - ay * bx;
    const double length = std::sqrt(x * x + y * y + z * z), scale = length > 0 ? 1 / length : 0;
    return {x * scale, y * scale, z * scale};
}

std::vector<std::array<float, 3>> facenormals() {
    std::vector<std::array<float, 3>> normals(std::size_t(nelems()) + 1);
    for (int e = 1; e <= nelems(); ++e) {
        const auto [x, y, z] = facenormal(e);
        normals[std::size_t(e)] = {float(x), float(y), float(z)};
    }
    return normals;
}

bool facesides::isfirst(int side) const {
    for (int other = next(side); other != side; other = next(other))
        if (other < side) return false;
    return true;
}
