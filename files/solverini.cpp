// SPDX-License-Identifier: GPL-3.0-or-later
// Lines of feiflu.ini.
#include "files/solverini.h"

#include <algorithm>
#include <filesystem>

#include "core/runtime.h"
#include "core/session.h"
#include "core/textfile.h"
#include "core/trimmed.h"

std::string solverinifile() {
    return findnocase(appdir + "/feiflu.ini");
}

// Key of a line of the file, "" where it has none.
static std::string keyof(const std::string& line, std::string& value) {
    const std::string content = line.substr(0, line.find_first_of("#;"));
    const std::size_t equals = content.find('=');
    if (equals == content.npos) return {};
    value = trimmed(content.substr(equals + 1));
    return std::string(trimmed(content.substr(0, equals)));
}

static std::vector<std::string> inilines() {
    std::vector<std::string> lines;
    std::error_code ec;
    if (!std::filesystem::exists(solverinifile(), ec)) return lines;
    const std::string text = readwhole(solverinifile());
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

std::vector<std::pair<std::string, std::string>> solverinientries() {
    std::vector<std::pair<std::string, std::string>> entries;
    std::vector<std::string> lines;
    guarded([&] { lines = inilines(); }, [](const runtimeerror&) {});
    for (const std::string& line : lines) {
        std::string value;
        if (const std::string key = keyof(line, value); !key.empty())
            entries.emplace_back(key, value);
    }
    return entries;
}

void storesolverini(const std::string& key, const std::string& value) {
    std::vector<std::string> lines = inilines();
    const std::string wanted = key + " = " + value;
    bool stands = false;
    for (std::string& line : lines) {
        std::string before;
        line.erase(line.find_last_not_of('\r') + 1);
        if (keyof(line, before) != key) continue;
        const std::size_t comment = line.find_first_of("#;");
        line = wanted + (comment == line.npos ? "" : "  " + line.substr(comment));
        stands = true;
    }
    if (!stands) lines.push_back(wanted);
    textout out(solverinifile());
    for (const std::string& line : lines) out.raw(line).endline();
    out.commit();
}
