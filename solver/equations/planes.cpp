// SPDX-License-Identifier: GPL-3.0-or-later
// George, Nested dissection of a regular finite element mesh, SIAM J. Numer. Anal. 10, 1973: of the
// planes across some directions the one that parts best, and so on in the parts.
#include "solver/equations/planes.h"

#include <Eigen/Eigenvalues>

#include <algorithm>
#include <numeric>

static const int leasttrial = 500, mosttrial = 4000;  // vertices of a part that is compared

namespace {
class dissection {
  public:
    explicit dissection(const nodegraph& g)
        : block(std::size_t(g.size())), graph(g), order(block.size()), level(block.size()) {
        std::iota(order.begin(), order.end(), 0);
        place = order;
    }
    // Returns how dear the cut through the range is, infinite where there is none.
    double part(int first, int last);
    // Of each vertex the first place of its leaf or separator: these are eliminated as they ascend.
    std::vector<int> block;
    // Some of the small parts, all over the model.
    std::vector<planeorder::trial> trials() const;
    // Where the vertices of separators have one neighbour beyond them, as on lattices of bars,
    // separators that slant are smaller than rows.
    bool needsrows() const { return double(edges) > 1.5 * double(borders); }

  private:
    // Levels below the limit lie on one side; of these, or of the others, the vertices with
    // neighbours beyond it are the separator.
    struct cut {
        vec3 way = vec3::Zero();
        double low = 0, scale = 0, worth = INFINITY;
        int levels = 0, limit = 0;
        bool lowborder = true;
    };

    std::vector<vec3> directions(int first, int last) const;
    void tryplanes(const vec3& way, int first, int last, cut& best);
    void takelevels(const cut& c, int first, int last);
    int makeparts(const cut& c, int first, int last, int& middle);

    const vec3& at(int i) const { return graph.at[std::size_t(order[std::size_t(i)])]; }
    // Neighbours of the vertex at i that have a place in first..last-1.
    template <typename Use>
    void eachneighbour(int i, int first, int last, Use use) const {
        const auto v = std::size_t(order[std::size_t(i)]);
        for (auto k = graph.start[v]; k < graph.start[v + 1]; ++k) {
            const int other = graph.neighbour[std::size_t(k)];
            const int where = place[std::size_t(other)];
            if (where >= first && where < last) use(other);
        }
    }

    const nodegraph& graph;
    std::vector<int> order, place;  // a part is a range of the order; place: in it
    std::vector<int> level;         // of each vertex across the direction that is looked at
    struct smallpart {
        int first, last;
        double worth;
    };
    std::vector<smallpart> small;
    std::int64_t edges = 0, borders = 0;  // across all cuts; vertices of separators
};
}  // namespace

// Along the edges of a vertex in the middle and the axes of inertia, the wide ones: planes across
// the rows of a mesh, whichever way it lies.
std::vector<vec3> dissection::directions(int first, int last) const {
    vec3 mean = vec3::Zero();
    for (int i = first; i < last; ++i) mean += at(i);
    mean /= last - first;
    mat3 spread = mat3::Zero();
    int centre = first;
    for (int i = first; i < last; ++i) {
        const vec3 x = at(i) - mean;
        spread += x * x.transpose();
        if (x.squaredNorm() < (at(centre) - mean).squaredNorm()) centre = i;
    }
    const Eigen::SelfAdjointEigenSolver<mat3> axes(spread);
    std::vector<vec3> edges, ways;
    eachneighbour(centre, first, last,
                  [&](int other) { edges.push_back(graph.at[std::size_t(other)] - at(centre)); });
    std::stable_sort(edges.begin(), edges.end(), [](const vec3& a, const vec3& b) {
        return a.squaredNorm() < b.squaredNorm();
    });
    const auto add = [&](const vec3& along, double most) {  // most: cosine between two
        const vec3 way = along.stableNormalized();
        const double wide = 0.25;  // of the largest spread
        const auto near = [&](const vec3& other) { return std::fabs(other.dot(way)) > most; };
        if (way.dot(spread * way) > wide * axes.eigenvalues()[2] &&
            !std::ranges::any_of(ways, near))
            ways.push_back(way);
    };
    for (const vec3& edge : edges) add(edge, 0.5);
    for (int k = 2; k >= 0; --k) add(axes.eigenvectors().col(k), 0.98);
    return ways;
}

void dissection::takelevels(const cut& c, int first, int last) {
    for (int i = first; i < last; ++i)
        level[std::size_t(order[std::size_t(i)])] =
            std::clamp(int((at(i).dot(c.way) - c.low) * c.scale), 0, c.levels - 1);
}

