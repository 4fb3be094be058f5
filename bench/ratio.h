// SPDX-License-Identifier: GPL-3.0-or-later
// Timing of two pieces of work side by side: they run in turn, and the ratio is taken pair by
// pair, so that it holds while the machine's speed drifts.
#pragma once

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

inline double secondsof(const std::function<void()>& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

inline double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Prints "name: ours s, plain s, ratio r (at most limit)".
inline double printratio(const std::string& name, int runs, double limit,
                         const std::function<void()>& ours, const std::function<void()>& plain) {
    ours();
    plain();  // neither pays for cold pages
    std::vector<double> a, b, ratios;
    for (int i = 0; i < runs; ++i) {
        a.push_back(secondsof(ours));
        b.push_back(secondsof(plain));
        ratios.push_back(a.back() / b.back());
    }
    const double ratio = median(ratios);
    std::printf("%-46s ours %8.4f s  plain %8.4f s  ratio %6.2f  (wanted: at most %.2f)%s\n",
                name.c_str(), median(a), median(b), ratio, limit, ratio > limit ? "  ABOVE" : "");
    std::fflush(stdout);
    return ratio;
}

// Largest resident memory of this process so far, bytes.
inline double peakmemory() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss * 1024.0;
}
