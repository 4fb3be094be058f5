// SPDX-License-Identifier: GPL-3.0-or-later
#include "solver/results/rowtext.h"

bool blockorder::next(task& t) {
    std::unique_lock lock(guard);
    for (const int room = int(made.size()); written < blocks; changed.wait(lock)) {
        if (!writing && made[std::size_t(written % room)]) {
            writing = true;
            t = {written, true};
            return true;
        }
        if (begun < std::min(blocks, written + room)) {
            t = {begun++, false};
            return true;
        }
    }
    return false;
}

void blockorder::done(const task& t) {
    const std::lock_guard lock(guard);
    made[std::size_t(t.block) % made.size()] = !t.write;
    if (t.write) {
        writing = false;
        ++written;
    }
    changed.notify_all();
}

void blockorder::abandon() {
    const std::lock_guard lock(guard);
    written = blocks;
    changed.notify_all();
}
