// SPDX-License-Identifier: GPL-3.0-or-later
// Counting of the warnings in the solver's log.
#include "files/runlog.h"

#include "core/checksum.h"
#include "core/runtime.h"
#include "core/session.h"
#include "core/textfile.h"

static runlog last;

const runlog& solverlog() {
    return last;
}

void forgetsolverlog() {
    last = {};
}

// Nothing is told of results without sums.
bool areresultsold(const std::string& base) {
    bool old = false;
    guarded(
        [&] {
            textin in(base + ".sum");
            for (int kind = 0; kind < 2 && !old; ++kind) {
                in.text();  // "static", "modes"
                const std::string checksum = in.text();
                old = !checksum.empty() && checksum != modelchecksum(base);
                in.skip(1);
            }
        },
        [](const runtimeerror&) {});
    return old;
}

// A log that is not there says nothing; the end of the run has its own message.
void readsolverlog() {
    last = {};
    const std::string path = modelname + ".log", mark = "Warning: ";
    const auto unread = [](const runtimeerror&) {};
    guarded(
        [&] {
            const std::string text = "\n" + readwhole(path);
            last.path = path;
            for (auto at = text.find("\n" + mark); at != text.npos;
                 at = text.find("\n" + mark, at + 1))
                ++last.warnings;
        },
        unread);
}
