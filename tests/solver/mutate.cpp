// SPDX-License-Identifier: GPL-3.0-or-later
// Damaged input.
#include "tests/solver/mutate.h"

#include <filesystem>
#include <fstream>

#include "core/runtime.h"
#include "core/textfile.h"
#include "solver/base/control.h"
#include "solver/results/oldresults.h"
#include "tests/solver/everything.h"

namespace fs = std::filesystem;

// The files of a set in their order, each ended by the mark.
static const char mark = '\x1e';
static const char* const files[] = {"EEM.CTR", "feiflu.ini", "m.tek", "m.rot", "m.mlt",
                                    "m.vpl",   "m.lcd",      "m.knk", "m.ell"};

// --- good sets ----------------------------------------------------------------------------------

static build flatframe() {
    build b;
    const int g = b.bar(2e5, 100, {1e4, 2e4, 3e4}, 7.85e-6);
    b.field(g, fieldrotation) = 30;
    b.field(g, fieldwxx) = 1e3, b.field(g, fieldwyy) = 2e3;
    b.node(0, 0), b.node(0, 3000), b.node(4000, 3000), b.node(4000, 0), b.node(5000, 3000);
    for (int i = 1; i <= 3; ++i) b.element(typebeam, g, {i, i + 1});
    b.element(typetruss, g, {1, 3});
    b.element(typerigid, g, {3, 5});
    b.fix({1, 4}, clamped);
    b.load(1, 2, 1, 1000), b.load(1, 5, 2, -500);
    b.press(1, 2, 2, -1);
    b.load(b.addcase(caseaccx, {1, 0, 0, 0, 1}), 3, 1, 10);
    return b;
}

static build intheseaandwind() {
    build b = everything(1, 1, true);
    b.addcase(casewave, {4, 7, 30, 0.2, 20});
    b.addcase(casewind, {40, 15});
    b.addcase(casebuoyancy, {3, 8, 1.1});
    b.load(b.addcase(caseaccrz, {1, 0, 0, 0, 1}), 8, 1, 500);
    return b;
}

static std::string setof(const build& b, const char* control) {
    tempfolder folder;
    b.write(folder / "m");
    std::ofstream(folder / "EEM.CTR") << "\"m\"\r\n" << control << "\r\n";
    runlog log;
    log.quiet();
    readsettings(folder / "feiflu.ini", log);
    std::string set;
    for (const char* file : files) set += readwhole(folder / file) + mark;
    return set;
}

const std::vector<std::string>& samplesets() {
    static const std::vector<std::string> sets = {setof(flatframe(), "1,1,2,1,1,1,1,1"),
                                                  setof(intheseaandwind(), "0,1,3,1,1,1,1,1"),
                                                  setof(intheseaandwind(), "1,0,3,1,1,0,0,0")};
    return sets;
}

// --- damage -------------------------------------------------------------------------------------

static const char* const tokens[] = {
    "0",     "-1",       "1",     "2",    "3",   "6",   "7",       "9",     "12",    "1e30",
    "-1E30", "1e-30",    "1e308", "-0.0", "nan", "inf", "1e999",   "0.5",   "1e9",   "2147483648",
    "\"",    "\"a\"",    "",      ",",    "=",   "#",   "1D5",     "-9999", "65536", "\r\n",
    "x",     "\xc3\xa9", "+3",    "1e15", "100", "-5",  "1000000", "4"};

std::string damaged(const std::string& set, std::mt19937& random) {
    const auto below = [&](std::size_t n) { return n == 0 ? 0 : std::size_t(random() % n); };
    const auto istoken = [](char c) { return c > ' ' && c != ',' && c != '='; };
    std::string text = set;
    for (std::size_t round = 1 + below(3); round > 0; --round) {
        const std::size_t at = below(text.size());
        const std::size_t room = text.size() - at;
        switch (below(8)) {
            case 0:
                if (room > 0) text[at] = char(random());
                break;
            case 1:
                text.erase(at, 1 + below(20));
                break;
            case 2:
                text.insert(at, text.substr(below(text.size()), 1 + below(60)));
                break;
            case 3:
                text.resize(std::max(at, text.size() / 2));
                break;
            default: {  // another token in place of this one
                std::size_t begin = at, end = at;
                while (begin > 0 && istoken(text[begin - 1])) --begin;
                while (end < text.size() && istoken(text[end])) ++end;
                text.replace(begin, end - begin, tokens[below(std::size(tokens))]);
            }
        }
    }
    return text;
}

// --- run ----------------------------------------------------------------------------------------

std::string runset(const std::string& set, const std::string& folder) {
    std::size_t begin = 0;
    for (const char* file : files) {
        const std::size_t end = std::min(set.find(mark, begin), set.size());
        std::ofstream(folder + "/" + file, std::ios::binary) << set.substr(begin, end - begin);
        begin = std::min(end + 1, set.size());
    }
    std::string fault;
    guarded(
        [&] {
            job j = readcontrol(folder + "/EEM.CTR");
            j.base = folder + "/m";  // results stay in the folder, whatever the file says
            j.appdir = folder;
            removeresults(j);
            runlog log;
            log.quiet();
            analyse(j, log);
        },
        [&](const runtimeerror& e) { fault = e.what.empty() ? "(without words)" : e.what; });
    return fault;
}
