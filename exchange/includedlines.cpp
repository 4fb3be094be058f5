// SPDX-License-Identifier: GPL-3.0-or-later
// Files within files.
#include "exchange/includedlines.h"

#include <filesystem>

namespace fs = std::filesystem;

includedlines::includedlines(const std::string& path)
    : folder(fs::path(path).parent_path().string()) {
    files.push_back(std::make_unique<textlines>(path));
}

bool includedlines::next(std::string_view& line) {
    while (!files.back()->next(line)) {
        if (files.size() == 1) return false;
        passed.push_back(std::move(files.back()));
        files.pop_back();
    }
    return true;
}

static std::string pathof(const textlines& in, const std::string& folder, std::string_view name) {
    const fs::path base = fs::weakly_canonical(fs::path(folder.empty() ? "." : folder));
    const fs::path path = fs::weakly_canonical(base / std::string(name));
    const auto [end, at] = std::mismatch(base.begin(), base.end(), path.begin(), path.end());
    if (name.empty() || end != base.end())
        in.fail("the file " + shown(name) + " to include is not beneath the folder of the file");
    return path.string();
}

void includedlines::include(std::string_view name) {
    const std::size_t mostdepth = 16, mostfiles = 1000;
    const std::string path = pathof(now(), folder, name);
    if (files.size() >= mostdepth || ++included > mostfiles)
        now().fail("the files to include never end: " + shown(name));
    files.push_back(std::make_unique<textlines>(path));
}
