// SPDX-License-Identifier: GPL-3.0-or-later
// The floors of the house: what each folder may include, and no toolkit below the window.
#include <algorithm>
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
// The solver is a house of its own.
static const std::map<std::string, int> solverfloors = {
    {"solver/base", 0},  {"solver/processes", 1}, {"solver/elements", 2}, {"solver/dofs", 3},
    {"solver/loads", 4}, {"solver/equations", 5}, {"solver/modes", 6},    {"solver/results", 7},
    {"solver", 8},       {"solver/mpi", 9}};

static std::string folderof(const std::string& file) {
    return file.substr(0, file.rfind('/'));
}

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

TEST(Architecture, IncludesOfTheSolverPointDownItsFloors) {
    std::set<std::string> seen;
    for (const auto& [folder, height] : solverfloors)
        for (const fs::path& file : sourcesin(folder))
            for (const std::string& include : includesof(file))
                if (const auto at = solverfloors.find(folderof(include));
                    at != solverfloors.end()) {
                    EXPECT_LE(at->second, height) << file << " includes " << include;
                    seen.insert(at->first);
                }
    EXPECT_EQ(seen.size(), solverfloors.size());
    for (const auto& entry : fs::directory_iterator(fs::path(sourcedir()) / "solver"))
        if (entry.is_directory()) {
            EXPECT_TRUE(solverfloors.count("solver/" + entry.path().filename().string()));
        }
}

TEST(Architecture, TheSolverSharesTextReaderAndCodesAlone) {
    const std::set<std::string> shared = {
        "core/textfile.h",   "core/numtext.h",     "core/trimmed.h",  "core/runtime.h",
        "core/besidefile.h", "core/resultfiles.h", "core/checksum.h", "core/codes.h",
        "core/unitsrow.h",   "core/largest.h"};
    for (const auto& [folder, height] : solverfloors)
        for (const fs::path& file : sourcesin(folder))
            for (const std::string& include : includesof(file))
                if (floors.count(folderof(include))) {
                    EXPECT_TRUE(shared.count(include)) << file << " includes " << include;
                }
}

// --- units --------------------------------------------------------------------------------------

// A unit is a header with its source; what either includes, the unit does.
using unitgraph = std::map<std::string, std::set<std::string>>;

static std::string unitof(const std::string& file) {
    return file.substr(0, file.rfind('.'));
}

static unitgraph readunits() {
    unitgraph graph;
    std::set<std::string> folders;
    for (const auto& house : {floors, solverfloors})
        for (const auto& [folder, height] : house) folders.insert(folder);
    for (const std::string& folder : folders) {
        if (!fs::exists(fs::path(sourcedir()) / folder)) continue;
        for (const fs::path& file : sourcesin(folder)) {
            const std::string unit = folder + "/" + file.stem().string();
            for (const std::string& include : includesof(file))
                if (folders.count(folderof(include))) graph[unit].insert(unitof(include));
        }
    }
    return graph;
}

static void reach(const unitgraph& graph, const std::string& unit, std::set<std::string>& seen) {
    const auto at = graph.find(unit);
    if (at == graph.end()) return;
    for (const std::string& next : at->second)
        if (seen.insert(next).second) reach(graph, next, seen);
}

// Each unit on a circle with the units that share one with it.
static unitgraph circlesof(const unitgraph& graph) {
    unitgraph reached, circles;
    for (const auto& [unit, includes] : graph) reach(graph, unit, reached[unit]);
    for (const auto& [unit, seen] : reached)
        for (const std::string& other : seen)
            if (other != unit && reached.count(other) && reached.at(other).count(unit))
                circles[unit].insert(other);
    return circles;
}

TEST(Architecture, UnitsStandInNoCircle) {
    unitgraph graph = readunits();
    EXPECT_GT(graph.size(), 100u);
    EXPECT_TRUE(graph["solver/elements/edges"].count("solver/elements/catalogue"));
    // The one window is the parent of all others, which it opens.
    for (auto& [unit, includes] : graph) includes.erase("ui/mainwindow");
    for (const auto& [unit, circle] : circlesof(graph)) {
        std::string names;
        for (const std::string& name : circle) names += " " + name;
        ADD_FAILURE() << unit << " stands in a circle:" << names;
    }
    const unitgraph ring = {{"a", {"b"}}, {"b", {"c"}}, {"c", {"b", "d"}}, {"d", {}}};
    EXPECT_EQ(circlesof(ring), (unitgraph{{"b", {"c"}}, {"c", {"b"}}}));
}

// What a source needs of another it takes from the header, where the includes show it.
TEST(Architecture, SourcesDeclareNothingOfOthers) {
    for (const auto& [folder, height] : floors) {
        if (!fs::exists(fs::path(sourcedir()) / folder)) continue;
        for (const fs::path& file : sourcesin(folder)) {
            if (file.extension() != ".cpp") continue;
            std::ifstream in(file);
            for (std::string line; std::getline(in, line);)
                EXPECT_FALSE(line.rfind("extern ", 0) == 0 && line.rfind("extern \"C\"", 0) != 0)
                    << file << ": " << line;
        }
    }
}
