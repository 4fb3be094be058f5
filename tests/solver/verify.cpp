// SPDX-License-Identifier: GPL-3.0-or-later
// Gathering of computed values and writing of the page's rows.
#include "tests/solver/verify.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

static std::map<std::string, std::string>& rows() {
    static std::map<std::string, std::string> all;  // by chapter
    return all;
}

static std::string number(double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.5g", value);
    return text;
}

void prove(const proof& p) {
    EXPECT_LE(std::fabs(p.value / p.truth - 1), p.tolerance)
        << p.what << ", " << p.mesh << ": " << p.value << " of " << p.truth << ", ratio "
        << p.value / p.truth;
    char error[40];
    const double part = p.value / p.truth - 1;
    std::snprintf(error, sizeof error, std::fabs(part) < 1e-5 ? "%.0e" : "%+.2f %%",
                  std::fabs(part) < 1e-5 ? std::fabs(part) : 100 * part);
    rows()[p.chapter] += "| " + p.what + " | " + p.mesh + " | " +
                         (p.printed != 0 ? number(p.printed) : number(p.truth)) + " | " +
                         number(p.truth) + " | " + number(p.value) + " | " + error + " |\n";
}

void provebalance(const results& r, double most) {
    for (int lc = 1; lc <= r.u.cases; ++lc) EXPECT_LT(imbalance(r, lc), most) << "case " << lc;
}

namespace {
// Puts the rows of a full run into the page.
class page : public testing::Environment {
    void TearDown() override {
        const char* const path = std::getenv("FEIFLU_PAGE");
        if (path == nullptr) return;
        std::ifstream in(path);
        std::stringstream content;
        content << in.rdbuf();
        in.close();
        std::string text = content.str();
        for (const auto& [chapter, lines] : rows()) {
            const std::string mark = "<!-- rows " + chapter + " -->\n";
            const std::size_t begin = text.find(mark), end = text.find("<!-- end -->", begin);
            ASSERT_NE(begin, text.npos) << mark;
            text.replace(begin + mark.size(), end - begin - mark.size(),
                         "| case | elements | printed | truth | computed | error |\n"
                         "|---|---|---|---|---|---|\n" +
                             lines);
        }
        std::ofstream(path) << text;
    }
};
const testing::Environment* const writer = testing::AddGlobalTestEnvironment(new page);
}  // namespace
