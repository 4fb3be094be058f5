// SPDX-License-Identifier: GPL-3.0-or-later
// The report of a model of 100,000 nodes against a plain to_chars loop over the numbers that it
// holds: the input sections alone, and with the displacements of a combination, whose yardstick
// parses the result file with from_chars as well.
#include <charconv>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/largemodel.h"
#include "bench/plainread.h"
#include "bench/ratio.h"
#include "core/model.h"
#include "core/session.h"
#include "core/textfile.h"
#include "post/Report.h"

namespace fs = std::filesystem;

// A number of the report: how it is written depends on where it came from.
namespace {
struct numbers {
    std::vector<float> raw;
    std::vector<double> scientific;
};
}  // namespace

static numbers numbersof(const std::string& report) {
    numbers found;
    const char *p = report.data(), *const last = p + report.size();
    while (p < last) {
        double value = 0;
        const auto result = std::from_chars(p, last, value);
        if (result.ec != std::errc()) {
            ++p;
            continue;
        }
        const std::string_view text(p, std::size_t(result.ptr - p));
        if (text.find("E") != text.npos && text.size() <= 9)
            found.scientific.push_back(value);
        else
            found.raw.push_back(float(value));
        p = result.ptr;
    }
    return found;
}

static void plainwrite(const std::string& path, const numbers& list) {
    std::string out;
    out.reserve(64u << 20);
    char text[32];
    for (const float value : list.raw) {
        out.append(text, std::to_chars(text, text + sizeof text, value).ptr);
        out += ' ';
    }
    for (const double value : list.scientific) {
        out.append(
            text,
            std::to_chars(text, text + sizeof text, value, std::chars_format::scientific, 2).ptr);
        out += ' ';
    }
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    std::fwrite(out.data(), 1, out.size(), file);
    std::fclose(file);
}

// Displacements of one load case with the digits that a solver writes.
static void makeresults(const std::string& base) {
    textout out(base + ".rvp");
    out.line(nnodes(), 3);
    for (int n = 1; n <= nnodes(); ++n)
        out.line(n / 7.0, n / 1e5 / 3, -n / 11e7, 1e-6 / n, n * 1e-9 / 3, -1.0 / n);
    out.quoted("LC1").endline();
    out.commit();
}

int main() {
    const std::string base = std::string(startsession()) + "/large";
    makelargemodel(316);
    modelname = base;
    makeresults(base);
    const int runs = 7;
    const double limit = 3;
    const auto compare = [&](const std::string& name, bool results) {
        reportwanted.fill(false);
        for (const int section : {secgroups, secmesh, secconstraints, secloads})
            reportwanted[std::size_t(section)] = !results;
        reportwanted[secdisplacements] = results;
        savereport(base);
        const numbers list = numbersof(readwhole(base + ".rpt"));
        printratio(
            name, runs, limit, [&] { savereport(base); },
            [&] {
                if (results) plainread(base + ".rvp");
                plainwrite(base + ".plain", list);
            });
    };
    compare("report of the input, 100,489 nodes", false);
    compare("report of displacements, 100,489 nodes", true);
    fs::remove_all(startsession());
}
