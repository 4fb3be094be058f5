// SPDX-License-Identifier: GPL-3.0-or-later
// Chains of members.
#include "post/memberchain.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/numtext.h"
#include "view/localaxes.h"

static double lengthof(int e) {
    double square = 0;
    for (int k = 0; k < 3; ++k)
        square +=
            std::pow(double(nodes(0, int(elems(e, 2)), k)) - nodes(0, int(elems(e, 1)), k), 2);
    return std::sqrt(square);
}

namespace {
struct axes {
    double of[3][3];
};
}  // namespace

static axes axesof(int e) {
    localaxes(e);
    axes a{};
    for (int k = 0; k < 3; ++k) {
        a.of[0][k] = localx[k];
        a.of[1][k] = localy[k];
        a.of[2][k] = localz[k];
    }
    return a;
}

static double along(const double* a, const double* b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

// Axes of this link, turned into those of the one before it where they point the other way.
static void findsigns(chainlink& link, axes& before, bool first) {
    const axes own = axesof(link.e);
    axes turned = own;
    link.sign[0] = link.reversed ? -1 : 1;
    for (int k = 1; k < 3; ++k)
        link.sign[k] = !first && along(own.of[k], before.of[k]) < 0 ? -1 : 1;
    for (int a = 0; a < 3; ++a)
        for (int k = 0; k < 3; ++k) turned.of[a][k] *= link.sign[a];
    before = turned;
}

memberchain chainof(const std::vector<int>& elements) {
    memberchain chain;
    std::map<int, std::vector<int>> at;  // elements by node
    for (const int e : elements) {
        if (nodesoftype(elems(e, 0)) != 2) {
            chain.fault = "Element " + numbertext(e) + " is no line element";
            return chain;
        }
        for (const int c : {1, 2}) at[int(elems(e, c))].push_back(e);
    }
    int node = 0;
    for (const auto& [n, list] : at) {
        if (list.size() > 2) {
            chain.fault = "More than two of the elements meet in node " + numbertext(n);
            return chain;
        }
        if (list.size() == 1 && node == 0) node = n;
    }
    if (elements.empty()) chain.fault = "No line element is selected";
    if (elements.empty()) return chain;
    if (node == 0) node = int(elems(elements[0], 1));  // a ring
    // From the end at which a chain begins as its first element does.
    for (const auto& [n, list] : at)
        if (list.size() == 1 && int(elems(list[0], 1)) == n) {
            node = n;
            break;
        }
    axes before{};
    int former = 0;
    for (double from = 0; chain.links.size() < elements.size();) {
        int next = 0;
        for (const int e : at[node])
            if (e != former) next = e;
        if (next == 0) {
            chain.links.clear();
            chain.fault = "The elements do not stand one behind the other";
            return chain;
        }
        chainlink link{next, int(elems(next, 1)) != node, from, from + lengthof(next), {}};
        findsigns(link, before, chain.links.empty());
        node = int(elems(next, link.reversed ? 1 : 2));
        from = link.to;
        former = next;
        chain.links.push_back(link);
    }
    return chain;
}

// Forces are those on the face that looks along e1: on the other face they act the other way.
static int signof(const chainlink& link, memberquantity q) {
    const int* s = link.sign;
    switch (q) {
        case memVy:
        case memMy:
            return s[0] * s[1];
        case memVz:
        case memMz:
            return s[0] * s[2];
        case memv:
            return s[1];
        case memw:
            return s[2];
        default:
            return 1;
    }
}

std::vector<chainpoint> chaincurve(const memberchain& chain, memberquantity q) {
    std::vector<chainpoint> curve;
    for (const chainlink& link : chain.links) {
        const memberresult* const m = memberof(link.e);
        if (!m) continue;
        const int sign = signof(link, q);
        for (int i = 0; i < memberstations; ++i) {
            const int k = link.reversed ? memberstations - 1 - i : i;
            double high = sign * m->high.value[q][k], low = sign * m->low().value[q][k];
            if (high < low) std::swap(high, low);
            curve.push_back({link.from + (link.to - link.from) * i / (memberstations - 1), high,
                             low, link.e, k});
        }
    }
    return curve;
}
