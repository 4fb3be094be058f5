// SPDX-License-Identifier: GPL-3.0-or-later
// OpenBLAS starts threads of its own when it is loaded, which spin; and on a processor younger than
// itself it takes kernels of twenty years ago, which run at a fifth of the speed. The library of C
// takes the smallest pages unless it is told otherwise before it starts.
#include "solver/base/tune.h"

#include <malloc.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>
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

// Sets a variable of the environment; false where it is so already.
static bool demand(const char* name, const std::string& value) {
    const char* const told = std::getenv(name);
    if (told != nullptr && told == value) return false;
    setenv(name, value.c_str(), 1);
    return true;
}

// Memory in pages of 2 MiB where the system gives such to those that ask: the factor's gigabytes
// come, are read and go in a fraction of the time. What the user tells the library stays.
static std::string withlargepages() {
    const char* const told = std::getenv("GLIBC_TUNABLES");
    const std::string kept = told != nullptr ? told : "", option = "glibc.malloc.hugetlb";
    if (kept.find(option) != std::string::npos) return kept;
    return (kept.empty() ? kept : kept + ":") + option + "=1";
}

void tunelibraries(char** words) {
    // Large blocks go back to the system when they are left, whatever was left before them.
    mallopt(M_MMAP_THRESHOLD, 1 << 20);
    // Small ones stay: a table of the next case soon takes their place.
    mallopt(M_TRIM_THRESHOLD, 16 << 20);
    // In steps of some large pages, so that the small ones come in these as well.
    mallopt(M_TOP_PAD, 8 << 20);
    const char* const kernels = "OPENBLAS_CORETYPE";
    const char* const better = std::getenv(kernels) == nullptr ? betterkernels() : nullptr;
    bool changed = demand("OPENBLAS_NUM_THREADS", "1");
    changed |= demand("GLIBC_TUNABLES", withlargepages());
    if (better != nullptr) changed |= demand(kernels, better);
    // Once alone: where something takes a variable away again, it would start for ever.
    const char* const once = "FEIFLU_TUNED";
    if (!changed || std::getenv(once) != nullptr) return;
    setenv(once, "1", 1);
    std::error_code ec;  // by its own path, so that it keeps its name among the processes
    const auto self = std::filesystem::read_symlink("/proc/self/exe", ec);
    if (!ec) execv(self.c_str(), words);
}
