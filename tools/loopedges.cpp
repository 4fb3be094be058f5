// SPDX-License-Identifier: GPL-3.0-or-later
// The search for the corners of a loop.
#include "tools/loopedges.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "core/model.h"
#include "core/numtext.h"
#include "core/session.h"
#include "tools/Graphics.h"

namespace {
// A piece on the way round: where it begins and ends, and its directions there.
struct piece {
    int g;
    point3 start, end, leaving, arriving;
    double spaces;
};
}  // namespace

static piece pieceof(int g, bool backwards) {
    piece p{};
    p.g = g;
    p.spaces = graphics(g, 0, 1);
    setgraphic(graphics, g);
    const double near = 0.01;  // of the way: the direction at an end
    p.start = graphicpoint(0);
    p.end = graphicpoint(1);
    p.leaving = graphicpoint(near) - p.start;
    p.arriving = p.end - graphicpoint(1 - near);
    if (!backwards) return p;
    std::swap(p.start, p.end);
    std::swap(p.leaving, p.arriving);
    p.leaving = -1.0 * p.leaving;
    p.arriving = -1.0 * p.arriving;
    return p;
}

static bool meet(const point3& a, const point3& b) {
    return lengthof(a - b) < nodetol;
}

// The elements one behind the other; empty when they do not close, or branch.
static std::vector<piece> chained(std::vector<int> left) {
    std::vector<piece> loop = {pieceof(left.front(), false)};
    left.erase(left.begin());
    while (!left.empty()) {
        std::vector<piece> next;
        for (const int g : left)
            for (const bool backwards : {false, true})
                if (const piece p = pieceof(g, backwards); meet(p.start, loop.back().end))
                    next.push_back(p);
        if (next.size() != 1) return {};
        loop.push_back(next.front());
        std::erase(left, next.front().g);
    }
    if (!meet(loop.back().end, loop.front().start)) loop.clear();
    return loop;
}

// The angle by which the way turns where piece k begins, radians.
static double turnbefore(const std::vector<piece>& loop, std::size_t k) {
    const point3 &a = loop[(k + loop.size() - 1) % loop.size()].arriving, &b = loop[k].leaving;
    const double size = lengthof(a) * lengthof(b);
    return size > 0 ? std::acos(std::clamp(dot(a, b) / size, -1.0, 1.0)) : 0;
}

// Spaces from piece `from` up to piece `to`, round the loop.
static double spacesbetween(const std::vector<piece>& loop, std::size_t from, std::size_t to) {
    double sum = 0;
    for (std::size_t k = from; k != to; k = (k + 1) % loop.size()) sum += loop[k].spaces;
    return sum;
}

// Sharp corners count, and among equal ones those that give opposite edges the same spaces.
static double worth(const std::vector<piece>& loop, const std::vector<double>& turns,
                    const std::array<std::size_t, 4>& at) {
    std::array<double, 4> n{};
    double sharp = 0, total = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        sharp += turns[at[i]];
        n[i] = spacesbetween(loop, at[i], at[(i + 1) % 4]);
        total += n[i];
    }
    return sharp - (std::fabs(n[0] - n[2]) + std::fabs(n[1] - n[3])) / total;
}

static std::array<std::size_t, 4> fourcorners(const std::vector<piece>& loop,
                                              const std::vector<double>& turns) {
    // Of a long loop the sharpest joints alone are tried.
    const std::size_t most = 24;
    std::vector<std::size_t> tried(loop.size());
    std::iota(tried.begin(), tried.end(), 0);
    std::ranges::stable_sort(tried, std::greater<>(), [&](std::size_t k) { return turns[k]; });
    tried.resize(std::min(tried.size(), most));
    std::ranges::sort(tried);
    std::array<std::size_t, 4> best{};
    double highest = -1e300;
    for (std::size_t a = 0; a < tried.size(); ++a)
        for (std::size_t b = a + 1; b < tried.size(); ++b)
            for (std::size_t c = b + 1; c < tried.size(); ++c)
                for (std::size_t d = c + 1; d < tried.size(); ++d) {
                    const std::array<std::size_t, 4> at = {tried[a], tried[b], tried[c], tried[d]};
                    const double value = worth(loop, turns, at);
                    if (value <= highest) continue;
                    highest = value;
                    best = at;
                }
    return best;
}

static std::vector<int> chainof(const std::vector<piece>& loop, std::size_t from, std::size_t to) {
    std::vector<int> chain;
    for (std::size_t k = from; k != to; k = (k + 1) % loop.size()) chain.push_back(loop[k].g);
    return chain;
}

regionedges divideloop(const std::vector<int>& elements) {
    const std::size_t most = 80;
    regionedges region;
    if (elements.size() < 3 || elements.size() > most) return region;
    const std::vector<piece> loop = chained(elements);
    if (loop.empty()) return region;
    std::vector<double> turns;
    std::vector<std::size_t> sharp;
    const double isharp = pi / 6;
    for (std::size_t k = 0; k < loop.size(); ++k) {
        turns.push_back(turnbefore(loop, k));
        if (turns.back() > isharp) sharp.push_back(k);
    }
    if (sharp.size() == 3 || loop.size() == 3) {
        if (sharp.size() != 3) sharp = {0, 1, 2};
        region.count = 3;
        for (std::size_t i = 0; i < 3; ++i)
            region.chain[i] = chainof(loop, sharp[i], sharp[(i + 1) % 3]);
        return region;
    }
    // Round the region come edges 1, 4, 2, 3.
    static const std::size_t round[] = {0, 3, 1, 2};
    const auto at = fourcorners(loop, turns);
    region.count = 4;
    for (std::size_t i = 0; i < 4; ++i)
        region.chain[round[i]] = chainof(loop, at[i], at[(i + 1) % 4]);
    return region;
}

std::string tellregion(const regionedges& region) {
    std::string text;
    for (int e = 0; e < region.count; ++e) {
        const auto& chain = region.chain[std::size_t(e)];
        double nodes = 1;
        for (const int g : chain) nodes += graphics(g, 0, 1);
        text += (e > 0 ? "; Edge " : "Edge ") + numbertext(e + 1) + ": ";
        if (chain.size() > 1) text += numbertext(int(chain.size())) + " pieces, ";
        text += numbertext(nodes) + " nodes";
    }
    return text;
}
