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
    const auto corner = [&](std::size_t k) { return nodes.row(0, long(row[k])); };
    const auto p = corner(1), q = corner(2), r = corner(3), s = corner(elnn == 4 ? 4 : 2);
    const auto& from = elnn == 4 ? q : p;  // the second diagonal, or side
    double a[3], b[3];
    for (std::size_t k = 0; k < 3; ++k) {
        a[k] = double(r[k]) - double(p[k]);
        b[k] = double(s[k]) - double(from[k]);
    }
    std::array<double, 3> n = {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2],
                               a[0] * b[1] - a[1] * b[0]};
    const double length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
    for (double& x : n) x = length > 0 ? x / length : 0;
    return n;
}
