// SPDX-License-Identifier: GPL-3.0-or-later
// The two passes over a MOSES text.
#include "exchange/MOSESINTERFACE.h"

#include <unordered_map>
#include <utility>

#include "core/textfile.h"
#include "exchange/arithmetic.h"
#include "exchange/mosesclass.h"
#include "exchange/mosesdeck.h"

namespace {

// What holds for the elements of one line from a word on.
struct elementstate {
    std::string name;
    int group = 0;                 // 0: none told
    bool nogroup = false;          // the class that was told is not there
    int reference = 0;             // a point
    std::vector<int> released[2];  // freedoms, by end
    long line = 0;
};

class mosesreader {
  public:
    mosesreader(std::string text, const std::string& path, imported& f)
        : found(f), report(f.report), name(path), deck(std::move(text), path, f.report) {
        found.units = deck.base().ofmodel;
    }
    void firstpass();
    void secondpass();
    bool isempty() const { return found.nodes.empty() && classes.empty(); }

  private:
    void readpoint(std::string_view word, std::string_view rest, const mosesstatement& s);
    void readclassline(std::string_view word, std::string_view rest, const mosesstatement& s);
    void readitem(std::string_view word, std::string_view rest, const mosesstatement& s);
    void parsebeam(std::string_view rest, long line);
    void parseplate(std::string_view rest, long line, const char* what, char letter);
    void parsepanel(std::string_view rest, long line);
    void parsedescribe(std::string_view rest, long line);
    void parserestraint(std::string_view rest, long line);
    void parseweight(std::string_view rest, const mosesstatement& s);

    int point(std::string_view word, long line);
    const mosesclass* findclass(std::string_view word, long line);
    void readgroup(std::string_view word, elementstate& state);
    void readoption(std::string_view option, std::string_view& rest, elementstate& state,
                    const char* what);
    std::vector<int> readfreedoms(std::string_view& rest);
    int groupofplace();
    int groupof(const elementstate& state) { return state.group ? state.group : groupofplace(); }
    void addbeam(int a, int b, elementstate& state);
    void addface(const std::vector<int>& corners, elementstate& state, const char* what,
                 char letter);
    int addelement(int type, const std::array<int, 4>& corners, elementstate& state, char letter);
    void progress(std::size_t i, double from);

    imported& found;
    importreport& report;
    std::string name;
    mosesdeck deck;
    std::unordered_map<std::string, int> points;  // by name in upper case
    std::unordered_map<std::string, mosesclass> classes;
    std::string place;   // the piece or part that is being described
    int placegroup = 0;  // its group, once an element needed one
    int weights = 0;     // place of the load case, from 1
};

}  // namespace

void mosesreader::progress(std::size_t i, double from) {
    const std::size_t often = 8192;
    if (i % often == 0)
        readingprogress(name, from + double(i) / double(deck.statements().size()) / 4);
}

// --- first pass: points and classes -------------------------------------------------------------

void mosesreader::firstpass() {
    std::size_t i = 0;
    for (const mosesstatement& s : deck.statements()) {
        progress(i++, 0.5);
        std::string_view rest = s.text, word;
        if (!nextmosesword(rest, word)) continue;
        if (word[0] == '*') readpoint(word.substr(1), rest, s);
        if (word[0] == '~') readclassline(word.substr(1), rest, s);
    }
    report.read("Points", long(found.nodes.size()));
    report.read("Classes", long(classes.size()));
}

