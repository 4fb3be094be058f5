// SPDX-License-Identifier: GPL-3.0-or-later
// The result files, and how the common names among them are told from files of others.
#include "core/resultfiles.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

const std::vector<std::string> resultextensions = {".rvp", ".KRT", ".EIG", ".LES", ".NSA",
                                                   ".NLA", ".NSR", ".NSL", ".MEM", ".sum",
                                                   ".EMS", ".DAT", ".log"};

static std::string beginning(const std::string& path) {
    const std::size_t enough = 64;
    std::ifstream in(path, std::ios::binary);
    std::string text(enough, '\0');
    in.read(text.data(), std::streamsize(enough));
    text.resize(std::size_t(in.gcount()));
    return text;
}

// A log begins with the solver's name, the sums with their first word; a summary is a line of whole
// numbers.
static bool isforeign(const std::string& path) {
    const std::string text = beginning(path);
    if (path.ends_with(".log")) return !text.starts_with("feiflu ");
    if (path.ends_with(".sum")) return !text.starts_with("\"static\",");
    return text.find_first_not_of("0123456789-, \r\n") != text.npos;
}

std::vector<std::string> foreignresults(const std::string& base) {
    std::vector<std::string> foreign;
    std::error_code ec;
    for (const char* extension : {".log", ".DAT", ".sum"}) {
        const std::string path = base + extension;
        if (std::filesystem::exists(path, ec) && isforeign(path)) foreign.push_back(path);
    }
    return foreign;
}

std::vector<std::string> ownresults(const std::string& base) {
    const auto foreign = foreignresults(base);
    std::vector<std::string> own;
    std::error_code ec;
    for (const std::string& extension : resultextensions) {
        const std::string path = base + extension;
        if (std::filesystem::exists(path, ec) &&
            std::find(foreign.begin(), foreign.end(), path) == foreign.end())
            own.push_back(path);
    }
    return own;
}
