// SPDX-License-Identifier: GPL-3.0-or-later
// Comparison of texts by words and numbers.
#include "tests/support/golden.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <sstream>
#include <vector>

#include "core/numtext.h"
#include "tests/support/recorder.h"

namespace fs = std::filesystem;

namespace {
struct textline {
    std::vector<std::string> words;
    std::string end;  // carriage return or nothing
    std::string whole;
};
}  // namespace

static std::vector<textline> linesof(const std::string& text) {
    std::vector<textline> lines;
    std::istringstream in(text);
    for (std::string row; std::getline(in, row);) {
        textline line;
        line.whole = row;
        if (!row.empty() && row.back() == '\r') line.end = "\r";
        std::istringstream words(row);
        for (std::string word; words >> word;) line.words.push_back(word);
        lines.push_back(line);
    }
    return lines;
}

// Largest size in column j of the table around line i: the neighbours with as many words.
static double largestaround(const std::vector<textline>& lines, std::size_t i, std::size_t j) {
    const std::size_t words = lines[i].words.size();
    double most = 0;
    const auto take = [&](std::size_t k) {
        if (lines[k].words.size() != words) return false;
        most = std::max(most, std::fabs(numberof(lines[k].words[j])));
        return true;
    };
    for (std::size_t k = i; k < lines.size() && take(k); ++k) {
    }
    for (std::size_t k = i; k > 0 && take(k - 1); --k) {
    }
    return most;
}

static bool equalline(const std::vector<textline>& a, const std::vector<textline>& b,
                      std::size_t i) {
    const double tolerance = 1e-8;
    if (a[i].end != b[i].end || a[i].words.size() != b[i].words.size()) return false;
    for (std::size_t j = 0; j < a[i].words.size(); ++j) {
        const std::string &x = a[i].words[j], &y = b[i].words[j];
        if (x == y) continue;
        double found = 0, wanted = 0;
        if (!readnumber(x, found) || !readnumber(y, wanted)) return false;
        if (std::fabs(found - wanted) > tolerance * largestaround(b, i, j)) return false;
    }
    return true;
}

std::string comparetexts(const std::string& found, const std::string& wanted) {
    const std::size_t most = 20;
    const std::vector<textline> a = linesof(found), b = linesof(wanted);
    std::string report;
    std::size_t different = 0;
    for (std::size_t i = 0; i < std::max(a.size(), b.size()); ++i) {
        if (i < a.size() && i < b.size() && equalline(a, b, i)) continue;
        if (++different > most) break;
        report += "line " + std::to_string(i + 1) +
                  "\n  found:  " + (i < a.size() ? a[i].whole : "(end)") +
                  "\n  wanted: " + (i < b.size() ? b[i].whole : "(end)") + "\n";
    }
    return report;
}

std::string comparegolden(const std::string& text, const std::string& golden) {
    const std::string path = sourcedir() + "/tests/" + golden, kept = path + ".out";
    const std::string report = comparetexts(text, contentof(path));
    std::error_code ec;
    if (report.empty())
        fs::remove(kept, ec);
    else
        writefile(kept, text);
    return report;
}
