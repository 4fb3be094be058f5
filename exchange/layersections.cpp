// SPDX-License-Identifier: GPL-3.0-or-later
// Profiles in names.
#include "exchange/layersections.h"

#include <cmath>
#include <vector>

#include "core/catalogue.h"
#include "core/runtime.h"
#include "exchange/textlines.h"
#include "tools/sectionfile.h"
#include "tools/sections.h"

static bool isletter(char c) {
    return c >= 'A' && c <= 'Z';
}
static bool isnumber(char c) {
    return (c >= '0' && c <= '9') || c == '.';
}

namespace {
// The letters and numbers of a text in capitals, and whether something else stands before each.
struct plaintext {
    explicit plaintext(std::string_view text) {
        bool apart = true;
        for (char c : uppercase(text)) {
            if (c == ',') c = '.';
            if (!isletter(c) && !isnumber(c)) {
                apart = true;
                continue;
            }
            letters += c;
            isapart.push_back(apart);
            apart = false;
        }
    }
    std::string letters;
    std::vector<bool> isapart;
};
}  // namespace

// "IPE200" is not in "IPE2000", nor in "IPE200X90" or "XIPE200".
static bool holds(const plaintext& text, const std::string& name) {
    for (std::size_t at = text.letters.find(name); at != std::string::npos;
         at = text.letters.find(name, at + 1)) {
        const std::size_t end = at + name.size();
        if (!text.isapart[at]) continue;
        if (end == text.letters.size() || text.isapart[end]) return true;
        const bool goeson = isnumber(text.letters[end]) ||
                            (text.letters[end] == 'X' && end + 1 < text.letters.size() &&
                             isnumber(text.letters[end + 1]));
        if (!goeson) return true;
    }
    return false;
}

int profilein(const std::string& text) {
    const plaintext plain(text);
    std::size_t longest = 0;
    int found = 0;
    for (long s = 1; s <= sectcount; ++s) {
        const std::string name = plaintext(sectnames(s, 1)).letters;
        if (name.size() <= longest || !holds(plain, name)) continue;
        longest = name.size();
        found = int(s);
    }
    return found;
}

// Area, I and W of a record into fields 4 and 7 to 12, in lengths of the model.
static void putrecord(int s, int unit, importedgroup& group) {
    sectionform form;
    settype(form, findsectiontype(sectnames(s, 2)));
    form.section = sectnames(s, 1);
    form.unit = unit;
    scalesections(form);
    sectioncalc(form);
    const std::size_t fields[nresults] = {fieldthickness, fieldixx, fieldwxx, fieldiyy,
                                          fieldwyy,       fieldizz, fieldwzz};
    for (std::size_t k = 0; k < nresults; ++k) group.fields[fields[k]] = form.values[k];
}

static int unitof(double metres) {
    for (int u = 0; u < nunits; ++u)
        if (std::fabs(unitmetres[u] - metres) <= 1e-9 * metres) return u;
    return -1;
}

void putprofiles(imported& found, double metres) {
    const int unit = unitof(metres);
    if (unit < 0) return;  // nobody knows how long a length of the model is
    std::vector<bool> haslines(found.groups.size() + 1, false);
    for (const importedelement& e : found.elements)
        if (hasrotations(e.type) && nodesoftype(float(e.type)) == 2)
            haslines[std::size_t(e.group)] = true;
    if (sectcount == 0)
        guarded([] { readsections(false); },
                [&](const runtimeerror& e) { found.report.warn(e.what); });
    for (std::size_t g = 1; g < haslines.size(); ++g) {
        if (!haslines[g]) continue;
        importedgroup& group = found.groups[g - 1];
        const int s = profilein(group.name);
        if (s == 0) {
            found.report.warn("Layer " + group.name +
                              " tells no profile of the section library; give its group a section");
            continue;
        }
        putrecord(s, unit, group);
        found.report.changed("Layer " + group.name + " has the section " + sectnames(s, 1));
    }
}
