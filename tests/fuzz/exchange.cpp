// SPDX-License-Identifier: GPL-3.0-or-later
// Fuzz driver of all readers of foreign files: the first byte chooses the reader, the rest is the
// file.
#include <cstdint>
#include <filesystem>
#include <fstream>

#include "core/runtime.h"
#include "exchange/formats.h"

namespace fs = std::filesystem;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string path =
        (fs::temp_directory_path() / ("fuzz-exchange-" + std::to_string(std::rand()))).string();
    if (size == 0) return 0;
    const auto& readers = foreignreaders();
    const foreignreader& reader = readers[data[0] % readers.size()];
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(data) + 1, std::streamsize(size - 1));
    imported found;
    guarded([&] { reader.read(path, found); }, [](const runtimeerror&) {});
    return 0;
}
