// SPDX-License-Identifier: GPL-3.0-or-later
// Reading and writing of feiflu.ini.
#include "solver/base/settings.h"

#include <algorithm>
#include <filesystem>
#include <vector>

#include "core/numtext.h"
#include "core/textfile.h"
#include "core/trimmed.h"
#include "core/unitsrow.h"
#include "solver/base/refuse.h"

namespace {
struct realkey {
    const char* name;
    double settings::*value;
    double least, most;
    const char* meaning;
};
struct wholekey {
    const char* name;
    int settings::*value;
    int least, most;
    const char* meaning;
};
struct textkey {
    const char* name;
    std::string settings::*value;
    std::vector<std::string> allowed;  // empty: any
    const char* meaning;
};
}  // namespace

// From below atoms to beyond planets, in SI.
static const double leastunit = 1e-15, mostunit = 1e15;

static const realkey realkeys[] = {
    {"length", &settings::length, leastunit, mostunit, "metres in one model length unit"},
    {"force", &settings::force, leastunit, mostunit, "newtons in one model force unit"},
    {"mass", &settings::mass, leastunit, mostunit, "kilograms in one model mass unit"},
    {"gravity", &settings::gravity, 1e-6, 1e6, "m/s^2, waves"},
    {"waterdensity", &settings::waterdensity, 0, 1e6, "kg/m^3, waves"},
    {"cd", &settings::cd, 0, 1000, "drag coefficient of members in waves"},
    {"cm", &settings::cm, 0, 1000, "inertia coefficient of members in waves"},
    {"airdensity", &settings::airdensity, 0, 1e6, "kg/m^3, wind"},
    {"windexponent", &settings::windexponent, 0, 10,
     "wind speed at height z in metres: speed at 10 m times (z/10)^windexponent"},
    {"cs", &settings::cs, 0, 1000, "wind shape coefficient of tubes"},
    {"csflat", &settings::csflat, 0, 1000, "wind shape coefficient of other sections and plates"},
    {"shear", &settings::shear, 0, 1,
     "shear area of line elements over their area; 0: none, 0.85: solid square, 0.5: thin tube"},
};
static const wholekey wholekeys[] = {
    {"modes", &settings::modes, 1, 10000, "eigenmodes wanted"},
    {"threads", &settings::threads, 0, 1024, "0: all cores"},
    {"processes", &settings::processes, 0, 65535,
     "of feiflu-mpi, for other engines than cholmod; 0: one a core"},
    {"checkpoint", &settings::checkpoint, 0, 1000000,
     "load cases after which what is found so far is kept for a restart; 0: none"},
};
static const textkey textkeys[] = {
    {"engine",
     &settings::engine,
     {"cholmod", "mumps", "multigrid", "auto"},
     "cholmod, or by feiflu-mpi: mumps, multigrid, auto (what the memory allows)"},
    {"hosts", &settings::hosts, {}, "file with the hosts of feiflu-mpi, a line each; empty: this"},
    {"ordering",
     &settings::ordering,
     {"metis", "scotch"},
     "library of the nested dissection; scotch: by feiflu-mpi"},
    {"scratch", &settings::scratch, {}, "folder for what the memory does not hold; empty: none"},
};

static std::string fromto(double least, double most) {
    return "number from " + numbertext(least) + " to " + numbertext(most);
}

namespace {
struct setting {
    bool known = false, inrange = false;
    std::string allowed;  // in words
};
}  // namespace

static setting setnumber(settings& s, const std::string& key, const std::string& text) {
    double number = 0;
    const bool isnumber = readnumber(text, number);
    for (const realkey& k : realkeys) {
        if (key != k.name) continue;
        s.*k.value = number;
        return {true, isnumber && number >= k.least && number <= k.most,
                "a " + fromto(k.least, k.most)};
    }
    for (const wholekey& k : wholekeys) {
        if (key != k.name) continue;
        const bool inrange =
            isnumber && number >= k.least && number <= k.most && number == double(int(number));
        if (inrange) s.*k.value = int(number);
        return {true, inrange, "a whole " + fromto(k.least, k.most)};
    }
    return {};
}

