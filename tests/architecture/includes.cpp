// SPDX-License-Identifier: GPL-3.0-or-later
// The floors of the house: what each folder may include, and no toolkit below the window.
#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>

#include "tests/support/recorder.h"

namespace fs = std::filesystem;

// Height of a folder; a file includes from its own floor or below.
static const std::map<std::string, int> floors = {{"core", 0},     {"view", 1},  {"edit", 2},
                                                  {"files", 2},    {"tools", 3}, {"loads", 3},
                                                  {"exchange", 4}, {"post", 4},  {"ui", 5}};

static std::vector<std::string> includesof(const fs::path& file) {
    std::vector<std::string> found;
    std::ifstream in(file);
    for (std::string line; std::getline(in, line);) {
        if (line.rfind("#include", 0) != 0) continue;
        const std::size_t begin = line.find_first_of("<\""), end = line.find_last_of(">\"");
        if (begin != line.npos && end > begin)
            found.push_back(line.substr(begin + 1, end - begin - 1));
    }
    return found;
}

static std::vector<fs::path> sourcesin(const std::string& folder) {
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(fs::path(sourcedir()) / folder))
        if (entry.path().extension() == ".cpp" || entry.path().extension() == ".h")
            files.push_back(entry.path());
    return files;
}

TEST(Architecture, IncludesPointDownTheFloors) {
    int seen = 0;
    for (const auto& [folder, height] : floors) {
        if (!fs::exists(fs::path(sourcedir()) / folder)) continue;
        for (const fs::path& file : sourcesin(folder))
            for (const std::string& include : includesof(file)) {
                const std::string target = include.substr(0, include.find('/'));
                ++seen;
                EXPECT_NE(target, "solver") << file << " includes " << include;
                if (const auto at = floors.find(target); at != floors.end()) {
                    EXPECT_LE(at->second, height) << file << " includes " << include;
                }
                if (folder != "ui") {
                    EXPECT_FALSE(include.size() > 1 && include[0] == 'Q' &&
                                 std::isupper(include[1]))
                        << file << " includes " << include;
                }
            }
    }
    EXPECT_GT(seen, 100);
}

TEST(Architecture, TheSolverSharesTheTextReaderAlone) {
    const std::set<std::string> shared = {"core/textfile.h", "core/numtext.h", "core/runtime.h",
                                          "core/besidefile.h", "core/resultfiles.h",
                                          "core/checksum.h"};
    for (const fs::path& file : sourcesin("solver"))
        for (const std::string& include : includesof(file)) {
            const std::string target = include.substr(0, include.find('/'));
            if (floors.count(target)) {
                EXPECT_TRUE(shared.count(include)) << file << " includes " << include;
            }
        }
}
