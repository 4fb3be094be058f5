// SPDX-License-Identifier: GPL-3.0-or-later
// Units of results.
#include "post/plotunits.h"

#include "core/units.h"
#include "post/components.h"
#include "post/exactstress.h"

static const char* const stressformula = "F/L^2";

namespace {
struct stressunit {
    const char* name;
    double pascals;
};
}  // namespace

static const stressunit* stressunitof(const unitset& set) {
    static const stressunit metric{"N/mm2", 1e6}, psi{"psi", 6894.757293168361},
        ksi{"ksi", 6894757.293168361};
    if (set.length.empty()) return nullptr;
    if (set.force == "lbf") return &psi;
    return set.force == "kip" ? &ksi : &metric;
}

double shownfactor(std::string_view formula, const unitset& set) {
    const stressunit* const shown = stressunitof(set);
    if (shown == nullptr || formula != stressformula) return 1;
    return roundedto(set.newtons / (set.metres * set.metres) / shown->pascals, 12);
}

double shownfactor(std::string_view formula) {
    return unitstext.empty() ? 1 : shownfactor(formula, modelunits());
}

static bool issaid() {
    return !unitstext.empty() && !modelunits().length.empty();
}

std::string resultunit(const std::string& formula) {
    if (!issaid() || formula.empty()) return {};
    return formula == stressformula ? stressunitof(modelunits())->name : unitname(formula);
}

static std::string bracketed(const std::string& caption, const std::string& unit) {
    return unit.empty() ? caption : caption + " [" + unit + "]";
}

std::string headed(const std::string& caption, const std::string& formula) {
    return bracketed(caption, resultunit(formula));
}

std::string headedinput(const std::string& caption, const std::string& formula) {
    return bracketed(caption, issaid() ? unitname(formula) : "");
}

std::string unitline(const std::string& line) {
    if (!issaid()) return line;
    std::string text;
    std::size_t at = 0;
    for (std::size_t open = line.find('['); open != line.npos; open = line.find('[', at)) {
        const std::size_t end = std::min(line.find(']', open), line.size());
        text += line.substr(at, open - at);
        while (text.size() > open && text.ends_with("  ")) text.pop_back();
        if (text.size() < open) text.append(open - text.size(), ' ');
        text += "[" + unitname(line.substr(open + 1, end - open - 1)) + "]";
        at = std::min(end + 1, line.size());
    }
    return text + line.substr(at);
}

std::string behind(const std::string& formula) {
    const std::string unit = resultunit(formula);
    return unit.empty() ? unit : " " + unit;
}

const char* componentformula(int component) {
    if (component >= momentx && component <= momentxy) return "F L/L";
    if ((component >= forcex && component <= forcexy) || component == shearx || component == sheary)
        return "F/L";
    return stressformula;
}
