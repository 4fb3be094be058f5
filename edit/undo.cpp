// SPDX-License-Identifier: GPL-3.0-or-later
// Undo of the last move. State: the places that it puts back.
#include "edit/undo.h"

#include <array>
#include <vector>

#include "core/model.h"
#include "core/platform.h"
#include "core/session.h"
#include "view/moddraw.h"

namespace {
struct storedplace {
    int node = 0;  // or
    int graphic = 0, point = 0;
    std::array<float, 3> at{};
};
}  // namespace
static std::vector<storedplace> undostore;

void storeundo() {
    undostore.clear();
    for (int i = 1; i <= nodesel(0); ++i) {
        const int n = nodesel(i);
        undostore.push_back({n, 0, 0, {nodes(0, n, 0), nodes(0, n, 1), nodes(0, n, 2)}});
    }
    for (int i = 1; i <= graphsel2(0, 0); ++i) {
        const int g = graphsel2(i, 0), j = graphsel2(i, 1);
        undostore.push_back({0, g, j, {graphics(g, j, 1), graphics(g, j, 2), graphics(g, j, 3)}});
    }
    undomark = 1;
    mnuEditItem(undoitem).enabled = true;
}

void editundo() {
    if (undomark == 0) return;
    for (const storedplace& place : undostore)
        for (int k = 0; k < 3; ++k) {
            const float value = place.at[std::size_t(k)];
            if (place.node >= 1 && place.node <= nnodes()) nodes(0, place.node, k) = value;
            if (place.graphic >= 1 && place.graphic <= ngraphics())
                graphics(place.graphic, place.point, k + 1) = value;
        }
    undostore.clear();
    dropundo();
    redrawall();
    theplatform().refresh();
}
