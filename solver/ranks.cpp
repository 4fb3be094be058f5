// SPDX-License-Identifier: GPL-3.0-or-later
// State: the processes that share this program's analysis.
#include "solver/ranks.h"

static ranks single;
static ranks* current = &single;

void ranks::sum(double*, std::int64_t) {}

void ranks::takefirst(double*, std::int64_t) {}

void ranks::end(const std::string&) {}

ranks& allranks() {
    return *current;
}

void workalone() {
    current = &single;
}

void setranks(ranks& r) {
    current = &r;
}
