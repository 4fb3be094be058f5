// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/diskwriter.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <string>
#include <system_error>
#include <utility>

bool writeat(int file, const char* data, std::size_t n, long long place) {
    while (n > 0) {
        const ssize_t done = pwrite(file, data, n, place);
        if (done < 0 && errno == EINTR) continue;
        if (done <= 0) return false;
        data += done;
        n -= std::size_t(done);
        place += done;
    }
    return true;
}

std::unique_ptr<diskwriter> diskwriter::from(int file, long long place) {
    // Opened once more: the way is a property of the opening, and either is wanted.
    const std::string name = "/proc/self/fd/" + std::to_string(file);
    const int straight = open(name.c_str(), O_WRONLY | O_DIRECT | O_CLOEXEC);
    if (straight < 0) return nullptr;
    std::unique_ptr<diskwriter> made(new diskwriter(file, straight, place));
    try {
        made->writer = std::thread([&to = *made] { to.work(); });
    } catch (const std::system_error&) {
        return nullptr;  // the machine gives no more threads
    }
    return made;
}

diskwriter::diskwriter(int file, int opened, long long at)
    : cached(file), straight(opened), place(at) {}

diskwriter::~diskwriter() {
    end();
    close(straight);
}

void diskwriter::end() {
    {
        const std::lock_guard lock(guard);
        ended = true;
    }
    changed.notify_one();
    if (writer.joinable()) writer.join();
}

void diskwriter::write(const char* data, std::size_t n) {
    while (n > 0) {
        const std::size_t page = 4096;  // no disk asks for more
        if (!filling) filling.reset(static_cast<char*>(std::aligned_alloc(page, block)));
        if (!filling) throw std::bad_alloc();
        const std::size_t part = std::min(n, block - used);
        std::memcpy(filling.get() + used, data, part);
        used += part;
        data += part;
        n -= part;
        if (used == block) pass();
    }
}

// The block that is full goes its way.
void diskwriter::pass() {
    const std::size_t mostwaiting = 3;
    std::unique_lock lock(guard);
    if (waiting.size() < mostwaiting) {
        waiting.push_back({std::move(filling), place});
        if (!idle.empty()) {
            filling = std::move(idle.back());
            idle.pop_back();
        }
        changed.notify_one();
    } else if (!failed) {
        lock.unlock();
        const bool whole = writeat(cached, filling.get(), used, place);
        lock.lock();
        failed |= !whole;
    }
    place += (long long)(block);
    used = 0;
}

void diskwriter::work() {
    std::unique_lock lock(guard);
    for (;;) {
        changed.wait(lock, [&] { return ended || !waiting.empty(); });
        if (waiting.empty()) return;
        parcel next = std::move(waiting.front());
        waiting.pop_front();
        if (!failed) {
            lock.unlock();
            const char* const content = next.content.get();
            const bool whole = pwrite(straight, content, block, next.place) == ssize_t(block) ||
                               writeat(cached, content, block, next.place);
            lock.lock();
            failed |= !whole;
        }
        idle.push_back(std::move(next.content));
    }
}

bool diskwriter::finish() {
    end();
    if (!failed && used > 0) failed = !writeat(cached, filling.get(), used, place);
    used = 0;
    return !failed;
}
