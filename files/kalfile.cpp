// SPDX-License-Identifier: GPL-3.0-or-later
// The sections of the further file. State: the readers that check them.
#include "files/kalfile.h"

#include <cmath>
#include <map>
#include <optional>

#include "core/kalsections.h"
#include "core/kaltext.h"
#include "core/numtext.h"
#include "core/runtime.h"
#include "core/session.h"
#include "core/units.h"
#include "core/unitsrow.h"

static std::string headof(const std::string& keyword) {
    return kalheadstart + keyword + "\"\n";
}

static std::optional<kalsectionplace> findsection(const std::string& keyword) {
    for (auto s = nextkalsection(kaltext, 0, ".kal"); s;
         s = nextkalsection(kaltext, s->next, ".kal"))
        if (s->keyword == keyword) return s;
    return {};
}

std::string kalsection(const std::string& keyword) {
    const auto s = findsection(keyword);
    return s ? kaltext.substr(s->rows, s->end - s->rows) : "";
}

void putkalsection(const std::string& keyword, const std::string& rows) {
    std::string text = rows;
    if (!text.empty() && text.back() != '\n') text += '\n';
    if (("\n" + text).find("\n" + kalendrow) != text.npos)
        throw runtimeerror{errtype, "a row of the section \"" + keyword + "\" would end it"};
    if (!text.empty()) text = headof(keyword) + text + kalendrow;
    const auto s = findsection(keyword);
    if (s)
        kaltext.replace(s->head, s->next - s->head, text);
    else
        kaltext += text;
}

// Empty lines stand for what comes before, so that a fault counts the file's lines.
static textin readerof(const kalsectionplace& s, const std::string& text, const std::string& name) {
    return {std::string(linesbeforekal(text, s.rows), '\n') + text.substr(s.rows, s.end - s.rows),
            name};
}

textin kalreader(const std::string& keyword) {
    const auto s = findsection(keyword);
    return s ? readerof(*s, kaltext, modelname + ".kal") : textin("", modelname + ".kal");
}

static std::map<std::string, std::function<void(textin&)>>& checks() {
    static std::map<std::string, std::function<void(textin&)>> rows;
    return rows;
}

void checkkalsection(const std::string& keyword, std::function<void(textin&)> check) {
    checks()[keyword] = std::move(check);
}

// --- the file -----------------------------------------------------------------------------------

bool haskal() {
    return !kaltext.empty() || !unitstext.empty();
}

// The units stand in a variable of their own, since every label asks for them.
static std::string unitsection() {
    if (unitstext.empty()) return {};
    const unitset& set = modelunits();
    std::string row = "\"" + unitstext + "\"";
    if (set.metres > 0)
        for (const double factor : {set.metres, set.newtons, set.kilograms})
            row += "," + numbertext(factor);
    return headof(unitssection) + row + "\n" + kalendrow;
}

static std::string readunits(textin& in) {
    const std::string text = in.text();
    unitset set;
    if (!findunits(text, set)) in.fail(errtype, "the units \"" + text + "\" are not known");
    if (set.metres == 0) return text;
    for (const double factor : {set.metres, set.newtons, set.kilograms}) {
        const double found = in.number(), same = 1e-6;
        if (!(std::fabs(found - factor) <= same * factor))
            in.fail(errtype, numbertext(found) + " is not the size of a unit of \"" + text + "\"");
    }
    return text;
}

void writekal(textout& out) {
    std::string text;
    for (const char c : unitsection() + kaltext) {
        if (c == '\n') text += '\r';
        text += c;
    }
    out.raw(text);
}

void readkal(const std::string& base) {
    const std::string name = findnocase(base + ".kal");
    std::string text = readkaltext(name);
    std::optional<kalsectionplace> units;
    std::string told;
    for (auto s = nextkalsection(text, 0, name); s; s = nextkalsection(text, s->next, name)) {
        if (s->keyword == unitssection) {
            textin in = readerof(*s, text, name);
            told = readunits(in);
            units = s;
            continue;
        }
        const auto check = checks().find(s->keyword);
        if (check == checks().end() || !check->second) continue;
        textin in = readerof(*s, text, name);
        check->second(in);
    }
    if (units) text.erase(units->head, units->next - units->head);
    kaltext = text;
    unitstext = told;
}

void dropkal() {
    kaltext.clear();
    unitstext.clear();
}
