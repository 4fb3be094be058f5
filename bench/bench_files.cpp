// SPDX-License-Identifier: GPL-3.0-or-later
// Open and save of a model of a million nodes and a million quadrilaterals, each against one plain
// loop over the same bytes and numbers with from_chars and to_chars.
#include <charconv>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/largemodel.h"
#include "bench/ratio.h"
#include "core/model.h"
#include "core/session.h"
#include "core/textfile.h"
#include "files/filop.h"
#include "files/saving.h"

namespace fs = std::filesystem;

static const char* const files[] = {".tek", ".rot"};

// All numbers of a file into one list, and where its separators are.
static std::vector<float> parse(const std::string& content) {
    std::vector<float> numbers;
    const char *p = content.data(), *const last = p + content.size();
    while (p < last) {
        float value = 0;
        const auto result = std::from_chars(p, last, value);
        numbers.push_back(value);
        p = result.ptr;
        while (p < last && (*p == ',' || *p == '\r' || *p == '\n')) ++p;
    }
    return numbers;
}

static void plainopen(const std::string& base) {
    std::size_t count = 0;
    for (const char* extension : files) count += parse(readwhole(base + extension)).size();
    if (count == 0) std::puts("nothing was read");
}

static void plainsave(const std::string& path, const std::vector<std::vector<float>>& numbers) {
    std::string out;
    out.reserve(100u << 20);
    for (const auto& list : numbers)
        for (const float value : list) {
            char text[32];
            const auto result = std::to_chars(text, text + sizeof text, value);
            out.append(text, result.ptr);
            out += ',';
        }
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    std::fwrite(out.data(), 1, out.size(), file);
    std::fclose(file);
}

int main() {
    const std::string base = std::string(startsession()) + "/large";
    makelargemodel(1000);
    modelname = base;
    savemodel();
    std::vector<std::vector<float>> numbers;
    for (const char* extension : files) numbers.push_back(parse(readwhole(base + extension)));
    const int runs = 5;
    printratio(
        "save 1,000,000 nodes and quadrilaterals", runs, 3, [] { savemodel(); },
        [&] { plainsave(base + ".plain", numbers); });
    printratio(
        "open 1,000,000 nodes and quadrilaterals", runs, 3, [&] { openmodel(base); },
        [&] { plainopen(base); });
    std::printf("peak memory / declared arrays: %.2f  (wanted: under 1.50)\n",
                peakmemory() / declaredbytes());
    fs::remove_all(startsession());
}