static setting settext(settings& s, const std::string& key, const std::string& text) {
    for (const textkey& k : textkeys) {
        if (key != k.name) continue;
        s.*k.value = text;
        setting found = {true, k.allowed.empty() || std::ranges::count(k.allowed, text) > 0, ""};
        for (const std::string& one : k.allowed)
            found.allowed += (&one == &k.allowed[0] ? "" : ", ") + one;
        return found;
    }
    return {};
}

static void storeline(settings& s, const std::string& text, const std::string& where, runlog& log) {
    const std::size_t equals = text.find('=');
    if (equals == text.npos)
        refuse(where + ": \"key = value\" was expected, found \"" + toutf8(text.substr(0, 40)) +
               "\"; a comment starts with #");
    const std::string key(trimmed(text.substr(0, equals)));
    const std::string value(trimmed(text.substr(equals + 1)));
    setting found = settext(s, key, value);
    if (!found.known) found = setnumber(s, key, value);
    if (!found.known)
        log.warn(where + ": the key \"" + toutf8(key.substr(0, 40)) +
                 "\" is not known and ignored");
    else if (!found.inrange)
        refuse(where + ": \"" + toutf8(value.substr(0, 40)) + "\" is no value for " + key +
               ", which is " + found.allowed +
               "; correct it or delete the file, then it is written anew with its defaults");
}

// The same from a text that is in memory.
static settings parsesettings(const std::string& text, const std::string& name, runlog& log) {
    settings s;
    std::size_t begin = 0;
    for (int line = 1; begin < text.size(); ++line) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        std::string content = text.substr(begin, end - begin);
        begin = end + 1;
        content = trimmed(content.substr(0, content.find_first_of("#;")));
        if (content.empty() || content.front() == '[') continue;
        storeline(s, content, name + ", line " + std::to_string(line), log);
    }
    return s;
}

static void writedefaults(const std::string& path) {
    const settings s;
    textout out(path);
    out.raw("# Settings of the solver feiflu. Text behind # is a comment.").endline();
    const auto put = [&](const char* name, const std::string& value, const char* meaning) {
        out.raw(name).raw(" = ").raw(value).raw("  # ").raw(meaning).endline();
    };
    for (const realkey& k : realkeys) put(k.name, numbertext(s.*k.value), k.meaning);
    for (const wholekey& k : wholekeys) put(k.name, numbertext(s.*k.value), k.meaning);
    for (const textkey& k : textkeys) put(k.name, s.*k.value, k.meaning);
    out.commit();
}

settings readsettings(const std::string& path, runlog& log) {
    std::error_code ec;
    const std::string found = findnocase(path);
    if (std::filesystem::exists(found, ec)) {
        const std::filesystem::path whole = std::filesystem::absolute(found, ec);
        return parsesettings(readwhole(found), whole.lexically_normal().string(), log);
    }
    guarded([&] { writedefaults(path); },
            [&](const runtimeerror& e) { log.warn("feiflu.ini was not written: " + e.what); });
    return {};
}

std::string settingsname(const settings& s) {
    std::string name;
    for (const realkey& k : realkeys) name += numbertext(s.*k.value) + " ";
    return name + std::to_string(s.checkpoint) + " " + s.engine + " " + s.ordering;
}

void followmodel(settings& s, const std::string& base, runlog& log) {
    const std::string row = unitsrow(base), name = base + ".kal, section \"units\"";
    if (row.empty()) return;
    textin in(row, name);
    const std::string names = in.text();
    if (in.atend()) return;
    for (double settings::*const value : {&settings::length, &settings::force, &settings::mass}) {
        s.*value = in.number();
        if (!(s.*value >= leastunit && s.*value <= mostunit))
            refuse(name + ": a unit's size is a " + fromto(leastunit, mostunit) + "; found " + row);
    }
    log.line("The model is in " + names + ", as it says itself");
}
