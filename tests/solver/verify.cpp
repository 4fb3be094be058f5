// SPDX-License-Identifier: GPL-3.0-or-later
// The verification page held against what is computed.
#include "tests/solver/verify.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

#include "core/textfile.h"

static const char* const pagepath = KALVANE_SOURCE_DIR "/docs/verification.md";
static const char* const newpath = KALVANE_SOURCE_DIR "/docs/verification.md.out";

namespace {
enum column { casename, meshcolumn, source, printed, truth, computed, error, columns };
using cells = std::vector<std::string>;
using chapters = std::map<std::string, std::vector<cells>>;  // rows in their order
}  // namespace

static std::string number(double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.5g", value);
    return text;
}

// Rounding differs from machine to machine: an exact value shows the bound it keeps instead.
static std::string errortext(const proof& p) {
    const double part = p.value / p.truth - 1, exact = 2e-5;
    char text[40];
    if (p.tolerance < exact)
        std::snprintf(text, sizeof text, "< %.0e", p.tolerance);
    else
        std::snprintf(text, sizeof text, "%+.2f %%", 100 * part);
    return std::string(text) == "-0.00 %" ? "+0.00 %" : text;
}

static cells cellsof(const std::string& line) {
    cells found;
    std::size_t begin = line.find("| ") + 2;
    for (std::size_t end; (end = line.find(" |", begin)) != line.npos; begin = end + 3)
        found.push_back(line.substr(begin, end - begin));
    return found;
}

static std::string markof(const std::string& chapter) {
    return "<!-- rows " + chapter + " -->\n";
}

static const std::string& page() {
    static const std::string text = readwhole(pagepath);
    return text;
}

// The rows that the page tells.
static std::vector<cells> told(const std::string& chapter) {
    std::vector<cells> rows;
    const std::size_t mark = page().find(markof(chapter));
    if (mark == std::string::npos) return rows;
    std::istringstream in(page().substr(mark));
    std::string line;
    for (int head = 0; head < 3; ++head) std::getline(in, line);
    while (std::getline(in, line) && line != "<!-- end -->") {
        rows.push_back(cellsof(line));
        rows.back().resize(columns);
    }
    return rows;
}

static chapters& proved() {
    static chapters all;
    return all;
}

static bool samenumber(const std::string& a, const std::string& b) {
    const double lastdigit = 2e-4;  // the page tells five
    const double x = std::strtod(a.c_str(), nullptr), y = std::strtod(b.c_str(), nullptr);
    return std::fabs(x - y) <= lastdigit * std::max(std::fabs(x), std::fabs(y));
}

static bool samerow(const cells& a, const cells& b) {
    for (const column c : {casename, meshcolumn, source})
        if (a[c] != b[c]) return false;
    for (const column c : {printed, truth, computed})
        if (!samenumber(a[c], b[c])) return false;
    return true;
}

static bool issource(const std::string& letters) {
    std::istringstream in(letters);
    for (std::string one; std::getline(in, one, ',');) {
        one.erase(0, one.find_first_not_of(' '));
        if (page().find("\n- [" + one + "] ") == std::string::npos) return false;
    }
    return true;
}

void prove(const proof& p) {
    EXPECT_LE(std::fabs(p.value / p.truth - 1), p.tolerance)
        << p.what << ", " << p.mesh << ": " << p.value << " of " << p.truth << ", ratio "
        << p.value / p.truth;
    EXPECT_TRUE(issource(p.source)) << p.source << " is not in the page's list of sources";
    const cells row = {
        p.what,          p.mesh,          p.source,    number(p.printed != 0 ? p.printed : p.truth),
        number(p.truth), number(p.value), errortext(p)};
    proved()[p.chapter].push_back(row);
    bool stands = false;
    for (const cells& one : told(p.chapter)) stands |= samerow(one, row);
    EXPECT_TRUE(stands) << p.what << ", " << p.mesh << ": the page does not tell " << p.value
                        << "; a run of all tests makes a new one";
}

results solvebalanced(build& b) {
    const results r = b.solve();
    for (int lc = 1; lc <= r.u.cases; ++lc) EXPECT_LT(imbalance(r, lc), 1e-9) << "case " << lc;
    return r;
}

void convergence::add(double value, double truth) {
    const double error = std::fabs(value / truth - 1);
    if (last > 0) order = std::log2(last / error);
    last = error;
}

void expectwords(const std::string& said, std::initializer_list<const char*> words) {
    for (const char* word : words) EXPECT_NE(said.find(word), said.npos) << word << " in: " << said;
}

std::string meshname(int type, int nx, int ny) {
    return std::string(kindof(type).name) + " " + std::to_string(nx) + " x " + std::to_string(ny);
}

// --- a new page ---------------------------------------------------------------------------------

static std::string newpage() {
    std::string text = page();
    for (const auto& [chapter, rows] : proved()) {
        const std::string mark = markof(chapter);
        const std::size_t begin = text.find(mark), end = text.find("<!-- end -->", begin);
        if (begin == text.npos) continue;  // each of its rows has failed
        std::string lines =
            "| case | elements | source | printed | truth | computed | error |\n"
            "|---|---|---|---|---|---|---|\n";
        for (const cells& row : rows) {
            for (const std::string& cell : row) lines += "| " + cell + " ";
            lines += "|\n";
        }
        text.replace(begin + mark.size(), end - begin - mark.size(), lines);
    }
    return text;
}

static bool samerows() {
    for (const auto& [chapter, rows] : proved())
        if (!std::ranges::equal(told(chapter), rows, samerow)) return false;
    return true;
}

namespace {
class keeper : public testing::Environment {
    void TearDown() override {
        const auto& run = *testing::UnitTest::GetInstance();
        const bool all = run.test_to_run_count() == run.total_test_count();
        if (!all || samerows()) return;
        std::ofstream(newpath) << newpage();
        ADD_FAILURE() << "the rows of docs/verification.md are not those that the tests compute, "
                      << newpath << " has these";
    }
};
const testing::Environment* const kept = testing::AddGlobalTestEnvironment(new keeper);
}  // namespace
