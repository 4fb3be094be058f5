// SPDX-License-Identifier: GPL-3.0-or-later
// The long part of a file straight to the disk, past the page cache: filling gigabytes of that
// takes several times as long as the disk takes for them, and drives out what others have there.
//
// A thread writes whole blocks while the next one fills. A block that finds it some blocks behind,
// or that the disk does not take that way, goes through the cache as all would without: nobody
// waits for a slow disk.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdlib>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

// All of it at a place of a file; false where the file does not take it.
bool writeat(int file, const char* data, std::size_t n, long long place);

class diskwriter {
  public:
    static constexpr std::size_t block = std::size_t(1) << 22;
    // What is written follows on a place of an open file, a multiple of the block. Null where the
    // file system knows the way through the cache alone. The file stays the caller's.
    static std::unique_ptr<diskwriter> from(int file, long long place);
    ~diskwriter();
    diskwriter(const diskwriter&) = delete;
    diskwriter& operator=(const diskwriter&) = delete;

    void write(const char* data, std::size_t n);
    // Nothing follows. False where not all was taken.
    bool finish();

  private:
    struct freed {
        void operator()(char* p) const { std::free(p); }
    };
    using memory = std::unique_ptr<char, freed>;
    struct parcel {
        memory content;
        long long place;
    };
    diskwriter(int cached, int straight, long long place);
    void pass();
    void work();
    void end();

    int cached, straight;  // the file, opened for either way
    long long place;       // of what fills
    memory filling;
    std::size_t used = 0;
    std::mutex guard;  // of all that follows
    std::condition_variable changed;
    std::deque<parcel> waiting;
    std::vector<memory> idle;
    bool ended = false, failed = false;
    std::thread writer;
};
