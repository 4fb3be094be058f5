// SPDX-License-Identifier: GPL-3.0-or-later
// OpenBLAS starts threads of its own when it is loaded, which spin; and on a processor younger than
// itself it takes kernels of twenty years ago, which run at a fifth of the speed.
#include "solver/base/tune.h"

#include <malloc.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string_view>

#include "solver/base/blas.h"

// Kernels that fit the processor, or none where OpenBLAS knows better.
static const char* betterkernels() {
#if defined(__x86_64__)
    if (std::string_view(openblas_get_corename()) != "Prescott") return nullptr;
    const bool wide = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") &&
                      __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vl");
    if (wide) return "SkylakeX";
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma")) return "Haswell";
#endif
    return nullptr;
}

void tunelibraries(char** words) {
    // Large blocks go back to the system when they are left, whatever was left before them.
    mallopt(M_MMAP_THRESHOLD, 1 << 20);
    // Small ones stay: a table of the next case soon takes their place.
    mallopt(M_TRIM_THRESHOLD, 16 << 20);
    const char* const threads = "OPENBLAS_NUM_THREADS";
    const char* const kernels = "OPENBLAS_CORETYPE";
    const char* const told = std::getenv(threads);
    const char* const better = std::getenv(kernels) == nullptr ? betterkernels() : nullptr;
    if (told != nullptr && std::string_view(told) == "1" && better == nullptr) return;
    setenv(threads, "1", 1);
    if (better != nullptr) setenv(kernels, better, 1);
    std::error_code ec;  // by its own path, so that it keeps its name among the processes
    const auto self = std::filesystem::read_symlink("/proc/self/exe", ec);
    if (!ec) execv(self.c_str(), words);
}
