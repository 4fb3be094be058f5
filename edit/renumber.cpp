// SPDX-License-Identifier: GPL-3.0-or-later
// Renumbering of the nodes.
#include "edit/renumber.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>
#include <vector>

#include "core/catalogue.h"
#include "core/colours.h"
#include "core/model.h"
#include "core/modelitems.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/views.h"
#include "view/drawelems.h"
#include "view/moddraw.h"
#include "view/scaleview.h"

// The reference climbs along a chain of dominating nodes, in number order.
static void findreference(float* reference) {
    for (int k = 0; k < 3; ++k) reference[k] = 0;
    for (int n = 1; n <= nnodes(); ++n) {
        const auto at = nodes.row(0, n);
        if (at[0] >= reference[0] && at[1] >= reference[1] && at[2] >= reference[2])
            std::copy_n(at.begin(), 3, reference);
    }
}

// Node numbers from the farthest to the nearest; among equals the highest number first.
static std::vector<int> sweeporder() {
    float reference[3];
    findreference(reference);
    const auto count = std::size_t(nnodes());
    std::vector<std::pair<double, int>> byway(count);
    for (int n = 1; n <= int(count); ++n) {
        const auto at = nodes.row(0, n);
        double sum = 0;
        for (std::size_t k = 0; k < 3; ++k) {
            const double d = double(at[k]) - reference[k];
            sum += d * d;
        }
        byway[std::size_t(n - 1)] = {std::pow(sum, 0.5), n};
    }
    std::ranges::sort(byway, std::greater<>());
    std::vector<int> order(count);
    std::ranges::transform(byway, order.begin(), [](const auto& entry) { return entry.second; });
    return order;
}

// Plots the nodes in the order of the sweep, so that the user sees it run.
static void showsweep(const std::vector<int>& order) {
    surface* const s = target(activeview);
    if (s == nullptr) return;
    const std::size_t pictures = 25;
    const std::size_t batch = std::max<std::size_t>(order.size() / pictures, 1);
    const keptpoint kept;
    s->toplane(planes::marks);
    for (std::size_t i = 0; i < order.size(); ++i) {
        if (i % batch == 0) {
            s->show();
            theplatform().progress("Renumbering the nodes", double(i) / double(order.size()),
                                   false);
            prepareview(activeview);  // what runs meanwhile may draw
        }
        setnode(order[i], activeview);
        projectpoint(activeview);
        plotpoint(activeview, scrx, scry, selcolor);
    }
    s->show();
}

void renumbermodel() {
    const std::vector<int> order = sweeporder();
    showsweep(order);
    const int count = nnodes();
    newnumbers number(std::size_t(count) + 1, 0);
    for (int i = 1; i <= count; ++i) {
        const int old = order[std::size_t(i - 1)];
        number[std::size_t(old)] = i;
        nodework(old, 0) = float(i);
    }
    followitems(items::node, number);
    orderitems(items::node, order);
    for (int n = 1; n <= count; ++n)  // displacements belong to the old numbers
        std::ranges::fill(nodes.row(1, n), 0.0f);
    nodesel(0) = 0;
    redrawall();
}
