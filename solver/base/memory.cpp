// SPDX-License-Identifier: GPL-3.0-or-later
// What the system tells of its memory.
#include "solver/base/memory.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
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
