// SPDX-License-Identifier: GPL-3.0-or-later
// Fowler, Noll and Vo's hash 1a, 64 bits.
#include "core/checksum.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <memory>
#include <vector>

#include "core/runtime.h"
#include "core/textfile.h"
#include "core/unitsrow.h"

// Lines of .tek that tell the model, by its first one: a line a node, two an element. What follows
// is how the views look at it.
static long linesofmodel(const char* text) {
    char* end = nullptr;
    const long nodes = std::strtol(text, &end, 10);
    return 1 + nodes + 2 * (*end == ',' ? std::strtol(end + 1, nullptr, 10) : 0);
}

std::string modelchecksum(const std::string& base) {
    const std::uint64_t prime = 1099511628211u;
    std::uint64_t hash = 14695981039346656037u;
    const auto add = [&](unsigned char byte) { hash = (hash ^ byte) * prime; };
    std::vector<char> block(1 << 16);
    for (const char* const extension : {".tek", ".rot", ".vpl", ".knk", ".mlt", ".lcd", ".ell"}) {
        for (const char* c = extension; *c != 0; ++c) add(static_cast<unsigned char>(*c));
        const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(
            std::fopen(findnocase(base + extension).c_str(), "rb"), std::fclose);
        if (!file) continue;
        long lines = std::numeric_limits<long>::max();
        for (bool first = true; lines > 0; first = false) {
            const std::size_t count = std::fread(block.data(), 1, block.size() - 1, file.get());
            if (count == 0) break;
            block[count] = 0;
            if (first && extension == std::string(".tek")) lines = linesofmodel(block.data());
            for (std::size_t i = 0; i < count && lines > 0; ++i) {
                add(static_cast<unsigned char>(block[i]));
                lines -= block[i] == '\n';
            }
        }
    }
    // Inertia, waves and wind depend on what the numbers are of.
    std::string units;
    guarded([&] { units = unitsrow(base); }, [](const runtimeerror&) {});
    for (const char c : units) add(static_cast<unsigned char>(c));
    char text[20];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(hash));
    return text;
}
