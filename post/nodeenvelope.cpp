// SPDX-License-Identifier: GPL-3.0-or-later
// Values of nodes from the file of displacements.
#include "post/nodeenvelope.h"

#include <algorithm>

#include "core/model.h"
#include "core/platform.h"
#include "core/runtime.h"
#include "post/components.h"
#include "post/postproces.h"
#include "post/source.h"

static std::vector<governed> values;  // of node n at n - 1
static int quantity = -1;             // direction that they are of
static bool unreadable;
static nodeextremes extremes;

void dropnodeenvelope() {
    values.clear();
    quantity = -1;
    unreadable = false;
    extremes = {};
}

bool needsnodeenvelope(int direction) {
    return direction > toldirections || (isenvelope() && !fieldismode);
}

const governed& governedatnode(int n) {
    static const governed none;
    return std::size_t(n) <= values.size() ? values[std::size_t(n) - 1] : none;
}

const nodeextremes& extremesofnodes() {
    return extremes;
}

// A direction that the analysis has not stays at 0.
static void readvalues(int direction) {
    const int nodesperlook = 20000;
    values.assign(std::size_t(nnodes()), {0, 0, 1, 1});
    enveloperows rows(fieldismode ? envelopeof::modes : envelopeof::displacements,
                      fieldismode ? std::vector{modeonshow()} : weighedsource());
    extremes.names = rows.quantities();
    const auto found = std::ranges::find(extremes.names, directions[direction].label);
    const std::size_t q = std::size_t(found - extremes.names.begin());
    enveloped node;
    for (int count = 1; rows.next(node); ++count) {
        includeitem(extremes.bounds, node);
        if (q < extremes.names.size()) values[std::size_t(node.item) - 1] = node.places[0][q];
        if (count % nodesperlook == 0 &&
            !theplatform().progress("Forming the envelope", rows.share()))
            throw runtimeerror{errstopped, "The envelope was cancelled"};
    }
}

bool readnodeenvelope(int direction) {
    if (quantity == direction) return !unreadable;
    dropnodeenvelope();
    unreadable = !guarded([&] { readvalues(direction); },
                          [](const runtimeerror& e) {
                              values.clear();
                              extremes = {};
                              theplatform().message(e.what, icons::exclamation);
                          });
    quantity = direction;
    theplatform().endprogress();
    return !unreadable;
}
