// SPDX-License-Identifier: GPL-3.0-or-later
// The verification page held against what is computed.
#include "tests/solver/verify.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "core/textfile.h"
#include "solver/results/records.h"

static const char* const pagepath = KALVANE_SOURCE_DIR "/docs/verification.md";
static const char* const newpath = KALVANE_SOURCE_DIR "/docs/verification.md.out";

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

static const std::string& page() {
    static const std::string text = readwhole(pagepath);
    return text;
}

// Rows by chapter, in their order.
static std::map<std::string, std::vector<std::string>>& proved() {
    static std::map<std::string, std::vector<std::string>> all;
    return all;
}

// Where the rows of a chapter stand in a page; nowhere: 0, 0.
static std::pair<std::size_t, std::size_t> placeof(const std::string& text,
                                                   const std::string& chapter) {
    const std::size_t mark = text.find("<!-- rows " + chapter + " -->\n");
    if (mark == std::string::npos) return {0, 0};
    return {text.find("|---|\n", mark) + 6, text.find("<!-- end -->", mark)};
}

static std::vector<std::string> told(const std::string& chapter) {
    const auto [begin, end] = placeof(page(), chapter);
    std::istringstream in(page().substr(begin, end - begin));
    std::vector<std::string> rows;
    for (std::string row; std::getline(in, row);) rows.push_back(row);
    return rows;
}

static bool samenumber(const std::string& a, const std::string& b) {
    const double lastdigit = 2e-4;  // the page tells five
    const double x = std::strtod(a.c_str(), nullptr), y = std::strtod(b.c_str(), nullptr);
    return std::fabs(x - y) <= lastdigit * std::max(std::fabs(x), std::fabs(y));
}

// The same words and, but for rounding, the same numbers: case, elements, source; printed, truth,
// computed. The error follows from these.
static bool samerow(const std::string& a, const std::string& b) {
    std::istringstream one(a), other(b);
    std::string left, right;
    for (int cell = 0; cell <= 6; ++cell) {  // the one before the first | is empty
        std::getline(one, left, '|'), std::getline(other, right, '|');
        if (left != right && (cell <= 3 || !samenumber(left, right))) return false;
    }
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

static bool wrong = false;  // some value left its tolerance: no page to be taken over

void prove(const proof& p) {
    wrong |= !(std::fabs(p.value / p.truth - 1) <= p.tolerance);
    EXPECT_LE(std::fabs(p.value / p.truth - 1), p.tolerance)
        << p.what << ", " << p.mesh << ": " << p.value << " of " << p.truth << ", ratio "
        << p.value / p.truth;
    EXPECT_TRUE(issource(p.source)) << p.source << " is not in the page's list of sources";
    std::string row;
    for (const std::string& cell :
         {p.what, p.mesh, std::string(p.source), number(p.printed != 0 ? p.printed : p.truth),
          number(p.truth), number(p.value), errortext(p)})
        row += "| " + cell + " ";
    row += "|";
    proved()[p.chapter].push_back(row);
    bool stands = false;
    for (const std::string& one : told(p.chapter)) stands |= samerow(one, row);
    EXPECT_TRUE(stands) << p.what << ", " << p.mesh << ": the page does not tell " << p.value
                        << "; a run of all tests makes a new one";
}

results solvebalanced(build& b) {
    const results r = b.solve();
    for (std::size_t lc = 1; lc <= std::size_t(r.u.cases); ++lc) {
        const vec6 &load = r.reactions.load[lc], &reaction = r.reactions.reaction[lc];
        const double size = std::max(load.cwiseAbs().maxCoeff(), reaction.cwiseAbs().maxCoeff());
        EXPECT_LE((load + reaction).cwiseAbs().maxCoeff(), 1e-9 * size) << "case " << lc;
    }
    return r;
}

void provequadratic(const std::vector<double>& values, double truth) {
    const std::size_t n = values.size();
    const double last = values[n - 1] / truth - 1, before = values[n - 2] / truth - 1;
    EXPECT_GT(std::log2(std::fabs(before / last)), 1.7) << "order of the last step";
}

void expectwords(const std::string& said, std::initializer_list<const char*> words) {
    for (const char* word : words) EXPECT_NE(said.find(word), said.npos) << word << " in: " << said;
}

double meanat(const build& b, const results& r, int n, int value) {
    double sum = 0;
    int count = 0;
    for (std::size_t i = 0; i < r.plates.elements.size(); ++i) {
        const element e = elementat(b.m, b.s, r.plates.elements[i]);
        for (int c = 0; c < e.nodes; ++c) {
            if (e.node[c] != n) continue;
            double record[recordvalues];
            const mat3 axes = stressaxes(e);
            const double* const corner = r.plates.of(1, r.plates.first[i] + c);
            globalrecord(recordplaneof(e, axes), facestressof(e, axes, corner), record);
            sum += record[value];
            ++count;
        }
    }
    return sum / count;
}

std::string meshname(int type, int nx, int ny) {
    return std::string(kindof(type).name) + " " + std::to_string(nx) + " x " + std::to_string(ny);
}

// --- a new page ---------------------------------------------------------------------------------

// In the order of the page, whatever the order of the tests; new rows come last.
static std::string newpage() {
    std::string text = page();
    for (auto& [chapter, rows] : proved()) {
        const auto place = [&, known = told(chapter)](const std::string& row) {
            return std::ranges::find_if(known, [&](const auto& k) { return samerow(k, row); }) -
                   known.begin();
        };
        std::ranges::stable_sort(rows, {}, place);
        std::string lines;
        for (const std::string& row : rows) lines += row + "\n";
        const auto [begin, end] = placeof(text, chapter);
        if (end > 0) text.replace(begin, end - begin, lines);
    }
    return text;
}

static bool samerows() {
    for (const auto& [chapter, rows] : proved())
        if (!std::ranges::is_permutation(told(chapter), rows, samerow)) return false;
    return true;
}

namespace {
class keeper : public testing::Environment {
    // A page that an earlier run left is not what this one computes.
    void SetUp() override { std::filesystem::remove(newpath); }
    void TearDown() override {
        const auto& run = *testing::UnitTest::GetInstance();
        const bool all = run.test_to_run_count() == run.total_test_count();
        if (!all || wrong || samerows()) return;
        std::ofstream(newpath) << newpage();
        ADD_FAILURE() << "the rows of docs/verification.md are not those that the tests compute, "
                      << newpath << " has these";
    }
};
const testing::Environment* const kept = testing::AddGlobalTestEnvironment(new keeper);
}  // namespace
