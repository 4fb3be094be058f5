// SPDX-License-Identifier: GPL-3.0-or-later
// Work shared among threads. Results never depend on how many there are: each item is worked on by
// one thread and writes its own place.
#pragma once

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

// Number of threads that parallel work uses; set once when a run starts (0: all cores).
void setthreads(int n);
int threads();

// Calls work(first, last, thread) for pieces of 0..count-1, last excluded. The first exception is
// thrown again when all threads have ended.
template <typename Work>
void parallelpieces(int count, int piece, Work work) {
    const int wanted = std::min(threads(), (count + piece - 1) / std::max(piece, 1));
    if (wanted <= 1) {
        if (count > 0) work(0, count, 0);
        return;
    }
    std::atomic<long> next{0};
    std::exception_ptr fault;
    std::mutex guard;
    const auto run = [&](int thread) {
        try {
            for (long first = next.fetch_add(piece); first < count; first = next.fetch_add(piece))
                work(int(first), int(std::min<long>(first + piece, count)), thread);
        } catch (...) {
            const std::lock_guard<std::mutex> lock(guard);
            if (!fault) fault = std::current_exception();
            next = count;
        }
    };
    std::vector<std::thread> helpers;
    helpers.reserve(std::size_t(wanted));
    try {
        for (int t = 1; t < wanted; ++t) helpers.emplace_back(run, t);
    } catch (const std::system_error&) {
        // The machine gives no more threads; those that run do all the work.
    }
    run(0);
    for (std::thread& helper : helpers) helper.join();
    if (fault) std::rethrow_exception(fault);
}

// Calls work(thread) once on each thread.
template <typename Work>
void eachthread(Work work) {
    parallelpieces(threads(), 1, [&](int first, int last, int) {
        for (int t = first; t < last; ++t) work(t);
    });
}

// Calls work(c) for the load cases 0..cases-1, each on one thread.
template <typename Work>
void eachcase(int cases, Work work) {
    parallelpieces(cases, 1, [&](int first, int last, int) {
        for (auto c = std::size_t(first); c < std::size_t(last); ++c) work(c);
    });
}
