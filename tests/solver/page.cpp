// SPDX-License-Identifier: GPL-3.0-or-later
// The verification page docs/verification-modes.md and its rows.
#include "tests/solver/page.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

static const char* const page = KALVANE_SOURCE_DIR "/docs/verification-modes.md";

static std::string number(double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.5g", value);
    return text;
}

static std::string percent(const verification& v) {
    char text[40];
    std::snprintf(text, sizeof text, "%+.3f %%", 100 * (v.result / v.reference - 1));
    return std::string(text) == "-0.000 %" ? "+0.000 %" : text;
}

static std::vector<std::string> linesofpage() {
    std::ifstream in(page);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

static std::string startof(const verification& v) {
    return "| " + v.name + " | ";
}

static void accept(const verification& v) {
    const std::string row = startof(v) + v.mesh + " | " + v.source + " | " + number(v.reference) +
                            " | " + number(v.result) + " | " + percent(v) + " |";
    bool stands = false;
    std::vector<std::string> lines = linesofpage();
    for (std::string& line : lines)
        if (line.rfind(startof(v), 0) == 0) {
            line = row;
            stands = true;
        }
    if (!stands) lines.push_back(row);
    std::ofstream out(page);
    for (const std::string& line : lines) out << line << "\n";
}

// The result that the page tells for this case, NaN where it has no such row.
static double toldresult(const verification& v) {
    for (const std::string& line : linesofpage()) {
        if (line.rfind(startof(v), 0) != 0) continue;
        std::istringstream in(line);
        std::string cell;
        for (int i = 0; i < 6; ++i) std::getline(in, cell, '|');
        return std::strtod(cell.c_str(), nullptr);
    }
    return NAN;
}

void verify(const verification& v) {
    EXPECT_NEAR(v.result, v.reference, v.tolerance * std::fabs(v.reference)) << v.name;
    if (std::getenv("KALVANE_ACCEPT") != nullptr) {
        accept(v);
        return;
    }
    const double lastdigit = 2e-4;  // the page tells five
    EXPECT_NEAR(toldresult(v), v.result, lastdigit * std::fabs(v.result))
        << v.name << ": " << page << " tells another result; KALVANE_ACCEPT=1 takes this one over";
}
