// SPDX-License-Identifier: GPL-3.0-or-later
// Entry of the solver program.
#include <unistd.h>

#include <cstdio>

#include "solver/base/tune.h"
#include "solver/program.h"

int main(int count, char** words) {
    tunelibraries(words);
    const int code = runprogram({words + 1, words + count});
    std::fflush(nullptr);
    // Not by way of the libraries' own endings: a helper thread of OpenBLAS that got no memory
    // would be waited for without end.
    _exit(code);
}