void mosesreader::readpoint(std::string_view pointname, std::string_view rest,
                            const mosesstatement& s) {
    static const char* const which[] = {"first", "second", "third"};
    const double scale = deck.unitsof(s).length / deck.base().length;
    const auto where = [&] { return "point " + shown(pointname) + ": "; };
    triple at;
    std::string_view word;
    for (std::size_t k = 0; k < 3; ++k) {
        if (!nextmosesword(rest, word))
            return report.error(where() + "the " + which[k] + " coordinate is missing", s.line);
        if (!readexpression(word, at[k]))
            return report.error(where() + shown(word) + " is not a number", s.line);
        at[k] *= scale;
    }
    if (nextmosesword(rest, word))
        report.warn("What stands behind the three coordinates of points is not read", s.line);
    if (scale != 1)
        report.changed(std::string("Coordinates turned from ") + deck.unitsof(s).lengthname +
                       " to " + deck.base().lengthname);
    const auto [known, isnew] = points.try_emplace(uppercase(pointname), 0);
    if (isnew) {
        known->second = found.addnode(at);
        found.nodenames.emplace_back(pointname);
        return;
    }
    triple& before = found.nodes[std::size_t(known->second) - 1];
    if (before == at) return;
    report.warn(where() + "defined again, the later place holds", s.line);
    report.about(reportitems::nodes, known->second);
    before = at;
}

void mosesreader::readclassline(std::string_view classname, std::string_view rest,
                                const mosesstatement& s) {
    const auto [known, isnew] = classes.try_emplace(uppercase(classname));
    if (!isnew)
        return report.warn("class " + shown(classname) +
                               " has several lines, segments along a member; the first one holds",
                           s.line);
    known->second.group = found.groupof(std::string(classname));
    readclass(rest, s, deck, found, known->second);
}

// --- second pass: what stands on them -----------------------------------------------------------

void mosesreader::secondpass() {
    std::size_t i = 0;
    for (const mosesstatement& s : deck.statements()) {
        progress(i++, 0.75);
        std::string_view rest = s.text, word;
        if (nextmosesword(rest, word) && word[0] != '*' && word[0] != '~') readitem(word, rest, s);
    }
}

void mosesreader::readitem(std::string_view word, std::string_view rest, const mosesstatement& s) {
    const std::string_view kind = word.substr(0, 4);
    if (kind == "BEAM")
        parsebeam(rest, s.line);
    else if (kind == "PLAT")
        parseplate(rest, s.line, "plate", 'P');
    else if (kind == "PANE" || kind == "pane")
        parsepanel(rest, s.line);
    else if (sameword(word, "REST"))
        parserestraint(rest, s.line);
    else if (sameword(word, "#WEIGHT"))
        parseweight(rest, s);
    else if (shortens(word, "&DESCRIBE", 5))
        parsedescribe(rest, s.line);
    else
        report.skipped("Lines " + shown(word), s.line);
}

// The node of a word "*name"; 0, told, where there is none.
int mosesreader::point(std::string_view word, long line) {
    word.remove_prefix(1);
    const auto at = points.find(uppercase(word));
    if (at != points.end()) return at->second;
    report.error("point " + shown(word) + " is not defined", line);
    return 0;
}

const mosesclass* mosesreader::findclass(std::string_view word, long line) {
    const auto at = classes.find(uppercase(word.substr(1)));
    if (at != classes.end()) return &at->second;
    report.error("class " + shown(word) + " is not defined", line);
    return nullptr;
}

void mosesreader::readgroup(std::string_view word, elementstate& state) {
    const mosesclass* const known = findclass(word, state.line);
    state.nogroup = known == nullptr;
    state.group = known ? known->group : 0;
}

std::vector<int> mosesreader::readfreedoms(std::string_view& rest) {
    std::vector<int> freedoms;
    std::string_view ahead = rest, word;
    while (nextmosesword(ahead, word)) {
        const int dof = mosesfreedom(word);
        if (dof == 0) break;
        freedoms.push_back(dof);
        rest = ahead;
    }
    return freedoms;
}

