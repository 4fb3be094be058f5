// SPDX-License-Identifier: GPL-3.0-or-later
// The units of the model and its conversion.
#include "tools/unitsform.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>

#include "core/formulas.h"
#include "core/journal.h"
#include "core/model.h"
#include "core/platform.h"
#include "core/resultfiles.h"
#include "core/session.h"
#include "core/sessionlengths.h"
#include "core/textfile.h"
#include "files/solverunits.h"
#include "view/moddraw.h"

std::vector<unitconverter>& unitconverters() {
    static std::vector<unitconverter> list;
    return list;
}

// --- the model's numbers ------------------------------------------------------------------------

namespace {
// Visits every number of the model that has a unit: first to see whether it fits, then to store.
class conversion {
  public:
    conversion(const unitset& from, const unitset& to) : from(from), to(to) {}
    bool fits() {
        all();
        return whole;
    }
    void run() {
        stores = true;
        all();
        scalelengths(factor("L"));
    }

  private:
    double factor(const char* formula) {
        const auto [at, isnew] = factors.try_emplace(formula, 1);
        if (isnew) at->second = unitfactor(formula, from, to);
        return at->second;
    }
    void number(float& cell, double by) {
        const float value = float(double(cell) * by);
        whole = whole && std::isfinite(value);
        if (stores) cell = value;
    }
    void number(double& cell, double by) {
        const double value = by == 1 ? cell : roundedto(cell * by, 12);
        whole = whole && std::isfinite(value);
        if (stores) cell = value;
    }
    void all() {
        places();
        properties();
        conditions();
    }
    void places() {
        const double length = factor("L");
        for (int n = 1; n <= nnodes(); ++n)
            for (int k = 0; k < 3; ++k) number(nodes(0, n, k), length);
        for (int g = 1; g <= ngraphics(); ++g)
            for (int j = 1; j <= 3; ++j)
                for (int k = 1; k <= 3; ++k) number(graphics(g, j, k), length);
    }
    void properties();
    void conditions();
    std::map<const char*, double> factors;  // by formula

    const unitset from, to;
    bool stores = false, whole = true;
};
}  // namespace

// A group without elements: a section makes it one of lines.
static groupuse likelyuse(int g, groupuse use) {
    if (use.lines || use.plates) return use;
    use.lines = groups(g, fieldixx) != 0 || groups(g, fieldiyy) != 0;
    use.plates = !use.lines;
    return use;
}

void conversion::properties() {
    const auto uses = groupuses();
    for (int g = 1; g <= ngroups(); ++g) {
        groupuse use = uses[std::size_t(g)];
        if (!use.masses) use = likelyuse(g, use);
        for (int k = 1; k <= groupfields; ++k)
            if (k != fieldplane) number(groups(g, k), factor(groupformula(use, k)));
        for (int i = 1; i <= 6; ++i)
            for (int j = 1; j <= 6; ++j)
                if (groupmat(g, i, j) != 0) number(groupmat(g, i, j), factor(matrixformula(i, j)));
    }
}

void conversion::conditions() {
    for (int i = 1; i <= ncon; ++i)
        if (condof(i) <= 3) number(conval(i), factor(constraintformula(condof(i))));
    for (int lc = 1; lc <= nlc(); ++lc) {
        for (int i = 1; i <= loadnode(lc, 0); ++i)
            number(loadval(lc, i), factor(nodalformula(lc, loaddof(lc, i))));
        for (int i = 1; i <= int(elemload(lc, 0, 0)); ++i)
            number(elemload(lc, i, 2), factor(elementformula(int(elemload(lc, i, 0)))));
        for (int k = 0; k < caseparameters; ++k)
            number(lcpar(lc, k), factor(parameterformula(lctype(lc), k)));
    }
}

// --- the form -----------------------------------------------------------------------------------

static unitset unitsoftext(const std::string& text) {
    unitset set = solverunits;
    if (!text.empty()) findunits(text, set);
    return set;
}

static std::string namesof(const unitset& set) {
    return set.length.empty() ? "" : set.length + ", " + set.force + ", " + set.mass;
}

static std::string captionof(const std::string& text) {
    const std::string names = namesof(unitsoftext(text));
    if (text == freeunits) return "free: the numbers have no names";
    if (text.empty())
        return "not said: the solver's settings hold" + (names.empty() ? "" : ", " + names);
    return names;
}

