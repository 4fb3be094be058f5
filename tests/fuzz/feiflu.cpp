// SPDX-License-Identifier: GPL-3.0-or-later
// Fuzz driver of the solver: whole file sets, from good ones by damage to tokens and bytes.
#include <cstdint>
#include <cstring>

#include "tests/solver/build.h"
#include "tests/solver/mutate.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const tempfolder folder;
    runset(std::string(reinterpret_cast<const char*>(data), size), folder.path);
    return 0;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t most, unsigned seed) {
    std::mt19937 random(seed);
    const std::size_t nothing = 100;  // smaller than any model
    std::string set(reinterpret_cast<const char*>(data), size);
    if (size < nothing)
        set = samplesets()[random() % samplesets().size()];
    else if (random() % 4 == 0)
        return LLVMFuzzerMutate(data, size, most);
    set = damaged(set, random);
    set.resize(std::min(set.size(), most));
    std::memcpy(data, set.data(), set.size());
    return set.size();
}
