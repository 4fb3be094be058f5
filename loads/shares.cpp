// SPDX-License-Identifier: GPL-3.0-or-later
// Areas and lengths that belong to nodes.
#include "loads/shares.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/catalogue.h"
#include "core/model.h"
#include "view/facesides.h"

namespace {
using direction = std::array<double, 3>;

direction way(int from, int to) {
    direction d;
    for (int k = 0; k < 3; ++k) d[std::size_t(k)] = double(nodes(0, to, k)) - nodes(0, from, k);
    return d;
}

double lengthof(const direction& d) {
    return std::sqrt(d[0] * d[0] + d[1] * d[1] + d[2] * d[2]);
}

double areaof(const std::vector<int>& c) {  // half the cross product of its diagonals
    const direction a = way(c[0], c[2]), b = way(c[1], c.back());
    return lengthof(
               {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]}) /
           2;
}

struct sharing {
    explicit sharing(const std::vector<int>& among) : share(std::size_t(nnodes()) + 1, -1.0) {
        for (const int n : among)
            if (n >= 1 && n <= nnodes()) share[std::size_t(n)] = 0;
    }
    bool isamong(int n) const { return n >= 1 && n <= nnodes() && share[std::size_t(n)] >= 0; }
    void give(int n, double part) { share[std::size_t(n)] += part; }
    void faces();
    void lines();
    bool iswhole() const {  // has each of them something?
        for (const double s : share)
            if (s == 0) return false;
        return true;
    }
    void clear(double to) {
        for (double& s : share)
            if (s >= 0) s = to;
    }
    std::vector<double> share;  // below 0 for what is not among them
};
}  // namespace

void sharing::faces() {
    for (int e = 1; e <= nelems(); ++e) {
        std::vector<int> corners;
        for (int k = 1; k <= nodesoftype(elems(e, 0)); ++k)
            if (isamong(int(elems(e, k)))) corners.push_back(int(elems(e, k)));
        if (corners.size() < 3 || int(corners.size()) != nodesoftype(elems(e, 0))) continue;
        for (const int n : corners) give(n, areaof(corners) / double(corners.size()));
    }
}

void sharing::lines() {
    const facesides& sides = sidesofmodel();
    for (int e = 1; e <= nelems(); ++e) {
        const int elnn = nodesoftype(elems(e, 0));
        for (int k = 1; k <= (elnn == 2 ? 1 : elnn > 2 ? elnn : 0); ++k) {
            const int a = int(elems(e, k)), b = int(elems(e, k % elnn + 1));
            if (!isamong(a) || !isamong(b) || (elnn > 2 && !sides.isfirst(4 * e + k - 1))) continue;
            for (const int n : {a, b}) give(n, lengthof(way(a, b)) / 2);
        }
    }
}

std::vector<double> sharesof(const std::vector<int>& among) {
    sharing s(among);
    s.faces();
    if (!s.iswhole()) {
        s.clear(0);
        s.lines();
    }
    if (!s.iswhole()) s.clear(1);
    double sum = 0;
    for (double& part : s.share) sum += part = std::max(part, 0.0);
    for (double& part : s.share) part /= sum > 0 ? sum : 1;
    return s.share;
}