// Takes an option with its data.
void mosesreader::readoption(std::string_view option, std::string_view& rest, elementstate& state,
                             const char* what) {
    std::string_view ahead = rest, word;
    if (sameword(option, "-REFN")) {
        if (!nextmosesword(ahead, word) || word[0] != '*')
            return report.error("-REFN is not followed by a point", state.line);
        rest = ahead;
        state.reference = point(word, state.line);
        return;
    }
    if (sameword(option, "-REL1") || sameword(option, "-RELA"))
        state.released[0] = readfreedoms(rest);
    else if (sameword(option, "-REL2") || sameword(option, "-RELB"))
        state.released[1] = readfreedoms(rest);
    else {
        const bool points = sameword(option, "-FSOPT");  // free edges, not corners
        report.skipped("Option " + uppercase(option).substr(0, 20) + " of a " + what, state.line);
        while (nextmosesword(ahead, word) && word[0] != '~' && !isoption(word) &&
               (word[0] != '*' || points))
            rest = ahead;
    }
}

// A string of beams from node to node; a class or an option holds for the beams behind it.
void mosesreader::parsebeam(std::string_view rest, long line) {
    elementstate state;
    state.line = line;
    int last = 0, count = 0;
    bool lost = false;
    std::string_view word;
    while (nextmosesword(rest, word)) {
        if (word[0] == '~')
            readgroup(word, state);
        else if (isoption(word))
            readoption(word, rest, state, "beam");
        else if (word[0] != '*')
            state.name = word;
        else {
            const int node = point(word, line);
            lost = lost || node == 0;
            if (++count > 1 && last && node) addbeam(last, node, state);
            last = node;
        }
    }
    if (count < 2 && !lost) report.error("a beam has two points or more", line);
}

int mosesreader::addelement(int type, const std::array<int, 4>& corners, elementstate& state,
                            char letter) {
    const int e = found.addelement(type, corners, groupof(state));
    if (state.name.empty()) state.name = letter + std::to_string(e);
    found.elementnames.push_back(std::move(state.name));
    state.name.clear();
    return e;
}

void mosesreader::addbeam(int a, int b, elementstate& state) {
    if (state.nogroup) return;
    if (a == b) return report.error("a beam ends at the point where it begins", state.line);
    const int e = addelement(typebeam, {a, b, 0, 0}, state, 'B');
    report.read("Beams");
    for (int end = 1; end <= 2; ++end)
        for (const int dof : state.released[end - 1]) found.releases.push_back({e, end, dof});
    if (state.reference == 0) return;
    const triple &from = found.nodes[std::size_t(a) - 1],
                 &to = found.nodes[std::size_t(state.reference) - 1];
    found.orientations.push_back({e, 3, {to[0] - from[0], to[1] - from[1], to[2] - from[2]}});
}

void mosesreader::parsepanel(std::string_view rest, long line) {
    parseplate(rest, line, "panel", 'P');
}

void mosesreader::parseplate(std::string_view rest, long line, const char* what, char letter) {
    elementstate state;
    state.line = line;
    std::vector<int> corners;
    std::string_view word;
    while (nextmosesword(rest, word)) {
        if (word[0] == '~')
            readgroup(word, state);
        else if (isoption(word))
            readoption(word, rest, state, what);
        else if (word[0] != '*')
            state.name = word;
        else if (const int node = point(word, line);
                 node && (corners.empty() || corners.back() != node))
            corners.push_back(node);
    }
    if (corners.size() > 1 && corners.front() == corners.back()) corners.pop_back();
    if (!state.nogroup) addface(corners, state, what, letter);
}

// Up to four corners as they are, more as a fan.
void mosesreader::addface(const std::vector<int>& corners, elementstate& state, const char* what,
                          char letter) {
    const std::size_t n = corners.size();
    if (n < 3)
        return report.error(std::string("a ") + what + " has three corners or more, here " +
                                (n == 1 ? "is one" : "are " + std::to_string(n)),
                            state.line);
    if (n == 4)
        addelement(typeshell4, {corners[0], corners[1], corners[2], corners[3]}, state, letter);
    else
        for (std::size_t k = 2; k < n; ++k)
            addelement(typeshell3, {corners[0], corners[k - 1], corners[k], 0}, state, letter);
    report.read(std::string(1, char(what[0] - 'a' + 'A')) + (what + 1) + "s");
    if (n <= 4) return;
    report.warn(std::string("A ") + what + " with more than four corners became triangles",
                state.line);
    const int last = int(found.elements.size());
    for (int e = last - int(n) + 3; e <= last; ++e) report.about(reportitems::elements, e);
}

