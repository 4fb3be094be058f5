// SPDX-License-Identifier: GPL-3.0-or-later
// State: the number of threads of this process.
#include "solver/base/parallel.h"

static int wantedthreads = 0;

void setthreads(int n) {
    wantedthreads = n;
}

int threads() {
    if (wantedthreads > 0) return wantedthreads;
    return std::max(1, int(std::thread::hardware_concurrency()));
}
