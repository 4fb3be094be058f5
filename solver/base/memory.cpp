// SPDX-License-Identifier: GPL-3.0-or-later
// What the system tells of its memory.
#include "solver/base/memory.h"

#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <string>

#include "solver/base/parallel.h"

double freememory() {
    double available = INFINITY;
    std::ifstream file("/proc/meminfo");
    std::string key;
    double kibibytes = 0;
    std::string unit;
    while (file >> key >> kibibytes) {
        if (key == "MemAvailable:") available = kibibytes * 1024;
        std::getline(file, unit);
    }
    rlimit limit{};
    if (getrlimit(RLIMIT_AS, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY) {
        double pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        // OpenBLAS maps a buffer for each thread when it begins, and waits for ever without it.
        const double buffers = 128.0 * 1024 * 1024 * threads();
        const double taken = pages * double(sysconf(_SC_PAGESIZE)) + buffers;
        available = std::min(available, std::max(0.0, double(limit.rlim_cur) - taken));
    }
    return available;
}

void takememory(void* begin, std::size_t bytes) {
    const std::uintptr_t page = std::uintptr_t(sysconf(_SC_PAGESIZE)), piece = 1 << 22;
    const auto first = (std::uintptr_t(begin) + page - 1) / page * page;
    const auto last = (std::uintptr_t(begin) + bytes) / page * page;
    if (last < first + 2 * piece) return;
    parallelpieces(int((last - first + piece - 1) / piece), 1, [&](int from, int to, int) {
        for (auto at = first + std::uintptr_t(from) * piece;
             at < std::min(last, first + std::uintptr_t(to) * piece); at += piece) {
            const std::uintptr_t size = std::min(piece, last - at);
            if (madvise(reinterpret_cast<void*>(at), size, MADV_POPULATE_WRITE) == 0) continue;
            for (std::uintptr_t i = at; i < at + size; i += page)  // an older system
                *reinterpret_cast<volatile char*>(i) = 0;
        }
    });
}

std::vector<double> zeros(std::size_t count) {
    std::vector<double> list;
    list.reserve(count);
    takememory(list.data(), count * sizeof(double));
    list.resize(count);
    return list;
}
