// SPDX-License-Identifier: GPL-3.0-or-later
// Comparison of texts by words and numbers.
#include "tests/support/golden.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iterator>
#include <sstream>
#include <vector>

#include "core/numtext.h"
#include "tests/support/recorder.h"

namespace {
struct textline {
    std::string whole;  // with its carriage return
    std::vector<std::string> words;
};
}  // namespace

static std::vector<textline> linesof(const std::string& text) {
    std::vector<textline> lines;
    std::istringstream in(text);
    for (std::string row; std::getline(in, row);) {
        std::istringstream words(row);
        lines.push_back({row, {std::istream_iterator<std::string>(words), {}}});
    }
    return lines;
}

// Largest size in column j of the table around line i: the neighbours with as many words.
static double largestaround(const std::vector<textline>& lines, std::size_t i, std::size_t j) {
    const auto intable = [&](std::size_t k) {
        return k < lines.size() && lines[k].words.size() == lines[i].words.size();
    };
    double most = 0;
    while (i > 0 && intable(i - 1)) --i;
    for (; intable(i); ++i) most = std::max(most, std::fabs(numberof(lines[i].words[j])));
    return most;
}

static bool equalline(const std::vector<textline>& a, const std::vector<textline>& b,
                      std::size_t i) {
    const double tolerance = 1e-8;
    if (a[i].whole.ends_with('\r') != b[i].whole.ends_with('\r')) return false;
    if (a[i].words.size() != b[i].words.size()) return false;
    for (std::size_t j = 0; j < a[i].words.size(); ++j) {
        const std::string &x = a[i].words[j], &y = b[i].words[j];
        if (x == y) continue;
        double found = 0, wanted = 0;
        if (!readnumber(x, found) || !readnumber(y, wanted)) return false;
        if (std::fabs(found - wanted) > tolerance * largestaround(b, i, j)) return false;
    }
    return true;
}

std::string comparegolden(const std::string& text, const std::string& golden) {
    const std::string path = sourcedir() + "/tests/" + golden, kept = path + ".out";
    const std::vector<textline> a = linesof(text), b = linesof(contentof(path));
    std::string report;
    int different = 0;
    for (std::size_t i = 0; i < std::max(a.size(), b.size()); ++i) {
        if (i < a.size() && i < b.size() && equalline(a, b, i)) continue;
        if (++different > 20) break;
        report += "line " + std::to_string(i + 1) +
                  "\n  found:  " + (i < a.size() ? a[i].whole : "(end)") +
                  "\n  wanted: " + (i < b.size() ? b[i].whole : "(end)") + "\n";
    }
    if (report.empty())
        std::filesystem::remove(kept);
    else
        writefile(kept, text);
    return report;
}
