// SPDX-License-Identifier: GPL-3.0-or-later
// Formulas of the model's numbers.
#include "core/formulas.h"

#include "core/catalogue.h"
#include "core/model.h"
#include "core/units.h"

std::vector<groupuse> groupuses() {
    std::vector<groupuse> uses(std::size_t(groups.upper1) + 1);
    for (int e = 1; e <= nelems(); ++e) {
        const int type = int(elems(e, 0)), g = egroup(e);
        if (g < 1 || g > ngroups()) continue;
        groupuse& use = uses[std::size_t(g)];
        if (type == typemass) use.masses = true;
        if (type == typetruss || type == typebeam || type == typepipe) use.lines = true;
        if (nodesoftype(elems(e, 0)) > 2) use.plates = true;
    }
    return uses;
}

const char* groupformula(const groupuse& use, int field) {
    static const char* const formulas[groupfields + 1] = {
        "", "F/L^2", "-", "W/L^3", "L | L^2", "", "Deg", "L^4", "L^3", "L^4", "L^3", "L^4", "L^3"};
    const bool mass = use.masses && !use.lines && !use.plates;
    const bool inertia = field == fieldixx || field == fieldiyy || field == fieldizz;
    if (field == fieldthickness && use.plates != use.lines) return use.plates ? "L" : "L^2";
    if (mass && field == fielddensity) return "M";
    if (mass && inertia) return "M.L^2";
    return formulas[field];
}

const char* matrixformula(int i, int j) {
    const int turns = (i > 3) + (j > 3);
    return turns == 0 ? "F/L" : turns == 1 ? "F" : "F.L";
}

const char* constraintformula(int dof) {
    return dof <= 3 ? "L" : "Deg";
}

const char* nodalformula(int lc, int dof) {
    if (lctype(lc) != caseapplied) return dof <= 3 ? "M" : "M.L^2";
    return dof <= 3 ? "F" : "F.L";
}

const char* elementformula(int e) {
    if (e < 1 || e > nelems()) return "F/L^n";
    return nodesoftype(elems(e, 0)) > 2 ? "F/L^2" : "F/L";
}

// Accelerations, waves and wind are in metres and seconds whatever the model's units are.
const char* parameterformula(int type, int k) {
    static const char* const waves[caseparameters] = {"m", "s", "Deg", "", "m"};
    static const char* const winds[caseparameters] = {"m/s", "Deg", "", "", ""};
    static const char* const buoyancies[caseparameters] = {"L", "L", "F/L^3", "", ""};
    if (type >= caseaccx && type <= caseaccrz) {
        if (k == accvalue) return type < caseaccrx ? "m/s^2" : "rad/s^2";
        return k == accelementmass ? "" : "L";
    }
    if (type == casewave) return waves[k];
    if (type == casewind) return winds[k];
    return type == casebuoyancy ? buoyancies[k] : "";
}

std::string captionwithunit(const std::string& caption) {
    const std::size_t open = caption.rfind('(');
    if (open == caption.npos || caption.back() != ')') return caption;
    const std::string formula = caption.substr(open + 1, caption.size() - open - 2);
    return caption.substr(0, open + 1) + captionunit(formula) + ")";
}
