// SPDX-License-Identifier: GPL-3.0-or-later
#include "solver/equations/crew.h"

#include "solver/base/parallel.h"

bool crew::work(const plan& what) {
    p = &what;
    begun = donelists = donesteps = 0;
    listdone.assign(std::size_t(what.lists), 0);
    stepping = stopped = false;
    eachthread([this](int thread) {
        try {
            run(thread);
        } catch (...) {
            const std::lock_guard lock(guard);
            stopped = true;
            changed.notify_all();
            throw;
        }
    });
    return !stopped;
}

// Lists that the next step waits for; all of them behind the last step.
int crew::needed() const {
    return donesteps < int(p->need.size()) ? p->need[std::size_t(donesteps)] : p->lists;
}

// Steps go first: they leave less behind than the lists do.
crew::task crew::next(std::unique_lock<std::mutex>& lock) {
    for (;; changed.wait(lock)) {
        const bool anystep = donesteps < int(p->need.size());
        if (stopped || (!anystep && donelists == p->lists)) return {task::none, 0};
        if (anystep && !stepping && donelists >= needed()) {
            stepping = true;
            return {task::step, donesteps};
        }
        if (begun < std::min(p->lists, needed() + p->ahead)) return {task::list, begun++};
        if (loop != nullptr && taken < pieces) return {task::help, 0};
    }
}

void crew::finish(const task& t) {
    if (t.kind == task::step) {
        stepping = false;
        ++donesteps;
    } else if (t.kind == task::list) {
        listdone[std::size_t(t.number)] = 1;
        while (donelists < p->lists && listdone[std::size_t(donelists)]) ++donelists;
    }
    changed.notify_all();
}

void crew::run(int thread) {
    std::unique_lock lock(guard);
    for (task t = next(lock); t.kind != task::none; t = next(lock)) {
        if (t.kind == task::help) {
            help(lock);
            continue;
        }
        lock.unlock();
        const bool good = t.kind == task::step ? p->step(t.number) : p->list(t.number, thread);
        lock.lock();
        if (!good) stopped = true;
        finish(t);
    }
}

// Pieces of the open loop until none is left.
void crew::help(std::unique_lock<std::mutex>& lock) {
    ++working;
    while (taken < pieces) {
        const int piece = taken++;
        lock.unlock();
        (*loop)(piece);
        lock.lock();
    }
    if (--working == 0) changed.notify_all();
}

void crew::each(int count, const std::function<void(int)>& piece) {
    std::unique_lock lock(guard);
    loop = &piece;
    pieces = count;
    taken = 0;
    changed.notify_all();
    help(lock);
    changed.wait(lock, [this] { return working == 0; });
    loop = nullptr;
}