void dissection::tryplanes(const vec3& way, int first, int last, cut& best) {
    double low = INFINITY, high = -INFINITY;
    for (int i = first; i < last; ++i) {
        const double t = at(i).dot(way);
        low = std::min(low, t);
        high = std::max(high, t);
    }
    cut c{way, low, 0, INFINITY, std::clamp((last - first) / 2, 16, 1024), 0, true};
    c.scale = c.levels / (high - low);
    if (!std::isfinite(c.scale)) return;
    takelevels(c, first, last);
    // By limit: vertices below it; and by how many more than at the limit before have neighbours
    // beyond it, from below and from above.
    std::vector<int> vertices(std::size_t(c.levels) + 1), frombelow(vertices), fromabove(vertices);
    for (int i = first; i < last; ++i) {
        const int own = level[std::size_t(order[std::size_t(i)])];
        int least = own, most = own;
        eachneighbour(i, first, last, [&](int other) {
            least = std::min(least, level[std::size_t(other)]);
            most = std::max(most, level[std::size_t(other)]);
        });
        ++vertices[std::size_t(own) + 1];
        ++frombelow[std::size_t(own) + 1];
        --frombelow[std::size_t(most) + 1];
        ++fromabove[std::size_t(least) + 1];
        --fromabove[std::size_t(own) + 1];
    }
    const double all = last - first, leastpart = 0.2 * all;
    double below = 0, lowborder = 0, highborder = 0;
    for (c.limit = 1; c.limit < c.levels; ++c.limit) {
        const auto t = std::size_t(c.limit);
        below += vertices[t];
        lowborder += frombelow[t];
        highborder += fromabove[t];
        c.lowborder = lowborder <= highborder;
        const double left = below - (c.lowborder ? lowborder : 0);
        const double right = all - below - (c.lowborder ? 0 : highborder);
        if (std::min(left, right) < leastpart) continue;
        c.worth = cutworth(left, right, all - left - right);
        if (c.worth < best.worth) best = c;
    }
}

// Both sides and the separator become ranges, one behind the other; returns the separator's place.
int dissection::makeparts(const cut& c, int first, int last, int& middle) {
    takelevels(c, first, last);
    std::vector<int> parts[3];
    for (int i = first; i < last; ++i) {
        const int v = order[std::size_t(i)];
        const bool below = level[std::size_t(v)] < c.limit;
        bool border = false;
        if (below == c.lowborder)
            eachneighbour(i, first, last, [&](int other) {
                const bool beyond = (level[std::size_t(other)] < c.limit) != below;
                border |= beyond;
                edges += beyond;
            });
        borders += border;
        parts[border ? 2 : below ? 0 : 1].push_back(v);
    }
    int next = first;
    for (const std::vector<int>& one : parts)
        for (const int v : one) {
            order[std::size_t(next)] = v;
            place[std::size_t(v)] = next++;
        }
    middle = first + int(parts[0].size());
    return middle + int(parts[1].size());
}

double dissection::part(int first, int last) {
    const int leaf = 100;  // vertices: minimum degree is as good for these
    cut best;
    if (last - first > leaf)
        for (const vec3& way : directions(first, last)) tryplanes(way, first, last, best);
    int middle = 0, separator = first;
    if (best.worth < INFINITY) {
        separator = makeparts(best, first, last, middle);
        for (const auto& [begin, end] : {std::pair(first, middle), std::pair(middle, separator)}) {
            const double worth = part(begin, end);
            if (end - begin >= leasttrial && end - begin <= mosttrial)
                small.push_back({begin, end, worth});
        }
    }
    for (int i = separator; i < last; ++i) block[std::size_t(order[std::size_t(i)])] = separator;
    return best.worth;
}

std::vector<planeorder::trial> dissection::trials() const {
    const std::size_t enough = 24;
    std::vector<planeorder::trial> list;
    for (std::size_t k = 0; k < small.size(); k += 1 + small.size() / enough) {
        const int first = small[k].first, last = small[k].last;
        planeorder::trial one{{{0}, {}}, small[k].worth};
        for (int i = first; i < last; ++i) {
            std::vector<int>& row = one.graph.row;
            eachneighbour(i, first, i,
                          [&](int other) { row.push_back(place[std::size_t(other)] - first); });
            std::sort(row.begin() + one.graph.start.back(), row.end());
            row.push_back(i - first);
            one.graph.start.push_back(int(row.size()));
        }
        list.push_back(std::move(one));
    }
    return list;
}

planeorder orderbyplanes(const nodegraph& graph, const uppergraph& upper) {
    dissection d(graph);
    planeorder result;
    const double firstcut = d.part(0, graph.size());
    if (d.needsrows()) result.firstcut = firstcut;
    result.trials = d.trials();
    result.order = bycholmod(upper, [&](cholmod_sparse& a, int* order, cholmod_common& c) {
        return cholmod_camd(&a, nullptr, 0, d.block.data(), order, &c) != 0;
    });
    return result;
}
