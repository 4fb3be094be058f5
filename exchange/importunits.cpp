// SPDX-License-Identifier: GPL-3.0-or-later
// Numbers that change with their units.
#include "exchange/importunits.h"

#include <cmath>

#include "core/catalogue.h"
#include "core/formulas.h"
#include "core/model.h"
#include "core/newmodel.h"
#include "core/numtext.h"
#include "exchange/textlines.h"
#include "tools/unitsform.h"

double consistentmass(const unitset& model) {
    return model.metres > 0 ? model.kilograms * model.metres / model.newtons : 1;
}

double consistentacceleration(const unitset& model) {
    return model.metres > 0 ? 1 / model.metres : 1;
}

static unitset unitsof(const std::string& text) {
    unitset set;
    findunits(text, set);
    return set;
}

std::string unitsofmetals(const imported& found) {
    const double softest = 4e10, stiffest = 2.5e11;  // Pa: magnesium, steel
    const double lightest = 1500, heaviest = 12000;  // kg/m3: magnesium, lead
    for (const char* const text : {"mm N t", "m N kg", "m kN t", "in lbf lb", "ft kip lb"}) {
        const unitset set = unitsof(text);
        const double area = set.metres * set.metres, volume = area * set.metres;
        long fitting = 0, others = 0;
        for (const importedgroup& g : found.groups) {
            const double e = g.fields[fieldmodulus] * set.newtons / area;
            const double density =
                g.fields[fielddensity] * set.kilograms / consistentmass(set) / volume;
            if (!(e > 0) || !(density > 0)) continue;
            const bool fits =
                e > softest && e < stiffest && density > lightest && density < heaviest;
            ++(fits ? fitting : others);
        }
        if (fitting > 0 && others == 0) return text;
    }
    return "";
}

// --- conversion ---------------------------------------------------------------------------------

// What the groups are used for, by their number from 1.
static std::vector<groupuse> usesof(const imported& found) {
    std::vector<groupuse> uses(found.groups.size() + 1);
    for (const importedelement& e : found.elements) {
        groupuse& use = uses[std::size_t(e.group)];
        const int elnn = nodesoftype(float(e.type));
        if (e.type == typemass) use.masses = true;
        if (e.type == typetruss || e.type == typebeam || e.type == typepipe) use.lines = true;
        if (elnn > 2) use.plates = true;
    }
    for (std::size_t g = 1; g < uses.size(); ++g)
        if (!uses[g].lines && !uses[g].plates && !uses[g].masses)
            uses[g].lines = std::isfinite(found.groups[g - 1].fields[fieldixx]);
    return uses;
}

static void fromconsistent(imported& found, const unitset& model) {
    const double mass = 1 / consistentmass(model);
    const double acceleration = 1 / consistentacceleration(model);
    const int digits = 12;
    const auto uses = usesof(found);
    long densities = 0, accelerations = 0;
    for (std::size_t g = 1; g < uses.size(); ++g) {
        auto& fields = found.groups[g - 1].fields;
        for (const int k : {fielddensity, fieldixx, fieldiyy, fieldizz})
            if (k == fielddensity || groupformula(uses[g], k) == std::string("M.L^2"))
                if (double& v = fields[std::size_t(k)]; std::isfinite(v) && v != 0) {
                    v = roundedto(v * mass, digits);
                    ++densities;
                }
    }
    for (importedcase& c : found.cases)
        if (c.type >= caseaccx && c.type <= caseaccz) {
            c.parameters[accvalue] = roundedto(c.parameters[accvalue] * acceleration, digits);
            ++accelerations;
        }
    if (mass != 1 && densities > 0)
        found.report.changed("Densities and masses turned to the model's unit, times " +
                                 numbertext(roundedto(mass, digits)),
                             densities);
    if (acceleration != 1 && accelerations > 0)
        found.report.changed(
            "Accelerations turned to metres, times " + numbertext(roundedto(acceleration, digits)),
            accelerations);
}

namespace {
class converter {
  public:
    converter(imported& into, const unitset& theirs, const unitset& ours)
        : found(into), from(theirs), to(ours), uses(usesof(into)) {}
    void run() {
        const double length = factor("L");
        for (triple& at : found.nodes)
            for (double& v : at) v *= length;
        for (importedgraphic& g : found.graphics)
            for (std::size_t j = 1; j < 4; ++j)
                for (std::size_t k = 1; k < 4; ++k) g.rows[j][k] *= float(length);
        for (std::size_t g = 1; g < uses.size(); ++g) group(found.groups[g - 1], uses[g]);
        for (importedrow& row : found.constraints) row.value *= factor(constraintformula(row.dof));
        for (importedcase& c : found.cases) loads(c);
    }

  private:
    double factor(const char* formula) const { return unitfactor(formula, from, to); }
    void group(importedgroup& g, const groupuse& use) const {
        const int digits = 12;
        for (int k = 1; k <= groupfields; ++k)
            if (double& v = g.fields[std::size_t(k)]; std::isfinite(v) && k != fieldplane)
                v = roundedto(v * factor(groupformula(use, k)), digits);
        for (std::size_t k = 0; k < g.matrix.size(); ++k)
            g.matrix[k] *= float(factor(matrixformula(int(k) / 6 + 1, int(k) % 6 + 1)));
    }
    void loads(importedcase& c) const {
        for (importedrow& row : c.nodal) row.value *= factor(row.dof <= 3 ? "F" : "F.L");
        for (importedrow& row : c.onelements) {
            const importedelement& e = found.elements[std::size_t(row.item) - 1];
            row.value *= factor(nodesoftype(float(e.type)) > 2 ? "F/L^2" : "F/L");
        }
    }

    imported& found;
    const unitset from, to;
    const std::vector<groupuse> uses;
};
}  // namespace

// --- of the model -------------------------------------------------------------------------------

// An empty model has its groups alone to convert.
static void takeunits(const std::string& text) {
    unitsform form = openunits();
    form.choices.push_back(text);
    form.chosen = int(form.choices.size()) - 1;
    form.convert = form.canconvert = true;
    form.fornew = newunits == text;
    storeunits(form);
}

static void takemetals(imported& found) {
    found.units = unitsofmetals(found);
    if (!found.units.empty())
        found.report.changed("The units were taken as " + found.units +
                             ", in which the materials are metals; see [Settings,Units...]");
}

void fitunits(imported& found, bool isnewmodel) {
    if (found.isconsistent && found.units.empty()) takemetals(found);
    const bool known = !found.units.empty(), told = !unitstext.empty();
    const unitset theirs = unitsof(found.units), ours = modelunits();
    const bool isempty = nnodes() == 0 && nelems() == 0 && ngraphics() == 0;
    const bool takes = known && (isnewmodel || (isempty && !told));
    const bool converts = known && told && !takes && ours.metres > 0;
    if (found.isconsistent) fromconsistent(found, takes || converts ? theirs : ours);
    if (takes && isnewmodel) {
        unitstext = found.units;
        newgroup();
    } else if (takes)
        takeunits(found.units);
    else if (converts && theirs != ours) {
        converter(found, theirs, ours).run();
        found.report.changed("All numbers turned from " + found.units + " to the model's " +
                             unitsinwords());
    } else if (known && theirs != ours)
        found.report.warn("The file is in " + found.units +
                          ", the model does not say its units; lengths and forces stay as they "
                          "are");
}