// --- where things stand, how they are held and loaded -------------------------------------------

void mosesreader::parsedescribe(std::string_view rest, long line) {
    std::string_view kind, placename;
    nextmosesword(rest, kind);
    for (const char* known : {"BODY", "PART", "PIECE", "COMPARTMENT"})
        if (shortens(kind, known, 4)) {
            if (!nextmosesword(rest, placename))
                report.error("&DESCRIBE " + uppercase(kind) + " has no name", line);
            place = placename;
            placegroup = 0;
            if (std::string_view more; nextmosesword(rest, more))
                report.skipped("Options of &DESCRIBE " + uppercase(kind), line);
            return;
        }
    report.skipped("Lines &DESCRIBE " + uppercase(kind).substr(0, 20), line);
}

// Elements without a class take the class that is named as their piece, with or without P_ before
// it, or a group of the piece's own name.
int mosesreader::groupofplace() {
    if (place.empty()) return 0;
    if (placegroup > 0) return placegroup;
    const std::string key = uppercase(place);
    auto at = classes.find(key);
    if (at == classes.end() && key.starts_with("P_")) at = classes.find(key.substr(2));
    placegroup = at != classes.end() ? at->second.group : found.groupof(place);
    return placegroup;
}

void mosesreader::parserestraint(std::string_view rest, long line) {
    const mosesclass* fixing = nullptr;
    std::string_view word;
    int count = 0;
    while (nextmosesword(rest, word)) {
        if (word[0] == '~') {
            fixing = findclass(word, line);
            if (fixing == nullptr) return;
            if (fixing->isfixing) continue;
            return report.skipped("Restraints of a class that is not FIX", line);
        }
        if (isoption(word)) {
            report.skipped("Option " + uppercase(word).substr(0, 20) + " of a restraint", line);
            continue;
        }
        if (word[0] != '*') continue;
        ++count;
        const int node = point(word, line);
        if (fixing == nullptr) return report.error("a restraint has no class", line);
        if (node == 0) continue;
        for (const int dof : fixing->fixed) found.constraints.push_back({node, dof, 0});
        report.read("Restraints");
    }
    if (count == 0) report.error("a restraint has no point", line);
}

// Weights pull downwards, along -z, in a load case of their own.
void mosesreader::parseweight(std::string_view rest, const mosesstatement& s) {
    std::string_view word;
    if (!nextmosesword(rest, word) || word[0] != '*')
        return report.error("a weight has no point", s.line);
    const int node = point(word, s.line);
    double weight = 0;
    if (!nextmosesword(rest, word) || !readexpression(word, weight))
        return report.error("a weight has no number", s.line);
    if (node == 0) return;
    if (weights == 0) {
        found.cases.emplace_back().name = "Weights";
        weights = int(found.cases.size());
    }
    weight *= deck.unitsof(s).force / deck.base().force;
    found.cases[std::size_t(weights) - 1].nodal.push_back({node, 3, -weight});
    report.changed("Weights became loads along -Z of the load case Weights, in " +
                       std::string(deck.base().forcename) + ", without their radii",
                   1, s.line);
}

void readmoses(const std::string& path, imported& found) {
    readmoses(readwhole(path), path, found);
}

void readmoses(std::string text, const std::string& path, imported& found) {
    mosesreader reader(std::move(text), path, found);
    reader.firstpass();
    if (reader.isempty())
        throw runtimeerror{errtype, path + ": this is no MOSES model, no point stands in it"};
    reader.secondpass();
}
