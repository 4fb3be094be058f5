// SPDX-License-Identifier: GPL-3.0-or-later
// Means at the nodes.
#include "solver/results/stressmeans.h"

#include <algorithm>
#include <cmath>

#include "solver/base/parallel.h"
#include "solver/elements/kinds.h"

static const double sharpest = 20 * EIGEN_PI / 180;  // angle of a fold that a surface goes on over

namespace {
struct cornerkey {
    int node, group, number;
    bool with(const cornerkey& o) const { return node == o.node && group == o.group; }
};
}  // namespace

// Corners by node, then group, then number.
static std::vector<cornerkey> sortedcorners(const model& m, const platestresses& p) {
    const auto eachcorner = [&](auto use) {
        for (std::size_t i = 0; i < p.elements.size(); ++i) {
            const elementdef& def = m.elements[std::size_t(p.elements[i])];
            for (int c = p.first[i]; c < p.first[i + 1]; ++c)
                use(cornerkey{def.node[c - p.first[i]], def.group, c});
        }
    };
    std::vector<std::size_t> end(m.nodes.size() + 1, 0);  // of the node before, then its own
    eachcorner([&](const cornerkey& key) { ++end[std::size_t(key.node) + 1]; });
    for (std::size_t n = 1; n < end.size(); ++n) end[n] += end[n - 1];
    std::vector<cornerkey> keys(std::size_t(p.corners));
    eachcorner([&](const cornerkey& key) { keys[end[std::size_t(key.node)]++] = key; });
    for (std::size_t n = 0, first = 0; n < m.nodes.size(); first = end[n++])
        std::stable_sort(keys.data() + first, keys.data() + end[n],
                         [](const cornerkey& a, const cornerkey& b) { return a.group < b.group; });
    return keys;
}

// Shares the corners first..last-1 of one node and group out to new slots: from one corner on to
// all that continue its surface, and from these on.
static void addslots(const std::vector<cornerkey>& keys, std::size_t first, std::size_t last,
                     meanslots& r) {
    const auto normal = [&](int corner) -> vec3 {
        return r.axes[std::size_t(r.elementof[std::size_t(corner)])].row(2);
    };
    const double least = std::cos(sharpest);
    for (std::size_t i = first; i < last; ++i) {
        if (r.slot[std::size_t(keys[i].number)] >= 0) continue;
        const int slot = r.count();
        std::size_t next = r.order.size();
        r.slot[std::size_t(keys[i].number)] = slot;
        r.order.push_back(keys[i].number);
        for (; next < r.order.size(); ++next) {
            const int from = r.order[next];
            for (std::size_t j = i + 1; j < last; ++j) {
                const auto to = std::size_t(keys[j].number);
                const double cosine = normal(from).dot(normal(int(to)));
                if (r.slot[to] >= 0 || std::fabs(cosine) < least) continue;
                r.slot[to] = slot;
                r.opposed[to] = r.opposed[std::size_t(from)] != (cosine < 0);
                r.order.push_back(int(to));
            }
        }
        // The sum over a slot in the order of the elements, whatever their angles.
        std::sort(r.order.begin() + r.first.back(), r.order.end());
        r.first.push_back(int(r.order.size()));
    }
}

meanslots findslots(const model& m, const settings& s, const platestresses& p) {
    meanslots r;
    r.slot.assign(std::size_t(p.corners), -1);
    r.opposed.assign(std::size_t(p.corners), 0);
    r.elementof.resize(std::size_t(p.corners));
    r.axes.resize(p.elements.size());
    parallelpieces(int(p.elements.size()), 256, [&](int first, int last, int) {
        for (int i = first; i < last; ++i) {
            r.axes[std::size_t(i)] = stressaxes(elementat(m, s, p.elements[std::size_t(i)]));
            for (int c = p.first[std::size_t(i)]; c < p.first[std::size_t(i) + 1]; ++c)
                r.elementof[std::size_t(c)] = i;
        }
    });
    r.first.push_back(0);
    const std::vector<cornerkey> keys = sortedcorners(m, p);
    for (std::size_t first = 0, last = 0; first < keys.size(); first = last) {
        while (last < keys.size() && keys[last].with(keys[first])) ++last;
        addslots(keys, first, last, r);
    }
    return r;
}

std::vector<facestress> findmeans(const model& m, const settings& s, const platestresses& p,
                                  const meanslots& slots, int lc) {
    std::vector<facestress> means(std::size_t(slots.count()));
    parallelpieces(slots.count(), 512, [&](int first, int last, int) {
        for (int i = first; i < last; ++i) {
            const int begin = slots.first[std::size_t(i)], end = slots.first[std::size_t(i) + 1];
            facestress& mean = means[std::size_t(i)];
            for (int k = begin; k < end; ++k) {
                const auto corner = std::size_t(slots.order[std::size_t(k)]);
                const auto place = std::size_t(slots.elementof[corner]);
                const facestress own = facestressof(elementat(m, s, p.elements[place]),
                                                    slots.axes[place], p.of(lc, int(corner)));
                const double share = 1.0 / (end - begin);
                mean.membrane += share * own.membrane;
                mean.bending += (slots.opposed[corner] ? -share : share) * own.bending;
            }
        }
    });
    return means;
}

facestress meanat(const meanslots& slots, const std::vector<facestress>& means, int corner) {
    facestress mean = means[std::size_t(slots.slot[std::size_t(corner)])];
    if (slots.opposed[std::size_t(corner)]) mean.bending = -mean.bending;
    return mean;
}
