// SPDX-License-Identifier: GPL-3.0-or-later
// Envelopes as tables of a report: where each value is largest and smallest over the combinations,
// by group, and the bounds of every node, corner and member.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "post/enveloperows.h"

struct envelopekind {
    envelopeof of;
    const char* caption;
};
extern const envelopekind envelopekindsoftables[4];

std::string envelopecaption();  // "Envelope of 3 combinations"

struct boundstable {
    std::string caption;
    std::vector<std::string> quantities;
    std::vector<envelopebounds> bounds;  // of each
};
// Of nodes one table, of forces that of the supports, of elements one a group. Throws as
// enveloperows; look is called between two items.
std::vector<boundstable> boundstables(const envelopekind& kind, const std::function<void()>& look);
// "node 7", "element 3, node 7", "element 3 at 0.35"
std::string placeof(envelopeof what, const envelopeplace& at);

// The rows of all: a node, a corner of a plate, a member with what is worst along it.
struct enveloperowof {
    int element = 0, node = 0;
    std::vector<governed> values;  // by quantity
};
void eachenvelope(envelopeof what,
                  const std::function<void(const std::vector<std::string>& quantities)>& begin,
                  const std::function<void(const enveloperowof& row)>& take);
