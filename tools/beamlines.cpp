// SPDX-License-Identifier: GPL-3.0-or-later
// Line elements that lie on graphic elements.
#include "tools/beamlines.h"

#include <algorithm>
#include <cmath>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/session.h"
#include "view/drawelems.h"

// Ends within nodetol of each other stand in one cell or in neighbours.
static double cellside() {
    const double roomy = 4;
    return nodetol > 0 ? roomy * nodetol : 1e-6;
}

static std::uint64_t cellof(const point3& at, const point3& shift) {
    std::uint64_t key = 0;
    const std::uint64_t spread = 0x9E3779B97F4A7C15;  // an odd number that stirs all bits
    for (std::size_t k = 0; k < 3; ++k)
        key = (key ^ std::uint64_t(std::llround(at[k] / cellside() + shift[k]))) * spread;
    return key;
}

void beamlines::enter(const point3& from, const point3& to) {
    byend.insert({cellof(from, {0, 0, 0}), {from, to}});
}

beamlines::beamlines(int nview) {
    for (int e = 1; e <= nelems(); ++e) {
        if (nodesoftype(elems(e, 0)) != 2 || !isshown(e, nview)) continue;
        point3 end[2];
        for (std::size_t i = 0; i < 2; ++i) {
            const auto at = nodes.row(0, long(elems(e, long(i) + 1)));
            end[i] = {at[0], at[1], at[2]};
        }
        enter(end[0], end[1]);
        enter(end[1], end[0]);
    }
}

// The beam at a place that leads towards another, no farther than there.
const beamlines::beam* beamlines::along(const point3& from, const point3& to) const {
    const point3 way = to - from;
    const double length = lengthof(way), near = std::max(nodetol, 1e-5 * length), half = 0.25;
    for (int corner = 0; corner < 8; ++corner) {
        const auto shift = [corner, half](int k) { return corner >> k & 1 ? half : -half; };
        const auto [first, last] = byend.equal_range(cellof(from, {shift(0), shift(1), shift(2)}));
        for (auto at = first; at != last; ++at) {
            const beam& b = at->second;
            const point3 run = b.to - b.from;
            if (lengthof(b.from - from) > near || lengthof(run) <= near) continue;
            if (dot(run, way) <= 0 || lengthof(run) > length + near) continue;
            if (lengthof(cross(run, way)) <= near * length) return &b;
        }
    }
    return nullptr;
}

bool beamlines::lead(const point3& from, const point3& to) const {
    point3 at = from;
    for (std::size_t step = 0; step <= byend.size(); ++step) {
        if (lengthof(to - at) <= std::max(nodetol, 1e-5 * lengthof(to - from))) return true;
        const beam* const next = along(at, to);
        if (next == nullptr) return false;
        at = next->to;
    }
    return false;
}

bool beamlines::lieon(const std::vector<point3>& chain) const {
    for (std::size_t i = 1; i < chain.size(); ++i)
        if (byend.empty() || !lead(chain[i - 1], chain[i])) return false;
    return chain.size() > 1;
}
