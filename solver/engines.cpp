// SPDX-License-Identifier: GPL-3.0-or-later
// State: the kind of engine of this process.
#include "solver/engines.h"

#include "solver/factor.h"

static std::unique_ptr<engine> makefactor() {
    return std::make_unique<factor>();
}

static enginemaker current = makefactor;

std::unique_ptr<engine> makeengine() {
    return current();
}

void setengine(enginemaker maker) {
    current = maker;
}
