// SPDX-License-Identifier: GPL-3.0-or-later
// Memory that was never written: the system gives its pages a stretch at a time for a third less
// than one by one as they are first touched.
#pragma once

#include <sys/mman.h>

#include <atomic>
#include <cstdint>
#include <vector>

class freshpages {
  public:
    // Memory of so many numbers, which begins with a page.
    void start(double* memory, std::int64_t count) {
        begin = memory;
        stretches = std::vector<std::atomic<bool>>(std::size_t(count / stretch));
    }
    // Some numbers will be written next, by this thread.
    void expect(std::int64_t first, std::int64_t count) {
        const std::int64_t all = std::int64_t(stretches.size());
        for (std::int64_t i = first / stretch; i < all && i * stretch < first + count; ++i)
            if (!stretches[std::size_t(i)].exchange(true)) take(begin + i * stretch);
    }

  private:
    static const std::int64_t stretch = 1 << 16;  // numbers

    static void take([[maybe_unused]] double* from) {
#ifdef MADV_POPULATE_WRITE
        // A system that does not know it gives the pages as ever.
        madvise(from, stretch * sizeof(double), MADV_POPULATE_WRITE);
#endif
    }
    double* begin = nullptr;
    std::vector<std::atomic<bool>> stretches;  // that were asked for
};