static std::string noteof(const unitsform& form) {
    const std::string& text = form.choices[std::size_t(form.chosen)];
    if (text == unitstext) return "The model has these units.";
    if (form.convert && form.canconvert)
        return "Places, properties, loads and sizes are converted. Results of an analysis are "
               "removed.";
    std::string note = "Every number stays as it is and is of another size than before.";
    if (unitsoftext(text) == modelunits()) note = "Every number stays as it is.";
    if (!form.canconvert) note += " Units without names can not be converted.";
    return note;
}

void chooseunits(unitsform& form, int entry) {
    if (entry < 0 || entry >= int(form.choices.size())) return;
    form.chosen = entry;
    form.canconvert =
        modelunits().metres > 0 && unitsoftext(form.choices[std::size_t(entry)]).metres > 0;
    form.note = noteof(form);
}

void chooseway(unitsform& form, bool convert) {
    form.convert = convert;
    form.note = noteof(form);
}

std::string unitsinwords() {
    if (!unitstext.empty()) return unitstext;
    const unitset& set = modelunits();
    return set.length.empty() ? freeunits
                              : "(" + set.length + " " + set.force + " " + set.mass + ")";
}

unitsform openunits() {
    readsolverunits();
    unitsform form;
    form.choices = {""};
    form.choices.insert(form.choices.end(), unitchoices.begin(), unitchoices.end());
    auto now = std::ranges::find(form.choices, unitstext);
    if (now == form.choices.end()) now = form.choices.insert(now, unitstext);
    form.fornew = !newunits.empty() && newunits == unitstext;
    for (const std::string& text : form.choices) form.captions.push_back(captionof(text));
    chooseunits(form, int(now - form.choices.begin()));
    return form;
}

// --- storing ------------------------------------------------------------------------------------

// A group whose thickness is an area for some of its elements can not be converted.
static std::string mixedgroup() {
    const auto uses = groupuses();
    for (int g = 1; g <= ngroups(); ++g) {
        const groupuse& use = uses[std::size_t(g)];
        if (!use.conflicts()) continue;
        return "Group " + std::to_string(g) + " \"" + shownname(groupname(g)) + "\" is used by " +
               (use.masses
                    ? "mass elements and by others, so that a field is a mass for the ones and "
                      "a density for the others"
                    : "plates and by line elements, so that a field is a thickness for the "
                      "ones and an area for the others") +
               ". Give each kind a group of its own, then convert.";
    }
    return {};
}

static bool agreestoloseresults(const std::vector<std::string>& results) {
    if (results.empty()) return true;
    messagebox box;
    box.text =
        "The results of this model are in the old units. They are removed from the disk; an "
        "analysis computes them anew. Convert the model?";
    box.set = buttons::yesno;
    box.icon = icons::question;
    return theplatform().show(box) == answers::yes;
}

static bool convertmodel(const std::string& text) {
    const unitset from = modelunits(), to = unitsoftext(text);
    const auto refuse = [](const std::string& why) {
        theplatform().message(why, icons::exclamation);
        return false;
    };
    if (const std::string why = mixedgroup(); !why.empty()) return refuse(why);
    conversion numbers(from, to);
    if (!numbers.fits())
        return refuse(
            "A number of the model would be too large in these units; nothing is changed.");
    const std::vector<std::string> results = ownresults(modelname);
    if (!agreestoloseresults(results)) return false;
    const step s("Convert Units");
    numbers.run();
    for (const unitconverter& convert : unitconverters()) convert(from, to);
    unitstext = text;
    dropresults();
    std::error_code ec;
    for (const std::string& path : results) std::filesystem::remove(path, ec);
    return true;
}

bool storeunits(const unitsform& form) {
    const std::string& text = form.choices[std::size_t(form.chosen)];
    if (text != unitstext) {
        if (form.convert && form.canconvert && unitsoftext(text) != modelunits()) {
            if (!convertmodel(text)) return false;
        } else {
            const step s("Units");
            unitstext = text;
        }
        redrawall();
    }
    if (form.fornew) newunits = text;
    if (!form.fornew && newunits == text) newunits.clear();
    return true;
}
